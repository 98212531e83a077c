// The review window's commands on the defects of a section.
#include "controls/CWMPPlayer4.h"
#include "defects/dialogs/defectcommands.h"
#include "defects/recordchanges.h"
#include "lists/CDefectList.h"
#include "lists/CTestingList.h"
#include "reports/CRecExport.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CWaitCursor.h"
#include "store/recordtexts.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

// Of the paused picture.
double PausedAt(CDlgProAtrrib& window) {
    window.Player().Controls().Pause();
    return window.Player().Controls().CurrentPosition();
}

}  // namespace

void NewDefectCommand(CDlgProAtrrib& window) {
    if (window.Player().URL().empty()) {
        ShowMessage(2194);
        return;
    }
    const _TESTING_DATA section = *window.SectionList().SelectedSection();
    const double seconds = PausedAt(window);
    (void)NewDefect(*window.Session().Database(), section, window.Player().URL(), seconds, &window);
}

void NewManholeDefectCommand(CDlgProAtrrib& window) {
    const _TESTING_DATA section = *window.SectionList().SelectedSection();
    const double seconds = PausedAt(window);
    (void)NewManholeDefect(*window.Session().Database(), section, window.Player().URL(), seconds, &window);
}

void ResumeCommand(CDlgProAtrrib& window) {
    const FormDraft& draft = window.Resuming;
    if (draft.Kind == SectionDraft) {
        ResumeSection(window, draft);
    } else {
        (void)ResumeDefect(*window.Session().Database(), draft, &window);
    }
    DropDraft(draft);  // also where there was no window for it any more
}

void DeleteDefectCommand(CDlgProAtrrib& window) {
    CRecExport& database = *window.Session().Database();
    if (const auto record = StoredRecord(database, *window.DefectList().SelectedRecord())) {
        (void)DeleteDefect(database, *record);
    }
}

void EditDefectCommand(CDlgProAtrrib& window) {
    if (window.SectionList().SelectedSection() == nullptr) {
        return;
    }
    CRecExport& database = *window.Session().Database();
    const _TESTING_DATA section = *window.SectionList().SelectedSection();
    if (const auto record = StoredRecord(database, *window.DefectList().SelectedRecord())) {
        (void)EditDefect(database, section, *record, &window, window.FormField);
    }
}

void SecondPictureCommand(CDlgProAtrrib& window) {
    if (window.Player().URL().empty()) {
        ShowMessage(2198);
        return;
    }
    const double seconds = PausedAt(window);
    CRecExport& database = *window.Session().Database();
    if (const auto record = StoredRecord(database, *window.DefectList().SelectedRecord())) {
        const CWaitCursor wait;
        (void)AddSecondPicture(database, *record, DefectName(database, record->DefectCode),
                               window.Player().URL(), seconds);
    }
}
