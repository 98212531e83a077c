#include "apps/docxgenerator/generator.h"

#include <algorithm>
#include <optional>

#include "apps/docxgenerator/CConfigFile.h"
#include "apps/docxgenerator/configlists.h"
#include "apps/docxgenerator/extratables.h"
#include "reports/ooxml/COoxmlError.h"
#include "reports/word/CExportWord.h"
#include "reports/word/CReportRun.h"
#include "reports/word/generator.h"
#include "reports/word/listsfile.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/CStreamPrompts.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/programfolder.h"
#include "shell/seams.h"
#include "shell/settings.h"

namespace {

constexpr int MessageUsage = 3203;
constexpr int MessageNoDataFile = 3204;
constexpr int MessageBadDataFile = 3205;
constexpr int MessageNotFilled = 3250;
constexpr int MessageNotWritten = 3251;

constexpr std::size_t LargestDataFile = 256U << 20U;
constexpr std::ptrdiff_t MostSlices = 26;

void ShowError(int number, const std::string& detail) {
    ShowMessage(number, " " + detail);
}

// Without defects there is nothing to draw; the template says so in the charts' places.
bool AddCharts(CExportWord& report, const ReportLists& lists) {
    const auto drawn = [](const CDWordArray& counts) {
        return std::count_if(counts.begin(), counts.end(), [](std::uint32_t count) { return count > 0; });
    };
    const std::ptrdiff_t slices = drawn(lists.DefectCountsByType);
    if (slices > 0 && slices <= MostSlices &&
        !(report.CopyTypeChart(lists.DefectCountsByType, lists.Names) &&
          report.PasteChart("chartDefectCount"))) {
        return false;
    }
    return drawn(lists.DefectCountsByLevel) == 0 ||
           (report.CopyLevelChart(lists.DefectCountsByLevel) && report.PasteChart("chartLevelCount"));
}

// What was saved with the data file; what is older was left by another report. Empty if there is none.
std::string FindFresh(const std::string& dataFile, const char* name) {
    const std::string path = GetParentFolder(dataFile) + name;
    std::error_code error;
    const auto saved = std::filesystem::last_write_time(HostFiles().HostPath(path), error);
    return !error && saved >= std::filesystem::last_write_time(HostFiles().HostPath(dataFile), error)
               ? path
               : std::string();
}

// The whole lists if they lie beside the data file, else what that tells of them.
ReportLists FindLists(const CConfigFile& config, const std::string& dataFile) {
    if (const std::string path = FindFresh(dataFile, ListsFileName); !path.empty()) {
        const std::optional<std::string> json = HostFiles().ReadFile(path, LargestDataFile);
        if (std::optional<ReportLists> lists = json ? ListsFromJson(*json) : std::nullopt) {
            return std::move(*lists);
        }
    }
    return ListsFromConfig(config);
}

bool WriteReport(const CConfigFile& config, const ReportLists& lists, const std::string& map,
                 const std::string& target) {
    CExportWord report;
    if (!report.OpenDocument(GetAppFolder() + "CQ.dotx") || !report.FillDocument(lists, map, true, {})) {
        return false;
    }
    try {
        FillExtraTables(report.Document(), config, lists);
    } catch (const COoxmlError& error) {
        ShowError(MessageNotFilled, error.what());
        return false;
    }
    if (!AddCharts(report, lists)) {
        return false;
    }
    if (!HostFiles().WriteFile(target,
                               [&](const CUnixFile& file) { return report.Document().Write(file); })) {
        ShowError(MessageNotWritten, HostFiles().HostPath(target));
        return false;
    }
    return true;
}

bool MakeReport(const std::string& dataFile, const std::string& target) {
    const std::optional<std::string> bytes = HostFiles().ReadFile(dataFile, LargestDataFile);
    if (!bytes) {
        ShowError(MessageNoDataFile, HostFiles().HostPath(dataFile));
        return false;
    }
    try {
        const CConfigFile config(*bytes);
        return WriteReport(config, FindLists(config, dataFile), FindFresh(dataFile, MapFileName), target);
    } catch (const CConfigError& error) {
        ShowError(MessageBadDataFile, HostFiles().HostPath(dataFile) + ": " + error.what());
        return false;
    }
}

}  // namespace

int RunDocxGenerator(const std::vector<std::string>& words, const std::filesystem::path& startFolder,
                     const std::filesystem::path& ownFolder, std::ostream& err) {
    CHostFiles files(ownFolder.parent_path());
    CStreamPrompts prompts(err, false);
    const CSeamScope seams({&prompts, nullptr, &files, nullptr});
    EnterProgramFolder(ownFolder.parent_path());
    LoadSettings();
    LoadLanguageTable();
    const bool ofRun = words.size() == 4 && words[2] == "--run" && !words[3].empty();
    if ((words.size() != 2 && !ofRun) || words[0] != "-o" || words[1].empty()) {
        ShowMessage(MessageUsage);
        return 1;
    }
    std::string folder = GetAppFolder() + ownFolder.filename().string() + "\\";
    if (ofRun) {
        folder = PathFromArgument(startFolder, words[3]);
        folder += folder.ends_with('\\') ? "" : "\\";
    }
    const bool made = MakeReport(folder + DataFileName, PathFromArgument(startFolder, words[1]));
    if (ofRun) {
        CReportRun::Remove(folder);
    }
    return made ? 0 : 1;
}
