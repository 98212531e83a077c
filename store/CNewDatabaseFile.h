// A database that grows beside its place and takes it only when it is complete, so that a crash, a full disk
// or a kill leaves the former file, or none.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "shell/CTemporaryTwin.h"
#include "shell/CUnixFile.h"

// Locks over a network ask for a descriptor that can write; a file that can't be written is locked as it is.
int OpenToLock(const std::string& hostPath, int flags);

class CNewDatabaseFile {
public:
    using Existing = CTemporaryTwin::Existing;

    // `target` is a host path. Throws CDbError if somebody else is making the same file.
    explicit CNewDatabaseFile(const std::string& target);
    // What hasn't taken its place is gone.
    ~CNewDatabaseFile();
    CNewDatabaseFile(const CNewDatabaseFile&) = delete;
    CNewDatabaseFile& operator=(const CNewDatabaseFile&) = delete;

    // Where the file is to be made: a host path in the target's folder, at which there is nothing yet.
    const std::string& Name() const { return m_name; }
    // Closed by then. With the mode, and with nothing of it in memory only. Throws CDbError.
    void Flush(mode_t mode) const;
    // Throws CDbError, also with Keep where a file has the name.
    void TakePlace(Existing existing);

private:
    // Keeps others from making the same file. Its own file is there only meanwhile, or after a crash.
    class CLock {
    public:
        explicit CLock(std::string hostPath);
        ~CLock();  // while it is still ours
        CLock(const CLock&) = delete;
        CLock& operator=(const CLock&) = delete;

    private:
        std::string m_path;
        std::optional<CUnixFile> m_file;
    };

    void Discard() const;
    std::string JournalName() const { return m_name + "-journal"; }
    void FlushFolder() const;

    std::string m_target;
    std::string m_name;
    CLock m_lock;
    bool m_placed = false;
};
