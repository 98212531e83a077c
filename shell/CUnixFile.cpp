#include "shell/CUnixFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

mode_t DefaultMode() {
    // There is no way but this to ask for it. Nobody makes files in between.
    const mode_t mask = umask(077);
    umask(mask);
    return 0666 & ~mask;
}

CUnixFile::CUnixFile(const std::string& hostPath, int flags)
    : m_descriptor(open(hostPath.c_str(), flags | O_CLOEXEC)) {}

bool CUnixFile::State(struct stat& state) const {
    return fstat(m_descriptor, &state) == 0;
}

bool CUnixFile::ReadAll(char* bytes, std::size_t size) const {
    while (size > 0) {
        const ssize_t got = read(m_descriptor, bytes, size);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        bytes += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool CUnixFile::WriteAll(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = write(m_descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool CUnixFile::Close() {
    const bool closed = m_descriptor >= 0 && close(m_descriptor) == 0;
    m_descriptor = -1;
    return closed;
}

void CUnixFile::Take(int descriptor) {
    (void)Close();
    m_descriptor = descriptor;
}
