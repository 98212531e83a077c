// What a check of a project finds.
#pragma once

#include <cstdint>
#include <string>

enum class CheckSeverity {
    Error,    // the client will send it back
    Warning,  // it is wrong as a rule
    Hint,     // worth a look
};

struct CheckFinding {
    int Rule = 0;               // its number in CheckRules
    std::int32_t Section = -1;  // IDs of where it is; -1 for none
    std::int32_t Record = -1;
    std::string Field;  // the column's name; empty if it is about the whole
    std::string Value;  // what is wrong, in no language: the value, or what it is compared with

    bool operator==(const CheckFinding&) const = default;
};
