#include "shell/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "shell/textcodec.h"

namespace {

std::string Print(double value, int digits) {
    char buffer[512];  // the longest 64-bit float has 309 digits before the point
    const int length = std::snprintf(buffer, sizeof buffer, "%.*f", digits, value);
    return std::string(buffer, static_cast<std::size_t>(length));
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view SkipSpace(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

// The longest beginning of the text that is a decimal number; empty if there is none.
std::string_view DecimalPrefix(std::string_view text) {
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        ++at;
    }
    std::size_t digits = 0;
    for (; at < text.size() && IsDigit(text[at]); ++at) {
        ++digits;
    }
    if (at < text.size() && text[at] == '.') {
        ++at;
        for (; at < text.size() && IsDigit(text[at]); ++at) {
            ++digits;
        }
    }
    if (digits == 0) {
        return {};
    }
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::size_t exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) {
            ++exponent;
        }
        if (exponent < text.size() && IsDigit(text[exponent])) {
            while (exponent < text.size() && IsDigit(text[exponent])) {
                ++exponent;
            }
            at = exponent;
        }
    }
    return text.substr(0, at);
}

double FromDecimal(std::string_view decimal) {
    if (decimal.starts_with('+')) {
        decimal.remove_prefix(1);
    }
    double value = 0.0;
    const auto result = std::from_chars(decimal.data(), decimal.data() + decimal.size(), value);
    // That doesn't tell which end of the range was passed; `strtod` does.
    return result.ec == std::errc::result_out_of_range ? std::strtod(std::string(decimal).c_str(), nullptr)
                                                       : value;
}

template <class Float>
std::string Exact(Float value) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-Infinity" : "Infinity";
    }
    std::array<char, 64> buffer{};
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

}  // namespace

double RoundTo(double value, int digits) {
    std::int64_t p = 1;
    for (int i = 0; i < digits; ++i) {
        p *= 10;
    }
    const double factor = static_cast<double>(p);
    const double scaled = value >= 0 ? value * factor + 0.5 : value * factor - 0.5;
    constexpr double limit = 9223372036854775808.0;
    if (!(scaled > -limit && scaled < limit)) {
        return value;
    }
    return static_cast<double>(static_cast<std::int64_t>(scaled)) / factor;
}

std::string FormatInt(std::int64_t n) {
    return std::to_string(n);
}

std::string FormatOneDecimal(double value) {
    return Print(RoundTo(value, 1), 1);
}

std::string FormatNumber(double value, int digits) {
    if (digits < 0) {
        return Print(value, 6);  // what "%f" means
    }
    std::string text = Print(RoundTo(value, digits), digits);
    if (digits > 0) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.ends_with('.')) {
            text.pop_back();
        }
        if (text == "-0") {
            text = "0";
        }
    }
    return text;
}

std::string FormatFixed(double value, int digits) {
    return std::isnan(value) ? "nan" : Print(value, digits);  // the sign of no number means nothing
}

std::string FormatExact(double value) {
    return Exact(value);
}

std::string FormatExact(float value) {
    return Exact(value);
}

double ParseDouble(std::string_view text) {
    const std::string_view decimal = DecimalPrefix(SkipSpace(text));
    return decimal.empty() ? 0.0 : FromDecimal(decimal);
}

int ParseInt(std::string_view text) {
    text = SkipSpace(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        value = std::min(value * 10 + (text.front() - '0'), most + 1);
    }
    return static_cast<int>(negative ? -value : std::min(value, most));
}

std::optional<double> ParseWholeDouble(std::string_view text) {
    text = TrimBlanks(text);
    const std::string_view decimal = DecimalPrefix(text);
    if (decimal.empty() || decimal.size() != text.size()) {
        return std::nullopt;
    }
    return FromDecimal(decimal);
}

std::optional<std::int64_t> ParseWholeInt(std::string_view text) {
    text = TrimBlanks(text);
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}
