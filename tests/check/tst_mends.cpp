// What is left as it is, and what is mended: never more than was shown, and with a way back.
#include <filesystem>
#include <fstream>

#include "check/mends.h"
#include "check/numbertext.h"
#include "check/waivers.h"
#include "history/restorepoints.h"
#include "history/steps.h"
#include "store/projectdocument.h"
#include "tests/check/CCheckTest.h"
#include "tests/support/CTestHome.h"

namespace {

namespace fs = std::filesystem;

class Mends : public CCheckTest {
protected:
    Mends() {
        EXPECT_TRUE(Database.OpenDatabase(MakeCleanProject("p.mdb", "GB"), CDbPassword));
        fs::create_directories(Folder.Host("home"));
    }

    CCheckSnapshot Read() {
        CCheckSnapshot snapshot;
        while (snapshot.ReadPiece(Database) == CCheckSnapshot::Reading::Going) {
        }
        return snapshot;
    }
    std::string Dump() {
        std::string text;
        EXPECT_TRUE(DumpProject(Database, [&](std::string_view part) { text += part; }));
        return text;
    }
    std::vector<CheckFinding> Check() { return Find(Database); }

    CTestHome m_home{Folder.Host("home")};
    CDbRec Database;
};

TEST_F(Mends, WhatIsLeftAsItIsComesBackWhenItsValueChanges) {
    Database.Execute("update Testing set PipeDiameter = 'DN400' where ID = 1");
    const std::vector<CheckFinding> findings = Check();
    ASSERT_EQ(findings.size(), 1U);
    {
        CWaivers waivers(Database.Path());
        EXPECT_EQ(waivers.ReasonOf(findings[0]), nullptr);
        ASSERT_TRUE(waivers.Waive(findings, "客户认可 “DN”\t\"x\""));
    }
    const CWaivers waivers(Database.Path());
    ASSERT_NE(waivers.ReasonOf(findings[0]), nullptr);
    EXPECT_EQ(*waivers.ReasonOf(findings[0]), "客户认可 “DN”\t\"x\"");
    Database.Execute("update Testing set PipeDiameter = 'DN500' where ID = 1");
    EXPECT_EQ(waivers.ReasonOf(Check().at(0)), nullptr);
    EXPECT_TRUE(CWaivers(Folder.Path("db/other.mdb")).All().empty()) << "another project";

    // A file that is damaged is told, and stays as it is.
    const fs::path file = fs::directory_iterator(Folder.Host("home/.config/drovane/left"))->path();
    std::ofstream(file, std::ios::trunc) << "{\"project\": ";
    Folder.Prompts.Expect(3840);
    CWaivers broken(Database.Path());
    EXPECT_TRUE(broken.All().empty());
    Folder.Prompts.Expect(3840);
    EXPECT_FALSE(broken.Waive(findings, "again"));
    EXPECT_EQ(ReadHostFile(file), "{\"project\": ");
    EXPECT_TRUE(Folder.Prompts.AllCame());
}

TEST_F(Mends, PutsRightWhatHasOneAnswerInOneStep) {
    const std::string third = " DefectLevel = 3, Comment = '3', ";
    Database.Execute("update Testing set DistanceEnd = 0 where ID = 1");
    Database.Execute("update Testing set TestingDate = '2026.3.2' where ID = 2");
    Database.Execute("update Record set DistanceEnd = 0 where ID = 3");
    Database.Execute("update Record set" + third + "DistanceStart = 25, DistanceEnd = 25 where ID = 5");
    Database.Execute("update Record set" + third + "DistanceStart = 5, DistanceEnd = 5 where ID = 6");
    // Two have no safe answer: which end is wrong, and what length it has.
    Database.Execute("update Record set DistanceEnd = 3 where ID = 4");
    const std::string before = Dump();
    const CCheckSnapshot snapshot = Read();
    const std::vector<Mend> mends = ProposeMends(snapshot, Check());
    ASSERT_EQ(mends.size(), 4U);
    ASSERT_TRUE(ApplyMends(Database, snapshot, mends));
    EXPECT_EQ(RulesOf(Check()), std::vector<int>{RuleStartBehindEnd});
    const CCheckSnapshot after = Read();
    EXPECT_EQ(after.Sections[0].Section.DistanceEnd, 30.0F);
    EXPECT_EQ(after.Sections[1].Section.TestingDate, "2026/03/02 00:00:00");
    EXPECT_EQ(after.Sections[1].Records[0].DistanceEnd, 8.0F);
    EXPECT_EQ(after.Sections[2].Records[0].DistanceStart, 5.0F);
    EXPECT_EQ(after.Sections[2].Records[0].GetPicture1(), snapshot.Sections[2].Records[1].GetPicture1());

    const std::vector<RestorePoint> points = ListRestorePoints(Database.Path());
    EXPECT_TRUE(std::any_of(points.begin(), points.end(),
                            [](const RestorePoint& point) { return point.Reason == PointMend; }));
    EXPECT_EQ(UndoSteps(Database).Result, StepResult::Outcome::Done);
    EXPECT_EQ(Dump(), before);
}

TEST_F(Mends, FindsTheFilesOfAMovedFolder) {
    // The job was renamed as a whole; one section's folder was then called otherwise.
    fs::rename(Folder.Host("job"), Folder.Host("Job 2026"));
    fs::rename(Folder.Host("Job 2026/3"), Folder.Host("Job 2026/third"));
    // A stranger of the same name, and one picture that is gone for good.
    fs::create_directories(Folder.Host("Job 2026/else"));
    fs::copy_file(Folder.Host("Job 2026/1/v.avi"), Folder.Host("Job 2026/else/v.avi"));
    fs::remove(Folder.Host("Job 2026/2/p22.jpg"));
    EXPECT_EQ(Check().size(), 9U);

    const CCheckSnapshot snapshot = Read();
    const MissingPaths paths = FindMissingPaths(snapshot);
    EXPECT_EQ(paths.Missing.size(), 9U);
    EXPECT_EQ(paths.All.size(), 9U);
    const MovedFiles moved = FindMovedFiles(paths.Missing, paths.All, Folder.Path("Job 2026"));
    EXPECT_EQ(moved.Found.size(), 7U);
    EXPECT_EQ(moved.Several.size() + moved.None.size(), 2U)
        << "the third video could be any of that name, and one picture is nowhere";
    ASSERT_TRUE(ApplyMends(Database, snapshot, ProposeMoved(snapshot, moved.Found)));
    EXPECT_EQ(RulesOf(Check()), (std::vector<int>{RuleVideoMissing, RulePictureMissing}));
    // Records name the video that their section names.
    const CCheckSnapshot after = Read();
    EXPECT_EQ(after.Sections[0].Section.VideoFileList, Folder.Path("Job 2026/1/v.avi"));
}

TEST(CheckTexts, ReadDatesAsAPersonDoes) {
    for (const auto& [text, date] : {std::pair("2026.3.1", "2026/03/01 00:00:00"),
                                     {"2026年3月1日 8:05", "2026/03/01 08:05:00"},
                                     {"20260301", "2026/03/01 00:00:00"},
                                     {"2026-03-01 08:05:09", "2026/03/01 08:05:09"},
                                     // These have no one answer.
                                     {"1.3.2026", "1.3.2026"},
                                     {"2026.13.1", "2026.13.1"},
                                     {"26.3.1", "26.3.1"},
                                     {"", ""}}) {
        EXPECT_EQ(CanonicalDate(text), date);
    }
    EXPECT_TRUE(HasDateForm("2026/03/01 08:00:00"));
    EXPECT_TRUE(HasDateForm("2026-03-01"));
    EXPECT_FALSE(HasDateForm("2026/3/1 08:00:00"));
    EXPECT_FALSE(PositiveNumber("30 m"));
    EXPECT_FALSE(PositiveNumber("0"));
    EXPECT_EQ(PositiveNumber("30.5"), 30.5);
}

}  // namespace
