// Writes the inspection table as a workbook. No office program is asked.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The formula of a cell that leads to the file. Nothing for a path that no formula can name: one with control
// characters, with bytes that are no text, or too long.
std::optional<std::string> LinkFormula(std::string_view path);

// The decimals of a text that a spreadsheet can keep as a number and show as that very text; -1 for any
// other.
int ShownDecimals(std::string_view text);

// `list` as BuildInspectionTable makes it; a rest shorter than a row is dropped. The bytes of the file, or
// nothing if it can't be made: no temporary space, or more rows than a sheet has.
std::optional<std::string> MakeWorkbook(const std::vector<std::string>& list, const std::string& sheetName);
