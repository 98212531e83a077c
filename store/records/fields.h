// Which stored fields a record has, for whoever walks them by name: JSON output, edits by name, tests.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "store/records/records.h"

template <class Record>
struct FieldOf {
    const char* Name;  // the column's name
    std::variant<std::int32_t Record::*, std::uint8_t Record::*, float Record::*, double Record::*,
                 std::string Record::*>
        Member;
    bool Updated;  // whether an update of the row writes it; the others are given once, or by the database
};

// In the order in which they are read from the database. Pictures and the computed fields of a record
// aren't among them.
std::span<const FieldOf<_PRO_DATA>> ProjectFields();
std::span<const FieldOf<_TESTING_DATA>> TestingFields();
std::span<const FieldOf<_REC_DATA>> RecordFields();
