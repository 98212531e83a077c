// The one exception of the database rooms. Its text is for developers: operators see the numbered message
// of the operation that failed.
#pragma once

#include <stdexcept>
#include <string>

class CDbError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
