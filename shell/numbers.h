// Numbers as text and text as numbers. No other place of the program prints or reads a number that
// reaches a statement, a file or a control, so that all agree to the last digit.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Half away from zero. `value` times 10 to the power of `digits` must fit 63 bits (12 decimals leave
// room for about 9 million); what doesn't, and what isn't finite, comes back as it is.
double RoundTo(double value, int digits);

std::string FormatInt(std::int64_t n);
// Always one decimal: 12 gives "12.0".
std::string FormatOneDecimal(double value);
// At most `digits` decimals without trailing zeros; "-0" is "0". Below 0 digits: plain "%f".
std::string FormatNumber(double value, int digits);
// Always that many decimals, of the value as it is: 12.25 gives "12.2" at one. "inf" and "nan" if it isn't
// finite.
std::string FormatFixed(double value, int digits);

// The shortest text that reads back as the same bits; "NaN", "Infinity", "-Infinity".
std::string FormatExact(double value);
std::string FormatExact(float value);

// As `atof` and `atoi` read: leading white space, then as many characters as make a decimal number;
// what isn't a number counts 0. Hexadecimal, "inf" and "nan" aren't numbers here.
double ParseDouble(std::string_view text);
int ParseInt(std::string_view text);  // values beyond the type stop at its ends

// The whole text, outer blanks apart, must be the number.
std::optional<double> ParseWholeDouble(std::string_view text);
std::optional<std::int64_t> ParseWholeInt(std::string_view text);
