#include "tests/generator/markedconfig.h"

#include <initializer_list>
#include <map>

#include "reports/defecttypes.h"
#include "shell/paths.h"

namespace {

// Attributes that no reader wants, by element and name; the numbers at the ends of names don't count.
//
// - the file's own numbers of records, and how many pictures one has
// - what only says which class a record is of: it stands in the table of its class
// - what is always empty, or always the same
// - what stands under another name with the same value in every file that the program writes: lists of
// pictures
//   repeat those of the records, the description of a repair stands twice, the manholes of a defect three
//   times
// - whole metres of a defect whose position is told exactly
const std::multimap<std::string, std::string> Unwanted = {{"ProjectInfo", "Reviewer"},
                                                          {"Evaluate", "start"},
                                                          {"Evaluate", "end"},
                                                          {"Evaluate", "EvaluatethisJG"},
                                                          {"Describe", "bothJGGN_num"},
                                                          {"Defeat", "PicFn1"},
                                                          {"Defeat", "DefectCode"},
                                                          {"PipeSection", "DetectionLength"},
                                                          {"defeatTesing", "strStartWell"},
                                                          {"defeatTesing", "strEndWell"},
                                                          {"Tablel", "defectId"},
                                                          {"Tablel", "picnum"},
                                                          {"Tablel", "defeatTYPE"},
                                                          {"Tablel", "sd"},
                                                          {"Picture", "defectId"},
                                                          {"Picture", "picPath"},
                                                          {"Picture", "PicNewName1"}};

using Names = std::initializer_list<const char*>;
using Values = std::map<std::string, std::string>;

class CMarker {
public:
    MarkedConfig Config;

    void Open(const std::string& name) { Config.Xml += "<" + name + ">"; }
    void Close(const std::string& name) { Config.Xml += "</" + name + ">"; }

    // An element with these attributes; those that aren't given a value get one of their own. All are
    // numbers, so that they do wherever one is needed.
    std::string Add(const std::string& element, Names names, const Values& given = {}, bool open = false) {
        Config.Xml += "<" + element;
        std::string first;
        for (const char* name : names) {
            const auto known = given.find(name);
            const std::string value = known != given.end() ? known->second : std::to_string(++m_last);
            first = first.empty() ? value : first;
            Config.Xml += " " + std::string(name) + "=\"" + Escaped(value) + "\"";
            if (!IsUnwanted(element, name) && !value.empty()) {
                Config.Expected.emplace_back(value, element + " " + name);
            }
        }
        Config.Xml += open ? ">" : "/>";
        return first;
    }

    // A value that doesn't show as it is.
    void ExpectInstead(const std::string& value, const std::string& shown) {
        std::erase_if(Config.Expected, [&](const auto& expected) { return expected.first == value; });
        Config.Expected.emplace_back(shown, value);
    }

private:
    static std::string Escaped(const std::string& value) {
        std::string text;
        for (const char c : value) {
            text += c == '<' ? "&lt;" : c == '&' ? "&amp;" : c == '"' ? "&quot;" : std::string(1, c);
        }
        return text;
    }
    static bool IsUnwanted(std::string element, const std::string& name) {
        element.erase(element.find_last_not_of("0123456789") + 1);
        const auto [begin, end] = Unwanted.equal_range(element);
        for (auto at = begin; at != end; ++at) {
            if (at->second == name) {
                return true;
            }
        }
        return false;
    }

