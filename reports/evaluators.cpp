#include "reports/evaluators.h"

#include <iterator>
#include <unordered_set>

#include "assessment/projectstatistics.h"
#include "reports/CReportDocument.h"
#include "reports/CReportSource.h"
#include "reports/reporttexts.h"
#include "reports/xmlelements.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbRec.h"

namespace {

struct ChosenSections {
    std::vector<SectionRecords> Sections;
    int OfProject = 0;  // how many there are to choose from
};

bool ReadChosen(CDbRec& database, const CArrID& selectedIds, ChosenSections& chosen) {
    CTestingDataArray sections;
    if (!database.ReadTestings(sections)) {
        return false;
    }
    chosen.OfProject = sections.GetSize();
    const std::unordered_set<std::uint32_t> selected(selectedIds.begin(), selectedIds.end());
    const CHostFiles::CLookOnce look(HostFiles());
    for (const _TESTING_DATA& section : sections) {
        if (!selected.contains(static_cast<std::uint32_t>(section.ID))) {
            continue;
        }
        SectionRecords& entry = chosen.Sections.emplace_back();
        entry.Section = section;
        if (!database.ReadRecords(section.ID, entry.Records, true)) {
            return false;
        }
    }
    return true;
}

struct RatingNames {
    const char* Average;
    const char* Max;
    const char* Level;
    const char* Density;
    const char* Index;
    const char* Description;
};
constexpr RatingNames NamesJG = {"avgJG", "maxJG", "levelJG", "smJG", "riJG", "EvaluatethisJG"};
constexpr RatingNames NamesGN = {"avgGN", "maxGN", "levelGN", "smGN", "riGN", "EvaluatethisGN"};
constexpr std::ptrdiff_t FirstRatingJG = 5;  // columns of a section's row
constexpr std::ptrdiff_t FirstRatingGN = 11;

using RowStart = std::vector<std::string>::const_iterator;

void SetRating(CReportElement& element, const RatingNames& names, RowStart first) {
    SetTexts(element, {{names.Average, first[0]},
                       {names.Max, first[1]},
                       {names.Level, first[2]},
                       {names.Density, first[3]},
                       {names.Index, first[4]},
                       {names.Description, first[5]}});
}

// `row` is the section's row in the table.
void AddSection(CReportElement& evaluates, int number, const SectionGrade& grade, RowStart row) {
    CReportElement& element = AddElement(evaluates, NumberedName("Evaluate", number));
    SetTexts(element, {{"strStartWell", grade.Section.StartWell},
                       {"strEndWell", grade.Section.EndWell},
                       {"name", row[0]},
                       {"dia", row[2]},
                       {"length", row[3]},
                       {"mar", row[4]},
                       {"start", ""},
                       {"end", ""},
                       {"strRIDesp", grade.Result.EvaluatethisJG}});
    if (grade.Result.countJG != 0) {
        SetRating(element, NamesJG, row + FirstRatingJG);
    }
    if (grade.Result.countGN != 0) {
        SetRating(element, NamesGN, row + FirstRatingGN);
    }
}

void AddRecords(CReportElement& projectInfo, int number, const CRecDataArray& records,
                const CDbRec& database) {
    CReportElement& section = AddElement(projectInfo, NumberedName("EvaluateDefeat", number));
    for (const _REC_DATA& record : records) {
        const std::string_view fullName = FullDefectName(database, record.DefectCode);
        const bool normal = IsNormalName(fullName);
        SetTexts(AddElement(section, "Tablel456"),
                 {{"strFullName", normal ? "-" : std::string(fullName)},
                  {"Length", LengthText(record)},
                  {"pos", ClockText(record)},
                  {"strDefectLevel", normal ? "-" : FormatInt(record.DefectLevel)}});
    }
}

// The outer bracket of the first sentence opens full-width and closes half-width.
void SetSummary(CReportElement& describe, CReportElement& defeatDescribe, const ProjectSummary& summary) {
    const std::string total = FormatInt(summary.Sections);
    const std::string structural = FormatInt(summary.StructuralSections);
    const std::string functional = FormatInt(summary.FunctionalSections);
    const std::string both = FormatInt(summary.BothSections);
    SetTexts(describe,
             {{"JGtd_num", structural},
              {"GNtd_num", functional},
              {"bothJGGN_num", both},
              {"gdNUMall", total},
              {"describeALL", "本次共评估" + total + "段管道，其中" + FormatInt(summary.WithRecords) +
                                  "段管道存在缺陷（结构性缺陷管道" + structural + "段，功能性缺陷管道" +
                                  functional + "段，另有" + both + "段管道同时存在结构性与功能性缺陷)," +
                                  FormatInt(summary.NoDefectSections()) + "段管道未发现缺陷，详见下表："}});
    const std::string sumJG = FormatInt(summary.SumJG);
    const std::string sumGN = FormatInt(summary.SumGN);
    const std::string sum = FormatInt(std::int64_t{summary.SumJG} + std::int64_t{summary.SumGN});
    SetTexts(defeatDescribe,
             {{"sumJG", sumJG},
              {"sumGN", sumGN},
              {"DefeatDescribeStr", "本次共评估" + total + "段管道，其中存在缺陷" + sum + "处（结构性缺陷" +
                                        sumJG + "处，功能性缺陷" + sumGN + "处），详见下表："}});
}

using RowMaker = std::vector<std::string> (*)(const std::vector<SectionGrade>&);

bool EvaluateGroups(CDbRec& database, ReportLists& lists, const CArrID& selectedIds, float K, float T,
                    ScoringRoute route, RowMaker makeRows) {
    ChosenSections chosen;
    if (!ReadChosen(database, selectedIds, chosen)) {
        return false;
    }
    lists.SectionRows = makeRows(GradeSections(route, std::move(chosen.Sections), K, T));
    return true;
}

}  // namespace

