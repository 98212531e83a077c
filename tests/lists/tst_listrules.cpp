#include <gtest/gtest.h>

#include "lists/listtexts.h"
#include "lists/roworder.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"

namespace {

using Texts = std::vector<std::string>;

}  // namespace

TEST(ListRules, TextsOfASection) {
    _TESTING_DATA section;
    section.TestingName = "n";
    section.StartWell = "Y1";
    section.EndWell = "Y2";
    section.TaskIndex = "3";
    section.TaskName = "t";
    section.TestingDirection = "顺流";
    section.PipeLength = "50";
    section.PipeDiameter = "800";
    section.PipeMaterial = "m";
    section.PipeType = "p";
    section.VideoFileList = "D:\\A/b.avi*c.avi";
    Texts texts;
    for (int column = 0; column < 12; ++column) {
        texts.push_back(SectionText(section, 7, column));
    }
    EXPECT_EQ(texts,
              (Texts{"n", "Y1 - Y2", "7", "3", "t", "顺流", "50", "800", "m", "p", "D:\\A/b.avi", ""}));
    EXPECT_EQ(SectionColumns()[10].Width, 220);
}

TEST(ListRules, TextsOfADefect) {
    const CTestFolder folder;
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(folder.MakeProject(), CDbPassword));
    database.DefectNames[static_cast<std::size_t>(database.FindDefectIndex("CJ"))].clear();
    EXPECT_EQ(DefectName(database, "gdzc"),
              database.DefectNames[static_cast<std::size_t>(database.FindDefectIndex("GDZC"))]);
    EXPECT_EQ(DefectName(database, "cj") + DefectName(database, "X?"), "cjX?");

    _REC_DATA record;
    record.DefectCode = "PL";
    record.Comment = "c";
    record.DefectLevel = 3;
    record.DistanceStart = 12.345F;
    record.DistanceEnd = 20.5F;
    record.AddPicture("a.jpg", 125.99);
    record.AddPicture("b.jpg", 1.0);
    Texts full;
    Texts brief;
    for (int column = 0; column < 9; ++column) {
        full.push_back(DefectText(record, "破裂", true, column));
        brief.push_back(DefectText(record, "破裂", false, column));
    }
    EXPECT_EQ(full, (Texts{"破裂", "PL", "3", "12.35", "20.5", "2", "02:05", "c", ""}));
    EXPECT_EQ(brief, (Texts{"破裂", "PL", "3", "12.35", "20.5", "", "", "", ""}));
    EXPECT_EQ(DefectColumns(false).size(), 5U);

    EXPECT_EQ(DefectText(_REC_DATA(), "", true, 6), "71582788:15");
    EXPECT_EQ(PictureTimeText(6000.0) + " " + PictureTimeText(-0.9), "100:00 00:00");
    EXPECT_EQ(PictureTimeText(1e30) + " " + PictureTimeText(-1e30), "35791394:08 35791394:08");
}

TEST(ListRules, WellsCompareByTheirNumbers) {
    EXPECT_LT(CompareByWells("Y2 - Y10", "Y10 - Y11"), 0);
    EXPECT_GT(CompareByWells("A10 - B3", "Z10 - Z2"), 0);
    EXPECT_EQ(CompareByWells("A07 - B8", "x7y8"), 0);
    // One number, or three: the texts decide, exactly.
    EXPECT_GT(CompareByWells("Y2 - Y", "Y10 - Y11"), 0);
    EXPECT_GT(CompareByWells("Y2-1 - Y3", "Y10 - Y11"), 0);
    EXPECT_NE(CompareByWells("y", "Y"), 0);
    EXPECT_GT(CompareByWells("中 - ", "阿 - "), 0);  // D6D0 behind B0A2
    // Beyond the type: all alike.
    EXPECT_EQ(CompareByWells("1 99999999999", "1 88888888888"), 0);
    EXPECT_GT(CompareByWells("99999999999 0", "0 99999999999"), 0);
}
