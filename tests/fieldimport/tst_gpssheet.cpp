#include <gtest/gtest.h>
#include <xlsxwriter.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "fieldimport/gpsimport.h"
#include "fieldimport/gpssheet.h"
#include "reports/ooxml/ziparchive.h"
#include "shell/language.h"
#include "tests/reports/documents.h"
#include "tests/store/CProjectTest.h"

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::string>;

// What the sheets of make_sheets.py hold, where the writer or reader can't tell dates, booleans and money
// apart with `flag` and `money` for them.
Texts Expected(const std::string& flag, const std::string& money) {
    return {"YS1",      "113.264435123456",
            "23.1291",  "12",
            "113.5",    "北纬",
            "20241234", "0.0000001",
            "-0.5",     "a<&\n\"",
            "",         "0",
            "12.5",     flag,
            "",         "尾 ",
            money,      "1"};
}

class GpsSheets : public CProjectTest {
protected:
    Texts Read(const std::string& path) {
        Sheet = {};
        EXPECT_TRUE(ReadGpsSheet(path, Sheet)) << path;
        return Sheet.Texts;
    }
    void ExpectRefused(const std::string& path, int reason, const std::string& part = {}) {
        Folder.Prompts.Expect(3320);
        EXPECT_FALSE(ReadGpsSheet(path, Sheet));
        EXPECT_TRUE(Sheet.Texts.empty());
        const std::string& text = Folder.Prompts.LastText();
        EXPECT_NE(text.find(LoadMessage(reason).substr(0, LoadMessage(reason).find('%'))), std::string::npos)
            << text;
        EXPECT_NE(text.find(part), std::string::npos);
    }
    // A workbook whose only sheet has this content and whose texts are these.
    std::string Workbook(const std::string& rows, const std::string& texts = {},
                         const std::string& styles = {}) {
        const std::string type = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
        const auto relation = [&](const std::string& id, const std::string& kind, const std::string& target) {
            return "<Relationship Id=\"" + id + "\" Type=\"" + type + kind + "\" Target=\"" + target + "\"/>";
        };
        const std::string bytes = WriteZip(
            {{"_rels/.rels", "<R>" + relation("a", "officeDocument", "/xl/book.xml") + "</R>", {}, 6},
             {"xl/book.xml",
              "<w:workbook xmlns:w=\"m\" xmlns:q=\"r\"><w:sheets><w:sheet q:id=\"c\"/><w:sheet "
              "q:id=\"s\"/></w:sheets></w:workbook>",
              {},
              6},
             {"xl/_rels/book.xml.rels",
              "<R>" + relation("s", "worksheet", "sheets/x.xml") + relation("c", "chartsheet", "c.xml") +
                  relation("t", "sharedStrings", "../xl/T.xml") + relation("y", "styles", "y.xml") + "</R>",
              {},
              6},
             {"xl/t.xml", "<sst>" + texts + "</sst>", {}, 6},
             {"xl/y.xml", styles.empty() ? "<styleSheet/>" : styles, {}, 6},
             {"xl/sheets/x.xml", "<worksheet><sheetData>" + rows + "</sheetData></worksheet>", {}, 6}});
        return Folder.WriteFile("made.xlsx", bytes);
    }
    void AddSection(const std::string& start, const std::string& end) {
        _TESTING_DATA section;
        section.StartWell = start;
        section.EndWell = end;
        section.PipeLength = "100";
        section.GpsXStart = 1;
        section.GpsYStart = 2;
        section.GpsXEnd = 3;
        section.GpsYEnd = 4;
        ASSERT_TRUE(Database.AddTesting(section));
    }

    GpsSheet Sheet;
};

void MakeWithLibXlsxWriter(const std::string& path) {
    lxw_workbook* book = workbook_new(path.c_str());
    lxw_worksheet* sheet = workbook_add_worksheet(book, "测量");
    lxw_format* date = workbook_add_format(book);
    format_set_num_format(date, "yyyy\"年\"m\"月\"");
    lxw_format* red = workbook_add_format(book);
    format_set_num_format(red, "0.00_ ;[Red]\\-0.00");
    worksheet_write_string(sheet, 1, 0, "井1", nullptr);
    worksheet_write_number(sheet, 1, 1, 121.123456789012, red);
    worksheet_write_formula_num(sheet, 1, 2, "=1/8", nullptr, 0.125);
    worksheet_write_number(sheet, 2, 0, 7, nullptr);
    worksheet_write_number(sheet, 2, 1, 45000, date);
    lxw_rich_string_tuple first = {red, const_cast<char*>("3")};
    lxw_rich_string_tuple second = {nullptr, const_cast<char*>("1.5")};
    lxw_rich_string_tuple* rich[] = {&first, &second, nullptr};
    worksheet_write_rich_string(sheet, 2, 2, rich, nullptr);
    workbook_close(book);
}

}  // namespace

