// Some standards have their document made by a program of its own, "word\DocxGenerator" in the program
// folder, from the data file "config.xml" beside it, the lists "_lists.json", which tell what that file
// can't, and the map picture "_map.png"; of the last two those that are no older. It is given copies of these
// files in the folder of its own run, since those beside it are of whichever report was made last.
#pragma once

#include <string>
#include <string_view>

class CRecExport;
class CReportRun;

bool UsesGenerator(std::string_view criterionName);

inline constexpr const char* DataFileName = "config.xml";
inline constexpr const char* ListsFileName = "_lists.json";
inline constexpr const char* MapFileName = "_map.png";

// Both save the report that was gathered as the data file first; a message is shown if that fails or if the
// generator can't be started. `documentPath` is a path text.

// Doesn't wait: the generator may take its time. If it fails while the program still runs, a message comes.
// The generator removes the run's folder.
bool StartGenerator(const CRecExport& project, CReportRun& run, std::string_view documentPath);
// Waits for it and gives its exit code, 0 for a document that is done. What ends it otherwise counts as 1.
int RunGenerator(const CRecExport& project, const CReportRun& run, std::string_view documentPath);
