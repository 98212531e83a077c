// A whole project as one JSON document, and the way back into a project: for scripts, for moving sections
// between projects, and as a backup that outlives every database format.
//
//   {"attributes": {...}, "sections": [{..., "records": [{..., "Pictures": [...]}]}],
//    "recordsWithoutSection": [...]}
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class CDbRec;

// Gives the document piece by piece. False, with nothing given, if something can't be read; its message was
// shown.
bool DumpProject(CDbRec& database, const std::function<void(std::string_view)>& sink);

struct LoadResult {
    bool Done = false;  // false: nothing was stored, message 2007 was shown
    std::int32_t SectionsAdded = 0;
    std::int32_t RecordsAdded = 0;
    // What the database's own rules refused, by its place in the document. The messages were shown.
    std::vector<std::string> Refused;
};

// Adds the sections and records of a document; IDs and places in the order are given anew, attributes stay
// those of the project. The whole document is checked before anything is written: a wrong type or an
// unknown field throws std::runtime_error with its place.
LoadResult LoadProject(CDbRec& database, std::string_view json);
