// The parts of the review window that are switched on: all defects, and the pictures.
#include <QImage>
#include <QLineEdit>
#include <QToolButton>

#include "bulk/dialogs/CAllDefects.h"
#include "controls/CVideoArea.h"
#include "defects/dialogs/CDlgPicture.h"
#include "defects/dialogs/CPictureBox.h"
#include "defects/dialogs/CPicturePanel.h"
#include "reports/CRecExport.h"
#include "tests/reviewwindow/CReviewTest.h"
#include "workbench/dialogs/CRowFilter.h"
#include "workbench/dialogs/reviewcommands.h"

namespace {

class PanelsWindow : public CReviewTest {
protected:
    PanelsWindow() {
        QImage picture(64, 48, QImage::Format_RGB32);
        picture.fill(Qt::red);
        EXPECT_TRUE(picture.save(QString::fromStdString(Folder.Host("job/picture/0.jpg").string())));
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(Project, CDbPassword));
        AddRecord(database, 1, 1.0);
    }
};

TEST_F(PanelsWindow, AllDefectsStandInTheOrderOfTheirSectionsAndLeadToTheirFrames) {
    CDlgProAtrrib window("");
    Open(window);
    List(window).SelectRow(2);
    WaitFor(50);
    EXPECT_TRUE(window.AllDefects().isHidden());
    Press(window, CommandAllDefects);
    CAllDefects& all = window.AllDefects();
    ASSERT_EQ(all.RowCount(), 3);
    EXPECT_EQ(window.focusWidget(), &all);
    EXPECT_EQ(all.RowText(0, 2), "Y10 - Y11") << "the order of the sections, not of the records";
    EXPECT_TRUE(WaitFor([&] {
        const QRect row = all.visualRect(all.model()->index(1, 0)).translated(all.viewport()->pos());
        return QColor(all.grab().toImage().pixel(row.left() + 30, row.center().y())).red() > 200 &&
               QColor(all.grab().toImage().pixel(row.left() + 30, row.center().y())).green() < 80;
    })) << "the picture comes by itself";
    Photograph(window, "alldefects");

    all.SelectRow(2);
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "Y2") << "looking through it loads nothing";
    PressKey(all, Qt::Key_Return);
    EXPECT_EQ(List(window).SelectedSection()->StartWell, "Y1");
    ASSERT_NE(DefectsOf(window).SelectedRecord(), nullptr);
    EXPECT_EQ(DefectsOf(window).SelectedRecord()->ID, 2);
    EXPECT_EQ(window.focusWidget(), &all);
    EXPECT_TRUE(WaitFor([&] { return PlayerOf(window).Controls().CurrentPosition() > 3.0; }));

    // It follows what is changed, and the filter.
    Folder.Prompts.ExpectQuestion(2197, true);
    Press(window, CommandDeleteDefect);
    EXPECT_EQ(all.RowCount(), 2);
    Press(window, CommandFind);
    window.Item<QLineEdit>(5110)->setText("well:Y10 grade>1");
    EXPECT_LE(all.RowCount(), 2);
    EXPECT_EQ(window.Filter().Hits().Records.size(), 1U);
    Press(window, CommandAllDefects);
    EXPECT_TRUE(all.isHidden());
}

TEST_F(PanelsWindow, PicturesFollowTheDefectAndWalkWithTheList) {
    CDlgProAtrrib window("");
    Open(window);
    Press(window, CommandPictures);
    List(window).SelectRow(1);
    ASSERT_TRUE(WaitFor([&] { return DefectsOf(window).RowCount() == 2; }));
    DefectsOf(window).SelectRow(0);
    CPicturePanel& pictures = window.Pictures();
    ASSERT_TRUE(WaitFor([&] { return pictures.Box(0).HasPicture(); }));
    EXPECT_FALSE(pictures.Box(1).HasPicture());
    pictures.Enlarge(0);
    ASSERT_NE(pictures.Enlarged(), nullptr);
    CDlgPicture& large = *pictures.Enlarged();
    EXPECT_TRUE(large.isVisible());
    Photograph(large, "picture");
    QWidget& box = *large.GetDlgItem(CDlgPicture::IdPicture);
    PressKey(box, Qt::Key_Down);
    EXPECT_TRUE(WaitFor([&] { return large.Box().Path().ends_with("3.jpg"); }));
    EXPECT_EQ(DefectsOf(window).SelectedRow(), 1);
    EXPECT_FALSE(large.Box().HasPicture()) << "it is no picture, and says so";
    PressKey(box, Qt::Key_Down);
    EXPECT_EQ(DefectsOf(window).SelectedRow(), 1);
    PressKey(box, Qt::Key_Escape);
    EXPECT_FALSE(large.isVisible());
    EXPECT_TRUE(window.isVisible());
}

TEST_F(PanelsWindow, BrightnessIsForTheEyeOnly) {
    CDlgProAtrrib window("");
    Open(window);
    List(window).SelectRow(1);
    auto* area = dynamic_cast<CVideoArea*>(PlayerOf(window).findChild<QWidget*>("picture"));
    ASSERT_NE(area, nullptr);
    ASSERT_TRUE(WaitFor([&] { return !area->Picture().isNull() && area->Message().isEmpty(); }));
    const QImage filmed = area->Picture().copy();
    const QImage seen = area->grab().toImage();
    auto* tone = PlayerOf(window).findChild<QToolButton*>("tone");
    ASSERT_NE(tone, nullptr);
    area->SetTone(100, 0);
    const QImage bright = area->grab().toImage();
    const QPoint middle = seen.rect().center();
    EXPECT_GE(qGray(bright.pixel(middle)), qGray(seen.pixel(middle)));
    EXPECT_NE(bright, seen);
    EXPECT_EQ(area->Picture().copy(), filmed) << "what is filmed stays";
    area->SetTone(0, 0);
    EXPECT_EQ(area->grab().toImage(), seen);
}

}  // namespace
