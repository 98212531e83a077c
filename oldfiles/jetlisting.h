// What listings show of files of the older engine: read from the files as they are, without changing them.
//
// Reading one takes a process and a while, so what was read is remembered by path, size and time of the file,
// also for the next start of the program (docs/files.md tells where).
#pragma once

#include <string_view>

#include "store/COldFiles.h"

// Shows no message. Reports to Progress() from half a second on.
OldFileListing ListOldDatabase(std::string_view path, std::string_view password);

// Around listings of many files: what was read is remembered in memory only, and stored at the end of the
// outermost one.
void BeginOldListing();
void EndOldListing();
