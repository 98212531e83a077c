// The report generator: makes the document of the standard whose reports are made apart from the program,
// from the data file that the program leaves beside the generator.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

// `words`: what was said behind the program's name; `startFolder`: where the user stood. `ownFolder` holds
// the generator and the data file, and lies in the program folder. Returns the exit code: 0 if the document
// is written, else 1 with a line on `err`, and then what stood under the document's name is as it was.
int RunDocxGenerator(const std::vector<std::string>& words, const std::filesystem::path& startFolder,
                     const std::filesystem::path& ownFolder, std::ostream& err);
