// The flat lists of a report with texts that can be told apart, and the pictures that they name.
#pragma once

#include "reports/reportlists.h"

class CTestFolder;

struct SampleReport {
    bool Full = true;  // forms of sections, tables of manholes and levels; else forms of defects
    ReportLists Lists;
    std::string MapPicture;
};

inline constexpr int SampleSections = 4;

// `assessed`: data columns of the table of assessments.
SampleReport MakeSampleReport(const CTestFolder& folder, bool full, int assessed);