bool EvaluateProject(CDbRec& database, CReportDocument& document, ReportLists& lists,
                     const CArrID& selectedIds, float K, float T) {
    ChosenSections chosen;
    if (!ReadChosen(database, selectedIds, chosen)) {
        return false;
    }
    const std::vector<SectionGrade> grades =
        GradeSections(ScoringRoute::National, std::move(chosen.Sections), K, T);
    ProjectStatistics statistics = MakeProjectStatistics(grades);

    CReportElement& projectInfo = document.ProjectInfo();
    CReportElement& evaluates = AddElement(projectInfo, "Evaluates");
    CReportElement& defeatDescribe = AddElement(AddElement(projectInfo, "EvaluatesDefeat"), "DefeatDescribe");
    CReportElement& describe = AddElement(AddElement(projectInfo, "DefeatDescribecount"), "Describe");
    SetInt(describe, "Testingnum", chosen.OfProject);
    RowStart row = statistics.SectionRows.begin() + 1;
    int number = 0;
    for (const SectionGrade& grade : grades) {
        ++number;
        AddSection(evaluates, number, grade, row);
        AddRecords(projectInfo, number, grade.Records, database);
        std::advance(row, FullRowWidth);
    }
    SetSummary(describe, defeatDescribe, statistics.Summary);

    lists.SectionRows = std::move(statistics.SectionRows);
    lists.ShortRows = std::move(statistics.ShortRows);
    lists.LevelCountRows = std::move(statistics.LevelCountRows);
    lists.LevelLengthRows = std::move(statistics.LevelLengthRows);
    return true;
}

bool EvaluateGroupsGZ(CDbRec& database, ReportLists& lists, const CArrID& selectedIds, float K, float T) {
    return EvaluateGroups(database, lists, selectedIds, K, T, ScoringRoute::Guangzhou, MakeGroupRowsGZ);
}

bool EvaluateGroupsSH(CDbRec& database, ReportLists& lists, const CArrID& selectedIds, float K, float T) {
    return EvaluateGroups(database, lists, selectedIds, K, T, ScoringRoute::Shanghai, MakeGroupRowsSH);
}
