// The one exception of this room: a template that can't be used, or a document that can't be made. Its text
// is shown to operators behind a message of the operation that failed.
#pragma once

#include <stdexcept>
#include <string>

class COoxmlError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
