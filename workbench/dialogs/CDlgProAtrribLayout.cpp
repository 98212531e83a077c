// Where the controls of the review window stand, and how large it is.
#include <QBoxLayout>
#include <QFrame>
#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QSplitter>

#include "bulk/dialogs/CAllDefects.h"
#include "bulk/dialogs/CFilterBar.h"
#include "controls/CPipeStrip.h"
#include "controls/CWMPPlayer4.h"
#include "defects/dialogs/CPicturePanel.h"
#include "defects/dialogs/CPointView.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "shell/dialogs/projectsettings.h"
#include "workbench/coding/dialogs/CCodingLine.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"
#include "workbench/dialogs/reviewplace.h"

namespace {

constexpr QSize FirstSize(1240, 700);  // fits a screen of 1366x768 with its bars
constexpr int WideScreen = 1900;       // pixels
constexpr int HighScreen = 1000;
constexpr int LeastSections = 5;  // rows
constexpr int LineHeight = 26;

QFrame* MakeLine(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    return line;
}

// The columns of buttons of both lists are equally wide.
int WidestOf(const std::vector<QWidget*>& buttons) {
    int widest = 0;
    for (const QWidget* button : buttons) {
        widest = std::max(widest, button->sizeHint().width());
    }
    return widest;
}

QWidget* MakeListPanel(QWidget* parent, QWidget* list, const std::vector<QWidget*>& buttons, int width) {
    auto* panel = new QWidget(parent);
    auto* row = new QHBoxLayout(panel);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(list, 1);
    auto* column = new QVBoxLayout;
    column->setSpacing(2);
    for (QWidget* button : buttons) {
        button->setMinimumWidth(width);
        column->addWidget(button);
    }
    column->addStretch();
    row->addLayout(column);
    return panel;
}

}  // namespace

void CDlgProAtrrib::PlaceControls() {
    auto* bar = new QHBoxLayout;
    bar->setSpacing(2);
    for (const int id : ToolbarOrder()) {
        if (id == ToolbarLine) {
            bar->addWidget(MakeLine(this));
        } else if (id == ToolbarStretch) {
            bar->addStretch();
        } else {
            bar->addWidget(GetDlgItem(id));
        }
    }
    auto* panels = m_panels = new QSplitter(Qt::Vertical, this);
    panels->setChildrenCollapsible(false);
    panels->setHandleWidth(6);
    panels->addWidget(MakeSectionPanel());
    panels->addWidget(MakeReviewPanel());
    panels->setStretchFactor(0, 1);
    panels->setStretchFactor(1, 2);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 4, 8, 6);
    column->setSpacing(6);
    column->addLayout(bar);
    column->addWidget(m_filterBar);
    column->addWidget(panels, 1);
    column->addWidget(m_strip);
    column->addWidget(m_ruler);
}

std::vector<QWidget*> CDlgProAtrrib::Controls(std::span<const int> ids) const {
    std::vector<QWidget*> controls;
    for (const int id : ids) {
        controls.push_back(GetDlgItem(id));
    }
    return controls;
}

int CDlgProAtrrib::ButtonWidth() const {
    return std::max(WidestOf(Controls(SectionButtons())), WidestOf(Controls(DefectButtons())));
}

QWidget* CDlgProAtrrib::MakeSectionPanel() {
    auto* panel = new QWidget(this);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(MakeListPanel(panel, m_sections, Controls(SectionButtons()), ButtonWidth()), 1);
    auto* line = new QHBoxLayout;
    line->setSpacing(2);
    line->addWidget(GetDlgItem(CommandExplain), 1);
    for (QWidget* button : Controls(ViewButtons())) {
        button->setFixedHeight(LineHeight);
        line->addWidget(button);
    }
    column->addLayout(line);
    return panel;
}

QWidget* CDlgProAtrrib::MakeDefectPanel() {
    auto* parts = m_parts = new QSplitter(Qt::Vertical, this);
    parts->setChildrenCollapsible(false);
    parts->setHandleWidth(6);
    parts->addWidget(MakeListPanel(this, m_defects, Controls(DefectButtons()), ButtonWidth()));
    parts->addWidget(m_all);
    parts->addWidget(m_pictures);
    for (int i = 0; i < parts->count(); ++i) {
        parts->setStretchFactor(i, 1);
    }
    m_all->hide();
    m_pictures->hide();
    return parts;
}

