#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include "defects/dialogs/C12Clock.h"
#include "defects/dialogs/CCtrlPic.h"
#include "defects/dialogs/CDlgEdit.h"
#include "defects/dialogs/defectcommands.h"
#include "shell/dialogs/qttext.h"
#include "shell/paths.h"
#include "tests/defectswindows/defectproject.h"
#include "tests/support/windows.h"

namespace {

class Edit : public DefectProject {
protected:
    // A stored defect with one picture and its original.
    _REC_DATA Store() {
        _REC_DATA record;
        record.TestingID = 1;
        record.DefectCode = "bx";
        record.DefectLevel = 2;
        record.DistanceStart = 3.5F;
        record.DistanceEnd = 4.0F;
        record.DirectionStart = 0;
        record.DirectionEnd = 13;
        record.GpsX = 121.123456789012;
        record.Comment = "看不清";
        record.Video = Section.VideoFileList;
        record.AddPicture(WritePicture("job/picture/a.jpg"), 2.0);
        BackupOriginal(record.GetPicture1());
        EXPECT_TRUE(Database.AddRecord(record));
        return Stored()[0];
    }
    void Open(const std::function<void(CSizeDlg&)>& script) {
        InNextDialog([script](CSizeDlg& dialog) {
            dialog.activateWindow();  // with the keyboard, as on a desktop
            EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
            script(dialog);
        });
        EXPECT_TRUE(EditDefect(Database, Section, Stored()[0], nullptr));
    }
};

QComboBox& Box(CSizeDlg& dialog, int id) {
    return *dialog.Item<QComboBox>(id);
}

void Draw(CSizeDlg& dialog, QPoint from, QPoint to) {
    QWidget* canvas = dialog.GetDlgItem(1011);
    QTest::mousePress(canvas, Qt::LeftButton, {}, from);
    QTest::mouseMove(canvas, to);
    QTest::mouseRelease(canvas, Qt::LeftButton, {}, to);
}

bool IsRed(const QImage& image, QPoint at) {
    const QColor colour = image.pixelColor(at);
    return colour.red() > colour.green() + 60;  // thin lines pale in the picture's format
}

}  // namespace

TEST_F(Edit, AStoredDefectOpensAsItIsAndIsStoredChanged) {
    Store();
    Open([](CSizeDlg& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "修改缺陷");
        EXPECT_EQ(TextOf(dialog, 1000), "(BX)变形");
        EXPECT_EQ(TextOf(dialog, 1002), "Level 2");
        EXPECT_EQ(TextOf(dialog, 1007), "5%到15%");
        EXPECT_EQ(TextOf(dialog, 1005), "看不清");
        EXPECT_EQ(TextOf(dialog, 1014), "121.123456789012");
        EXPECT_EQ(dialog.Item<C12Clock>(1012)->GetStartHour(), 12);
        Type(dialog, 1000, "破裂");
        PressKey(*dialog.Item<QComboBox>(1000)->lineEdit(), Qt::Key_Return);
        EXPECT_EQ(TextOf(dialog, 1005), "裂痕") << "the grade's description replaces the comment";
        EXPECT_EQ(Box(dialog, 1002).count(), 4) << "a hole in the grades is offered too";
        Box(dialog, 1002).setFocus();
        PressKey(Box(dialog, 1002), Qt::Key_3);
        EXPECT_EQ(TextOf(dialog, 1005), "");
        PressKey(Box(dialog, 1002), Qt::Key_4);
        Press(dialog, 1);
    });
    const _REC_DATA stored = Stored()[0];
    EXPECT_EQ(stored.DefectCode + stored.Comment, "PL坍塌");
    EXPECT_EQ(stored.DefectLevel, 4);
    EXPECT_EQ(stored.DirectionEnd, 12);
    EXPECT_EQ(stored.GpsX, 121.123456789012);
    EXPECT_EQ(Stored().GetSize(), 1);
}

TEST_F(Edit, WhatCantBeStoredIsToldAndTheWindowStays) {
    _REC_DATA record = Store();
    record.DefectCode = "ZZ";
    ASSERT_TRUE(Database.UpdateRecord(record));
    Open([this](CSizeDlg& dialog) {
        EXPECT_EQ(TextOf(dialog, 1000), "");
        Folder.Prompts.Expect(2103);
        Press(dialog, 1);
        Type(dialog, 1000, "沉");
        dialog.GetDlgItem(1013)->setFocus();
        Type(dialog, 1013, "5x");
        Folder.Prompts.Expect(3170);
        Press(dialog, 1);
        Press(dialog, 2);
    });
    EXPECT_EQ(Stored()[0].DefectCode, "ZZ");
}