TEST_F(GpsSheets, WhatOtherProgramsWriteIsReadAlike) {
    const std::string folder = Folder.Host("sheets").string();
    fs::create_directory(folder);
    ASSERT_EQ(std::system((std::string(DROVANE_PYTHON) + " " + DROVANE_TEST_FILES + "/make_sheets.py '" +
                           folder + "'")
                              .c_str()),
              0);
    EXPECT_EQ(Read(Folder.Path("sheets/openpyxl.xlsx")), Expected("", ""));
    EXPECT_EQ(Sheet.Unread, 2);
    EXPECT_EQ(Read(Folder.Path("sheets/xlwt.xls")), Expected("1", "1234567.125"));
    EXPECT_EQ(Sheet.Unread, 2);
    // The content counts, whatever the name says.
    fs::copy(folder + "/xlwt.xls", folder + "/renamed.xlsx");
    EXPECT_EQ(Read(Folder.Path("sheets/renamed.xlsx")).size(), 18U);
    MakeWithLibXlsxWriter(folder + "/lib.xls");
    EXPECT_EQ(Read(Folder.Path("sheets/lib.xls")),
              (Texts{"井1", "121.123456789012", "0.125", "7", "", "31.5"}));
    if (FindWordProcessor().empty()) {
        GTEST_SKIP() << "no LibreOffice";
    }
    ASSERT_TRUE(Convert(folder + "/openpyxl.xlsx", "xls", Folder.Host("office")));
    EXPECT_EQ(Read(Folder.Path("office/openpyxl.xls")), Expected("", "1234567.125"));
    ASSERT_TRUE(Convert(folder + "/xlwt.xls", "xlsx", Folder.Host("office")));
    EXPECT_EQ(Read(Folder.Path("office/xlwt.xlsx")), Expected("", "1234567.125"));
    ASSERT_TRUE(Convert(folder + "/formulas.xlsx", "xlsx", Folder.Host("office")));
    EXPECT_EQ(Read(Folder.Path("office/formulas.xlsx")), (Texts{"F1", "0.125", "23", "F2", "", ""}));
}

TEST_F(GpsSheets, TheFormatIsReadWithAllItsForms) {
    const std::string texts =
        "<si><t>head</t></si><si><r><t>Y</t></r><r><t xml:space=\"preserve\">S </t></r><rPh sb=\"0\" "
        "eb=\"1\"><t>sound</t></rPh></si><si><t>a_x000D_b_x005F_c</t></si><si/>";
    const std::string styles =
        "<styleSheet><numFmts><numFmt numFmtId=\"164\" "
        "formatCode=\"[$-804]0.0E+00&quot;days&quot;;[Red]-0_);General"
        "\"/><numFmt numFmtId=\"165\" formatCode=\"[h]:mm\"/><numFmt numFmtId=\"166\" "
        "formatCode=\"&quot;¥&quot;#,##0\"/></numFmts><cellStyleXfs><xf "
        "numFmtId=\"14\"/></cellStyleXfs><cellXfs>"
        "<xf numFmtId=\"0\"/><xf numFmtId=\"164\"/><xf numFmtId=\"165\"/><xf numFmtId=\"166\"/><xf "
        "numFmtId=\"14\"/><xf "
        "numFmtId=\"44\"/><xf numFmtId=\"43\"/></cellXfs></styleSheet>";
    // Rows and cells may come without their place.
    const Texts read = Read(Workbook(
        "<row><c t=\"s\"><v>0</v></c></row>"
        "<row><c t=\"s\"><v>1</v></c><c s=\"1\"><v>5</v></c><c s=\"2\"><v>5</v></c></row>"
        "<row r=\"3\"><c r=\"A3\" t=\"inlineStr\"><is><r><t>in</t></r><r><t>line</t></r></is></c><c "
        "r=\"C3\" "
        "s=\"3\"><v>1</v></c><c r=\"D3\"><v>1</v></c></row>"
        "<row r=\"4\"><c r=\"A4\" t=\"s\"><v>2</v></c><c r=\"B4\" s=\"4\"><v>1</v></c><c r=\"C4\" "
        "s=\"5\"><v>1</v></c></row>"
        "<row r=\"5\"><c r=\"A5\" t=\"str\"><f>A1</f><v>f</v></c><c r=\"B5\" s=\"6\"><v>1e300</v></c><c "
        "r=\"C5\" t=\"e\"><v>#N/A</v></c></row>"
        "<row r=\"6\"><c r=\"A6\" t=\"s\"><v>3</v></c></row><row r=\"7\"><c r=\"B7\" "
        "t=\"b\"><v>1</v></c></row>"
        "<row r=\"9\"><c r=\"A9\"/><c r=\"D9\"><v>1</v></c></row>",
        texts, styles));
    ASSERT_EQ(read.size(), 12U);
    EXPECT_EQ(read, (Texts{"YS ", "5", "", "inline", "", "", "a\rb_c", "", "", "f", read[10], ""}));
    EXPECT_EQ(std::stod(read[10]), 1e300);
    EXPECT_EQ(Sheet.Unread, 2);
    EXPECT_TRUE(Read(Workbook("<row r=\"1\"><c><v>1</v></c></row>")).empty());
    EXPECT_TRUE(Read(Workbook("<row r=\"3\"><c><v>1</v></c></row>")).empty());
    EXPECT_EQ(Sheet.Unread, 1);
}

