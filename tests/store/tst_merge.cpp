#include <gtest/gtest.h>

#include <filesystem>

#include "shell/language.h"
#include "shell/textcodec.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/merge.h"
#include "tests/support/CFullDisk.h"
#include "tests/support/CTestFolder.h"

namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

struct Section {
    const char* Start;
    const char* End;
    const char* Task;
    std::vector<const char*> Codes;
};

class Merge : public testing::Test {
protected:
    _PRO_DATA Make(const std::string& name, const std::vector<Section>& sections,
                   const std::vector<std::pair<int, const char*>>& orphans = {}) {
        const std::string file = name + ".mdb";
        _PRO_DATA project;
        project.ProjectPath = m_folder.MakeProject(file);
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(project.ProjectPath, CDbPassword) && database.ReadAttrib(project));
        project.ProjectName = name;
        project.Comment = "of " + name;
        EXPECT_TRUE(database.WriteAttrib(project, false));
        for (const Section& section : sections) {
            _TESTING_DATA data;
            data.StartWell = section.Start;
            data.EndWell = section.End;
            data.TaskName = section.Task;
            data.TestingName = "not shown";
            data.VideoFileList = "v1.avi*v2.avi";
            EXPECT_TRUE(database.AddTesting(data));
            const std::int32_t id = database.LastInsertId();
            for (const char* code : section.Codes) {
                Add(database, id, code);
            }
        }
        for (const auto& [owner, code] : orphans) {
            Add(database, owner, code);
        }
        return project;
    }
    static void Add(CDbRec& database, std::int32_t owner, const char* code) {
        _REC_DATA record;
        record.TestingID = owner;
        record.DefectCode = code;
        record.DefectType = database.GetDefectType(code);
        record.Comment = code;
        EXPECT_TRUE(database.AddRecord(record));
    }
    // "start - end: codes" of each section of the new project, then the records of none.
    Lines Content() {
        CDbRec database;
        CTestingDataArray sections;
        CRecDataArray records;
        Lines lines;
        EXPECT_TRUE(database.OpenDatabase(m_result.Path, CDbPassword) && database.ReadAttrib(m_merged) &&
                    database.ReadTestings(sections));
        for (const _TESTING_DATA& section : sections) {
            EXPECT_TRUE(database.ReadRecords(section.ID, records, false));
            lines.push_back(section.Label() + ":" + Codes(records));
        }
        EXPECT_TRUE(database.ReadRecords(-1, records, false));
        CRecDataArray none;
        for (const _REC_DATA& record : records) {
            if (record.TestingID == -1) {
                none.Add(record);
            }
        }
        lines.push_back("none:" + Codes(none));
        return lines;
    }
    static std::string Codes(const CRecDataArray& records) {
        std::string codes;
        for (const _REC_DATA& record : records) {
            codes += " " + record.DefectCode;
        }
        return codes;
    }
    bool Run(const _PRO_DATA& first, const _PRO_DATA& second) {
        return MergeProjects(first, second, m_result);
    }

    CTestFolder m_folder;
    MergeResult m_result;
    _PRO_DATA m_merged;
};

}  // namespace

TEST_F(Merge, TwoHalvesOfAJobBecomeOne) {
    const _PRO_DATA first = Make("北", {{"A", "B", "t", {"PL", "BX"}}, {"B", "C", "t", {"GDZC"}}});
    const _PRO_DATA second =
        Make("南", {{"X", "Y", "t", {"CJ"}}, {"Y", "Z", "t", {}}, {"B", "A", "t", {"PL"}}});
    const std::string before = m_folder.ReadFile("db/北.mdb") + m_folder.ReadFile("db/南.mdb");
    m_folder.WriteFile("db/2026-03-14-092653.mdb", "taken");
    ASSERT_TRUE(Run(first, second));
    EXPECT_EQ(m_result.Path, m_folder.Path("db/2026-03-14-092654.mdb"));
    EXPECT_EQ(Content(), (Lines{"A - B: PL BX", "B - C: GDZC", "X - Y: CJ", "Y - Z:", "B - A: PL", "none:"}));
    EXPECT_EQ(m_merged.ProjectName, "北__南");
    EXPECT_EQ(m_merged.Comment, "of 北");
    EXPECT_EQ(m_merged.CreateTime, first.CreateTime);
    EXPECT_EQ(m_folder.ReadFile("db/北.mdb") + m_folder.ReadFile("db/南.mdb"), before);
    EXPECT_EQ(WriteMergeLog(m_result), "");
    EXPECT_FALSE(fs::exists(m_folder.Host("merge.txt")));
    EXPECT_TRUE(m_result.RefusedRecords.empty());
    ShowMergeResult(m_result);
    EXPECT_TRUE(m_folder.Desktop.Opened.empty());
}