QWidget* CDlgProAtrrib::MakeReviewPanel() {
    auto* panel = new QSplitter(Qt::Horizontal, this);
    panel->setChildrenCollapsible(false);
    panel->setHandleWidth(6);
    auto* video = new QWidget(panel);
    auto* picture = new QVBoxLayout(video);
    picture->setContentsMargins(0, 0, 0, 0);
    picture->setSpacing(0);
    picture->addWidget(m_player, 1);
    picture->addWidget(m_codingLine);
    panel->addWidget(video);
    panel->addWidget(MakeDefectPanel());
    // The list has all its columns if that leaves half of the width; of more room the picture gets most.
    panel->setStretchFactor(0, 2);
    panel->setStretchFactor(1, 1);
    m_review = panel;
    return panel;
}

void CDlgProAtrrib::ChooseSize() {
    resize(FirstSize);
    const QSize screen = this->screen()->availableSize();
    if (screen.width() > FirstSize.width() && screen.height() > FirstSize.height()) {
        setWindowState(windowState() | Qt::WindowMaximized);
    }
}

// Above stand as many sections as a small screen has room for, on large ones a third of the height. Below,
// the list of defects has all its columns if that leaves half of the width; what a wide screen leaves beside
// the picture is the work's.
void CDlgProAtrrib::SplitReview() {
    const int rows = m_sections->header()->height() +
                     LeastSections * std::max(m_sections->sizeHintForRow(0), LineHeight) +
                     m_sections->horizontalScrollBar()->sizeHint().height() + 2 * m_sections->frameWidth();
    const int height = m_panels->height() - m_panels->handleWidth();
    const int upper = std::max(rows + LineHeight + 2, height / 3 - LineHeight);
    m_panels->setSizes({upper, height - upper});

    const int wanted = m_defects->FullWidth() + ButtonWidth() + m_review->handleWidth();
    const int least = std::min(wanted, m_review->width() / 2);
    const int picture = (height - upper) * 16 / 9;
    const int defects = std::max(least, m_review->width() - picture);
    m_review->setSizes({m_review->width() - defects, defects});
    m_parts->setSizes({(height - upper) * 2 / 5, (height - upper) * 2 / 5, (height - upper) * 2 / 5});
}

namespace {

QVariantMap WidthsOf(const CListCtrl& list) {
    QVariantMap widths;
    for (const auto& [column, width] : list.UserWidths()) {
        widths.insert(QString::number(column), width);
    }
    return widths;
}

void SetWidths(CListCtrl& list, const QVariantMap& widths) {
    for (auto width = widths.begin(); width != widths.end(); ++width) {
        list.SetUserWidth(width.key().toInt(), width.value().toInt());
    }
}

}  // namespace

void CDlgProAtrrib::KeepLayout() const {
    const auto keep = [this](const char* name, const QVariant& value) {
        KeepUserSetting(ScreenKey(*this, name), value);
    };
    keep("Window", saveGeometry());
    keep("Panels", m_panels->saveState());
    keep("Review", m_review->saveState());
    keep("Parts", m_parts->saveState());
    keep("SectionColumns", WidthsOf(*m_sections));
    keep("DefectColumns", WidthsOf(*m_defects));
    keep("AllColumns", WidthsOf(*m_all));
    keep("AllDefects", !m_all->isHidden());
    keep("Pictures", !m_pictures->isHidden());
    keep("Strip", !m_strip->isHidden());
}

void CDlgProAtrrib::RestoreLayout() {
    const auto kept = [this](const char* name) { return UserSetting(ScreenKey(*this, name)); };
    (void)restoreGeometry(kept("Window").toByteArray());
    SetWidths(*m_sections, kept("SectionColumns").toMap());
    SetWidths(*m_defects, kept("DefectColumns").toMap());
    SetWidths(*m_all, kept("AllColumns").toMap());
    const QVariant pictures = kept("Pictures");
    m_pictures->setVisible(pictures.isValid() ? pictures.toBool() : screen()->size().width() >= WideScreen);
    m_all->setVisible(kept("AllDefects").toBool());
    const QVariant strip = kept("Strip");
    m_strip->setVisible(strip.isValid() ? strip.toBool() : screen()->size().height() >= HighScreen);
    ShowPanels();
}

bool CDlgProAtrrib::RestoreSplits() {
    bool known = true;
    for (const auto& [splitter, name] :
         {std::pair(m_panels, "Panels"), std::pair(m_review, "Review"), std::pair(m_parts, "Parts")}) {
        known = splitter->restoreState(UserSetting(ScreenKey(*this, name)).toByteArray()) && known;
    }
    return known;
}
