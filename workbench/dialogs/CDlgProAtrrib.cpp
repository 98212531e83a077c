#include "workbench/dialogs/CDlgProAtrrib.h"

#include <QApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>
#include <QUrl>

#include "assessment/explain/dialogs/gradechoice.h"
#include "assessment/explain/explanationtext.h"
#include "assessment/explain/projectgrades.h"
#include "bulk/dialogs/CAllDefects.h"
#include "bulk/dialogs/CDlgImport.h"
#include "bulk/dialogs/CFilterBar.h"
#include "check/dialogs/CDlgCheck.h"
#include "controls/CButtonST.h"
#include "controls/CPipeStrip.h"
#include "controls/CWMPPlayer4.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/CPicturePanel.h"
#include "defects/dialogs/CPointView.h"
#include "defects/dialogs/rulermessages.h"
#include "history/steps.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CDlgStart.h"
#include "shell/dialogs/bringtofront.h"
#include "shell/dialogs/projectsettings.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "workbench/coding/dialogs/CCodingLine.h"
#include "workbench/dialogs/CCodingDesk.h"
#include "workbench/dialogs/CRowFilter.h"
#include "workbench/dialogs/reviewcommands.h"
#include "workbench/dialogs/reviewplace.h"

namespace {

constexpr int IdCanvas = 1011;
constexpr int IdCriterionName = 1017;
constexpr int IdProjectName = 1022;
constexpr int IdSections = 1031;
constexpr int IdDefects = 1032;
constexpr int IdPlayer = 1034;
constexpr int IdRuler = 1045;
constexpr int IdFilterLine = 5110;
constexpr int IdAllDefects = 5111;
constexpr int IdStrip = 5112;

constexpr int MessageNothingFound = 3941;

constexpr int RulerMargin = 36;

constexpr const char* ShowLevelsKey = "ShowLevels";

}  // namespace

CDlgProAtrrib::CDlgProAtrrib(std::string_view projectPath, QWidget* parent)
    : CSizeDlg(parent), m_firstProject(projectPath) {
    setWindowTitle("判读信息");
    MakeControls();
    MakeButtons();
    PlaceControls();
    SetCaption(900);
    setAcceptDrops(true);
}

// The player must not outlive the lists that its callbacks ask.
CDlgProAtrrib::~CDlgProAtrrib() {
    StopTimer(Timer::Duration);
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

    m_sections->OnItemChanged = [this] { m_session.OnSectionChanged(); };
    m_sections->OnDoubleClick = [this](int) { Run(CommandSectionProperties); };
    m_sections->OnRightClick = [this](const QPoint& at) { OnSectionMenu(at); };
    m_defects->OnItemChanged = [this] { m_session.OnDefectChanged(); };
    m_defects->OnDoubleClick = [this](int) { Run(CommandEditDefect); };
    for (QWidget* control : std::initializer_list<QWidget*>{m_sections, m_defects, m_ruler}) {
        control->installEventFilter(this);
    }
    m_player->OnEscape = [this] { OnCancel(); };
    for (CListCtrl* list : std::initializer_list<CListCtrl*>{m_sections, m_defects}) {
        list->AllowSorting();
        list->SetNothingFoundText(MessageText(MessageNothingFound));
    }
    m_all = AddControl(IdAllDefects, new CAllDefects(this));
    m_all->SetNothingFoundText(MessageText(MessageNothingFound));
    m_all->OnDoubleClick = [this](int row) {
        const std::pair place(m_all->SectionOf(row), m_all->ItemData(row));
        Asked = [this, place] { m_session.GoTo(place.first, place.second); };
        Run(CommandAskedLook);
    };
    m_all->installEventFilter(this);
    m_pictures = new CPicturePanel(this);
    m_pictures->OnWalk = [this](int step) {
        const int row = m_defects->SelectedRow() + step;
        if (row >= 0 && row < m_defects->RowCount() && !m_running) {
            m_defects->SelectRow(row);
        }
    };
    m_codingLine = new CCodingLine(this);
    m_strip = AddControl(IdStrip, new CPipeStrip(this));
    m_coding = std::make_unique<CCodingDesk>(*this, *m_codingLine, *m_strip);
    m_player->OnEnter = [this](bool control) { Run(control ? CommandCodeLast : CommandCode); };
    m_filterBar = new CFilterBar(this);
    AddControl(IdFilterLine, &m_filterBar->Line());
    m_filter = std::make_unique<CRowFilter>(*this, *m_filterBar);
    m_filter->OnFound = [this] { m_filter->Apply(*m_all); };
    m_levels = new CLevelFiller(*m_sections);
    m_levels->setParent(this);
    m_rememberPlace.callOnTimeout(this, [this] {
        if (!m_running) {
            RememberPlace();
        }
    });
    m_levels->IsBusy = [this] { return m_running; };
    auto* grade = AddControl(CommandExplain, new QPushButton(this));
    grade->setFlat(true);
    grade->setFocusPolicy(Qt::NoFocus);
    grade->setStyleSheet("text-align: left; padding: 2px 4px;");
    grade->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    grade->setToolTip(MessageText(MessageGradeTip));
    OnCommand(CommandExplain, [this] { Run(CommandExplain); });
    // The other usual keys for it.
    AddShortcut("Ctrl+Shift+Z", CommandRedo);
    m_sections->setAccessibleName(MessageText(MessageSectionList));
    m_defects->setAccessibleName(MessageText(MessageDefectList));
}

