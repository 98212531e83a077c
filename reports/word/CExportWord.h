// The Word report of a project, made from its template. Knows nothing of defects: it reads the flat lists of
// the report strictly in their order and puts them into the tables that the template has ready. Which those
// are: see docs/files.md.
//
// What fails shows one message and returns false; the document then stands as filled so far and can still be
// saved.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "reports/ooxml/CDocx.h"
#include "reports/reportlists.h"

// Takes a line of text that tells where the report stands.
using StatusLine = std::function<void(const std::string&)>;

class CExportWord {
public:
    // 2388 if the template can't be used.
    bool OpenDocument(const std::string& templatePath);

    // All but the charts. `mapPicture` is the path text of a picture that needn't exist. `fullData` as for
    // BuildReportData, from which `lists` come. `status` is told the share done, as often as it changes.
    bool FillDocument(const ReportLists& lists, const std::string& mapPicture, bool fullData,
                      const StatusLine& status);

    // A chart is drawn first, from the counts of the report, and then put into a bookmark's place. 2384, 2383
    // if it can't be drawn: without a value, or with more than there are columns from A to Z.
    bool CopyTypeChart(const CDWordArray& countsByType, const std::vector<std::string>& names);
    bool CopyLevelChart(const CDWordArray& countsByLevel);
    bool PasteChart(std::string_view bookmark);

    // The open document.
    CDocx& Document() { return *m_document; }

protected:
    // Runs what fills the document. False if it throws COoxmlError; its message was shown then.
    bool Fill(const std::function<void()>& fill);

private:
    bool DrawChart(ChartSpec chart, int failure);

    std::unique_ptr<CDocx> m_document;
    ChartSpec m_chart;
};
