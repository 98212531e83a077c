// While it lives, no file can grow beyond so many bytes, as on a full disk.
#pragma once

#include <sys/resource.h>

#include <csignal>

class CFullDisk {
public:
    explicit CFullDisk(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_former);
        rlimit full = m_former;
        full.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~CFullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_former);
        std::signal(SIGXFSZ, m_formerHandler);
    }
    CFullDisk(const CFullDisk&) = delete;
    CFullDisk& operator=(const CFullDisk&) = delete;

private:
    rlimit m_former{};
    void (*m_formerHandler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};
