#include "reports/CRecExport.h"

#include "reports/CReportDocument.h"
#include "reports/evaluators.h"
#include "reports/reportdata.h"
#include "shell/CHostFiles.h"
#include "shell/CUnixFile.h"
#include "shell/seams.h"

CRecExport::CRecExport() : m_document(std::make_unique<CReportDocument>()) {}

CRecExport::~CRecExport() = default;

void CRecExport::NewReport() {
    m_document = std::make_unique<CReportDocument>();
}

bool CRecExport::EvaluateProject(ReportLists& lists, const CArrID& selectedIds, float K, float T) {
    return ::EvaluateProject(*this, *m_document, lists, selectedIds, K, T);
}

bool CRecExport::EvaluateGroupsGZ(ReportLists& lists, const CArrID& selectedIds, float K, float T) {
    return ::EvaluateGroupsGZ(*this, lists, selectedIds, K, T);
}

bool CRecExport::EvaluateGroupsSH(ReportLists& lists, const CArrID& selectedIds, float K, float T) {
    return ::EvaluateGroupsSH(*this, lists, selectedIds, K, T);
}

bool CRecExport::BuildReportData(ReportLists& lists, const CArrID& selectedIds, bool fullData) {
    return ::BuildReportData(*this, *m_document, lists, selectedIds, fullData);
}

std::string CRecExport::ReportBytes() const {
    return m_document->Bytes();
}

bool CRecExport::SaveReport(std::string_view path) const {
    return HostFiles().WriteFile(path, [this](const CUnixFile& file) {
        return m_document->Write([&file](std::string_view text) { return file.WriteAll(text); });
    });
}
