// The manhole tables of a report. Whatever is no defect of the pipe counts here, also records whose code the
// criterion doesn't know.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "reports/CReportSource.h"

class CReportElement;

inline constexpr std::size_t ManholeTypes = 12;
inline constexpr std::size_t ManholeColumns = 8;

// By type of manhole: all records, those without a fault, those whose field of the road is 1, and those of
// five faults.
using ManholeCounts = std::array<std::array<int, ManholeColumns>, ManholeTypes>;

ManholeCounts CountManholes(const ReportRecords& records);

// The number of rows, then six texts each: number, type, whether under a road, material of the manhole and of
// its cover, comment. Sorted by number and type.
std::vector<std::string> WellDefectRows(const ReportRecords& records);
// "13", then a row for each type and one of the sums: eight counts and "-".
std::vector<std::string> WellTotalRows(const ManholeCounts& counts);
void AddManholes(CReportElement& projectInfo, const ManholeCounts& counts);
