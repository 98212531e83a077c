#include "store/jet/CJetProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>

#include "shell/CHostFiles.h"
#include "shell/CSpawnSettings.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/programfolder.h"
#include "shell/seams.h"

namespace {

using std::chrono::steady_clock;

constexpr const char* ReaderName = "drovane-jetreader";
constexpr std::size_t ChunkSize = 1 << 16;
constexpr int PipeSize = 1 << 20;  // so that the two seldom wait for each other
constexpr int PulseMilliseconds = 50;

[[noreturn]] void Fail(CJetError::Why why, const std::string& text) {
    throw CJetError(why, text);
}

// Beside this program; if it runs from elsewhere, in the program folder.
std::string FindReader() {
    const std::filesystem::path own = ExecutableFolder() / ReaderName;
    if (access(own.c_str(), X_OK) == 0) {
        return own.string();
    }
    return HostFiles().HostPath(GetAppFolder() + ReaderName);
}

}  // namespace

CJetProcess::CJetProcess(const CUnixFile& file, const JetLimits& limits) : m_left(limits.Wall) {
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        Fail(CJetError::Why::Machine, "no pipe");
    }
    m_output.emplace(ends[0]);
    const CUnixFile input(ends[1]);
    (void)fcntl(ends[1], F_SETPIPE_SZ, PipeSize);

    CSpawnSettings settings;
    posix_spawn_file_actions_adddup2(&settings.Actions, file.Descriptor(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&settings.Actions, input.Descriptor(), STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&settings.Actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&settings.Actions, STDERR_FILENO + 1);
    sigset_t signals;
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&settings.Attributes, &signals);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&settings.Attributes, &signals);
    posix_spawnattr_setflags(&settings.Attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

    std::string program = FindReader();
    std::string memory = FormatInt(static_cast<std::int64_t>(limits.Memory));
    std::string processor = FormatInt(limits.Processor.count());
    std::array<char*, 4> arguments{program.data(), memory.data(), processor.data(), nullptr};
    std::array<char*, 1> environment{nullptr};
    const int result = posix_spawn(&m_child, program.c_str(), &settings.Actions, &settings.Attributes,
                                   arguments.data(), environment.data());
    if (result != 0) {
        m_child = -1;
        Fail(CJetError::Why::Machine, program + " can't be started");
    }
}

CJetProcess::~CJetProcess() {
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        (void)Wait();
    }
}

int CJetProcess::Wait() {
    int status = 0;
    while (waitpid(m_child, &status, 0) < 0) {
        if (errno != EINTR) {
            status = -1;
            break;
        }
    }
    m_child = -1;
    return status;
}

std::size_t CJetProcess::ReadMore(const std::function<void()>& pulse) {
    pollfd output{m_output->Descriptor(), POLLIN, 0};
    for (;;) {
        const auto begin = steady_clock::now();
        const int ready = poll(&output, 1, PulseMilliseconds);
        m_left -= steady_clock::now() - begin;
        if (m_left <= std::chrono::nanoseconds::zero()) {
            Fail(CJetError::Why::Limit, "the reader took too long");
        }
        if (ready > 0) {
            break;
        }
        pulse();
    }
    m_buffer.erase(0, m_taken);
    m_taken = 0;
    const std::size_t former = m_buffer.size();
    m_buffer.resize(former + ChunkSize);
    ssize_t got = 0;
    do {
        got = read(m_output->Descriptor(), m_buffer.data() + former, ChunkSize);
    } while (got < 0 && errno == EINTR);
    m_buffer.resize(former + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return m_buffer.size() - former;
}

std::string_view CJetProcess::Read(std::size_t size, const std::function<void()>& pulse) {
    while (m_buffer.size() - m_taken < size) {
        if (ReadMore(pulse) == 0) {
            TellDeath();
        }
    }
    const std::string_view bytes = std::string_view(m_buffer).substr(m_taken, size);
    m_taken += size;
    return bytes;
}

void CJetProcess::Finish(const std::function<void()>& pulse) {
    if (m_taken != m_buffer.size() || ReadMore(pulse) != 0) {
        Fail(CJetError::Why::Content, "the reader sent what can't be");
    }
    if (Wait() != 0) {
        Fail(CJetError::Why::Machine, "the reader failed at its end");
    }
}

void CJetProcess::TellDeath() {
    const int status = Wait();
    if (WIFEXITED(status) && WEXITSTATUS(status) == JetExitNoMemory) {
        Fail(CJetError::Why::Limit, "the reader needed too much memory");
    }
    const int signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    if (signal == SIGPROF || signal == SIGXCPU || signal == SIGKILL) {
        Fail(CJetError::Why::Limit, "the reader needed too much processor time");
    }
    Fail(signal != 0 ? CJetError::Why::Limit : CJetError::Why::Machine, "the reader failed");
}
