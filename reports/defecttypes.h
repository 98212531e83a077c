// How often each defect occurs, by grade.
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "reports/CReportSource.h"

class CReportElement;

inline constexpr std::size_t Grades = 4;

// By place in the report's code list; index 0 being grade 1.
using GradeCounts = std::array<int, Grades>;
using DefectTally = std::vector<GradeCounts>;

// A defect that the data file knows by name.
struct DefectType {
    const char* Code;
    const char* Outer;  // its elements
    const char* Inner;
    const char* Label;
};
// The sixteen.
std::span<const DefectType> KnownDefectTypes();

// Stops for good at the first record whose grade is none of 1 to 4, such as that of a manhole: what stands
// behind it is in no count. Reports made over the years count this way.
DefectTally TallyDefects(const ReportRecords& records, std::size_t codes);

// The elements of the sixteen defects that the data file knows by name, of the totals, and of the pie chart.
void AddDefectTypes(CReportElement& projectInfo, const std::vector<std::string>& codes,
                    const DefectTally& tally);