void CDlgProAtrrib::OnInitDialog() {
    m_sections->CreateColumns(false);
    m_sections->CreateLevelColumns();
    m_sections->ShowLevels(UserSetting(ShowLevelsKey).toBool());
    m_defects->CreateColumns(true, false);
    ChooseSize();
    RestoreLayout();
    ShowState();
    if (!m_firstProject.empty()) {
        (void)OpenProject(m_firstProject);
    }
    m_ruler->SetMargin(RulerMargin);
    m_ruler->hide();
    m_sections->setFocus();
    ShowSplash();
}

// The layout has given the panels their room by then.
void CDlgProAtrrib::showEvent(QShowEvent* event) {
    CSizeDlg::showEvent(event);
    if (!m_split) {
        m_split = true;  // from then on the operator's
        QTimer::singleShot(0, this, [this] {
            if (!RestoreSplits()) {
                SplitReview();
            }
            OfferDrafts();
        });
    }
}

void CDlgProAtrrib::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls() && m_session.Database() != nullptr && !m_session.IsReadOnly()) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void CDlgProAtrrib::dropEvent(QDropEvent* event) {
    std::vector<std::string> paths;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (const auto path = CHostFiles::PathText(FromQt(url.toLocalFile())); path && !path->empty()) {
            paths.push_back(*path);
        }
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // Whoever holds what is dropped waits until this returns.
    QTimer::singleShot(0, this, [this, paths] {
        if (!IsBlocked(*this) && !paths.empty()) {
            Asked = [&] { ImportPaths(*this, paths); };
            Run(CommandAskedChange);
        }
    });
}

void CDlgProAtrrib::ShowSplash() {
    // A child, which goes with this window at the latest. It comes up after this window, or it would lie
    // behind.
    auto* splash = new CDlgStart(this);
    QTimer::singleShot(0, splash, [splash] { splash->show(); });
}

void CDlgProAtrrib::AddShortcut(const char* keys, int id) {
    auto* shortcut = new QShortcut(QKeySequence(keys), this);
    connect(shortcut, &QShortcut::activated, this, [this, id] { Run(id); });
}

// The buttons of the commands that have one. A control whose command isn't built says so.
void CDlgProAtrrib::MakeButtons() {
    for (const ReviewCommand& command : ReviewCommands()) {
        if (command.Bitmap == nullptr) {
            if (command.Shortcut != nullptr) {
                AddShortcut(command.Shortcut, command.Id);
            }
            continue;
        }
        const auto layout =
            command.Size > 24 ? CButtonST::Layout::PictureOverText : CButtonST::Layout::PictureBesideText;
        auto* button = AddControl(command.Id, new CButtonST(layout, this));
        button->SetBitmap(command.Bitmap, command.Size);
        button->setText(ToQt(command.Caption));
        SetCaptions({{command.Id, command.Text}});
        if (command.Handler != nullptr) {
            button->SetShortcut(QKeySequence(command.Shortcut));
            OnCommand(command.Id, [this, id = command.Id] { Run(id); });
        }
        button->installEventFilter(this);
    }
    for (const int id : ViewButtons()) {
        Item<CButtonST>(id)->setCheckable(id != CommandBulkEdit);
    }
    ShowCommands();
}

