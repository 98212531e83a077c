// How a long operation tells its operator where it stands. The base is silent and never stops.
#pragma once

#include <cstdint>
#include <string>

class CProgress {
public:
    virtual ~CProgress() = default;
    virtual void At(std::int64_t /*done*/, std::int64_t /*total*/, const std::string& /*text*/) {}
    // Asked between steps: whether the operator wants the operation to stop.
    virtual bool Stopped() const { return false; }
};
