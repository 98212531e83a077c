#include <gtest/gtest.h>

#include "defects/CAnnotations.h"

namespace {

class Annotations : public testing::Test {
protected:
    Annotations() {
        MmPerPixel = 0.0F;
        Calibrated = false;
    }

    CAnnotations Drawn;
};

}  // namespace

TEST_F(Annotations, TheScaleOutlivesItsPoints) {
    Drawn.SetTool(ToolMode::Calibration);
    Drawn.Press({10, 10});
    EXPECT_EQ(MmPerPixel, 0.0F);
    Drawn.Press({10, 110});
    MmPerPixel = 9.0F;
    Drawn.RenewScale();
    EXPECT_EQ(MmPerPixel, 0.5F);
    Drawn.ClearCalibration();
    Drawn.RenewScale();
    EXPECT_EQ(MmPerPixel, 0.5F);
}

TEST_F(Annotations, UndoGoesByKindAndEndsAtNothing) {
    for (const ToolMode tool : {ToolMode::Circle, ToolMode::Text, ToolMode::Arrow, ToolMode::Calibration,
                                ToolMode::Measuring, ToolMode::Circle}) {
        Drawn.SetTool(tool);
        Drawn.Press({1, 1});
        Drawn.Release({2, 9});
        Drawn.GiveText("t");
    }
    for (const ToolMode tool :
         {ToolMode::Text, ToolMode::Arrow, ToolMode::Calibration, ToolMode::Measuring}) {
        EXPECT_TRUE(Drawn.UndoLast(tool));
        EXPECT_FALSE(Drawn.UndoLast(tool));
    }
    EXPECT_FALSE(Drawn.UndoLast(ToolMode::Reference));
    EXPECT_EQ(Drawn.Circles().size(), 2U);
}

TEST_F(Annotations, AShapeInHandIsLetGoOfWhenItsToolEndsOrItsPictureGoes) {
    EXPECT_FALSE(Drawn.DropShape());
    Drawn.SetTool(ToolMode::Text);
    Drawn.Press({1, 1});
    Drawn.SetTool(ToolMode::Circle);
    EXPECT_TRUE(Drawn.TextBoxes().empty());
    Drawn.Press({1, 1});
    Drawn.Move({9, 9});
    Drawn.SetTool(ToolMode::None);
    EXPECT_EQ(Drawn.Circles().size(), 1U);
    Drawn.SetTool(ToolMode::Circle);
    Drawn.Press({2, 2});
    Drawn.ClearObjects();
    EXPECT_FALSE(Drawn.Move({9, 9}));
    EXPECT_FALSE(Drawn.Release({9, 9}));
    EXPECT_TRUE(Drawn.Circles().empty());
}