TEST_F(Merge, SectionsThatAreThereGetTheDefectsAndABlockInTheLog) {
    const _PRO_DATA first = Make("甲", {{"A", "B", "任务", {"PL", "BX"}}, {"N", "M", "n", {"GDZC"}}});
    _PRO_DATA second = first;
    second.ProjectPath = m_folder.Path("db/乙.mdb");
    fs::copy(m_folder.Host("db/甲.mdb"), m_folder.Host("db/乙.mdb"));
    m_folder.Prompts.Expect(2800);
    ASSERT_TRUE(Run(first, second));
    EXPECT_EQ(Content(), (Lines{"A - B: PL BX PL BX", "N - M: GDZC", "none:"}));
    EXPECT_EQ(m_merged.ProjectName, "甲__甲");
    EXPECT_EQ(m_result.RefusedRecords, (Lines{"N - M, GDZC"}));
    const std::string reason = LoadMessage(2189);
    m_folder.WriteFile("merge.txt",
                       "of before, and much longer than what comes now" + std::string(1000, 'x'));
    m_folder.Desktop.CanOpen = true;
    ShowMergeResult(m_result);
    EXPECT_EQ(Utf8FromGbk(m_folder.ReadFile("merge.txt")),
              "合并测段失败," + reason +
                  ":\r\n工程名: 甲 测段名: 任务 起止井号: A - B\r\n视频文件名: v1.avi\r\n\r\n" +
                  "合并测段失败," + reason +
                  ":\r\n工程名: 甲 测段名: n 起止井号: N - M\r\n视频文件名: v1.avi\r\n\r\n");
    EXPECT_EQ(m_folder.Desktop.Opened, (Lines{m_folder.Path("merge.txt")}));
    m_folder.Desktop.CanOpen = false;
    m_folder.Prompts.Expect(3420);
    ShowMergeResult(m_result);
    EXPECT_NE(m_folder.Prompts.LastText().find("起止井号: A - B"), std::string::npos);
}

TEST_F(Merge, WhatHasNoSectionArrivesWithoutOne) {
    const _PRO_DATA first = Make("f", {{"a", "b", "t", {}}});
    // Its first two sections are the same to the database, so the new project gets one of the four; the last
    // one stands beyond the end of its list. "A - B" is there only in other letters.
    const _PRO_DATA second =
        Make("s", {{"A", "B", "t", {"PL"}}, {"a", "b", "t", {"CJ"}}, {"a", "b", "u", {"BX"}}},
             {{77, "CK"}, {-1, "TL"}});
    ASSERT_TRUE(Run(first, second));
    EXPECT_EQ(Content(), (Lines{"a - b:", "none: PL CJ BX CK TL"}));
    EXPECT_EQ(m_result.WithoutSection, 5);
    m_folder.Prompts.Expect(3420);
    m_folder.Prompts.Expect(3421);
    ShowMergeResult(m_result);

    // With more sections the same places have owners.
    m_folder.Clock.Local += std::chrono::hours(1);
    const _PRO_DATA third = Make("g", {{"a", "b", "t", {}}, {"c", "d", "t", {}}, {"e", "f", "t", {}}});
    ASSERT_TRUE(Run(third, second));
    EXPECT_EQ(Content(), (Lines{"a - b: CJ BX", "c - d:", "e - f:", "none: PL CK TL"}));
}

