// The values that the section dialog offers for the next new section. They live in `config.ini` of the
// program folder from one run to the next; within a run they stay in memory.
#pragma once

#include <string>

// All as typed, in the order in which they stand in the file.
struct NewPipeDefaults {
    std::string SectionName;
    std::string StartLongitude;
    std::string StartLatitude;
    std::string EndLongitude;
    std::string EndLatitude;
    std::string TaskNo;
    std::string TaskName;
    std::string Place;
    std::string PipeDiameter;  // millimetres
    std::string PipeLength;    // metres
    std::string Company;
    std::string Tester;

    bool operator==(const NewPipeDefaults&) const = default;
};

// A missing file or key gives an empty text; a value is cut at 99 bytes of the code page.
NewPipeDefaults LoadNewPipeDefaults();
// False if the file can't be written; the former file stays then.
bool SaveNewPipeDefaults(const NewPipeDefaults& values);

// Those of the running program. They reach the file when it ends.
NewPipeDefaults GetNewPipeDefaults();
void SetNewPipeDefaults(const NewPipeDefaults& values);