// What undo and redo would do stands in their tips.
void CDlgProAtrrib::ShowSteps() {
    NextSteps next;
    try {
        if (CRecExport* const database = m_session.Database()) {
            next = ReadNextSteps(*database);
        }
    } catch (const CDbError&) {
        // The commands themselves tell it.
    }
    const auto show = [this](int id, const HistoryStep& step, int none) {
        const bool usable = step.Number != 0 && !m_session.IsReadOnly();
        auto* button = Item<CButtonST>(id);
        button->setEnabled(usable);
        button->SetTip(MessageText(CommandOf(id).Text + TipOffset) + "\n" +
                       (usable ? ToQt(StepTitle(step)) : MessageText(none)));
    };
    show(CommandUndo, next.Undo, MessageNothingToUndo);
    show(CommandRedo, next.Redo, MessageNothingToRedo);
}

CDlgCheck& CDlgProAtrrib::CheckWindow() {
    if (m_check == nullptr) {
        m_check = new CDlgCheck(this);
        ShowCheck();
    }
    return *m_check;
}

CDlgImport& CDlgProAtrrib::ImportWindow() {
    if (m_import == nullptr) {
        m_import = new CDlgImport(this);
        m_import->Follow(ProjectPath());
    }
    return *m_import;
}

void CDlgProAtrrib::ShowCheck() {
    if (m_import != nullptr) {
        m_import->Follow(ProjectPath());
    }
    if (m_check != nullptr) {
        m_check->Follow(m_session.Database(), m_session.Database() != nullptr && !m_session.IsReadOnly());
    }
}

void CDlgProAtrrib::ShowGrade() {
    CRecExport* const database = m_session.Database();
    const _TESTING_DATA* section = SelectedSection();
    const ScoringRoute route = FindScoringRoute(m_session.CriterionName());
    auto* line = Item<QPushButton>(CommandExplain);
    line->setEnabled(database != nullptr && section != nullptr && HasEvaluator(route));
    line->setText({});
    if (database == nullptr) {
        m_levels->Stop();
        return;
    }
    const GradeChoice choice = KeptGradeChoice(database->Path(), route);
    if (section != nullptr && !HasEvaluator(route)) {
        line->setText(MessageText(MessageNoScoring));
    } else if (section != nullptr) {
        if (const auto grade = ReadGrade(*database, route, Sections(), section->ID, choice.K, choice.T)) {
            line->setText(ToQt(GradeLine(*grade, ResultByDistance(route, *grade))));
            m_sections->SetLevels(section->ID, grade->Result.riLevelJG, grade->Result.riLevelGN);
        }
    }
    if (!m_sections->AreLevelsShown() || !HasEvaluator(route)) {
        m_levels->Stop();
        m_levelsOf = {};
        return;
    }
    const std::string project =
        database->Path() + "|" + std::to_string(choice.RowK) + "|" + std::to_string(choice.RowT);
    if (const std::pair state(project, database->ChangeCount()); state != m_levelsOf) {
        m_levelsOf = state;
        m_levels->Start(*database, route, choice.K, choice.T);
    }
}

void CDlgProAtrrib::ShowAllDefects() {
    CQueryRows* const rows = m_all->isHidden() ? nullptr : m_filter->Rows();
    if (rows == nullptr) {
        m_all->Clear();
        m_allOf = {};
        return;
    }
    CRecExport& database = *m_session.Database();
    if (const std::pair state(database.Path(), database.ChangeCount()); state != m_allOf) {
        m_allOf = state;
        const std::int32_t selected = m_all->ItemData(m_all->SelectedRow());
        m_all->Show(database, *rows);
        m_filter->Apply(*m_all);
        (void)m_all->SelectRowOf(selected);
    }
}

