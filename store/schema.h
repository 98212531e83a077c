// The tables of a database file.
#pragma once

#include <string_view>

class CDbBase;

// Makes the five tables, empty but for the one row of `Attrib` that carries the standard's name.
// Throws CDbError.
void CreateSchema(CDbBase& database, std::string_view criterionName);
