// A clock that stands until it is set.
#pragma once

#include "shell/CClock.h"

class CSetClock : public CClock {
public:
    std::chrono::local_seconds Local{std::chrono::local_days{std::chrono::year{2026} / 3 / 14} +
                                     std::chrono::hours{9} + std::chrono::minutes{26} +
                                     std::chrono::seconds{53}};
    std::chrono::seconds Offset{8 * 3600};

    std::chrono::sys_seconds UtcNow() const override {
        return std::chrono::sys_seconds(Local.time_since_epoch() - Offset);
    }
    std::chrono::seconds LocalOffset(std::chrono::sys_seconds) const override { return Offset; }
};