void CDlgProAtrrib::ShowPanels() {
    Item<CButtonST>(CommandFind)->setChecked(m_filter->IsOpen());
    Item<CButtonST>(CommandAllDefects)->setChecked(!m_all->isHidden());
    Item<CButtonST>(CommandPictures)->setChecked(!m_pictures->isHidden());
    Item<CButtonST>(CommandStrip)->setChecked(!m_strip->isHidden());
}

void CDlgProAtrrib::ShowCommands() {
    for (const ReviewCommand& command : ReviewCommands()) {
        auto* button = command.Bitmap == nullptr ? nullptr : Item<CButtonST>(command.Id);
        if (button == nullptr) {
            continue;
        }
        const bool barred = command.Changes && m_session.IsReadOnly();
        QString tip = MessageText(command.Text + TipOffset);
        if (command.Handler == nullptr || barred) {
            tip += "\n" + MessageText(command.Handler == nullptr ? MessageNotBuilt : MessageReadOnlyTip);
        }
        button->setEnabled(command.Handler != nullptr && !barred);
        button->SetTip(tip);
    }
    ShowSteps();
}

bool CDlgProAtrrib::OpenProject(std::string_view path) {
    if (!m_session.Open(path)) {
        return false;
    }
    if (m_filter->IsOpen()) {
        m_filterBar->Line().clear();
        m_filter->Close();
    }
    KeepUserSetting(LastProjectKey, ToQt(path));
    StandOn(LastPlace(path));
    ShowAllDefects();
    return true;
}

void CDlgProAtrrib::StandOn(const ReviewPlace& place) {
    const CTestingDataArray& sections = Sections();
    if (!SelectSection(place.Section)) {
        if (sections.GetSize() > 0) {
            (void)SelectSection(sections[sections.GetSize() - 1].ID);
        }
        return;
    }
    if (place.Record < 0 && place.Seconds <= 0) {
        return;
    }
    m_session.FlushSelections();
    if (place.Record >= 0 && SelectRecord(place.Record)) {
        m_session.FlushSelections();
    }
    Seek(place.Seconds);
}

void CDlgProAtrrib::OfferDrafts() {
    for (FormDraft& draft : FindDrafts()) {
        if (!HostFiles().Exists(draft.Project)) {
            DropDraft(draft);
            continue;
        }
        const std::string text =
            FillText(LoadMessage(MessageDraftFound), {draft.Time, GetFileName(draft.Project)});
        if (!Prompts().AskOkCancel(MessageDraftFound, text)) {
            DropDraft(draft);
            continue;
        }
        if (!EqualNoCase(draft.Project, ProjectPath()) && !OpenProject(draft.Project)) {
            continue;  // it stays for the next start
        }
        (void)SelectSection(draft.Section);
        Resuming = std::move(draft);
        Run(CommandResume);
        Resuming = {};
    }
}

void CDlgProAtrrib::UpdateTitle() {
    QString title = ToQt(ReviewTitle(m_session.ProjectName(), m_session.CriterionName()));
    if (m_session.IsReadOnly()) {
        title += " " + MessageText(MessageReadOnlyTitle);
    }
    setWindowTitle(title);
}

void CDlgProAtrrib::Run(int id) {
    const ReviewCommand& command = CommandOf(id);
    if (m_running || command.Handler == nullptr) {
        return;
    }
    m_session.FlushSelections();
    if (!m_session.Meets(command.Needs) || (command.Changes && m_session.IsReadOnly())) {
        return;
    }
    if (command.Question != 0 &&
        !(command.Loses ? AskBeforeLoss(command.Question) : AskOkCancel(command.Question))) {
        return;
    }
    m_running = true;
    const QPointer<QWidget> focus = focusWidget();
    if (command.Needs != ReviewNeed::Nothing) {
        m_session.OfferCopyIfGone();
    }
    const CReviewSession::Place place = m_session.GetPlace();
    command.Handler(*this);
    m_session.Return(place);
    m_filter->Follow();
    ShowAllDefects();
    ShowSteps();
    ShowGrade();
    ShowCheck();
    m_coding->Follow();
    ShowPanels();
    if (FocusAfter != nullptr) {
        FocusAfter->setFocus();
        FocusAfter.clear();
    } else if (focus != nullptr && focus != focusWidget() && focus->isVisible() && focus->isEnabled()) {
        focus->setFocus();
    }
    m_running = false;
}

