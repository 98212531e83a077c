#include <gtest/gtest.h>

#include "defects/defectform.h"
#include "defects/defectpictures.h"
#include "defects/edittools.h"
#include "store/CDbRec.h"
#include "store/criterionmaker.h"
#include "tests/support/CTestFolder.h"

namespace {

class DefectForm : public testing::Test {
protected:
    // Manhole rows in the middle, and one whose group doesn't fit its code.
    DefectForm() {
        WriteCriterionFile({"S",
                            {{"PL", "破裂", "JG", {}},
                             {"JCJ_ZC", "检查井正常", "JCJ", {}},
                             {"BX", "变形", "JG", {}},
                             {"JX", "井", "JCJ", {}}}},
                           Folder.Host("s.mdb").string());
        EXPECT_TRUE(Database.OpenDatabase(Folder.Path("s.mdb"), CDbPassword));
    }

    CTestFolder Folder;
    CDbRec Database;
};

std::string Usable(const EditState& state) {
    std::string ids;
    for (const int id : RuledControls()) {
        ids += CanUse(id, state) ? std::to_string(id) + " " : "";
    }
    return ids;
}

}  // namespace

TEST_F(DefectForm, ManholesAreNotOfferedAndShiftNothing) {
    const auto choices = DefectChoices(Database);
    ASSERT_EQ(choices.size(), 3U);
    EXPECT_EQ(choices[1].Label, "(BX)变形");
    EXPECT_EQ(FindChoice(choices, "bx"), 1);
    EXPECT_EQ(FindChoice(choices, "JCJ_ZC"), -1);
}

TEST_F(DefectForm, OnlyAManholeKeepsTheColumnsOfOne) {
    _REC_DATA record;
    record.JcjNo = "W1";
    record.JcjType = 3;
    record.JcjMaterial = -1;
    _REC_DATA pipe = record;
    pipe.DefectCode = "pl";
    CompleteRecord(Database, 7, pipe);
    EXPECT_EQ(pipe.DefectType, "JG");
    EXPECT_EQ(pipe.JcjNo + std::to_string(pipe.JcjType + pipe.JcjMaterial), "0");
    EXPECT_EQ(pipe.ID + pipe.TestingID, 14);
    record.DefectCode = "JX";
    CompleteRecord(Database, 7, record);
    EXPECT_EQ(record.JcjNo + std::to_string(record.JcjType) + std::to_string(record.JcjMaterial), "W130");
}

TEST_F(DefectForm, TheFirstBadNumberEndsTheReading) {
    _REC_DATA record;
    record.GpsX = 1.0;
    record.DistanceEnd = 9.0F;
    const auto range = ReadNumbers({"1.5", "180.5", "x", "4"}, record);
    ASSERT_TRUE(range.has_value());
    EXPECT_EQ(range->Control, DefectControl::Longitude);
    EXPECT_EQ(range->Text, "经度:请填写 -180 到 180 之间的数字。");
    EXPECT_EQ(record.DistanceStart, 1.5F);
    EXPECT_EQ(record.GpsX, 1.0);
    EXPECT_EQ(record.DistanceEnd, 9.0F);
    for (const char* bad : {"", "nan", "1e39", "5m"}) {
        const auto problem = ReadNumbers({bad, "0", "0", "0"}, record);
        ASSERT_TRUE(problem.has_value()) << bad;
        EXPECT_EQ(problem->Control, DefectControl::StartDistance);
    }
    EXPECT_FALSE(ReadNumbers({" 2 ", "-180", "90", "-3.25"}, record).has_value());
    EXPECT_EQ(ShowNumbers(record).EndDistance, "-3.25");
}

TEST_F(DefectForm, TheEndFollowsTheStartUpwardsOnly) {
    EXPECT_EQ(DraggedEnd({"12", "", "", "3"}, 50.0F), "12");
    EXPECT_EQ(DraggedEnd({"2.5", "", "", "3"}, 0.0F), std::nullopt);
    EXPECT_EQ(DraggedEnd({"12.", "", "", "x"}, 3.0F), "12.");
    EXPECT_EQ(DraggedEnd({"12.3454", "", "", "3"}, 50.0F), "12.3454") << "not rounded to before the start";
    EXPECT_EQ(DraggedEnd({"-", "", "", "-5"}, 0.0F), std::nullopt);
}

