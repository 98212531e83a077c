// Figures and dates as they stand in a project's texts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// Distances are stored as 32-bit floats and typed with two decimals.
inline constexpr double DistanceTolerance = 0.005;  // metres

// The whole text must be the number, and it above 0.
std::optional<double> PositiveNumber(std::string_view text);
// At most two decimals, as distances are shown.
std::string MetresText(float metres);

// Whether the first ten characters, which a report shows, are a whole date.
bool HasDateForm(std::string_view text);
// The date, and time if there is one, as the program writes them ("2025/01/05 08:30:00") of a text that a
// person reads as one: with points, "年月日", without leading zeros, or eight digits. Any other text as it
// is.
std::string CanonicalDate(std::string_view text);
