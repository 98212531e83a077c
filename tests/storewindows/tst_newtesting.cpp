#include <gtest/gtest.h>

#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QListWidget>

#include "shell/newpipedefaults.h"
#include "store/dialogs/CDlgNewTesting.h"
#include "tests/store/storedsection.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

using Id = SectionControl;

constexpr int Ok = CSizeDlg::IdOk;
constexpr int Cancel = CSizeDlg::IdCancel;
constexpr int Add = 1047;
constexpr int Remove = 1030;

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

TEST_F(NewTesting, AnEditGivesTheSectionBackChanged) {
    CDlgNewTesting dialog;
    dialog.Sections = {StoredSection()};
    Open(dialog, 0);
    EXPECT_FALSE(dialog.GetDlgItem(Add)->isVisible());
    PressInList(dialog, Qt::Key_Delete);
    EXPECT_EQ(List(dialog)->count(), 1);
    Type(dialog, Id::Material, "陶土管");
    Type(dialog, Id::EndWell, "W3");
    dialog.Item<QDateTimeEdit>(Id::Date)->setTime(QTime(23, 5, 6));
    PressKey(*dialog.GetDlgItem(Id::Name), Qt::Key_Return);
    EXPECT_EQ(dialog.result(), Ok);
    ASSERT_EQ(dialog.Sections.size(), 1U);
    const _TESTING_DATA& section = dialog.Sections[0];
    EXPECT_EQ(section.ID, 7);
    EXPECT_EQ(section.Comment + section.TestingDirection + section.PipeMaterial, "kept上游陶土管");
    EXPECT_EQ(section.Label(), "W1 - W3");
    EXPECT_EQ(section.TestingDate, "2021/03/05 23:05:06");
}

TEST_F(NewTesting, FitsASmallScreenInEveryLanguage) {
    SetNewPipeDefaults({});
    for (const char* language : {"简体中文", "English"}) {
        Folder.UseLanguage(language);
        for (const int newFlag : {1, 0}) {
            CDlgNewTesting dialog;
            if (newFlag == 0) {
                dialog.Sections = {StoredSection()};
            }
            Open(dialog, newFlag);
            Photograph(dialog, QString("section_%1_%2").arg(newFlag).arg(QString::fromUtf8(language)));
            EXPECT_LT(dialog.width(), 900) << language;
            EXPECT_LT(dialog.height(), 600) << language;
            ExpectNothingCut(dialog);
        }
    }
}

}  // namespace
