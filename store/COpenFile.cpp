#include "store/COpenFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <optional>
#include <set>

#include "shell/CUnixFile.h"

namespace {

// Where the engine locks its files: the bytes of its pending, reserved and shared locks.
constexpr off_t LockByte = 0x40000000;
constexpr off_t LockBytes = 512;

using Key = std::pair<dev_t, ino_t>;

std::set<Key>& OpenKeys() {
    static std::set<Key> keys;
    return keys;
}

std::optional<Key> KeyOf(const std::string& hostPath) {
    struct stat state {};
    if (stat(hostPath.c_str(), &state) != 0 || !S_ISREG(state.st_mode)) {
        return std::nullopt;
    }
    return Key(state.st_dev, state.st_ino);
}

}  // namespace

bool COpenFile::Claim(const std::string& hostPath) {
    Release();
    const std::optional<Key> key = KeyOf(hostPath);
    if (!key || !OpenKeys().insert(*key).second) {
        return false;
    }
    m_key = *key;
    m_claimed = true;
    return true;
}

void COpenFile::Release() {
    if (m_claimed) {
        OpenKeys().erase(m_key);
        m_claimed = false;
    }
}

bool COpenFile::IsAt(const std::string& hostPath) const {
    const std::optional<Key> key = KeyOf(hostPath);
    return m_claimed && key && *key == m_key;
}

bool COpenFile::IsHeld(const std::string& hostPath) {
    if (IsOpen(hostPath)) {
        return true;  // closing a descriptor here would take the lock away
    }
    const CUnixFile file(hostPath, O_RDWR | O_NONBLOCK);
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = LockByte;
    lock.l_len = LockBytes;
    return file.IsOpen() && fcntl(file.Descriptor(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

bool COpenFile::IsOpen(const std::string& hostPath) {
    const std::optional<Key> key = KeyOf(hostPath);
    return key && OpenKeys().contains(*key);
}
