// Field folders as large as a benchmark needs them, and their import.
#pragma once

#include <functional>
#include <string>

class CBenchFolder;

// With a description "d.xml" and as many pictures as items.
void MakeFieldFolder(const CBenchFolder& folder, const std::string& name, int items);
// Makes "db/import.mdb" anew, for a first import: no picture of the folder has been copied yet. Former copies
// are put aside and not removed, since a file system is slow to give out places that have just become free.
std::function<void()> EmptyProject(const CBenchFolder& folder);
// Into that project.
std::function<void()> Import(const CBenchFolder& folder, const std::string& name);
