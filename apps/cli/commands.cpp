#include "apps/cli/commands.h"

#include <filesystem>
#include <stdexcept>

#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "store/CDbRec.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t MaxInputSize = 1u << 30;

bool IsPathText(const std::string& argument) {
    return argument.starts_with('\\') || (argument.size() >= 3 && argument[1] == ':' && argument[2] == '\\');
}

}  // namespace

std::string PathArgument(const CommandContext& context, const std::string& argument) {
    if (IsPathText(argument)) {
        return argument;
    }
    const fs::path host = (fs::path(context.StartFolder) / argument).lexically_normal();
    const std::optional<std::string> path = CHostFiles::PathText(host.string());
    if (!path) {
        throw std::runtime_error(argument + ": a file name with a backslash in it can't be used");
    }
    return *path;
}

std::string HostArgument(const CommandContext& context, const std::string& argument) {
    return HostFiles().HostPath(PathArgument(context, argument));
}

std::string ShownPath(const std::string& path) {
    return HostFiles().HostPath(path);
}

std::string ReadInput(const std::string& path, const std::string& shown) {
    std::optional<std::string> bytes = HostFiles().ReadFile(path, MaxInputSize);
    if (!bytes) {
        throw std::runtime_error(shown + " can't be read");
    }
    return std::move(*bytes);
}

void OpenProject(CDbRec& database, const CommandContext& context, const std::string& argument) {
    if (!database.OpenDatabase(PathArgument(context, argument), CDbPassword)) {
        throw std::runtime_error(argument + " can't be opened");
    }
}
