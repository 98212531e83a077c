// Where an operator finds what the program makes for him: in the folder "Drovane" among his documents.
#pragma once

#include <functional>
#include <string>
#include <string_view>

class CUnixFile;

// A path text with its trailing "\": the folder that the desktop names in user-dirs.dirs, or "Documents" in
// the home folder. It needn't exist.
std::string GetDocumentsFolder();

// The program's own folder among the user's settings, a path text with its trailing "\"; empty if there can be
// none. It needn't exist.
std::string GetSettingsFolder();

// `title` as the beginning of a file name, together with `ending` (".xlsx") at most 200 bytes: characters
// that one file system or another doesn't take are "_". What it gives is never hidden and never empty.
std::string MakeDocumentName(std::string_view title, std::string_view ending);

// Writes the document and gives its path text, empty if it can't be written. Nothing that is there is
// touched: a taken name is followed by " (2)", " (3)" and so on.
std::string WriteDocument(std::string_view title, std::string_view ending, std::string_view bytes);
// The same for what is too large for memory, as CHostFiles::WriteFile.
std::string WriteDocument(std::string_view title, std::string_view ending,
                          const std::function<bool(const CUnixFile&)>& write);
