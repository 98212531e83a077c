// Workbooks of the older format .xls.
#pragma once

#include <string_view>

#include "fieldimport/CGpsRows.h"

// Whether the file begins as one.
bool IsXls(std::string_view bytes);
// Of the first sheet. The library that reads it gives booleans and amounts of money as numbers, and formulas
// as nothing. `path` is a path text. Throws CSheetError.
void ReadXlsSheet(std::string_view path, CGpsRows& rows);
