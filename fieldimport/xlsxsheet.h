// Workbooks of the format .xlsx.
#pragma once

#include <string_view>

#include "fieldimport/CGpsRows.h"

// `bytes` is the whole file. The first worksheet of the workbook's list counts, whatever its part is called.
// A formula has the value that was stored with it; a number that is shown as a date or an amount of money
// gives no text, as do booleans and errors; what is written above a text to tell its sound isn't part of it.
// Throws CSheetError, and COoxmlError for what isn't an archive or isn't as it should be.
void ReadXlsxSheet(std::string_view bytes, CGpsRows& rows);
