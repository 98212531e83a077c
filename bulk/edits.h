// The same change of many sections or records: planned first, with what the forms would refuse, and made as
// one step of the journal.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/records/records.h"

class CDbRec;

struct FieldChange {
    std::string Column;
    std::string Value;
};

// Columns that can be changed in many rows: those that the section's form writes, besides its video; of
// records grade, comment and clock.
std::span<const char* const> BulkSectionColumns();
std::span<const char* const> BulkRecordColumns();

struct PlannedField {
    std::string Column;
    std::string Before;
    std::string After;
};
template <class Row>
struct PlannedEdit {
    Row Changed;
    std::vector<PlannedField> Fields;  // what differs; none if the row stays as it is
    std::string Refused;               // why it stays, if a check refuses it
};
using SectionEdits = std::vector<PlannedEdit<_TESTING_DATA>>;
using RecordEdits = std::vector<PlannedEdit<_REC_DATA>>;

// A value that no section can take is told here, and nothing is planned.
struct SectionPlan {
    std::string Refused;
    SectionEdits Edits;  // one a section, in their order
};
SectionPlan PlanSectionEdits(const std::vector<const _TESTING_DATA*>& sections,
                             const std::vector<FieldChange>& changes);
// A comment that is the standard's text of the former grade becomes that of the new one, unless it is changed
// itself.
RecordEdits PlanRecordEdits(CDbRec& database, const std::vector<const _REC_DATA*>& records,
                            const std::vector<FieldChange>& changes);

// Makes a restore point and what is planned, all of it or nothing. False with the message of UpdateTesting or
// UpdateRecord, or if the operator doesn't go on without a restore point.
bool ApplyEdits(CDbRec& database, const SectionEdits& edits);
bool ApplyEdits(CDbRec& database, const RecordEdits& edits);
