#include "reports/ooxml/CDocxTable.h"

#include <utility>

#include "reports/ooxml/CBookmarks.h"
#include "reports/ooxml/CDocx.h"
#include "reports/ooxml/COoxmlError.h"
#include "shell/numbers.h"

namespace {

// Rows and cells can stand in content controls and in insertions under review. Finished rows are null.
void Collect(XmlElement* parent, const char* name, std::vector<XmlElement*>& found) {
    for (XmlNode* node = parent->FirstChild(); node != nullptr; node = node->NextSibling()) {
        XmlElement* child = node->ToElement();
        if (Is(child, name) || IsRaw(node)) {
            found.push_back(child);
        } else if (Is(child, "w:sdt") || Is(child, "w:sdtContent") || Is(child, "w:ins") ||
                   Is(child, "w:customXml")) {
            Collect(child, name, found);
        }
    }
}

bool HoldsBookmarkMark(XmlElement* element) {
    bool holds = false;
    EachElement(element, [&](XmlElement* inner) { holds = holds || IsBookmarkMark(inner); });
    return holds;
}

}  // namespace

CDocxTable::CDocxTable(CDocx& document, XmlElement* table, std::string name)
    : m_document(document), m_name(std::move(name)) {
    Collect(table, "w:tr", m_rows);
}

XmlElement* CDocxTable::Row(int row) const {
    if (row < 1 || row > RowCount()) {
        throw COoxmlError(OoxmlFault::NoRow, {m_name, FormatInt(row)});
    }
    XmlElement* found = m_rows[static_cast<std::size_t>(row) - 1];
    if (found == nullptr) {
        throw COoxmlError(OoxmlFault::NoRow, {m_name, FormatInt(row)});
    }
    return found;
}

XmlElement* CDocxTable::Cell(int row, int column) const {
    std::vector<XmlElement*> cells;
    Collect(Row(row), "w:tc", cells);
    if (column < 1 || static_cast<std::size_t>(column) > cells.size()) {
        throw COoxmlError(OoxmlFault::NoCell, {m_name, FormatInt(row), FormatInt(column)});
    }
    return cells[static_cast<std::size_t>(column) - 1];
}

int CDocxTable::CellCount(int row) const {
    std::vector<XmlElement*> cells;
    Collect(Row(row), "w:tc", cells);
    return static_cast<int>(cells.size());
}

std::string CDocxTable::CellText(int row, int column) const {
    return TextOf(Cell(row, column));
}

void CDocxTable::SetCell(int row, int column, std::string_view text) {
    SetCellText(Cell(row, column), text);
}

void CDocxTable::CopyRowBelow(int row, int count, RowContent content) {
    XmlElement* model = Row(row);
    std::vector<XmlElement*> added;
    XmlNode* last = model;
    for (int i = 0; i < count; ++i) {
        last = InsertBehind(model->Parent(), last, CopyOfRow(model, content));
        m_document.NumberDrawings(last->ToElement());
        added.push_back(last->ToElement());
    }
    m_rows.insert(m_rows.begin() + row, added.begin(), added.end());
}

void CDocxTable::AddRow() {
    CopyRowBelow(RowCount(), 1, RowContent::Empty);
}

void CDocxTable::InsertRowsBelow(int row, int count) {
    CopyRowBelow(row, count, RowContent::Empty);
}

void CDocxTable::CopyRow(int row, int times) {
    CopyRowBelow(row, times, RowContent::Kept);
}

void CDocxTable::FinishRow(int row) {
    XmlElement* finished = Row(row);
    m_rows[static_cast<std::size_t>(row) - 1] = nullptr;
    // The document knows its bookmarks by their marks.
    if (!HoldsBookmarkMark(finished)) {
        MakeRaw(finished);
    }
}

void CDocxTable::AddPicture(int row, int column, const DocxPicture& picture, double width, double height) {
    InsertPictureOnTop(Cell(row, column), m_document.PictureRun(picture, width, height));
}
