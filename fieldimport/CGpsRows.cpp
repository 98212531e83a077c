#include "fieldimport/CGpsRows.h"

#include <algorithm>
#include <utility>

#include "fieldimport/CSheetError.h"

namespace {

constexpr std::size_t MostBytes = std::size_t{128} << 20;

}  // namespace

void CGpsRows::Add(std::int64_t number, GpsRow row) {
    if (number < 2) {
        return;
    }
    if (number != m_next++ || row[0].Text.empty()) {
        m_ended = true;
    }
    if (m_ended) {
        const bool content = std::any_of(row.begin(), row.end(), [](const GpsCell& c) { return c.HasValue; });
        m_sheet.Unread += content ? 1 : 0;
        return;
    }
    for (GpsCell& cell : row) {
        m_bytes += cell.Text.size();
        m_sheet.Texts.push_back(std::move(cell.Text));
    }
    if (m_bytes > MostBytes) {
        throw CSheetError(SheetFault::TooLarge);
    }
}
