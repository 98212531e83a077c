#include "defects/dialogs/CDlgPicture.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>

#include "defects/dialogs/CPictureBox.h"
#include "shell/dialogs/bringtofront.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"

namespace {

constexpr int MessageWhich = 3957;
constexpr int MessageKeys = 3959;
constexpr QSize FirstSize(900, 720);

}  // namespace

CDlgPicture::CDlgPicture(QWidget* parent)
    : CSizeDlg(parent), m_box(AddControl(IdPicture, new CPictureBox(this))) {
    setModal(false);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_box, 1);
    column->addWidget(AddControl(IdHint, new QLabel(MessageText(MessageKeys), this)));
    m_box->setToolTip({});
    m_box->installEventFilter(this);
    resize(FirstSize);
}

void CDlgPicture::Come(std::size_t which) {
    m_which = which;
    show();
    BringToFront(*this);
    m_box->setFocus();
}

void CDlgPicture::Show(const std::array<std::string, 2>& paths, const std::string& title) {
    m_paths = paths;
    m_title = title;
    Turn(m_which == 1 && paths[1].empty() ? 0 : m_which);
}

void CDlgPicture::Turn(std::size_t which) {
    m_which = which;
    m_box->Show(m_paths[which]);
    const int count = m_paths[1].empty() ? 1 : 2;
    setWindowTitle(ToQt(m_title + "    " +
                        FillText(LoadMessage(MessageWhich),
                                 {FormatInt(static_cast<std::int64_t>(which) + 1), FormatInt(count)})));
}

bool CDlgPicture::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return CSizeDlg::eventFilter(watched, event);
    }
    switch (dynamic_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (OnWalk) {
                OnWalk(dynamic_cast<QKeyEvent*>(event)->key() == Qt::Key_Up ? -1 : 1);
            }
            return true;
        case Qt::Key_Left:
        case Qt::Key_Right:
            if (!m_paths[1].empty()) {
                Turn(1 - m_which);
            }
            return true;
        default:
            return CSizeDlg::eventFilter(watched, event);
    }
}
