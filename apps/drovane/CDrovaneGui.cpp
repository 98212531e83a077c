#include "apps/drovane/CDrovaneGui.h"

#include <sys/socket.h>
#include <unistd.h>

#include <QEvent>
#include <QLibraryInfo>
#include <QSocketNotifier>
#include <clocale>
#include <csignal>
#include <exception>
#include <iostream>

#include "shell/CPrompts.h"
#include "shell/dialogs/qttext.h"
#include "shell/dialogs/theme.h"

namespace {

// From the handler of a signal, which may do next to nothing, to the event loop.
int signalEnds[2] = {-1, -1};

void Tell(bool shown, const std::exception& error) {
    static bool telling = false;
    std::cerr << "drovane: " << error.what() << std::endl;
    if (shown && !telling) {
        telling = true;
        ShowMessage(3060, std::string("\n\n") + error.what());
        telling = false;
    }
}

}  // namespace

CDrovaneGui::CDrovaneGui(int& argc, char** argv) : QApplication(argc, argv) {
    // The toolkit has taken the user's locale; numbers have a point here, as the player library asks too.
    std::setlocale(LC_NUMERIC, "C");
    // Not the display name: window managers would see it behind every title.
    setApplicationName("Drovane");
    setDesktopFileName("drovane");
    // The run of the one window ends the program, not the closing of another.
    setQuitOnLastWindowClosed(false);
    ApplyTheme(*this);
}

void CDrovaneGui::SpeakLanguage() {
    // A language file tells the name by which the toolkit knows its language.
    const QString name = MessageText(3339);
    if (!name.isEmpty() &&
        m_texts.load("qtbase_" + name, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        installTranslator(&m_texts);
    }
}

void CDrovaneGui::OnTerminate(std::function<void()> handler) {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalEnds) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(signalEnds[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [run = std::move(handler)] { run(); });
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
        std::signal(number, [](int) {
            const char any = 0;
            (void)!write(signalEnds[0], &any, 1);
        });
    }
}

bool CDrovaneGui::notify(QObject* receiver, QEvent* event) {
    // Drawing is tried again and again by itself.
    const bool shown = event->type() != QEvent::Paint && event->type() != QEvent::UpdateRequest;
    return RunGuarded(shown, [&] { return QApplication::notify(receiver, event); });
}

bool RunGuarded(bool shown, const std::function<bool()>& handler) {
    try {
        return handler();
    } catch (const std::exception& error) {
        Tell(shown, error);
        return false;
    }
}
