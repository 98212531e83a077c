// A file of the older engine can't be had. The text is for developers: operators see the numbered message of
// the operation that failed.
#pragma once

#include <stdexcept>
#include <string>

class CJetError : public std::runtime_error {
public:
    enum class Why {
        Content,  // what is in the file: the same file will be refused again
        Limit,    // reading it took more than it may
        Machine   // the reader is missing or failed, the file went away
    };
    CJetError(Why why, const std::string& text) : std::runtime_error(text), Reason(why) {}

    Why Reason;
};
