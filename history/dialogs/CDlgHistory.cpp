#include "history/dialogs/CDlgHistory.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "history/dialogs/CDlgRestorePoints.h"
#include "history/dialogs/stepmessages.h"
#include "lists/CListCtrl.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageTitle = 3388;
constexpr int MessageUndone = 3394;
constexpr int MessageNow = 3395;
constexpr int MessageGoTo = 3396;
constexpr int MessagePoints = 3397;
constexpr int MessageEmpty = 3398;
constexpr int MessageCopy = 3399;
constexpr int MessageBeginning = 3400;
constexpr int MessageClose = 3470;

constexpr int Beginning = 0;  // the row's step

struct Column {
    int Heading;
    int Width;
};
constexpr Column Columns[] = {{3389, 150}, {3390, 180}, {3391, 260}, {3392, 100}, {3393, 80}};

constexpr QSize FirstSize(820, 480);

}  // namespace

CDlgHistory::CDlgHistory(CDbRec& database, bool canChange, QWidget* parent)
    : CSizeDlg(parent),
      m_database(database),
      m_canChange(canChange),
      m_steps(AddControl(IdSteps, new CListCtrl(this))),
      m_note(AddControl(IdNote, new QLabel(this))) {
    setWindowTitle(MessageText(MessageTitle));
    m_note->setWordWrap(true);
    m_note->hide();
    auto* points = AddControl(IdPoints, new QPushButton(MessageText(MessagePoints), this));
    auto* goTo = AddControl(IdGoTo, new QPushButton(MessageText(MessageGoTo), this));
    auto* close = AddControl(IdCancel, new QPushButton(MessageText(MessageClose), this));
    points->setAutoDefault(false);
    goTo->setDefault(true);
    auto* row = new QHBoxLayout;
    row->addWidget(points);
    row->addStretch();
    row->addWidget(goTo);
    row->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_note);
    column->addWidget(m_steps, 1);
    column->addLayout(row);

    for (const Column& shown : Columns) {
        m_steps->InsertColumn(MessageText(shown.Heading), shown.Width);
    }
    m_steps->setAccessibleName(MessageText(MessageTitle));
    m_steps->SetEmptyText(MessageText(MessageEmpty));
    m_steps->OnItemChanged = [this] { UpdateControls(); };
    m_steps->OnDoubleClick = [this](int) { GoTo(); };
    OnCommand(IdGoTo, [this] { GoTo(); });
    OnCommand(IdPoints, [this] { ShowPoints(); });
    resize(FirstSize);
}

void CDlgHistory::OnInitDialog() {
    Fill();
    m_steps->setFocus();
}

void CDlgHistory::Fill() {
    History history;
    try {
        history = ReadHistory(m_database);
    } catch (const CDbError& error) {
        ShowFailure(MessageHistoryFailed, error);
    }
    m_note->setVisible(history.Foreign || history.Former);
    m_note->setText(MessageText(MessageCopy));
    m_history = std::move(history.Steps);
    m_steps->DeleteAllRows();
    bool now = false;
    for (auto step = m_history.rbegin(); step != m_history.rend(); ++step) {
        std::string state;
        if (step->Undone) {
            state = LoadMessage(MessageUndone);
        } else if (!now) {
            state = LoadMessage(MessageNow);
            now = true;
        }
        m_steps->AddRow({step->Time, LoadMessage(step->Name), StepPlace(*step), step->Account, state},
                        static_cast<std::int32_t>(step->Number));
        if (!step->Undone && state == LoadMessage(MessageNow)) {
            m_steps->SelectRow(m_steps->RowCount() - 1);
        }
    }
    if (!m_history.empty()) {
        m_steps->AddRow({"", LoadMessage(MessageBeginning), "", "", now ? "" : LoadMessage(MessageNow)},
                        Beginning);
        if (!now) {
            m_steps->SelectRow(m_steps->RowCount() - 1);
        }
    }
    UpdateControls();
}

void CDlgHistory::UpdateControls() {
    const int row = m_steps->SelectedRow();
    const bool here = row >= 0 && m_steps->RowText(row, 4) == LoadMessage(MessageNow);
    EnableControl(IdGoTo, m_canChange && row >= 0 && !here);
}

void CDlgHistory::GoTo() {
    const int row = m_steps->SelectedRow();
    if (row < 0 || !GetDlgItem(IdGoTo)->isEnabled()) {
        return;
    }
    const std::int32_t number = m_steps->ItemData(row);
    bool undo = number == Beginning;
    for (const HistoryStep& step : m_history) {
        undo = undo || (step.Number == number && !step.Undone);
    }
    const StepResult result = [&] {
        const CWaitCursor wait;
        return GoToStep(m_database, number);
    }();
    if (result.Result == StepResult::Outcome::Done && !result.Steps.empty()) {
        Section = result.Steps.back().Section;
        Record = result.Steps.back().Record;
    }
    Fill();
    TellStepResult(result, undo);
}

void CDlgHistory::ShowPoints() {
    CDlgRestorePoints dialog(m_database, m_canChange, this);
    (void)dialog.DoModal();
    if (dialog.TakenBack >= 0) {
        Section = dialog.TakenBack;
        Record = -1;
    }
    OpenPoint = dialog.OpenPoint;
    if (!OpenPoint.empty()) {
        EndDialog(IdCancel);
        return;
    }
    Fill();
}
