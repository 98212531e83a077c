#include "apps/drovane/CDrovaneApp.h"

#include <utility>

#include "shell/CHostFiles.h"
#include "shell/CLiveChannel.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CSizeDlg.h"
#include "shell/language.h"
#include "shell/newpipedefaults.h"
#include "shell/paths.h"
#include "shell/programfolder.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "shell/textcodec.h"

namespace {

constexpr const char* LiveMode = "-add";

}  // namespace

CDrovaneApp::CDrovaneApp(CLiveChannel& channel, Windows windows)
    : m_channel(channel), m_windows(std::move(windows)) {}

int CDrovaneApp::Run(std::string_view commandLine, const std::string& projectPath) {
    try {
        InitInstance(commandLine, projectPath);
    } catch (...) {
        (void)ExitInstance();
        throw;
    }
    return ExitInstance();
}

void CDrovaneApp::InitInstance(std::string_view commandLine, const std::string& projectPath) {
    LoadSettings();
    // The first text that is asked for fills the table, now that the language is known.
    (void)LoadMessage(50);
    SetNewPipeDefaults(LoadNewPipeDefaults());
    // A missing language file isn't such a case: it leaves a table of empty texts.
    if (!HasLanguageTable()) {
        Prompts().ShowMessage(0, "未找到语言文件!");
    }
    // As a whole, without trimming: what isn't exactly this is review mode.
    if (!EqualNoCase(commandLine, LiveMode)) {
        RunWindow(m_windows.Review(projectPath));
    } else if (ActivateRunningInstance()) {
        RunWindow(m_windows.Live(m_channel));
    }
}

int CDrovaneApp::ExitInstance() {
    m_channel.Release();
    return SaveNewPipeDefaults(GetNewPipeDefaults()) ? 0 : 1;
}

bool CDrovaneApp::ActivateRunningInstance() {
    if (m_channel.RaiseRunning()) {
        return false;
    }
    switch (m_channel.Claim()) {
        case CLiveChannel::Claimed::Yes:
            break;
        case CLiveChannel::Claimed::TakenByOther:
            (void)m_channel.RaiseRunning();  // it came up in between
            return false;
        case CLiveChannel::Claimed::NotPossible:
            // The window is of use without records too.
            ShowMessage(3061, " " + m_channel.Problem());
            break;
    }
    return true;
}

void CDrovaneApp::RunWindow(std::unique_ptr<CSizeDlg> window) {
    m_mainWnd = window.get();
    window->DoModal();
    m_mainWnd = nullptr;
}

std::string CommandLine(const std::vector<std::string>& words) {
    std::string line;
    for (std::size_t i = 0; i < words.size(); ++i) {
        line += (i > 0 ? " " : "") + words[i];
    }
    return line;
}

std::string ProjectArgument(const std::vector<std::string>& words, const std::string& startFolder) {
    if (words.size() != 1 || !EqualNoCase(GetFileExtension(words[0]), "mdb")) {
        return {};
    }
    std::string path = PathFromArgument(startFolder, words[0]);
    return HostFiles().Exists(path) && !HostFiles().IsFolder(path) ? path : std::string();
}
