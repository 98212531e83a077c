#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "reports/word/CExportWord.h"
#include "tests/reports/documents.h"
#include "tests/reports/samplereport.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

struct Route {
    const char* Template;
    bool Full;
    int Assessed;  // data columns of the table of assessments
};
void PrintTo(const Route& route, std::ostream* out) {
    *out << route.Template;
}

// The numbers of cells of all rows.
using Rows = std::vector<int>;

Rows Same(int rows, int cells) {
    return Rows(static_cast<std::size_t>(rows), cells);
}

Rows Headed(Rows head, const Rows& rest) {
    head.insert(head.end(), rest.begin(), rest.end());
    return head;
}

Rows RowsOf(CDocx& document, const std::string& bookmark) {
    const CDocxTable table = document.Table(bookmark);
    Rows rows;
    for (int row = 1; row <= table.RowCount(); ++row) {
        rows.push_back(table.CellCount(row));
    }
    return rows;
}

std::string Column(CDocx& document, const std::string& bookmark, int column, int first, int last) {
    const CDocxTable table = document.Table(bookmark);
    std::string texts;
    for (int row = first; row <= last; ++row) {
        texts += table.CellText(row, column) + " ";
    }
    return texts;
}

class Template : public testing::TestWithParam<Route> {
protected:
    std::string Name(const std::string& extension) const { return GetParam().Template + extension; }
    void Fill(const std::string& name, const std::string& target);
    CTestFolder m_folder;
};

// What the filled report must hold, read back.
void ExpectFilled(CDocx& document, bool full) {
    EXPECT_EQ(document.BookmarkText("lbProjectName"), "东山路 <A&B> 排水管道检测");
    EXPECT_EQ(document.BookmarkText("lbCorporation"), "管道检测公司");
    CDocxTable project = document.Table("tblPrjInfo");
    EXPECT_EQ(project.CellText(2, 2), "东山区");
    EXPECT_EQ(project.CellText(6, 2), "王工");
    CDocxTable list = document.Table("OLE_LINK1");
    EXPECT_EQ(list.RowCount(), SampleSections + 2);
    EXPECT_EQ(list.CellText(SampleSections + 1, 1), "4");
    EXPECT_EQ(list.CellText(SampleSections + 1, 5), "检测管段-4.4");
    EXPECT_EQ(list.CellText(SampleSections + 2, 1), "合计");
    EXPECT_EQ(list.CellText(SampleSections + 2, 5), "987.6");
    CDocxTable all = document.Table("tblDefectAll");
    EXPECT_EQ(all.RowCount(), 42);
    EXPECT_EQ(all.CellText(42, 1), "40");
    EXPECT_EQ(all.CellText(42, 10), "一览-40.9");
    CDocxTable assessed = document.Table("tbDefectAssess");
    EXPECT_EQ(assessed.CellText(6, 1), "4");
    EXPECT_EQ(assessed.CellText(6, 3), "评估-4.2");
    EXPECT_EQ(document.Table("tblDefect").CellText(18, 6), "缺陷类型16-1.5");
    EXPECT_EQ(document.Table("tblDefect").CellText(19, 2), "缺陷类型17-1.1");
    if (!full) {
        return;
    }
    EXPECT_EQ(document.Table("wellDefectTotal").CellText(14, 11), "井数-13.9");
    EXPECT_EQ(document.Table("wellDefectList").CellText(4, 7), "井-3.6");
    EXPECT_EQ(document.Table("rILevelTable").CellText(6, 7), "等级-4.6");
    EXPECT_EQ(document.Table("rILevelTotalTable").CellText(11, 3), "比例-10.1");
    CDocxTable lengths = document.Table("rILevelTotalLenTable");
    EXPECT_EQ(lengths.CellText(2, 2), "长度-1.1");
    EXPECT_EQ(lengths.CellText(7, 5), "长度-13.1");
    EXPECT_EQ(lengths.CellText(9, 3), "长度-14.1");
    CDocxTable wells = document.Table("tblJcjDefectTotal");
    EXPECT_EQ(wells.RowCount(), 5);
    EXPECT_EQ(wells.CellText(2, 6), "图1,2");
    EXPECT_EQ(wells.CellText(3, 5), "说明乙");
    EXPECT_EQ(wells.CellText(3, 6), "图3");
    EXPECT_EQ(wells.CellText(5, 1), "图片文件无法读取：图3\n\n\\none\\lost.jpg\n");
    EXPECT_EQ(wells.CellText(5, 2), "");
}

