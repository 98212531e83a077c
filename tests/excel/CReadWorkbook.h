// Reads a workbook as a spreadsheet does: by the XML of its parts.
#pragma once

#include <map>
#include <string>

struct ReadCell {
    std::string Formula;
    std::string Text;    // of a text, or the last value of a formula
    std::string Number;  // as it stands in the file
    std::string Format;  // of a number
    bool operator==(const ReadCell&) const = default;
};

class CReadWorkbook {
public:
    // Adds test failures for what no spreadsheet would open.
    explicit CReadWorkbook(const std::string& bytes);

    std::string Part(const std::string& name) const;
    // By its name such as "AG3"; empty if there is none.
    ReadCell Cell(const std::string& name) const;
    int Rows() const { return m_rows; }
    int Formulas() const { return m_formulas; }

private:
    void ReadFormats();
    void ReadCells();

    std::map<std::string, std::string> m_parts;
    std::map<int, std::string> m_formats;  // by the style of a cell
    std::map<std::string, ReadCell> m_cells;
    int m_rows = 0;
    int m_formulas = 0;
};
