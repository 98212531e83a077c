#include "geo/position/CGpsCalc.h"

#include <cmath>

#include "geo/position/GeoPoint.h"

namespace {

struct Offset {
    float East;
    float North;
};

// `x` and `y` are metres from start to end. The cut to 32 bits belongs to the figures.
Offset OffsetAt(float distance, double x, double y) {
    if (x == 0) {
        return {0.0F, distance * (y >= 0 ? 1.0F : -1.0F)};
    }
    if (y == 0) {
        return {distance * (x >= 0 ? 1.0F : -1.0F), 0.0F};
    }
    const double angle = std::fabs(std::atan(y / x));
    const double d = distance;
    return {static_cast<float>(d * std::cos(angle) * (x >= 0 ? 1 : -1)),
            static_cast<float>(d * std::sin(angle) * (y >= 0 ? 1 : -1))};
}

}  // namespace

CGpsCalc::CGpsCalc(double startX, double startY, double endX, double endY)
    : GpsXStart(startX), GpsYStart(startY), GpsXEnd(endX), GpsYEnd(endY) {}

void CGpsCalc::CalcRecords(CRecDataArray& records) const {
    const bool same = GpsXStart == GpsXEnd && GpsYStart == GpsYEnd;
    const bool noStart = GpsXStart == 0 && GpsYStart == 0;
    const bool noEnd = GpsXEnd == 0 && GpsYEnd == 0;
    const bool onePoint = same || noStart || noEnd;
    const GeoPoint start(GpsXStart, GpsYStart);
    const GeoPoint end(GpsXEnd, GpsYEnd);
    for (_REC_DATA& record : records) {
        if (onePoint) {
            record.GpsX = GpsXStart;
            record.GpsY = GpsYStart;
            continue;
        }
        const Offset offset = OffsetAt(record.DistanceStart, start.EastTo(end), start.NorthTo(end));
        const double longitude = start.RadLon + static_cast<double>(offset.East) / start.Ed;
        const double latitude = start.RadLat + static_cast<double>(offset.North) / start.Ec;
        record.GpsX = longitude * 180 / GeoPoint::Pi * (GpsXStart < 0 ? -1 : 1);
        record.GpsY = latitude * 180 / GeoPoint::Pi * (GpsYStart < 0 ? -1 : 1);
    }
}
