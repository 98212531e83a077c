// Why a section has its grade: how it came about, what each record weighs in it, and whether the order in
// which the records were entered decides it.
//
// Merging goes through the records as they were entered. So the same defects entered in another order can
// give another grade; that is how the standard's program has always worked, and a report of an old project
// has to come out as it did. Here it is told.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "assessment/derivation.h"
#include "assessment/sectiongrades.h"

// The grade of the whole if one record were another.
struct WhatIf {
    float Index = 0.0F;  // of the record's kind: repair index if it is structural, else maintenance index
    std::string Level;
};

struct RecordWeight {
    std::int32_t ID = 0;
    bool Structural = false;
    WhatIf Without;
    std::optional<WhatIf> Milder;  // one grade less; nothing where the standard has none
    std::optional<WhatIf> Graver;
};

struct Explanation {
    SectionGrade Grade;
    Derivation HowItCame;
    // Which were scored together: in density scoring all between the same manholes, the first of them first.
    std::vector<std::int32_t> Sections;
    std::vector<RecordWeight> Weights;  // of the records that count, in the order of entry
    // The records stand by their distance.
    bool InOrder = true;
    // If not, and standing so would give another index or level: the result that they would give.
    std::optional<_EVALUATE_DATA> ByDistance;
};

// The standard's score of a record's code at another grade; nothing if it has none.
using ScoreOfGrade = std::function<std::optional<float>(const _REC_DATA& record, int grade)>;

// `sections` are all of the project, of which those that are scored with the wanted one are taken; their
// records are read with scores. Nothing if the section isn't among them or the standard has no scoring.
std::optional<Explanation> ExplainGrade(ScoringRoute route, const std::vector<SectionRecords>& sections,
                                        std::int32_t id, float K, float T, const ScoreOfGrade& scoreOf);

// The records stand by the distance at which they start.
bool IsInOrder(const CRecDataArray& records);
// What the records would give in order of distance; nothing if that is what they give.
std::optional<_EVALUATE_DATA> ResultByDistance(ScoringRoute route, const SectionGrade& grade);
// The IDs of a section's records by distance; those at the same distance stay in the order of entry.
std::vector<std::int32_t> IdsByDistance(const CRecDataArray& records);
