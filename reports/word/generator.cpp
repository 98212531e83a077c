#include "reports/word/generator.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "assessment/standards.h"
#include "reports/CRecExport.h"
#include "reports/word/wordreport.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/paths.h"
#include "shell/seams.h"

namespace {

constexpr int MessageNoDataFile = 3253;
constexpr int MessageNotStarted = 3254;
constexpr int MessageFailed = 3255;
constexpr std::size_t LargestMap = 64U << 20U;

std::string GeneratorFolder() {
    return GetAppFolder() + "word\\";
}

std::string GeneratorPath() {
    return GeneratorFolder() + "DocxGenerator";
}

bool SaveData(const CRecExport& project) {
    const std::string path = GeneratorFolder() + "config.xml";
    const std::string map = GeneratorFolder() + "_map.png";
    (void)HostFiles().DeleteFile(map);
    if (!project.SaveReport(path)) {
        ShowMessage(MessageNoDataFile, "\n" + HostFiles().HostPath(path));
        return false;
    }
    // After the data file: a picture older than that belongs to another one.
    if (const auto picture = HostFiles().ReadFile(GetMapPicturePath(), LargestMap)) {
        (void)HostFiles().WriteFile(map, *picture);
    }
    return true;
}

void ShowNotStarted() {
    ShowMessage(MessageNotStarted, "\n" + HostFiles().HostPath(GeneratorPath()));
}

}  // namespace

bool UsesGenerator(std::string_view criterionName) {
    return FindScoringRoute(criterionName) == ScoringRoute::Chongqing;
}

bool StartGenerator(const CRecExport& project, std::string_view documentPath) {
    if (!SaveData(project)) {
        return false;
    }
    const auto failed = [](const std::string& told) { ShowMessage(MessageFailed, "\n" + told); };
    if (!Desktop().StartProcess(GeneratorPath(), {"-o", HostFiles().HostPath(documentPath)},
                                GeneratorFolder(), failed)) {
        ShowNotStarted();
        return false;
    }
    return true;
}

int RunGenerator(const CRecExport& project, std::string_view documentPath) {
    if (!SaveData(project)) {
        return 1;
    }
    std::string program = HostFiles().HostPath(GeneratorPath());
    std::string option = "-o";
    std::string document = HostFiles().HostPath(documentPath);
    const std::array<char*, 4> arguments{program.data(), option.data(), document.data(), nullptr};
    pid_t child = -1;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
        ShowNotStarted();
        return 1;
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return 1;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
