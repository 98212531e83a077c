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
