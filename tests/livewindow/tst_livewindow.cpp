#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "defects/dialogs/CCtrlPic.h"
#include "live/dialogs/CDlgGps.h"
#include "live/dialogs/CDrovaneDlg.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/settings.h"
#include "tests/reports/documents.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

class CTestChannel : public CLiveChannel {
public:
    bool RaiseRunning() override { return false; }
    Claimed Claim() override { return Claimed::Yes; }
    std::string Problem() const override { return {}; }
    void Release() override {}
    bool Answer(LiveSender, std::string_view) override {
        ++Answers;
        return true;
    }

    int Answers = 0;
};

class LiveWindow : public testing::Test {
protected:
    LiveWindow() {
        SetWorkFolder(Folder.Path("work") + "\\");
        EXPECT_TRUE(HostFiles().SetCurrentFolder(Folder.Path("")));
        Folder.MakeProject();
    }
    bool Send(int number, float start = 1, float end = 2) {
        LiveRecord record;
        record.Video = "\\job\\v.avi";
        record.Picture = number < 0
                             ? "\\none.jpg"
                             : Folder.WriteFile(std::to_string(number) + ".bmp", MakeBitmap(320, 240, 90));
        record.PictureTime = number;
        record.Start = start;
        record.End = end;
        record.Texts[4] = "A";
        record.Texts[5] = "B";
        record.Texts[8] = "600";
        return Channel.OnRecord(MakeLiveBlock(record), 1);
    }
    static void FillSection(CSizeDlg& form) {
        Type(form, 1044, "段");
        Type(form, 1078, "50");
        Type(form, 1084, "50");
        Press(form, CSizeDlg::IdOk);
    }
    static CCtrlPic& Canvas(CDrovaneDlg& window) { return *window.Item<CCtrlPic>(1011); }

    CTestFolder Folder;
    CTestChannel Channel;
};

}  // namespace

TEST_F(LiveWindow, ARecordIsGradedAndAnswered) {
    CDrovaneDlg window(Channel);
    window.show();
    EXPECT_FALSE(window.GetDlgItem(1)->isVisible());
    EXPECT_TRUE(window.GetDlgItem(1023)->isVisible());
    EXPECT_FALSE(IsEnabled(window, 1000));
    EXPECT_EQ(FromQt(window.windowTitle()), LoadMessage(800));
    ASSERT_TRUE(Send(1));
    EXPECT_TRUE(Canvas(window).HasPicture());
    InNextDialog([](CSizeDlg& projects) {
        InNextDialog([](CSizeDlg& form) { FillSection(form); });
        Press(projects, CSizeDlg::IdOk);
    });
    Press(window, 1023);
    EXPECT_TRUE(AllDialogsCame());
    ASSERT_TRUE(window.GetDlgItem(1)->isVisible());
    EXPECT_TRUE(IsEnabled(window, 1));
    WaitFor(50);
    Photograph(window, "live");
    // A grade fills the comment; what was typed is lost.
    Type(window, 1005, "typed");
    auto& grades = *window.Item<QComboBox>(1002);
    grades.setCurrentIndex(2);
    emit grades.activated(2);
    EXPECT_EQ(window.Item<QPlainTextEdit>(1005)->toPlainText(),
              window.Item<QPlainTextEdit>(1007)->toPlainText());
    // The start draws the end along; an end typed just now takes no part in the test of their order.
    window.Item<QLineEdit>(1013)->setText("");
    QMetaObject::invokeMethod(window.Item<QLineEdit>(1013), "textEdited", Q_ARG(QString, ""));
    window.Item<QLineEdit>(1013)->setText("7.5");
    QMetaObject::invokeMethod(window.Item<QLineEdit>(1013), "textEdited", Q_ARG(QString, "7.5"));
    EXPECT_EQ(TextOf(window, 1018), "7.5");
    Type(window, 1018, "3");
    Press(window, 1);
    EXPECT_EQ(Channel.Answers, 1);
    EXPECT_FALSE(Canvas(window).HasPicture());
    EXPECT_TRUE(window.isMinimized());
    EXPECT_FALSE(window.GetDlgItem(1)->isEnabled());
    CRecDataArray rows;
    ASSERT_TRUE(window.Session().Database().ReadRecords(-1, rows, false));
    ASSERT_EQ(rows.GetSize(), 1);
    EXPECT_EQ(rows[0].DefectLevel, 3);
    EXPECT_EQ(rows[0].DistanceStart, 7.5F);
    EXPECT_EQ(rows[0].DistanceEnd, 3.0F);
    EXPECT_EQ(rows[0].DirectionStart, 12);

    window.showNormal();
    ASSERT_TRUE(Send(2, 5, 4));
    Folder.Prompts.Expect(2417);
    Press(window, 1);
    EXPECT_EQ(Channel.Answers, 1);
    // A further one takes its place, and it waits; one without a picture can't be graded.
    ASSERT_TRUE(Send(3));
    EXPECT_TRUE(window.GetDlgItem(5030)->isVisible());
    EXPECT_TRUE(window.Item<QAbstractButton>(5030)->text().contains("1"));
    Press(window, 1);
    EXPECT_EQ(Channel.Answers, 2);
    window.showNormal();
    ASSERT_TRUE(Send(-1));
    EXPECT_FALSE(window.GetDlgItem(1)->isEnabled());
    Press(window, 5030);
    EXPECT_EQ(TextOf(window, 1018), "4");
    EXPECT_EQ(window.Session().WaitingCount(), 1);
}

TEST_F(LiveWindow, NothingIsCutInEitherLanguage) {
    for (const char* language : {"English", "简体中文"}) {
        Folder.UseLanguage(language);
        CDrovaneDlg window(Channel);
        window.show();
        ExpectNothingCut(window);
        Photograph(window, QString("live-") + language);
        window.Gps().show();
        WaitFor(30);
        ExpectNothingCut(window.Gps());
        Photograph(window.Gps(), QString("gps-") + language);
    }
}
