// The review window's commands on sections.
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/dialogs/CProgressDlg.h"
#include "shell/dialogs/qttext.h"
#include "store/dialogs/CDlgNewTesting.h"
#include "store/newsections.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

void NewSectionsCommand(CDlgProAtrrib& window) {
    CDlgNewTesting dialog(&window);
    dialog.NewFlag = 1;
    if (dialog.DoModal() != CSizeDlg::IdOk) {
        return;
    }
    // A command that stopped half way leaves the sections that it has made.
    (void)AddNewSections(*window.Session().Database(), dialog.Sections, [&](const std::string& video) {
        return std::make_unique<CProgressDlg>(&window, MessageText(MessageCopying) + "\n" + ToQt(video));
    });
}

void DeleteSectionCommand(CDlgProAtrrib& window) {
    const _TESTING_DATA section = *window.SectionList().SelectedSection();
    window.Session().UnloadVideo();
    (void)window.Session().Database()->DeleteTesting(section);
}

void SectionPropertiesCommand(CDlgProAtrrib& window) {
    CDlgNewTesting dialog(&window);
    dialog.Sections = {*window.SectionList().SelectedSection()};
    if (dialog.DoModal() == CSizeDlg::IdOk && !dialog.Sections.empty()) {
        (void)window.Session().Database()->UpdateTesting(dialog.Sections.front());
    }
}

void CalculateGpsCommand(CDlgProAtrrib& window) {
    (void)window.Session().Database()->RecalcRecordGps(window.SectionList().SelectedSection()->ID);
}

void SortByWellsCommand(CDlgProAtrrib& window) {
    window.SectionList().SortByWells();
    RenumberCommand(window);
}

void RenumberCommand(CDlgProAtrrib& window) {
    const CTestingList& list = window.SectionList();
    std::vector<std::int32_t> ids;
    for (int row = 0; row < list.RowCount(); ++row) {
        ids.push_back(list.ItemData(row));
    }
    if (!ids.empty() && window.Session().Database() != nullptr) {
        (void)RenumberSections(*window.Session().Database(), ids);
    }
}
