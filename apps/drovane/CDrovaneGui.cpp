#include "apps/drovane/CDrovaneGui.h"

#include <QEvent>
#include <clocale>
#include <exception>
#include <iostream>

#include "shell/CPrompts.h"
#include "shell/dialogs/theme.h"

namespace {

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
