#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>

#include "reports/ooxml/CDocx.h"
#include "reports/ooxml/COoxmlError.h"
#include "reports/ooxml/pictures.h"
#include "reports/ooxml/xmltree.h"
#include "reports/ooxml/ziparchive.h"
#include "tests/reports/documents.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

std::string Bookmark(const std::string& name, const std::string& content) {
    return "<w:bookmarkStart w:id=\"1" + name + "\" w:name=\"" + name + "\"/>" + content +
           "<w:bookmarkEnd w:id=\"1" + name + "\"/>";
}

std::string Paragraph(const std::string& text) {
    return "<w:p><w:r><w:t>" + text + "</w:t></w:r></w:p>";
}

std::string Cell(const std::string& content) {
    return "<w:tc><w:tcPr/>" + content + "</w:tc>";
}

class Docx : public testing::Test {
protected:
    std::string Write(const std::string& bytes, const std::string& name = "t.dotx") {
        return m_folder.WriteFile(name, bytes);
    }
    std::map<std::string, std::string> Saved(CDocx& document) {
        document.Save(m_folder.Path("out.docx"));
        return PartsOf(m_folder.ReadFile("out.docx"));
    }
    std::string SavedText(CDocx& document) { return Saved(document)["word/document.xml"]; }
    CTestFolder m_folder;
};

TEST_F(Docx, TextsTakeTheLookOfWhatTheyReplace) {
    const std::string look = "<w:rPr><w:b/></w:rPr>";
    CDocx document(Write(
        MakeDocument("<w:p><w:r><w:t>1: </w:t></w:r>" +
                     Bookmark("a", "<w:r>" + look + "<w:t>x</w:t></w:r><w:r><w:t>y</w:t></w:r>") +
                     "<w:r><w:t>.</w:t></w:r></w:p><w:p><w:r><w:t>2: </w:t></w:r>" + Bookmark("Empty", "") +
                     "</w:p><w:p><w:bookmarkStart w:id=\"7\" w:name=\"long\"/><w:r><w:t>p</w:t></w:r></w:p>" +
                     Paragraph("q") +
                     "<w:p><w:r><w:t>r</w:t></w:r><w:bookmarkEnd w:id=\"7\"/><w:r><w:t>!</w:t></w:r></w:p>" +
                     Bookmark("outside", ""))));
    document.SetText("A", "R&D\n<2>\t\"x\" \x01\xFF");
    document.SetText("empty", "  e");
    document.SetText("long", "L");
    document.SetText("outside", "O");
    const std::string xml = SavedText(document);
    EXPECT_NE(
        xml.find("<w:r>" + look +
                 "<w:t>R&amp;D</w:t><w:br/><w:t>&lt;2&gt;</w:t><w:tab/><w:t>\"x\" \xEF\xBF\xBD</w:t></w:r>"),
        std::string::npos)
        << xml;
    EXPECT_NE(xml.find("<w:t xml:space=\"preserve\">  e</w:t>"), std::string::npos);
    CDocx again(m_folder.Path("out.docx"));
    EXPECT_EQ(again.BookmarkText("long"), "L");
    EXPECT_EQ(again.BookmarkText("outside"), "O");
    EXPECT_NE(xml.find("<w:t>L</w:t></w:r><w:bookmarkEnd w:id=\"7\"/><w:r><w:t>!</w:t></w:r></w:p>"),
              std::string::npos);
    // Filled twice it holds what came last.
    again.SetText("a", std::string(5000, 'z'));
    EXPECT_EQ(again.BookmarkText("a"), std::string(5000, 'z'));
}

