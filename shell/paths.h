// The program's folders and pure text operations on paths. Inside the system, in databases and in
// files a path is a text with "\" as separator, on every platform; CHostFiles leads from there to
// files of this machine.
#pragma once

#include <string>
#include <string_view>

// The folder of the program, with its trailing "\". Set once at start-up, before anything else runs;
// tests set their own.
void SetAppFolder(std::string_view folder);
std::string GetAppFolder();

std::string GetDbFolder();
std::string GetCriterionFolder();
std::string GetLanguageFolder();
std::string GetMapScriptPath();
// Copies of the pictures of all records read, from where the report generator takes them.
std::string GetReportImageFolder();

std::string GetFileName(std::string_view path);
// The file name without its extension; a point at the first place begins no extension.
std::string GetFileTitle(std::string_view path);
std::string GetFileExtension(std::string_view path);  // without the point
// `extension` with its point; it is appended unless the path ends in it, case ignored.
std::string WithExtension(std::string_view path, std::string_view extension);
// With its trailing "\"; empty if the path has no parent. "/" counts as "\".
std::string GetParentFolder(std::string_view path);
// "_original" goes before the last point of the whole path, to the front if there is none.
std::string MakeOriginalPath(std::string_view path);
// Keeps the first version of a picture: never overwrites an earlier twin, and a failure is silent.
void BackupOriginal(std::string_view path);
