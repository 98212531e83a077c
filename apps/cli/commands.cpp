#include "apps/cli/commands.h"

#include <filesystem>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "shell/CHostFiles.h"
#include "shell/programfolder.h"
#include "shell/seams.h"
#include "store/CDbRec.h"

namespace {

constexpr std::size_t MaxInputSize = 1u << 30;

}  // namespace

std::string PathArgument(const CommandContext& context, const std::string& argument) {
    return PathFromArgument(context.StartFolder, argument);
}

std::string TargetArgument(const CommandContext& context, const std::string& argument,
                           const std::string& projectArgument) {
    std::error_code error;  // of a target that isn't there yet
    if (std::filesystem::equivalent(HostArgument(context, argument), HostArgument(context, projectArgument),
                                    error)) {
        throw CUsageError("the result can't take the project's place");
    }
    return PathArgument(context, argument);
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
