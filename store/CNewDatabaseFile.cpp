#include "store/CNewDatabaseFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>

#include "shell/sweeptwins.h"
#include "store/CDbError.h"

namespace {

namespace fs = std::filesystem;

bool Names(const std::string& hostPath, const struct stat& state) {
    struct stat named {};
    return stat(hostPath.c_str(), &named) == 0 && named.st_ino == state.st_ino &&
           named.st_dev == state.st_dev;
}

// What stands beside a target while it is made. The target's own name need not fit with an addition, so it
// is told by a number made from it (FNV-1a); targets that share one wait for each other and lose nothing.
std::string NameBeside(const std::string& target) {
    const fs::path path(target);
    std::uint64_t number = 0xCBF29CE484222325U;
    for (const char letter : path.filename().string()) {
        number = (number ^ static_cast<unsigned char>(letter)) * 0x100000001B3U;
    }
    std::string name = ".drovane-";
    for (int shift = 60; shift >= 0; shift -= 4) {
        name += "0123456789abcdef"[(number >> shift) & 15U];
    }
    return (path.parent_path() / name).string();
}

}  // namespace

int OpenToLock(const std::string& hostPath, int flags) {
    const int descriptor = open(hostPath.c_str(), O_RDWR | O_CLOEXEC | flags, 0644);
    return descriptor >= 0 ? descriptor : open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | flags, 0644);
}

CNewDatabaseFile::CLock::CLock(std::string hostPath) : m_path(std::move(hostPath)) {
    for (;;) {
        m_file.emplace(OpenToLock(m_path, O_CREAT | O_NOFOLLOW | O_NONBLOCK));
        struct stat state {};
        if (!m_file->IsOpen() || flock(m_file->Descriptor(), LOCK_EX | LOCK_NB) != 0 ||
            !m_file->State(state)) {
            throw CDbError("the new file is being made by somebody else, or can't be made there");
        }
        if (Names(m_path, state)) {
            return;
        }
        // Its owner removed it between our opening and locking.
    }
}

CNewDatabaseFile::CLock::~CLock() {
    unlink(m_path.c_str());
}

CNewDatabaseFile::CNewDatabaseFile(const std::string& target)
    : m_target(target), m_name(NameBeside(target) + ".new"), m_lock(NameBeside(target) + ".lock") {
    SweepTwins(fs::path(m_target).parent_path().string());
    Discard();  // what a process left that was cut off
}

CNewDatabaseFile::~CNewDatabaseFile() {
    if (!m_placed) {
        Discard();
    }
}

void CNewDatabaseFile::Flush(mode_t mode) const {
    const CUnixFile file(m_name, O_RDONLY);
    if (!file.IsOpen() || fchmod(file.Descriptor(), mode) != 0 || fsync(file.Descriptor()) != 0) {
        throw CDbError("the new file isn't on the disk");
    }
    unlink(JournalName().c_str());  // empty; of the first steps, before there was a mode without it
}

void CNewDatabaseFile::TakePlace(Existing existing) {
    FlushFolder();
    if (!CTemporaryTwin::Rename(m_name, m_target, existing)) {
        throw CDbError("the new file can't take its place");
    }
    m_placed = true;
    FlushFolder();
}

void CNewDatabaseFile::Discard() const {
    unlink(m_name.c_str());
    unlink(JournalName().c_str());
}

void CNewDatabaseFile::FlushFolder() const {
    const CUnixFile folder(fs::path(m_target).parent_path().string(), O_RDONLY);
    if (folder.IsOpen()) {
        fsync(folder.Descriptor());
    }
}
