// What is found in the review window: filters its lists while its line is open, and leads from hit to hit.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bulk/CQueryRows.h"
#include "bulk/dialogs/CDlgBulkEdit.h"

class CDlgProAtrrib;
class CFilterBar;
class CListCtrl;

class CRowFilter {
public:
    // Both outlive it.
    CRowFilter(CDlgProAtrrib& window, CFilterBar& bar);

    // With the focus in the line.
    void Open();
    void Close();
    bool IsOpen() const;
    // After whatever may have changed the project: finds again.
    void Follow();
    // All rows as they are now; null if there is no project or it can't be read.
    CQueryRows* Rows();
    // Of the query, or all; as of the last Follow.
    const CQueryRows::Hits& Hits() const { return m_hits; }
    // Whether lists of records are filtered now.
    bool FiltersRecords() const;
    // Those that it leaves over, or all: what a change of many rows is about.
    CDlgBulkEdit::Choice Chosen();
    // Of further lists of records.
    void Apply(CListCtrl& records) const;
    std::function<void()> OnFound;  // the hits are others, or there is no filter any more
    // Stands on the next hit after where the operator stands, or on the first one; `back`: before, the last.
    void Next(bool back);

private:
    using Place = std::pair<std::int32_t, std::int32_t>;  // section and record; a record below 0: none

    void Find();
    std::vector<Place> Places();

    CDlgProAtrrib& m_window;
    CFilterBar& m_bar;
    CQueryRows m_rows;
    CQueryRows::Hits m_hits;
    std::string m_project;  // that was read
    std::int64_t m_state = 0;
    bool m_read = false;
};