TEST_F(Edit, ADrawingIsWrittenAndCanBeReset) {
    Store();
    // As it comes from the field: the picture is the only original.
    std::filesystem::remove(Folder.Host("job/picture/a_original.jpg"));
    const std::string original = Folder.ReadFile("job/picture/a.jpg");
    Open([&](CSizeDlg& dialog) {
        EXPECT_FALSE(IsEnabled(dialog, 1036));
        PressKey(dialog, Qt::Key_1, Qt::ControlModifier);
        EXPECT_FALSE(IsEnabled(dialog, 1));
        dialog.reject();
        EXPECT_TRUE(dialog.isVisible()) << "nothing drawn may be left unwritten";
        Draw(dialog, {100, 100}, {200, 200});
        Draw(dialog, {300, 100}, {350, 200});
        Press(dialog, 31);
        Photograph(dialog, "edit-drawing");
        Press(dialog, 1050);
        EXPECT_TRUE(IsEnabled(dialog, 1));
        const QImage drawn(ToQt(HostFiles().HostPath(Stored()[0].GetPicture1())));
        EXPECT_EQ(drawn.size(), dialog.GetDlgItem(1011)->size());
        EXPECT_TRUE(IsRed(drawn, {100, 150}));
        EXPECT_FALSE(IsRed(drawn, {300, 150}));

        Folder.Prompts.ExpectQuestion(2108, true);
        Press(dialog, 32);
        EXPECT_EQ(Folder.ReadFile("job/picture/a.jpg"), original);
        EXPECT_FALSE(IsRed(dialog.GetDlgItem(1011)->grab().toImage(), {100, 150}));

        Folder.Prompts.GiveColour(0xFF0000);
        Press(dialog, 1053);
        Press(dialog, 1051);
        Draw(dialog, {100, 100}, {200, 100});
        Folder.Prompts.ExpectQuestion(2108, true);
        Press(dialog, 32);
        EXPECT_TRUE(IsEnabled(dialog, 1)) << "a reset ends the tool";
        Press(dialog, 2);
    });
}

TEST_F(Edit, CalibrationAllowsToMeasureAndToDeleteTheOnlyPicture) {
    Calibrated = false;
    Store();
    Open([this](CSizeDlg& dialog) {
        const std::string before = Folder.ReadFile("job/picture/a.jpg");
        EXPECT_FALSE(IsEnabled(dialog, 34));
        Press(dialog, 33);
        QWidget* canvas = dialog.GetDlgItem(1011);
        QTest::mouseClick(canvas, Qt::LeftButton, {}, {100, 100});
        QTest::mouseClick(canvas, Qt::LeftButton, {}, {200, 100});
        Press(dialog, 33);
        EXPECT_EQ(MmPerPixel, 0.5F);
        EXPECT_EQ(Folder.ReadFile("job/picture/a.jpg"), before) << "a calibration leaves no mark";
        Press(dialog, 34);
        QTest::mouseClick(canvas, Qt::LeftButton, {}, {100, 200});
        QTest::mouseClick(canvas, Qt::LeftButton, {}, {160, 200});
        Photograph(dialog, "edit-measuring");
        Press(dialog, 34);
        EXPECT_NE(Folder.ReadFile("job/picture/a.jpg"), before);

        Type(dialog, 1005, "geändert");
        Folder.Prompts.ExpectQuestion(2102, true);
        Press(dialog, 1036);
        EXPECT_FALSE(dialog.Item<CCtrlPic>(1011)->HasPicture());
        EXPECT_FALSE(IsEnabled(dialog, 1036));
        Press(dialog, 2);
    });
    EXPECT_FALSE(Exists("job/picture/a.jpg"));
    EXPECT_FALSE(Exists("job/picture/a_original.jpg"));
    EXPECT_EQ(Stored()[0].Pictures.GetSize(), 0);
    EXPECT_EQ(Stored()[0].Comment, "geändert") << "the row is written with the picture gone";
    Calibrated = false;
}

