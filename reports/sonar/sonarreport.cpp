#include "reports/sonar/sonarreport.h"

#include "reports/word/CReportRun.h"
#include "shell/paths.h"

namespace {

WordReport MakeReport(const SonarData& data, const SonarChartDrawer& draw,
                      const std::function<std::string(CDocx&)>& save) {
    const CReportRun run;
    CExportSonar report(draw);
    const bool complete = report.ExportSonarReport(GetAppFolder() + "sn.dot", data, run.Folder());
    if (!report.HasDocument()) {
        return {};
    }
    WordReport made{save(report.Document()), false};
    made.Complete = complete && !made.Path.empty();
    return made;
}

}  // namespace

WordReport WriteSonarReport(const SonarData& data, const std::string& projectName,
                            const SonarChartDrawer& draw) {
    return MakeReport(data, draw, [&](CDocx& document) { return SaveWordReport(document, projectName); });
}

WordReport WriteSonarReportTo(const std::string& path, const SonarData& data, const SonarChartDrawer& draw) {
    return MakeReport(data, draw, [&](CDocx& document) { return SaveWordReportTo(document, path); });
}
