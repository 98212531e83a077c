#include "controls/playtime.h"

#include <cmath>
#include <cstdint>

#include "shell/numbers.h"

namespace {

constexpr double Longest = 1e9;

std::string Padded(std::int64_t number, std::size_t digits) {
    const std::string text = FormatInt(number);
    return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

}  // namespace

std::string FormatPlayTime(double seconds) {
    const std::int64_t all = seconds > 0 && seconds < Longest ? std::llround(seconds * 1000) : 0;
    const std::int64_t minutes = all / 60000;
    const std::string tail =
        Padded(minutes % 60, 2) + ":" + Padded(all / 1000 % 60, 2) + "." + Padded(all % 1000, 3);
    return minutes >= 60 ? FormatInt(minutes / 60) + ":" + tail : tail;
}
