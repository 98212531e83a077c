#include "apps/docxgenerator/extratables.h"

#include "apps/docxgenerator/CConfigFile.h"
#include "reports/defecttypes.h"
#include "reports/ooxml/CDocx.h"
#include "shell/numbers.h"
#include "shell/paths.h"

namespace {

using TextList = std::vector<std::string>;

constexpr const char* NoValue = "-";
// What the program writes where a reviewer has no name: to be filled by hand.
constexpr const char* NoReviewer = "ReviewerABC";

void SetRow(CDocxTable& table, int row, int firstColumn, const TextList& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
        table.SetCell(row, firstColumn + static_cast<int>(i), texts[i]);
    }
}

// One row each from row 2 on, with its number in column 1. Without any the template's row stays empty.
void FillNumbered(CDocx& document, const char* bookmark, const std::vector<TextList>& rows) {
    CDocxTable table = document.Table(bookmark);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int row = static_cast<int>(i) + 2;
        if (i + 1 < rows.size()) {
            table.InsertRowsBelow(row, 1);
        }
        table.SetCell(row, 1, FormatInt(row - 1));
        SetRow(table, row, 2, rows[i]);
        table.FinishRow(row);
    }
}

std::string WithoutBreaks(std::string text) {
    std::erase(text, '\n');
    return text;
}

// A record or project without a place has both 0.
TextList Coordinates(const ConfigElement& element) {
    const std::string x = ValueOf(element, "GpsX");
    const std::string y = ValueOf(element, "GpsY");
    return x == "0" && y == "0" ? TextList{NoValue, NoValue} : TextList{x, y};
}

void FillProjectData(CDocx& document, const CConfigFile& config) {
    const ConfigElement& project = config.Project();
    const ConfigElement& lengths = config.Part("PipeSectionalls", "PipeSectionall");
    const ConfigElement& counts = config.Part("DefeatDescribecount", "Describe");
    const std::string reviewer = ValueOf(project, "Reviewer");
    const TextList place = Coordinates(project);
    const TextList texts[] = {
        {ValueOf(project, "CriterionName"), ValueOf(project, "Time")},
        {ValueOf(project, "TestingCompany"), ValueOf(project, "Tester")},
        {ValueOf(counts, "gdNUMall"), reviewer == NoReviewer ? std::string() : reviewer},
        {ValueOf(lengths, "TotalPipeLength"), ValueOf(lengths, "TotalDetectionLength")},
        place,
        {ValueOf(project, "Commen")}};
    CDocxTable table = document.Table("tblPrjData");
    int row = 0;
    for (const TextList& pair : texts) {
        ++row;
        for (std::size_t i = 0; i < pair.size(); ++i) {
            table.SetCell(row, static_cast<int>(2 * i) + 2, pair[i]);
        }
    }
}

void FillSummary(CDocx& document, const CConfigFile& config) {
    const ConfigElement& sections = config.Part("DefeatDescribecount", "Describe");
    const ConfigElement& defects = config.Part("EvaluatesDefeat", "DefeatDescribe");
    document.SetText("txtEvaluateSummary", ValueOf(sections, "describeALL"));
    document.SetText("txtDefectSummary", ValueOf(defects, "DefeatDescribeStr"));
    CDocxTable table = document.Table("tblSummary");
    SetRow(table, 2, 1,
           {ValueOf(sections, "Testingnum"), ValueOf(sections, "gdNUMall"), ValueOf(sections, "JGtd_num"),
            ValueOf(sections, "GNtd_num"), ValueOf(defects, "sumJG"), ValueOf(defects, "sumGN")});
    const ConfigElement& all = config.Part("defeatALLS5", "defeatALL5");
    // The first of them is named even if there are none.
    document.SetText("txtMostFrequent",
                     NumberOf(all, "sumlevelALL") == 0 ? NoValue : ValueOf(all, "indexMAXname"));
}

