#include "geo/staticmap/chinashift.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double Pi = std::numbers::pi;
constexpr double Axis = 6378245.0;                       // metres, of the ellipsoid of Krasovsky
constexpr double Eccentricity = 0.00669342162296594323;  // squared

double Waves(double at, double a, double b, double c) {
    return (a * std::sin(at * Pi) + b * std::sin(at / 3.0 * Pi) + c * std::sin(at / 12.0 * Pi)) * 2.0 / 3.0;
}

// In metres, from 105 degrees east and 35 degrees north.
double ShiftNorth(double x, double y) {
    return -100.0 + 2.0 * x + 3.0 * y + 0.2 * y * y + 0.1 * x * y + 0.2 * std::sqrt(std::fabs(x)) +
           (20.0 * std::sin(6.0 * x * Pi) + 20.0 * std::sin(2.0 * x * Pi)) * 2.0 / 3.0 +
           (20.0 * std::sin(y * Pi) + 40.0 * std::sin(y / 3.0 * Pi)) * 2.0 / 3.0 +
           (160.0 * std::sin(y / 12.0 * Pi) + 320.0 * std::sin(y * Pi / 30.0)) * 2.0 / 3.0;
}

double ShiftEast(double x, double y) {
    return 300.0 + x + 2.0 * y + 0.1 * x * x + 0.1 * x * y + 0.1 * std::sqrt(std::fabs(x)) +
           (20.0 * std::sin(6.0 * x * Pi) + 20.0 * std::sin(2.0 * x * Pi)) * 2.0 / 3.0 +
           Waves(x, 20.0, 40.0, 150.0) + 300.0 * std::sin(x / 30.0 * Pi) * 2.0 / 3.0;
}

bool IsInCountry(double x, double y) {
    return x >= 72.004 && x <= 137.8347 && y >= 0.8293 && y <= 55.8271;
}

}  // namespace

std::pair<double, double> ShiftedPosition(double x, double y, std::string_view system) {
    if ((system != "GCJ-02" && system != "BD-09") || !IsInCountry(x, y)) {
        return {x, y};
    }
    const double sine = std::sin(y / 180.0 * Pi);
    const double magic = 1 - Eccentricity * sine * sine;
    const double root = std::sqrt(magic);
    const double north =
        ShiftNorth(x - 105.0, y - 35.0) * 180.0 / ((Axis * (1 - Eccentricity)) / (magic * root) * Pi);
    const double east =
        ShiftEast(x - 105.0, y - 35.0) * 180.0 / (Axis / root * std::cos(y / 180.0 * Pi) * Pi);
    const double gx = x + east;
    const double gy = y + north;
    if (system == "GCJ-02") {
        return {gx, gy};
    }
    const double turn = Pi * 3000.0 / 180.0;
    const double distance = std::sqrt(gx * gx + gy * gy) + 0.00002 * std::sin(gy * turn);
    const double angle = std::atan2(gy, gx) + 0.000003 * std::cos(gx * turn);
    return {distance * std::cos(angle) + 0.0065, distance * std::sin(angle) + 0.006};
}
