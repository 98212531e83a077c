// The inspection table of a project: one row a record, and behind the records of a section one row of the
// section alone. So a section without records has a row too.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class CDbRec;

inline constexpr int InspectionColumns = 33;

// What a column holds. All cells are texts; a number is one that is to be shown as this text.
enum class CellKind { Text, Centred, Number, Link };
CellKind InspectionKind(int column);

// A cell that leads to a file: '=HYPERLINK("', its path on this machine, and '")'. Not yet a formula, since
// the path stands as it is, quotes and all.
std::string LinkCell(std::string_view path);
std::optional<std::string_view> LinkPath(std::string_view cell);

// One flat list, row by row; the first row holds the headings. Links name files as they are really spelt, and
// nothing where there is no video or picture; the row of a section has none to pictures. Returns the columns
// of a row, or 0 if the project can't be read; the message was shown.
int BuildInspectionTable(CDbRec& database, std::vector<std::string>& list);
