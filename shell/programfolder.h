// How a program comes up in its folder, and how it takes paths from a command line.
#pragma once

#include <filesystem>
#include <string>

// The folder of the running program's file.
std::filesystem::path ExecutableFolder();

// Makes `folder` the program folder, and enters it, since resource paths are relative to it. Throws
// std::runtime_error if the program can't run there.
void EnterProgramFolder(const std::filesystem::path& folder);

// An absolute path text: "/a/b", "a/b", "\a\b" and "D:\a" are all taken. `startFolder` is where the user
// stood. Throws std::runtime_error for a name of this machine that holds a backslash.
std::string PathFromArgument(const std::filesystem::path& startFolder, const std::string& argument);
