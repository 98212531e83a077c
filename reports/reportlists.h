// Everything a report shows, as flat lists of texts. Whoever fills a document reads them strictly in order,
// so the order of each is part of the agreement between the two.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

using CDWordArray = std::vector<std::uint32_t>;

struct ReportLists {
    // The defects that reports tell apart: codes of the criterion of at most two characters, and at the
    // same places their names.
    std::vector<std::string> Codes;
    std::vector<std::string> Names;

    // By the evaluators; see assessment/projectstatistics.h. Density scoring fills the first only.
    std::vector<std::string> SectionRows;
    std::vector<std::string> ShortRows;
    std::vector<std::string> LevelCountRows;
    std::vector<std::string> LevelLengthRows;

    // By BuildReportData; see there.
    std::vector<std::string> ProjectStrings;
    std::vector<std::string> WellDefectRows;
    std::vector<std::string> WellTotalRows;
    std::vector<std::string> WellPictureRows;
    CDWordArray DefectCountsByType;   // by place in Codes
    CDWordArray DefectCountsByLevel;  // four
};
