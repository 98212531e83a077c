// Statements are texts. What goes into one passes through the rules here, and what comes out is brought
// into the dialect of the engine in one place.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Puts the values, in order, in the places of "%s", "%d" and "%ld".
std::string FormatSql(std::string_view statement, const std::vector<std::string>& values);

// `'` is doubled and nothing else happens: case and slashes stay. A text ends at its first zero character.
std::string EscapeSqlText(std::string_view text);
// For texts that stand in double quotes in a statement: `"` is doubled, so that a code is a value whatever it
// holds. A text ends at its first zero character.
std::string EscapeSqlQuoted(std::string_view text);
// A name of a table or column in double quotes, as statements in the engine's own dialect take it.
std::string QuoteSqlName(std::string_view name);
// For the picture and video paths of records: lower case, "\" as separator, then as EscapeSqlText.
std::string EscapeSqlPath(std::string_view path);
// Distances and times with 3 decimals, positions with 12. What isn't finite stands as a quoted text that
// reading takes back ("NaN", "Infinity", "-Infinity").
std::string SqlDistance(double metresOrSeconds);
std::string SqlCoordinate(double degrees);

// From the dialect of the statements (double quotes hold texts too) to the engine's. Anything but exactly
// one statement throws CDbError.
std::string TranslateSql(std::string_view statement);