TEST_F(Docx, RowsKeepTheirForm) {
    const std::string bold = "<w:r><w:rPr><w:b/></w:rPr><w:t>old</w:t></w:r>";
    CDocx document(Write(MakeDocument(
        Bookmark(
            "t",
            MakeTable(
                "<w:tr w14:paraId=\"1\" xmlns:w14=\"urn:w14\"><w:trPr><w:trHeight w:val=\"5\"/><w:tblHeader/>"
                "</w:trPr>" +
                Cell("<w:p><w:pPr><w:jc w:val=\"center\"/></w:pPr>" + bold + "</w:p><w:p/>") +
                "<w:sdt><w:sdtContent>" + Cell("<w:p/>") + "</w:sdtContent></w:sdt></w:tr><w:tr>" +
                Cell(Paragraph("last") + MakeTable("<w:tr>" + Cell("<w:p/>") + "</w:tr>") + "<w:p/>") +
                "</w:tr>")) +
        "<w:p/>")));
    CDocxTable table = document.Table("t");
    EXPECT_EQ(table.RowCount(), 2);
    EXPECT_EQ(table.CellCount(1), 2);
    table.InsertRowsBelow(1, 2);
    table.AddRow();
    table.CopyRow(1, 1);
    ASSERT_EQ(table.RowCount(), 6);
    EXPECT_EQ(table.CellText(2, 1), "old\n");
    EXPECT_EQ(table.CellText(3, 1), "");
    EXPECT_EQ(table.CellCount(4), 2);
    EXPECT_EQ(table.CellText(5, 1), "last\n\n");
    table.SetCell(3, 1, "new\r\nsecond\nline");
    table.SetCell(6, 1, "x");
    EXPECT_EQ(table.CellText(3, 1), "new\nsecond\nline");
    EXPECT_EQ(table.CellText(6, 1), "x");
    EXPECT_THROW(table.SetCell(7, 1, ""), COoxmlError);
    EXPECT_THROW(table.SetCell(5, 2, ""), COoxmlError);
    EXPECT_THROW(table.SetCell(0, 1, ""), COoxmlError);
    const std::string xml = SavedText(document);
    EXPECT_NE(xml.find("<w:rPr><w:b/></w:rPr><w:t>new</w:t>"), std::string::npos) << xml;
    EXPECT_NE(
        xml.find(
            "<w:jc w:val=\"center\"/><w:rPr><w:b/></w:rPr></w:pPr><w:r><w:rPr><w:b/></w:rPr><w:t>second</w:t>"
            "<w:br/>"),
        std::string::npos);
    EXPECT_EQ(CountOf(xml, "<w:trHeight"), 4);
    EXPECT_EQ(CountOf(xml, "<w:tblHeader/>"), 2);  // the head and its copy
    EXPECT_EQ(CountOf(xml, "paraId"), 1);
}

TEST_F(Docx, FinishedRowsAreTextAndKeepTheirPlace) {
    CDocx document(Write(
        MakeDocument(Bookmark("t", MakeTable("<w:tr>" + Cell(Paragraph("x")) + "</w:tr><w:tr>" +
                                             Cell("<w:p>" + Bookmark("in", "") + "</w:p>") + "</w:tr>")) +
                     "<w:p/>")));
    {
        CDocxTable table = document.Table("t");
        for (int row = 1; row <= 3; ++row) {
            if (row < 3) {
                table.InsertRowsBelow(row, 1);
            }
            table.SetCell(row, 1, "row " + std::to_string(row));
            table.FinishRow(row);
        }
        EXPECT_THROW(table.SetCell(2, 1, "late"), COoxmlError);
        EXPECT_THROW(table.CopyRow(3, 1), COoxmlError);
        table.FinishRow(4);
    }
    // The bookmark lives on, and later users of the table count the same rows.
    document.SetText("in", "last");
    CDocxTable again = document.Table("t");
    ASSERT_EQ(again.RowCount(), 4);
    EXPECT_THROW(again.CellText(3, 1), COoxmlError);
    EXPECT_EQ(again.CellText(4, 1), "last");
    document.Save(m_folder.Path("out.docx"));
    CDocx saved(m_folder.Path("out.docx"));
    std::string texts;
    for (int row = 1; row <= 4; ++row) {
        texts += saved.Table("t").CellText(row, 1) + "|";
    }
    EXPECT_EQ(texts, "row 1|row 2|row 3|last|");
}

