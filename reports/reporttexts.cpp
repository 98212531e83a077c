#include "reports/reporttexts.h"

#include <cmath>
#include <limits>

#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

constexpr std::string_view NormalName = "(GDZC)";
constexpr std::size_t DateLength = 10;  // YYYY/MM/DD

std::string TwoPlaces(std::uint8_t number) {
    return (number < 10 ? "0" : "") + FormatInt(number);
}

}  // namespace

std::int32_t Truncated(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value)) {
        return 0;
    }
    if (value <= static_cast<double>(Limits::min())) {
        return Limits::min();
    }
    return value >= static_cast<double>(Limits::max()) ? Limits::max() : static_cast<std::int32_t>(value);
}

std::string PositionText(const _REC_DATA& record) {
    const std::int32_t start = Truncated(static_cast<double>(record.DistanceStart * 100.0F));
    const std::int32_t end = Truncated(static_cast<double>(record.DistanceEnd * 100.0F));
    std::string text = FormatNumber(static_cast<double>(record.DistanceStart), 2);
    if (start != end) {
        text += " - " + FormatNumber(static_cast<double>(record.DistanceEnd), 2);
    }
    return text;
}

std::string ClockText(const _REC_DATA& record) {
    return TwoPlaces(record.DirectionStart) + TwoPlaces(record.DirectionEnd);
}

std::string LengthText(const _REC_DATA& record) {
    return FormatFixed(static_cast<double>(record.DistanceEnd - record.DistanceStart), 1);
}

std::string DateText(std::string_view dateTime) {
    return GbkPrefix(dateTime, DateLength);
}

std::string DiameterText(const _TESTING_DATA& section) {
    return section.PipeDiameter.empty() ? "0" : section.PipeDiameter;
}

bool IsNormalName(std::string_view fullName) {
    return fullName.starts_with(NormalName);
}
