// The grade of the selected section in the review window, and the window that explains it.
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QTest>

#include "assessment/explain/dialogs/CDlgExplain.h"
#include "lists/CListCtrl.h"
#include "shell/dialogs/qttext.h"
#include "shell/language.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class GradeWindow : public CReviewTest {
protected:
    GradeWindow() {
        // Entered from the far end: the second is measured backwards and merged with the first.
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(Project, CDbPassword));
        for (const float distance : {25.0F, 5.0F}) {
            _REC_DATA record;
            record.TestingID = 3;
            record.DefectCode = "PL";
            record.DefectLevel = 3;
            record.DistanceStart = record.DistanceEnd = distance;
            EXPECT_TRUE(database.AddRecord(record));
        }
    }
    void StandOnThird(CDlgProAtrrib& window) {
        window.setModal(true);  // as in the program
        Open(window);
        List(window).SelectRow(2);
        ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
        window.activateWindow();
        ASSERT_TRUE(WaitFor([&] { return window.isActiveWindow(); }));
    }
    static QString Line(CDlgProAtrrib& window) { return TextOf(window, CommandExplain); }
    static int RowWith(const CListCtrl& list, int column, const std::string& text) {
        for (int row = 0; row < list.RowCount(); ++row) {
            if (list.RowText(row, column).find(text) != std::string::npos) {
                return row;
            }
        }
        return -1;
    }
};

TEST_F(GradeWindow, TellsTheGradeAndLeadsFromItToTheRecord) {
    CDlgProAtrrib window("");
    Open(window);
    List(window).SelectRow(0);
    ASSERT_TRUE(WaitFor([&] { return Line(window).startsWith("结构性：RI 0，等级 Ⅰ"); }))
        << Line(window).toStdString();
    List(window).SelectRow(2);
    ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
    const QString outOfOrder = MessageText(3564);
    const QString before = Line(window);
    EXPECT_TRUE(before.endsWith(outOfOrder)) << before.toStdString();
    window.activateWindow();
    ASSERT_TRUE(WaitFor([&] { return window.isActiveWindow(); }));

    InNextDialog([&](CSizeDlg& dialog) {
        auto& lines = *dialog.Item<CListCtrl>(CDlgExplain::IdLines);
        EXPECT_FALSE(IsEnabled(dialog, CDlgExplain::IdGoTo)) << "a heading leads nowhere";
        EXPECT_GE(RowWith(lines, 2, "并入 破裂 3（25 m 处）"), 0);
        ExpectNothingCut(dialog);
        Photograph(dialog, "explain");
        Press(dialog, CDlgExplain::IdCopy);
        EXPECT_TRUE(QGuiApplication::clipboard()->text().contains("修复指数 RI\t"));

        // Another region weighs less, and is kept for the project.
        dialog.Item<QComboBox>(CDlgExplain::IdRegion)->setCurrentIndex(3);
        EXPECT_EQ(lines.RowText(RowWith(lines, 0, "参数 K"), 1), "0");
        lines.SelectRow(RowWith(lines, 0, "（5 m 处）"));
        PressKey(lines, Qt::Key_Return);
    });
    PressKey(List(window), Qt::Key_T, Qt::ControlModifier);
    EXPECT_TRUE(AllDialogsCame());
    ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->DistanceStart, 5.0F);
    EXPECT_NE(Line(window), before);
    EXPECT_TRUE(Line(window).endsWith(outOfOrder));

    InNextDialog([&](CSizeDlg& dialog) {
        EXPECT_EQ(dialog.Item<QComboBox>(CDlgExplain::IdRegion)->currentIndex(), 3);
        ASSERT_TRUE(dialog.GetDlgItem(CDlgExplain::IdReorder)->isVisible());
        Press(dialog, CDlgExplain::IdReorder);
        EXPECT_FALSE(dialog.GetDlgItem(CDlgExplain::IdReorder)->isVisible());
        Press(dialog, CSizeDlg::IdCancel);
    });
    Press(window, CommandExplain);
    EXPECT_TRUE(AllDialogsCame());
    ASSERT_EQ(DefectsOf(window).RowCount(), 2);
    EXPECT_EQ(DefectsOf(window).Records()[0].DistanceStart, 5.0F);
    EXPECT_FALSE(Line(window).contains(outOfOrder)) << Line(window).toStdString();
}

TEST_F(GradeWindow, LevelsOfAllSectionsFillThemselves) {
    CDlgProAtrrib window("");
    StandOnThird(window);
    const int column = List(window).ColumnCount() - 2;
    EXPECT_TRUE(List(window).isColumnHidden(column)) << "as it always was";
    List(window).ShowLevels(true);
    List(window).SelectRow(0);
    ASSERT_TRUE(WaitFor([&] { return !List(window).RowText(1, column).empty(); }));
    EXPECT_EQ(List(window).RowText(0, column), "Ⅰ");
    EXPECT_EQ(List(window).RowText(0, column + 1), "Ⅰ");
    ASSERT_TRUE(WaitFor([&] { return !List(window).RowText(2, column).empty(); }));
    EXPECT_NE(List(window).RowText(2, column), "Ⅰ");
    Photograph(window, "levels");
}

}  // namespace
