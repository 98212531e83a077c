// The criterion tables of a database file: which defects its standard knows, with their grades and
// scores. A project file is a copy of a criterion file, so both have them, and a later change of a
// criterion file doesn't reach the projects made from it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/CDbBase.h"

class CDbCriterion : public CDbBase {
public:
    ~CDbCriterion() override;
    void Close() override;

    // Opens and loads the defect lists. A file of the older engine is converted first, if the operator says
    // so (see PrepareToOpen). Failure shows its message (2000, 2001 or 2002), and the file is
    // closed again.
    bool OpenDatabase(std::string_view path, std::string_view password, Access access = Access::Exclusive);

    // Message 2002.
    bool LoadDefectNames();
    // The grades of one code, index 0 being grade 1; a grade without a row is an empty entry. An unknown
    // code gives empty lists. Both lists are optional. Message 2003.
    bool LoadDefectLevels(std::string_view code, std::vector<std::string>* descriptions,
                          std::vector<float>* evaluates);

    // Four lists of one length, one entry a defect, in the order of the file; filled while it is open.
    std::vector<std::string> DefectNames;
    std::vector<std::string> DefectCodes;
    std::vector<std::string> DefectTypes;   // "JG" structural, "GN" functional, "JCJ" manhole
    std::vector<std::string> DefectLabels;  // "(code)name", as the lists of the windows show it
};
