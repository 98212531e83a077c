// The state of a manhole: six codes that are the program's own, whatever the standard, and the lists of its
// form. Stored is the index into a list, so their order must stay.
#pragma once

#include <span>
#include <string>
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

// Asks for a file and copies it into "picture\" in `folder`, named for the present time; a file that has that
// name stays, and the record names it. The folder of the record's video stands in for a `folder` that isn't
// absolute, as of a section without a video; if that isn't either there is message 2702. False if nothing was
// added.
bool AddManholePicture(_REC_DATA& record, std::string_view folder);
// At once and without a question, also from the disk.
void DeleteManholePicture(_REC_DATA& record, int index);