void CDlgProAtrrib::Close() {
    RememberPlace();
    KeepLayout();
    m_player->Controls().Stop();
    EndDialog(IdCancel);
}

void CDlgProAtrrib::RememberPlace() {
    const _TESTING_DATA* section = SelectedSection();
    if (section == nullptr) {
        return;
    }
    ReviewPlace place;
    place.Section = section->ID;
    if (const _REC_DATA* record = SelectedRecord()) {
        place.Record = record->ID;
    }
    place.Seconds = m_player->Controls().CurrentPosition();
    if (std::pair remembered(ProjectPath(), place); remembered != m_remembered) {
        ::RememberPlace(ProjectPath(), place);
        m_remembered = std::move(remembered);
    }
}

bool CDlgProAtrrib::OnControlMessage(int message, std::intptr_t wParam, std::intptr_t lParam) {
    switch (message) {
        case WM_RULER_CLICK:
            m_session.SelectAtSecond(wParam);
            return true;
        case WM_RULER_HOVER:
            return true;
        case WM_LIST_REORDERED:
            Run(CommandRenumber);
            return true;
        default:
            return CSizeDlg::OnControlMessage(message, wParam, lParam);
    }
}

void CDlgProAtrrib::OnSectionMenu(const QPoint& at) {
    QMenu menu(this);
    menu.setTitle("管道列表");
    QAction* sort = menu.addAction(MessageText(MessageSortByWells));
    // While other rows or another order are seen, nobody could say what it would do.
    const QString why = m_sections->WhyHeld();
    sort->setEnabled(!m_session.IsReadOnly() && why.isEmpty());
    sort->setToolTip(why);
    menu.setToolTipsVisible(!why.isEmpty());
    QAction* levels = menu.addAction(MessageText(MessageShowLevels));
    levels->setCheckable(true);
    levels->setChecked(m_sections->AreLevelsShown());
    QAction* const chosen = menu.exec(at);
    if (chosen == sort) {
        Run(CommandSortByWells);
    } else if (chosen == levels) {
        m_sections->ShowLevels(levels->isChecked());
        KeepUserSetting(ShowLevelsKey, levels->isChecked());
        ShowGrade();
    }
}

// The keys of the player work wherever no text is typed, so that the video obeys while the operator walks the
// lists; Space stays with a button that has the focus.
bool CDlgProAtrrib::TakeKey(const QWidget* focused, const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_Space:
            return qobject_cast<const QAbstractButton*>(focused) == nullptr && m_player->TakeKey(event);
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Comma:
        case Qt::Key_Period:
        case Qt::Key_Plus:
        case Qt::Key_Equal:
        case Qt::Key_Minus:
        case Qt::Key_M:
        case Qt::Key_F:
            return m_player->TakeKey(event);
        case Qt::Key_Delete:
            if (event.modifiers() == Qt::NoModifier && (focused == m_sections || focused == m_defects)) {
                Run(focused == m_sections ? CommandDeleteSection : CommandDeleteDefect);
                return true;
            }
            return false;
        default:
            return false;
    }
}

bool CDlgProAtrrib::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress &&
        TakeKey(static_cast<QWidget*>(watched), *static_cast<QKeyEvent*>(event))) {
        return true;
    }
    return CSizeDlg::eventFilter(watched, event);
}

void CDlgProAtrrib::keyPressEvent(QKeyEvent* event) {
    // Esc leaves full screen and asks to quit in one stroke.
    if (event->key() == Qt::Key_Escape) {
        m_player->SetFullScreen(false);
        OnCancel();
        return;
    }
    if (TakeKey(this, *event)) {
        return;
    }
    // The base would press a button on Enter.
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        CSizeDlg::keyPressEvent(event);
    }
}

void CDlgProAtrrib::OnCancel() {
    Run(IdCancel);
}