void FillSections(CDocx& document, const CConfigFile& config) {
    std::vector<TextList> rows;
    for (const ConfigSection& section : config.Sections()) {
        const auto data = [&](const char* name) { return ValueOf(*section.Data, name); };
        rows.push_back({data("strTestingName"), section.Label(), data("strPipeType"), data("strPipeMaterial"),
                        data("strPipeDiameter"), data("strLayingTime"), data("strDepthStart"),
                        data("strDepthEnd"), data("strTestingDirection"), data("PIPELENGTH"),
                        data("CHECKLENGTH"), data("checkTime"), data("strTester"), data("strLocation"),
                        data("FileNameVIDEO")});
    }
    FillNumbered(document, "tblSectionData", rows);
}

// The sums of all defects and of all grades, which the common part of the report doesn't have.
void FillTypes(CDocx& document, const CConfigFile& config, const ReportLists& lists) {
    constexpr int firstRow = 3;
    constexpr int firstColumn = 3;
    constexpr int sumColumn = 7;
    CDocxTable table = document.Table("tblDefect");
    int row = firstRow;
    for (const std::string& code : lists.Codes) {
        for (const DefectType& type : KnownDefectTypes()) {
            if (code == type.Code) {
                table.SetCell(row, sumColumn,
                              FormatInt(NumberOf(config.Part(type.Outer, type.Inner), "Levelall")));
            }
        }
        ++row;
    }
    TextList sums;
    for (int level = 1; level <= static_cast<int>(Grades); ++level) {
        const std::string number = FormatInt(level);
        sums.push_back(
            FormatInt(NumberOf(config.Part(("defeatALLS" + number).c_str(), ("defeatALL" + number).c_str()),
                               ("sumlevel" + number).c_str())));
    }
    sums.push_back(FormatInt(NumberOf(config.Part("defeatALLS5", "defeatALL5"), "sumlevelALL")));
    SetRow(table, table.RowCount(), firstColumn, sums);
}

void FillSentences(CDocx& document, const CConfigFile& config) {
    std::vector<TextList> rows;
    for (const ConfigElement* sentence : config.Rows("defeats123")) {
        const auto text = [&](const char* name) { return WithoutBreaks(ValueOf(*sentence, name)); };
        rows.push_back({text("GetSEWellName"), text("Diameter"), text("PipeMaterial"), text("PipeLength"),
                        text("TestLength"), text("Name"), text("place"), text("location"), text("level"),
                        text("describeJG"), text("describeGN")});
    }
    FillNumbered(document, "tblDefectTesting", rows);
}

// A defect of an unknown code has no name.
std::string NameOf(const ConfigRecord& record) {
    const std::string name = ValueOf(*record.Short, "strFullName");
    return name.empty() && record.Defect != nullptr ? "(" + ValueOf(*record.Defect, "DefectCode") + ")"
                                                    : name;
}

std::string PictureNames(const ConfigRecord& record) {
    std::string names = ValueOf(*record.Row, "PicNewName1");
    const std::string second = GetFileName(ValueOf(*record.Row, "pic2"));
    return second.empty() ? names : names.append("\n").append(second);
}

void FillRecords(CDocx& document, const CConfigFile& config) {
    std::vector<TextList> rows;
    for (const ConfigSection& section : config.Sections()) {
        for (const ConfigRecord& record : section.Records) {
            TextList place(5, NoValue);
            if (record.Defect != nullptr) {
                const TextList coordinates = Coordinates(*record.Defect);
                place = {ValueOf(*record.Defect, "DistanceStart"), ValueOf(*record.Defect, "DistanceEnd"),
                         coordinates[0], coordinates[1], ValueOf(*record.Defect, "TimeInVideo1")};
            }
            rows.push_back({ValueOf(*section.Evaluation, "name"), NameOf(record), place[0], place[1],
                            ValueOf(*record.Short, "Length"), ValueOf(*record.Short, "pos"),
                            ValueOf(*record.Short, "strDefectLevel"), place[2], place[3], place[4],
                            PictureNames(record)});
        }
    }
    FillNumbered(document, "tblEvaluateDefects", rows);
}

}  // namespace

void FillExtraTables(CDocx& document, const CConfigFile& config, const ReportLists& lists) {
    FillProjectData(document, config);
    FillSummary(document, config);
    FillSections(document, config);
    FillTypes(document, config, lists);
    FillSentences(document, config);
    FillRecords(document, config);
}
