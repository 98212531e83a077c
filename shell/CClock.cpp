#include "shell/CClock.h"

#include <ctime>
#include <iomanip>
#include <locale>
#include <sstream>

namespace {

std::tm SplitUtc(std::time_t seconds) {
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    return parts;
}

}  // namespace

std::chrono::local_seconds CClock::LocalNow() const {
    const std::chrono::sys_seconds now = UtcNow();
    return std::chrono::local_seconds((now + LocalOffset(now)).time_since_epoch());
}

std::chrono::sys_seconds CSystemClock::UtcNow() const {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

std::chrono::seconds CSystemClock::LocalOffset(std::chrono::sys_seconds at) const {
    const std::time_t seconds = at.time_since_epoch().count();
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return std::chrono::seconds(parts.tm_gmtoff);
}

std::string FormatTime(std::chrono::local_seconds time, const char* format) {
    const std::tm parts = SplitUtc(time.time_since_epoch().count());
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::put_time(&parts, format);
    return text.str();
}
