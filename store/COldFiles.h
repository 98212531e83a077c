// What opening and listing ask about files of the older engine. Those who know such files stand above this
// room and install themselves here; a program without them takes such a file for a damaged one.
#pragma once

#include <cstdint>
#include <string_view>

#include "store/records/records.h"

// What a listing shows of such a file, read without changing it.
struct OldFileListing {
    bool Stopped = false;       // the operator didn't want to wait; nothing else is known then
    int OpenFailure = 0;        // 0, or the message with which opening it fails: 2000 or 2002
    int ReadFailure = 0;        // 0, or the message with which reading its attributes fails
    _PRO_DATA Attributes;       // without its path
    std::int32_t Records = -1;  // of the whole project; below 0 if they can't be counted
};

// Paths are path texts.
class COldFiles {
public:
    COldFiles() = default;
    virtual ~COldFiles() = default;
    COldFiles(const COldFiles&) = delete;
    COldFiles& operator=(const COldFiles&) = delete;

    // Whether a file is of the older engine. A database that this process has open isn't looked at: no.
    virtual bool IsOld(std::string_view path) = 0;
    // Before a database is opened to work on: if it is of the older engine, asks (3200) and converts it in
    // place. False if it isn't to be opened then; the reason has been told.
    virtual bool PrepareToOpen(std::string_view path, std::string_view password) = 0;
    // Shows no message.
    virtual OldFileListing List(std::string_view path, std::string_view password) = 0;
    // Makes a database of this engine at `target`, where nothing may be. Failure shows its message.
    virtual bool ConvertTo(std::string_view path, std::string_view target, std::string_view password) = 0;
    // Around a listing of many files: what was read is remembered at its end, and not after each.
    virtual void BeginListing() = 0;
    virtual void EndListing() = 0;
};

COldFiles& OldFiles();

// Installs `files`, and puts back what was there when it ends. `files` must live until then.
class COldFilesScope {
public:
    explicit COldFilesScope(COldFiles& files);
    ~COldFilesScope();
    COldFilesScope(const COldFilesScope&) = delete;
    COldFilesScope& operator=(const COldFilesScope&) = delete;

private:
    COldFiles* m_former;
};
