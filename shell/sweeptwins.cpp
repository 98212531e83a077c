#include "shell/sweeptwins.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <string_view>
#include <vector>

#include "shell/CUnixFile.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Prefix = ".drovane-";
constexpr std::string_view Lock = ".lock";
constexpr std::size_t TwinLetters = 6;
constexpr std::size_t LockLetters = 16;
// Between making a file and locking it a process must not lose it.
constexpr std::time_t LeastAge = 60;

bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return c < 128 && std::isalnum(c) != 0; });
}

bool IsTwin(std::string_view name) {
    return name.size() == Prefix.size() + TwinLetters && name.starts_with(Prefix) &&
           IsPlain(name.substr(Prefix.size()));
}

bool IsLock(std::string_view name) {
    return name.size() == Prefix.size() + LockLetters + Lock.size() && name.starts_with(Prefix) &&
           name.ends_with(Lock) && IsPlain(name.substr(Prefix.size(), LockLetters));
}

// Only while nobody else holds it.
void Remove(const fs::path& path, const std::vector<fs::path>& guarded) {
    const CUnixFile file(path.string(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct stat state {};
    if (!file.IsOpen() || !file.State(state) || !S_ISREG(state.st_mode) ||
        std::time(nullptr) - state.st_mtime < LeastAge || flock(file.Descriptor(), LOCK_EX | LOCK_NB) != 0) {
        return;
    }
    for (const fs::path& other : guarded) {
        unlink(other.c_str());
    }
    unlink(path.c_str());
}

}  // namespace

void SweepTwins(const std::string& folder) {
    std::error_code error;
    std::vector<fs::path> found;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename().string();
        if (IsTwin(name) || IsLock(name)) {
            found.push_back(at->path());
        }
    }
    for (const fs::path& path : found) {
        if (const std::string name = path.string(); name.ends_with(Lock)) {
            const std::string made = name.substr(0, name.size() - Lock.size()) + ".new";
            Remove(path, {made, made + "-journal"});
        } else {
            Remove(path, {});
        }
    }
}
