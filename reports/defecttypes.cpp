#include "reports/defecttypes.h"

#include <algorithm>
#include <numeric>

#include "reports/xmlelements.h"
#include "shell/textcodec.h"

namespace {

// The spelling of the one inner element is part of the format.
constexpr DefectType DefectTypes[] = {
    {"PL", "defeatPLS", "defeatPL", "破裂"},         {"BX", "defeatBXS", "defeatBX", "变形"},
    {"FS", "defeatFSS", "defeatFS", "腐蚀"},         {"CK", "defeatCKS", "defeatCK", "错口"},
    {"QF", "defeatQFS", "defeatQF", "起伏"},         {"TJ", "defeatTJS", "defeatTJ", "脱节"},
    {"TL", "defeatTLS", "defeatTL", "接口材料脱落"}, {"AJ", "defeatAJS", "defeatAJ", "支管暗接"},
    {"CR", "defeatCRS", "defeatCR", "异物穿入"},     {"SL", "defeatSLS", "defeatSL", "渗漏"},
    {"CJ", "defeatCJS", "defeatCJ", "沉积"},         {"JG", "defeatJGS", "ddefeatJG", "结垢"},
    {"ZW", "defeatZWS", "defeatZW", "障碍物"},       {"CQ", "defeatCQS", "defeatCQ", "残墙、坝根"},
    {"SG", "defeatSGS", "defeatSG", "树根"},         {"FZ", "defeatFZS", "defeatFZ", "浮渣"},
};

int SumOf(const GradeCounts& counts) {
    return std::accumulate(counts.begin(), counts.end(), 0);
}

void AddTypes(CReportElement& projectInfo, const std::vector<std::string>& codes, const DefectTally& tally) {
    for (const DefectType& type : DefectTypes) {
        CReportElement& inner = AddElement(AddElement(projectInfo, type.Outer), type.Inner);
        const auto place = std::find_if(codes.begin(), codes.end(), [&](const std::string& code) {
            return EqualNoCase(code, type.Code);
        });
        if (place == codes.end()) {
            continue;
        }
        const GradeCounts& counts = tally[static_cast<std::size_t>(place - codes.begin())];
        for (std::size_t i = 0; i < Grades; ++i) {
            SetInt(inner, NumberedName("level", static_cast<int>(i)), counts[i]);
        }
        SetInt(inner, "Levelall", SumOf(counts));
    }
}

// The place of the largest count among the named defects in the order of the codes, read as a place in the
// table of the defects: so the name is right only while both have the same order.
std::string MostFrequent(const std::vector<int>& sums) {
    const auto place = static_cast<std::size_t>(std::max_element(sums.begin(), sums.end()) - sums.begin());
    return place < sums.size() && place < std::size(DefectTypes) ? DefectTypes[place].Label : "";
}

}  // namespace

std::span<const DefectType> KnownDefectTypes() {
    return DefectTypes;
}

DefectTally TallyDefects(const ReportRecords& records, std::size_t codes) {
    DefectTally tally(codes, GradeCounts{});
    for (const ReportRecord& record : records) {
        const std::size_t grade = record.Data->DefectLevel;
        if (grade < 1 || grade > Grades) {
            break;
        }
        if (record.Code >= 0) {
            ++tally[static_cast<std::size_t>(record.Code)][grade - 1];
        }
    }
    return tally;
}

void AddDefectTypes(CReportElement& projectInfo, const std::vector<std::string>& codes,
                    const DefectTally& tally) {
    AddTypes(projectInfo, codes, tally);

    GradeCounts totals{};
    for (const GradeCounts& counts : tally) {
        for (std::size_t i = 0; i < Grades; ++i) {
            totals[i] += counts[i];
        }
    }
    for (std::size_t i = 0; i < Grades; ++i) {
        const int number = static_cast<int>(i) + 1;
        CReportElement& outer = AddElement(projectInfo, NumberedName("defeatALLS", number));
        SetInt(AddElement(outer, NumberedName("defeatALL", number)), NumberedName("sumlevel", number),
               totals[i]);
    }
    CReportElement& all = AddElement(AddElement(projectInfo, "defeatALLS5"), "defeatALL5");
    SetInt(all, "sumlevelALL", SumOf(totals));

    CReportElement& pie = AddElement(projectInfo, "PieCharts");
    std::vector<int> sums;
    for (std::size_t i = 0; i < codes.size(); ++i) {
        CReportElement& slice = AddElement(pie, "PipeSection");
        const auto* type =
            std::find_if(std::begin(DefectTypes), std::end(DefectTypes),
                         [&](const DefectType& known) { return EqualNoCase(codes[i], known.Code); });
        if (type != std::end(DefectTypes)) {
            sums.push_back(SumOf(tally[i]));
            SetText(slice, "name", type->Label);
            SetInt(slice, "value", sums.back());
        }
    }
    SetText(all, "indexMAXname", MostFrequent(sums));
}
