// A restore point beside the project as it is now, row by row.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CDbRec;

enum class RowChange { Added, Removed, Changed };

struct FieldDifference {
    std::string Name;
    std::string Then;
    std::string Now;
};

struct RowDifference {
    RowChange Change = RowChange::Changed;  // since the point was made
    std::int32_t Section = -1;              // ID of the section, or of the record's; then, if it has changed
    std::int32_t Record = -1;               // -1 for the section itself
    std::string Label;                      // of the section: both manholes; of the record: code and metres
    std::vector<FieldDifference> Fields;    // of changed rows
};

// Of one section, itself first.
struct SectionDifference {
    std::int32_t Section = -1;  // -1 for the project's own properties
    std::string Label;
    std::vector<RowDifference> Rows;
};

// Sections in the order of their IDs. `pointPath` is a path text. Throws CDbError.
std::vector<SectionDifference> CompareWithPoint(CDbRec& database, std::string_view pointPath);

// Makes the section what it was in the point, with its records and their pictures where these are held: one
// step of the history, after a restore point of its own. False if nothing was changed, which has been told:
// message 3383 with the reason.
bool TakeBackSection(CDbRec& database, std::string_view pointPath, std::int32_t section);
