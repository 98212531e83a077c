#include "reports/word/generator.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "assessment/standards.h"
#include "reports/CRecExport.h"
#include "reports/word/CReportRun.h"
#include "reports/word/listsfile.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/CUnixFile.h"
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

// Held while the three files are written, so that they are always of one report.
class CDataLock {
public:
    CDataLock()
        : m_file(HostFiles().HostPath(GeneratorFolder() + ".config.lock"), O_RDWR | O_CREAT | O_CLOEXEC) {
        while (m_file.IsOpen() && flock(m_file.Descriptor(), LOCK_EX) != 0 && errno == EINTR) {
        }
    }

private:
    CUnixFile m_file;  // closing unlocks it; the file stays, or a second owner could lock another one
};

// The lists and the picture after the data file: what is older than that belongs to another one.
bool WriteData(const CRecExport& project, const CReportRun& run, const std::string& folder) {
    const std::string path = folder + DataFileName;
    (void)HostFiles().DeleteFile(folder + ListsFileName);
    if (folder != run.Folder()) {
        (void)HostFiles().DeleteFile(folder + MapFileName);
    }
    if (!project.SaveReport(path)) {
        ShowMessage(MessageNoDataFile, "\n" + HostFiles().HostPath(path));
        return false;
    }
    (void)HostFiles().WriteFile(folder + ListsFileName, ListsToJson(run.Lists));
    if (const auto picture = HostFiles().ReadFile(run.MapPicture(), LargestMap)) {
        (void)HostFiles().WriteFile(folder + MapFileName, *picture);
    }
    return true;
}

bool SaveData(const CRecExport& project, const CReportRun& run) {
    {
        const CDataLock lock;
        if (!WriteData(project, run, GeneratorFolder())) {
            return false;
        }
    }
    return run.Folder().empty() || WriteData(project, run, run.Folder());
}

std::vector<std::string> Arguments(const CReportRun& run, std::string_view documentPath) {
    std::vector<std::string> arguments = {"-o", HostFiles().HostPath(documentPath)};
    if (!run.Folder().empty()) {
        arguments.insert(arguments.end(), {"--run", HostFiles().HostPath(run.Folder())});
    }
    return arguments;
}

void ShowNotStarted() {
    ShowMessage(MessageNotStarted, "\n" + HostFiles().HostPath(GeneratorPath()));
}

}  // namespace

bool UsesGenerator(std::string_view criterionName) {
    return FindScoringRoute(criterionName) == ScoringRoute::Chongqing;
}

bool StartGenerator(const CRecExport& project, CReportRun& run, std::string_view documentPath) {
    if (!SaveData(project, run)) {
        return false;
    }
    const auto failed = [](const std::string& told) { ShowMessage(MessageFailed, "\n" + told); };
    if (!Desktop().StartProcess(GeneratorPath(), Arguments(run, documentPath), GeneratorFolder(), failed)) {
        ShowNotStarted();
        return false;
    }
    run.HandOver();
    return true;
}

int RunGenerator(const CRecExport& project, const CReportRun& run, std::string_view documentPath) {
    if (!SaveData(project, run)) {
        return 1;
    }
    std::string program = HostFiles().HostPath(GeneratorPath());
    std::vector<std::string> words = Arguments(run, documentPath);
    std::vector<char*> arguments = {program.data()};
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
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
