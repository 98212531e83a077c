// The forms of the sections, one a section, for the standards whose reports have them.
#pragma once

#include "reports/CReportSource.h"
#include "reports/reportlists.h"

class CReportElement;

// Appends to ProjectStrings the number of forms and then each: its number of defect rows, seventeen texts,
// and eight a defect row. They come from the last section to the first, since whoever fills the document puts
// each new form on top of it. A section without a defect row has no form.
//
// Rows of manholes go to WellPictureRows instead. `lists.SectionRows` must be those of full scoring.
void AddSectionBlocks(CReportElement& projectInfo, const CReportSource& source, ReportLists& lists);
