// The review window's commands on the history of its project.
#include "history/dialogs/CDlgHistory.h"
#include "history/dialogs/stepmessages.h"
#include "history/steps.h"
#include "reports/CRecExport.h"
#include "shell/dialogs/CWaitCursor.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

// The operator stands where the step happened.
void TakeStep(CDlgProAtrrib& window, bool undo) {
    CRecExport& database = *window.Session().Database();
    const StepResult result = [&] {
        const CWaitCursor wait;
        return undo ? UndoSteps(database) : RedoSteps(database);
    }();
    if (result.Result == StepResult::Outcome::Done) {
        window.Session().GoTo(result.Steps.back().Section, result.Steps.back().Record);
        window.Session().ReadNames();
    }
    TellStepResult(result, undo);
}

}  // namespace

void UndoCommand(CDlgProAtrrib& window) {
    TakeStep(window, true);
}

void RedoCommand(CDlgProAtrrib& window) {
    TakeStep(window, false);
}

void HistoryCommand(CDlgProAtrrib& window) {
    CDlgHistory dialog(*window.Session().Database(), !window.Session().IsReadOnly(), &window);
    (void)dialog.DoModal();
    if (!dialog.OpenPoint.empty()) {
        const CWaitCursor wait;
        (void)window.OpenProject(dialog.OpenPoint);
        return;
    }
    if (dialog.Section >= 0) {
        window.Session().GoTo(dialog.Section, dialog.Record);
    }
    window.Session().ReadNames();
}
