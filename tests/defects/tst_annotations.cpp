#include <gtest/gtest.h>

#include "defects/CAnnotations.h"

namespace {

class Annotations : public testing::Test {
protected:
    Annotations() {
        MmPerPixel = 0.0F;
        Calibrated = false;
    }

    void Drag(CanvasPoint from, CanvasPoint to) {
        EXPECT_TRUE(Drawn.Press(from));
        EXPECT_TRUE(Drawn.Move({7, 7}));
        EXPECT_TRUE(Drawn.Release(to));
        EXPECT_FALSE(Drawn.HasCapture());
    }

    CAnnotations Drawn;
};

void ExpectRect(const CanvasRect& is, const CanvasRect& expected) {
    EXPECT_TRUE(is == expected) << is.Left << " " << is.Top << " " << is.Right << " " << is.Bottom;
}

}  // namespace

TEST(Shapes, BarbsStandAtHalfARightAngleAndHaveNoEndOnAnArrowWithoutLength) {
    const ArrowShape arrow = MakeArrow({100, 50}, {50, 50});
    EXPECT_NEAR(arrow.Barbs[0].X, 57.0711, 1e-4);
    EXPECT_NEAR(arrow.Barbs[0].Y, 57.0711, 1e-4);
    EXPECT_NEAR(arrow.Barbs[1].X, 57.0711, 1e-4);
    EXPECT_NEAR(arrow.Barbs[1].Y, 42.9289, 1e-4);
    EXPECT_EQ(BarbEnd(arrow.Barbs[1]), (CanvasPoint{57, 42}));
    // Cut towards zero, also beyond the upper border.
    EXPECT_EQ(BarbEnd({-0.9, -3.9}), (CanvasPoint{0, -3}));
    EXPECT_FALSE(BarbEnd(MakeArrow({3, 3}, {3, 3}).Barbs[0]).has_value());
}

TEST(Shapes, LabelsShowWhatIsNoLengthAsSuch) {
    EXPECT_EQ(ScaleText(ScaleBetween({10, 10}, {40, 50})), "1.00mm/px");
    EXPECT_EQ(ScaleText(ScaleBetween({4, 4}, {4, 4})), "infmm/px");
    EXPECT_EQ(LengthText(0.125F, 100.0), "12.50mm");
    EXPECT_EQ(LengthText(ScaleBetween({4, 4}, {4, 4}), 3.0), "infmm");
    EXPECT_EQ(LengthText(ScaleBetween({4, 4}, {4, 4}), 0.0), "nanmm");

    const CanvasRect none;
    const CanvasRect five{10, 10, 13, 6};
    const CanvasRect fifteen{0, 0, 9, 12};
    EXPECT_EQ(ReferenceTextsOf(five, none).A, "0.05 m");
    EXPECT_EQ(ReferenceTextsOf(five, none).B, "");
    EXPECT_EQ(ReferenceTextsOf(five, fifteen).B, "0.15 m");
    EXPECT_EQ(ReferenceTextsOf(none, fifteen).A, "");
    EXPECT_EQ(ReferenceTextsOf(none, fifteen).B, "inf m");
}

TEST(Shapes, ALabelHangsOnTheLowerPointAndStaysOnTheCanvas) {
    ExpectRect(LabelRect({50, 60}, {70, 40}, 640, 480), {50, 60, 170, 90});
    ExpectRect(LabelRect({50, 60}, {70, 60}, 640, 480), {70, 60, 190, 90});
    ExpectRect(LabelRect({520, 450}, {0, 0}, 640, 480), {520, 450, 640, 480});
    ExpectRect(LabelRect({521, 451}, {0, 0}, 640, 480), {401, 421, 521, 451});
}

TEST_F(Annotations, OfTheReferencesTheSecondIsDrawnAgain) {
    Drawn.SetTool(ToolMode::Reference);
    Drag({0, 0}, {30, 0});
    Drag({0, 0}, {0, 40});
    Drag({1, 1}, {2, 2});
    ExpectRect(Drawn.ReferenceA(), {0, 0, 30, 0});
    ExpectRect(Drawn.ReferenceB(), {1, 1, 2, 2});
    Drawn.ResetRubber();
    Drag({3, 3}, {4, 4});
    ExpectRect(Drawn.ReferenceA(), {3, 3, 4, 4});
    ExpectRect(Drawn.ReferenceB(), {});
}

TEST_F(Annotations, TextsAndRefusalsReachOnlyTheBoxThatWaits) {
    Drawn.SetTool(ToolMode::Text);
    Drag({1, 2}, {30, 40});
    Drawn.GiveText("裂缝");
    Drawn.RefuseText();
    EXPECT_EQ(Drawn.TextBoxes().size(), 1U);
    Drag({5, 5}, {6, 6});
    Drawn.ClearObjects();
    Drawn.GiveText("x");
    EXPECT_TRUE(Drawn.TextBoxes().empty());
}

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
