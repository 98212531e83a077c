#include "geo/position/GeoPoint.h"

#include <cmath>

GeoPoint::GeoPoint(double longitude, double latitude)
    : Ec(PolarRadius + (90 - std::fabs(latitude)) * RadiusDifference / 90),
      Ed(0),
      RadLon(std::fabs(longitude) * Pi / 180),
      RadLat(std::fabs(latitude) * Pi / 180) {
    Ed = Ec * std::cos(RadLat);
}

double GeoPoint::EastTo(const GeoPoint& other) const {
    return (other.RadLon - RadLon) * Ed;
}

double GeoPoint::NorthTo(const GeoPoint& other) const {
    return (other.RadLat - RadLat) * Ec;
}

double GeoDistance(const GeoPoint& from, const GeoPoint& to) {
    const double east = from.EastTo(to);
    const double north = from.NorthTo(to);
    return std::sqrt(east * east + north * north);
}
