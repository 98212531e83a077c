// The file isn't what it must be. One such place refuses all of it: half a project helps nobody.
#pragma once

#include <stdexcept>

class CDamage : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline void Require(bool sound, const char* otherwise) {
    if (!sound) {
        throw CDamage(otherwise);
    }
}
