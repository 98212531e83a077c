// Gathers everything a report shows, as elements of its data file and as flat lists.
#pragma once

#include "reports/reportlists.h"
#include "store/records/records.h"

class CDbRec;
class CReportDocument;

// Comes after the evaluator: reads Codes, Names and SectionRows of `lists`, and fills the lists that are its
// own. `fullData` is for the standards with full scoring: a form for each section instead of one for each
// defect. False if a read failed; its message was shown.
//
// ProjectStrings, in this order:
//
//   1. name, number and place of the project, date, company and tester of the first chosen section
//   2. number of sections between different manholes; of each name, manholes, pipe, length
//   3. the whole length
//   4. for each code its name and the counts of its four grades
//   5. number of defects; of each nine texts, by ascending ID of their section
//   6. with fullData: the forms of the sections (reports/sectionblocks.h)
//   7. without: the number of records of every kind, and of each defect seven texts, from the last to the
//      first. So the number may be larger than what follows.
bool BuildReportData(CDbRec& database, CReportDocument& document, ReportLists& lists,
                     const CArrID& selectedIds, bool fullData);
