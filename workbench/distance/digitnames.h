// Which shapes of a counter are which digits, learned from the video itself.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "workbench/distance/glyphs.h"

struct SeenNumber {
    double Time = 0.0;
    std::optional<NumberGlyphs> Number;
};

// What someone has read off a frame.
struct KnownValue {
    double Time = 0.0;      // seconds
    double Distance = 0.0;  // as the picture shows it
    int Decimals = 0;       // as typed
};

struct DigitNames {
    std::array<std::optional<Shape>, 10> Forms;  // of the digits that were seen often enough
    int Decimals = 0;
    std::size_t Places = 0;      // from the right; what stands before is a label
    bool IsPointUnseen = false;  // someone has told where it stands
};

// Starts from how digits usually look, takes the most likely course, learns from it how they look here, and
// so on. Nothing unless what is read by the learned shapes alone moves as a camera does, and no other naming
// (its mirror 9 - d counts as smoothly, backwards) looks nearly as much like digits. Known values settle
// both.
std::optional<DigitNames> LearnDigits(const std::vector<SeenNumber>& seen,
                                      const std::vector<KnownValue>& known);

// The value, and whether all its shapes are beyond doubt. Nothing if one is none of the digits.
struct ReadValue {
    double Value = 0.0;
    bool Clear = false;
};
std::optional<ReadValue> ReadNumber(const NumberGlyphs& number, const DigitNames& names);
