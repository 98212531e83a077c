#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <filesystem>

#include "reports/excel/celltexts.h"
#include "reports/excel/excelexport.h"
#include "reports/excel/inspectiontable.h"
#include "reports/excel/workbook.h"
#include "reports/ooxml/ziparchive.h"
#include "store/CDbRec.h"
#include "tests/excel/CReadWorkbook.h"
#include "tests/reports/documents.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/CTestHome.h"

namespace {

namespace fs = std::filesystem;

class InspectionTable : public testing::Test {
protected:
    InspectionTable() : Home(Folder.Host("home")) {
        EXPECT_TRUE(Db.OpenDatabase(Folder.MakeProject(), CDbPassword));
        _PRO_DATA project;
        EXPECT_TRUE(Db.ReadAttrib(project));
        project.ProjectName = "幸福路 <A&B>";
        project.ProjectIndex = "007";
        project.Location = "=1+1";
        EXPECT_TRUE(Db.WriteAttrib(project, false));
    }

    void AddSection(const std::string& start, const std::string& diameter, const std::string& video) {
        _TESTING_DATA section;
        section.TestingName = "新段";
        section.StartWell = start;
        section.EndWell = "=HYPERLINK(\"x\")";
        section.TestingDate = "2026/03/14 09:26:53";
        section.PipeDiameter = diameter;
        section.PipeLength = "12.50";
        section.TaskIndex = "42";
        section.GpsXStart = 118.32225549;
        section.GpsYStart = -29.5;
        section.VideoFileList = video;
        EXPECT_TRUE(Db.AddTesting(section));
    }
    void AddRecord(int section, const std::string& code, double time,
                   const std::vector<std::string>& pictures) {
        _REC_DATA record;
        record.TestingID = section;
        record.DefectCode = code;
        record.DefectLevel = 3;
        record.DistanceStart = 7.125F;
        record.DirectionStart = 3;
        record.DirectionEnd = 11;
        record.GpsX = 118.5;
        for (const std::string& picture : pictures) {
            record.AddPicture(picture, time);
        }
        EXPECT_TRUE(Db.AddRecord(record));
    }
    CReadWorkbook Export() {
        const std::string file = Folder.Path("table.xlsx");
        EXPECT_TRUE(WriteInspectionTable(Db, file));
        EXPECT_TRUE(FindValidator().empty() || IsValid(Folder.Host("table.xlsx")));
        return CReadWorkbook(Folder.Host("table.xlsx"));
    }
    static ReadCell Text(const std::string& text) { return {"", text, "", ""}; }
    static ReadCell Number(const std::string& number, const std::string& format) {
        return {"", "", number, format};
    }
    static ReadCell Link(const std::string& path) { return {"HYPERLINK(\"" + path + "\")", path, "", ""}; }

