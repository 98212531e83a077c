// What an operator has drawn on the picture that is open, and what the mouse does to it. Nothing of it is
// ever stored: the pixels of the baked picture are its only record.
//
// Circles, arrows and text boxes belong to a picture and are emptied with ClearObjects. Calibration and
// measuring points stay over a change of picture.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "defects/shapes.h"
#include "defects/tools.h"

class CAnnotations {
public:
    // A shape in hand is let go of.
    void SetTool(ToolMode tool);
    ToolMode Tool() const { return m_tool; }

    // The left button at `p`. Each tells whether there is something new to see. From a press that begins a
    // shape to its release this has the capture; moves and releases without it do nothing.
    bool Press(CanvasPoint p);
    bool Move(CanvasPoint p);
    bool Release(CanvasPoint p);
    bool HasCapture() const { return m_capture; }
    // Takes away what is being drawn; the operator has thought better of it.
    bool DropShape();
    // The capture is lost: what is being drawn stays as it is, but a box that nobody will give a text goes.
    bool LoseCapture();

    // A text box has been drawn, and its text is to be asked for.
    bool AwaitsText() const { return m_awaitsText; }
    void GiveText(std::string text);
    void RefuseText();  // the box goes

    // The last circle, text box, arrow, calibration or measuring point, as the tool says. False if there is
    // none.
    bool UndoLast(ToolMode of);
    void ClearCalibration() { m_calibration.clear(); }
    void ClearObjects();
    void ResetRubber();

    // Sets MmPerPixel as long as two calibration points stand.
    void RenewScale() const;

    // 0x00BBGGRR, of circles, arrows and texts.
    std::uint32_t Colour = 0x0000FF;

    // In the order drawn.
    const std::vector<CanvasRect>& Circles() const { return m_circles; }
    const std::vector<ArrowShape>& Arrows() const { return m_arrows; }
    const std::vector<TextBox>& TextBoxes() const { return m_textBoxes; }
    const std::vector<CanvasPoint>& CalibrationPoints() const { return m_calibration; }  // at most two
    const std::vector<CanvasPoint>& MeasuringPoints() const { return m_measuring; }      // in pairs
    const CanvasRect& ReferenceA() const { return m_referenceA; }
    const CanvasRect& ReferenceB() const { return m_referenceB; }

private:
    CanvasRect& ReferenceInHand() { return m_secondReference ? m_referenceB : m_referenceA; }

    ToolMode m_tool = ToolMode::None;
    bool m_capture = false;
    bool m_awaitsText = false;
    bool m_secondReference = false;  // which one the mouse draws
    std::vector<CanvasRect> m_circles;
    std::vector<ArrowShape> m_arrows;
    std::vector<CanvasPoint> m_calibration;
    std::vector<CanvasPoint> m_measuring;
    std::vector<TextBox> m_textBoxes;
    CanvasRect m_referenceA;
    CanvasRect m_referenceB;
};
