#include "reports/sectionblocks.h"

#include <algorithm>

#include "assessment/projectstatistics.h"
#include "reports/reporttexts.h"
#include "reports/tablesort.h"
#include "reports/xmlelements.h"
#include "shell/numbers.h"
#include "shell/paths.h"

namespace {

using TextList = std::vector<std::string>;

constexpr int DefectRowWidth = 8;

// Places of a section's manholes and indexes in its row of the statistics.
constexpr std::size_t FirstLabel = 2;  // behind the number of rows and the first name
constexpr std::size_t IndexJGBehind = 8;
constexpr std::size_t IndexGNBehind = 14;

// The indexes of repair and of maintenance, by manholes. Of two sections between the same ones both show what
// the first was given.
struct SectionIndexes {
    std::string Repair;
    std::string Maintenance;
};

std::unordered_map<std::string, SectionIndexes> IndexesByLabel(const TextList& sectionRows) {
    std::unordered_map<std::string, SectionIndexes> indexes;
    for (std::size_t at = FirstLabel; at + IndexGNBehind < sectionRows.size(); at += FullRowWidth) {
        indexes.try_emplace(sectionRows[at],
                            SectionIndexes{sectionRows[at + IndexJGBehind], sectionRows[at + IndexGNBehind]});
    }
    return indexes;
}

const char* ClassText(const _REC_DATA& record) {
    if (record.IsJG()) {
        return "结构性缺陷";
    }
    if (record.IsGN()) {
        return "功能性缺陷";
    }
    return record.IsJCJ() ? "检查井缺陷" : "";
}

// What the tree and the lists show alike of a record.
struct ShownRecord {
    std::string FullName;
    std::string Score;
    std::string Grade;
    std::string Picture1;
    std::string Picture2;
    std::string Clock;
};

ShownRecord Show(const CReportSource& source, const ReportRecord& record) {
    const std::string_view fullName = source.FullName(record);
    const _REC_DATA& data = *record.Data;
    ShownRecord shown;
    const bool normal = IsNormalName(fullName);
    shown.FullName = normal ? "-" : std::string(fullName);
    shown.Score = normal ? "-" : FormatNumber(static_cast<double>(data.Evaluate), 3);
    shown.Grade = normal ? "-" : FormatInt(data.DefectLevel);
    shown.Picture1 = data.GetPicture1();
    shown.Picture2 = data.GetPicture2();
    shown.Clock = ClockText(data);
    return shown;
}

void AddSectionElement(CReportElement& totals, int number, const _TESTING_DATA& section,
                       const std::string& video, const SectionIndexes& indexes) {
    SetTexts(AddElement(totals, NumberedName("TablesBigTotal", number)),
             {{"strTestingName", section.TestingName},
              {"FileNameVIDEO", video},
              {"checkTime", DateText(section.TestingDate)},
              {"strPipeType", section.PipeType},
              {"strPipeMaterial", section.PipeMaterial},
              {"strDepthStart", section.DepthStart},
              {"strDepthEnd", section.DepthEnd},
              {"strPipeDiameter", section.PipeDiameter},
              {"strTestingDirection", section.TestingDirection},
              {"PIPELENGTH", section.PipeLength},
              {"CHECKLENGTH", section.DetectionLength},
              {"strLayingTime", section.LayingTime},
              {"xiufu", indexes.Repair},
              {"yanghu", indexes.Maintenance},
              {"strTester", section.Tester},
              {"strLocation", section.Location}});
}

void AddRecordElement(CReportElement& table, const _REC_DATA& data, const ShownRecord& shown) {
    CReportElement& element = AddElement(table, "Tablel123");
    SetTexts(element, {{"defectId", FormatInt(data.ID)},
                       {"pos", shown.Clock},
                       {"strFullName", shown.FullName},
                       {"strEvaluateValue", shown.Score},
                       {"strDefectLevel", shown.Grade},
                       {"strComment", data.Comment},
                       {"pic1", shown.Picture1},
                       {"pic2", shown.Picture2},
                       {"picnum", FormatInt(data.Pictures.GetSize())}});
    if (!data.Pictures.IsEmpty()) {
        SetText(element, "PicNewName1", GetFileName(shown.Picture1));
    }
    SetTexts(element, {{"defeatTYPE", ClassText(data)},
                       {"Length", LengthText(data)},
                       {"sd", FormatInt(Truncated(static_cast<double>(data.DistanceStart)))}});
}

// The second picture's element has the path of the first and the name of the second.
void AddPictureElements(CReportElement& pictures, const _REC_DATA& data, const ShownRecord& shown) {
    CReportElement& first = AddElement(pictures, "Picture");
    SetTexts(first, {{"defectId", FormatInt(data.ID)}, {"picPath", shown.Picture1}});
    if (!data.Pictures.IsEmpty()) {
        SetText(first, "PicNewName1", GetFileName(shown.Picture1));
    }
    if (data.Pictures.GetSize() > 1) {
        SetTexts(AddElement(pictures, "Picture"), {{"defectId", FormatInt(data.ID)},
                                                   {"picPath", shown.Picture1},
                                                   {"PicNewName1", GetFileName(shown.Picture2)}});
    }
}

void AppendRow(TextList& rows, const _REC_DATA& data, const ShownRecord& shown) {
    rows.insert(rows.end(), {PositionText(data), shown.FullName, shown.Score, shown.Grade, data.Comment,
                             shown.Picture1, shown.Picture2, shown.Clock});
}

void AppendForm(TextList& forms, const _TESTING_DATA& section, const std::string& video,
                const SectionIndexes& indexes, TextList defectRows) {
    // By the text of the position, so that 10 comes before 2.
    TableSort(defectRows, DefectRowWidth, 0, 0, -1, false, false, false);
    const std::string& length =
        section.DetectionLength.empty() ? section.PipeLength : section.DetectionLength;
    forms.insert(forms.end(),
                 {FormatInt(static_cast<int>(defectRows.size()) / DefectRowWidth), section.TestingName, video,
                  section.StartWell, section.EndWell, section.LayingTime, section.DepthStart,
                  section.DepthEnd, section.PipeType, section.PipeMaterial, section.PipeDiameter,
                  section.TestingDirection, section.PipeLength, length, indexes.Repair, indexes.Maintenance,
                  section.Location, DateText(section.TestingDate)});
    std::move(defectRows.begin(), defectRows.end(), std::back_inserter(forms));
}

}  // namespace

