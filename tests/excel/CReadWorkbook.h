// Reads a workbook with a library that has nothing in common with the one that writes it (openpyxl).
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

struct ReadCell {
    std::string Formula;
    std::string Text;    // of a text, or the last value of a formula
    std::string Number;  // as few digits as tell it
    std::string Format;  // of a number
    bool operator==(const ReadCell&) const = default;
};

class CReadWorkbook {
public:
    // Adds test failures for what can't be opened.
    explicit CReadWorkbook(const std::filesystem::path& file);

    // By its name such as "AG3"; empty if there is none.
    ReadCell Cell(const std::string& name) const;
    std::vector<std::string> Formulas() const;  // names of their cells, row by row

    std::string Name;
    int Rows = 0;
    std::string Frozen;                    // the first cell that scrolls
    std::string Filter;                    // the cells that it filters
    std::map<std::string, double> Widths;  // in letters, by column

private:
    std::map<std::string, ReadCell> m_cells;
};
