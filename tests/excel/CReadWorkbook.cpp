#include "tests/excel/CReadWorkbook.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <tuple>

CReadWorkbook::CReadWorkbook(const std::filesystem::path& file) {
    const std::string command =
        DROVANE_PYTHON " '" DROVANE_TEST_FILES "/read_workbook.py' '" + file.string() + "'";
    FILE* output = popen(command.c_str(), "r");
    const auto book = nlohmann::json::parse(output, nullptr, false);
    if (pclose(output) != 0 || !book.is_object()) {
        ADD_FAILURE() << file << " can't be read, or the package python3-openpyxl isn't there";
        return;
    }
    Name = book.at("name");
    Rows = book.at("rows");
    Frozen = book.at("frozen");
    Filter = book.at("filter");
    Widths = book.at("widths");
    for (const auto& [name, cell] : book.at("cells").items()) {
        m_cells[name] = {cell.value("formula", ""), cell.value("text", ""), cell.value("number", ""),
                         cell.value("format", "")};
    }
}

ReadCell CReadWorkbook::Cell(const std::string& name) const {
    const auto found = m_cells.find(name);
    return found == m_cells.end() ? ReadCell() : found->second;
}

std::vector<std::string> CReadWorkbook::Formulas() const {
    std::vector<std::string> names;
    for (const auto& [name, cell] : m_cells) {
        if (!cell.Formula.empty()) {
            names.push_back(name);
        }
    }
    const auto place = [](const std::string& name) {
        const std::size_t digits = name.find_first_of("0123456789");
        return std::tuple(std::stoi(name.substr(digits)), digits, name);
    };
    std::sort(names.begin(), names.end(),
              [&](const std::string& a, const std::string& b) { return place(a) < place(b); });
    return names;
}
