// Fills every bookmark of a template in the order and at the places that reports use, with texts that can be
// told apart.
#pragma once

#include <string>

#include "reports/ooxml/CDocx.h"

struct SampleReport {
    bool Full = true;  // forms of sections, tables of manholes and levels; else forms of defects
    int Assessed = 0;  // data columns of the table of assessments
    int Sections = 4;
    std::string Picture;
    std::string MapPicture;
};

void FillSample(CDocx& document, const SampleReport& sample);
