// The Word report of a project, from the chosen sections to the finished document.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reports/word/CExportWord.h"
#include "reports/word/CReportRun.h"
#include "store/records/records.h"

class CRecExport;

inline constexpr int MessageNoPlan = 3450;

struct ReportOrder {
    CTestingDataArray Sections;  // the chosen ones, in the project's order
    // Parameters of region and soil, as picked.
    float K = 0;
    float T = 0;
    StatusLine Status;
};

// Fetches the map picture into the run's folder (a plan that can't be fetched is told in the status line),
// then scores and gathers into its lists: reports/collectreport.h. False if there is nothing to make a report
// of; a message was shown, except where the data set can't be built, which says for itself what it couldn't
// read.
bool CollectWordReport(CRecExport& project, const std::string& criterionName, const ReportOrder& order,
                       CReportRun& run);

// A copy of the map's picture that the last report fetched. It needn't exist; the folder is the user's own.
// Empty without such a folder.
std::string GetMapPicturePath();

struct WordReport {
    std::string Path;       // empty if there is no document; a message was shown
    bool Complete = false;  // there is a document, and no chart failed; one that did has told its message
};

// Fills the template of the standard and writes the document among those of the operator, under the project's
// name. Not for standards whose documents the generator makes.
WordReport WriteWordReport(const CReportRun& run, const std::string& criterionName,
                           const std::string& projectName, const StatusLine& status);
// The same to a path, whatever is there.
WordReport WriteWordReportTo(const std::string& path, const CReportRun& run, const std::string& criterionName,
                             const StatusLine& status);

// Where filled documents go: among those of the operator, or to a path. The path, or empty with a message
// shown.
std::string SaveWordReport(CDocx& document, const std::string& projectName);
std::string SaveWordReportTo(CDocx& document, const std::string& path);

// With the desktop's program for it; where there is none, a message tells where the report lies.
void OpenWordReport(const std::string& path);
