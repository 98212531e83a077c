#include "reports/collectreport.h"

#include "assessment/standards.h"
#include "reports/CRecExport.h"
#include "shell/CPrompts.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t LongestCode = 2;  // bytes of the code page; longer ones are no defects of the pipe

bool Evaluate(CRecExport& project, ScoringRoute route, const CArrID& selectedIds, float K, float T,
              ReportLists& lists) {
    switch (route) {
        case ScoringRoute::Guangzhou:
            return project.EvaluateGroupsGZ(lists, selectedIds, K, T);
        case ScoringRoute::Shanghai:
            return project.EvaluateGroupsSH(lists, selectedIds, K, T);
        default:
            return project.EvaluateProject(lists, selectedIds, K, T);
    }
}

}  // namespace

CArrID SectionIds(const CTestingDataArray& sections) {
    CArrID ids;
    for (const _TESTING_DATA& section : sections) {
        ids.push_back(static_cast<std::uint32_t>(section.ID));
    }
    return ids;
}

void FillReportCodes(const CRecExport& project, ReportLists& lists) {
    lists.Codes.clear();
    lists.Names.clear();
    for (std::size_t i = 0; i < project.DefectCodes.size(); ++i) {
        if (GbkLength(project.DefectCodes[i]) <= LongestCode) {
            lists.Codes.push_back(project.DefectCodes[i]);
            lists.Names.push_back(project.DefectNames[i]);
        }
    }
}

bool CollectReport(CRecExport& project, const std::string& criterionName, const CArrID& selectedIds, float K,
                   float T, ReportLists& lists) {
    lists = ReportLists();
    project.NewReport();
    FillReportCodes(project, lists);
    const ScoringRoute route = FindScoringRoute(criterionName);
    if (!HasEvaluator(route)) {
        ShowMessage(2158, criterionName);
        return false;
    }
    if (!Evaluate(project, route, selectedIds, K, T, lists)) {
        ShowMessage(2157);
        return false;
    }
    return project.BuildReportData(lists, selectedIds, !IsDensityScoring(route));
}
