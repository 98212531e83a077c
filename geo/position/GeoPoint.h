// A position on the earth model of the program: a sphere whose radius grows linearly from the pole to the
// equator. Positions elsewhere in the system were computed with these constants, the short pi included;
// more exact ones would move defects against old reports.
#pragma once

class GeoPoint {
public:
    static constexpr double Pi = 3.1415926;
    static constexpr double PolarRadius = 6356725;     // metres
    static constexpr double RadiusDifference = 21412;  // to the equator, metres

    // Degrees. Works on magnitudes: whoever needs the sign of west and south puts it back.
    GeoPoint(double longitude, double latitude);

    double Ec;      // radius at the latitude, metres
    double Ed;      // radius of the circle of latitude, metres
    double RadLon;  // absolute longitude, radians
    double RadLat;  // absolute latitude, radians

    // Metres from here to `other`, on the plane that touches the earth here; signed.
    double EastTo(const GeoPoint& other) const;
    double NorthTo(const GeoPoint& other) const;
};

// Metres, by the radii of `from`.
double GeoDistance(const GeoPoint& from, const GeoPoint& to);
