// The review window's commands on sections.
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CProgressDlg.h"
#include "shell/dialogs/qttext.h"
#include "store/dialogs/CDlgNewTesting.h"
#include "store/newsections.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

constexpr int MessageDraftWithout = 3473;

FormDraft DraftOf(CDlgProAtrrib& window, std::int32_t section) {
    FormDraft draft;
    draft.Kind = SectionDraft;
    draft.Project = window.ProjectPath();
    draft.Section = section;
    return draft;
}

void AddSections(CDlgProAtrrib& window, FormDraft draft) {
    CDlgNewTesting dialog(&window);
    dialog.NewFlag = 1;
    dialog.Draft = std::move(draft);
    if (dialog.DoModal() != CSizeDlg::IdOk) {
        return;
    }
    // A command that stopped half way leaves the sections that it has made.
    (void)AddNewSections(*window.Session().Database(), dialog.Sections, [&](const std::string& video) {
        return std::make_unique<CProgressDlg>(&window, MessageText(MessageCopying) + "\n" + ToQt(video));
    });
}

void ChangeSection(CDlgProAtrrib& window, const _TESTING_DATA& section, FormDraft draft) {
    CDlgNewTesting dialog(&window);
    dialog.Sections = {section};
    dialog.FirstFocus = window.FormField;
    dialog.Draft = std::move(draft);
    if (dialog.DoModal() == CSizeDlg::IdOk && !dialog.Sections.empty()) {
        (void)window.Session().Database()->UpdateTesting(dialog.Sections.front());
    }
}

}  // namespace

void ResumeSection(CDlgProAtrrib& window, const FormDraft& draft) {
    if (draft.Section < 0) {
        AddSections(window, draft);
        return;
    }
    for (const _TESTING_DATA& section : window.SectionList().Sections()) {
        if (section.ID == draft.Section) {
            ChangeSection(window, section, draft);
            return;
        }
    }
    ShowMessage(MessageDraftWithout);
}

void NewSectionsCommand(CDlgProAtrrib& window) {
    AddSections(window, DraftOf(window, -1));
}

void DeleteSectionCommand(CDlgProAtrrib& window) {
    const _TESTING_DATA section = *window.SectionList().SelectedSection();
    window.Session().UnloadVideo();
    (void)window.Session().Database()->DeleteTesting(section);
}

void SectionPropertiesCommand(CDlgProAtrrib& window) {
    const _TESTING_DATA section = *window.SectionList().SelectedSection();
    ChangeSection(window, section, DraftOf(window, section.ID));
}

void CalculateGpsCommand(CDlgProAtrrib& window) {
    (void)window.Session().Database()->RecalcRecordGps(window.SectionList().SelectedSection()->ID);
}

void SortByWellsCommand(CDlgProAtrrib& window) {
    if (!window.SectionList().WhyHeld().isEmpty()) {
        return;  // its menu says so
    }
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
