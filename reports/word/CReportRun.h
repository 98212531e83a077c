// One report in the making: its lists, and a folder of its own for the files that it needs meanwhile, so that
// reports made at once share nothing. The folder lies among the temporary ones and goes with this object,
// unless it was handed over.
#pragma once

#include <string>

#include "reports/reportlists.h"

class CReportRun {
public:
    CReportRun();
    ~CReportRun();
    CReportRun(const CReportRun&) = delete;
    CReportRun& operator=(const CReportRun&) = delete;

    // A path text with its trailing "\"; empty if none could be made.
    const std::string& Folder() const { return m_folder; }
    std::string MapPicture() const { return m_folder.empty() ? std::string() : m_folder + "_map.png"; }
    // To a process that removes it when it is done.
    void HandOver() { m_handedOver = true; }

    // Whether a folder is one of these, of this user. Path texts.
    static bool IsOne(const std::string& folder);
    static void Remove(const std::string& folder);

    ReportLists Lists;
    bool PlanMissing = false;  // a map service was set up, and gave no picture

private:
    std::string m_folder;
    bool m_handedOver = false;
};
