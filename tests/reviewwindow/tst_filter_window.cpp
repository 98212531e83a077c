// Finding and filtering in the review window, with real keys.
#include <QLineEdit>
#include <QTest>

#include "reports/CRecExport.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "workbench/dialogs/CRowFilter.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class FilterWindow : public CReviewTest {
protected:
    static constexpr int IdLine = 5110;
    static QLineEdit& Line(CDlgProAtrrib& window) { return *window.Item<QLineEdit>(IdLine); }
    static void Ask(CDlgProAtrrib& window, const char* query) {
        if (!window.Filter().IsOpen()) {
            Press(window, CommandFind);
        }
        Line(window).clear();
        QTest::keyClicks(&Line(window), query);
        WaitFor(30);
    }
};

TEST_F(FilterWindow, WhatIsTypedFiltersAndEnterLeadsFromHitToHit) {
    CDlgProAtrrib window("");
    Open(window);
    List(window).SelectRow(2);
    WaitFor(50);
    Press(window, CommandFind);
    EXPECT_EQ(window.focusWidget(), &Line(window));
    Photograph(window, "filter");
    ExpectNothingCut(window);
    Ask(window, "code:PL grade>=2");
    ASSERT_EQ(List(window).RowCount(), 2) << "the section hit, and the one that he stands on";
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "Y2");
    EXPECT_EQ(PlayerOf(window).URL(), Folder.Path("job/text.avi")) << "typing loads no video";

    PressKey(Line(window), Qt::Key_Return);
    ASSERT_TRUE(WaitFor([&] { return PlayerOf(window).URL() == Folder.Path("job/Y1-Y2.avi"); }));
    EXPECT_EQ(List(window).RowCount(), 1);
    ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
    const int first = DefectsOf(window).SelectedRecord()->ID;
    PressKey(Line(window), Qt::Key_Return);
    EXPECT_NE(DefectsOf(window).SelectedRecord()->ID, first);
    EXPECT_EQ(window.focusWidget(), &Line(window)) << "the next Enter goes on";
    PressKey(Line(window), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->ID, first);

    // What is changed is found anew; where the operator stands stays seen.
    CRecExport& database = *window.Session().Database();
    database.Execute("update Record set DefectLevel = 1");
    window.Asked = [] {};
    window.Run(CommandAskedChange);
    EXPECT_TRUE(window.Filter().Hits().Sections.empty());
    EXPECT_EQ(List(window).RowCount(), 1);

    PressKey(Line(window), Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible()) << "Esc ends the filter and not the work";
    EXPECT_FALSE(window.Filter().IsOpen());
    EXPECT_EQ(List(window).RowCount(), 3);
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "Y1");
    EXPECT_EQ(window.focusWidget(), &List(window));
}

TEST_F(FilterWindow, TheOrderStaysWhileFilteredAndNewSectionsAreSeen) {
    CDlgProAtrrib window("");
    Open(window);
    List(window).SelectRow(2);
    WaitFor(50);
    Ask(window, "no video");
    EXPECT_EQ(window.Filter().Hits().Sections.size(), 1U);
    PressKey(Line(window), Qt::Key_Down);
    EXPECT_EQ(window.focusWidget(), &List(window));
    PressKey(List(window), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(window.Session().Database()->ChangeCount(), window.Session().GetPlace().Changes);
    window.Run(CommandSortByWells);
    EXPECT_EQ(List(window).Sections()[0].StartWell, "Y10") << "nothing was numbered anew";

    CRecExport& database = *window.Session().Database();
    window.Asked = [&] { AddSection(database, "Z1", "Z2", Folder.Path("job/Y1-Y2.avi")); };
    window.Run(CommandAskedChange);
    ASSERT_NE(List(window).SelectedSection(), nullptr);
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "Z1") << "what was made is seen, hit or not";
    EXPECT_EQ(List(window).RowCount(), 2);

    const std::string other = Folder.MakeProject("other.mdb");
    EXPECT_TRUE(window.OpenProject(other));
    EXPECT_FALSE(window.Filter().IsOpen());
}

}  // namespace
