// The report generator, run as it is run by the program, on data files of its own making.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "apps/docxgenerator/CConfigFile.h"
#include "apps/docxgenerator/configlists.h"
#include "reports/collectreport.h"
#include "reports/ooxml/CDocx.h"
#include "reports/word/CReportRun.h"
#include "reports/word/listsfile.h"
#include "shell/CHostFiles.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "tests/generator/markedconfig.h"
#include "tests/reports/documents.h"
#include "tests/reports/project.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class Generator : public testing::Test {
protected:
    void WriteConfig(const std::string& utf8) const {
        m_folder.WriteFile("word/config.xml", GbkFromUtf8(utf8));
    }
    // From the folder "out".
    int Run(const std::string& arguments) const {
        fs::create_directories(m_folder.Host("out"));
        const int status = std::system(("cd '" + m_folder.Host("out").string() +
                                        "' && ../word/DocxGenerator " + arguments + " 2>../err.txt")
                                           .c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string Error() const { return m_folder.ReadFile("err.txt"); }

    CTestFolder m_folder;
};

// All texts of a part, apart from each other.
std::string TextsOf(const std::string& xml) {
    std::string text;
    bool inTag = false;
    for (const char c : xml) {
        inTag = c == '<' || (inTag && c != '>');
        text += inTag || c == '>' ? '\n' : c;
    }
    for (const auto& [entity, character] :
         {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}}) {
        for (std::size_t at = text.find(entity); at != text.npos; at = text.find(entity, at + 1)) {
            text.replace(at, std::string_view(entity).size(), character);
        }
    }
    return text;
}

TEST_F(Generator, EveryValueThatAReaderWantsIsInTheDocument) {
    const std::string picture = m_folder.WriteFile("job/图a.bmp", MakeBitmap(30, 24, 0x607080));
    const std::string second = m_folder.WriteFile("job/b.bmp", MakeBitmap(30, 24, 0x102030));
    const MarkedConfig config = MakeMarkedConfig(picture, second);
    WriteConfig(config.Xml);
    ASSERT_EQ(Run("-o 报告.docx"), 0) << Error();
    EXPECT_EQ(Error(), "");
    std::map<std::string, std::string> parts = PartsOf(m_folder.ReadFile("out/报告.docx"));
    std::string texts = TextsOf(parts["word/document.xml"]);
    for (const auto& [name, bytes] : parts) {
        if (name.starts_with("word/charts/chart")) {
            texts += TextsOf(bytes);
        }
    }
    for (const auto& [value, place] : config.Expected) {
        EXPECT_NE(texts.find(value), texts.npos) << place << " " << value;
    }
    // The map's placeholder is gone; of one record both pictures are there, of another the path of a lost
    // one.
    EXPECT_EQ(CountOf(parts["word/document.xml"], "<a:blip r:embed="), 2);
    EXPECT_NE(texts.find(LoadMessage(2393)), texts.npos);
    EXPECT_EQ(CountOf(parts["word/document.xml"], "<c:chart "), 2);

    CDocx document(m_folder.Path("out/报告.docx"));
    // Three sections, of which the one without a defect stands under the number of another; and no form for
    // it.
    EXPECT_EQ(document.Table("tblSectionData").RowCount(), 4);
    EXPECT_EQ(CountOf(parts["word/document.xml"], R"(<w:br w:type="page"/>)"), 1);
    // The sums of the manholes are worked out.
    EXPECT_EQ(document.Table("wellDefectTotal").CellText(14, 3), config.FirstManholeSum);
}

