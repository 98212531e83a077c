// What of the data file only this standard's report shows.
#pragma once

#include "reports/reportlists.h"

class CConfigFile;
class CDocx;

// After the common parts of the report have been filled from the lists. Throws COoxmlError for a template
// that lacks a bookmark or a place, and CConfigError.
void FillExtraTables(CDocx& document, const CConfigFile& config, const ReportLists& lists);
