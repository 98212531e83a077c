#include <gtest/gtest.h>

#include <cmath>

#include "defects/clockface.h"
#include "defects/timeruler.h"

namespace {

// The hour of a point that lies so many degrees clockwise from straight up, on a dial of 1000 pixels.
int HourAt(double degrees) {
    const double radians = degrees * 3.14159265358979 / 180.0;
    return HourOfPoint(500 + static_cast<int>(std::lround(450 * std::sin(radians))),
                       500 - static_cast<int>(std::lround(450 * std::cos(radians))), 1000, 1000)
        .value_or(0);
}

}  // namespace

TEST(ClockFace, SectorsAreUneven) {
    EXPECT_EQ(HourAt(0), 1);
    EXPECT_EQ(HourAt(10), 1);
    EXPECT_EQ(HourAt(44), 1);
    for (int hour = 2; hour <= 11; ++hour) {
        EXPECT_EQ(HourAt(hour * 30 - 14), hour);
        EXPECT_EQ(HourAt(hour * 30 + 14), hour);
    }
    EXPECT_EQ(HourAt(346), 12);
    EXPECT_EQ(HourAt(359), 12);
    EXPECT_FALSE(HourOfPoint(80, 80, 160, 160));
    EXPECT_TRUE(HourOfPoint(80, 80, 161, 161)) << "the middle of an odd dial lies between pixels";
}
