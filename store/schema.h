// The tables of a database file.
#pragma once

#include <span>
#include <string_view>

class CDbBase;

struct SchemaColumn {
    const char* Name;
    const char* Declaration;  // type and rules, as a statement takes them
};

struct SchemaTable {
    const char* Name;
    std::span<const SchemaColumn> Columns;
};

std::span<const SchemaTable> SchemaTables();
// Of the table `Record`.
inline constexpr const char* RecordIndex = "CREATE INDEX RecordOfTesting ON Record (TestingID)";

// Makes the five tables, empty but for the one row of `Attrib` that carries the standard's name.
// Throws CDbError.
void CreateSchema(CDbBase& database, std::string_view criterionName);
