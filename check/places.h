// Where a check found something that isn't left as it is.
#pragma once

#include <cstdint>
#include <set>
#include <vector>

#include "check/finding.h"

class CWaivers;

struct FindingPlaces {
    std::set<std::int32_t> Sections;  // also those of the records
    std::set<std::int32_t> Records;
};
// Of errors and warnings; hints needn't mean anything.
FindingPlaces PlacesOf(const std::vector<CheckFinding>& findings, const CWaivers& waivers);
