// Word reports from the project to the document, as another program reads it.
#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "reports/word/wordreport.h"
#include "shell/language.h"
#include "shell/temporaryfolder.h"
#include "tests/reports/documents.h"
#include "tests/reports/project.h"
#include "tests/support/CTestHome.h"

namespace {

namespace fs = std::filesystem;

std::string ReadReport(const fs::path& file) {
    const std::string command =
        DROVANE_PYTHON " '" DROVANE_TEST_FILES "/read_report.py' '" + file.string() + "'";
    FILE* output = popen(command.c_str(), "r");
    std::string text = "\n";
    for (int c = fgetc(output); c != EOF; c = fgetc(output)) {
        text += static_cast<char>(c);
    }
    EXPECT_EQ(pclose(output), 0) << file << " can't be read, or the package python3-docx isn't there";
    return text;
}

// Whole lines, in this order.
void ExpectLines(const std::string& text, const std::vector<std::string>& lines) {
    std::size_t at = 0;
    for (const std::string& line : lines) {
        const std::size_t found = text.find("\n" + line + "\n", at);
        ASSERT_NE(found, text.npos) << line << "\nafter\n" << text.substr(0, at) << "\nin\n" << text;
        at = found + line.size() + 1;
    }
}

class WordReports : public testing::Test {
protected:
    WordReports() : m_home(m_folder.Host("home")) { setenv("TMPDIR", m_folder.Host("").c_str(), 1); }
    ~WordReports() override { unsetenv("TMPDIR"); }

    // Of the chosen sections, in this standard.
    WordReport Make(CReportProject& project, const std::string& criterionName, const std::string& target) {
        ReportOrder order{{}, 6, 10, [this](const std::string& line) { m_told.push_back(line); }};
        CTestingDataArray all;
        EXPECT_TRUE(project.Database.ReadTestings(all));
        for (const std::uint32_t id : project.Chosen) {
            order.Sections.Add(all[static_cast<int>(id) - 1]);
        }
        EXPECT_TRUE(CollectWordReport(project.Database, criterionName, order, m_run));
        return WriteWordReportTo(m_folder.Path(target), m_run, criterionName, order.Status);
    }

