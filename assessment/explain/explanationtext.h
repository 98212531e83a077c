// An explanation as an engineer reads it, in the language of the program: rows of what, value and how, each
// leading to the record that it speaks of.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "assessment/explain/explanation.h"

class CDbRec;

struct ExplanationRow {
    std::string What;
    std::string Value;
    std::string How;
    bool Heading = false;
    std::int32_t Section = -1;  // IDs of what it speaks of; -1 for none
    std::int32_t Record = -1;
};

// `sections` are those of the project. Metres have two decimals at most, values three.
std::vector<ExplanationRow> ExplanationRows(const Explanation& explanation, const CDbRec& database,
                                            const CTestingDataArray& sections);

// One line for a window: index and level of both kinds. `byDistance` as ResultByDistance.
std::string GradeLine(const SectionGrade& grade, const std::optional<_EVALUATE_DATA>& byDistance);