    CTestFolder Folder;
    CTestHome Home;
    CDbRec Db;
};

// No file of this process can grow beyond, as on a disk that is full.
class CFullDisk {
public:
    explicit CFullDisk(rlim_t bytes) : m_handler(signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit limit{bytes, m_former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_former);
        signal(SIGXFSZ, m_handler);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

private:
    rlimit m_former{};
    sighandler_t m_handler;
};

}  // namespace

TEST_F(InspectionTable, EachRecordHasARowAndEachSectionOneMore) {
    Folder.WriteFile("Job/Y1.AVI", "video");
    AddSection("Y1", "300", Folder.Path("job/y1.avi") + "*" + Folder.Path("job/second.avi"));
    AddSection("Y2", "", "");
    AddSection("Y3", "DN300", "");
    AddRecord(1, "PL", 83.99, {Folder.Path("job/1.jpg"), Folder.Path("job/=\"2\".jpg")});
    AddRecord(1, "无此码", 0.0, {});
    const CReadWorkbook book = Export();
    ASSERT_EQ(book.Rows, 6);
    // The videos of all rows but the head, and the pictures of the two records.
    EXPECT_EQ(book.Formulas(),
              (std::vector<std::string>{"G2", "AF2", "AG2", "G3", "AF3", "AG3", "G4", "G5", "G6"}));

    EXPECT_EQ(book.Cell("A1"), Text("工程名称"));
    EXPECT_EQ(book.Cell("AG1"), Text("图片2"));
    EXPECT_EQ(book.Cell("A2"), Text("幸福路 <A&B>"));
    EXPECT_EQ(book.Cell("B2"), Text("007"));
    EXPECT_EQ(book.Cell("C2"), Text("=1+1"));
    EXPECT_EQ(book.Cell("D2"), Text("2026/03/14 09:26:53"));
    EXPECT_EQ(book.Cell("E2"), Text("CJJ 181-2012 城镇排水管道检测与评估技术规程"));
    EXPECT_EQ(book.Cell("F2"), Text("新段"));
    // The file's real name, though the project has another case.
    EXPECT_EQ(book.Cell("G2"), Link(Folder.Host("Job/Y1.AVI").string()));
    EXPECT_EQ(book.Cell("H2"), Number("118.322255", "0.000000"));
    EXPECT_EQ(book.Cell("I2"), Number("-29.5", "0.000000"));
    EXPECT_EQ(book.Cell("L2"), Text("42"));
    EXPECT_EQ(book.Cell("P2"), Text("Y1"));
    EXPECT_EQ(book.Cell("Q2"), Text("=HYPERLINK(\"x\")"));
    EXPECT_EQ(book.Cell("T2"), Number("300", "0"));
    EXPECT_EQ(book.Cell("U2"), Number("12.5", "0.00"));
    EXPECT_EQ(book.Cell("X2"), Text("破裂"));
    EXPECT_EQ(book.Cell("Y2"), Text("PL"));
    EXPECT_EQ(book.Cell("Z2"), Number("3", "0"));
    EXPECT_EQ(book.Cell("AA2"), Number("118.5", "0.000000"));
    EXPECT_EQ(book.Cell("AC2"), Number("7.12", "0.00"));
    EXPECT_EQ(book.Cell("AD2"), Text("3~11"));
    EXPECT_EQ(book.Cell("AE2"), Text("01:23"));
    EXPECT_EQ(book.Cell("AF2"), Link(Folder.Host("Job/1.jpg").string()));
    EXPECT_EQ(book.Cell("AG2"), (ReadCell{"HYPERLINK(\"" + Folder.Host("Job/=").string() + "\"\"2\"\".jpg\")",
                                          Folder.Host("Job/=\"2\".jpg").string(), "", ""}));

    EXPECT_EQ(book.Cell("X3"), Text("无此码"));
    EXPECT_EQ(book.Cell("AF3"), Link(""));
    for (const std::string row : {"4", "5", "6"}) {
        EXPECT_EQ(book.Cell("A" + row), Text("幸福路 <A&B>"));
        for (const std::string column : {"X", "Y", "Z", "AA", "AB", "AC", "AD", "AE", "AF", "AG"}) {
            EXPECT_EQ(book.Cell(column + row), ReadCell()) << column << row;
        }
    }
    EXPECT_EQ(book.Cell("G5"), Link(""));
    EXPECT_EQ(book.Cell("T5"), Number("0", "0"));
    EXPECT_EQ(book.Cell("T6"), Text("DN300"));
}

TEST_F(InspectionTable, TheHeadStaysInSightAndCanBeFiltered) {
    AddSection("Y1", "300", "");
    const CReadWorkbook book = Export();
    EXPECT_EQ(book.Name, "检测数据表");
    EXPECT_EQ(book.Frozen, "A2");
    EXPECT_EQ(book.Filter, "A1:AG2");
    ASSERT_EQ(book.Widths.size(), 33U);
    // As wide as what stands in it, at least as the head and its button; a long text doesn't push the rest
    // away.
    EXPECT_NEAR(book.Widths.at("A"), 12 + 3, 1);
    EXPECT_NEAR(book.Widths.at("D"), 19 + 3, 1);
    EXPECT_NEAR(book.Widths.at("E"), 36 + 3, 1);
    EXPECT_NEAR(book.Widths.at("B"), 11 + 3, 1);
    Folder.UseLanguage("English");
    EXPECT_EQ(Export().Cell("C1"), Text("Project location"));
}

TEST(InspectionCells, OddTextsLeaveAWorkbookThatOpens) {
    CTestFolder folder;
    std::vector<std::string> list(2 * InspectionColumns + 5);
    list[InspectionColumns] = std::string("a\x01") + "b\tc<&>\"'";
    list[InspectionColumns + 1] = "\xB9\xA4程\xEF\xBF\xBF😀";
    std::string longText;
    while (longText.size() < 100000) {
        longText += "😀";
    }
    list[InspectionColumns + 2] = longText;
    list[InspectionColumns + 3] = "_x0041_ ";
    list[InspectionColumns + 6] = LinkCell("/jobs/\xB9\xA4.avi");
    list[InspectionColumns + 31] = "=1";
    const auto bytes = MakeWorkbook(list, "[no]/name*");
    ASSERT_TRUE(bytes);
    folder.WriteFile("odd.xlsx", *bytes);
    const CReadWorkbook book(folder.Host("odd.xlsx"));
    EXPECT_EQ(book.Rows, 2);
    EXPECT_EQ(book.Cell("A2").Text, "a_x0001_b\tc<&>\"'");
    EXPECT_EQ(book.Cell("B2").Text, "\uFFFD\uFFFD程\uFFFD😀");
    EXPECT_EQ(book.Cell("C2").Text.size(), 32767U / 2 * 4);
    // A spreadsheet shows the first seven as "_", which keeps the rest from being taken for an "A".
    EXPECT_EQ(book.Cell("D2").Text, "_x005F_x0041_ ");
    EXPECT_EQ(book.Cell("G2"), (ReadCell{"", "/jobs/\uFFFD\uFFFD.avi", "", ""}));
    EXPECT_EQ(book.Cell("AF2").Text, "=1");
}

TEST(InspectionCells, AFullDiskLeavesNoHalfWorkbook) {
    const auto sizes = [](const std::string& workbook) {
        std::vector<std::pair<std::string, std::size_t>> parts;
        for (const ZipEntry& part : ReadZip(workbook)) {
            parts.emplace_back(part.Name, part.Bytes.size());
        }
        return parts;
    };
    std::vector<std::string> list(InspectionColumns, "head");
    const auto whole = sizes(MakeWorkbook(list, "table").value());
    const auto makeOnDisk = [&list](rlim_t bytes) {
        const CFullDisk disk(bytes);
        return MakeWorkbook(list, "table");
    };
    int made = 0;
    for (rlim_t bytes = 512; bytes <= 12288; bytes += 512) {
        if (const auto workbook = makeOnDisk(bytes)) {
            EXPECT_EQ(sizes(*workbook), whole) << bytes;
            ++made;
        }
    }
    EXPECT_GT(made, 0);
    list.resize(100 * InspectionColumns, std::string(100, 'a'));
    EXPECT_FALSE(makeOnDisk(300000));
}
