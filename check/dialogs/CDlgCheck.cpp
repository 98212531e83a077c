#include "check/dialogs/CDlgCheck.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <set>
#include <utility>

#include "assessment/explain/dialogs/gradechoice.h"
#include "check/dialogs/CDlgMends.h"
#include "check/dialogs/CDlgReason.h"
#include "check/mends.h"
#include "check/numbertext.h"
#include "check/rules.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/bringtofront.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageTitle = 3843;
constexpr int MessageFilter = 3844;
constexpr int MessageWaivedToo = 3845;
constexpr int MessageWaive = 3846;
constexpr int MessageTakeBack = 3847;
constexpr int MessageMend = 3848;
constexpr int MessageGoTo = 3849;
constexpr int MessageClose = 3470;
constexpr int MessageCounts = 3853;
constexpr int MessageFilesLeft = 3854;
constexpr int MessageReading = 3855;
constexpr int MessageNothing = 3856;
constexpr int MessageNoMend = 3868;
constexpr int MessagePickFolder = 3866;

constexpr std::chrono::milliseconds Slice{8};
constexpr int WhileBusy = 200;     // milliseconds between looks
constexpr int WhileFiles = 40;     // the same
constexpr int LongestWait = 1500;  // milliseconds until findings are shown though files are left
constexpr QSize FirstSize(860, 560);

}  // namespace

CDlgCheck::CDlgCheck(QWidget* parent) : CSizeDlg(parent), m_model(new CCheckModel(this)) {
    setModal(false);
    MakeControls();
    connect(&m_timer, &QTimer::timeout, this, [this] { Work(); });
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { UpdateControls(); });
    connect(m_model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& above, int first) {
        // A finding's rule and severity, as they come; what the operator closes stays so.
        const QModelIndex index = m_model->index(first, 0, above);
        if (m_model->RowAt(index) == nullptr) {
            m_tree->expandRecursively(index);
        }
    });
    connect(m_tree, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (m_model->RowAt(index) != nullptr) {
            GoTo();
        }
    });
    const auto filter = [this] {
        Keep([this] { m_model->Filter(m_filter->text(), m_waivedToo->isChecked()); });
    };
    connect(m_filter, &QLineEdit::textChanged, this, filter);
    connect(m_waivedToo, &QCheckBox::toggled, this, filter);
    OnCommand(IdGoTo, [this] { GoTo(); });
    OnCommand(IdWaive, [this] { Waive(); });
    OnCommand(IdMend, [this] { Mend(); });
    m_filter->installEventFilter(this);
    resize(FirstSize);
    UpdateControls();
}

CDlgCheck::~CDlgCheck() = default;

