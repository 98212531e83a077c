#include <csignal>
#include <iostream>

#include "apps/cli/cli.h"

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    // A limit on file sizes is a full disk to us: a failed write, not a death.
    std::signal(SIGXFSZ, SIG_IGN);
    return RunCli({argv + 1, argv + argc}, std::cout, std::cerr);
}
