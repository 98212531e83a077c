// Sets the positions of manholes from a surveyor's sheet, and places the defects between them anew.
#pragma once

#include <cstdint>
#include <string_view>

class CDbRec;

struct GpsImport {
    std::int64_t Sections = 0;  // that have a manhole in the sheet
    std::int64_t Unread = 0;    // see GpsSheet
};

// Start and end manholes of all sections are looked up in the sheet, exactly; of a number that stands there
// more than once the last row counts. What isn't a number counts 0. A crash or a full disk leaves all of it
// in the project or nothing. False if nothing was changed; boxes: 2185 no project open, that of ReadGpsSheet,
// 2186 sections can't be read, and those of UpdateTesting and RecalcRecordGps.
bool ImportGpsSheet(CDbRec& database, std::string_view path, GpsImport& result);
// 2187 with the number of sections, and a message if rows of the sheet weren't read.
void TellGpsImport(const GpsImport& result);
