// The review window's commands on the grade of a section.
#include "assessment/explain/dialogs/CDlgExplain.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/CPrompts.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

void ExplainCommand(CDlgProAtrrib& window) {
    CReviewSession& session = window.Session();
    const ScoringRoute route = FindScoringRoute(session.CriterionName());
    if (!HasEvaluator(route)) {
        ShowMessage(MessageNoScoring);
        return;
    }
    const CTestingDataArray sections = window.SectionList().Sections();
    CDlgExplain dialog(*session.Database(), route, sections, window.SectionList().SelectedSection()->ID,
                       !session.IsReadOnly(), &window);
    (void)dialog.DoModal();
    if (dialog.Section >= 0) {
        session.GoTo(dialog.Section, dialog.Record);
    }
}
