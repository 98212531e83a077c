// What the commands on grades share.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "assessment/sectiongrades.h"

class CDbRec;

// With their records and scores. Throws std::runtime_error.
std::vector<SectionRecords> ReadSections(CDbRec& database, CTestingDataArray sections);
// Whose section it is, and all fields of the result by name.
nlohmann::ordered_json GradeToJson(const SectionGrade& grade);