TEST_F(Merge, ARecordWithoutASectionIsMeasuredByTheWholeProject) {
    // Without "GDZC" anywhere all pass but "GDZC" itself; with one none passes.
    const std::vector<std::pair<int, const char*>> orphans = {{9, "PL"}, {7, "GDZC"}, {8, "CJ"}};
    const _PRO_DATA second = Make("s", {{"x", "y", "t", {"BX"}}}, orphans);
    const _PRO_DATA first = Make("f", {{"a", "b", "t", {"PL"}}});
    m_folder.Prompts.Expect(2800);
    ASSERT_TRUE(Run(first, second));
    EXPECT_EQ(Content(), (Lines{"a - b: PL", "x - y: BX", "none: PL CJ"}));
    const _PRO_DATA normal = Make("n", {{"a", "b", "t", {"GDZC"}}});
    m_folder.Prompts.Expect(2801);
    m_folder.Prompts.Expect(2800);
    m_folder.Prompts.Expect(2801);
    ASSERT_TRUE(Run(normal, second));
    EXPECT_EQ(Content(), (Lines{"a - b: GDZC", "x - y: BX", "none:"}));
    // A "GDZC" that arrives in a section counts for the records behind it.
    const _PRO_DATA late = Make("l", {{"x", "y", "t", {"GDZC"}}}, {{9, "PL"}});
    const _PRO_DATA mixed = Make("m", {{"u", "v", "t", {"GDZC"}}}, {{9, "PL"}});
    m_folder.Prompts.Expect(2801);
    ASSERT_TRUE(Run(Make("e", {}), late));
    m_folder.Prompts.Expect(2801);
    ASSERT_TRUE(Run(Make("e2", {}), mixed));
    EXPECT_EQ(Content(), (Lines{"u - v: GDZC", "none:"}));
}

TEST_F(Merge, ASectionThatTheDatabaseRefusedEndsItAtItsFirstRecord) {
    const _PRO_DATA first = Make("f", {{"a", "b", "t", {}}, {"c", "d", "u", {}}});
    {
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(first.ProjectPath, CDbPassword));
        database.Execute("create unique index once on Testing (TaskName)");
    }
    const _PRO_DATA second = Make("s", {{"x", "y", "v", {"PL"}}, {"y", "z", "t", {"CJ"}}});
    m_folder.Prompts.Expect(2007);
    EXPECT_THROW((void)Run(first, second), std::invalid_argument);
    EXPECT_EQ(Content(), (Lines{"a - b:", "c - d:", "x - y: PL", "none:"}));
    EXPECT_EQ(
        m_result.Log,
        "合并测段失败,数据库写入错误:\r\n工程名: s 测段名: t 起止井号: y - z\r\n视频文件名: v1.avi\r\n\r\n");
    // Without records of that section it goes to its end.
    const _PRO_DATA empty = Make("e", {{"y", "z", "t", {}}, {"x", "y", "v", {"PL"}}});
    m_folder.Prompts.Expect(2007);
    EXPECT_TRUE(Run(first, empty));
    EXPECT_EQ(Content(), (Lines{"a - b:", "c - d:", "x - y: PL", "none:"}));
}

TEST_F(Merge, WhatFailsIsToldAndTheSourcesStay) {
    const _PRO_DATA first = Make("f", {{"a", "b", "t", {"PL"}}});
    _PRO_DATA second = Make("s", {{"x", "y", "t", {"PL"}}});
    _PRO_DATA other = second;
    other.CriterionName = LowerCase(second.CriterionName);
    m_folder.Prompts.Expect(1062);
    EXPECT_FALSE(Run(first, other));
    EXPECT_TRUE(m_result.Path.empty());

    _PRO_DATA gone = first;
    gone.ProjectPath = m_folder.Path("gone.mdb");
    m_folder.Prompts.Expect(2203);
    EXPECT_FALSE(Run(gone, second));
    EXPECT_EQ(m_folder.Prompts.LastText(), LoadMessage(2203) + m_folder.Path("db/2026-03-14-092653.mdb"));
    EXPECT_FALSE(fs::exists(m_folder.Host("db/2026-03-14-092653.mdb")));

    m_folder.Prompts.Expect(2000);
    EXPECT_FALSE(Run(first, gone));
    EXPECT_EQ(Content(), (Lines{"a - b: PL", "none:"}));
    EXPECT_EQ(m_merged.ProjectName, "f__f");

    // A disk that fills up leaves the copy as it was.
    std::vector<Section> many(3000, {"x", "y", "t", {}});
    Lines names;
    for (int i = 0; i < 3000; ++i) {
        names.push_back("w" + std::to_string(i));
    }
    for (int i = 0; i < 3000; ++i) {
        many[static_cast<std::size_t>(i)].Start = names[static_cast<std::size_t>(i)].c_str();
    }
    second = Make("m", many);
    m_folder.Prompts.Allow(2007);
    m_folder.Prompts.Allow(2013);
    {
        const CFullDisk full(fs::file_size(m_folder.Host("db/f.mdb")) + 100000);
        EXPECT_FALSE(Run(first, second));
    }
    EXPECT_EQ(Content(), (Lines{"a - b: PL", "none:"}));
    EXPECT_EQ(m_merged.ProjectName, "f");
}
