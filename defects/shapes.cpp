#include "defects/shapes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shell/numbers.h"

namespace {

constexpr double BarbAngle = 3.1415926 * 45.0 / 180.0;
constexpr double BarbLength = 10.0;
constexpr double CalibrationLength = 50.0;  // millimetres
constexpr double ReferenceLength = 0.05;    // metres
constexpr int LabelWidth = 120;
constexpr int LabelHeight = 30;

double Length(double x, double y) {
    return std::sqrt(x * x + y * y);
}

ArrowShape::Barb MakeBarb(CanvasPoint tail, CanvasPoint tip, double angle) {
    const double dx = static_cast<double>(tail.X) - tip.X;
    const double dy = static_cast<double>(tail.Y) - tip.Y;
    const double x = std::cos(angle) * dx - std::sin(angle) * dy;
    const double y = std::sin(angle) * dx + std::cos(angle) * dy;
    const double length = Length(x, y);
    return {x * BarbLength / length + tip.X, y * BarbLength / length + tip.Y};
}

}  // namespace

ArrowShape MakeArrow(CanvasPoint tail, CanvasPoint tip) {
    return {tail, tip, {MakeBarb(tail, tip, BarbAngle), MakeBarb(tail, tip, -BarbAngle)}};
}

std::optional<CanvasPoint> BarbEnd(const ArrowShape::Barb& barb) {
    constexpr double most = std::numeric_limits<int>::max();
    if (!(std::abs(barb.X) < most && std::abs(barb.Y) < most)) {
        return std::nullopt;
    }
    return CanvasPoint{static_cast<int>(barb.X), static_cast<int>(barb.Y)};
}

double Distance(CanvasPoint a, CanvasPoint b) {
    return Length(static_cast<double>(a.X) - b.X, static_cast<double>(a.Y) - b.Y);
}

double Diagonal(const CanvasRect& rect) {
    return Distance({rect.Left, rect.Top}, {rect.Right, rect.Bottom});
}

CanvasRect Normalised(const CanvasRect& rect) {
    const auto [left, right] = std::minmax(rect.Left, rect.Right);
    const auto [top, bottom] = std::minmax(rect.Top, rect.Bottom);
    return {left, top, right, bottom};
}

CanvasRect Inflated(const CanvasRect& rect, int by) {
    return {rect.Left - by, rect.Top - by, rect.Right + by, rect.Bottom + by};
}

float ScaleBetween(CanvasPoint a, CanvasPoint b) {
    const double length = Distance(a, b);
    return length > 0 ? static_cast<float>(CalibrationLength / length)
                      : std::numeric_limits<float>::infinity();
}

std::string ScaleText(float mmPerPixel) {
    return FormatFixed(mmPerPixel, 2) + "mm/px";
}

std::string LengthText(float mmPerPixel, double pixels) {
    return FormatFixed(mmPerPixel * pixels, 2) + "mm";
}

CanvasRect LabelRect(CanvasPoint a, CanvasPoint b, int canvasWidth, int canvasHeight) {
    const CanvasPoint corner = a.Y > b.Y ? a : b;
    const int left = corner.X + LabelWidth > canvasWidth ? corner.X - LabelWidth : corner.X;
    const int top = corner.Y + LabelHeight > canvasHeight ? corner.Y - LabelHeight : corner.Y;
    return {left, top, left + LabelWidth, top + LabelHeight};
}

ReferenceTexts ReferenceTextsOf(const CanvasRect& a, const CanvasRect& b) {
    const double first = Diagonal(a);
    const double second = Diagonal(b);
    ReferenceTexts texts;
    if (first > 0) {
        texts.A = FormatFixed(ReferenceLength, 2) + " m";
    }
    if (second > 0) {
        const double metres =
            first > 0 ? ReferenceLength * second / first : std::numeric_limits<double>::infinity();
        texts.B = FormatFixed(metres, 2) + " m";
    }
    return texts;
}
