#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

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
    SampleReport Sample() const {
        SampleReport sample;
        sample.Full = GetParam().Full;
        sample.Assessed = GetParam().Assessed;
        sample.Picture = m_folder.WriteFile("job/p.jpg", MakeBitmap(300, 240, 0x607080));
        sample.MapPicture = m_folder.WriteFile("job/map.png", MakeBitmap(1024, 640, 0xC8D8B0));
        return sample;
    }
    CTestFolder m_folder;
};

// What a filled report must hold, read back.
void ExpectFilled(CDocx& document, const SampleReport& sample) {
    EXPECT_EQ(document.BookmarkText("lbProjectName"), "东山路 <A&B> 排水管道检测");
    EXPECT_EQ(document.Table("tblPrjInfo").CellText(6, 2), "王工");
    CDocxTable list = document.Table("OLE_LINK1");
    EXPECT_EQ(list.RowCount(), sample.Sections + 2);
    EXPECT_EQ(list.CellText(sample.Sections + 1, 5), std::to_string(sample.Sections) + "-5");
    EXPECT_EQ(list.CellText(sample.Sections + 2, 1), "合计");
    EXPECT_EQ(list.CellText(sample.Sections + 2, 5), "987.6");
    CDocxTable all = document.Table("tblDefectAll");
    EXPECT_EQ(all.RowCount(), 42);
    EXPECT_EQ(all.CellText(42, 1), "40");
    EXPECT_EQ(all.CellText(42, 10), "39.8");
    EXPECT_EQ(document.Table("tblDefect").CellText(18, 6), "15:6");
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
        tables["tblEvaluateDefects"] = Same(2, 6);
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
    EXPECT_EQ(CountOf(xml, "<w:tblHeader/>"), std::string(name) == "CQ" ? 16 : full ? 14 : 7);
}

TEST_P(Template, IsFilledAndReadByOthers) {
    const SampleReport sample = Sample();
    CDocx document(m_folder.Path(Name(".dotx")));
    FillSample(document, sample);
    fs::create_directory(m_folder.Host("out"));
    document.Save(m_folder.Path("out/filled.docx"));
    // For looking at the pages.
    if (const char* keep = std::getenv("DROVANE_KEEP_REPORTS")) {
        fs::copy_file(m_folder.Host("out/filled.docx"), fs::path(keep) / Name(".docx"),
                      fs::copy_options::overwrite_existing);
    }
    CDocx again(m_folder.Path("out/filled.docx"));
    ExpectFilled(again, sample);
    std::map<std::string, std::string> parts = PartsOf(m_folder.ReadFile("out/filled.docx"));
    const std::string xml = parts["word/document.xml"];
    // The map and one picture, the two charts; the placeholder's part stays, but nothing shows it.
    EXPECT_EQ(CountOf(xml, "<a:blip r:embed="), sample.Full ? 1 + 10 + 3 : 1 + 7);
    EXPECT_EQ(CountOf(xml, "<c:chart "), 2);
    EXPECT_EQ(CountOf(parts["word/_rels/document.xml.rels"], "relationships/image"), 3);
    EXPECT_EQ(CountOf(xml, R"(<w:br w:type="page"/>)"), sample.Full ? sample.Sections - 1 : 2);

    if (FindWordProcessor().empty()) {
        GTEST_SKIP() << "LibreOffice (libreoffice-writer-nogui) isn't installed";
    }
    ASSERT_TRUE(Convert(m_folder.Host("out/filled.docx"), "txt:Text", m_folder.Host("out")));
    const std::string text = m_folder.ReadFile("out/filled.txt");
    // First things stand first although they were pasted last.
    std::vector<std::string> order{
        "东山路 <A&B> 排水管道检测", "SN-1", "4-5", "987.6", "3.0", "15:6", "39.8"};
    if (sample.Full) {
        order.insert(order.end(), {"12.8", "井36", "管段1", "管段2", "管段3", "管段4"});
    } else {
        order.insert(order.end(), {"缺陷1.1", "缺陷1.6", "缺陷2.1", "缺陷7.6"});
    }
    std::size_t at = 0;
    for (const std::string& part : order) {
        at = text.find(part, at);
        ASSERT_NE(at, text.npos) << part;
    }
}

// A user may restyle a template; then it has gone through a word processor.
TEST_P(Template, StillFillsAfterAWordProcessor) {
    if (FindWordProcessor().empty()) {
        GTEST_SKIP() << "LibreOffice (libreoffice-writer-nogui) isn't installed";
    }
    const SampleReport sample = Sample();
    fs::create_directory(m_folder.Host("out"));
    ASSERT_TRUE(Convert(m_folder.Host(Name(".dotx")), "docx", m_folder.Host("out")));
    CDocx document(m_folder.Path("out/" + Name(".docx")));
    FillSample(document, sample);
    document.Save(m_folder.Path("out/filled.docx"));
    CDocx again(m_folder.Path("out/filled.docx"));
    ExpectFilled(again, sample);
}

INSTANTIATE_TEST_SUITE_P(Reports, Template,
                         testing::Values(Route{"GB", true, 17}, Route{"GZ", false, 15},
                                         Route{"SH", false, 14}, Route{"CQ", true, 17}),
                         [](const auto& route) { return std::string(route.param.Template); });

}  // namespace
