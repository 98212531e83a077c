#include "reports/word/CReportRun.h"

#include <cstdlib>
#include <filesystem>

#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "shell/temporaryfolder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* Prefix = "run-";
constexpr std::chrono::hours Abandoned{24};

// Of processes that were killed. A report takes minutes, never a day.
void SweepRuns(const std::string& hostFolder) {
    std::error_code error;
    for (fs::directory_iterator at(hostFolder, error), end; !error && at != end; at.increment(error)) {
        std::error_code missing;
        const auto made = fs::last_write_time(at->path(), missing);
        if (!missing && at->path().filename().string().starts_with(Prefix) &&
            fs::file_time_type::clock::now() - made > Abandoned) {
            fs::remove_all(at->path(), missing);
        }
    }
}

}  // namespace

CReportRun::CReportRun() {
    const std::string parent = GetTemporaryFolder();
    if (parent.empty()) {
        return;
    }
    const std::string host = HostFiles().HostPath(parent);
    SweepRuns(host);
    std::string name = host + Prefix + "XXXXXX";
    if (mkdtemp(name.data()) != nullptr) {
        m_folder = parent + fs::path(name).filename().string() + '\\';
        HostFiles().ForgetFolders();
    }
}

CReportRun::~CReportRun() {
    if (!m_handedOver && !m_folder.empty()) {
        Remove(m_folder);
    }
}

bool CReportRun::IsOne(const std::string& folder) {
    const std::string begin = GetTemporaryFolder() + Prefix;
    return folder.starts_with(begin) && folder.find('\\', begin.size()) >= folder.size() - 1;
}

void CReportRun::Remove(const std::string& folder) {
    if (IsOne(folder)) {
        (void)HostFiles().RemoveFolder(folder);
    }
}
