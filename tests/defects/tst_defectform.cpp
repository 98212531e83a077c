#include <gtest/gtest.h>

#include "defects/defectform.h"
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
