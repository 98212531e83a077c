#include "shell/temporaryfolder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"

namespace {

constexpr mode_t OwnerOnly = 0700;
constexpr mode_t OthersToo = 0077;

// A link is nobody's own: it may lead anywhere.
bool IsOwnFolder(const std::string& path) {
    (void)mkdir(path.c_str(), OwnerOnly);
    struct stat found {};
    return lstat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == geteuid() &&
           (found.st_mode & OthersToo) == 0;
}

}  // namespace

std::string GetTemporaryFolder() {
    std::error_code error;
    const std::filesystem::path system = std::filesystem::temp_directory_path(error);
    if (error) {
        return {};
    }
    // The second name is for machines with several users.
    const std::string name = (system / "~Drovane").string();
    for (const std::string& folder : {name, name + "-" + FormatInt(geteuid())}) {
        if (IsOwnFolder(folder)) {
            const std::optional<std::string> path = CHostFiles::PathText(folder);
            return path ? *path + '\\' : std::string();
        }
    }
    return {};
}
