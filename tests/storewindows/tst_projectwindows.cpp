#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "store/CDbRec.h"
#include "store/catalogue.h"
#include "store/dialogs/CDlgNewPro.h"
#include "store/dialogs/CDlgProject.h"
#include "store/dialogs/CProjectList.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

namespace fs = std::filesystem;

constexpr int ListId = 1014;
constexpr int CriteriaId = 1021;

class ProjectWindows : public testing::Test {
protected:
    ~ProjectWindows() override { EXPECT_TRUE(AllDialogsCame()); }

    std::string Create(const std::string& name) {
        CCriterionDataArray criteria;
        LoadCriterionList(criteria, GetCriterionFolder(), CDbPassword);
        const std::string path = CreateProject({name, "c1\r\nc2", "no", "place"}, 1, criteria);
        m_folder.Clock.Local += std::chrono::seconds(10);
        return path;
    }
    static _PRO_DATA Attributes(const std::string& path) {
        CDbRec database;
        _PRO_DATA project;
        EXPECT_TRUE(database.OpenDatabase(path, CDbPassword) && database.ReadAttrib(project));
        return project;
    }
    static CProjectList& List(CSizeDlg& dialog) { return *dialog.Item<CProjectList>(ListId); }
    static std::string Names(CSizeDlg& dialog) {
        std::string names;
        for (int row = 0; row < List(dialog).RowCount(); ++row) {
            names += List(dialog).RowText(row, 0) + ";";
        }
        return names;
    }
    int Run(const std::function<void(CSizeDlg&)>& script) {
        InNextDialog([&](CSizeDlg& dialog) {
            WaitFor([&] { return dialog.isActiveWindow(); });  // keys of the window work from then on
            script(dialog);
        });
        return m_dialog.DoModal();
    }

    CTestFolder m_folder;
    bool m_entered = HostFiles().SetCurrentFolder(GetAppFolder());  // where the pictures of windows lie
    CDlgProject m_dialog{1, nullptr};
};

}  // namespace

TEST_F(ProjectWindows, AnEmptyFolderOffersOnlyToCreate) {
    const int result = Run([&](CSizeDlg& dialog) {
        EXPECT_EQ(FromQt(dialog.windowTitle()), LoadMessage(1000));
        for (const int id : {1, 1020, 1029}) {
            EXPECT_FALSE(IsEnabled(dialog, id)) << id;
        }
        Photograph(dialog, "projects-empty");
        PressKey(List(dialog), Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());

        InNextDialog([&](CSizeDlg& properties) {
            EXPECT_EQ(properties.focusWidget(), properties.GetDlgItem(1022));
            EXPECT_EQ(properties.Item<QComboBox>(CriteriaId)->currentIndex(), -1);
            m_folder.Prompts.Expect(2164);
            Press(properties, 1);
            Type(properties, 1022, "工程 '甲'");
            m_folder.Prompts.Expect(2165);
            Press(properties, 1);
            Photograph(properties, "properties-new");
            properties.Item<QComboBox>(CriteriaId)->setCurrentIndex(1);
            Type(properties, 1020, "one\ntwo");
            Type(properties, 1023, "N-1");
            Type(properties, 1024, "somewhere");
            PressKey(*properties.GetDlgItem(1024), Qt::Key_Return);
        });
        PressKey(List(dialog), Qt::Key_Insert);
        EXPECT_EQ(Names(dialog), "工程 '甲';");
        EXPECT_EQ(List(dialog).RowText(0, 2) + " " + List(dialog).RowText(0, 3), "0 2026-03-14 09:26:53");
        List(dialog).SelectRow(0);
        EXPECT_TRUE(WaitFor([&] { return IsEnabled(dialog, 1) && IsEnabled(dialog, 1020); }));
        Press(dialog, 1);
    });
    EXPECT_EQ(result, CSizeDlg::IdOk);
    EXPECT_EQ(m_dialog.ChosenProject.ProjectPath, GetDbFolder() + "2026-03-14-092653.mdb");
    const _PRO_DATA project = Attributes(m_dialog.ChosenProject.ProjectPath);
    EXPECT_EQ(project.Comment + project.ProjectIndex + project.Location, "one\r\ntwoN-1somewhere");
    EXPECT_EQ(project.StandardIndex, "1");
}

