// The state of a manhole: six codes that are the program's own, whatever the standard, and the lists of its
// form. Stored is the index into a list, so their order must stay.
#pragma once

#include <span>
#include <string_view>

#include "store/records/records.h"

struct ManholeControl {
    static constexpr int Number = 1019;
    static constexpr int Type = 1022;
    static constexpr int Material = 1027;
    static constexpr int CoverMaterial = 1029;
    static constexpr int UnderRoad = 1030;
};

struct ManholeCode {
    const char* Code;
    const char* Label;
    const char* Comment;
};

inline constexpr int ManholeGrades = 4;

std::span<const ManholeCode> ManholeCodes();
// Without regard to case; -1 if it is none of them.
int FindManholeCode(std::string_view code);

struct ManholeList {
    int Control;
    int LabelId;
    int Caption;  // message number
    std::int32_t _REC_DATA::*Member;
    std::span<const char* const> Rows;
};
std::span<const ManholeList> ManholeLists();
