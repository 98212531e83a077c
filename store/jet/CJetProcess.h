// The reader process: started on a file with its limits, read from, ended.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "shell/CUnixFile.h"
#include "store/jet/readjet.h"

class CJetProcess {
public:
    // It gets the file, an output, and nothing else of ours: no other file, no environment. Throws CJetError.
    CJetProcess(const CUnixFile& file, const JetLimits& limits);
    ~CJetProcess();  // kills it if it still runs
    CJetProcess(const CJetProcess&) = delete;
    CJetProcess& operator=(const CJetProcess&) = delete;

    // Exactly so many bytes, which live until the next call. `pulse` is called several times a second while
    // there is none. Throws CJetError if they don't come, or not in time.
    std::string_view Read(std::size_t size, const std::function<void()>& pulse);
    // Throws CJetError unless it came to its end by itself, with nothing left to say.
    void Finish(const std::function<void()>& pulse);

private:
    std::size_t ReadMore(const std::function<void()>& pulse);
    [[noreturn]] void TellDeath();
    int Wait();

    pid_t m_child = -1;
    std::optional<CUnixFile> m_output;
    std::chrono::nanoseconds m_left;
    std::string m_buffer;
    std::size_t m_taken = 0;  // of the buffer
};
