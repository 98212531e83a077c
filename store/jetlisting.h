// What listings show of files of the older engine: read from the files as they are, without changing them.
//
// Reading one takes a process and a while, so what was read is remembered by path, size and time of the file,
// also for the next start of the program (docs/files.md tells where).
#pragma once

#include <cstdint>
#include <string_view>

#include "store/records/records.h"

struct JetListed {
    bool Stopped = false;       // the operator didn't want to wait; nothing else is known then
    int OpenFailure = 0;        // 0, or the message with which opening it fails: 2000 or 2002
    int ReadFailure = 0;        // 0, or the message with which reading its attributes fails
    _PRO_DATA Attributes;       // without its path
    std::int32_t Records = -1;  // of the whole project; below 0 if they can't be counted
};

// Shows no message. Reports to Progress() from half a second on.
JetListed ListOldDatabase(std::string_view path, std::string_view password);
void ShowOldDatabaseFailure(int number, std::string_view path);

// While one lives, what was read is remembered in memory only; when the last one goes it is stored. For
// listings of many files.
class CJetListingScope {
public:
    CJetListingScope();
    ~CJetListingScope();
    CJetListingScope(const CJetListingScope&) = delete;
    CJetListingScope& operator=(const CJetListingScope&) = delete;
};
