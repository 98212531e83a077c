// A table for people: columns aligned, also with Chinese text, which is two columns wide a character.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class CTextTable {
public:
    explicit CTextTable(std::vector<std::string> headings) { m_rows.push_back(std::move(headings)); }

    void Add(std::vector<std::string> row) { m_rows.push_back(std::move(row)); }
    // Numbers stand right in their column, texts left.
    void Print(std::ostream& out) const;

private:
    std::vector<std::vector<std::string>> m_rows;
};
