#include "store/jet/reader/jetvalues.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "store/jet/reader/CDamage.h"

namespace {

constexpr std::string_view CompressedMark = "\xFF\xFE";
constexpr char32_t Replacement = 0xFFFD;

void AppendUtf8(std::string& text, char32_t c) {
    const auto add = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | c >> 6);
        add(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        add(0xE0 | c >> 12);
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    } else {
        add(0xF0 | c >> 18);
        add(0x80 | (c >> 12 & 0x3F));
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    }
}

// One byte a character; a zero byte begins a run of two bytes a character, the next one ends it.
std::string Utf16FromCompressed(std::string_view bytes) {
    std::string wide;
    wide.reserve(bytes.size() * 2);
    bool narrow = true;
    while (!bytes.empty()) {
        if (bytes.front() == '\0') {
            narrow = !narrow;
            bytes.remove_prefix(1);
        } else if (narrow) {
            wide += bytes.front();
            wide += '\0';
            bytes.remove_prefix(1);
        } else {
            Require(bytes.size() >= 2, "half a character");
            wide.append(bytes.substr(0, 2));
            bytes.remove_prefix(2);
        }
    }
    return wide;
}

// `digits` gets a point before its last `scale` digits.
std::string WithPoint(std::string digits, int scale, bool negative) {
    const auto places = static_cast<std::size_t>(scale);
    if (digits.size() <= places) {
        digits.insert(0, places + 1 - digits.size(), '0');
    }
    if (places > 0) {
        digits.insert(digits.size() - places, ".");
    }
    return negative ? "-" + digits : digits;
}

}  // namespace

std::string Utf8FromUtf16(std::string_view littleEndian) {
    Require(littleEndian.size() % 2 == 0, "half a character");
    std::string text;
    text.reserve(littleEndian.size());
    for (std::size_t at = 0; at < littleEndian.size(); at += 2) {
        char32_t c = Stored<std::uint16_t>(littleEndian, at);
        if (c >= 0xD800 && c < 0xE000) {
            const char32_t low =
                at + 4 <= littleEndian.size() ? Stored<std::uint16_t>(littleEndian, at + 2) : char32_t{0};
            if (c < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                at += 2;
            } else {
                c = Replacement;
            }
        }
        AppendUtf8(text, c);
    }
    return text;
}

std::string TextFromStored(std::string_view bytes) {
    return Utf8FromUtf16(bytes.starts_with(CompressedMark)
                             ? Utf16FromCompressed(bytes.substr(CompressedMark.size()))
                             : std::string(bytes));
}

bool DateFromDays(double days, std::string& text) {
    using namespace std::chrono;
    constexpr double mostDays = 10'000'000;  // what the calendar of the library can do, with room
    if (!(std::fabs(days) < mostDays)) {
        return false;
    }
    const double whole = std::trunc(days);
    const milliseconds time(std::llround(std::fabs(days - whole) * 86'400'000.0));
    const local_time<milliseconds> moment =
        local_days{year{1899} / 12 / 30} + std::chrono::days(static_cast<int>(whole)) + time;
    const auto midnight = floor<std::chrono::days>(moment);
    const year_month_day day{midnight};
    const hh_mm_ss<milliseconds> clock{moment - midnight};
    const int parts = static_cast<int>(clock.subseconds().count());
    if (static_cast<int>(day.year()) < 0) {
        return false;
    }
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    text = buffer.data();
    if (parts != 0) {
        std::snprintf(buffer.data(), buffer.size(), ".%03d", parts);
        text += buffer.data();
    }
    return true;
}

std::string TextFromCurrency(std::int64_t value) {
    const bool negative = value < 0;
    const auto bits = static_cast<std::uint64_t>(value);
    return WithPoint(std::to_string(negative ? ~bits + 1 : bits), 4, negative);
}

std::string TextFromDecimal(std::string_view bytes, int scale) {
    // A sign byte, then four words of 32 bits, the high one first; 28 digits are the most.
    constexpr int highestScale = 28;
    Require(scale >= 0 && scale <= highestScale, "impossible number of decimals");
    std::array<std::uint64_t, 4> words{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = Stored<std::uint32_t>(bytes, 1 + i * 4);
    }
    std::string digits;
    while (std::any_of(words.begin(), words.end(), [](std::uint64_t word) { return word != 0; })) {
        std::uint64_t rest = 0;
        for (std::uint64_t& word : words) {
            const std::uint64_t value = rest << 32 | word;
            word = value / 10;
            rest = value % 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + rest));
    }
    return WithPoint(digits, scale, bytes.front() != '\0');
}

std::string TextFromGuid(std::string_view bytes) {
    std::array<char, 64> buffer{};
    const auto byte = [&](std::size_t i) { return unsigned{static_cast<unsigned char>(bytes[i])}; };
    std::snprintf(buffer.data(), buffer.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  Stored<std::uint32_t>(bytes), unsigned{Stored<std::uint16_t>(bytes, 4)},
                  unsigned{Stored<std::uint16_t>(bytes, 6)}, byte(8), byte(9), byte(10), byte(11), byte(12),
                  byte(13), byte(14), byte(15));
    return buffer.data();
}