TEST_P(Template, HasTheLayoutThatReportsFill) {
    const auto [name, full, assessed] = GetParam();
    CDocx document(m_folder.Path(Name(".dotx")));
    std::vector<std::string> texts{"lbProjectName", "lbReportSN", "lbDetectAddress", "lbInspectionDate",
                                   "lbCorporation"};
    std::map<std::string, Rows> tables{{"tblPrjInfo", Same(8, 2)},
                                       {"OLE_LINK1", Same(3, 5)},
                                       {"tblDefect", Headed({3, 6}, Same(16, 6))},
                                       {"tblDefectAll", Headed({6}, Same(2, 10))},
                                       {"tbDefectAssess", Headed({full ? 8 : 11}, Same(2, assessed + 1))}};
    if (full) {
        tables["wellDefectTotal"] = Same(14, 11);
        tables["wellDefectList"] = Same(2, 7);
        tables["rILevelTable"] = Headed({5}, Same(2, 7));
        tables["rILevelTotalTable"] = Same(11, 3);
        tables["rILevelTotalLenTable"] = Headed({1, 2}, Same(10, 5));
        tables["tblDefectDetail_GB"] = {4, 6, 6, 6, 6, 4, 4, 6, 6, 1, 2};
        tables["tblJcjDefectTotal"] = {6, 6, 2};
    } else {
        tables["tblDefectDetail"] = Same(6, 3);
    }
    std::vector<std::string> known{"picMap", "chartDefectCount", "chartLevelCount"};
    if (std::string(name) == "CQ") {
        tables["tblPrjData"] = Headed(Same(5, 4), {2});
        tables["tblDefect"] = Headed({3, 7}, Same(17, 7));
        tables["tblDefectTesting"] = Same(2, 12);
        tables["tblEvaluateDefects"] = Same(2, 12);
        tables["tblSectionData"] = Same(2, 16);
        tables["tblSummary"] = Same(2, 6);
        texts.insert(texts.end(), {"txtEvaluateSummary", "txtDefectSummary", "txtMostFrequent"});
    }
    for (const auto& [bookmark, rows] : tables) {
        EXPECT_EQ(RowsOf(document, bookmark), rows) << bookmark;
        known.push_back(bookmark);
    }
    for (const std::string& bookmark : texts) {
        EXPECT_TRUE(document.BookmarkText(bookmark).starts_with("（")) << bookmark;
        known.push_back(bookmark);
    }
    std::vector<std::string> names = document.BookmarkNames();
    std::sort(names.begin(), names.end());
    std::sort(known.begin(), known.end());
    EXPECT_EQ(names, known);
    EXPECT_EQ(Column(document, "tblDefect", 1, 3, 18), "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 ");
    if (full) {
        EXPECT_EQ(
            Column(document, "wellDefectTotal", 2, 2, 14),
            "雨水井 检查井 连接暗井 溢流井 跌水井 水封井 冲洗井 沉泥井 闸门井 潮门井 倒虹管 其它 合计 ");
        EXPECT_EQ(Column(document, "rILevelTotalTable", 2, 2, 11),
                  "Ⅰ Ⅱ Ⅲ Ⅳ 无结构性缺陷 Ⅰ Ⅱ Ⅲ Ⅳ 无功能性缺陷 ");
        EXPECT_EQ(Column(document, "rILevelTotalLenTable", 2, 4, 7), "Ⅰ Ⅱ Ⅲ Ⅳ ");
        EXPECT_EQ(Column(document, "rILevelTotalLenTable", 2, 9, 12), "Ⅰ Ⅱ Ⅲ Ⅳ ");
    }
    const std::string xml = PartsOf(m_folder.ReadFile(Name(".dotx")))["word/document.xml"];
    EXPECT_EQ(CountOf(xml, R"(orient="landscape")"), std::string(name) == "CQ" ? 2 : 1);
    // One or two rows of each table that has a head.
    EXPECT_EQ(CountOf(xml, "<w:tblHeader/>"), std::string(name) == "CQ" ? 17 : full ? 14 : 7);
}

void Template::Fill(const std::string& name, const std::string& target) {
    const SampleReport sample = MakeSampleReport(m_folder, GetParam().Full, GetParam().Assessed);
    CExportWord report;
    ASSERT_TRUE(report.OpenDocument(m_folder.Path(name)));
    std::vector<std::string> told;
    ASSERT_TRUE(report.FillDocument(sample.Lists, sample.MapPicture, sample.Full,
                                    [&](const std::string& line) { told.push_back(line); }));
    EXPECT_LE(told.size(), 101U);
    EXPECT_NE(told.back().find("100"), std::string::npos) << told.back();
    ASSERT_TRUE(report.CopyTypeChart(sample.Lists.DefectCountsByType, sample.Lists.Names));
    ASSERT_TRUE(report.PasteChart("chartDefectCount"));
    ASSERT_TRUE(report.CopyLevelChart(sample.Lists.DefectCountsByLevel));
    ASSERT_TRUE(report.PasteChart("chartLevelCount"));
    fs::create_directory(m_folder.Host("out"));
    report.Document().Save(m_folder.Path(target));
}

