// What can stand in the cells of a workbook, and how.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// As the text of a cell: control characters in the form "_x0001_", U+FFFD for what no text can hold, and cut
// where no cell is longer.
void AppendCellText(std::string& xml, std::string_view text);

// The formula of a cell that leads to the file. Nothing for a path that no formula can name: one with control
// characters, with bytes that are no text, or too long.
std::optional<std::string> LinkFormula(std::string_view path);

// Of a number that a spreadsheet keeps to the last digit.
inline constexpr std::size_t SureDigits = 15;
// The decimals of a text that a spreadsheet can keep as a number and show as that very text, at most
// SureDigits - 1; -1 for any other.
int ShownDecimals(std::string_view text);
