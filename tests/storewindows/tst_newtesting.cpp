#include <gtest/gtest.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QListWidget>

#include "shell/newpipedefaults.h"
#include "store/dialogs/CDlgNewTesting.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

using Id = SectionControl;

constexpr int Ok = CSizeDlg::IdOk;
constexpr int Cancel = CSizeDlg::IdCancel;
constexpr int Add = 1047;
constexpr int Remove = 1030;
constexpr int Calculate = 1048;

const NewPipeDefaults Last{"段 1", "121.5",  "31.2", "121.501", "31.2", "T-1",
                           "工程", "望川路", "300",  "50.5",    "公司", "张三"};

class NewTesting : public testing::Test {
protected:
    NewTesting() { SetNewPipeDefaults(Last); }
    ~NewTesting() override { SetNewPipeDefaults({}); }

    void Open(CDlgNewTesting& dialog, int newFlag) {
        dialog.NewFlag = newFlag;
        dialog.show();
        dialog.activateWindow();
        EXPECT_TRUE(WaitFor([&] { return dialog.isActiveWindow(); }));
    }
    void AddFiles(CDlgNewTesting& dialog, const std::vector<std::string>& paths) {
        Folder.Prompts.GivePaths(paths);
        Press(dialog, Add);
    }
    static QListWidget* List(CDlgNewTesting& dialog) { return dialog.Item<QListWidget>(Id::Videos); }
    static void PressInList(CDlgNewTesting& dialog, Qt::Key key) {
        List(dialog)->setFocus();
        PressKey(*List(dialog), key);
    }
    static std::string Wells(CDlgNewTesting& dialog) {
        return (TextOf(dialog, Id::StartWell) + " - " + TextOf(dialog, Id::EndWell)).toStdString();
    }
    static _TESTING_DATA Stored() {
        _TESTING_DATA section;
        section.ID = 7;
        section.TestingName = "段 7";
        section.Comment = "kept";
        section.GpsXStart = 121.4737021;
        section.GpsYStart = 31.2304;
        section.GpsXEnd = 121.4741;
        section.GpsYEnd = 31.2309;
        section.VideoFileList = "\\home\\ann\\jobs\\2021 Wangchuan Road\\W12-W13.avi";
        section.TestingDate = "2021-3-5 8:07:09";
        section.TestingDirection = "上游";
        section.PipeType = "雨水";
        section.PipeMaterial = "HDPE双壁波纹管";
        section.StartWell = "W12";
        section.EndWell = "W13";
        section.PipeLength = "35.5";
        section.DetectionLength = "33.0";
        section.PipeDiameter = "600";
        return section;
    }
    CTestFolder Folder;
};

TEST_F(NewTesting, ThreeVideosGiveThreeSectionsWithTheirTypedManholes) {
    CDlgNewTesting dialog;
    Open(dialog, 1);
    EXPECT_EQ(TextOf(dialog, Id::PipeType), "雨水");
    EXPECT_EQ(TextOf(dialog, Id::TaskName), "工程");
    EXPECT_EQ(dialog.focusWidget(), dialog.GetDlgItem(Id::Name));
    EXPECT_FALSE(IsEnabled(dialog, Remove));
    EXPECT_FALSE(IsEnabled(dialog, Id::StartWell));
    AddFiles(dialog, {"\\v\\W1-W2.avi", "\\v\\W2-W3.avi", "\\v\\w1-w2.AVI"});
    EXPECT_EQ(List(dialog)->count(), 2);
    EXPECT_EQ(Wells(dialog), "W2 - W3");
    Type(dialog, Id::EndWell, "W3b");
    Folder.Prompts.ExpectQuestion(2181, true);
    AddFiles(dialog, {"\\v\\A-.avi"});
    EXPECT_EQ(Wells(dialog), "A - E");
    PressInList(dialog, Qt::Key_Up);
    EXPECT_EQ(Wells(dialog), "W2 - W3b");
    Type(dialog, Id::StartWell, "W2b");
    PressInList(dialog, Qt::Key_Up);
    EXPECT_EQ(Wells(dialog), "W1 - W2");
    Type(dialog, Id::Tester, "李四");
    Type(dialog, Id::DetectionLength, "");
    Press(dialog, Ok);

    EXPECT_EQ(dialog.result(), Ok);
    ASSERT_EQ(dialog.Sections.size(), 3U);
    const char* labels[] = {"W1 - W2", "W2b - W3b", "A - E"};
    for (std::size_t i = 0; i < 3; ++i) {
        const _TESTING_DATA& section = dialog.Sections[i];
        EXPECT_EQ(section.Label(), labels[i]);
        EXPECT_EQ(section.TestingName + section.TaskIndex + section.Tester, "段 1T-1李四");
        EXPECT_EQ(section.TestingDate, "2026/03/14 09:26:53");
        EXPECT_EQ(section.GpsXEnd, 121.501);
        EXPECT_EQ(section.PipeLength + section.DetectionLength, "50.550.5");
    }
    EXPECT_EQ(dialog.Sections[2].VideoFileList, "\\v\\A-.avi");
    NewPipeDefaults kept = Last;
    kept.Tester = "李四";
    EXPECT_EQ(GetNewPipeDefaults(), kept);
}