void CDlgCheck::MakeControls() {
    m_tree = AddControl(IdTree, new QTreeView(this));
    m_tree->setModel(m_model);
    m_tree->setUniformRowHeights(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setAllColumnsShowFocus(true);
    m_tree->setExpandsOnDoubleClick(true);
    m_tree->header()->setStretchLastSection(true);
    m_tree->header()->resizeSection(CCheckModel::Text, 400);
    m_tree->header()->resizeSection(CCheckModel::Section, 150);
    m_tree->header()->resizeSection(CCheckModel::Record, 130);
    m_tree->setAccessibleName(MessageText(MessageNothing));
    m_filter = AddControl(IdFilter, new QLineEdit(this));
    m_filter->setPlaceholderText(MessageText(MessageFilter));
    m_filter->setAccessibleName(MessageText(MessageFilter));
    m_filter->setClearButtonEnabled(true);
    m_waivedToo = AddControl(IdWaivedToo, new QCheckBox(MessageText(MessageWaivedToo), this));
    m_advice = AddControl(IdAdvice, new QLabel(this));
    m_advice->setWordWrap(true);
    m_advice->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_advice->setTextFormat(Qt::PlainText);
    m_advice->setMinimumHeight(3 * m_advice->fontMetrics().lineSpacing());
    m_state = AddControl(IdState, new QLabel(this));

    const auto button = [this](int id, int message) {
        auto* made = AddControl(id, new QPushButton(MessageText(message), this));
        made->setAutoDefault(false);
        return made;
    };
    auto* top = new QHBoxLayout;
    top->addWidget(m_filter, 1);
    top->addWidget(m_waivedToo);
    auto* row = new QHBoxLayout;
    row->addWidget(button(IdWaive, MessageWaive));
    row->addWidget(button(IdMend, MessageMend));
    row->addWidget(m_state, 1);
    row->addWidget(button(IdGoTo, MessageGoTo));
    row->addWidget(button(IdCancel, MessageClose));
    Item<QPushButton>(IdGoTo)->setDefault(true);
    auto* column = new QVBoxLayout(this);
    column->addLayout(top);
    column->addWidget(m_tree, 1);
    column->addWidget(m_advice);
    column->addLayout(row);
}

void CDlgCheck::Follow(CDbRec* database, bool canChange) {
    m_canChange = canChange;
    if (database != m_database) {
        Stop();
        m_database = database;
        m_checked.reset();
        m_model->Replace({});
        m_waivers.reset();
    }
    if (database == nullptr) {
        hide();
    } else if (isVisible() && m_checked != database->ChangeCount()) {
        Start();
    }
    UpdateControls();
}

void CDlgCheck::Come() {
    if (m_database == nullptr) {
        return;
    }
    show();
    if (m_checked != m_database->ChangeCount()) {
        Start();
    }
    BringToFront(*this);
    m_tree->setFocus();
}

void CDlgCheck::OnCancel() {
    Stop();
    m_checked.reset();
    hide();
}

void CDlgCheck::Start() {
    if (m_waivers == nullptr) {
        m_waivers = std::make_unique<CWaivers>(m_database->Path());
    }
    Stop();
    _PRO_DATA project;
    if (!m_database->ReadAttrib(project)) {
        return;
    }
    setWindowTitle(ToQt(FillText(LoadMessage(MessageTitle), {project.ProjectName})));
    const GradeChoice choice = KeptGradeChoice(m_database->Path(), FindScoringRoute(project.CriterionName));
    CheckOptions options;
    options.K = choice.K;
    options.T = choice.T;
    options.Media = CheckOptions::Files::Opened;
    options.Memory = m_memory;
    m_run = std::make_unique<CCheckRun>(*m_database, options);
    m_checked = m_database->ChangeCount();
    m_again = !m_model->IsEmpty();
    m_taken = 0;
    m_since.start();
    m_timer.start(0);
    ShowState();
}

void CDlgCheck::Stop() {
    m_timer.stop();
    m_run.reset();
    m_sections.clear();
}

void CDlgCheck::Work() {
    if (IsBlocked(*this)) {
        m_timer.setInterval(WhileBusy);
        return;
    }
    const CCheckRun::State before = m_run->Now();
    const CCheckRun::State now =
        m_run->Work(before == CCheckRun::State::Files ? std::chrono::milliseconds(0) : Slice);
    m_timer.setInterval(now == CCheckRun::State::Files ? WhileFiles : 0);
    if (now == CCheckRun::State::Failed) {
        Stop();
        ShowState();
        return;
    }
    if (before == CCheckRun::State::Reading && now != before) {
        for (const SectionRecords& entry : m_run->Snapshot().Sections) {
            m_sections.emplace(entry.Section.ID, &entry);
        }
    }
    const bool done = now == CCheckRun::State::Done;
    if (now != CCheckRun::State::Reading) {
        TakeFindings(done);
    }
    if (done) {
        m_timer.stop();  // the snapshot stays, for mends
    }
    ShowState();
}

CCheckModel::Row CDlgCheck::MakeRow(const CheckFinding& finding) const {
    CCheckModel::Row row;
    row.Finding = finding;
    if (const auto entry = m_sections.find(finding.Section); entry != m_sections.end()) {
        row.SectionText = ToQt(entry->second->Section.Label());
        const CRecDataArray& records = entry->second->Records;  // by ID
        const auto record =
            std::lower_bound(records.begin(), records.end(), finding.Record,
                             [](const _REC_DATA& one, std::int32_t id) { return one.ID < id; });
        if (finding.Record >= 0 && record != records.end() && record->ID == finding.Record) {
            row.RecordText = ToQt(record->DefectCode + "  " + MetresText(record->DistanceStart) + " m");
        }
    }
    if (const std::string* reason = m_waivers->ReasonOf(finding)) {
        row.ReasonText = ToQt(*reason);
    }
    row.Searched = (ToQt(FindingText(finding)) + ' ' + row.SectionText + ' ' + row.RecordText).toLower();
    return row;
}

void CDlgCheck::TakeFindings(bool whole) {
    if (m_again && !whole && m_since.elapsed() < LongestWait) {
        return;
    }
    const std::vector<CheckFinding>& found = m_run->Findings();
    std::vector<CCheckModel::Row> rows;
    for (std::size_t i = m_taken; i < found.size(); ++i) {
        rows.push_back(MakeRow(found[i]));
    }
    m_taken = found.size();
    if (std::exchange(m_again, false)) {
        Keep([&] { m_model->Replace(std::move(rows)); });
        return;
    }
    const bool first = m_model->IsEmpty();
    m_model->Add(std::move(rows));
    if (first) {
        StandOn(m_model->First());
    }
}

// Whichever keys are held down meanwhile.
void CDlgCheck::StandOn(const QModelIndex& index) {
    m_tree->selectionModel()->setCurrentIndex(
        index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void CDlgCheck::Keep(const std::function<void()>& change) {
    std::set<int> closed;
    for (int i = 0; i < m_model->rowCount(); ++i) {
        const QModelIndex severity = m_model->index(i, 0);
        for (int rule = 0; rule < m_model->rowCount(severity); ++rule) {
            const QModelIndex index = m_model->index(rule, 0, severity);
            if (!m_tree->isExpanded(index)) {
                closed.insert(CCheckModel::RuleAt(index));
            }
        }
    }
    const QModelIndex current = m_tree->currentIndex();
    const int rule = CCheckModel::RuleAt(current);
    const int row = current.row();
    std::optional<CheckFinding> finding;
    if (const CCheckModel::Row* shown = m_model->RowAt(current)) {
        finding = shown->Finding;
    }
    change();
    m_tree->expandAll();
    for (const int number : closed) {
        m_tree->collapse(m_model->IndexOfRule(number));
    }
    QModelIndex next = finding ? m_model->IndexOf(*finding) : m_model->IndexOfRule(rule);
    if (!next.isValid() && rule != 0) {
        const QModelIndex group = m_model->IndexOfRule(rule);
        const int last = m_model->rowCount(group) - 1;
        next = group.isValid() ? m_model->index(std::min(row, last), 0, group) : QModelIndex();
    }
    StandOn(next.isValid() ? next : m_model->First());
    UpdateControls();
}

void CDlgCheck::ShowState() {
    if (m_run == nullptr || m_run->Now() == CCheckRun::State::Reading ||
        m_run->Now() == CCheckRun::State::Checking) {
        m_state->setText(m_run == nullptr ? QString() : MessageText(MessageReading));
        return;
    }
    std::string text = LoadMessage(MessageNothing);
    if (m_model->Count(CheckSeverity::Error) + m_model->Count(CheckSeverity::Warning) +
            m_model->Count(CheckSeverity::Hint) >
        0) {
        text = FillText(LoadMessage(MessageCounts), {std::to_string(m_model->Count(CheckSeverity::Error)),
                                                     std::to_string(m_model->Count(CheckSeverity::Warning)),
                                                     std::to_string(m_model->Count(CheckSeverity::Hint))});
    } else if (m_run->Now() != CCheckRun::State::Done) {
        text = LoadMessage(MessageReading);
    }
    if (m_run->FilesLeft() > 0) {
        text += FillText(LoadMessage(MessageFilesLeft), {std::to_string(m_run->FilesLeft())});
    }
    m_state->setText(ToQt(text));
}

std::vector<CheckFinding> CDlgCheck::Selected() const {
    std::vector<CheckFinding> findings;
    for (const QModelIndex& index : m_tree->selectionModel()->selectedRows()) {
        // What a selected heading stands for needn't be selected itself.
        if (!m_tree->selectionModel()->isSelected(index.parent())) {
            const std::vector<CheckFinding> some = m_model->FindingsAt(index);
            findings.insert(findings.end(), some.begin(), some.end());
        }
    }
    return findings;
}

void CDlgCheck::UpdateControls() {
    const QModelIndex current = m_tree->currentIndex();
    const CCheckModel::Row* row = m_model->RowAt(current);
    const int rule = CCheckModel::RuleAt(current);
    m_advice->setText(rule == 0 ? QString() : ToQt(RuleAdvice(rule)));
    const bool selected = m_tree->selectionModel()->hasSelection();
    EnableControl(IdGoTo, row != nullptr);
    EnableControl(IdWaive, selected && m_waivers != nullptr);
    Item<QPushButton>(IdWaive)->setText(
        MessageText(row != nullptr && !row->ReasonText.isEmpty() ? MessageTakeBack : MessageWaive));
    const bool mend = selected && m_canChange && MendOf(rule) != MendKind::None;
    EnableControl(IdMend, mend);
    GetDlgItem(IdMend)->setToolTip(mend ? QString() : MessageText(MessageNoMend));
}

void CDlgCheck::GoTo() {
    const CCheckModel::Row* row = m_model->RowAt(m_tree->currentIndex());
    if (row != nullptr && OnGoTo) {
        const CheckFinding finding = row->Finding;
        OnGoTo(finding);
    } else if (m_tree->currentIndex().isValid() && m_tree->hasFocus()) {
        m_tree->setExpanded(m_tree->currentIndex(), !m_tree->isExpanded(m_tree->currentIndex()));
    }
}

void CDlgCheck::Waive() {
    const std::vector<CheckFinding> findings = Selected();
    if (findings.empty()) {
        return;
    }
    const CCheckModel::Row* row = m_model->RowAt(m_tree->currentIndex());
    if (row != nullptr && !row->ReasonText.isEmpty()) {
        (void)m_waivers->TakeBack(findings);
    } else {
        CDlgReason dialog(findings.size(), this);
        if (dialog.DoModal() != IdOk) {
            return;
        }
        (void)m_waivers->Waive(findings, dialog.Reason);
    }
    Keep([this] { m_model->Mark(*m_waivers); });
    ShowState();
    m_tree->setFocus();
}

void CDlgCheck::Mend() {
    if (m_run == nullptr || m_run->Now() == CCheckRun::State::Reading ||
        m_run->Now() == CCheckRun::State::Checking || m_checked != m_database->ChangeCount()) {
        // What is proposed must be of the project as it is.
        const CWaitCursor wait;
        Start();
        while (m_run->Now() != CCheckRun::State::Done && m_run->Now() != CCheckRun::State::Files) {
            if (m_run->Work(std::chrono::milliseconds(100)) == CCheckRun::State::Failed) {
                Stop();
                return;
            }
        }
    }
    const CCheckSnapshot& snapshot = m_run->Snapshot();
    std::vector<struct Mend> mends;
    MovedFiles moved;
    if (MendOf(CCheckModel::RuleAt(m_tree->currentIndex())) == MendKind::Moved) {
        const std::string folder = Prompts().PickFolder(LoadMessage(MessagePickFolder));
        if (folder.empty()) {
            return;
        }
        const CWaitCursor wait;
        const MissingPaths paths = FindMissingPaths(snapshot);
        moved = FindMovedFiles(paths.Missing, paths.All, folder);
        mends = ProposeMoved(snapshot, moved.Found);
    } else {
        mends = ProposeMends(snapshot, Selected());
    }
    CDlgMends dialog(snapshot, mends, moved, this);
    if (dialog.DoModal() == IdOk && OnChange) {
        OnChange([&] { (void)ApplyMends(*m_database, snapshot, mends); });
    }
    m_tree->setFocus();
}

// Down leads from what is typed into what it left over.
bool CDlgCheck::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_filter && event->type() == QEvent::KeyPress &&
        dynamic_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
        m_tree->setFocus();
        return true;
    }
    return CSizeDlg::eventFilter(watched, event);
}
