// Where the operator was, when he comes back.
#include <QHeaderView>

#include "bulk/dialogs/CAllDefects.h"
#include "defects/dialogs/CPicturePanel.h"
#include "shell/dialogs/projectsettings.h"
#include "store/dialogs/CDlgProject.h"
#include "store/dialogs/CProjectList.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class PlaceWindow : public CReviewTest {
protected:
    static void Leave(CDlgProAtrrib& window, CTestFolder& folder) {
        folder.Prompts.ExpectQuestion(2182, true);
        Press(window, CSizeDlg::IdCancel);
        WaitFor(20);
    }
};

TEST_F(PlaceWindow, OpeningStandsOnTheLastSectionDefectAndSecond) {
    {
        CDlgProAtrrib window(Project);
        window.show();
        WaitFor(50);
        List(window).SelectRow(1);
        ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
        DefectsOf(window).SelectRow(0);
        ASSERT_TRUE(WaitFor([&] { return PlayerOf(window).Controls().CurrentPosition() > 0.3; }));
        PlayerOf(window).Controls().SetCurrentPosition(1.5);
        Leave(window, Folder);
    }
    {
        CDlgProAtrrib window(Project);
        window.show();
        WaitFor(50);
        ASSERT_NE(List(window).SelectedSection(), nullptr);
        EXPECT_EQ(List(window).SelectedSection()->StartWell, "Y1");
        EXPECT_EQ(DefectsOf(window).SelectedRow(), 0);
        EXPECT_NEAR(PlayerOf(window).Controls().CurrentPosition(), 1.5, 0.1);
    }

    // The list of projects starts there, too.
    (void)Folder.MakeProject("z.mdb");
    (void)Folder.MakeProject("a.mdb");
    {
        CDlgProject projects(1, nullptr);
        projects.show();
        WaitFor(30);
        auto& list = *projects.Item<CProjectList>(1014);
        ASSERT_NE(list.SelectedProject(), nullptr);
        EXPECT_EQ(list.RowCount(), 3);
        EXPECT_EQ(list.SelectedProject()->ProjectPath, Project);
    }

    // What has gone meanwhile is no hindrance.
    {
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(Project, CDbPassword));
        database.Execute("delete from Testing where ID = 2");
    }
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(50);
    ASSERT_NE(List(window).SelectedSection(), nullptr);
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "Y2") << "the last one";
}

TEST_F(PlaceWindow, SizesSplitsColumnsAndPanelsStay) {
    {
        CDlgProAtrrib window(Project);
        window.show();
        WaitFor(50);
        EXPECT_TRUE(window.AllDefects().isHidden());
        EXPECT_TRUE(window.Pictures().isHidden()) << "this screen is small";
        window.resize(1300, 760);
        DefectsOf(window).header()->resizeSection(0, 177);
        Press(window, CommandAllDefects);
        WaitFor(30);
        Leave(window, Folder);
    }
    CDlgProAtrrib window(Project);
    window.show();
    WaitFor(50);
    EXPECT_EQ(window.size(), QSize(1300, 760));
    EXPECT_EQ(DefectsOf(window).header()->sectionSize(0), 177);
    ASSERT_FALSE(window.AllDefects().isHidden());
    EXPECT_EQ(window.AllDefects().RowCount(), 2) << "filled at once";
    EXPECT_TRUE(window.Item<QAbstractButton>(CommandAllDefects)->isChecked());
    Press(window, CommandAllDefects);
    Leave(window, Folder);
}

// What a screen of 1366 by 768 must show, beside the bars of the desktop.
TEST_F(PlaceWindow, ASmallScreenShowsEnough) {
    CDlgProAtrrib window(Project);
    KeepUserSetting("ShowLevels", false);
    window.resize(1366, 710);
    window.show();
    WaitFor(80);
    const auto rows = [](const CListCtrl& list) {
        return list.viewport()->height() / std::max(list.sizeHintForRow(0), 1);
    };
    List(window).SelectRow(1);
    ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
    const QSize video = PlayerOf(window).findChild<QWidget*>("picture")->size();
    EXPECT_GE(video.width(), 440);
    EXPECT_GE(video.height(), 350);
    EXPECT_GE(rows(List(window)), 5);
    EXPECT_GE(rows(DefectsOf(window)), 6);
    ExpectNothingCut(window);
}

}  // namespace
