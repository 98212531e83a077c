// Small documents and pictures for tests, and a word processor as an independent reader of them.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// A document or template with this body and nothing else.
std::string MakeDocument(const std::string& body, bool isTemplate = true);
std::string MakeTable(const std::string& rows);
// The parts of a package.
std::map<std::string, std::string> PartsOf(const std::string& bytes);
int CountOf(const std::string& text, const std::string& part);

// 24 bits a pixel, in one colour.
std::string MakeBitmap(int width, int height, int colour);

// Empty if LibreOffice isn't there.
std::string FindWordProcessor();
// A strict validator of office documents, which ./test installs where node is; empty without it.
std::string FindValidator();
// True if it finds nothing wrong with the file.
bool IsValid(const std::filesystem::path& file);
// Converts a file of this machine into `folder`. Returns whether the new file is there: the program's exit
// code doesn't tell.
bool Convert(const std::filesystem::path& file, const std::string& format,
             const std::filesystem::path& folder);
