// From the data file of a report to the lists that documents are filled from.
#pragma once

#include "reports/reportlists.h"

class CConfigFile;

// As BuildReportData and the full evaluator make them from the project itself, as far as the file tells:
//
// - the report's number and the list of manholes are empty
// - of a defect the length stands in the place of the distance from the section's beginning
// - merged defects count each
// - a section without structural defects says what that means for its repair
// - defects are grouped by section in the project's order
//
// Names and DefectCountsByType are those of the pie chart. Throws CConfigError for counts and indexes that
// are no numbers.
ReportLists ListsFromConfig(const CConfigFile& config);
