// The manhole positions that surveyors hand over as a workbook, .xlsx or .xls: the first sheet, from row 2
// on, with well number, longitude and latitude in the columns A to C, up to the first row without a well
// number.
#pragma once

#include <string_view>

#include "fieldimport/CGpsRows.h"

// `path` is a path text; what the file holds counts, not its ending. True on success; else a message names
// the file and the reason (3320), and `sheet` is empty. Numbers are texts with up to 12 decimals.
bool ReadGpsSheet(std::string_view path, GpsSheet& sheet);
