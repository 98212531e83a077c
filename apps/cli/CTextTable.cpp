#include "apps/cli/CTextTable.h"

#include <algorithm>
#include <ostream>

#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

// A character of two bytes in the code page is two columns wide on a terminal.
std::size_t WidthOf(const std::string& text) {
    return GbkLength(text);
}

// Line breaks and tabs of free remarks would tear the table.
std::string OnOneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
    return text;
}

}  // namespace

void CTextTable::Print(std::ostream& out) const {
    const std::size_t columns = m_rows.front().size();
    std::vector<std::size_t> widths(columns, 0);
    std::vector<bool> numeric(columns, true);
    for (std::size_t r = 0; r < m_rows.size(); ++r) {
        for (std::size_t c = 0; c < columns; ++c) {
            const std::string& cell = m_rows[r][c];
            widths[c] = std::max(widths[c], WidthOf(cell));
            if (r > 0 && cell != "-" && !ParseWholeDouble(cell)) {
                numeric[c] = false;
            }
        }
    }
    for (std::size_t r = 0; r < m_rows.size(); ++r) {
        std::string line;
        for (std::size_t c = 0; c < columns; ++c) {
            const std::string cell = OnOneLine(m_rows[r][c]);
            const std::string gap(widths[c] - WidthOf(cell), ' ');
            line += numeric[c] ? gap + cell : cell + gap;
            line += c + 1 < columns ? "  " : "";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
        if (r == 0) {
            std::size_t total = 2 * (columns - 1);
            for (const std::size_t width : widths) {
                total += width;
            }
            out << std::string(total, '-') << '\n';
        }
    }
}
