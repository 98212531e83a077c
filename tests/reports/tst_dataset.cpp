// The data set of a report. Expected values are worked out by hand from the project in project.h, and
// config.xml beside this file was written by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "reports/CRecExport.h"
#include "reports/collectreport.h"
#include "reports/tablesort.h"
#include "shell/language.h"
#include "shell/textcodec.h"
#include "tests/reports/project.h"
#include "tests/support/CTestFolder.h"

namespace {

using Texts = std::vector<std::string>;

constexpr const char* Chongqing = "重庆规范";

class Dataset : public testing::Test {
protected:
    CTestFolder m_folder;
};

// With the text of message 2339 in place of "{2339}".
std::string WithMessages(std::string text) {
    for (std::size_t at = text.find('{'); at != std::string::npos; at = text.find('{', at)) {
        const std::size_t end = text.find('}', at);
        text.replace(at, end - at + 1, LoadMessage(std::stoi(text.substr(at + 1, end - at - 1))));
    }
    return text;
}

void ExpectSameLines(const std::string& actual, const std::string& expected) {
    std::istringstream actualLines(actual);
    std::istringstream expectedLines(expected);
    std::string actualLine;
    std::string expectedLine;
    while (std::getline(expectedLines, expectedLine)) {
        std::getline(actualLines, actualLine);
        ASSERT_EQ(Utf8FromGbk(actualLine), Utf8FromGbk(expectedLine));
    }
    EXPECT_EQ(actual, expected);
}

TEST_F(Dataset, TheDataFileIsWrittenToTheLastByte) {
    CReportProject project(m_folder, "CQ");
    ReportLists lists;
    ASSERT_TRUE(CollectReport(project.Database, Chongqing, project.Chosen, 6, 10, lists));
    const std::string path = m_folder.Path("config.xml");
    ASSERT_TRUE(project.Database.SaveReport(path));
    const std::string expected = ReadHostFile(std::filesystem::path(DROVANE_TEST_FILES) / "config.xml");
    ExpectSameLines(m_folder.ReadFile("config.xml"), GbkFromUtf8(WithMessages(expected)));

    // The next report begins anew.
    ASSERT_TRUE(CollectReport(project.Database, Chongqing, project.Chosen, 6, 10, lists));
    EXPECT_EQ(project.Database.ReportBytes(), m_folder.ReadFile("config.xml"));
}

// The part that reports of every standard begin with.
Texts CommonStrings() {
    Texts strings = {"工程<1> \"A&B\" 'x'", "GC-7", "重庆😀", "2026/03/15", "乙公司", "李四", "3.0"};
    const std::string diameter = LoadMessage(2475);
    const auto add = [&](std::initializer_list<std::string> texts) { strings.insert(strings.end(), texts); };
    add({"一号", "W1 - W2", diameter + " 800 mm, 混凝土管", "50.5"});
    add({"三号", "W3 - W4", diameter + " 1000 mm, 铸铁", "20.75"});
    add({"五号", "W5 - W6", diameter + " 600 mm, ", "30"});
    add({"101.3"});
    // Up to the manhole; the bx behind it is in no count.
    for (const char* name : {"破裂", "变形", "腐蚀", "错口", "起伏", "脱节", "接口材料脱落", "支管暗接",
                             "异物穿入", "渗漏", "沉积", "结垢", "障碍物", "残墙、坝根", "树根", "浮渣"}) {
        const std::string text = name;
        add({name, text == "沉积" ? "1" : "0", text == "破裂" ? "1" : "0", text == "障碍物" ? "1" : "0",
             "0"});
    }
    add({"4"});
    add({"一号", "W1 - W2", "800", "混凝土管", "0.7", "1.23", "破裂\n(0309)", "2", ""});
    add({"一号", "W1 - W2", "800", "混凝土管", "19.5", "20 - 21", "变形\n(1002)", "4", ""});
    add({"一号复测", "W1 - W2", "0", "PVC", "10.0", "10", "沉积\n(0606)", "1", ""});
    add({"一号复测", "W1 - W2", "0", "PVC", "2.0", "2 - 4.5", "障碍物\n(0507)", "3", ""});
    return strings;
}

TEST_F(Dataset, ListsOfFullScoring) {
    CReportProject project(m_folder, "CQ");
    ReportLists lists;
    ASSERT_TRUE(CollectReport(project.Database, Chongqing, project.Chosen, 6, 10, lists));

    Texts strings = CommonStrings();
    const auto add = [&](std::initializer_list<std::string> texts) { strings.insert(strings.end(), texts); };
    add({"3"});
    add({"1", "五号", "", "W5", "W6", "", "", "", "", "", "600", "", "30", "30", "-", "-", "", ""});
    add({"0 - 30", "-", "-", "-", "无缺陷", "", "", "0000"});
    add({"3", "一号复测", "", "W1", "W2", "", "", "", "", "PVC", "", "", "49", "48.9", "9.25", "-", "",
         "2026-03-16"});
    add({"10", "(CJ)沉积", "0.5", "1", "<泥>", "\\pic\\c.jpg", "", "0606"});
    add({"2 - 4.5", "(ZW)障碍物", "5", "3", "", "", "", "0507"});
    add({"7 - 7.4", "", "0", "1", "", "", "", "0012"});
    add({"2", "一号", "一.avi", "W1", "W2", "2001", "1.2", "1.4", "雨水", "混凝土管", "800", "顺流", "50.5",
         "50.5", "9.25", "-", "望川路", "2026/03/15"});
    add({"1.23", "(PL)破裂", "2", "2", "渗水", "\\pic\\a.jpg", "\\pic\\b.jpg", "0309"});
    add({"20 - 21", "(BX)变形", "10", "4", "", "", "", "1002"});
    EXPECT_EQ(lists.ProjectStrings, strings);

    EXPECT_EQ(lists.WellPictureRows,
              (Texts{"0", "(JCJ_JGKTCHAX)井盖框突出或凹陷", "0", "0", "下沉", "\\pic\\m.jpg", "", "0000"}));
    EXPECT_EQ(lists.WellDefectRows, (Texts{"2", "", "雨水井", "是", "砖砌", "铸铁", "",  //
                                           "H1", "检查井", "否", "钢筋混凝土", "铸铁", "下沉"}));
    ASSERT_EQ(lists.WellTotalRows.size(), 1U + 13U * 9U);
    EXPECT_EQ(Texts(lists.WellTotalRows.begin(), lists.WellTotalRows.begin() + 19),
              (Texts{"13",                                         //
                     "1", "0", "0", "0", "0", "0", "0", "0", "-",  //
                     "1", "0", "1", "0", "0", "0", "1", "0", "-"}));
    EXPECT_EQ(Texts(lists.WellTotalRows.end() - 9, lists.WellTotalRows.end()),
              (Texts{"2", "0", "1", "0", "0", "0", "1", "0", "-"}));

    CDWordArray byType(16, 0);
    byType[0] = byType[1] = byType[10] = byType[12] = 1;
    EXPECT_EQ(lists.DefectCountsByType, byType);
    EXPECT_EQ(lists.DefectCountsByLevel, (CDWordArray{1, 1, 1, 1}));
    EXPECT_EQ(lists.SectionRows.size(), 1U + 4U * 17U);
    EXPECT_EQ(lists.ShortRows.size(), 1U + 4U * 6U);
    EXPECT_EQ(lists.LevelCountRows.size(), 10U);
    EXPECT_EQ(lists.LevelLengthRows.size(), 25U);
}

TEST_F(Dataset, ListsOfDensityScoring) {
    CReportProject project(m_folder, "GZ");
    ReportLists lists;
    ASSERT_TRUE(CollectReport(project.Database, LoadMessage(2151), project.Chosen, 10, 0, lists));

    Texts strings = CommonStrings();
    const auto add = [&](std::initializer_list<std::string> texts) { strings.insert(strings.end(), texts); };
    add({"6"});  // of every kind, though only four rows follow
    add({"W1 - W2", "变形", "4", "20 - 21", LoadMessage(2477), "", ""});
    add({"W1 - W2", "障碍物", "3", "2 - 4.5", LoadMessage(2478), "", ""});
    add({"W1 - W2", "沉积", "1", "10", LoadMessage(2478), "<泥>", "\\pic\\c.jpg"});
    add({"W1 - W2", "破裂", "2", "1.23", LoadMessage(2477), "渗水", "\\pic\\a.jpg"});
    EXPECT_EQ(lists.ProjectStrings, strings);
    EXPECT_EQ(lists.WellDefectRows.size(), 13U);
    EXPECT_TRUE(lists.WellPictureRows.empty());
    ASSERT_EQ(lists.SectionRows.size(), 1U + 3U * 15U);
    EXPECT_EQ(lists.SectionRows[0], "3");
    EXPECT_TRUE(lists.ShortRows.empty());

    const std::string file = Utf8FromGbk(project.Database.ReportBytes());
    EXPECT_NE(file.find("    <defeats123>"), std::string::npos);
    for (const char* name : {"Evaluate", "TablesBig", "Pictures", "Jcjs"}) {
        EXPECT_EQ(file.find(name), std::string::npos) << name;
    }

    CTestFolder other;
    CReportProject shanghai(other, "SH");
    ASSERT_TRUE(CollectReport(shanghai.Database, LoadMessage(2152), shanghai.Chosen, 10, 0, lists));
    EXPECT_EQ(lists.SectionRows.size(), 1U + 3U * 14U);
}

TEST(TableSortTest, RowsGoByTheirKeys) {
    Texts list = {"b",   "2",  "x1",  //
                  "A",   "10", "x2",  //
                  "a",   "2",  "x3",  //
                  "B",   "-3", "x4",  //
                  "_",   "-9", "x5",  //
                  "B",   "2",  "x6",  //
                  "rest"};
    TableSort(list, 3, 0, 1, -1, false, false, false);
    EXPECT_EQ(list, (Texts{"_", "-9", "x5",  //
                           "A", "10", "x2",  // as text before 2
                           "a", "2", "x3",   //
                           "B", "-3", "x4",  //
                           "b", "2", "x1",   // equal keys keep their order
                           "B", "2", "x6",   //
                           "rest"}));
    TableSort(list, 3, 1, 2, 0, true, false, true);
    EXPECT_EQ(list, (Texts{"B", "-3", "x4",  // the sign comes first, then the digits
                           "_", "-9", "x5",  //
                           "b", "2", "x1",   //
                           "a", "2", "x3",   //
                           "B", "2", "x6",   //
                           "A", "10", "x2",  //
                           "rest"}));
    // In the code page 啊 (B0A1) is before 一 (D2BB), in Unicode behind it.
    Texts chinese = {"一", "啊"};
    TableSort(chinese, 1, 0, 0, -1, false, false, false);
    EXPECT_EQ(chinese, (Texts{"啊", "一"}));
}

}  // namespace
