// The one exception of the database rooms. Its text is for developers: operators see the numbered message
// of the operation that failed, with the reason if they can do something about it.
#pragma once

#include <stdexcept>
#include <string>

class CDbError : public std::runtime_error {
public:
    enum class Why { Other, ReadOnly, DiskFull, DiskFailed, FileGone };

    explicit CDbError(const std::string& text, Why why = Why::Other)
        : std::runtime_error(text), Reason(why) {}

    Why Reason;
};

// The reason in a line of its own, for behind a message; empty if the operator can't do anything about it.
std::string FailureLine(const CDbError& error);
// Shows the numbered message with the reason in a line of its own.
void ShowFailure(int number, const CDbError& error);
