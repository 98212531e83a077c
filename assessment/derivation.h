// How a grade came about: what the evaluation did with each record, and all values on the way to its result.
// It is written by the evaluation itself while it works, so that it can't say anything else than what was
// done.
//
// Lengths and gaps are metres. Values are 32-bit floats, as they were computed.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

enum class CountReason {
    Counted,
    Manhole,     // of the group "JCJ"
    NoDefect,    // the code that says "no defect in this section"
    OtherGroup,  // of none of the groups that are scored, such as a code that the standard doesn't know
};

struct DerivedRecord {
    std::int32_t ID = 0;
    CountReason Reason = CountReason::Counted;
    bool Structural = false;  // else functional; of records that count
    // It counts, but with nothing: the standard has no score for its grade.
    bool Weightless = false;
    // Full scoring: the record of which it has become a part; -1 if it stands for itself or is the first of
    // several.
    std::int32_t MergedInto = -1;
    // From the end of the first defect of a run, or of the one before, to its start. Below the limit it was
    // merged. 0 for the first.
    float Gap = 0.0F;
};

// What stands where defects were merged; in density scoring each record is one.
struct DerivedItem {
    std::int32_t ID = 0;  // of its first record
    float Start = 0.0F;
    float End = 0.0F;
    float Score = 0.0F;
    float Gap = 0.0F;   // to the item before; 2.5 for the first, as it is scored
    bool Near = false;  // close enough to a neighbour to make it worse
};

struct DerivedValue {
    std::string_view Name;  // as in the result, or of a sum on the way; a literal
    float Value = 0.0F;
};

// The place of a value among the limits of its levels. Where it has no neighbour on one side, the limit is
// that of the band itself.
struct DerivedBand {
    std::string_view Name;
    float Value = 0.0F;
    int Band = 0;              // from 0, the best
    float Lower = 0.0F;        // limits of the band
    float Upper = 0.0F;        // infinite in the worst
    bool UpperBelongs = true;  // a value at the upper limit is still in the band
};

struct DerivedGroup {
    std::vector<DerivedItem> Items;
    std::vector<DerivedValue> Values;  // in the order in which they were computed
};

struct Derivation {
    std::vector<DerivedRecord> Records;  // all, in the order of entry
    DerivedGroup Structural;
    DerivedGroup Functional;
    std::vector<DerivedValue> Common;  // K, E, T
    std::vector<DerivedBand> Bands;
};
