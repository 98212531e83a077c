#include "workbench/dialogs/CDlgProAtrrib.h"

#include <QApplication>
#include <QBoxLayout>
#include <QFrame>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QSplitter>
#include <QTimer>

#include "controls/CButtonST.h"
#include "controls/CWMPPlayer4.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/CPointView.h"
#include "defects/dialogs/rulermessages.h"
#include "reports/CRecExport.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CDlgStart.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/textcodec.h"
#include "workbench/dialogs/reviewcommandtable.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"

namespace {

constexpr int IdCanvas = 1011;
constexpr int IdCriterionName = 1017;
constexpr int IdProjectName = 1022;
constexpr int IdSections = 1031;
constexpr int IdDefects = 1032;
constexpr int IdPlayer = 1034;
constexpr int IdRuler = 1045;

constexpr int TimerSection = 1;
constexpr int TimerDefect = 2;
constexpr int TimerDuration = 3;
constexpr int Deferral = 20;  // milliseconds
constexpr int Poll = 200;

constexpr int RulerMargin = 36;
const std::vector<int> ListButtons = {1021, 1023, 1028, 1079, 1035, 1037, 1030, 1029, 1033};

constexpr QSize FirstSize(1240, 690);  // fits a screen of 1366x768 with its bars

QFrame* MakeLine(QWidget* parent) {
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    return line;
}

}  // namespace

CDlgProAtrrib::CDlgProAtrrib(std::string_view projectPath, QWidget* parent)
    : CSizeDlg(parent), m_firstProject(projectPath) {
    setWindowTitle("判读信息");
    MakeControls();
    MakeButtons();
    PlaceControls();
    SetCaption(900);
}

// The player must not outlive the lists that its callbacks ask.
CDlgProAtrrib::~CDlgProAtrrib() {
    KillTimer(TimerDuration);
    m_player->Controls().Stop();
    m_player->SetURL("");
}

void CDlgProAtrrib::MakeControls() {
    m_sections = AddControl(IdSections, new CTestingList(this));
    m_defects = AddControl(IdDefects, new CDefectList(this));
    m_player = AddControl(IdPlayer, new CWMPPlayer4(this));
    m_canvas = AddControl(IdCanvas, new CCtrlPic(this));
    m_ruler = AddControl(IdRuler, new CPointView(this));
    // Kept for what other windows read from them, never seen.
    for (const int id : {IdCriterionName, IdProjectName}) {
        AddControl(id, new QLineEdit(this))->hide();
    }
    m_canvas->hide();

    m_sections->OnItemChanged = [this] { SetTimer(TimerSection, Deferral); };
    m_sections->OnDoubleClick = [this](int) { OnSectionProperties(); };
    m_sections->OnRightClick = [this](const QPoint& at) { OnSectionMenu(at); };
    m_defects->OnDoubleClick = [this](int) { OnEditDefect(); };
    m_defects->OnItemChanged = [this] { SetTimer(TimerDefect, Deferral); };
    m_player->OnEscape = [this] { OnCancel(); };
    m_sections->setAccessibleName(MessageText(MessageSectionList));
    m_defects->setAccessibleName(MessageText(MessageDefectList));
}

void CDlgProAtrrib::PlaceControls() {
    auto* bar = new QHBoxLayout;
    bar->setSpacing(2);
    for (const int id : ToolbarOrder) {
        if (id == ToolbarLine) {
            bar->addWidget(MakeLine(this));
        } else if (id == ToolbarStretch) {
            bar->addStretch();
        } else {
            bar->addWidget(GetDlgItem(id));
        }
    }
    auto* panels = new QSplitter(Qt::Vertical, this);
    panels->setChildrenCollapsible(false);
    panels->setHandleWidth(6);
    panels->addWidget(MakeSectionPanel());
    panels->addWidget(MakeReviewPanel());
    panels->setStretchFactor(0, 1);
    panels->setStretchFactor(1, 2);
    panels->setSizes({FirstSize.height() / 3, FirstSize.height() * 2 / 3});

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 6, 8, 8);
    column->setSpacing(6);
    column->addLayout(bar);
    column->addWidget(panels, 1);
    column->addWidget(m_ruler);
}

