#include <gtest/gtest.h>

#include <QImage>
#include <QTest>

#include "defects/dialogs/C12Clock.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

namespace {

class Clock : public testing::Test {
protected:
    Clock() {
        EXPECT_TRUE(Face.SetImages(Folder.Path("ui/clock0.png"), Folder.Path("ui/clock1.png")));
        Face.show();
        Size = Face.width();
    }
    QPoint At(double x, double y) const { return {static_cast<int>(Size * x), static_cast<int>(Size * y)}; }
    CTestFolder Folder;
    C12Clock Face;
    int Size = 0;
};

}  // namespace

TEST_F(Clock, ButtonsSetStartAndEndAndFollowTheMouse) {
    QTest::mousePress(&Face, Qt::LeftButton, {}, At(0.95, 0.5));
    EXPECT_EQ(Face.GetStartHour(), 3);
    QTest::mouseMove(&Face, At(0.5, 0.95));
    EXPECT_EQ(Face.GetStartHour(), 6);
    QTest::mouseRelease(&Face, Qt::LeftButton, {}, At(0.5, 0.95));
    QTest::mouseMove(&Face, At(0.95, 0.5));
    EXPECT_EQ(Face.GetStartHour(), 6);
    QTest::mouseClick(&Face, Qt::RightButton, {}, At(0.05, 0.5));
    EXPECT_EQ(Face.GetEndHour(), 9);
    QTest::mousePress(&Face, Qt::LeftButton, {}, At(0.95, 0.5));
    QTest::mousePress(&Face, Qt::RightButton, {}, At(0.5, 0.95));
    EXPECT_EQ(Face.GetStartHour() * 100 + Face.GetEndHour(), 306) << "the button pressed counts";
}

TEST_F(Clock, KeysSetBothHours) {
    PressKey(Face, Qt::Key_3);
    EXPECT_EQ(Face.GetStartHour(), 3);
    PressKey(Face, Qt::Key_0);
    EXPECT_EQ(Face.GetStartHour(), 10);
    PressKey(Face, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Face.GetEndHour(), 1) << "one after 12";
    PressKey(Face, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(Face.GetEndHour(), 12);
}