TEST_F(GpsSheets, WhatCantBeReadNamesFileAndReason) {
    ExpectRefused(Folder.Path("none.xlsx"), 3321, "none.xlsx");
    ExpectRefused(Folder.Path("db"), 3321);
    ExpectRefused(Folder.WriteFile("a.xlsx", "井号,经度"), 3322);
    ExpectRefused(Folder.WriteFile("a.xlsx", "PK\x03\x04 and no more"), 3322);
    ExpectRefused(Folder.WriteFile("a.xlsx", WriteZip({{"mimetype", "x", {}, 0}})), 3322);
    const std::string office("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    ExpectRefused(Folder.WriteFile("a.xls", office + std::string(2000, 'x')), 3324);
    ExpectRefused(Folder.WriteFile(
                      "a.xlsx", office + std::string("E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0", 32)),
                  3323);
    for (const char* rows :
         {"<row r=\"2\"/><row r=\"2\"/>", "<row r=\"1048577\"/>", "<row r=\"x\"/>", "<c><v>1</v></c>",
          "<row r=\"2\"><c r=\"B2\"/><c r=\"A2\"/></row>", "<row r=\"2\"><c r=\"AAAA2\"/></row>",
          "<row r=\"2\"><c t=\"s\"><v>0</v></c></row>"}) {
        ExpectRefused(Workbook(rows), 3324);
    }
    ExpectRefused(Workbook("<row>"), 3215, "xl/sheets/x.xml");
    ExpectRefused(Workbook("<row/></sheetData></worksheet><!DOCTYPE a><worksheet><sheetData>"), 3215);

    // Small files that would fill the memory.
    ExpectRefused(Workbook("<row r=\"2\"><c t=\"str\"><v>" + std::string(3 << 20, 'x') + "</v></c></row>"),
                  3325);
    std::string many;
    for (int i = 2; i < 5000; ++i) {
        many += "<row><c t=\"s\"><v>0</v></c></row>";
    }
    ExpectRefused(Workbook("<row/>" + many, "<si><t>" + std::string(100000, 'y') + "</t></si>"), 3325);
    ExpectRefused(Workbook("<row a=\"" + std::string(20 << 20, 'z') + "\"/>"), 3215);
}

TEST_F(GpsSheets, SectionsGetThePositionsOfTheirManholes) {
    AddSection("A", "B");
    AddSection("B", "C");
    AddSection("a", "x");
    AddSection("D", "D");
    AddSection("12", "C ");
    _REC_DATA record;
    record.TestingID = 1;
    record.DefectCode = "PL";
    record.DistanceStart = 50;
    ASSERT_TRUE(Database.AddRecord(record));
    const auto row = [](const std::string& a, const std::string& b, const std::string& c) {
        return "<row><c t=\"str\"><v>" + a + "</v></c><c t=\"str\"><v>" + b + "</v></c><c t=\"str\"><v>" + c +
               "</v></c></row>";
    };
    const std::string path =
        Workbook(row("A", "9", "9") + row("A", "113", "23") + row("B", "114", "24") + row("D", "5", "6") +
                 row("B", "114.5", "24.5") + row("12", "", "north") + row("", "1", "1") + row("x", "1", "1"));
    GpsImport result;
    ASSERT_TRUE(ImportGpsSheet(Database, path, result));
    EXPECT_EQ(result.Sections, 4);
    EXPECT_EQ(result.Unread, 2);
    const CTestingDataArray sections = Sections();
    const auto positions = [&](int i) {
        return std::vector{sections[i].GpsXStart, sections[i].GpsYStart, sections[i].GpsXEnd,
                           sections[i].GpsYEnd};
    };
    EXPECT_EQ(positions(0), (std::vector{113.0, 23.0, 114.5, 24.5}));
    EXPECT_EQ(positions(1), (std::vector{114.5, 24.5, 3.0, 4.0}));
    EXPECT_EQ(positions(2), (std::vector{1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(positions(3), (std::vector{5.0, 6.0, 5.0, 6.0}));
    EXPECT_EQ(positions(4), (std::vector{0.0, 0.0, 3.0, 4.0}));
    // The defect moved with its section: it was nowhere, and now lies between the manholes.
    EXPECT_GT(Records(1)[0].GpsX, 113);
    EXPECT_LT(Records(1)[0].GpsX, 114.5);
    Folder.Prompts.Expect(2187);
    Folder.Prompts.Expect(3326);
    TellGpsImport(result);

    Folder.Prompts.Expect(3320);
    EXPECT_FALSE(ImportGpsSheet(Database, Folder.Path("none.xlsx"), result));
    EXPECT_EQ(result.Sections, 0);
    CDbRec closed;
    Folder.Prompts.Expect(2185);
    EXPECT_FALSE(ImportGpsSheet(closed, path, result));
    ASSERT_TRUE(ImportGpsSheet(Database, Workbook(row("A", "1", "1")), result));
    EXPECT_EQ(result.Sections, 0);
    Folder.Prompts.Expect(2187);
    TellGpsImport(result);
}