TEST_F(NewTesting, CancelLeavesEverything) {
    CDlgNewTesting dialog;
    dialog.Sections = {Stored()};
    Open(dialog, 1);
    EXPECT_EQ(TextOf(dialog, Id::Name), "段 1");
    Type(dialog, Id::Name, "other");
    AddFiles(dialog, {"\\v\\W1-W2.avi"});
    Press(dialog, Cancel);
    EXPECT_EQ(dialog.result(), Cancel);
    ASSERT_EQ(dialog.Sections.size(), 1U);
    EXPECT_EQ(dialog.Sections[0].TestingName, "段 7");
    EXPECT_EQ(GetNewPipeDefaults(), Last);
}

TEST_F(NewTesting, AFileNameWithoutStartManholeIsRefusedUntilItsRowIsRemoved) {
    CDlgNewTesting dialog;
    Open(dialog, 1);
    AddFiles(dialog, {"\\v\\-A.avi", "\\v\\B-C.avi"});
    Type(dialog, Id::StartWell, "B2");
    Folder.Prompts.Expect(2168);
    Press(dialog, Ok);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(List(dialog)->currentRow(), 0);
    EXPECT_EQ(Wells(dialog), " - A");
    EXPECT_EQ(dialog.focusWidget(), dialog.GetDlgItem(Id::StartWell));
    PressInList(dialog, Qt::Key_Delete);
    EXPECT_EQ(Wells(dialog), "B2 - C");
    Press(dialog, Remove);
    EXPECT_EQ(Wells(dialog), " - ");
    Folder.Prompts.Expect(2167);
    Press(dialog, Ok);
    Folder.Prompts.GivePaths({"\\v\\B-C.avi"});
    PressInList(dialog, Qt::Key_Insert);
    Press(dialog, Ok);
    ASSERT_EQ(dialog.Sections.size(), 1U);
    EXPECT_EQ(dialog.Sections[0].Label(), "B - C");
}

