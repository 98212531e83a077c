// A table of an open document. Rows and columns are counted from 1; a column is a cell of its row, so a
// merged cell counts once. What doesn't exist throws COoxmlError with the table's name in it.
//
// Keeps its own list of rows, so that thousands of rows cost no search: use one object a table at a time. It
// lives no longer than its document and, for a form, until the next is pasted.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reports/ooxml/wordtext.h"

class CDocx;
struct DocxPicture;

class CDocxTable {
public:
    CDocxTable(CDocx& document, XmlElement* table, std::string name);

    int RowCount() const { return static_cast<int>(m_rows.size()); }
    int CellCount(int row) const;
    // Paragraphs and line breaks as "\n".
    std::string CellText(int row, int column) const;
    // Keeps the look of what stood there. "\n" is a line break, "\r\n" begins a paragraph.
    void SetCell(int row, int column, std::string_view text);

    // At the end, empty, in the form of the last row.
    void AddRow();
    // Empty, in the form of that row.
    void InsertRowsBelow(int row, int count);
    // With what stands in the row.
    void CopyRow(int row, int times);
    // Keeps the filled row as text, in a tenth of the memory; whoever asks for it again gets COoxmlError.
    // Tables that may grow long add each row just before the one above it is filled and finished.
    void FinishRow(int row);

    // Above the cell's text. Points.
    void AddPicture(int row, int column, const DocxPicture& picture, double width, double height);

private:
    XmlElement* Row(int row) const;
    XmlElement* Cell(int row, int column) const;
    void CopyRowBelow(int row, int count, RowContent content);

    CDocx& m_document;
    std::string m_name;
    std::vector<XmlElement*> m_rows;  // null are those that are finished
};
