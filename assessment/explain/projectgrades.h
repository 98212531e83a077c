// Grades of an open project's sections, read from its database as they stand. Pictures aren't looked at.
#pragma once

#include <cstdint>
#include <optional>

#include "assessment/explain/explanation.h"
#include "assessment/sectiongrades.h"

class CDbRec;

// `sections` are those of the project, in its order; of them the records of those are read that are scored
// together with the wanted one. Nothing, and no message, if it isn't among them, the standard has no scoring, or
// the records can't be read.
std::optional<SectionGrade> ReadGrade(CDbRec& database, ScoringRoute route, const CTestingDataArray& sections,
                                      std::int32_t id, float K, float T);
std::optional<Explanation> ReadExplanation(CDbRec& database, ScoringRoute route,
                                           const CTestingDataArray& sections, std::int32_t id, float K,
                                           float T);
