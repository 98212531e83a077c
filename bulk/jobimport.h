// Takes the field folders of a whole job into a project, and tells of each what became of it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CDbRec;
class CProgress;

struct ImportLine {
    enum class Kind {
        Taken,
        Known,    // a section between these manholes is there already
        Refused,  // the file, or one of its records
        Missing,  // a value that the description leaves out, or a file that it names
        Changed,  // a value that was taken as another one
    };
    Kind What = Kind::Taken;
    std::string File;  // path text of the description
    std::int32_t Section = -1;
    std::int32_t Record = -1;
    std::string Text;  // the reason
};

struct ImportJobResult {
    std::vector<ImportLine> Lines;  // file by file
    int Taken = 0;                  // files
    int Known = 0;
    int Refused = 0;  // files, also those of which a record was
    bool Stopped = false;
    bool Begun = true;  // or the operator doesn't go on without a restore point
};

// The descriptions in a folder and below it, in the order of their paths. Of a sonar run's two the one that
// names the other. Folders whose names begin with "." are left out.
std::vector<std::string> FindDescriptions(std::string_view folder);

// Whether what an import shows in boxes is shown, or only told in the lines.
enum class ImportBoxes { Kept, Shown };

// One step of the journal, and one restore point before it if there are several files. Each file is taken
// whole or not at all, so what was taken before a stop, or a crash, stays: a second run takes the rest.
ImportJobResult ImportJob(CDbRec& database, const std::vector<std::string>& files, CProgress& progress,
                          ImportBoxes boxes = ImportBoxes::Kept);

// The lines as a text, a line each with its columns parted by tabs.
std::string ImportLinesText(const std::vector<ImportLine>& lines);
// In the language of the program.
std::string ImportKindText(ImportLine::Kind kind);
