#include <csignal>
#include <exception>
#include <iostream>

#include "apps/docxgenerator/generator.h"
#include "shell/programfolder.h"

int main(int argc, char** argv) {
    // A limit on file sizes is a full disk to us: a failed write, not a death.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return RunDocxGenerator({argv + 1, argv + argc}, std::filesystem::current_path(), ExecutableFolder(),
                                std::cerr);
    } catch (const std::exception& error) {
        std::cerr << "DocxGenerator: " << error.what() << '\n';
        return 1;
    }
}
