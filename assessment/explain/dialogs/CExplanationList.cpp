#include "assessment/explain/dialogs/CExplanationList.h"

#include <utility>

#include "shell/dialogs/qttext.h"

namespace {

struct Column {
    int Heading;
    int Width;
};
constexpr Column Columns[] = {{3501, 260}, {3502, 130}, {3503, 420}};

constexpr QRgb HeadingColour = 0xFF0B5CAD;

}  // namespace

CExplanationList::CExplanationList(QWidget* parent) : CListCtrl(parent) {
    ShowSigns();
    for (const Column& column : Columns) {
        InsertColumn(MessageText(column.Heading), column.Width);
    }
}

void CExplanationList::Show(std::vector<ExplanationRow> rows) {
    m_rows = std::move(rows);
    std::vector<std::int32_t> numbers;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        numbers.push_back(static_cast<std::int32_t>(i));
    }
    ResetRows(numbers);
}

const ExplanationRow* CExplanationList::SelectedLine() const {
    const int row = SelectedRow();
    return row < 0 ? nullptr : &m_rows[static_cast<std::size_t>(row)];
}

std::string CExplanationList::AsText() const {
    std::string text;
    for (const ExplanationRow& row : m_rows) {
        text += row.What + '\t' + row.Value + '\t' + row.How + '\n';
    }
    return text;
}

std::string CExplanationList::MakeText(int row, int column) const {
    const ExplanationRow& line = m_rows[static_cast<std::size_t>(row)];
    return column == 0 ? line.What : column == 1 ? line.Value : line.How;
}

QColor CExplanationList::TextColour(int row) const {
    return m_rows[static_cast<std::size_t>(row)].Heading ? QColor(HeadingColour) : QColor();
}

bool CExplanationList::HasSign(int row) const {
    return m_rows[static_cast<std::size_t>(row)].Section >= 0;
}
