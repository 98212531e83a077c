// How the ten digits look in usual kinds of letters: what a counter's digits are compared with, until those
// of the video itself are learned.
#pragma once

#include <array>
#include <string_view>

#include "workbench/distance/glyphs.h"

inline constexpr int DigitFormKinds = 11;
// For each digit, in each kind, the share of ink in the cells of a shape, row by row, as hexadecimal digits.
extern const std::array<std::array<std::string_view, DigitFormKinds>, 10> DigitForms;

// Likewise the letters F, T, f and t, for "FT", "Ft" and "ft".
inline constexpr int UnitFormKinds = 10;
extern const std::array<std::array<std::string_view, UnitFormKinds>, 4> FeetForms;

// 1: `form` looks just like one of the kinds.
float UsualLikeness(const Shape& form, int digit);
float FeetLikeness(const Shape& first, const Shape& second);  // the lesser of both letters
