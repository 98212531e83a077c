#include "apps/cli/commands.h"

#include <filesystem>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/programfolder.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/catalogue.h"

namespace {

// The document of a project with 100,000 records has 60 MB; as a tree it takes several times that.
constexpr std::size_t MaxInputSize = 128U << 20U;

}  // namespace

std::string PathArgument(const CommandContext& context, const std::string& argument) {
    return PathFromArgument(context.StartFolder, argument);
}

std::string TargetArgument(const CommandContext& context, const std::string& argument,
                           const std::vector<std::string>& sources, bool overStandards) {
    namespace fs = std::filesystem;
    const std::string path = PathArgument(context, argument);
    const fs::path target = HostArgument(context, argument);
    std::error_code error;
    const fs::file_status state = fs::status(target, error);
    if (!fs::exists(state)) {
        return path;
    }
    if (!fs::is_regular_file(state)) {
        throw CUsageError(argument + " isn't a file that can be replaced");
    }
    for (const std::string& source : sources) {
        if (fs::equivalent(target, HostArgument(context, source), error)) {
            throw CUsageError("the result can't take the place of " + source);
        }
    }
    switch (KindOfDatabase(path)) {
        case DatabaseKind::Project:
            throw CUsageError(argument + " is a project; delete it first if it isn't wanted any more");
        case DatabaseKind::Unreadable:
            throw CUsageError(argument + " is a database that can't be read, perhaps a project");
        case DatabaseKind::InUse:
            throw CUsageError(argument + " is in use");
        case DatabaseKind::Standard:
            if (!overStandards) {
                throw CUsageError(argument + " is a standard");
            }
            break;
        case DatabaseKind::None:
            break;
    }
    return path;
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
        throw std::runtime_error(shown + " can't be read, or is longer than " +
                                 std::to_string(MaxInputSize >> 20U) + " MB");
    }
    return std::move(*bytes);
}

void OpenProject(CDbRec& database, const CommandContext& context, const std::string& argument) {
    if (!database.OpenDatabase(PathArgument(context, argument), CDbPassword)) {
        throw std::runtime_error(argument + " can't be opened");
    }
}

_TESTING_DATA FindSection(CDbRec& database, std::int32_t id) {
    CTestingDataArray sections;
    if (!database.ReadTestings(sections)) {
        throw std::runtime_error("the sections can't be read");
    }
    for (const _TESTING_DATA& section : sections) {
        if (section.ID == id) {
            return section;
        }
    }
    throw std::runtime_error("no section with the ID " + FormatInt(id));
}
