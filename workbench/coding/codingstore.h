// What a coding line stores: a new defect, or the end of a run.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/records/records.h"
#include "workbench/coding/codingmeaning.h"

class CDbRec;

// The record that the line says, as far as it is known, without picture and ids.
_REC_DATA CodedRecord(const CodingMeaning& meaning);

// Takes the frame at `seconds` and stores the defect, as the defect window does with OK, in one step of the
// history. The meaning must be complete. Nothing, with all as it was, if it can't be stored; what failed has
// told its message, and that there is no frame (2195) too, but that keeps nobody from storing. The record's
// ID otherwise.
std::optional<std::int32_t> StoreCoded(CDbRec& database, const _TESTING_DATA& section, std::string_view video,
                                       double seconds, const CodingMeaning& meaning);

// The end of the run that the meaning names. A run that ends where it began is a place.
std::optional<std::int32_t> EndCodedRun(CDbRec& database, const CodingMeaning& meaning);

// "PL3", by which favourites are known; empty without code and grade.
std::string CodeAndGrade(const CodingMeaning& meaning);
