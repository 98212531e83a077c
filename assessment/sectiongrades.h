// Scores the sections of a project by the rules of its standard.
#pragma once

#include <vector>

#include "assessment/evaluation.h"
#include "assessment/standards.h"
#include "store/records/records.h"

struct SectionRecords {
    _TESTING_DATA Section;
    CRecDataArray Records;  // in the order of the database, read with scores
};

// What is scored as a whole: a section, or in density scoring all sections between the same two manholes
// in the same direction.
struct SectionGrade {
    _TESTING_DATA Section;  // of several the first
    float Length = 0.0F;    // metres
    float Diameter = 0.0F;  // millimetres
    CRecDataArray Records;  // of all of them, as they were scored
    _EVALUATE_DATA Result;
};

// By the rules of the standard; the rest as in evaluation.h. 0, with nothing done, where it has none.
int Evaluate(ScoringRoute route, _EVALUATE_DATA& result, const CRecDataArray& records, float L, float D,
             float K, float T, Derivation* derivation = nullptr);

// Whether two sections are scored as one: each with itself, and in density scoring those of equal manholes.
bool AreScoredTogether(ScoringRoute route, const _TESTING_DATA& a, const _TESTING_DATA& b);

// In list order; a group stands where its first section stood. Sections and records move into the result.
// A route without an evaluator gives none.
std::vector<SectionGrade> GradeSections(ScoringRoute route, std::vector<SectionRecords> sections, float K,
                                        float T);
