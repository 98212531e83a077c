// From the stored bytes of single values to what they mean. All throw CDamage for bytes that mean nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// A number as it lies in the file, little-endian as this machine is. The caller has checked the size.
template <class Number>
Number Stored(std::string_view bytes, std::size_t at = 0) {
    Number number{};
    bytes.copy(reinterpret_cast<char*>(&number), sizeof number, at);
    return number;
}

// Half a surrogate pair alone becomes U+FFFD.
std::string Utf8FromUtf16(std::string_view littleEndian);
// Plain or compressed, as the columns of text hold it.
std::string TextFromStored(std::string_view bytes);
// "2018-05-09 14:02:27", with ".500" only if there are parts of a second; the year has four digits or more.
// Days since 1899-12-30; the time is the fraction without its sign. Nothing (false) for what is no date.
bool DateFromDays(double days, std::string& text);
// Ten-thousandths: "10.1000".
std::string TextFromCurrency(std::int64_t value);
// 17 bytes; `scale` digits behind the point.
std::string TextFromDecimal(std::string_view bytes, int scale);
// "{6BA7B810-9DAD-11D1-80B4-00C04FD430C8}", of 16 bytes.
std::string TextFromGuid(std::string_view bytes);
