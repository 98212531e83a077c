#include "fieldimport/CNumberStyles.h"

#include <algorithm>
#include <array>
#include <utility>

#include "fieldimport/CSheetError.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr std::size_t MostStyles = 1000000;

// Of the formats that every workbook has by number: dates and times, also those of East Asian settings, and
// money.
constexpr std::array<std::pair<int, int>, 7> DatesAndMoney = {
    {{5, 8}, {14, 22}, {27, 36}, {42, 42}, {44, 47}, {50, 58}, {71, 81}}};

constexpr std::string_view General = "General";

constexpr std::array<std::string_view, 6> Money = {"¥", "￥", "$", "€", "£", "₩"};

// The code of a country or currency in brackets: "[$¥-804]" is money, "[$-804]" only tells how to write,
// "[h]" are hours that don't end with the day, "[红色]" is a colour.
bool TellsInBrackets(std::string_view inside) {
    if (inside.starts_with('$')) {
        return inside.size() > 1 && inside[1] != '-';
    }
    const std::string small = LowerCase(inside);
    return !small.empty() && small.find_first_not_of(small.front()) == small.npos &&
           (small.front() == 'h' || small.front() == 'm' || small.front() == 's');
}

// Day, month, year, hour, second, weekday, era; but "E+" is a power of ten.
bool IsDateLetter(std::string_view rest) {
    if (rest.starts_with("E+") || rest.starts_with("E-") || rest.starts_with("e+") ||
        rest.starts_with("e-")) {
        return false;
    }
    return std::string_view("dDmMyYhHsSaAeEgGbB").find(rest.front()) != std::string_view::npos;
}

}  // namespace

bool ShowsDateOrMoney(std::string_view code) {
    for (std::size_t at = 0; at < code.size(); ++at) {
        const char c = code[at];
        const std::string_view rest = code.substr(at);
        if (std::any_of(Money.begin(), Money.end(),
                        [rest](std::string_view sign) { return rest.starts_with(sign); })) {
            return true;
        }
        if (c == '\\' || c == '_' || c == '*') {
            // The character that follows is shown, or its room, and means nothing.
            if (at + 1 < code.size() && Utf8CharLength(code.substr(at + 1)) == 1 && code[at + 1] != '$') {
                ++at;
            }
        } else if (c == '"') {
            const std::size_t end = code.find('"', at + 1);
            const std::string_view quoted = code.substr(at + 1, end == code.npos ? code.npos : end - at - 1);
            if (std::any_of(Money.begin(), Money.end(),
                            [quoted](std::string_view sign) { return quoted.find(sign) != quoted.npos; })) {
                return true;
            }
            at = end == code.npos ? code.size() : end;
        } else if (c == '[') {
            const std::size_t end = code.find(']', at);
            if (end == code.npos) {
                return false;
            }
            if (TellsInBrackets(code.substr(at + 1, end - at - 1))) {
                return true;
            }
            at = end;
        } else if (EqualNoCase(rest.substr(0, General.size()), General)) {
            at += General.size() - 1;
        } else if (IsDateLetter(rest)) {
            return true;
        }
    }
    return false;
}

void CNumberStyles::Begin(std::string_view name, const char** attributes) {
    if (name == "numFmt") {
        m_formats[ParseInt(AttributeOf(attributes, "numFmtId"))] = AttributeOf(attributes, "formatCode");
    } else if (name == "cellXfs") {
        m_inCells = true;
    } else if (name == "xf" && m_inCells) {
        m_styles.push_back(ParseInt(AttributeOf(attributes, "numFmtId")));
        if (m_styles.size() > MostStyles) {
            throw CSheetError(SheetFault::TooLarge);
        }
    }
}

void CNumberStyles::End(std::string_view name) {
    if (name == "cellXfs") {
        m_inCells = false;
    }
}

bool CNumberStyles::IsPlain(std::string_view style) const {
    const auto index = static_cast<std::size_t>(ParseWholeInt(style).value_or(0));
    if (index >= m_styles.size()) {
        return true;
    }
    const int number = m_styles[index];
    if (const auto own = m_formats.find(number); own != m_formats.end()) {
        return !ShowsDateOrMoney(own->second);
    }
    return std::none_of(DatesAndMoney.begin(), DatesAndMoney.end(), [number](const auto& range) {
        return number >= range.first && number <= range.second;
    });
}
