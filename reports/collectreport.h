// From the chosen sections to all that a report of the project's standard shows.
#pragma once

#include <string>

#include "reports/reportlists.h"
#include "store/records/records.h"

class CRecExport;

CArrID SectionIds(const CTestingDataArray& sections);

// The defects that reports tell apart, out of those of the criterion: see ReportLists.
void FillReportCodes(const CRecExport& project, ReportLists& lists);

// Begins a new report and runs the evaluator of the standard and the data set builder. K, T: parameters of
// region and soil, as picked. False if the standard has no report (2158 with its name), if the evaluator
// failed (2157), or if the builder failed, which has shown its message.
bool CollectReport(CRecExport& project, const std::string& criterionName, const CArrID& selectedIds, float K,
                   float T, ReportLists& lists);