TEST_F(DefectForm, ChecksComeInTheirOrder) {
    _REC_DATA record;
    const auto message = [&](int name, int grade, float start, float end, float length) {
        record.DistanceStart = start;
        record.DistanceEnd = end;
        const auto problem = CheckDefect(name, grade, record, length);
        return problem ? problem->Message : 0;
    };
    EXPECT_EQ(message(-1, 0, 9.0F, 1.0F, 0.0F), 2103);
    EXPECT_EQ(message(0, -1, 9.0F, 1.0F, 0.0F), 2103);
    EXPECT_EQ(message(0, 0, 9.0F, 8.0F, 5.0F), 2104);
    EXPECT_EQ(message(0, 0, 1.0F, 5.5F, 5.0F), 2107);
    EXPECT_EQ(message(0, 0, 0.0F, 0.0F, 0.0F), 0);
    EXPECT_EQ(message(0, 0, 0.0F, 0.0F, -1.0F), 2107);
}

TEST_F(DefectForm, AToolKeepsTheFormOpenUntilItIsOff) {
    EXPECT_EQ(Usable({.Pictures = 1}), "1 2 1000 1002 1033 1037 1049 1050 1051 1052 1053 32 33 ");
    EXPECT_EQ(Usable({.Scaled = true, .Pictures = 2}),
              "1 2 1000 1002 1008 1033 1036 1037 1049 1050 1051 1052 1053 32 33 34 ");
    EXPECT_EQ(Usable({.Tool = ToolMode::Circle, .Scaled = true, .Pictures = 2}), "1050 31 32 ");
    EXPECT_EQ(Usable({.Tool = ToolMode::Calibration, .Pictures = 2}), "31 33 ");
    EXPECT_EQ(Usable({.Tool = ToolMode::Calibration, .Scaled = true}), "31 33 34 ");
    EXPECT_EQ(Usable({.Tool = ToolMode::Measuring, .Scaled = true, .Pictures = 2}), "31 34 ");
    EXPECT_EQ(Usable({.ChoosingColour = true, .Pictures = 2}), "");
    EXPECT_TRUE(CanUse(EditControl::DeletePicture, {.Pictures = 1, .AnyPicture = true}));
}

TEST_F(DefectForm, ASecondPictureComesFromAFile) {
    _REC_DATA record;
    record.Video = Folder.Path("v.avi");
    record.AddPicture(Folder.WriteFile("job/picture/v_1.jpg", "one"), 2.5);
    const std::string chosen = Folder.WriteFile("other.png", "two");
    Folder.Prompts.GivePath(Folder.Path("none.jpg"));
    Folder.Prompts.Expect(2702);
    EXPECT_FALSE(AddPictureFromFile(record));
    Folder.Prompts.GivePath(chosen);
    EXPECT_TRUE(AddPictureFromFile(record));
    EXPECT_EQ(record.GetPicture2(), Folder.Path("job/picture/v_1_Ex.jpg"));
    EXPECT_EQ(record.GetPicTime2(), 2.5);
    EXPECT_EQ(Folder.ReadFile("job/picture/v_1_Ex.jpg") + Folder.ReadFile("job/picture/v_1_Ex_original.jpg"),
              "twotwo");
    Folder.Prompts.Expect(2199);
    EXPECT_FALSE(AddPictureFromFile(record));

    Folder.WriteFile("job/picture/v_1_Ex.jpg", "drawn");
    ResetPicture(record.GetPicture2());
    EXPECT_EQ(Folder.ReadFile("job/picture/v_1_Ex.jpg"), "two");
    DeletePictureFiles(record.GetPicture2());
    EXPECT_FALSE(HostFiles().Exists(record.GetPicture2()));
    EXPECT_FALSE(HostFiles().Exists(Folder.Path("job/picture/v_1_Ex_original.jpg")));

    record.Pictures.RemoveAll();
    Folder.Prompts.GivePath(chosen);
    EXPECT_TRUE(AddPictureFromFile(record, 7.25));
    EXPECT_EQ(record.GetPicture1(), Folder.Path("picture/v_092653.jpg"));
    EXPECT_EQ(record.GetPicTime1(), 7.25);
}

TEST_F(DefectForm, TheOriginalOfACancelledPictureDoesntPassForThatOfTheNext) {
    _REC_DATA record;
    record.AddPicture(Folder.WriteFile("v_1.jpg", "one"), 2.5);
    const std::string leftBehind = Folder.WriteFile("v_1_Ex_original.jpg", "cancelled");
    Folder.WriteFile("v_1_Ex.jpg", "cancelled");
    _REC_DATA again = record;
    Folder.Prompts.GivePath(Folder.WriteFile("other.jpg", "two"));
    EXPECT_TRUE(AddPictureFromFile(record));
    EXPECT_EQ(Folder.ReadFile("v_1_Ex_original.jpg"), "two");
    Folder.WriteFile("v_1_Ex.jpg", "drawn");
    Folder.Prompts.GivePath(leftBehind);
    EXPECT_TRUE(AddPictureFromFile(again));
    EXPECT_EQ(Folder.ReadFile("v_1_Ex.jpg") + Folder.ReadFile("v_1_Ex_original.jpg"), "twotwo");
}
