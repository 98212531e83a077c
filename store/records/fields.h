// Which stored fields a record has, for whoever walks them by name: JSON output, edits by name, tests.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "store/records/records.h"

enum class FieldRole {
    Key,    // given by the database
    Once,   // given when the row is made
    Stamp,  // the time when the row was made
    Value,  // written by every update of the row
};

template <class Record>
struct FieldOf {
    const char* Name;  // the column's name
    std::variant<std::int32_t Record::*, std::uint8_t Record::*, float Record::*, double Record::*,
                 std::string Record::*>
        Member;
    FieldRole Role;
};

// In the order of the columns, in which they are read and written. The table of sections is made of its
// fields. Pictures and the computed fields of a record aren't among them.
std::span<const FieldOf<_PRO_DATA>> ProjectFields();
std::span<const FieldOf<_TESTING_DATA>> TestingFields();
std::span<const FieldOf<_REC_DATA>> RecordFields();