// The file of a project gives the lists that the project itself gives, but for what the file lacks.
TEST_F(Generator, ListsAreThoseOfTheProject) {
    CReportProject project(m_folder, "CQ");
    project.Chosen = {1, 2, 3, 4, 5};
    ReportLists lists;
    ASSERT_TRUE(CollectReport(project.Database, "重庆规范", project.Chosen, 6, 10, lists));
    const ReportLists read = ListsFromConfig(CConfigFile(project.Database.ReportBytes()));

    Texts& strings = lists.ProjectStrings;
    strings[1] = "";
    strings[2] = "重庆?";  // in no code page
    const Texts lengths = {"0.0", "0.0", "1.0", "0.0", "2.5"};
    auto defect = std::find(strings.begin(), strings.end(), "破裂\n(0000)") - 6;
    for (const std::string& length : lengths) {
        defect[4] = length;
        defect += 9;
    }
    EXPECT_EQ(read.ProjectStrings, strings);
    // Without a structural defect the row says so.
    for (std::size_t row = 2; row < 5; ++row) {
        lists.SectionRows[1 + row * 17 + 10] = LoadMessage(2339);
    }
    EXPECT_EQ(read.SectionRows, lists.SectionRows);
    lists.ShortRows[1 + 2 * 6 + 5] = "2";  // that were merged
    EXPECT_EQ(read.ShortRows, lists.ShortRows);
    EXPECT_EQ(read.LevelCountRows, lists.LevelCountRows);
    EXPECT_EQ(read.LevelLengthRows, lists.LevelLengthRows);
    EXPECT_EQ(read.WellPictureRows, lists.WellPictureRows);
    EXPECT_EQ(read.WellTotalRows, lists.WellTotalRows);
    EXPECT_EQ(read.DefectCountsByLevel, lists.DefectCountsByLevel);
    EXPECT_EQ(read.Codes, lists.Codes);
    EXPECT_EQ(read.Names, lists.Names);
    lists.DefectCountsByType[1] = 0;  // behind the manhole, where the file stops counting
    EXPECT_EQ(read.DefectCountsByType, lists.DefectCountsByType);

    // An index that was rounded to a bound doesn't change the level that the file tells in words; unless the
    // words are none of ours.
    std::string xml = Utf8FromGbk(project.Database.ReportBytes());
    const auto replace = [&](const std::string& part, const std::string& replacement) {
        const std::size_t at = xml.find(part);
        ASSERT_NE(at, xml.npos) << part;
        xml.replace(at, part.size(), replacement);
    };
    replace("riJG=\"9.25\"", "riJG=\"7\"");
    replace("riGN=\"5.3\"", "riGN=\"4\"");
    EXPECT_EQ(ListsFromConfig(CConfigFile(GbkFromUtf8(xml))).LevelCountRows, lists.LevelCountRows);
    replace("EvaluatethisJG=\"" + LoadMessage(2342), "EvaluatethisJG=\"other words");
    EXPECT_NE(ListsFromConfig(CConfigFile(GbkFromUtf8(xml))).LevelCountRows, lists.LevelCountRows);
}

TEST_F(Generator, WholeListsAreReadFirstAndFromTheRunsOwnFolder) {
    CReportProject project(m_folder, "CQ");
    ReportLists lists;
    ASSERT_TRUE(CollectReport(project.Database, "重庆规范", project.Chosen, 6, 10, lists));
    m_folder.WriteFile("word/config.xml", project.Database.ReportBytes());
    const CReportRun run;
    const auto text = [&](const std::string& arguments) {
        EXPECT_EQ(Run("-o a.docx" + arguments), 0) << Error();
        return TextsOf(PartsOf(m_folder.ReadFile("out/a.docx"))["word/document.xml"]);
    };
    lists.ProjectStrings[0] = "列表中的工程";
    EXPECT_EQ(text("").find("列表中的工程"), std::string::npos);
    m_folder.WriteFile("word/_lists.json", ListsToJson(lists));
    EXPECT_NE(text("").find("列表中的工程"), std::string::npos);
    // Of another report; broken; and those of the run, whose folder goes with it.
    fs::last_write_time(m_folder.Host("word/_lists.json"),
                        fs::last_write_time(m_folder.Host("word/config.xml")) - std::chrono::seconds(5));
    EXPECT_EQ(text("").find("列表中的工程"), std::string::npos);
    m_folder.WriteFile("word/_lists.json", "{");
    EXPECT_EQ(text("").find("列表中的工程"), std::string::npos);
    const fs::path own = HostFiles().HostPath(run.Folder());
    fs::copy(m_folder.Host("word/config.xml"), own / "config.xml");
    std::ofstream(own / "_lists.json") << ListsToJson(lists);
    EXPECT_NE(text(" --run '" + own.string() + "'").find("列表中的工程"), std::string::npos);
    EXPECT_FALSE(fs::exists(own));
}

