#include "shell/dialogs/CWatchedProcess.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "shell/CSpawnSettings.h"

CWatchedProcess::CWatchedProcess(const std::string& program, const std::vector<std::string>& arguments,
                                 const std::string& folder)
    : m_errors(memfd_create("errors", MFD_CLOEXEC)) {
    CSpawnSettings settings;
    posix_spawn_file_actions_addopen(&settings.Actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&settings.Actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    if (m_errors.IsOpen()) {
        posix_spawn_file_actions_adddup2(&settings.Actions, m_errors.Descriptor(), STDERR_FILENO);
    }
    posix_spawn_file_actions_addchdir_np(&settings.Actions, folder.c_str());
    posix_spawnattr_setflags(&settings.Attributes, POSIX_SPAWN_SETSID);

    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    if (posix_spawn(&m_child, program.c_str(), &settings.Actions, &settings.Attributes, pointers.data(),
                    environ) != 0) {
        m_child = -1;
    }
}

bool CWatchedProcess::HasEnded() {
    if (!m_ended && IsStarted()) {
        int status = 0;
        const pid_t ended = waitpid(m_child, &status, WNOHANG);
        m_ended = ended != 0;
        m_failed = ended == m_child && (!WIFEXITED(status) || WEXITSTATUS(status) != 0);
    }
    return m_ended;
}

std::string CWatchedProcess::Told() const {
    constexpr std::size_t Most = 2000;
    std::string text(Most, '\0');
    const ssize_t got = pread(m_errors.Descriptor(), text.data(), text.size(), 0);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    text.resize(text.find_last_not_of('\n') + 1);
    return text;
}
