// How a file of the user is replaced: its new version grows beside it under a name of its own and takes
// the place only when it is complete, so that a crash leaves either the old file or the new one. Where the
// file system can, it has no name until then, and a killed process leaves nothing.
#pragma once

#include <string>
#include <string_view>

#include "shell/CUnixFile.h"

class CProgress;

// Vanishes unless it takes the target's place.
class CTemporaryTwin {
public:
    CTemporaryTwin(const std::string& target, mode_t mode);
    ~CTemporaryTwin();
    CTemporaryTwin(const CTemporaryTwin&) = delete;
    CTemporaryTwin& operator=(const CTemporaryTwin&) = delete;

    // Not open if it could not be made.
    const CUnixFile& File() const { return m_file; }
    bool Write(std::string_view bytes);
    // Long copies tell where they stand; one that `progress` stops fails.
    bool CopyFrom(const CUnixFile& source, CProgress& progress);
    bool SetTime(const timespec& modification);
    enum class Existing { Replace, Keep };
    // With `flush` the new version has reached the disk before the old one goes. False, with Keep, if a file
    // of the name has come into being meanwhile.
    bool TakePlace(bool flush, Existing existing = Existing::Replace);
    // In one step, on file systems that can't rename without replacing too. Flushes nothing.
    static bool Rename(const std::string& from, const std::string& to, Existing existing);

private:
    void Discard();
    bool GiveName();

    std::string m_target;
    std::string m_name;  // empty while it has none
    CUnixFile m_file;
};