namespace {

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

std::vector<QWidget*> CDlgProAtrrib::Controls(const std::vector<int>& ids) const {
    std::vector<QWidget*> controls;
    for (const int id : ids) {
        controls.push_back(GetDlgItem(id));
    }
    return controls;
}

QWidget* CDlgProAtrrib::MakeSectionPanel() {
    return MakeListPanel(this, m_sections, Controls({1021, 1023, 1028, 1079}),
                         WidestOf(Controls(ListButtons)));
}

QWidget* CDlgProAtrrib::MakeDefectPanel() {
    return MakeListPanel(this, m_defects, Controls({1035, 1037, 1030, 1029, 1033}),
                         WidestOf(Controls(ListButtons)));
}

QWidget* CDlgProAtrrib::MakeReviewPanel() {
    auto* panel = new QSplitter(Qt::Horizontal, this);
    panel->setChildrenCollapsible(false);
    panel->setHandleWidth(6);
    panel->addWidget(m_player);
    panel->addWidget(MakeDefectPanel());
    // More room is the picture's; the list has all its columns if that leaves half of the width.
    panel->setStretchFactor(0, 1);
    panel->setStretchFactor(1, 0);
    m_review = panel;
    return panel;
}

void CDlgProAtrrib::OnInitDialog() {
    m_sections->CreateColumns(false);
    m_defects->CreateColumns(true, false);
    ChooseSize();
    ShowEmptyTexts();
    if (!m_firstProject.empty()) {
        (void)OpenProject(m_firstProject);
    }
    m_ruler->SetMargin(RulerMargin);
    m_ruler->hide();
    UpdateTitle();
    m_sections->setFocus();
    ShowSplash();
}

void CDlgProAtrrib::ChooseSize() {
    resize(FirstSize);
    const QSize screen = this->screen()->availableSize();
    if (screen.width() > FirstSize.width() && screen.height() > FirstSize.height()) {
        setWindowState(windowState() | Qt::WindowMaximized);
    }
}

void CDlgProAtrrib::SplitReview() {
    const int wanted = m_defects->FullWidth() + WidestOf(Controls(ListButtons)) + m_review->handleWidth();
    const int defects = std::min(wanted, m_review->width() / 2);
    m_review->setSizes({m_review->width() - defects, defects});
}

// The layout has given the panels their room by then.
void CDlgProAtrrib::showEvent(QShowEvent* event) {
    CSizeDlg::showEvent(event);
    if (!m_split) {
        m_split = true;  // from then on the operator's
        QTimer::singleShot(0, this, [this] { SplitReview(); });
    }
}

void CDlgProAtrrib::ShowSplash() {
    // A child, which goes with this window at the latest. It comes up after this window, or it would lie
    // behind.
    auto* splash = new CDlgStart(this);
    QTimer::singleShot(0, splash, [splash] { splash->show(); });
}

void CDlgProAtrrib::ShowEmptyTexts() {
    m_sections->SetEmptyText(MessageText(m_database ? MessageNoSections : MessageNoProject));
    const int nothing = m_sections->SelectedRow() < 0 ? MessageChooseSection : MessageNoDefects;
    m_defects->SetEmptyText(MessageText(m_database ? nothing : MessageNoProjectVideo));
    const int noVideo = m_sections->SelectedRow() < 0 ? MessageChooseVideo : MessageNoVideo;
    m_player->SetEmptyText(LoadMessage(m_database ? noVideo : MessageNoProjectVideo));
}

bool CDlgProAtrrib::OpenProject(std::string_view path) {
    auto database = std::make_unique<CRecExport>();
    _PRO_DATA project;
    if (!database->OpenDatabase(path, CDbPassword) || !database->ReadAttrib(project)) {
        return false;
    }
    m_database = std::move(database);
    m_projectPath = path;
    m_projectName = project.ProjectName;
    m_criterionName = project.CriterionName;
    Item<QLineEdit>(IdProjectName)->setText(ToQt(m_projectName));
    Item<QLineEdit>(IdCriterionName)->setText(ToQt(m_criterionName));
    RefreshLists();
    UpdateTitle();
    return true;
}

void CDlgProAtrrib::UpdateTitle() {
    setWindowTitle(ToQt(ReviewTitle(m_projectName, m_criterionName)));
}

void CDlgProAtrrib::RefreshLists() {
    if (m_database) {
        (void)m_sections->Fill(*m_database);  // has told its message
        m_sections->RebuildHasDefects();
        m_sections->viewport()->update();
    }
    ShowEmptyTexts();
    // Also where the list was empty before and is so again.
    SetTimer(TimerSection, Deferral);
}

void CDlgProAtrrib::FillDefects(std::int32_t sectionId) {
    if (m_database) {
        (void)m_defects->Fill(*m_database, sectionId);
    }
}

void CDlgProAtrrib::ReselectSection(int row) {
    m_sections->SelectRow(std::min(row, m_sections->RowCount() - 1));
}

void CDlgProAtrrib::OnTimer(int id) {
    switch (id) {
        case TimerSection:
            KillTimer(TimerSection);
            OnSectionSelected();
            break;
        case TimerDefect:
            KillTimer(TimerDefect);
            OnDefectSelected();
            break;
        case TimerDuration:
            OnDurationPoll();
            break;
        default:
            break;
    }
}

void CDlgProAtrrib::OnSectionSelected() {
    m_defects->Clear();
    const _TESTING_DATA* section = m_sections->SelectedSection();
    ShowEmptyTexts();
    if (section == nullptr) {
        UnloadVideo();
        m_canvas->ClearPicture();
        return;
    }
    FillDefects(section->ID);
    LoadSectionVideo(*section);
}

void CDlgProAtrrib::UnloadVideo() {
    m_player->Controls().Stop();
    m_markers = Markers();
    m_ruler->ClearMarkers();
    KillTimer(TimerDuration);
    m_player->SetURL("");
}

void CDlgProAtrrib::LoadSectionVideo(const _TESTING_DATA& section) {
    m_player->Controls().Stop();
    m_player->SetURL(section.FirstVideo());
    SetTimer(TimerDuration, Poll);
}

void CDlgProAtrrib::OnDefectSelected() {
    const _REC_DATA* record = m_defects->SelectedRecord();
    if (record == nullptr) {
        m_canvas->ClearPicture();
    } else {
        SeekToDefect(*record);
    }
}

void CDlgProAtrrib::SeekToDefect(const _REC_DATA& record) {
    if (!EqualNoCase(record.Video, m_player->URL())) {
        m_player->Controls().Stop();
        m_player->SetURL(record.Video);
        SetTimer(TimerDuration, Poll);
    }
    m_player->Controls().SetCurrentPosition(record.GetPicTime1());
    (void)m_canvas->ShowPicture(record.GetPicture1());
}

void CDlgProAtrrib::OnDurationPoll() {
    const std::string video = m_player->URL();
    const double duration = video.empty() ? 0.0 : m_player->Duration();
    if (duration == 0.0) {
        return;
    }
    KillTimer(TimerDuration);
    m_markers = BuildMarkers(m_defects->Records(), video, duration);
    m_ruler->UpdateMarkers(m_markers.Flags);
}

bool CDlgProAtrrib::OnControlMessage(int message, std::intptr_t wParam, std::intptr_t lParam) {
    switch (message) {
        case WM_RULER_CLICK:
            OnRulerClick(wParam);
            return true;
        case WM_RULER_HOVER:
            return true;
        case WM_LIST_REORDERED:
            Renumber();
            return true;
        default:
            return CSizeDlg::OnControlMessage(message, wParam, lParam);
    }
}

void CDlgProAtrrib::OnRulerClick(std::intptr_t second) {
    if (second < 0 || static_cast<std::size_t>(second) >= m_markers.Rows.size()) {
        return;
    }
    const auto row = static_cast<int>(m_markers.Rows[static_cast<std::size_t>(second)]);
    // A row equal to the count passes, and selects nothing.
    if (row <= m_defects->RowCount()) {
        m_defects->SelectRow(row < m_defects->RowCount() ? row : -1);
        SetTimer(TimerDefect, Deferral);
    }
}

void CDlgProAtrrib::keyPressEvent(QKeyEvent* event) {
    // Esc leaves full screen and asks to quit in one stroke.
    if (event->key() == Qt::Key_Escape) {
        m_player->SetFullScreen(false);
        OnCancel();
        return;
    }
    // Lists leave these to the window, so that the video obeys while the operator walks the lists.
    if ((event->key() == Qt::Key_Space || event->key() == Qt::Key_Comma || event->key() == Qt::Key_Period) &&
        m_player->TakeKey(*event)) {
        return;
    }
    // The base would press a button on Enter.
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        CSizeDlg::keyPressEvent(event);
    }
}

void CDlgProAtrrib::OnCancel() {
    if (AskOkCancel(2182)) {
        m_player->Controls().Stop();
        EndDialog(IdCancel);
    }
}
