#include "reports/reportdata.h"

#include <algorithm>
#include <iterator>

#include "reports/CReportDocument.h"
#include "reports/CReportSource.h"
#include "reports/defecttypes.h"
#include "reports/manholes.h"
#include "reports/reporttexts.h"
#include "reports/sectionblocks.h"
#include "reports/xmlelements.h"
#include "shell/language.h"
#include "shell/numbers.h"

namespace {

using TextList = std::vector<std::string>;
using SectionPointers = std::vector<const _TESTING_DATA*>;

std::string WholeText(double value) {
    return FormatInt(Truncated(value));
}

std::string WholeText(float value) {
    return FormatInt(Truncated(static_cast<double>(value)));
}

void Append(TextList& list, std::initializer_list<std::string> texts) {
    list.insert(list.end(), texts);
}

void SetProject(CReportElement& projectInfo, const CReportSource& source) {
    const _PRO_DATA& project = source.Project;
    const _TESTING_DATA& first = source.FirstSection;
    SetTexts(projectInfo, {{"strProjectName", project.ProjectName},
                           {"Commen", project.Comment},
                           {"CriterionName", project.CriterionName},
                           {"Time", first.TestingDate},
                           {"GpsX", WholeText(project.GpsX)},
                           {"GpsY", WholeText(project.GpsY)},
                           {"Location", project.Location},
                           {"checkDate", DateText(first.TestingDate)},
                           {"Reviewer", "ReviewerABC"},
                           {"TestingCompany", first.TestingCompany},
                           {"Tester", first.Tester}});
}

// The format has one place for a picture: of two, the second stands in it.
void AddDefects(CReportElement& projectInfo, const ReportRecords& records) {
    CReportElement& table = AddElement(projectInfo, "Defeats");
    for (const ReportRecord& record : records) {
        const _REC_DATA& data = *record.Data;
        CReportElement& element = AddElement(table, "Defeat");
        SetTexts(element, {{"DefectCode", data.DefectCode},
                           {"DistanceStart", WholeText(data.DistanceStart)},
                           {"DistanceEnd", WholeText(data.DistanceEnd)},
                           {"GpsX", WholeText(data.GpsX)},
                           {"GpsY", WholeText(data.GpsY)}});
        if (!data.Pictures.IsEmpty()) {
            const _PIC_DATA& picture = data.Pictures[std::min(1, data.Pictures.GetUpperBound())];
            SetTexts(element,
                     {{"PicFn1", picture.Picture}, {"TimeInVideo1", WholeText(picture.PicTimeInVideo)}});
        }
    }
}

void CountDefects(const ReportRecords& records, ReportLists& lists) {
    lists.DefectCountsByType.assign(lists.Codes.size(), 0);
    lists.DefectCountsByLevel.assign(Grades, 0);
    for (const ReportRecord& record : records) {
        if (!record.IsDefect()) {
            continue;
        }
        const std::size_t grade = record.Data->DefectLevel;
        if (grade >= 1 && grade <= Grades) {
            ++lists.DefectCountsByLevel[grade - 1];
        }
        if (record.Code >= 0) {
            ++lists.DefectCountsByType[static_cast<std::size_t>(record.Code)];
        }
    }
}

// In metres, added section by section in single precision: sums of a long list differ in the last digit else.
struct TotalLengths {
    float Pipe = 0.0F;
    float Detection = 0.0F;
};

TotalLengths AddSections(CReportElement& projectInfo, const SectionPointers& sections) {
    CReportElement& table = AddElement(projectInfo, "PipeSections");
    TotalLengths totals;
    for (const _TESTING_DATA* section : sections) {
        SetTexts(AddElement(table, "PipeSection"), {{"Name", section->TestingName},
                                                    {"Diameter", section->PipeDiameter},
                                                    {"PipeMaterial", section->PipeMaterial},
                                                    {"PipeLength", section->PipeLength},
                                                    {"DetectionLength", section->DetectionLength}});
        totals.Pipe += static_cast<float>(ParseDouble(section->PipeLength));
        totals.Detection += static_cast<float>(ParseDouble(section->DetectionLength));
    }
    SetTexts(
        AddElement(AddElement(projectInfo, "PipeSectionalls"), "PipeSectionall"),
        {{"TotalPipeLength", WholeText(totals.Pipe)}, {"TotalDetectionLength", WholeText(totals.Detection)}});
    return totals;
}

void AddDefectSentences(CReportElement& projectInfo, const CReportSource& source) {
    const _TESTING_DATA missing;
    CReportElement& table = AddElement(projectInfo, "defeats123");
    for (const ReportRecord& record : source.Records) {
        if (!record.IsDefect()) {
            continue;
        }
        const _REC_DATA& data = *record.Data;
        const _TESTING_DATA& section = record.Section != nullptr ? *record.Section : missing;
        const std::string& name = source.ShortName(record);
        const std::string place = PositionText(data);
        const std::string location =
            "\n(" + FormatInt(data.DirectionStart) + "," + FormatInt(data.DirectionEnd) + ")";
        const std::string grade = FormatInt(data.DefectLevel);
        const std::string sentence =
            "纵向" + place + "m处，环向" + location + "位置存在" + grade + "级" + name + "。";
        const std::string none = "  ";
        SetTexts(AddElement(table, "defeatTesing"),
                 {{"GetSEWellName", record.Section != nullptr ? section.Label() : std::string()},
                  {"Diameter", section.PipeDiameter},
                  {"PipeMaterial", section.PipeMaterial},
                  {"strStartWell", section.StartWell},
                  {"strEndWell", section.EndWell},
                  {"PipeLength", section.PipeLength},
                  {"TestLength", section.DetectionLength},
                  {"Name", name},
                  {"describeJG", data.IsJG() ? sentence : none},
                  {"describeGN", data.IsJG() ? none : sentence},
                  {"place", place},
                  {"location", location},
                  {"level", grade}});
    }
}

void AppendLabels(TextList& strings, const CReportSource& source) {
    const _TESTING_DATA first = source.Sections.IsEmpty() ? _TESTING_DATA() : source.Sections[0];
    Append(strings, {source.Project.ProjectName, source.Project.ProjectIndex, source.Project.Location,
                     DateText(first.TestingDate), first.TestingCompany, first.Tester});
}

void AppendSections(TextList& strings, const SectionPointers& sections, const TotalLengths& totals) {
    const std::string diameter = LoadMessage(2475);
    strings.push_back(FormatOneDecimal(static_cast<double>(sections.size())));
    for (const _TESTING_DATA* section : sections) {
        Append(strings, {section->TestingName, section->Label(),
                         diameter + " " + DiameterText(*section) + " mm, " + section->PipeMaterial,
                         FormatNumber(ParseDouble(section->PipeLength), 2)});
    }
    strings.push_back(FormatOneDecimal(static_cast<double>(totals.Pipe)));
}

void AppendTally(TextList& strings, const ReportLists& lists, const DefectTally& tally) {
    for (std::size_t i = 0; i < lists.Codes.size(); ++i) {
        strings.push_back(lists.Names[i]);
        for (const int count : tally[i]) {
            strings.push_back(FormatInt(count));
        }
    }
}

ReportRecords DefectsOf(const CReportSource& source) {
    ReportRecords defects;
    std::copy_if(source.Records.begin(), source.Records.end(), std::back_inserter(defects),
                 [](const ReportRecord& record) { return record.IsDefect(); });
    return defects;
}

void AppendDefectTable(TextList& strings, const CReportSource& source, ReportRecords defects) {
    std::stable_sort(defects.begin(), defects.end(), [](const ReportRecord& a, const ReportRecord& b) {
        return a.Data->TestingID < b.Data->TestingID;
    });
    strings.push_back(FormatInt(static_cast<std::int64_t>(defects.size())));
    for (const ReportRecord& record : defects) {
        const _REC_DATA& data = *record.Data;
        if (const _TESTING_DATA* section = record.Section) {
            const float distance = data.DistanceStart - section->DistanceStart;
            Append(strings, {section->TestingName, section->Label(), DiameterText(*section),
                             section->PipeMaterial, FormatOneDecimal(static_cast<double>(distance))});
        } else {
            strings.insert(strings.end(), 5, "");
        }
        Append(strings, {PositionText(data), source.ShortName(record) + "\n(" + ClockText(data) + ")",
                         FormatInt(data.DefectLevel), ""});
    }
}

void AppendDefectForms(TextList& strings, const CReportSource& source, const ReportRecords& defects) {
    strings.push_back(FormatInt(static_cast<std::int64_t>(source.Records.size())));
    const std::string missing = LoadMessage(2476);
    const std::string structural = LoadMessage(2477);
    const std::string functional = LoadMessage(2478);
    for (auto record = defects.rbegin(); record != defects.rend(); ++record) {
        const _REC_DATA& data = *record->Data;
        Append(strings, {record->Section != nullptr ? record->Section->Label() : missing,
                         source.ShortName(*record), FormatInt(data.DefectLevel), PositionText(data),
                         data.IsJG() ? structural : functional, data.Comment, data.GetPicture1()});
    }
}

}  // namespace

