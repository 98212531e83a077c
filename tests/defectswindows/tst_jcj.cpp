#include <QComboBox>
#include <QTest>

#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/defectcommands.h"
#include "shell/dialogs/CSizeDlg.h"
#include "shell/textcodec.h"
#include "tests/defectswindows/defectproject.h"
#include "tests/support/windows.h"

namespace {

class Manhole : public DefectProject {
protected:
    void Add(const std::function<void(CSizeDlg&)>& script, bool stored) {
        Folder.Prompts.Expect(2195);
        InNextDialog(script);
        EXPECT_EQ(NewManholeDefect(Database, Section, Section.VideoFileList, 1.5, nullptr), stored);
    }
    void Open(const std::function<void(CSizeDlg&)>& script) {
        InNextDialog(script);
        EXPECT_FALSE(EditDefect(Database, Section, Stored()[0], nullptr));
    }
};

void Choose(CSizeDlg& dialog, int id, int downs) {
    for (int i = 0; i < downs; ++i) {
        PressKey(*dialog.GetDlgItem(id), Qt::Key_Down);
    }
}

}  // namespace

TEST_F(Manhole, IsAddedAndComesBackAsStored) {
    Add(
        [](CSizeDlg& dialog) {
            EXPECT_EQ(dialog.Item<QComboBox>(1000)->count(), 6);
            EXPECT_EQ(TextOf(dialog, 1000), "(JCJ_JGJZQS)井盖井座缺失");
            EXPECT_EQ(TextOf(dialog, 1005), "井盖井座缺失");
            Choose(dialog, 1000, 1);
            EXPECT_EQ(TextOf(dialog, 1005), "井内有杂物");
            Choose(dialog, 1002, 2);
            Choose(dialog, 1022, 11);
            Choose(dialog, 1030, 1);
            Choose(dialog, 1027, 2);
            Choose(dialog, 1029, 1);
            Type(dialog, 1019, "W-12");
            Photograph(dialog, "jcj");
            Press(dialog, 1);
        },
        true);
    const _REC_DATA stored = Stored()[0];
    EXPECT_EQ(stored.DefectCode + stored.DefectType + stored.JcjNo, "JCJ_JNYZWJCJW-12");
    EXPECT_EQ(stored.DefectLevel, 3);
    EXPECT_EQ(
        stored.JcjType * 1000 + stored.JcjUnderRoad * 100 + stored.JcjMaterial * 10 + stored.JcjCoverMaterial,
        11121);
    EXPECT_EQ(stored.DistanceEnd + static_cast<float>(stored.GpsX), 0.0F);
    EXPECT_EQ(stored.GetPicTime1(), 1.5);
    Open([](CSizeDlg& dialog) {
        EXPECT_EQ(TextOf(dialog, 1002) + TextOf(dialog, 1022), "Level 3其它");
        Type(dialog, 1005, "脏");
        Press(dialog, 1);
    });
    EXPECT_EQ(Stored()[0].Comment, "脏");
}

TEST_F(Manhole, OpensWithoutAPlaceForPictures) {
    Folder.Prompts.Expect(2195);
    InNextDialog([](CSizeDlg& dialog) {
        EXPECT_FALSE(dialog.Item<CCtrlPic>(1011)->HasPicture());
        EXPECT_FALSE(IsEnabled(dialog, 1036));
        Press(dialog, 1);
    });
    EXPECT_TRUE(NewManholeDefect(Database, Section, "v.avi", 1.5, nullptr));
    EXPECT_EQ(Stored()[0].Pictures.GetSize(), 0);
}

TEST_F(Manhole, WithoutAVideoOfTheSectionPicturesLieBesideThatOfTheRecord) {
    const std::string video = Section.VideoFileList;
    Section.VideoFileList.clear();
    Folder.Prompts.Expect(2195);
    InNextDialog([this](CSizeDlg& dialog) {
        Folder.Prompts.GivePath(WritePicture("other.jpg"));
        Press(dialog, 1033);
        Press(dialog, 1);
    });
    EXPECT_TRUE(NewManholeDefect(Database, Section, video, 1.5, nullptr));
    EXPECT_TRUE(EqualNoCase(Stored()[0].GetPicture2(), Folder.Path("job/picture/092653.jpg")));
    EXPECT_TRUE(Exists("job/picture/092653.jpg"));
}

TEST_F(Manhole, PicturesComeAndGoAtOnce) {
    Add(
        [this](CSizeDlg& dialog) {
            WritePicture("job/picture/v_092653.jpg");
            Folder.Prompts.GivePath(WritePicture("other.jpg", Qt::green));
            Press(dialog, 1033);
            EXPECT_FALSE(IsEnabled(dialog, 1033));
            EXPECT_EQ(TextOf(dialog, 1008), "2");
            EXPECT_TRUE(dialog.Item<CCtrlPic>(1011)->HasPicture());
            Press(dialog, 1036);
            EXPECT_FALSE(Exists("job/picture/092653.jpg"));
            Folder.Prompts.GivePath(Folder.Path("other.jpg"));
            Press(dialog, 1033);
            Press(dialog, 2);
        },
        false);
    EXPECT_FALSE(Exists("job/picture/v_092653.jpg"));
    EXPECT_TRUE(Exists("job/picture/092653.jpg")) << "what came from a file stays";
}

TEST_F(Manhole, TwoPicturesOfOneSecondHaveAFileEach) {
    _REC_DATA record;
    record.TestingID = 1;
    record.DefectCode = "JCJ_OLD";
    record.DefectType = "JCJ";
    record.DefectLevel = 1;
    ASSERT_TRUE(Database.AddRecord(record));
    record = Stored()[0];
    record.DefectType = "JCJ";
    const std::string first = WritePicture("first.jpg", Qt::red);
    const std::string second = WritePicture("second.jpg", Qt::green);
    InNextDialog([&](CSizeDlg& dialog) {
        EXPECT_FALSE(IsEnabled(dialog, 1036));
        Folder.Prompts.GivePath(first);
        Press(dialog, 1033);
        Folder.Prompts.GivePath(second);
        Press(dialog, 1033);
        Press(dialog, 1);
    });
    EXPECT_FALSE(EditDefect(Database, Section, record, nullptr));
    EXPECT_EQ(Folder.ReadFile("job/picture/092653.jpg"), Folder.ReadFile("first.jpg"));
    EXPECT_EQ(Folder.ReadFile("job/picture/092654.jpg"), Folder.ReadFile("second.jpg"));
    const _REC_DATA stored = Stored()[0];
    EXPECT_EQ(stored.GetPicTime2(), 0.0);
    EXPECT_EQ(stored.DefectCode, "JCJ_JGJZQS") << "a code that is none of the six gives way to the first";
}

TEST_F(Manhole, AFailureIsToldInItsOwnWordsAndTheWindowStays) {
    _REC_DATA normal;
    normal.TestingID = 1;
    normal.DefectCode = "JCJ_ZC";
    normal.DefectType = "JCJ";
    ASSERT_TRUE(Database.AddRecord(normal));
    Open([this](CSizeDlg& dialog) {
        Database.Close();
        Folder.Prompts.Expect(2015);
        Folder.Prompts.Expect(0);
        Press(dialog, 1);
        EXPECT_EQ(Folder.Prompts.LastText(), "修改记录失败！");
        Press(dialog, 2);
    });
}