void AddSectionBlocks(CReportElement& projectInfo, const CReportSource& source, ReportLists& lists) {
    const auto indexesByLabel = IndexesByLabel(lists.SectionRows);
    std::unordered_map<std::int32_t, ReportRecords> recordsOf;
    for (const ReportRecord& record : source.AllRecords) {
        recordsOf[record.Data->TestingID].push_back(record);
    }

    CReportElement& totals = AddElement(projectInfo, "TablesBigTotals");
    TextList forms;
    int number = 0;
    for (int i = source.Sections.GetUpperBound(); i >= 0; --i) {
        const _TESTING_DATA& section = source.Sections[i];
        const auto known = indexesByLabel.find(section.Label());
        const SectionIndexes indexes = known != indexesByLabel.end() ? known->second : SectionIndexes();
        const std::string video = GetFileName(section.FirstVideo());
        AddSectionElement(totals, number, section, video, indexes);

        CReportElement& table = AddElement(projectInfo, NumberedName("TablesBig", number));
        CReportElement& pictures = AddElement(projectInfo, NumberedName("Pictures", number));
        TextList defectRows;
        for (const ReportRecord& record : recordsOf[section.ID]) {
            const ShownRecord shown = Show(source, record);
            AddRecordElement(table, *record.Data, shown);
            AddPictureElements(pictures, *record.Data, shown);
            AppendRow(record.Data->IsJCJ() ? lists.WellPictureRows : defectRows, *record.Data, shown);
        }
        // The elements of a section without a form have the number of the next one's.
        if (!defectRows.empty()) {
            AppendForm(forms, section, video, indexes, std::move(defectRows));
            ++number;
        }
    }
    lists.ProjectStrings.push_back(FormatInt(number));
    std::move(forms.begin(), forms.end(), std::back_inserter(lists.ProjectStrings));
}