    int m_last = 7000000;
};

constexpr Names ShortNames = {"strFullName", "Length", "pos", "strDefectLevel"};
constexpr Names RowNames = {"defectId",   "pos",    "strFullName", "strEvaluateValue", "strDefectLevel",
                            "strComment", "pic1",   "pic2",        "picnum",           "PicNewName1",
                            "defeatTYPE", "Length", "sd"};

// The last section is the one without a row of a defect.
void AddEvaluations(CMarker& marker) {
    marker.Open("Evaluates");
    marker.Add("Evaluate1",
               {"strStartWell", "strEndWell", "name", "dia", "length", "mar", "start", "end", "strRIDesp",
                "avgJG", "maxJG", "levelJG", "smJG", "riJG", "EvaluatethisJG"},
               {{"strStartWell", "井1"}, {"strEndWell", "井2"}, {"name", "同名"}});
    marker.Add("Evaluate2",
               {"strStartWell", "strEndWell", "name", "dia", "length", "mar", "start", "end", "strRIDesp",
                "avgGN", "maxGN", "levelGN", "smGN", "riGN", "EvaluatethisGN"},
               {{"strStartWell", "井3"}, {"strEndWell", "井4"}, {"name", "同名"}});
    marker.Add("Evaluate3",
               {"strStartWell", "strEndWell", "name", "dia", "length", "mar", "start", "end", "strRIDesp"});
    marker.Close("Evaluates");
    marker.Open("EvaluatesDefeat");
    marker.Add("DefeatDescribe", {"sumJG", "sumGN", "DefeatDescribeStr"});
    marker.Close("EvaluatesDefeat");
    marker.Open("DefeatDescribecount");
    marker.Add("Describe", {"Testingnum", "JGtd_num", "GNtd_num", "bothJGGN_num", "gdNUMall", "describeALL"});
    marker.Close("DefeatDescribecount");
    for (const auto& [name, rows] : {std::pair{"EvaluateDefeat1", 2}, {"EvaluateDefeat2", 2}}) {
        marker.Open(name);
        for (int i = 0; i < rows; ++i) {
            // The last has a code that the criterion doesn't know.
            marker.Add(
                "Tablel456", ShortNames,
                name == std::string("EvaluateDefeat2") && i == 1 ? Values{{"strFullName", ""}} : Values());
        }
        marker.Close(name);
    }
    marker.Open("EvaluateDefeat3");
    marker.Add("Tablel456", ShortNames);
    marker.Close("EvaluateDefeat3");
}

// In the order of the records' IDs, which is not that of the sections.
void AddDefects(CMarker& marker) {
    marker.Open("Defeats");
    for (int i = 0; i < 4; ++i) {
        marker.Add("Defeat",
                   {"DefectCode", "DistanceStart", "DistanceEnd", "GpsX", "GpsY", "PicFn1", "TimeInVideo1"});
    }
    marker.Add("Defeat", {"DefectCode", "DistanceStart", "DistanceEnd", "GpsX", "GpsY"},
               {{"DefectCode", "未知码"}});
    marker.ExpectInstead("未知码", "(未知码)");
    marker.Close("Defeats");
    marker.Open("PipeSections");
    for (int i = 0; i < 3; ++i) {
        marker.Add("PipeSection", {"Name", "Diameter", "PipeMaterial", "PipeLength", "DetectionLength"});
    }
    marker.Close("PipeSections");
    marker.Open("PipeSectionalls");
    marker.Add("PipeSectionall", {"TotalPipeLength", "TotalDetectionLength"});
    marker.Close("PipeSectionalls");
}

void AddTypes(CMarker& marker) {
    for (const DefectType& type : KnownDefectTypes()) {
        marker.Open(type.Outer);
        marker.Add(type.Inner, {"level0", "level1", "level2", "level3", "Levelall"});
        marker.Close(type.Outer);
    }
    for (const std::string number : {"1", "2", "3", "4"}) {
        marker.Open("defeatALLS" + number);
        marker.Add("defeatALL" + number, {("sumlevel" + number).c_str()});
        marker.Close("defeatALLS" + number);
    }
    marker.Open("defeatALLS5");
    marker.Add("defeatALL5", {"sumlevelALL", "indexMAXname"});
    marker.Close("defeatALLS5");
    marker.Open("PieCharts");
    for (const DefectType& type : KnownDefectTypes()) {
        marker.Add("PipeSection", {"name", "value"}, {{"name", type.Label}});
    }
    marker.Add("PipeSection", {});
    marker.Close("PieCharts");
}

void AddSentences(CMarker& marker) {
    const Names names = {"GetSEWellName", "Diameter",   "PipeMaterial", "strStartWell", "strEndWell",
                         "PipeLength",    "TestLength", "Name",         "describeJG",   "describeGN",
                         "place",         "location",   "level"};
    marker.Open("defeats123");
    marker.Add("defeatTesing", names, {{"GetSEWellName", "井3 - 井4"}, {"describeJG", "  "}});
    marker.Add("defeatTesing", names,
               {{"GetSEWellName", "井1 - 井2"}, {"describeGN", "  "}, {"location", "(3,9)"}, {"level", "2"}});
    marker.Add("defeatTesing", names, {{"GetSEWellName", "井1 - 井2"}});
    marker.Close("defeats123");
}

void AddTables(CMarker& marker, const std::string& picture1, const std::string& picture2) {
    const Names names = {"strTestingName", "FileNameVIDEO",   "checkTime",
                         "strPipeType",    "strPipeMaterial", "strDepthStart",
                         "strDepthEnd",    "strPipeDiameter", "strTestingDirection",
                         "PIPELENGTH",     "CHECKLENGTH",     "strLayingTime",
                         "xiufu",          "yanghu",          "strTester",
                         "strLocation"};
    marker.Open("TablesBigTotals");
    // That of the section without a form has no index there.
    marker.Add("TablesBigTotal0", names, {{"xiufu", "-"}, {"yanghu", "-"}});
    marker.Add("TablesBigTotal0", names);
    marker.Add("TablesBigTotal1", names);
    marker.Close("TablesBigTotals");
    const auto addPictures = [&](const char* table) {
        marker.Open(table);
        marker.Add("Picture", {"defectId", "picPath", "PicNewName1"});
        marker.Close(table);
    };
    marker.Open("TablesBig0");
    marker.Add("Tablel123", RowNames,
               {{"defectId", "4"},
                {"pic2", ""},
                {"defeatTYPE", "检查井缺陷"},
                {"sd", "0"},
                {"Length", "0.0"},
                {"pos", "0000"}});
    marker.Close("TablesBig0");
    addPictures("Pictures0");
    marker.Open("TablesBig0");
    marker.Add("Tablel123", RowNames,
               {{"defectId", "1"}, {"pic1", "\\lost\\丢失.jpg"}, {"pic2", ""}, {"defeatTYPE", "功能性缺陷"}});
    marker.Add("Tablel123", RowNames,
               {{"defectId", "9"},
                {"strFullName", ""},
                {"pic1", ""},
                {"pic2", ""},
                {"PicNewName1", ""},
                {"defeatTYPE", ""},
                {"sd", "7"},
                {"Length", "0.4"},
                {"pos", "0000"}});
    marker.ExpectInstead("0.4", "7 - 7.4");
    marker.Close("TablesBig0");
    addPictures("Pictures0");
    marker.Open("TablesBig1");
    marker.Add("Tablel123", RowNames,
               {{"defectId", "2"}, {"pic1", picture1}, {"pic2", picture2}, {"defeatTYPE", "结构性缺陷"}});
    marker.ExpectInstead(picture1, "");  // its name is told apart from it
    marker.ExpectInstead(picture2, GetFileName(picture2));
    marker.Add("Tablel123", RowNames,
               {{"defectId", "3"}, {"pic1", ""}, {"pic2", ""}, {"defeatTYPE", "结构性缺陷"}});
    marker.Close("TablesBig1");
    addPictures("Pictures1");
}

}  // namespace

MarkedConfig MakeMarkedConfig(const std::string& picture1, const std::string& picture2) {
    CMarker marker;
    marker.Config.Xml = "<?xml version=\"1.0\" ?>";
    marker.Add("ProjectInfo",
               {"strProjectName", "Commen", "CriterionName", "Time", "GpsX", "GpsY", "Location", "checkDate",
                "Reviewer", "TestingCompany", "Tester"},
               {{"strProjectName", "镕碁 \"A\" <&>"}}, true);
    AddEvaluations(marker);
    AddDefects(marker);
    AddTypes(marker);
    AddSentences(marker);
    AddTables(marker, picture1, picture2);
    marker.Open("Jcjs");
    long long sum = 0;
    for (int type = 0; type < 12; ++type) {
        sum += std::stoll(
            marker.Add("Jcj", {"icol0", "icol1", "icol2", "icol3", "icol4", "icol5", "icol6", "icol7"}));
    }
    marker.Config.FirstManholeSum = std::to_string(sum);
    marker.Close("Jcjs");
    marker.Close("ProjectInfo");
    return marker.Config;
}
