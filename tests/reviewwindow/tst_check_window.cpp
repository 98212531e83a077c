// The check beside the review window: from a finding to its place, and until it is mended.
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include "check/dialogs/CDlgCheck.h"
#include "check/dialogs/CDlgMends.h"
#include "check/dialogs/CDlgReason.h"
#include "check/rules.h"
#include "defects/defectform.h"
#include "history/CJournal.h"
#include "lists/CListCtrl.h"
#include "reports/CRecExport.h"
#include "shell/dialogs/qttext.h"
#include "store/sectionform.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "tests/support/CTestHome.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class CheckWindow : public CReviewTest {
protected:
    CheckWindow() {
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(Project, CDbPassword));
        for (const char* statement : {"update Testing set DistanceEnd = 0 where ID = 3",
                                      "update Testing set PipeDiameter = 'DN400' where ID = 2",
                                      "update Record set DistanceStart = 12 where ID = 2"}) {
            database.Execute(statement);
        }
    }

    // As in the program, where the review window is modal.
    CDlgCheck& Check(CDlgProAtrrib& window) {
        window.setModal(true);
        Open(window);
        window.activateWindow();
        EXPECT_TRUE(WaitFor([&] { return window.isActiveWindow(); }));
        PressKey(List(window), Qt::Key_K, Qt::ControlModifier);
        CDlgCheck& check = window.CheckWindow();
        EXPECT_TRUE(WaitFor([&] { return IsDone(check); })) << State(check).toStdString();
        return check;
    }
    static QString State(CDlgCheck& check) { return check.Item<QLabel>(CDlgCheck::IdState)->text(); }
    static bool IsDone(CDlgCheck& check) {
        return State(check).contains("错误") && !State(check).contains("还有");
    }
    static QTreeView& Tree(CDlgCheck& check) { return *check.Item<QTreeView>(CDlgCheck::IdTree); }
    static const CCheckModel& Model(CDlgCheck& check) {
        return *dynamic_cast<const CCheckModel*>(Tree(check).model());
    }
    static int Count(CDlgCheck& check, int rule) {
        const QModelIndex group = Model(check).IndexOfRule(rule);
        return group.isValid() ? Model(check).rowCount(group) : 0;
    }
    // The rule's only finding.
    static void Stand(CDlgCheck& check, int rule) {
        ASSERT_EQ(Count(check, rule), 1) << RuleName(rule);
        Tree(check).selectionModel()->setCurrentIndex(
            Model(check).index(0, 0, Model(check).IndexOfRule(rule)),
            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }

    CJournals m_journals;
    CChangeWatchesScope m_scope{m_journals};
    CTestHome m_home{Folder.Host("home")};
};

TEST_F(CheckWindow, LeadsToEachPlaceUntilItIsMended) {
    CDlgProAtrrib window("");
    CDlgCheck& check = Check(window);
    EXPECT_EQ(check.focusWidget(), &Tree(check));
    EXPECT_NE(Model(check).RowAt(Tree(check).currentIndex()), nullptr) << "stands on the first finding";
    ExpectNothingCut(check);
    Photograph(check, "check");

    // A field of a section: its form comes up there, and what is mended disappears.
    Stand(check, RuleNoDiameter);
    EXPECT_EQ(check.Item<QLabel>(CDlgCheck::IdAdvice)->text(), ToQt(RuleAdvice(RuleNoDiameter)));
    InNextDialog([](CSizeDlg& dialog) {
        auto* field = dialog.Item<QLineEdit>(SectionControl::Diameter);
        EXPECT_TRUE(WaitFor([&] { return field->hasFocus(); }));
        EXPECT_EQ(field->selectedText(), "DN400");
        QTest::keyClicks(field, "400");
        Press(dialog, CSizeDlg::IdOk);
    });
    PressKey(Tree(check), Qt::Key_Return);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_EQ(window.SectionList().SelectedSection()->ID, 2);
    EXPECT_TRUE(WaitFor([&] { return IsDone(check) && Count(check, RuleNoDiameter) == 0; }));

    // A field of a record; Cancel changes nothing.
    Stand(check, RuleStartBehindEnd);
    InNextDialog([](CSizeDlg& dialog) {
        EXPECT_TRUE(WaitFor([&] { return dialog.GetDlgItem(DefectControl::EndDistance)->hasFocus(); }));
        Press(dialog, CSizeDlg::IdCancel);
    });
    PressKey(Tree(check), Qt::Key_Return);
    EXPECT_TRUE(AllDialogsCame());
    ASSERT_NE(window.DefectList().SelectedRecord(), nullptr);
    EXPECT_EQ(window.DefectList().SelectedRecord()->ID, 2);

    // A file: its section is selected in the review window.
    Stand(check, RuleVideoMissing);
    PressKey(Tree(check), Qt::Key_Return);
    EXPECT_EQ(window.SectionList().SelectedSection()->ID, 1);
    EXPECT_TRUE(WaitFor([&] { return window.SectionList().hasFocus() || !window.isActiveWindow(); }));

    // Undone, it is there again.
    window.Run(CommandUndo);
    EXPECT_TRUE(WaitFor([&] { return IsDone(check) && Count(check, RuleNoDiameter) == 1; }));
}

