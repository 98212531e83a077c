#include "defects/CAnnotations.h"

#include <utility>

namespace {

CanvasRect EmptyRect(CanvasPoint at) {
    return {at.X, at.Y, at.X, at.Y};
}

void SetFarCorner(CanvasRect& rect, CanvasPoint p) {
    rect.Right = p.X;
    rect.Bottom = p.Y;
}

template <class Shape>
bool RemoveLast(std::vector<Shape>& shapes) {
    if (shapes.empty()) {
        return false;
    }
    shapes.pop_back();
    return true;
}

}  // namespace

void CAnnotations::SetTool(ToolMode tool) {
    LoseCapture();
    m_tool = tool;
}

bool CAnnotations::Press(CanvasPoint p) {
    // A second press can come without a release, if that went to another window.
    LoseCapture();
    switch (m_tool) {
        case ToolMode::None:
            return false;
        case ToolMode::Reference:
            ReferenceInHand() = EmptyRect(p);
            break;
        case ToolMode::Circle:
            m_circles.push_back(EmptyRect(p));
            break;
        case ToolMode::Text:
            m_textBoxes.push_back({EmptyRect(p), {}});
            break;
        case ToolMode::Arrow:
            m_arrows.push_back(MakeArrow(p, p));
            break;
        case ToolMode::Calibration:
            if (m_calibration.size() < 2) {
                m_calibration.push_back(p);
                RenewScale();
            }
            return true;
        case ToolMode::Measuring:
            m_measuring.push_back(p);
            return true;
    }
    m_capture = true;
    return true;
}

bool CAnnotations::Move(CanvasPoint p) {
    if (!m_capture) {
        return false;
    }
    if (m_tool == ToolMode::Reference) {
        SetFarCorner(ReferenceInHand(), p);
    } else if (m_tool == ToolMode::Circle && !m_circles.empty()) {
        SetFarCorner(m_circles.back(), p);
    } else if (m_tool == ToolMode::Text && !m_textBoxes.empty()) {
        SetFarCorner(m_textBoxes.back().Rect, p);
    } else if (m_tool == ToolMode::Arrow && !m_arrows.empty()) {
        m_arrows.back() = MakeArrow(m_arrows.back().Tail, p);
    } else {
        return false;
    }
    return true;
}

bool CAnnotations::Release(CanvasPoint p) {
    const bool changed = Move(p);
    m_capture = false;
    if (changed) {
        m_secondReference = m_secondReference || m_tool == ToolMode::Reference;
        m_awaitsText = m_tool == ToolMode::Text;
    }
    return changed;
}

bool CAnnotations::DropShape() {
    if (!m_capture) {
        return false;
    }
    m_capture = false;
    if (m_tool == ToolMode::Reference) {
        ReferenceInHand() = {};
        return true;
    }
    return UndoLast(m_tool);
}

bool CAnnotations::LoseCapture() {
    if (m_capture && m_tool == ToolMode::Text) {
        return DropShape();
    }
    return std::exchange(m_capture, false);
}

void CAnnotations::GiveText(std::string text) {
    if (std::exchange(m_awaitsText, false)) {
        m_textBoxes.back().Text = std::move(text);
    }
}

void CAnnotations::RefuseText() {
    if (m_awaitsText) {
        UndoLast(ToolMode::Text);
    }
}

bool CAnnotations::UndoLast(ToolMode of) {
    if (of == m_tool) {
        m_capture = false;
    }
    switch (of) {
        case ToolMode::None:
        case ToolMode::Reference:
            return false;
        case ToolMode::Circle:
            return RemoveLast(m_circles);
        case ToolMode::Text:
            m_awaitsText = false;
            return RemoveLast(m_textBoxes);
        case ToolMode::Arrow:
            return RemoveLast(m_arrows);
        case ToolMode::Calibration:
            return RemoveLast(m_calibration);
        case ToolMode::Measuring:
            return RemoveLast(m_measuring);
    }
    return false;
}

void CAnnotations::ClearObjects() {
    m_capture = false;
    m_awaitsText = false;
    m_circles.clear();
    m_arrows.clear();
    m_textBoxes.clear();
}

void CAnnotations::ResetRubber() {
    if (m_tool == ToolMode::Reference) {
        m_capture = false;
    }
    m_referenceA = {};
    m_referenceB = {};
    m_secondReference = false;
}

void CAnnotations::RenewScale() const {
    if (m_calibration.size() == 2) {
        MmPerPixel = ScaleBetween(m_calibration[0], m_calibration[1]);
    }
}
