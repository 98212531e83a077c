// What the form of a defect holds and decides. Controls are named by their ids.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/records/records.h"

class CDbCriterion;
class CDbRec;

struct DefectControl {
    static constexpr int Name = 1000;
    static constexpr int Grade = 1002;
    static constexpr int Comment = 1005;
    static constexpr int StartDistance = 1013;
    static constexpr int Longitude = 1014;
    static constexpr int Latitude = 1015;
    static constexpr int EndDistance = 1017;
};

// One row of the list of defects.
struct DefectChoice {
    std::string Label;  // "(code)name"
    std::string Code;
};

// The defects of the standard in its order, without those of manholes, which have a form of their own.
std::vector<DefectChoice> DefectChoices(const CDbCriterion& criterion);
// Without regard to case; -1 if there is none.
int FindChoice(const std::vector<DefectChoice>& choices, std::string_view code);

// Numbers as they stand in the form.
struct DefectNumbers {
    std::string StartDistance;
    std::string Longitude;
    std::string Latitude;
    std::string EndDistance;
};

// Why the form can't be taken as it is.
struct DefectProblem {
    int Message = 0;
    std::string Text;  // of the message
    int Control = 0;   // where the operator can mend it
};

DefectNumbers ShowNumbers(const _REC_DATA& record);
// In the order of the members. The first that is no number, or lies outside its range, ends the reading:
// those behind it keep their former values.
std::optional<DefectProblem> ReadNumbers(const DefectNumbers& typed, _REC_DATA& record);
// While the start is being typed the end follows it upwards. Nothing if the end stays, also where the start
// is no number yet. `formerEnd` counts where the end is none.
std::optional<std::string> DraggedEnd(const DefectNumbers& typed, float formerEnd);

// 2103, 2104 or 2107. `name` and `grade` are indices, below 0 without a selection; the length is the
// section's in metres.
std::optional<DefectProblem> CheckDefect(int name, int grade, const _REC_DATA& record, float sectionLength);

// What isn't typed: the ids, the group of the code, and that only a manhole has the columns of one. `id` is
// that of the section for a new record, and the record's own afterwards.
void CompleteRecord(const CDbRec& database, std::int32_t id, _REC_DATA& record);
