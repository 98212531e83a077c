#include "shell/CTemporaryTwin.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "shell/CProgress.h"

namespace {

constexpr std::int64_t FlushStep = 64 << 20;

// The target's own name need not fit with an addition, so the twin has a short one.
std::string TwinPattern(const std::string& target) {
    return target.substr(0, target.rfind('/') + 1) + ".drovane-XXXXXX";
}

}  // namespace

CTemporaryTwin::CTemporaryTwin(const std::string& target, mode_t mode)
    : m_target(target), m_name(TwinPattern(target)), m_file(mkostemp(m_name.data(), O_CLOEXEC)) {
    if (m_file.IsOpen() && fchmod(m_file.Descriptor(), mode) != 0) {
        Discard();
    }
}

CTemporaryTwin::~CTemporaryTwin() {
    Discard();
}

void CTemporaryTwin::Discard() {
    if (m_file.IsOpen()) {
        m_file.Close();
        unlink(m_name.c_str());
    }
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
    if (!m_file.IsOpen() || (flush && fsync(m_file.Descriptor()) != 0) ||
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
