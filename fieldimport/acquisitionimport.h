// Makes a section, with its defect records or its sonar data, out of a field folder.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/CLineSink.h"

class CDbRec;

// `path` is the path text of the folder's acquisition description, with its full path, or of a sonar
// description there, which names the other one: the section comes without records then, and the project keeps
// the sonar description (store/sonar.h). True if the section
// is in the project afterwards; records that the project refuses are passed over. A description that can't
// be read says why in a line and shows no box. Boxes: 2185 no project open, 2189 a section between these
// manholes exists, 2013 sections can't be read, 2007 the section can't be stored, and those of AddTesting
// and AddRecord.
//
// A crash or a full disk leaves all of the import in the project or nothing.
//
// `notes`, if wanted, gets a line for each item that was refused, with the reason, and for each value that
// was taken as another one by the conversions below: a number that ends before the text does, an hour or
// grade beyond a byte. A sonar description that could not be kept is refused, too; the section stays.
struct ImportNotes {
    std::vector<std::string> Refused;
    std::vector<std::string> Converted;
    std::vector<std::int32_t> ConvertedRecords;  // of which record each is
    std::int32_t Section = -1;                   // that was made, or was there already
    std::string Label;                           // of that section
};
bool ImportAcquisition(CDbRec& database, std::string_view path, const CLineSink& sink,
                       ImportNotes* notes = nullptr);
