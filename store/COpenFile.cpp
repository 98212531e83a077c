#include "store/COpenFile.h"

#include <sys/stat.h>

#include <optional>
#include <set>

namespace {

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

bool COpenFile::IsOpen(const std::string& hostPath) {
    const std::optional<Key> key = KeyOf(hostPath);
    return key && OpenKeys().contains(*key);
}
