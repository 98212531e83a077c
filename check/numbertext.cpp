#include "check/numbertext.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <vector>

#include "shell/numbers.h"
#include "shell/textcodec.h"
#include "store/sectionform.h"

namespace {

constexpr std::size_t DateLength = 10;

bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

std::optional<double> PositiveNumber(std::string_view text) {
    const std::optional<double> number = ParseWholeDouble(text);
    return number && std::isfinite(*number) && *number > 0.0 ? number : std::nullopt;
}

std::string MetresText(float metres) {
    return FormatNumber(static_cast<double>(metres), 2);
}

bool HasDateForm(std::string_view text) {
    if (text.size() < DateLength) {
        return false;
    }
    for (std::size_t i = 0; i < DateLength; ++i) {
        const bool separator = i == 4 || i == 7;
        if (separator ? (text[i] != '/' && text[i] != '-') || text[i] != text[4] : !IsDigit(text[i])) {
            return false;
        }
    }
    return text.size() == DateLength || !IsDigit(text[DateLength]);
}

std::string CanonicalDate(std::string_view text) {
    std::vector<std::string_view> parts;  // runs of digits
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && IsDigit(text[end])) {
            ++end;
        }
        if (end > at) {
            parts.push_back(text.substr(at, end - at));
        }
        at = std::max(end, at + 1);
    }
    if (!parts.empty() && parts[0].size() == 8) {
        const std::string_view whole = parts[0];
        parts[0] = whole.substr(0, 4);
        parts.insert(parts.begin() + 1, {whole.substr(4, 2), whole.substr(6, 2)});
    }
    if (parts.size() < 3 || parts.size() > 6 || parts[0].size() != 4 ||
        std::any_of(parts.begin() + 1, parts.end(), [](std::string_view part) { return part.size() > 2; })) {
        return std::string(text);
    }
    std::string date(parts[0]);
    const char* const before[] = {"", "/", "/", " ", ":", ":"};
    for (std::size_t i = 1; i < 6; ++i) {
        const std::string_view part = i < parts.size() ? parts[i] : "0";
        date += before[i] + std::string(2 - part.size(), '0') + std::string(part);
    }
    return ParseTestingDate(date) ? date : std::string(text);
}