TEST_F(Docx, PicturesAreStoredOnceAndShownInTheirSize) {
    const std::string red = MakeBitmap(96, 48, 0xFF);
    const std::string first = m_folder.WriteFile("p/a.jpg", red);  // the content counts, not the ending
    const std::string equal = m_folder.WriteFile("p/b.bmp", red);
    const std::string other = m_folder.WriteFile("p/c.bmp", MakeBitmap(2000, 10, 0xFF00));
    CDocx document(Write(MakeDocument(
        "<w:p><w:r><w:drawing><wp:docPr id=\"2147483647\"/><wp:docPr "
        "id=\"6\"/></w:drawing></w:r></w:p><w:p>" +
        Bookmark("map", "<w:r><w:drawing><old/></w:drawing></w:r>") + "</w:p><w:p>" + Bookmark("none", "") +
        "</w:p>" + Bookmark("t", MakeTable("<w:tr>" + Cell(Paragraph("x")) + Cell("<w:p/>") + "</w:tr>")) +
        "<w:p/>")));
    const auto picture = document.LoadPicture(first);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->Width, 72);
    EXPECT_EQ(document.LoadPicture(equal)->Relation, picture->Relation);
    EXPECT_NE(document.LoadPicture(other)->Relation, picture->Relation);
    EXPECT_EQ(document.LoadPicture(m_folder.Path("p/none.bmp")), std::nullopt);
    EXPECT_EQ(document.LoadPicture(m_folder.WriteFile("p/d.bmp", red.substr(0, 500))), std::nullopt);
    document.ReplacePicture("map", *document.LoadPicture(other));
    document.ReplacePicture("none", *picture);
    CDocxTable table = document.Table("t");
    table.SetCell(1, 1, "caption");
    table.AddPicture(1, 1, *picture, 240, 192);
    std::map<std::string, std::string> parts = Saved(document);
    const std::string xml = parts["word/document.xml"];
    EXPECT_EQ(xml.find("<old"), std::string::npos);
    // 2000 pixels are wider than the text's 450 points.
    EXPECT_NE(xml.find(R"(<wp:extent cx="5715000" cy="28575"/>)"), std::string::npos) << xml;
    EXPECT_NE(xml.find(R"(<wp:extent cx="914400" cy="457200"/>)"), std::string::npos);
    EXPECT_NE(xml.find(R"(<wp:extent cx="3048000" cy="2438400"/>)"), std::string::npos);
    EXPECT_LT(xml.find("2438400"), xml.find("caption"));
    EXPECT_EQ(parts["word/media/image1.bmp"], red);
    EXPECT_EQ(parts.count("word/media/image3.bmp"), 0U);
    EXPECT_NE(parts["[Content_Types].xml"].find(R"(Extension="bmp" ContentType="image/bmp")"),
              std::string::npos);
    for (const char* id : {R"(docPr id="7")", R"(docPr id="8")", R"(docPr id="9")"}) {
        EXPECT_EQ(CountOf(xml, id), 1);
    }
    // What can't be read any more when the document is saved leaves the former document.
    const std::string former = m_folder.ReadFile("out.docx");
    fs::remove(m_folder.Host("p/c.bmp"));
    EXPECT_THROW(document.Save(m_folder.Path("out.docx")), COoxmlError);
    EXPECT_EQ(m_folder.ReadFile("out.docx"), former);
    EXPECT_THROW(document.Save(m_folder.Path("no folder/out.docx")), COoxmlError);
}

TEST_F(Docx, ChartsCarryTheirNumbersTwice) {
    CDocx document(Write(MakeDocument("<w:p>" + Bookmark("columns", "<w:r><w:t>none</w:t></w:r>") +
                                      "</w:p><w:p>" + Bookmark("pie", "") + "</w:p>")));
    const ChartSpec pie{ChartKind::Pie, 3, {"残墙、坝根", "a<b"}, {12, 3}, 500, 400};
    document.SetChart("columns", {ChartKind::Columns, 1, {"1级", "2级", "3级"}, {7, 0, 2}, 400, 250});
    document.SetChart("pie", pie);
    EXPECT_THROW(document.SetChart("pie", {ChartKind::Pie, 3, {}, {}, 400, 400}), COoxmlError);
    EXPECT_THROW(document.SetChart("pie", {ChartKind::Pie, 3, std::vector<std::string>(27, "n"),
                                           std::vector<long long>(27, 1), 400, 400}),
                 COoxmlError);
    EXPECT_THROW(document.SetChart("none", pie), COoxmlError);
    std::map<std::string, std::string> parts = Saved(document);
    const std::string xml = parts["word/document.xml"];
    EXPECT_EQ(CountOf(xml, "<c:chart "), 2);
    EXPECT_EQ(xml.find("none"), std::string::npos);
    EXPECT_NE(xml.find(R"(cx="5080000" cy="3175000")"), std::string::npos);
    EXPECT_NE(xml.find(R"(cx="5715000" cy="4572000")"), std::string::npos);  // 500 points scaled to the text

    const std::string columns = parts["word/charts/chart1.xml"];
    for (const char* part :
         {"<c:bar3DChart><c:barDir val=\"col\"/><c:grouping val=\"clustered\"/>",
          "<c:f>Sheet1!$A$1:$C$1</c:f>", "<c:f>Sheet1!$A$2:$C$2</c:f>", "<c:v>2级</c:v>",
          "<c:pt idx=\"2\"><c:v>2</c:v>", "<c:showVal val=\"1\"/>", "<c:autoTitleDeleted val=\"1\"/>",
          "<c:crossBetween val=\"between\"/><c:majorUnit val=\"1\"/></c:valAx>"}) {
        EXPECT_NE(columns.find(part), std::string::npos) << part;
    }
    EXPECT_EQ(columns.find("<c:legend>"), std::string::npos);
    EXPECT_EQ(ChartXml({ChartKind::Columns, 1, {"1级"}, {11}, 400, 250}, "rId1").find("majorUnit"),
              std::string::npos);
    const std::string round = parts["word/charts/chart2.xml"];
    for (const char* part : {"<c:pie3DChart>", "<c:rotX val=\"70\"/>", "<c:legendPos val=\"b\"/>",
                             "<c:showCatName val=\"1\"/>", "<c:showPercent val=\"1\"/>",
                             "<c:showVal val=\"0\"/>", "<c:f>Sheet1!$A$3:$B$3</c:f>", "<c:v>a&lt;b</c:v>"}) {
        EXPECT_NE(round.find(part), std::string::npos) << part;
    }
    EXPECT_NE(parts["word/charts/_rels/chart2.xml.rels"].find("../embeddings/workbook2.xlsx"),
              std::string::npos);
    const std::string sheet = PartsOf(parts["word/embeddings/workbook2.xlsx"])["xl/worksheets/sheet1.xml"];
    EXPECT_NE(
        sheet.find("<row r=\"3\"><c r=\"A3\" t=\"inlineStr\"><is><t xml:space=\"preserve\">残墙、坝根</t>"),
        std::string::npos);
    EXPECT_NE(sheet.find("<c r=\"B4\"><v>3</v></c>"), std::string::npos);
}

