// Some standards have their document made by a program of its own, "word\DocxGenerator" in the program
// folder, from the data file "config.xml" beside it and the map picture "_map.png", if there is one that is
// no older.
#pragma once

#include <string>
#include <string_view>

class CRecExport;

bool UsesGenerator(std::string_view criterionName);

// Both save the report that was gathered as the data file first; a message is shown if that fails or if the
// generator can't be started. `documentPath` is a path text.

// Doesn't wait: the generator may take its time. If it fails while the program still runs, a message comes.
bool StartGenerator(const CRecExport& project, std::string_view documentPath);
// Waits for it and gives its exit code, 0 for a document that is done. What ends it otherwise counts as 1.
int RunGenerator(const CRecExport& project, std::string_view documentPath);