TEST_F(Edit, NothingIsStoredByASlip) {
    Folder.Prompts.Expect(2195);
    InNextDialog([this](CSizeDlg& dialog) {
        auto* name = dialog.Item<QComboBox>(1000)->lineEdit();
        name->selectAll();
        QTest::keyClicks(name, "qq");
        PressKey(*name, Qt::Key_Return);
        Folder.Prompts.Expect(3309);
        PressKey(*name, Qt::Key_Return);
        Press(dialog, 1);
        EXPECT_TRUE(dialog.isVisible());
        PressKey(*name, Qt::Key_Escape);
        QWidget* canvas = dialog.GetDlgItem(1011);
        canvas->setFocus();
        PressKey(*canvas, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible()) << "Enter on the picture goes to the form";
        canvas->setFocus();
        PressKey(*canvas, Qt::Key_C);
        EXPECT_EQ(name->text(), "c");
        EXPECT_EQ(dialog.focusWidget(), dialog.GetDlgItem(1000));
        PressKey(*name, Qt::Key_Escape);
        Press(dialog, 2);
    });
    EXPECT_FALSE(NewDefect(Database, Section, Section.VideoFileList, 1.5, nullptr));
    Store();
    Open([](CSizeDlg& dialog) {
        Type(dialog, 1000, "cj");
        dialog.GetDlgItem(1013)->setFocus();
        EXPECT_EQ(TextOf(dialog, 1000), "(BX)变形");
        Press(dialog, 1);
    });
    EXPECT_EQ(Stored()[0].DefectCode, "BX");
}

TEST_F(Edit, ToolsEndAndSwitchByKeys) {
    Store();
    Open([this](CSizeDlg& dialog) {
        PressKey(dialog, Qt::Key_1, Qt::ControlModifier);
        Draw(dialog, {100, 100}, {200, 200});
        PressKey(dialog, Qt::Key_2, Qt::ControlModifier);
        EXPECT_TRUE(IsEnabled(dialog, 1051));
        EXPECT_FALSE(IsEnabled(dialog, 1050)) << "the other buttons rest";
        const QImage drawn(ToQt(HostFiles().HostPath(Stored()[0].GetPicture1())));
        EXPECT_TRUE(IsRed(drawn, {100, 150})) << "the circle was written";
        PressKey(*dialog.GetDlgItem(1011), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_TRUE(IsEnabled(dialog, 1)) << "the tool has ended";
        dialog.GetDlgItem(1017)->setFocus();
        PressKey(*dialog.GetDlgItem(1017), Qt::Key_Tab);
        EXPECT_TRUE(dialog.GetDlgItem(1012)->hasFocus());
        Press(dialog, 2);
    });
}

// As imported: the end is 0 until the properties were confirmed.
TEST_F(Edit, ASectionWithoutALengthIsToldAtOnceAndGetsOne) {
    Section.DistanceEnd = 0.0F;
    Section.PipeLength = "28.5";
    ASSERT_TRUE(Database.UpdateTesting(Section));
    Folder.Prompts.Expect(2195);
    InNextDialog([this](CSizeDlg& dialog) {
        Photograph(dialog, "edit-nolength");
        Type(dialog, 1017, "12");
        Folder.Prompts.Expect(2107);
        Press(dialog, 1);
        EXPECT_TRUE(dialog.GetDlgItem(5001)->isVisible());
        Press(dialog, 5002);
        EXPECT_FALSE(dialog.GetDlgItem(5001)->isVisible());
        Press(dialog, 1);
    });
    EXPECT_TRUE(NewDefect(Database, Section, Section.VideoFileList, 1.5, nullptr));
    CTestingDataArray sections;
    ASSERT_TRUE(Database.ReadTestings(sections));
    EXPECT_EQ(sections[0].DistanceEnd, 28.5F);
    Section.PipeLength = "";
    Folder.Prompts.Expect(2195);
    InNextDialog([](CSizeDlg& dialog) {
        EXPECT_TRUE(dialog.GetDlgItem(5001)->isVisible());
        EXPECT_FALSE(dialog.GetDlgItem(5002)->isVisible());
        Press(dialog, 2);
    });
    EXPECT_FALSE(NewDefect(Database, Section, Section.VideoFileList, 1.5, nullptr));
}

TEST_F(Edit, FitsTheScreenInBothLanguages) {
    Store();
    for (const char* language : {"简体中文", "English"}) {
        Folder.UseLanguage(language);
        Open([&](CSizeDlg& dialog) {
            EXPECT_LE(dialog.width(), 1366);
            EXPECT_LE(dialog.height(), 720);
            EXPECT_FALSE(dialog.GetDlgItem(1049)->isVisible());
            ExpectNothingCut(dialog);
            Photograph(dialog, QString("edit-") + language);
            Press(dialog, 2);
        });
    }
}
