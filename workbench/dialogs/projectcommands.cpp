// The review window's commands on the project and the program.
#include <algorithm>
#include <string>
#include <vector>

#include "fieldimport/gpsimport.h"
#include "geo/dialogs/CDlgMap.h"
#include "geo/dialogs/CDlgSelTesting.h"
#include "history/restorepoints.h"
#include "history/steps.h"
#include "reports/CRecExport.h"
#include "reports/dialogs/CDlgExport.h"
#include "reports/excel/excelexport.h"
#include "reports/sonar/sonarreport.h"
#include "reports/sonarchart/sonarchart.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CDlgAbout.h"
#include "shell/dialogs/CDlgSet.h"
#include "shell/dialogs/CWaitCursor.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/catalogue.h"
#include "store/dialogs/CDlgNewPro.h"
#include "store/dialogs/CDlgProject.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

// True if the operator wants to stand on a defect of the map.
bool RunMap(CDbRec& database, const std::string& title, QWidget* parent, std::int32_t& section,
            std::int32_t& record) {
    CDlgMap dialog(database, -1, parent);
    dialog.Title = title;
    if (dialog.DoModal() != CSizeDlg::IdOk) {
        return false;
    }
    section = dialog.ChosenSection;
    record = dialog.ChosenRecord;
    return true;
}

constexpr int MessageKept = 3466;
constexpr int MessageKeptSpace = 3467;
constexpr int MessageClearKept = 3469;

std::string KeptForUndo(CDbRec& database) {
    HistorySpace space;
    try {
        space = ReadHistorySpace(database);
    } catch (const CDbError&) {
        // Clearing it tells why.
    }
    return LoadMessage(MessageKept) + " " +
           FillText(LoadMessage(MessageKeptSpace),
                    {FormatInt(space.Steps),
                     FormatNumber(static_cast<double>(space.PictureBytes) / (1 << 20), 1)});
}

}  // namespace

void OpenProjectCommand(CDlgProAtrrib& window) {
    CDlgProject dialog(1, &window);
    dialog.ExcludedPath = window.ProjectPath();
    dialog.ShowMap = [&dialog](const _PRO_DATA& project, std::int32_t& section, std::int32_t& record) {
        CDbRec database;
        return database.OpenDatabase(project.ProjectPath, CDbPassword) &&
               RunMap(database, project.ProjectName, &dialog, section, record);
    };
    if (dialog.DoModal() == CSizeDlg::IdOk) {
        const CWaitCursor wait;
        if (window.OpenProject(dialog.ChosenProject.ProjectPath) && dialog.ChosenSection >= 0) {
            window.Session().GoTo(dialog.ChosenSection, dialog.ChosenRecord);
        }
    }
}

void ProjectPropertiesCommand(CDlgProAtrrib& window) {
    CRecExport& database = *window.Session().Database();
    _PRO_DATA project;
    if (!database.ReadAttrib(project)) {
        return;
    }
    CDlgNewPro dialog(&window);
    dialog.Edit(project);
    dialog.FirstFocus = window.FormField;
    do {
        if (dialog.DoModal() != CSizeDlg::IdOk || dialog.ProjectName.empty() || dialog.CriterionIndex < 0) {
            return;
        }
        project.ProjectName = dialog.ProjectName;
        project.Comment = dialog.Comment;
        project.ProjectIndex = dialog.ProjectIndex;
        project.Location = dialog.Location;
    } while (!database.WriteAttrib(project, false));
    window.Session().SetNames(project.ProjectName, project.CriterionName);
}

void ImportGpsCommand(CDlgProAtrrib& window) {
    const std::string path = Prompts().PickOpenFile(
        LoadMessage(MessageImportGps),
        {{"Excel File(*.xls;*.xlsx)", {"*.xls", "*.xlsx"}}, {"All Files(*.*)", {"*.*"}}});
    if (path.empty()) {
        return;
    }
    // It changes any number of sections.
    if (!MakeRestorePoint(*window.Session().Database(), PointImport)) {
        return;
    }
    const CReviewSession::Place place = window.Session().GetPlace();
    GpsImport result;
    bool done = false;
    {
        const CWaitCursor wait;
        done = ImportGpsSheet(*window.Session().Database(), path, result);
        window.Session().Return(place);  // the lists show the new positions before the box comes
    }
    if (done) {
        TellGpsImport(result);
    }
}

void ExportExcelCommand(CDlgProAtrrib& window) {
    std::string path;
    {
        const CWaitCursor wait;
        path = ExportInspectionTable(*window.Session().Database());
    }
    if (!path.empty()) {
        OpenInspectionTable(path);
    }
}

void ExportWordCommand(CDlgProAtrrib& window) {
    CRecExport* database = window.Session().Database();
    SonarData sonar;
    if (database != nullptr && LoadSonarData(*database, sonar)) {
        WordReport report;
        {
            const CWaitCursor wait;
            report = WriteSonarReport(sonar, window.Session().ProjectName(), DrawSonarChart);
        }
        if (!report.Path.empty()) {
            OpenWordReport(report.Path);
        }
    } else if (window.Session().Meets(ReviewNeed::Project)) {
        CDlgExport dialog(*window.Session().Database(), &window);
        (void)dialog.DoModal();
        if (dialog.ErrorsWanted) {
            CheckCommand(window);
        }
    }
}

void ExportShapeCommand(CDlgProAtrrib& window) {
    CDlgSelTesting dialog(*window.Session().Database(), &window);
    if (dialog.DoModal() == CSizeDlg::IdOk) {
        dialog.ExportShapeFile(window.Session().ProjectName());
    }
}

void MapCommand(CDlgProAtrrib& window) {
    std::int32_t section = -1;
    std::int32_t record = -1;
    if (RunMap(*window.Session().Database(), window.Session().ProjectName(), &window, section, record)) {
        window.Session().GoTo(section, record);
    }
}

void SettingsCommand(CDlgProAtrrib& window) {
    CDlgSet dialog(&window);
    CRecExport* const database = window.Session().Database();
    if (database != nullptr && !window.Session().IsReadOnly()) {
        dialog.KeptText = [database] { return KeptForUndo(*database); };
        dialog.ClearKept = [database] {
            if (AskBeforeLoss(MessageClearKept)) {
                (void)ForgetHistory(*database);
            }
        };
    }
    (void)dialog.DoModal();
}

void AboutCommand(CDlgProAtrrib& window) {
    (void)CDlgAbout(&window).DoModal();
}

void CloseCommand(CDlgProAtrrib& window) {
    window.Close();
}