TEST_F(Generator, WhatFailsIsToldAndLeavesTheDocumentAlone) {
    const std::string good = MakeMarkedConfig("", "").Xml;
    const auto without = [&](const std::string& part, const std::string& replacement) {
        std::string xml = good;
        const std::size_t at = xml.find(part);
        EXPECT_NE(at, xml.npos) << part;
        return xml.replace(at, part.size(), replacement);
    };
    const std::string usual = "-o old.docx";
    const std::string bad = LoadMessage(3205);
    struct Case {
        std::string Config;
        std::string Arguments;
        std::string Told;
    };
    const std::vector<Case> cases{
        {good, "", LoadMessage(3203)},
        {good, "-o", LoadMessage(3203)},
        {good, "-x old.docx", LoadMessage(3203)},
        {good, usual + " more", LoadMessage(3203)},
        {good, "-o missing/old.docx", LoadMessage(3251)},
        {good, "-o .", LoadMessage(3251)},
        {"", usual, bad},
        {"no XML", usual, bad},
        {good.substr(0, good.size() / 2), usual, bad},
        {"<Other/>", usual, bad},
        {"<ProjectInfo/>", usual, bad},
        {without("<Jcj ", "<!-- "), usual, bad},
        {without("<TablesBigTotal0 ", "<TablesBigTotal9/><TablesBigTotal0 "), usual, bad},
        {without("riJG=\"", "riJG=\"x"), usual, bad},
        {without("icol0=\"", "icol0=\"-"), usual, bad},
        {without("sumlevelALL=\"", "sumlevelALL=\"99999999999999999999"), usual, bad},
        {without("破裂", "别的"), usual, bad},
        // Deep enough to break a parser that doesn't count.
        {"<ProjectInfo>" +
             [] {
                 std::string deep;
                 for (int i = 0; i < 200000; ++i) {
                     deep += "<a>";
                 }
                 return deep;
             }(),
         usual, bad},
    };
    m_folder.WriteFile("out/old.docx", "old");
    const auto expectFailure = [&](const std::string& arguments, const std::string& told) {
        EXPECT_EQ(Run(arguments), 1);
        const std::string error = Error();
        EXPECT_TRUE(error.starts_with(told)) << error;
        EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), told == LoadMessage(2388) ? 2 : 1) << error;
        EXPECT_EQ(m_folder.ReadFile("out/old.docx"), "old");
        EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.Host("out")), {}), 1);
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.Config.substr(0, 60) + " " + c.Arguments);
        WriteConfig(c.Config);
        expectFailure(c.Arguments, c.Told);
    }
    WriteConfig(good);
    fs::copy_file(m_folder.Host("GB.dotx"), m_folder.Host("CQ.dotx"), fs::copy_options::overwrite_existing);
    expectFailure(usual, LoadMessage(3250));
    // What exactly is missing is told in the same language.
    EXPECT_NE(Error().find("模板中没有书签“tblPrjData”。"), std::string::npos) << Error();
    fs::remove(m_folder.Host("CQ.dotx"));
    expectFailure(usual, LoadMessage(2388));
    fs::remove(m_folder.Host("word/config.xml"));
    expectFailure(usual, LoadMessage(3204));
}

}  // namespace
