#include "defects/canvasmarks.h"

#include <algorithm>
#include <iterator>

#include "defects/CAnnotations.h"

namespace {

CanvasMark RectMark(MarkKind kind, const CanvasRect& rect) {
    return {kind, {rect.Left, rect.Top}, {rect.Right, rect.Bottom}, 0, {}};
}

void AddReferenceLine(std::vector<CanvasMark>& marks, MarkKind kind, const CanvasRect& rect) {
    if (Diagonal(rect) > 0) {
        marks.push_back(RectMark(kind, rect));
    }
}

void AddDots(std::vector<CanvasMark>& marks, MarkKind kind, const std::vector<CanvasPoint>& points) {
    for (const CanvasPoint& point : points) {
        marks.push_back({kind, point, point, 0, {}});
    }
}

std::vector<CanvasMark> MarksOfTool(const CAnnotations& annotations, ToolMode tool) {
    std::vector<CanvasMark> marks;
    switch (tool) {
        case ToolMode::None:
            break;
        case ToolMode::Reference:
            AddReferenceLine(marks, MarkKind::ReferenceLineA, annotations.ReferenceA());
            AddReferenceLine(marks, MarkKind::ReferenceLineB, annotations.ReferenceB());
            break;
        case ToolMode::Circle:
            for (const CanvasRect& circle : annotations.Circles()) {
                marks.push_back(RectMark(MarkKind::Circle, circle));
                marks.back().Colour = annotations.Colour;
            }
            break;
        case ToolMode::Arrow:
            for (const ArrowShape& arrow : annotations.Arrows()) {
                marks.push_back({MarkKind::Arrow, arrow.Tail, arrow.Tip, annotations.Colour, {}});
            }
            break;
        case ToolMode::Calibration: {
            const auto& points = annotations.CalibrationPoints();
            AddDots(marks, MarkKind::CalibrationDot, points);
            if (points.size() == 2) {
                marks.push_back({MarkKind::CalibrationLine, points[0], points[1], 0,
                                 ScaleText(ScaleBetween(points[0], points[1]))});
            }
            break;
        }
        case ToolMode::Measuring: {
            const auto& points = annotations.MeasuringPoints();
            AddDots(marks, MarkKind::MeasuringDot, points);
            for (std::size_t i = 1; i < points.size(); i += 2) {
                marks.push_back({MarkKind::MeasuringLine, points[i - 1], points[i], 0,
                                 LengthText(MmPerPixel, Distance(points[i - 1], points[i]))});
            }
            break;
        }
        case ToolMode::Text:
            for (const TextBox& box : annotations.TextBoxes()) {
                marks.push_back(RectMark(MarkKind::Text, box.Rect));
                marks.back().Colour = annotations.Colour;
                marks.back().Text = box.Text;
            }
            break;
    }
    return marks;
}

void AddReferenceText(std::vector<CanvasMark>& marks, MarkKind kind, const CanvasRect& rect,
                      const std::string& text) {
    if (!text.empty()) {
        marks.push_back(RectMark(kind, rect));
        marks.back().Text = text;
    }
}

bool IsDragged(ToolMode tool) {
    return tool == ToolMode::Reference || tool == ToolMode::Circle || tool == ToolMode::Arrow ||
           tool == ToolMode::Text;
}

}  // namespace

CanvasMarks MarksOf(const CAnnotations& annotations) {
    CanvasMarks marks;
    std::vector<CanvasMark>* part = &marks.Below;
    for (const ToolMode tool : {ToolMode::Reference, ToolMode::Circle, ToolMode::Arrow, ToolMode::Calibration,
                                ToolMode::Measuring, ToolMode::Text}) {
        std::vector<CanvasMark> some = MarksOfTool(annotations, tool);
        const bool current = tool == annotations.Tool() && IsDragged(tool);
        if (current && annotations.HasCapture() && !some.empty()) {
            // The reference lines are one object: the length of the one changes the text of the other.
            const auto first = tool == ToolMode::Reference ? some.begin() : std::prev(some.end());
            std::move(first, some.end(), std::back_inserter(marks.InHand));
            some.erase(first, some.end());
        }
        std::ranges::move(some, std::back_inserter(*part));
        if (current) {
            part = &marks.Above;
        }
    }
    const ReferenceTexts texts = ReferenceTextsOf(annotations.ReferenceA(), annotations.ReferenceB());
    AddReferenceText(marks.Top, MarkKind::ReferenceTextA, annotations.ReferenceA(), texts.A);
    AddReferenceText(marks.Top, MarkKind::ReferenceTextB, annotations.ReferenceB(), texts.B);
    return marks;
}

std::vector<CanvasMark> ChangedMarks(std::span<const CanvasMark> before, std::span<const CanvasMark> after) {
    std::vector<CanvasMark> changed;
    while (!before.empty() || !after.empty()) {
        const MarkKind kind = std::min(before.empty() ? MarkKind::ReferenceTextB : before.front().Kind,
                                       after.empty() ? MarkKind::ReferenceTextB : after.front().Kind);
        const auto takeKind = [kind](std::span<const CanvasMark>& marks) {
            const auto end =
                std::ranges::find_if(marks, [kind](const auto& mark) { return mark.Kind != kind; });
            const auto taken = marks.first(static_cast<std::size_t>(end - marks.begin()));
            marks = marks.subspan(taken.size());
            return taken;
        };
        const auto was = takeKind(before);
        const auto is = takeKind(after);
        const auto [wasFrom, isFrom] = std::ranges::mismatch(was, is);
        auto wasEnd = was.end();
        auto isEnd = is.end();
        while (wasEnd != wasFrom && isEnd != isFrom && *std::prev(wasEnd) == *std::prev(isEnd)) {
            --wasEnd;
            --isEnd;
        }
        changed.insert(changed.end(), wasFrom, wasEnd);
        changed.insert(changed.end(), isFrom, isEnd);
    }
    return changed;
}