TEST_F(ProjectWindows, DeletingAsks) {
    const std::string first = Create("first");
    const std::string second = Create("second");
    Run([&](CSizeDlg& dialog) {
        m_folder.Prompts.ExpectQuestion(2204, false);
        Press(dialog, 1020);
        EXPECT_EQ(Names(dialog), "first;second;");
        m_folder.Prompts.ExpectQuestion(2204, true);
        PressKey(List(dialog), Qt::Key_Delete);
        EXPECT_EQ(Names(dialog), "second;");
        // No row is left selected: the next stroke of the key hits nothing.
        EXPECT_FALSE(IsEnabled(dialog, 1020));
        PressKey(List(dialog), Qt::Key_Delete);
        List(dialog).SelectRow(0);
        EXPECT_TRUE(WaitFor([&] { return IsEnabled(dialog, 1); }));
        Press(dialog, 1);
    });
    EXPECT_EQ(m_dialog.ChosenProject.ProjectPath, second);
    EXPECT_FALSE(HostFiles().Exists(first));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(ProjectWindows, TwoThatAreSelectedAreMerged) {
    for (const char* name : {"one", "two", "three"}) {
        ASSERT_NE(Create(name), "");
    }
    Run([&](CSizeDlg& dialog) {
        m_folder.Prompts.Expect(1061);
        Press(dialog, 1029);
        PressKey(List(dialog), Qt::Key_Down);
        QTest::keyClick(List(dialog).viewport(), Qt::Key_Down, Qt::ShiftModifier);
        EXPECT_EQ(List(dialog).SelectedRows(), (std::vector{1, 2}));
        Photograph(dialog, "projects-merge");
        Press(dialog, 1029);
        EXPECT_EQ(Names(dialog), "one;two;three;two__three;");
        EXPECT_EQ(List(dialog).SelectedRows(), std::vector{3});
        Press(dialog, 2);
    });
}

TEST_F(ProjectWindows, TheOpenProjectIsLeftOutAndAnUnreadableFileShiftsTheRows) {
    const std::string open = Create("open");
    const std::string shown = Create("shown");
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(open, CDbPassword));
    m_dialog.ExcludedPath = open;
    m_folder.WriteFile("db/2026-03-14-000000.mdb", "garbage");
    m_folder.Prompts.Expect(2000);
    Run([&](CSizeDlg& dialog) {
        EXPECT_EQ(Names(dialog), "shown;");
        Photograph(dialog, "projects-unreadable");
        EXPECT_EQ(List(dialog).UnreadableFile(), "2026-03-14-000000.mdb");
        // The command acts on the file whose index the row has.
        m_folder.Prompts.Expect(2000);
        PressKey(List(dialog), Qt::Key_F2);
        PressKey(List(dialog), Qt::Key_Return);
    });
    EXPECT_EQ(GetFileName(m_dialog.ChosenProject.ProjectPath), "2026-03-14-000000.mdb");
}

TEST_F(ProjectWindows, NothingIsCutInEitherLanguage) {
    for (const char* language : {"简体中文", "English"}) {
        m_folder.UseLanguage(language);
        Create("第一个工程 / the first project");
        CDlgProject list(1, nullptr);
        CDlgNewPro properties;
        for (CSizeDlg* dialog : {static_cast<CSizeDlg*>(&list), static_cast<CSizeDlg*>(&properties)}) {
            dialog->show();
            WaitFor(20);
            Photograph(*dialog, QString("%1-%2").arg(language).arg(dialog->windowTitle()));
            ExpectNothingCut(*dialog);
        }
    }
}