TEST_F(CheckWindow, WhatIsLeftAsItIsNeedsAReasonAndCanBeShown) {
    CDlgProAtrrib window("");
    CDlgCheck& check = Check(window);
    const QString before = State(check);
    Stand(check, RuleVideoMissing);
    InNextDialog([](CSizeDlg& dialog) {
        EXPECT_FALSE(IsEnabled(dialog, CSizeDlg::IdOk)) << "without a reason";
        Photograph(dialog, "check-reason");
        Type(dialog, CDlgReason::IdReason, "客户另行保存");
        Press(dialog, CSizeDlg::IdOk);
    });
    Press(check, CDlgCheck::IdWaive);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_EQ(Count(check, RuleVideoMissing), 0);
    EXPECT_NE(State(check), before);
    check.Item<QCheckBox>(CDlgCheck::IdWaivedToo)->setChecked(true);
    Type(check, CDlgCheck::IdFilter, "另行 视频");
    ASSERT_EQ(Count(check, RuleVideoMissing), 1);
    EXPECT_EQ(Model(check).rowCount(), 1) << "nothing else has these words";
    Photograph(check, "check-left");

    // Another run of the check knows it too, and it can be taken back.
    Type(check, CDlgCheck::IdFilter, "");
    check.close();
    window.Run(CommandCheck);
    EXPECT_TRUE(WaitFor([&] { return IsDone(check) && Count(check, RuleVideoMissing) == 1; }));
    Stand(check, RuleVideoMissing);
    Press(check, CDlgCheck::IdWaive);
    EXPECT_EQ(State(check), before);
}

TEST_F(CheckWindow, MendsWhatWasShown) {
    CDlgProAtrrib window("");
    CDlgCheck& check = Check(window);
    Stand(check, RuleNoDiameter);
    EXPECT_FALSE(IsEnabled(check, CDlgCheck::IdMend)) << "nobody can know it";

    Stand(check, RuleNoEnd);
    InNextDialog([](CSizeDlg& dialog) {
        auto& list = *dialog.Item<CListCtrl>(CDlgMends::IdList);
        ASSERT_EQ(list.RowCount(), 1);
        EXPECT_EQ(list.RowText(0, 4), "30");
        ExpectNothingCut(dialog);
        Photograph(dialog, "check-mends");
        Press(dialog, CSizeDlg::IdOk);
    });
    Press(check, CDlgCheck::IdMend);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_TRUE(WaitFor([&] { return IsDone(check) && Count(check, RuleNoEnd) == 0; }));
    EXPECT_EQ(List(window).Sections()[2].DistanceEnd, 30.0F);

    // The first section's video has gone elsewhere.
    std::filesystem::create_directories(Folder.Host("now"));
    Folder.WriteFile("now/gone.avi", Folder.ReadFile("job/Y1-Y2.avi"));
    Folder.Prompts.GivePath(Folder.Path("now"));
    Stand(check, RuleVideoMissing);
    InNextDialog([](CSizeDlg& dialog) { Press(dialog, CSizeDlg::IdOk); });
    Press(check, CDlgCheck::IdMend);
    EXPECT_TRUE(AllDialogsCame());
    EXPECT_TRUE(WaitFor([&] { return IsDone(check) && Count(check, RuleVideoMissing) == 0; }));
    EXPECT_EQ(List(window).Sections()[0].VideoFileList, Folder.Path("now/gone.avi"));
}

TEST_F(CheckWindow, ALineOfTheReportLeadsToIt) {
    CDlgProAtrrib window("");
    Open(window);
    InNextDialog([](CSizeDlg& dialog) {
        auto* line = dialog.Item<QLabel>(5085);
        EXPECT_TRUE(WaitFor([&] { return line->text().contains("href"); })) << line->text().toStdString();
        Photograph(dialog, "export-errors");
        emit line->linkActivated("errors");
    });
    window.Run(1026);
    EXPECT_TRUE(AllDialogsCame());
    CDlgCheck& check = window.CheckWindow();
    EXPECT_TRUE(check.isVisible());
    EXPECT_TRUE(WaitFor([&] { return IsDone(check); }));
    // With the project it goes.
    InNextDialog([](CSizeDlg& dialog) { Press(dialog, CSizeDlg::IdCancel); });
    window.Run(1038);
    EXPECT_TRUE(check.isVisible()) << "no other project was chosen";
    check.close();
    EXPECT_FALSE(check.isVisible());
}

}  // namespace
