// The project database as reports use it. It owns the data file that is being made, and hands each job on.
#pragma once

#include <memory>
#include <string_view>

#include "reports/reportlists.h"
#include "store/CDbRec.h"

class CReportDocument;

class CRecExport : public CDbRec {
public:
    CRecExport();
    ~CRecExport() override;

    // Drops what was gathered and begins with an empty data file.
    void NewReport();

    // The evaluators: reports/evaluators.h. False if a read failed.
    bool EvaluateProject(ReportLists& lists, const CArrID& selectedIds, float K, float T);
    bool EvaluateGroupsGZ(ReportLists& lists, const CArrID& selectedIds, float K, float T);
    bool EvaluateGroupsSH(ReportLists& lists, const CArrID& selectedIds, float K, float T);

    // After the evaluator: reports/reportdata.h. False if a read failed.
    bool BuildReportData(ReportLists& lists, const CArrID& selectedIds, bool fullData);

    // The file "config.xml", in the code page.
    std::string ReportBytes() const;
    // Whole or not at all. A failure shows nothing.
    bool SaveReport(std::string_view path) const;

private:
    std::unique_ptr<CReportDocument> m_document;
};
