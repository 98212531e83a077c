// Scores the chosen sections of a project for a report: the rows of its tables, and in full scoring the first
// elements of its data file too. False if a read failed; its message was shown.
#pragma once

#include "reports/reportlists.h"
#include "store/records/records.h"

class CDbRec;
class CReportDocument;

// K, T: parameters of region and soil, as picked.
bool EvaluateProject(CDbRec& database, CReportDocument& document, ReportLists& lists,
                     const CArrID& selectedIds, float K, float T);
bool EvaluateGroupsGZ(CDbRec& database, ReportLists& lists, const CArrID& selectedIds, float K, float T);
bool EvaluateGroupsSH(CDbRec& database, ReportLists& lists, const CArrID& selectedIds, float K, float T);
