// What the review window decides and does, without the window.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/records/records.h"

class CDbRec;

// "Drovane 判读信息 - project [standard]"; without a project only the program's part.
std::string ReviewTitle(std::string_view projectName, std::string_view criterionName);

// Where the defects of a section lie in its video. One entry a whole second, in both lists.
struct Markers {
    std::vector<std::uint8_t> Flags;  // 1: a defect's first picture lies in this second
    std::vector<std::uint32_t> Rows;  // of the defect list; of several the last
};

// `duration` in seconds. Records of other videos don't count.
Markers BuildMarkers(const CRecDataArray& records, std::string_view video, double duration);

// Gives the sections their places in this order, from 1 on; stops at the first that fails, which has told
// its message. What was done stays.
bool RenumberSections(CDbRec& database, const std::vector<std::int32_t>& ids);

// The record as it is stored now. The list of defects may show an older state of it, after a manhole was
// edited; whoever changes or deletes it must start from what is stored, or the later change would undo the
// earlier one. Nothing if it can't be read, which has told its message, or is gone.
std::optional<_REC_DATA> StoredRecord(CDbRec& database, const _REC_DATA& shown);
