// Which shapes of a counter are which digits, learned from the video itself.
#pragma once

#include <optional>
#include <vector>

#include "workbench/distance/glyphs.h"

struct SeenNumber {
    double Time = 0.0;
    std::optional<NumberGlyphs> Number;
};

struct NamedShape {
    Shape Form{};
    int Digit = 0;
};

struct DigitNames {
    std::vector<NamedShape> Shapes;
    int Decimals = 0;
};

// Nothing unless one naming fits far better than every other: in its order, in the carry from the tenths to
// the metres, and in the rings that digits have, which alone tell it from its mirror (9 - d counts as
// smoothly, backwards).
std::optional<DigitNames> NameDigits(const std::vector<SeenNumber>& seen);

// The value, and whether all its shapes are beyond doubt. Nothing if one is none of the digits.
struct ReadValue {
    double Value = 0.0;
    bool Clear = false;
};
std::optional<ReadValue> ReadNumber(const NumberGlyphs& number, const DigitNames& names);
