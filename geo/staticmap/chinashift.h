// The coordinate systems of Chinese map services. GCJ-02 shifts positions within the country by some hundred
// metres, BD-09 shifts these once more. Formulas as they are in public use; good to a metre or two.
#pragma once

#include <string_view>
#include <utility>

// Longitude and latitude of WGS-84 in "GCJ-02" or "BD-09"; as they are for any other system, and outside the
// country.
std::pair<double, double> ShiftedPosition(double x, double y, std::string_view system);