// Templates are restyled by their users, who don't see where the marks lie.
TEST_F(Docx, MarksOutliveWhatIsTakenOutAroundThem) {
    const auto text = [](const std::string& content) { return "<w:r><w:t>" + content + "</w:t></w:r>"; };
    CDocx document(Write(MakeDocument(
        "<w:p>" + text("1") + "<w:bookmarkStart w:id=\"1\" w:name=\"wide\"/>" + text("2") + "</w:p><w:p>" +
        Bookmark("inner", text("3")) + "</w:p><w:p><w:hyperlink>" + Bookmark("link", text("4")) +
        "</w:hyperlink>" + Bookmark("last", text("5")) + "<w:bookmarkEnd w:id=\"1\"/>" + text("6") +
        "</w:p>" +
        MakeTable("<w:bookmarkStart w:id=\"2\" w:name=\"row\"/><w:tr>" + Cell(Paragraph("a")) +
                  Cell(Paragraph("b")) + "</w:tr><w:bookmarkEnd w:id=\"2\"/><w:tr>" + Cell(Paragraph("c")) +
                  Cell("<w:p>" + text("d") + "<w:bookmarkEnd w:id=\"9\"/></w:p>") + "</w:tr>"))));
    document.SetText("wide", "new");
    for (const char* name : {"inner", "link", "last"}) {
        document.SetText(name, std::string("<") + name + ">");
    }
    ChartSpec chart;
    chart.Names = {"x"};
    chart.Values = {1};
    document.SetChart("row", chart);
    const std::string file = m_folder.WriteFile("p.bmp", MakeBitmap(30, 24, 1));
    document.Table("row").AddPicture(2, 2, *document.LoadPicture(file), 10, 10);
    const std::string xml = SavedText(document);
    for (const char* part : {"&lt;inner&gt;", "&lt;link&gt;", "&lt;last&gt;", "new"}) {
        EXPECT_NE(xml.find(part), std::string::npos) << part;
    }
    // Rows hold cells and cells paragraphs, also where the marks of a chart stand between rows.
    EXPECT_EQ(xml.find("</w:tr><w:p"), std::string::npos) << xml;
    EXPECT_EQ(xml.find("<w:tblGrid/><w:p"), std::string::npos) << xml;
    EXPECT_LT(xml.find("c:chart"), xml.find(">b<"));
    // The picture stands above its caption, though a mark ends behind it.
    EXPECT_LT(xml.rfind("<w:drawing>"), xml.find(">d<"));
}

