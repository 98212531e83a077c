#include <gtest/gtest.h>

#include "defects/CRecordPictures.h"
#include "defects/recordchanges.h"
#include "shell/CPrompts.h"
#include "shell/textcodec.h"
#include "tests/store/CProjectTest.h"

namespace {

using Twin = CRecordPictures::Twin;

class RecordPictures : public CProjectTest {
protected:
    bool Exists(const char* name) const { return std::filesystem::exists(Folder.Host(name)); }
};

}  // namespace

TEST_F(RecordPictures, ASecondPictureComesFromAFile) {
    _REC_DATA record;
    record.Video = Folder.WriteFile("v.avi", "no video");
    record.AddPicture(Folder.WriteFile("job/picture/v_1.jpg", "one"), 2.5);
    CRecordPictures pictures(record);
    const std::string chosen = Folder.WriteFile("other.png", "two");
    Folder.Prompts.GivePath(Folder.Path("none.jpg"));
    Folder.Prompts.Expect(2702);
    EXPECT_FALSE(pictures.AddFile());
    // What a form left behind that ended with a crash doesn't pass for the original of the new picture.
    Folder.WriteFile("job/picture/v_1_Ex_original.jpg", "of another");
    Folder.Prompts.GivePath(chosen);
    EXPECT_TRUE(pictures.AddFile());
    EXPECT_EQ(record.GetPicture2(), Folder.Path("job/picture/v_1_Ex.jpg"));
    EXPECT_EQ(record.GetPicTime2(), 2.5);
    EXPECT_EQ(Folder.ReadFile("word/Template/Images/v_1_Ex.jpg"), "two") << "copied for reports";
    Folder.Prompts.Expect(2199);
    EXPECT_FALSE(pictures.AddFile());

    Folder.WriteFile("job/picture/v_1_Ex.jpg", "drawn");
    EXPECT_TRUE(ResetPicture(record.GetPicture2()));
    EXPECT_EQ(Folder.ReadFile("job/picture/v_1_Ex.jpg"), "two");
    DeletePictureFiles(record.GetPicture2());
    EXPECT_FALSE(Exists("job/picture/v_1_Ex.jpg") || Exists("job/picture/v_1_Ex_original.jpg"));

    record.Pictures.RemoveAll();
    Folder.Prompts.GivePath(chosen);
    EXPECT_TRUE(pictures.AddFile(7.25));
    EXPECT_EQ(record.GetPicture1(), Folder.Path("picture/v_092653.jpg"));
    EXPECT_EQ(record.GetPicTime1(), 7.25);
    pictures.TakeBack();
    EXPECT_FALSE(Exists("picture/v_092653.jpg") || Exists("picture/v_092653_original.jpg"));
    EXPECT_TRUE(Exists("job/picture/v_1.jpg")) << "what was there before stays";
}

// Pictures of field units have no twin, and their folders may be anything.
TEST_F(RecordPictures, TheOnlyOriginalIsKeptOrNothingIsDrawn) {
    const std::string picture = Folder.WriteFile("field/1.jpg", "field");
    Folder.Prompts.Expect(3307);
    EXPECT_FALSE(ResetPicture(picture));
    EXPECT_NE(Folder.Prompts.LastText().find("1.jpg"), std::string::npos);
    EXPECT_TRUE(KeepOriginal(picture));
    EXPECT_EQ(Folder.ReadFile("field/1_original.jpg"), "field");
    Folder.WriteFile("field/1.jpg", "drawn");
    EXPECT_TRUE(KeepOriginal(picture));
    EXPECT_EQ(Folder.ReadFile("field/1_original.jpg"), "field") << "the first version stays";

    const std::string blocked = Folder.WriteFile("field/2.jpg", "field");
    std::filesystem::create_symlink("nowhere", Folder.Host("field/2_original.jpg"));
    Folder.Prompts.Expect(3306);
    EXPECT_FALSE(KeepOriginal(blocked));
    EXPECT_NE(Folder.Prompts.LastText().find("同名"), std::string::npos) << "with the reason";
}

TEST_F(RecordPictures, BesideAMissingVideoNothingIsMade) {
    _REC_DATA record;
    const std::string video = Folder.Path("gone/v.avi");
    Folder.Prompts.Expect(2195);
    EXPECT_TRUE(CRecordPictures(record).AddFrame(video, 1.0, 1.0, 2195, Twin::AtOnce));
    EXPECT_NE(Folder.Prompts.LastText().find(video), std::string::npos);
    EXPECT_EQ(record.GetPicture1(), Folder.Path("gone/picture/v_092653.jpg")) << "the record names it";
    EXPECT_FALSE(Exists("gone"));

    record = _REC_DATA();
    record.DefectCode = "PL";
    record.DefectLevel = 1;
    ASSERT_TRUE(Database.AddRecord(record));
    Folder.Prompts.ExpectQuestion(2200, true);
    Folder.Prompts.Expect(2201);
    EXPECT_TRUE(AddSecondPicture(Database, Records()[0], "破裂", video, 1.0));
    EXPECT_TRUE(EqualNoCase(Records()[0].GetPicture1(), Folder.Path("gone/picture/v_092653.jpg")));
}

// Names come from the time of day, which comes again every day.
TEST_F(RecordPictures, PicturesOfManholesShareNoFile) {
    _REC_DATA record;
    CRecordPictures pictures(record);
    Folder.WriteFile("job/picture/092653.jpg", "of another day");
    const std::string chosen = Folder.WriteFile("chosen.jpg", "new");
    for (int i = 0; i < 2; ++i) {
        Folder.Prompts.GivePath(chosen);
        EXPECT_TRUE(pictures.AddManholeFile(Folder.Path("job") + "\\"));
    }
    EXPECT_EQ(record.GetPicture1(), Folder.Path("job/picture/092654.jpg"));
    EXPECT_EQ(record.GetPicture2(), Folder.Path("job/picture/092655.jpg"));
    pictures.RemoveManholeFile(0);
    EXPECT_EQ(Folder.ReadFile("job/picture/092653.jpg") + Folder.ReadFile("job/picture/092655.jpg"),
              "of another daynew");
    pictures.TakeBack();
    EXPECT_TRUE(Exists("job/picture/092655.jpg")) << "what came from a file stays";

    Folder.Prompts.GivePath(Folder.Path("none.jpg"));
    Folder.Prompts.Expect(2702);
    EXPECT_FALSE(pictures.AddManholeFile(Folder.Path("job") + "\\"));
    EXPECT_EQ(record.Pictures.GetSize(), 1);
}
