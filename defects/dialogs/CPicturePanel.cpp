#include "defects/dialogs/CPicturePanel.h"

#include <QBoxLayout>

#include "defects/dialogs/CDlgPicture.h"
#include "defects/dialogs/CPictureBox.h"

CPicturePanel::CPicturePanel(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    for (std::size_t i = 0; i < m_boxes.size(); ++i) {
        m_boxes[i] = new CPictureBox(this);
        m_boxes[i]->OnEnlarge = [this, i] { Enlarge(i); };
        row->addWidget(m_boxes[i]);
    }
}

void CPicturePanel::Show(const std::string& first, const std::string& second, const std::string& title) {
    m_paths = {first, second};
    m_title = title;
    Load();
}

// What nobody sees isn't read.
void CPicturePanel::Load() {
    for (std::size_t i = 0; isVisible() && i < m_boxes.size(); ++i) {
        m_boxes[i]->Show(m_paths[i]);
    }
    if (m_enlarged != nullptr && m_enlarged->isVisible()) {
        m_enlarged->Show(m_paths, m_title);
    }
}

void CPicturePanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Load();
}

void CPicturePanel::Enlarge(std::size_t which) {
    if (m_enlarged == nullptr) {
        m_enlarged = new CDlgPicture(this);
        m_enlarged->OnWalk = [this](int step) {
            if (OnWalk) {
                OnWalk(step);
            }
        };
    }
    m_enlarged->Come(which);
    m_enlarged->Show(m_paths, m_title);
}
