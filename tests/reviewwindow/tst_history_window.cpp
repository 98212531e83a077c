// Undo, redo and the history in the review window, by its keys and buttons.
#include <QLabel>
#include <QTest>
#include <QTreeWidget>

#include "history/CJournal.h"
#include "history/dialogs/CDlgCompare.h"
#include "history/dialogs/CDlgHistory.h"
#include "history/dialogs/CDlgRestorePoints.h"
#include "lists/CListCtrl.h"
#include "shell/CHostFiles.h"
#include "shell/dialogs/CDlgSet.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class HistoryWindow : public CReviewTest {
protected:
    // On the second defect of the section with a video.
    void StandOnDefect(CDlgProAtrrib& window) {
        Open(window);
        List(window).SelectRow(1);
        ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
        DefectsOf(window).SelectRow(1);
        ASSERT_TRUE(WaitFor([&] { return PlayerOf(window).Controls().CurrentPosition() > 3.0; }));
        DefectsOf(window).setFocus();
    }
    // Shortcuts need the active window; its splash may be that for a moment.
    void PressControl(CDlgProAtrrib& window, Qt::Key key, Qt::KeyboardModifiers more = Qt::NoModifier) {
        window.activateWindow();
        EXPECT_TRUE(WaitFor([&] { return window.isActiveWindow(); }));
        PressKey(List(window), key, Qt::ControlModifier | more);
    }
    std::string Tip(CDlgProAtrrib& window, int id) { return window.GetDlgItem(id)->toolTip().toStdString(); }

    CJournals Journals;
    CChangeWatchesScope Scope{Journals};
};

TEST_F(HistoryWindow, ADeletedSectionComesBackByItsKeys) {
    CDlgProAtrrib window("");
    StandOnDefect(window);
    EXPECT_FALSE(IsEnabled(window, CommandUndo));
    EXPECT_NE(Tip(window, CommandUndo).find("没有可撤销的步骤"), std::string::npos);
    Folder.Prompts.ExpectQuestion(2192, true);
    Press(window, CommandDeleteSection);
    ASSERT_EQ(List(window).RowCount(), 2);
    EXPECT_NE(Tip(window, CommandUndo).find("删除管段  Y1 - Y2"), std::string::npos)
        << Tip(window, CommandUndo);

    PressControl(window, Qt::Key_Z);
    ASSERT_EQ(List(window).RowCount(), 3);
    ASSERT_NE(List(window).SelectedSection(), nullptr);
    EXPECT_EQ(List(window).SelectedSection()->ID, 2) << "the place is that of the step";
    EXPECT_EQ(DefectsOf(window).RowCount(), 2);
    EXPECT_EQ(PlayerOf(window).URL(), Folder.Path("job/Y1-Y2.avi"));
    EXPECT_FALSE(IsEnabled(window, CommandUndo));

    PressControl(window, Qt::Key_Y);
    EXPECT_EQ(List(window).RowCount(), 2);
    PressControl(window, Qt::Key_Z);
    EXPECT_EQ(List(window).RowCount(), 3);
    PressControl(window, Qt::Key_Z, Qt::ShiftModifier);
    EXPECT_EQ(List(window).RowCount(), 2);
}

TEST_F(HistoryWindow, ADeletedDefectComesBackWithItsPictureAndFrame) {
    CDlgProAtrrib window("");
    StandOnDefect(window);
    Folder.Prompts.ExpectQuestion(2197, true);
    Press(window, CommandDeleteDefect);
    EXPECT_EQ(DefectsOf(window).RowCount(), 1);
    EXPECT_EQ(Folder.ReadFile("job/picture/3.jpg"), "");
    List(window).SelectRow(0);
    WaitFor(100);
    Press(window, CommandUndo);
    ASSERT_NE(List(window).SelectedSection(), nullptr);
    EXPECT_EQ(List(window).SelectedSection()->ID, 2);
    ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->ID, 2);
    EXPECT_EQ(Folder.ReadFile("job/picture/3.jpg"), "jpeg");
    EXPECT_TRUE(WaitFor([&] { return PlayerOf(window).Controls().CurrentPosition() > 3.0; }));

    // An addition in the section that is shown goes, with the list fresh.
    Folder.Prompts.ExpectQuestion(2200, true);
    Press(window, 1033);
    EXPECT_EQ(DefectsOf(window).RowText(1, 5), "2");
    EXPECT_TRUE(std::filesystem::exists(Folder.Host("job/picture/Y1-Y2_092653.jpg")));
    Press(window, CommandUndo);
    EXPECT_EQ(DefectsOf(window).RowText(1, 5), "1");
    EXPECT_FALSE(std::filesystem::exists(Folder.Host("job/picture/Y1-Y2_092653.jpg")));
}

