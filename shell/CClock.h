// All time of the program comes from here, so that tests can set it.
#pragma once

#include <chrono>
#include <string>

class CClock {
public:
    virtual ~CClock() = default;
    virtual std::chrono::sys_seconds UtcNow() const = 0;
    // The machine's time zone at that moment: local time minus UTC.
    virtual std::chrono::seconds LocalOffset(std::chrono::sys_seconds at) const = 0;

    std::chrono::local_seconds LocalNow() const;
};

class CSystemClock : public CClock {
public:
    std::chrono::sys_seconds UtcNow() const override;
    std::chrono::seconds LocalOffset(std::chrono::sys_seconds at) const override;
};

// `format` is one of `strftime`, such as "%Y-%m-%d-%H%M%S".
std::string FormatTime(std::chrono::local_seconds time, const char* format);
// As dates stand in the databases.
inline constexpr const char* DatabaseTimeFormat = "%Y-%m-%d %H:%M:%S";