bool BuildReportData(CDbRec& database, CReportDocument& document, ReportLists& lists,
                     const CArrID& selectedIds, bool fullData) {
    CReportSource source(database);
    if (!source.Read(database, selectedIds, lists.Codes)) {
        return false;
    }
    document.Join();
    CReportElement& projectInfo = document.ProjectInfo();
    const SectionPointers sections = DistinctSections(source.Sections);
    const DefectTally tally = TallyDefects(source.Records, lists.Codes.size());
    const ReportRecords defects = DefectsOf(source);
    const ManholeCounts manholes = CountManholes(source.Records);

    SetProject(projectInfo, source);
    AddDefects(projectInfo, source.Records);
    CountDefects(source.Records, lists);
    const TotalLengths totals = AddSections(projectInfo, sections);
    AddDefectTypes(projectInfo, lists.Codes, tally);
    AddDefectSentences(projectInfo, source);

    lists.ProjectStrings.clear();
    AppendLabels(lists.ProjectStrings, source);
    AppendSections(lists.ProjectStrings, sections, totals);
    AppendTally(lists.ProjectStrings, lists, tally);
    AppendDefectTable(lists.ProjectStrings, source, defects);
    lists.WellPictureRows.clear();
    if (fullData) {
        AddSectionBlocks(projectInfo, source, lists);
        AddManholes(projectInfo, manholes);
    } else {
        AppendDefectForms(lists.ProjectStrings, source, defects);
    }
    lists.WellDefectRows = WellDefectRows(source.Records);
    lists.WellTotalRows = WellTotalRows(manholes);
    return true;
}