TEST_F(NewTesting, WhatCannotBeReadStaysAsTyped) {
    SetNewPipeDefaults({});
    CDlgNewTesting dialog;
    Open(dialog, 1);
    Type(dialog, Id::Name, "段");
    Folder.Prompts.Expect(3030);
    Folder.Prompts.Expect(2166);  // the name comes behind the empty longitude, so it wasn't read
    Press(dialog, Ok);
    Folder.Prompts.Expect(3030);
    AddFiles(dialog, {"\\v\\W1-W2.avi"});
    EXPECT_EQ(Folder.Prompts.LastText(), "起点经度必须是数字。");
    EXPECT_EQ(dialog.focusWidget(), dialog.GetDlgItem(Id::StartLongitude));
    EXPECT_EQ(TextOf(dialog, Id::Name), "段");
    Type(dialog, Id::StartLongitude, "121.50");
    Type(dialog, Id::StartLatitude, "91");
    Folder.Prompts.Expect(3031);
    Press(dialog, Calculate);
    EXPECT_EQ(TextOf(dialog, Id::StartLongitude), "121.50");
    EXPECT_EQ(TextOf(dialog, Id::PipeLength), "");
    Type(dialog, Id::StartLatitude, "31.2");
    Type(dialog, Id::EndLongitude, "121.5");
    Type(dialog, Id::EndLatitude, "31.2");
    Folder.Prompts.Expect(3030);
    Press(dialog, Calculate);
    EXPECT_EQ(TextOf(dialog, Id::PipeLength), "0");
    EXPECT_EQ(TextOf(dialog, Id::StartLongitude), "121.5");
    Folder.Prompts.Expect(2170);
    Press(dialog, Ok);
    EXPECT_EQ(dialog.focusWidget(), dialog.GetDlgItem(Id::PipeLength));
    Type(dialog, Id::PipeLength, "20");
    Folder.Prompts.Expect(2171);
    Press(dialog, Ok);
    Type(dialog, Id::Diameter, "300");
    Press(dialog, Ok);
    ASSERT_EQ(dialog.Sections.size(), 1U);
    EXPECT_EQ(dialog.Sections[0].DetectionLength, "20.0");
}

TEST_F(NewTesting, AnEditGivesTheSectionBackChanged) {
    CDlgNewTesting dialog;
    dialog.Sections = {Stored()};
    Open(dialog, 0);
    EXPECT_FALSE(dialog.GetDlgItem(Add)->isVisible());
    PressInList(dialog, Qt::Key_Delete);
    EXPECT_EQ(List(dialog)->count(), 1);
    EXPECT_EQ(TextOf(dialog, Id::Date), "2021/03/05 08:07:09");
    EXPECT_EQ(TextOf(dialog, Id::Direction), "上游");
    Type(dialog, Id::Material, "陶土管");
    Type(dialog, Id::EndWell, "W14");
    dialog.Item<QDateTimeEdit>(Id::Date)->setTime(QTime(23, 5, 6));
    PressKey(*dialog.GetDlgItem(Id::Name), Qt::Key_Return);
    EXPECT_EQ(dialog.result(), Ok);
    ASSERT_EQ(dialog.Sections.size(), 1U);
    const _TESTING_DATA& section = dialog.Sections[0];
    EXPECT_EQ(section.ID, 7);
    EXPECT_EQ(section.Comment + section.TestingDirection + section.PipeMaterial, "kept上游陶土管");
    EXPECT_EQ(section.Label(), "W12 - W14");
    EXPECT_EQ(section.TestingDate, "2021/03/05 23:05:06");
    EXPECT_EQ(section.GpsXStart, 121.4737021);
    EXPECT_EQ(section.PipeLength + " " + section.DetectionLength, "35.5 33.0");
}

TEST_F(NewTesting, FitsASmallScreenInEveryLanguage) {
    SetNewPipeDefaults({});
    for (const char* language : {"简体中文", "English"}) {
        Folder.UseLanguage(language);
        for (const int newFlag : {1, 0}) {
            CDlgNewTesting dialog;
            if (newFlag == 0) {
                dialog.Sections = {Stored()};
            }
            Open(dialog, newFlag);
            const QString name = QString("section_%1_%2").arg(newFlag).arg(QString::fromUtf8(language));
            if (newFlag == 1) {
                EXPECT_EQ(TextOf(dialog, Id::Diameter), "");
                Photograph(dialog, name + "_empty");
                Folder.Prompts.Allow(3030);
                AddFiles(dialog, {"\\home\\ann\\jobs\\2021 Wangchuan Road\\W12-W13.avi",
                                  "\\home\\ann\\jobs\\2021 Wangchuan Road\\W13-W14.avi"});
            }
            Photograph(dialog, name);
            EXPECT_LT(dialog.width(), 900) << language;
            EXPECT_LT(dialog.height(), 600) << language;
        }
    }
}

}  // namespace