TEST_P(Template, IsFilledAndReadByOthers) {
    Fill(Name(".dotx"), "out/filled.docx");
    const bool full = GetParam().Full;
    // For looking at the pages.
    if (const char* keep = std::getenv("DROVANE_KEEP_REPORTS")) {
        fs::copy_file(m_folder.Host("out/filled.docx"), fs::path(keep) / Name(".docx"),
                      fs::copy_options::overwrite_existing);
    }
    CDocx again(m_folder.Path("out/filled.docx"));
    ExpectFilled(again, full);
    std::map<std::string, std::string> parts = PartsOf(m_folder.ReadFile("out/filled.docx"));
    const std::string xml = parts["word/document.xml"];
    // The map and one picture, the two charts; the placeholder's part stays, but nothing shows it. Pictures
    // of the forms have one size.
    EXPECT_EQ(CountOf(xml, "<a:blip r:embed="), full ? 1 + 16 + 2 : 1 + 6);
    EXPECT_EQ(CountOf(xml, R"(<wp:extent cx="3048000" cy="2438400"/>)"), full ? 18 : 6);
    EXPECT_EQ(CountOf(xml, "<c:chart "), 2);
    EXPECT_EQ(CountOf(parts["word/_rels/document.xml.rels"], "relationships/image"), 3);
    EXPECT_EQ(CountOf(xml, R"(<w:br w:type="page"/>)"), full ? SampleSections - 1 : 2);
    // Of seventeen types five have no defect.
    EXPECT_EQ(CountOf(parts["word/charts/chart1.xml"], "<c:ptCount val=\"12\"/>"), 2);
    EXPECT_NE(parts["word/charts/chart1.xml"].find("<c:v>缺陷类型4</c:v>"), std::string::npos);
    EXPECT_NE(parts["word/charts/chart2.xml"].find("<c:v>4级</c:v>"), std::string::npos);

    if (FindWordProcessor().empty()) {
        GTEST_SKIP() << "LibreOffice (libreoffice-writer-nogui) isn't installed";
    }
    ASSERT_TRUE(Convert(m_folder.Host("out/filled.docx"), "txt:Text", m_folder.Host("out")));
    const std::string text = m_folder.ReadFile("out/filled.txt");
    // First things stand first although they were pasted last.
    std::vector<std::string> order{"东山路 <A&B> 排水管道检测",
                                   "SN-1",
                                   "检测管段-4.4",
                                   "987.6",
                                   "评估-4.1",
                                   "缺陷类型16-1.5",
                                   "一览-40.9"};
    if (full) {
        order.insert(order.end(), {"井数-13.9", "井-3.6", "井壁渗水", "管段1的1", "管段1的13", "管段1的14",
                                   "管段1的17", "管段1缺陷1.5", "图1", "管段2的1", "管段2缺陷2.1", "图2,3",
                                   "管段3的1", "图4,5", "图5", "管段4的17"});
    } else {
        order.insert(order.end(), {"详表1.1", "详表1.6", "详表2.1", "\\none\\lost.jpg", "详表7.6"});
    }
    std::size_t at = 0;
    for (const std::string& part : order) {
        at = text.find(part, at);
        ASSERT_NE(at, text.npos) << part;
    }
}

TEST_P(Template, FilledIsValid) {
    if (FindValidator().empty()) {
        GTEST_SKIP() << "the validator of office documents isn't installed";
    }
    Fill(Name(".dotx"), "out/filled.docx");
    EXPECT_TRUE(IsValid(m_folder.Host("out/filled.docx")));
}

// A user may restyle a template; then it has gone through a word processor.
TEST_P(Template, StillFillsAfterAWordProcessor) {
    if (FindWordProcessor().empty()) {
        GTEST_SKIP() << "LibreOffice (libreoffice-writer-nogui) isn't installed";
    }
    fs::create_directory(m_folder.Host("out"));
    ASSERT_TRUE(Convert(m_folder.Host(Name(".dotx")), "docx", m_folder.Host("out")));
    Fill("out/" + Name(".docx"), "out/filled.docx");
    CDocx again(m_folder.Path("out/filled.docx"));
    ExpectFilled(again, GetParam().Full);
}

INSTANTIATE_TEST_SUITE_P(Reports, Template,
                         testing::Values(Route{"GB", true, 17}, Route{"GZ", false, 15},
                                         Route{"SH", false, 14}, Route{"CQ", true, 17}),
                         [](const auto& route) { return std::string(route.param.Template); });

}  // namespace
