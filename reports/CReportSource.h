// What a report is made from: the project, the chosen sections and their records, read once and with the
// look-ups that all parts of the report share.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/records/records.h"

class CDbRec;

struct ReportRecord {
    const _REC_DATA* Data = nullptr;
    const _TESTING_DATA* Section = nullptr;  // none if it is missing
    int Defect = -1;                         // place in the criterion's lists; -1 for an unknown code
    int Code = -1;                           // place in the report's code list; -1 if it isn't there

    bool IsDefect() const { return Data->IsJG() || Data->IsGN(); }  // of the pipe, not of a manhole
};

using ReportRecords = std::vector<ReportRecord>;

class CReportSource {
public:
    explicit CReportSource(const CDbRec& database) : m_database(database) {}
    CReportSource(const CReportSource&) = delete;
    CReportSource& operator=(const CReportSource&) = delete;

    // `codes` is the report's code list. False if a read failed; its message was shown.
    bool Read(CDbRec& database, const CArrID& selectedIds, const std::vector<std::string>& codes);

    // As the criterion calls it; the code itself if it doesn't know it.
    const std::string& ShortName(const ReportRecord& record) const;
    // "(code)name"; empty for an unknown code.
    std::string_view FullName(const ReportRecord& record) const;

    _PRO_DATA Project;
    _TESTING_DATA FirstSection;  // of the whole project, whether chosen or not; empty without any
    CTestingDataArray Sections;  // the chosen ones, in the project's order
    ReportRecords AllRecords;    // of the chosen sections, in ID order
    ReportRecords Records;       // those of AllRecords that say more than that nothing is wrong

private:
    const CDbRec& m_database;
    CRecDataArray m_data;
};

// The first of several sections between the same manholes, compared exactly; pointers into `sections`.
std::vector<const _TESTING_DATA*> DistinctSections(const CTestingDataArray& sections);

// "(code)name" of a code; empty for an unknown one.
std::string_view FullDefectName(const CDbRec& database, std::string_view code);
