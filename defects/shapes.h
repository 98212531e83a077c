// What is drawn on a picture, and the geometry of it.
//
// All coordinates and lengths are client pixels of the canvas: device-independent, whole, from its upper left
// corner. They may lie outside of it, since the mouse may be drawn beyond its border.
#pragma once

#include <array>
#include <optional>
#include <string>

struct CanvasPoint {
    int X = 0;
    int Y = 0;
    friend bool operator==(const CanvasPoint&, const CanvasPoint&) = default;
};

// From where the mouse was pressed (left, top) to where it is: right may lie left of left.
struct CanvasRect {
    int Left = 0;
    int Top = 0;
    int Right = 0;
    int Bottom = 0;
    friend bool operator==(const CanvasRect&, const CanvasRect&) = default;
};

struct ArrowShape {
    struct Barb {
        double X = 0.0;
        double Y = 0.0;
    };
    CanvasPoint Tail;
    CanvasPoint Tip;
    std::array<Barb, 2> Barbs;  // their ends; no numbers if tail and tip are one
};

struct TextBox {
    CanvasRect Rect;
    std::string Text;  // empty while the box is being dragged, or if nothing was entered
};

ArrowShape MakeArrow(CanvasPoint tail, CanvasPoint tip);
// Where a line to the barb ends, cut to whole pixels. Nothing if there is no such place.
std::optional<CanvasPoint> BarbEnd(const ArrowShape::Barb& barb);

double Distance(CanvasPoint a, CanvasPoint b);
double Diagonal(const CanvasRect& rect);
CanvasRect Normalised(const CanvasRect& rect);
CanvasRect Inflated(const CanvasRect& rect, int by);

// Millimetres per pixel if the two points lie 50 mm apart; infinite if they are one.
float ScaleBetween(CanvasPoint a, CanvasPoint b);
std::string ScaleText(float mmPerPixel);
std::string LengthText(float mmPerPixel, double pixels);
// 120 by 30 with a corner at the lower of the two points: the upper left one, unless the label would leave
// the canvas there.
CanvasRect LabelRect(CanvasPoint a, CanvasPoint b, int canvasWidth, int canvasHeight);

// What stands beside the reference lines; empty where there is no line. The first counts 0.05 m, the second
// is scaled by it.
struct ReferenceTexts {
    std::string A;
    std::string B;
};
ReferenceTexts ReferenceTextsOf(const CanvasRect& a, const CanvasRect& b);
