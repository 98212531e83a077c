// A process that outlives the program, but isn't forgotten while the program runs.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "shell/CDesktop.h"
#include "shell/CUnixFile.h"

class CWatchedProcess {
public:
    // Host paths. Not started if the program can't be run. It has a session of its own, so that neither a
    // terminal that closes nor the end of this program ends it; it reads nothing and prints to nobody.
    CWatchedProcess(const std::string& program, const std::vector<std::string>& arguments,
                    const std::string& folder);
    // Only stops watching.
    ~CWatchedProcess() = default;
    CWatchedProcess(const CWatchedProcess&) = delete;
    CWatchedProcess& operator=(const CWatchedProcess&) = delete;

    bool IsStarted() const { return m_child > 0; }
    // Whether it has ended by now; asked again afterwards it is still so.
    bool HasEnded();
    // After it has ended.
    bool Failed() const { return m_failed; }
    // What it wrote to standard error so far, without its last line feed, and cut where no box could show
    // more.
    std::string Told() const;

private:
    CUnixFile m_errors;
    pid_t m_child = -1;
    bool m_ended = false;
    bool m_failed = false;
};
