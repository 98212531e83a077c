// Reads one database of the older engine and writes its whole content to standard output (jetstream.h).
//
//   drovane-jetreader MEMORY-BYTES PROCESSOR-MILLISECONDS <FILE
//
// Files come from anywhere, and the library that reads them wasn't made for hostile ones. So it runs here, in
// a process that may do nothing but read this one file, for a limited time.
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>

#include "store/jet/reader/CDamage.h"
#include "store/jet/reader/CJetFile.h"

namespace {

// The path makes the library open the very file that the program holds, whatever bears its name by now.
constexpr const char* InputPath = "/proc/self/fd/0";

bool Limit(decltype(RLIMIT_AS) what, rlim_t value) {
    const rlimit limit{value, value};
    return setrlimit(what, &limit) == 0;
}

bool Confine(rlim_t memory, long milliseconds) {
    itimerval timer{};
    timer.it_value.tv_sec = milliseconds / 1000;
    timer.it_value.tv_usec = milliseconds % 1000 * 1000;
    constexpr rlim_t files = 32;  // code page tables of the library among them
    // The timer is exact, the limit can't be taken back.
    const auto seconds = static_cast<rlim_t>(milliseconds / 1000 + 1);
    bool done = setitimer(ITIMER_PROF, &timer, nullptr) == 0 && Limit(RLIMIT_CPU, seconds) &&
                Limit(RLIMIT_FSIZE, 0) && Limit(RLIMIT_CORE, 0) && Limit(RLIMIT_NOFILE, files) &&
                prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_PDEATHSIG, SIGKILL) == 0;
#ifndef __SANITIZE_ADDRESS__  // needs terabytes of addresses
    done = Limit(RLIMIT_AS, memory) && done;
#else
    (void)memory;
#endif
    return done;
}

}  // namespace

int main(int argc, char** argv) {
    std::set_new_handler([] { _exit(JetExitNoMemory); });
    if (argc != 3 || !Confine(std::strtoull(argv[1], nullptr, 10), std::strtol(argv[2], nullptr, 10))) {
        return EXIT_FAILURE;
    }
    CStreamWriter out(STDOUT_FILENO);
    try {
        CJetFile file(STDIN_FILENO, InputPath);
        file.Send(out);
        out.Flush();
        return EXIT_SUCCESS;
    } catch (const CDamage& damage) {
        out.Refuse(damage.what());
        return JetExitRefused;
    }
}
