#include "shell/CTemporaryTwin.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include "shell/CProgress.h"

namespace {

constexpr std::int64_t FlushStep = 64 << 20;

// The target's own name need not fit with an addition, so the twin has a short one.
std::string TwinPattern(const std::string& target) {
    return target.substr(0, target.rfind('/') + 1) + ".drovane-XXXXXX";
}

std::string LinkOf(const CUnixFile& file) {
    return "/proc/self/fd/" + std::to_string(file.Descriptor());
}

// Nothing is left of a file without a name, whatever becomes of the process. Not every file system has them.
int OpenUnnamed(const std::string& target) {
    const std::size_t slash = target.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
    return open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
}

}  // namespace

CTemporaryTwin::CTemporaryTwin(const std::string& target, mode_t mode)
    : m_target(target), m_file(OpenUnnamed(target)) {
    if (!m_file.IsOpen() || access(LinkOf(m_file).c_str(), F_OK) != 0) {
        m_name = TwinPattern(target);
        m_file.Take(mkostemp(m_name.data(), O_CLOEXEC));
    }
    if (m_file.IsOpen() &&
        (flock(m_file.Descriptor(), LOCK_EX | LOCK_NB) != 0 || fchmod(m_file.Descriptor(), mode) != 0)) {
        Discard();
    }
}

CTemporaryTwin::~CTemporaryTwin() {
    Discard();
}

void CTemporaryTwin::Discard() {
    if (m_file.IsOpen()) {
        m_file.Close();
        if (!m_name.empty()) {
            unlink(m_name.c_str());
        }
    }
}

// A name to rename from, which is all that can replace a file in one step.
bool CTemporaryTwin::GiveName() {
    if (!m_name.empty()) {
        return true;
    }
    const std::string source = LinkOf(m_file);
    std::random_device random;
    constexpr int Tries = 100;
    for (int i = 0; i < Tries; ++i) {
        std::string name = TwinPattern(m_target);
        for (auto at = name.end() - 6; at != name.end(); ++at) {
            *at = "0123456789abcdefghijklmnopqrstuvwxyz"[random() % 36];
        }
        if (linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            m_name = name;
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

bool CTemporaryTwin::Write(std::string_view bytes) {
    return m_file.IsOpen() && m_file.WriteAll(bytes);
}

bool CTemporaryTwin::CopyFrom(const CUnixFile& source, CProgress& progress) {
    struct stat state {};
    const std::int64_t total = source.State(state) ? state.st_size : 0;
    std::int64_t done = 0;
    std::int64_t flushed = 0;
    std::vector<char> buffer(1 << 18);
    for (;;) {
        progress.At(done, total, {});
        if (progress.Stopped()) {
            return false;
        }
        const ssize_t got = read(source.Descriptor(), buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return got == 0 && m_file.IsOpen();
        }
        if (!Write(std::string_view(buffer.data(), static_cast<std::size_t>(got)))) {
            return false;
        }
        done += got;
        // In steps, so that the last flush of a video of many gigabytes isn't a wait without a sign of life.
        if (done - flushed >= FlushStep) {
            flushed = done;
            (void)fdatasync(m_file.Descriptor());
        }
    }
}

bool CTemporaryTwin::SetTime(const timespec& modification) {
    const timespec times[2] = {{0, UTIME_OMIT}, modification};
    return futimens(m_file.Descriptor(), times) == 0;
}

bool CTemporaryTwin::Rename(const std::string& from, const std::string& to, Existing existing) {
    const unsigned int mode = existing == Existing::Keep ? RENAME_NOREPLACE : 0;
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), mode) == 0) {
        return true;
    }
    if (mode == 0 || (errno != EINVAL && errno != ENOSYS)) {
        return false;
    }
    // A second name never replaces a file either. If the first one stays, nothing is lost by it.
    if (link(from.c_str(), to.c_str()) != 0) {
        return false;
    }
    unlink(from.c_str());
    return true;
}

bool CTemporaryTwin::TakePlace(bool flush, Existing existing) {
    if (!m_file.IsOpen() || (flush && fsync(m_file.Descriptor()) != 0) || !GiveName() ||
        !Rename(m_name, m_target, existing)) {
        return false;
    }
    if (flush) {
        // The new name lies in the folder, which has to reach the disk of its own.
        const std::size_t slash = m_target.rfind('/');
        const CUnixFile folder(slash == std::string::npos ? "." : m_target.substr(0, slash + 1), O_RDONLY);
        if (folder.IsOpen()) {
            fsync(folder.Descriptor());
        }
    }
    m_file.Close();
    return true;
}
