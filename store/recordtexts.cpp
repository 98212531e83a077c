#include "store/recordtexts.h"

#include <cstdint>

#include "shell/numbers.h"
#include "store/CDbRec.h"

namespace {

std::string TwoDigits(std::uint32_t n) {
    return (n < 10 ? "0" : "") + FormatInt(n);
}

}  // namespace

std::string DefectName(const CDbRec& database, std::string_view code) {
    const int index = database.FindDefectIndex(code);
    std::string name;
    if (index >= 0) {
        name = database.DefectNames[static_cast<std::size_t>(index)];
    }
    return name.empty() ? std::string(code) : name;
}

std::string PictureTimeText(double seconds) {
    // What no 32-bit number holds becomes the least one, as the machines do for which the format was made.
    const bool fits = seconds > -2147483649.0 && seconds < 2147483648.0;
    const auto whole = static_cast<std::uint32_t>(fits ? static_cast<std::int32_t>(seconds) : INT32_MIN);
    return TwoDigits(whole / 60) + ":" + TwoDigits(whole % 60);
}
