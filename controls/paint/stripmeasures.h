// Measures of the pipe strip, in pixels.
#pragma once

inline constexpr int StripMargin = 96;  // for the names of the wells, on both sides
inline constexpr int StripFlagWidth = 26;
inline constexpr int StripFlagHeight = 18;
inline constexpr int StripFlagTop = 2;
inline constexpr int StripPipeTop = 27;
inline constexpr int StripPipeHeight = 12;
inline constexpr int StripWellWidth = 8;
