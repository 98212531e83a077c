#include <QIcon>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>

#include "apps/drovane/CDrovaneApp.h"
#include "apps/drovane/CDrovaneGui.h"
#include "history/CJournal.h"
#include "oldfiles/CJetFiles.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/dialogs/CLocalLiveChannel.h"
#include "shell/dialogs/CProgressNote.h"
#include "shell/dialogs/CQtDesktop.h"
#include "shell/dialogs/CQtPrompts.h"
#include "shell/dialogs/CSizeDlg.h"
#include "shell/dialogs/qttext.h"
#include "shell/programfolder.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "workbench/dialogs/CDlgProAtrrib.h"
#include "live/dialogs/CDrovaneDlg.h"

namespace {

int RunProgram(int argc, char** argv) {
    // Before the toolkit takes its own options away: they aren't "-add" either.
    const std::vector<std::string> words(argv + 1, argv + argc);
    const std::string startFolder = std::filesystem::current_path().string();
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    CDrovaneGui gui(argc, argv);

    const std::filesystem::path folder = ExecutableFolder();
    CHostFiles files(folder);
    CQtPrompts prompts;
    CQtDesktop desktop;
    CProgressNote progress;
    const CSeamScope seams({&prompts, nullptr, &files, &desktop, &progress});
    CJetFiles oldFiles;
    const COldFilesScope oldFilesScope(oldFiles);
    CJournals journals;
    const CChangeWatchesScope watchesScope(journals);
    EnterProgramFolder(folder);
    LoadSettings();  // the first text that is asked for fills the table, in the language that is known then
    gui.SpeakLanguage();
    QApplication::setWindowIcon(QIcon(ToQt(files.HostPath("ui\\drovane.png"))));

    CLocalLiveChannel channel;
    CDrovaneApp app(channel, {[](const std::string& path) { return std::make_unique<CDlgProAtrrib>(path); },
                              [](CLiveChannel& live) { return std::make_unique<CDrovaneDlg>(live); }});
    gui.OnTerminate([&app] { std::_Exit(app.ExitInstance()); });
    try {
        return app.Run(CommandLine(words), ProjectArgument(words, startFolder));
    } catch (const std::exception& error) {
        // While the first window comes up there is no loop yet that would tell it.
        ShowMessage(3060, std::string("\n\n") + error.what());
        throw;
    }
}

}  // namespace

int main(int argc, char** argv) {
    // A limit on file sizes is a full disk to us: a failed write, not a death.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return RunProgram(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "drovane: " << error.what() << '\n';
        return 1;
    }
}
