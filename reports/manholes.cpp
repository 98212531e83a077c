#include "reports/manholes.h"

#include <span>

#include "reports/tablesort.h"
#include "reports/xmlelements.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr const char* TypeTexts[ManholeTypes] = {"雨水井", "检查井", "连接暗井", "溢流井", "跌水井", "水封井",
                                                 "冲洗井", "沉泥井", "闸门井",   "潮门井", "倒虹管", "其它"};
constexpr const char* UnderRoadTexts[] = {"是", "否"};
constexpr const char* MaterialTexts[] = {"砖砌", "塑料", "钢筋混凝土"};
constexpr const char* CoverMaterialTexts[] = {"铸铁", "塑料", "钢筋混凝土"};

constexpr std::int32_t CountedRoad = 1;

// Codes and the columns that count them.
struct CodeColumn {
    const char* Code;
    std::size_t Column;
};
constexpr std::size_t AllColumn = 0;
constexpr std::size_t RoadColumn = 2;
constexpr CodeColumn CodeColumns[] = {{"JCJ_ZC", 1},    {"JCJ_JGJZQS", 3},   {"JCJ_JNYZW", 4},
                                      {"JCJ_JNYQS", 5}, {"JCJ_JGKTCHAX", 6}, {"JCJ_JSZWTTYCJ", 7}};

std::string TextAt(std::span<const char* const> texts, std::int32_t index) {
    return index >= 0 && index < static_cast<std::int32_t>(texts.size())
               ? texts[static_cast<std::size_t>(index)]
               : "";
}

}  // namespace

ManholeCounts CountManholes(const ReportRecords& records) {
    ManholeCounts counts{};
    for (const ReportRecord& record : records) {
        const _REC_DATA& data = *record.Data;
        if (record.IsDefect() || data.JcjType < 0 || data.JcjType >= static_cast<int>(ManholeTypes)) {
            continue;
        }
        auto& row = counts[static_cast<std::size_t>(data.JcjType)];
        ++row[AllColumn];
        if (data.JcjUnderRoad == CountedRoad) {
            ++row[RoadColumn];
        }
        for (const CodeColumn& fault : CodeColumns) {
            if (EqualNoCase(data.DefectCode, fault.Code)) {
                ++row[fault.Column];
            }
        }
    }
    return counts;
}

std::vector<std::string> WellDefectRows(const ReportRecords& records) {
    constexpr int width = 6;
    std::vector<std::string> rows;
    for (const ReportRecord& record : records) {
        if (record.IsDefect()) {
            continue;
        }
        const _REC_DATA& data = *record.Data;
        rows.insert(rows.end(),
                    {data.JcjNo, TextAt(TypeTexts, data.JcjType), TextAt(UnderRoadTexts, data.JcjUnderRoad),
                     TextAt(MaterialTexts, data.JcjMaterial),
                     TextAt(CoverMaterialTexts, data.JcjCoverMaterial), data.Comment});
    }
    TableSort(rows, width, 0, 1, -1, false, false, false);
    rows.insert(rows.begin(), FormatInt(static_cast<int>(rows.size()) / width));
    return rows;
}

std::vector<std::string> WellTotalRows(const ManholeCounts& counts) {
    std::vector<std::string> rows = {FormatInt(static_cast<int>(ManholeTypes) + 1)};
    std::array<int, ManholeColumns> sums{};
    const auto append = [&](const std::array<int, ManholeColumns>& row) {
        for (const int count : row) {
            rows.push_back(FormatInt(count));
        }
        rows.emplace_back("-");
    };
    for (const auto& row : counts) {
        append(row);
        for (std::size_t i = 0; i < ManholeColumns; ++i) {
            sums[i] += row[i];
        }
    }
    append(sums);
    return rows;
}

void AddManholes(CReportElement& projectInfo, const ManholeCounts& counts) {
    CReportElement& table = AddElement(projectInfo, "Jcjs");
    for (const auto& row : counts) {
        CReportElement& element = AddElement(table, "Jcj");
        for (std::size_t i = 0; i < ManholeColumns; ++i) {
            SetInt(element, NumberedName("icol", static_cast<int>(i)), row[i]);
        }
    }
}
