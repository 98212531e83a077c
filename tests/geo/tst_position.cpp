#include <gtest/gtest.h>

#include "geo/position/CGpsCalc.h"
#include "geo/position/GeoPoint.h"

namespace {

_REC_DATA Place(double startX, double startY, double endX, double endY, float distance) {
    CRecDataArray records;
    records.Add(_REC_DATA());
    records[0].DistanceStart = distance;
    records[0].DistanceEnd = 99.0F;
    CGpsCalc(startX, startY, endX, endY).CalcRecords(records);
    return records[0];
}

TEST(Position, LiesOnTheLineBetweenTheManholes) {
    struct Case {
        double StartX, StartY, EndX, EndY;
        float Distance;
        double X, Y;
    };
    // Computed apart from this program. Without the cut of the offsets to 32 bits the second is
    // 113.2563131407892, 23.134154287006734.
    constexpr Case cases[] = {
        {113.2644, 23.1291, 113.2652, 23.1296, 12.345F, 113.26449982229786, 23.129162388936095},
        {113.2644, 23.1291, 113.2636, 23.1296, 1000.1F, 113.25631314108652, 23.134154286811835},
        // Along a parallel, along a meridian, and back.
        {121.0, 31.0, 121.001, 31.0, 50.0F, 121.00052460893401, 31.0},
        {121.001, 31.0, 121.0, 31.0, 50.0F, 121.00047539106598, 31.0},
        {121.0, 31.0, 121.0, 31.001, 7.7F, 121.0, 31.000069250352748},
        {121.0, 31.001, 121.0, 31.0, 7.7F, 121.0, 31.000930749644667},
        // West and south; from one hemisphere to the other, where magnitudes mislead.
        {-43.2, -22.9, -43.201, -22.902, 33.3F, -43.20013596801788, -22.900271936031622},
        {-43.2, 22.9, -43.199, 22.902, 33.3F, -43.19986403198212, 22.900271936031622},
        {121.0, 31.0, -121.001, 31.001, 10.0F, 121.00006828331793, 31.000068283317884},
        // No latitude of this earth.
        {10.0, 95.0, 10.001, 95.001, 25.0F, 10.000224526313035, 95.00022452632274},
    };
    for (const Case& c : cases) {
        const _REC_DATA record = Place(c.StartX, c.StartY, c.EndX, c.EndY, c.Distance);
        EXPECT_DOUBLE_EQ(record.GpsX, c.X) << c.StartX << " " << c.Distance;
        EXPECT_DOUBLE_EQ(record.GpsY, c.Y) << c.StartY << " " << c.Distance;
    }
}

TEST(Position, OfSectionsWithOneKnownManholeIsTheirStart) {
    const double ends[][4] = {{121, 31, 121, 31}, {0, 0, 121, 31}, {121, 31, 0, 0}, {-5, -6, -5, -6}};
    for (const auto& e : ends) {
        const _REC_DATA record = Place(e[0], e[1], e[2], e[3], 40.0F);
        EXPECT_EQ(record.GpsX, e[0]);
        EXPECT_EQ(record.GpsY, e[1]);
    }
    // One zero isn't an unknown manhole.
    EXPECT_NE(Place(0, 31, 0.001, 31, 40.0F).GpsX, 0.0);
    EXPECT_NE(Place(121, 31, 121.001, 0, 40.0F).GpsX, 121.0);
}

}  // namespace