    CTestFolder m_folder;
    CTestHome m_home;
    CReportRun m_run;
    std::vector<std::string> m_told;
};

TEST_F(WordReports, FormsOfSectionsOnTheirPages) {
    CReportProject project(m_folder, "GB");
    CRecDataArray records;
    ASSERT_TRUE(project.Database.ReadRecords(2, records, false));
    _REC_DATA second = records[0];
    second.Pictures = {};
    second.AddPicture(m_folder.WriteFile("job/a.jpg", MakeBitmap(40, 30, 0x607080)), 1.0);
    std::string broken = m_folder.WriteFile("job/b.jpg", "no picture");
    second.AddPicture(broken, 2.0);
    // As it is stored.
    std::transform(broken.begin(), broken.end(), broken.begin(),
                   [](unsigned char c) { return std::tolower(c); });
    ASSERT_TRUE(project.Database.UpdateRecord(second));
    EXPECT_TRUE(Make(project, LoadMessage(2150), "r.docx").Complete);
    const auto text = [](int number) { return LoadMessage(number); };
    const std::string lost = text(2393);
    ExpectLines(ReadReport(m_folder.Host("r.docx")),
                {"项目名称|工程<1> \"A&B\" 'x'",
                 "报告编号|GC-7",
                 "检测地点|重庆😀",
                 "检测日期|2026/03/15",
                 "检测单位|乙公司",
                 "检测人员|李四",  //
                 "1|一号|W1 - W2|管径 800 mm, 混凝土管|50.5",
                 "3|五号|W5 - W6|管径 600 mm, |30",
                 "合计||||101.3",  //
                 text(2391),
                 "1|一号|W1 - W2|800|50.5|混凝土管|6|10|Ⅳ|0.03|9.25|" + text(2342) + "|-|-|-|-|-|-",
                 "2|一号复测|W1 - W2|0|49.0|PVC|-|-|-|-|-|-|5.5|5.5|Ⅲ|0|5.3|" + text(2349),
                 "4|五号|W5 - W6|600|30.0||-|-|-|-|-|-|-|-|-|-|-|-",  //
                 "1|一号|W1 - W2|Ⅳ|2|-|-",
                 "2|一号复测|W1 - W2|-|-|Ⅲ|1",
                 "结构性缺陷（修复等级）|Ⅰ|0.0%",
                 "结构性缺陷（修复等级）|Ⅳ|25.0%",
                 "结构性缺陷（修复等级）|无结构性缺陷|75.0%",
                 "1|破裂|0|1|0|0",
                 "13|障碍物|0|0|1|0",
                 "[chart]",
                 "[chart]",
                 "1|一号|W1 - W2|800|混凝土管|0.7|1.23|破裂/(0309)|2|",
                 "4|一号复测|W1 - W2|0|PVC|2.0|2 - 4.5|障碍物/(0507)|3|",  //
                 "2|检查井|1|0|1|0|0|0|1|0|-",
                 "|合计|2|0|1|0|0|0|1|0|-",
                 "2|H1|检查井|否|钢筋混凝土|铸铁|下沉",
                 "0|(JCJ_JGKTCHAX)井盖框突出或凹陷|0|0|下沉|图1",
                 lost + "图1//\\pic\\m.jpg/|",  //
                 "序号|1|管段名称|一号",
                 "录像文件|一.avi|起始井号|W1|终止井号|W2",
                 "检测地点|望川路|检测日期|2026/03/15",
                 "1.23|(PL)破裂|2|2|渗水|图1,2",
                 "20 - 21|(BX)变形|10|4||",
                 "[picture]/图1|" + lost + "图2//" + broken + "/",
                 "[page]",
                 "序号|2|管段名称|一号复测",
                 "修复指数|9.25|养护指数|-",
                 "10|(CJ)沉积|0.5|1|<泥>|图1",
                 lost + "图1//\\pic\\c.jpg/|",
                 "[page]",
                 "序号|3|管段名称|五号",
                 "0 - 30|-|-|-|无缺陷|"});
    // Where the report stood, from the map to its end.
    EXPECT_EQ(m_told.front(), text(2154));
    EXPECT_EQ(m_told[1], text(2155));
    EXPECT_EQ(m_told.back(), text(2160));
}

TEST_F(WordReports, FormsOfDefectsThreeAPage) {
    CReportProject project(m_folder, "GZ");
    EXPECT_TRUE(Make(project, LoadMessage(2151), "r.docx").Complete);
    const std::string lost = LoadMessage(2393);
    ExpectLines(ReadReport(m_folder.Host("r.docx")),
                {"检测单位|乙公司", "合计||||101.3",
                 "3|五号|W5 - W6||600|0||6|3|10|0|0|0|0|" + LoadMessage(2320) + "|" + LoadMessage(2323),
                 "1|破裂|0|1|0|0", "4|一号复测|W1 - W2|0|PVC|2.0|2 - 4.5|障碍物/(0507)|3|",
                 "起止井号|W1 - W2|" + lost + "/\\pic\\a.jpg", "缺陷名称|破裂|", "缺陷等级|2|",
                 "纵向位置（m）|1.23|", "缺陷类别|" + LoadMessage(2477) + "|", "说　　明|渗水|",
                 "缺陷名称|沉积|", "[page]", "缺陷名称|障碍物|", "缺陷名称|变形|"});
    EXPECT_TRUE(Make(project, LoadMessage(2152), "s.docx").Complete);
}

TEST_F(WordReports, GoIntoTheDocumentsOrAreToldNotTo) {
    CReportProject project(m_folder, "GB");
    (void)Make(project, LoadMessage(2150), "r.docx");
    const auto write = [&] { return WriteWordReport(m_run, LoadMessage(2150), "幸福路/东", {}); };
    const std::string folder = m_folder.Path("home/Documents/Drovane") + "\\";
    EXPECT_EQ(write().Path, folder + "幸福路_东.docx");
    const WordReport second = write();
    EXPECT_EQ(second.Path, folder + "幸福路_东 (2).docx");
    m_folder.Prompts.Expect(3252);
    OpenWordReport(second.Path);

    fs::create_symlink("/dev/full", m_folder.Host("full.docx"));
    for (const char* target : {"full.docx", "none/r.docx"}) {
        m_folder.Prompts.Expect(3251);
        const WordReport lost = WriteWordReportTo(m_folder.Path(target), m_run, LoadMessage(2150), {});
        EXPECT_EQ(lost.Path, "");
        EXPECT_FALSE(lost.Complete);
    }
    m_folder.WriteFile("GB.dotx", MakeDocument("<w:p/>"));
    m_folder.Prompts.Expect(3250);
    EXPECT_EQ(write().Path, "");
    m_folder.WriteFile("GB.dotx", "no template");
    m_folder.Prompts.Expect(2388);
    EXPECT_EQ(write().Path, "");
    EXPECT_FALSE(fs::exists(m_folder.Host("home/Documents/Drovane/幸福路_东 (3).docx")));
}

}  // namespace
