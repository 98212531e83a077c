#include "reports/excel/celltexts.h"

#include <algorithm>

#include "reports/ooxml/xmltext.h"

namespace {

// Limits of the file format, in 16-bit units as it counts.
constexpr std::size_t LongestText = 32767;
constexpr std::size_t LongestLiteral = 255;
constexpr std::size_t LongestFormula = 8192;

std::size_t Units(unsigned char byte) {
    const bool continuation = (byte & 0xC0) == 0x80;
    return continuation ? 0 : (byte >= 0xF0 ? 2 : 1);
}

std::size_t Units(std::string_view utf8) {
    std::size_t units = 0;
    for (const char c : utf8) {
        units += Units(static_cast<unsigned char>(c));
    }
    return units;
}

// What a cell can hold of a text that isn't one, or is too long.
std::string Mended(std::string_view text) {
    std::string clean = MendXmlText(text);
    std::size_t units = 0;
    for (std::size_t at = 0; at < clean.size() && clean.size() > LongestText; ++at) {
        units += Units(static_cast<unsigned char>(clean[at]));
        if (units > LongestText) {
            clean.erase(at);
        }
    }
    return clean;
}

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// What stands for a character in a cell's text: "_x0001_".
bool IsEscape(std::string_view text) {
    constexpr std::size_t Length = 7;
    return text.size() >= Length && text.starts_with("_x") && text[Length - 1] == '_' &&
           std::all_of(text.begin() + 2, text.begin() + Length - 1, IsHexDigit);
}

}  // namespace

void AppendCellText(std::string& xml, std::string_view text) {
    std::string mended;
    if (text.size() > LongestText || !IsXmlText(text)) {
        mended = Mended(text);
        text = mended;
    }
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto c = static_cast<unsigned char>(text[at]);
        const bool control = c < 0x20 && c != '\t' && c != '\n';
        if (control || (c == '_' && IsEscape(text.substr(at)))) {
            constexpr const char* Digits = "0123456789ABCDEF";
            AppendXml(xml, text.substr(begin, at - begin));
            xml.append("_x00").append(1, Digits[c >> 4]).append(1, Digits[c & 0xF]).append("_");
            begin = at + 1;
        }
    }
    AppendXml(xml, text.substr(begin));
}

std::optional<std::string> LinkFormula(std::string_view path) {
    const bool control =
        std::any_of(path.begin(), path.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; });
    if (control || !IsXmlText(path)) {
        return std::nullopt;
    }
    std::string formula = "=HYPERLINK(\"";
    std::size_t units = 0;
    for (const char c : path) {
        const std::size_t more = c == '"' ? 2 : Units(static_cast<unsigned char>(c));
        if (units + more > LongestLiteral) {
            formula += "\"&\"";
            units = 0;
        }
        units += more;
        formula.append(c == '"' ? 2 : 1, c);
    }
    formula += "\")";
    return Units(formula) <= LongestFormula ? std::optional(formula) : std::nullopt;
}

int ShownDecimals(std::string_view text) {
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative ? 1 : 0);
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view decimals = point == std::string_view::npos ? "" : text.substr(point + 1);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const bool number = !whole.empty() && std::all_of(whole.begin(), whole.end(), isDigit) &&
                        std::all_of(decimals.begin(), decimals.end(), isDigit) &&
                        (point == std::string_view::npos || !decimals.empty());
    const bool leadingZero = whole.size() > 1 && whole.front() == '0';
    const bool negativeZero = negative && text.find_first_not_of("0.") == std::string_view::npos;
    if (!number || leadingZero || negativeZero || whole.size() + decimals.size() > SureDigits) {
        return -1;
    }
    return static_cast<int>(decimals.size());
}
