#include "defects/clockface.h"

#include <cmath>

namespace {

// Degrees clockwise from the right, as seen on the screen.
float AngleOf(float dx, float dy) {
    if (dx == 0.0F) {
        return dy > 0.0F ? 90.0F : 270.0F;
    }
    if (dy == 0.0F) {
        return dx > 0.0F ? 0.0F : 180.0F;
    }
    const float angle = std::atan(std::fabs(dy / dx)) * 180.0F / 3.1415927F;
    if (dx > 0.0F) {
        return dy > 0.0F ? angle : 360.0F - angle;
    }
    return dy > 0.0F ? 180.0F - angle : angle + 180.0F;
}

}  // namespace

std::optional<int> HourOfPoint(int x, int y, int dialWidth, int dialHeight) {
    const float dx = static_cast<float>(x) - static_cast<float>(dialWidth) / 2.0F;
    const float dy = static_cast<float>(y) - static_cast<float>(dialHeight) / 2.0F;
    if (dx == 0.0F && dy == 0.0F) {
        return std::nullopt;
    }
    float fromTop = AngleOf(dx, dy) + 90.0F;
    if (fromTop >= 360.0F) {
        fromTop -= 360.0F;
    }
    // Cut toward zero, so that the first 45 degrees are one hour.
    return ValidHour(static_cast<int>((fromTop - 15.0F) / 30.0F) + 1);
}

int ValidHour(int hour) {
    return hour >= 1 && hour <= 12 ? hour : 12;
}

int HoursInRange(int start, int end) {
    return (end < start ? end + 12 : end) - start + 1;
}
