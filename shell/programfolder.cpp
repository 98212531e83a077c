#include "shell/programfolder.h"

#include <optional>
#include <stdexcept>

#include "shell/CHostFiles.h"
#include "shell/paths.h"

namespace fs = std::filesystem;

namespace {

bool IsPathText(const std::string& argument) {
    return argument.starts_with('\\') || (argument.size() >= 3 && argument[1] == ':' && argument[2] == '\\');
}

}  // namespace

fs::path ExecutableFolder() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

void EnterProgramFolder(const fs::path& folder) {
    const std::optional<std::string> path = CHostFiles::PathText(folder.string());
    if (!path) {
        throw std::runtime_error("the program can't run from a folder with a backslash in its name");
    }
    SetAppFolder(*path);
    fs::current_path(folder);
}

std::string PathFromArgument(const fs::path& startFolder, const std::string& argument) {
    if (IsPathText(argument)) {
        return argument;
    }
    const fs::path host = (startFolder / argument).lexically_normal();
    const std::optional<std::string> path = CHostFiles::PathText(host.string());
    if (!path) {
        throw std::runtime_error(argument + ": a file name with a backslash in it can't be used");
    }
    return *path;
}
