// What there is to paint of annotations: marks, each of which can be painted knowing nothing of the others.
// Equal marks make equal pixels, so what has changed on the canvas can be told from two lists.
//
// What comes later covers what came before: reference lines, circles, arrows, calibration, measuring, texts,
// and the texts of the reference lines. Of calibration and of measuring all dots lie under all lines.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "defects/shapes.h"

class CAnnotations;

// In the order of painting.
enum class MarkKind : std::uint8_t {
    ReferenceLineA,
    ReferenceLineB,
    Circle,
    Arrow,
    CalibrationDot,
    CalibrationLine,  // with its label
    MeasuringDot,
    MeasuringLine,  // with its label
    Text,           // a dotted box if it is empty
    ReferenceTextA,
    ReferenceTextB,
};

struct CanvasMark {
    MarkKind Kind = MarkKind::Circle;
    CanvasPoint From;
    CanvasPoint To;            // of a dot: the same
    std::uint32_t Colour = 0;  // 0x00BBGGRR, where the operator chooses it
    std::string Text;
    friend bool operator==(const CanvasMark&, const CanvasMark&) = default;
};

// A shape that is being drawn has its place among those of its kind. The lists are split where the tool would
// put the next one, so that `Below` and `Above` stand while the mouse draws.
struct CanvasMarks {
    std::vector<CanvasMark>
        Below;  // all that stand, if the tool's kind lies over all others or isn't dragged
    std::vector<CanvasMark> InHand;
    std::vector<CanvasMark> Above;
    std::vector<CanvasMark> Top;  // texts of the reference lines
};
CanvasMarks MarksOf(const CAnnotations& annotations);

// Those that only one of two lists has, each list in the order of painting. Knows of each kind one place
// where marks have come, gone or become others; what lies between two such places counts as changed.
std::vector<CanvasMark> ChangedMarks(std::span<const CanvasMark> before, std::span<const CanvasMark> after);
