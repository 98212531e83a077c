#include <gtest/gtest.h>

#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"
#include "tests/workbench/numberedvideo.h"
#include "workbench/review.h"

namespace {

_REC_DATA Record(const std::string& video, double time) {
    _REC_DATA record;
    record.Video = video;
    record.Pictures.Add({"\\p.jpg", time});
    return record;
}

class Review : public testing::Test {
protected:
    Review() { EXPECT_TRUE(Database.OpenDatabase(Folder.MakeProject(), CDbPassword)); }

    _REC_DATA Stored() {
        CRecDataArray records;
        EXPECT_TRUE(Database.ReadRecords(-1, records, false));
        return records.IsEmpty() ? _REC_DATA() : records[0];
    }
    std::string AddSection(const std::string& wells) {
        _TESTING_DATA section;
        section.TestingName = wells;
        section.StartWell = wells;
        section.EndWell = wells;
        EXPECT_TRUE(Database.AddTesting(section));
        return wells;
    }

    CTestFolder Folder;
    CDbRec Database;
};

}  // namespace

TEST_F(Review, MarkersLieInWholeSecondsOfTheirVideo) {
    CRecDataArray records;
    records.Add(Record("\\a\\v.avi", 1.9));
    records.Add(Record("\\A\\V.AVI", 1.2));
    records.Add(Record("\\a\\other.avi", 0.5));
    records.Add(Record("\\a\\v.avi", 3.0));   // behind the last whole second
    records.Add(Record("\\a\\v.avi", -1.0));  // no picture
    const Markers markers = BuildMarkers(records, "\\a\\v.avi", 3.9);
    EXPECT_EQ(markers.Flags, (std::vector<std::uint8_t>{0, 1, 0}));
    EXPECT_EQ(markers.Rows, (std::vector<std::uint32_t>{0, 1, 0}));
    EXPECT_TRUE(BuildMarkers(records, "\\a\\v.avi", 0.0).Flags.empty());
    EXPECT_LT(BuildMarkers(records, "\\a\\v.avi", 1e300).Flags.size(), 1e8);
}

TEST_F(Review, SectionsTakeThePlacesOfTheirRows) {
    for (const char* name : {"a", "b", "c"}) {
        AddSection(name);
    }
    EXPECT_TRUE(RenumberSections(Database, {3, 1, 2}));
    CTestingDataArray sections;
    ASSERT_TRUE(Database.ReadTestings(sections));
    EXPECT_EQ(sections[0].TestingName + sections[1].TestingName + sections[2].TestingName, "cab");
    EXPECT_EQ(sections[2].TestingOrder, 3);
}

TEST_F(Review, ASecondPictureIsTakenAndDeletedWithItsDefect) {
    AddSection("a");
    ASSERT_TRUE(MakeNumberedVideo(
        {.Name = "v", .Ending = ".avi", .Options = "-c:v mjpeg -q:v 3", .Frames = 50}, Folder.Host("v.avi")));
    _REC_DATA record;
    record.TestingID = 1;
    record.DefectCode = "PL";
    record.DefectLevel = 1;
    record.Video = Folder.Path("v.avi");
    record.AddPicture(Folder.WriteFile("picture/first.jpg", "1"), 0.4);
    ASSERT_TRUE(Database.AddRecord(record));

    Folder.Prompts.ExpectQuestion(2200, false);
    EXPECT_FALSE(AddSecondPicture(Database, Stored(), "破裂", record.Video, 1.0));
    EXPECT_NE(Folder.Prompts.LastText().find("破裂"), std::string::npos);
    EXPECT_EQ(Stored().Pictures.GetSize(), 1);

    Folder.Prompts.ExpectQuestion(2200, true);
    EXPECT_TRUE(AddSecondPicture(Database, Stored(), "破裂", record.Video, 1.0));
    const std::string picture = Folder.ReadFile("picture/v_092653.jpg");
    EXPECT_EQ(ReadNumber(ReadJpeg(picture)), 25);
    EXPECT_EQ(Folder.ReadFile("picture/v_092653_original.jpg"), picture);
    EXPECT_EQ(Stored().GetPicTime2(), 1.0);

    Folder.Prompts.Expect(2199);
    EXPECT_FALSE(AddSecondPicture(Database, Stored(), "破裂", record.Video, 1.0));

    EXPECT_TRUE(DeleteDefect(Database, Stored()));
    EXPECT_EQ(Database.CountRecords(-1), 0);
    EXPECT_EQ(Folder.ReadFile("picture/v_092653.jpg") + Folder.ReadFile("picture/first.jpg"), "");
    EXPECT_EQ(Folder.ReadFile("picture/v_092653_original.jpg"), picture);
}

TEST_F(Review, ALostVideoStillGetsItsSecondPictureNamed) {
    AddSection("a");
    _REC_DATA record;
    record.TestingID = 1;
    record.DefectCode = "PL";
    record.DefectLevel = 1;
    ASSERT_TRUE(Database.AddRecord(record));
    Folder.Prompts.ExpectQuestion(2200, true);
    Folder.Prompts.Expect(2201);
    EXPECT_TRUE(AddSecondPicture(Database, Stored(), "破裂", Folder.Path("none.avi"), 1.0));
    EXPECT_TRUE(EqualNoCase(Stored().GetPicture1(), Folder.Path("picture/none_092653.jpg")));
}