TEST_F(HistoryWindow, ListsTheStepsAndLeadsToAnyOfThem) {
    CDlgProAtrrib window("");
    StandOnDefect(window);
    Folder.Clock.Local += std::chrono::days(1);
    Folder.Prompts.ExpectQuestion(2197, true);
    Press(window, CommandDeleteDefect);
    Folder.Prompts.ExpectQuestion(2192, true);
    Press(window, CommandDeleteSection);
    InNextDialog([&](CSizeDlg& dialog) {
        auto* steps = dialog.Item<CListCtrl>(CDlgHistory::IdSteps);
        ASSERT_EQ(steps->RowCount(), 3);
        EXPECT_EQ(steps->RowText(0, 1), "删除管段");
        EXPECT_EQ(steps->RowText(0, 4), "当前");
        EXPECT_EQ(steps->RowText(1, 2), "Y1 - Y2  PL 0.0 m");
        EXPECT_FALSE(IsEnabled(dialog, CDlgHistory::IdGoTo));
        ExpectNothingCut(dialog);
        Photograph(dialog, "history");
        steps->SelectRow(1);
        PressKey(*steps, Qt::Key_Return);
        EXPECT_EQ(steps->RowText(0, 4), "已撤销");
        EXPECT_EQ(steps->RowText(1, 4), "当前");

        InNextDialog([&](CSizeDlg& points) {
            auto* list = points.Item<CListCtrl>(CDlgRestorePoints::IdPoints);
            EXPECT_EQ(list->RowCount(), 1);
            ExpectNothingCut(points);
            Photograph(points, "restorepoints");
            InNextDialog([&](CSizeDlg& compare) {
                auto* tree = compare.Item<QTreeWidget>(CDlgCompare::IdTree);
                EXPECT_EQ(tree->topLevelItemCount(), 1);
                EXPECT_EQ(tree->topLevelItem(0)->childCount(), 1) << "the deleted defect";
                Photograph(compare, "compare");
                Folder.Prompts.ExpectQuestion(3461, true);
                Press(compare, CDlgCompare::IdTakeBack);
                EXPECT_EQ(tree->topLevelItemCount(), 0);
                EXPECT_TRUE(compare.GetDlgItem(CDlgCompare::IdNone)->isVisible());
                Press(compare, CSizeDlg::IdCancel);
            });
            Press(points, CDlgRestorePoints::IdCompare);
            Press(points, CSizeDlg::IdCancel);
        });
        Press(dialog, CDlgHistory::IdPoints);
        EXPECT_EQ(steps->RowText(0, 1), "从还原点取回");
        Press(dialog, CSizeDlg::IdCancel);
    });
    PressControl(window, Qt::Key_J);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_EQ(List(window).RowCount(), 3);
    ASSERT_NE(List(window).SelectedSection(), nullptr);
    EXPECT_EQ(List(window).SelectedSection()->ID, 2);
    EXPECT_EQ(DefectsOf(window).RowCount(), 2);
    EXPECT_EQ(Folder.ReadFile("job/picture/3.jpg"), "jpeg");

    // The settings tell what is kept, and clear it.
    Folder.Prompts.ExpectQuestion(3469, true);
    InNextDialog([&](CSizeDlg& dialog) {
        auto* kept = dialog.Item<QLabel>(CDlgSet::IdKeptLabel);
        EXPECT_TRUE(kept->text().contains("2 个步骤")) << kept->text().toStdString();
        ExpectNothingCut(dialog);
        Photograph(dialog, "settings-kept");
        Press(dialog, CDlgSet::IdClearKept);
        EXPECT_TRUE(kept->text().contains("0 个步骤"));
        Press(dialog, CSizeDlg::IdCancel);
    });
    Press(window, 1081);
    EXPECT_FALSE(IsEnabled(window, CommandUndo));

    // One opened to look at can't be changed.
    InNextDialog([&](CSizeDlg& dialog) {
        InNextDialog([&](CSizeDlg& points) { Press(points, CDlgRestorePoints::IdOpen); });
        Press(dialog, CDlgHistory::IdPoints);
    });
    Press(window, CommandHistory);
    EXPECT_TRUE(window.ProjectPath().ends_with(".point"));
    EXPECT_TRUE(window.Session().IsReadOnly());
    EXPECT_FALSE(IsEnabled(window, CommandUndo));
    EXPECT_FALSE(IsEnabled(window, CommandDeleteSection));
}

}  // namespace