TEST_F(Docx, CopiesBearNumbersOfTheirOwn) {
    const std::string drawing =
        "<w:p><w:sdt><w:sdtPr><w:id w:val=\"77\"/></w:sdtPr><w:sdtContent><w:r><w:drawing><wp:inline "
        "xmlns:wp=\"urn:wp\"><wp:docPr id=\"5\" name=\"x\"/></wp:inline></w:drawing></w:r></w:sdtContent>"
        "</w:sdt></w:p>";
    std::vector<ZipEntry> entries = ReadZip(MakeDocument(
        "<w:p>" + Bookmark("t", "") + "</w:p>" +
        MakeTable("<w:tr>" + Cell(Bookmark("form", "") + drawing) + "</w:tr>") + Paragraph("end")));
    for (ZipEntry& entry : entries) {
        if (entry.Name == "[Content_Types].xml") {
            entry.Bytes.insert(entry.Bytes.find("</Types>"),
                               "<Override PartName=\"/word/header1.xml\" ContentType=\"application/"
                               "vnd.openxmlformats-officedocument.wordprocessingml.header+xml\"/>");
        }
    }
    entries.push_back({"word/header1.xml",
                       "<w:hdr xmlns:w=\"urn:w\" xmlns:wp=\"urn:wp\"><wp:docPr id=\"9\"/></w:hdr>",
                       {},
                       6});
    CDocx document(Write(WriteZip(entries)));
    CDocxForm form = document.TakeForm("form");
    for (int i = 0; i < 2; ++i) {
        form.Paste().CopyRow(1, 2);
    }
    const std::string xml = SavedText(document);
    EXPECT_EQ(CountOf(xml, "<wp:docPr"), 6);
    for (int number = 10; number < 16; ++number) {
        EXPECT_EQ(CountOf(xml, "<wp:docPr id=\"" + std::to_string(number) + "\""), 1) << number;
    }
    EXPECT_LE(CountOf(xml, "w:val=\"77\""), 1);
}

TEST_F(Docx, BadTemplatesAreRefused) {
    const auto refused = [&](const std::string& bytes) {
        const std::string path = Write(bytes);
        EXPECT_THROW(CDocx{path}, COoxmlError);
    };
    EXPECT_THROW(CDocx{m_folder.Path("none.dotx")}, COoxmlError);
    EXPECT_THROW(CDocx{m_folder.Path("db")}, COoxmlError);
    refused("");
    refused("PK but no archive");
    const std::string good = MakeDocument("<w:p/>");
    refused(good.substr(0, good.size() / 2));
    std::string flipped = good;
    flipped[60] = static_cast<char>(flipped[60] ^ 0x55);  // inside the first entry
    refused(flipped);
    refused(MakeDocument("<w:p>"));
    refused(MakeDocument("<!DOCTYPE a [<!ENTITY b \"bb\">]>"));
    std::string deep;
    for (int i = 0; i < 5000; ++i) {
        deep += "<w:sdt>";
    }
    refused(MakeDocument(deep));
    std::vector<ZipEntry> entries = ReadZip(good);
    const auto without = [&](const std::string& name) {
        std::vector<ZipEntry> rest = entries;
        std::erase_if(rest, [&](const ZipEntry& entry) { return entry.Name == name; });
        return WriteZip(rest);
    };
    refused(without("word/document.xml"));
    refused(without("[Content_Types].xml"));
    refused(without("_rels/.rels"));
    for (const char* name : {"../evil", "/root", "a\\b"}) {
        std::vector<ZipEntry> more = entries;
        more.push_back({name, "x", {}, 6});
        refused(WriteZip(more));
    }
    // Small packed, large unpacked.
    std::vector<ZipEntry> bomb = entries;
    bomb.push_back({"bomb", std::string(65U << 20U, '\0'), {}, 9});
    const std::string packed = WriteZip(bomb);
    EXPECT_LT(packed.size(), 200000U);
    refused(packed);
    std::vector<ZipEntry> many = entries;
    for (int i = 0; i < 1001; ++i) {
        many.push_back({"n" + std::to_string(i), "", {}, 0});
    }
    refused(WriteZip(many));

    CDocx document(Write(MakeDocument("<w:p>" + Bookmark("a", "") + "</w:p>" +
                                      MakeTable("<w:tr>" +
                                                Cell("<w:p>"
                                                     "<w:bookmarkStart w:id=\"1\" w:name=\"open\"/></w:p>") +
                                                Cell("<w:p><w:bookmarkEnd w:id=\"1\"/></w:p>") + "</w:tr>") +
                                      "<w:p/>")));
    EXPECT_THROW(document.SetText("b", "x"), COoxmlError);
    EXPECT_THROW((void)document.Table("a"), COoxmlError);
    EXPECT_THROW(document.SetText("open", "x"), COoxmlError);  // around two cells
    EXPECT_EQ(document.Table("open").RowCount(), 1);
}

}  // namespace
