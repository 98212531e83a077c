// The live program with an operator who grades whatever comes: the real window, channel and list, pressed as
// an operator presses them. robot PROGRAM_FOLDER [PAUSE_MS] runs until it is killed.
#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include "live/dialogs/CDrovaneDlg.h"
#include "shell/CHostFiles.h"
#include "shell/CStreamPrompts.h"
#include "shell/dialogs/CLocalLiveChannel.h"
#include "shell/language.h"
#include "shell/programfolder.h"
#include "shell/seams.h"
#include "shell/settings.h"
#include "store/dialogs/CDlgNewTesting.h"
#include "store/dialogs/CDlgProject.h"

#include <iostream>

namespace {

bool g_pressing = false;

// Later: a timer doesn't fire again while what it called waits in a window.
void PressIf(CSizeDlg& dialog, int id) {
    auto* button = dialog.Item<QAbstractButton>(id);
    if (g_pressing || button == nullptr || !button->isEnabled() || !button->isVisibleTo(&dialog)) {
        return;
    }
    g_pressing = true;
    QMetaObject::invokeMethod(
        button,
        [button] {
            g_pressing = false;
            button->click();
        },
        Qt::QueuedConnection);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc < 2) {
        return 2;
    }
    const int pause = argc > 2 ? std::atoi(argv[2]) : 0;
    CHostFiles files(argv[1]);
    CStreamPrompts prompts(std::cerr, true);
    const CSeamScope seams({.Prompts = &prompts, .Files = &files});
    EnterProgramFolder(argv[1]);
    LoadSettings();
    LoadLanguageTable();
    CLocalLiveChannel channel;
    if (channel.Claim() != CLiveChannel::Claimed::Yes) {
        return 3;
    }
    CDrovaneDlg window(channel);
    QTimer hand;
    int rest = 0;
    QObject::connect(&hand, &QTimer::timeout, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* form = dynamic_cast<CDlgNewTesting*>(modal)) {
            for (const auto& [id, text] :
                 {std::pair(SectionControl::Name, "段"), std::pair(SectionControl::PipeLength, "50"),
                  std::pair(SectionControl::DetectionLength, "50")}) {
                if (auto* edit = form->Item<QLineEdit>(id)) {
                    edit->setText(text);
                }
            }
            PressIf(*form, CSizeDlg::IdOk);
        } else if (auto* projects = dynamic_cast<CDlgProject*>(modal)) {
            PressIf(*projects, CSizeDlg::IdOk);
        } else if (modal == &window && window.Session().HasRecord()) {
            if (!window.Session().IsOpen()) {
                PressIf(window, 1023);
            } else if (++rest > pause / 2) {
                rest = 0;
                PressIf(window, CSizeDlg::IdOk);
            }
        } else if (modal == &window) {
            PressIf(window, 5030);
        }
    });
    hand.start(2);
    std::puts("ready");
    std::fflush(stdout);
    return window.DoModal();
}
