#include "reports/word/wordreport.h"

#include <functional>
#include <optional>

#include "assessment/standards.h"
#include "geo/staticmap/CStaticMap.h"
#include "reports/collectreport.h"
#include "reports/ooxml/COoxmlError.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/documents.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "shell/temporaryfolder.h"

namespace {

constexpr int MessageNotWritten = 3251;
constexpr int MessageNoProgram = 3252;
constexpr const char* Ending = ".docx";

const char* TemplateOf(ScoringRoute route) {
    switch (route) {
        case ScoringRoute::Guangzhou:
            return "GZ.dotx";
        case ScoringRoute::Shanghai:
            return "SH.dotx";
        case ScoringRoute::Chongqing:
            return "CQ.dotx";
        default:
            return "GB.dotx";
    }
}

void Tell(const StatusLine& status, int message) {
    if (status) {
        status(LoadMessage(message));
    }
}

bool FetchMap(const CTestingDataArray& sections, const std::string& picture) {
    if (picture.empty()) {
        return true;
    }
    CStaticMap map;
    for (const _TESTING_DATA& section : sections) {
        (void)map.AddPath(section.GpsXStart, section.GpsYStart, section.GpsXEnd, section.GpsYEnd);
    }
    const bool fetched = map.GetImage(picture);
    const std::string last = GetMapPicturePath();
    (void)HostFiles().DeleteFile(last);
    (void)HostFiles().CopyFile(picture, last, CHostFiles::Existing::Replace);
    return fetched;
}

// The first that fails ends it.
bool AddCharts(CExportWord& report, const ReportLists& lists) {
    return report.CopyTypeChart(lists.DefectCountsByType, lists.Names) &&
           report.PasteChart("chartDefectCount") && report.CopyLevelChart(lists.DefectCountsByLevel) &&
           report.PasteChart("chartLevelCount");
}

// `save` gives the path, or an empty one.
WordReport MakeReport(const CReportRun& run, const std::string& criterionName, const StatusLine& status,
                      const std::function<std::string(CDocx&)>& save) {
    const ScoringRoute route = FindScoringRoute(criterionName);
    CExportWord report;
    if (!report.OpenDocument(GetAppFolder() + TemplateOf(route)) ||
        !report.FillDocument(run.Lists, run.MapPicture(), !IsDensityScoring(route), status)) {
        return {};
    }
    Tell(status, 2159);
    const bool complete = AddCharts(report, run.Lists);
    WordReport made{save(report.Document()), false};
    made.Complete = complete && !made.Path.empty();
    if (made.Complete) {
        Tell(status, 2160);
    }
    return made;
}

}  // namespace

bool CollectWordReport(CRecExport& project, const std::string& criterionName, const ReportOrder& order,
                       CReportRun& run) {
    Tell(order.Status, 2154);
    run.PlanMissing = !FetchMap(order.Sections, run.MapPicture());
    Tell(order.Status, run.PlanMissing ? MessageNoPlan : 2155);
    return CollectReport(project, criterionName, SectionIds(order.Sections), order.K, order.T, run.Lists);
}

std::string GetMapPicturePath() {
    const std::string folder = GetTemporaryFolder();
    return folder.empty() ? folder : folder + "_map.png";
}

WordReport WriteWordReport(const CReportRun& run, const std::string& criterionName,
                           const std::string& projectName, const StatusLine& status) {
    return MakeReport(run, criterionName, status,
                      [&](CDocx& document) { return SaveWordReport(document, projectName); });
}

WordReport WriteWordReportTo(const std::string& path, const CReportRun& run, const std::string& criterionName,
                             const StatusLine& status) {
    return MakeReport(run, criterionName, status,
                      [&](CDocx& document) { return SaveWordReportTo(document, path); });
}

std::string SaveWordReport(CDocx& document, const std::string& projectName) {
    std::string path =
        WriteDocument(projectName, Ending, [&](const CUnixFile& file) { return document.Write(file); });
    if (path.empty()) {
        ShowMessage(MessageNotWritten, "\n" + HostFiles().HostPath(GetDocumentsFolder()));
    }
    return path;
}

std::string SaveWordReportTo(CDocx& document, const std::string& path) {
    if (HostFiles().WriteFile(path, [&](const CUnixFile& file) { return document.Write(file); })) {
        return path;
    }
    ShowMessage(MessageNotWritten, "\n" + HostFiles().HostPath(path));
    return {};
}

void OpenWordReport(const std::string& path) {
    if (!Desktop().OpenFile(path)) {
        ShowMessage(MessageNoProgram, "\n" + HostFiles().HostPath(path));
    }
}
