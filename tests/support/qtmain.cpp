// The start of test programs with windows. They need no display: without one, the windows are drawn into
// memory.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <clocale>

#include "shell/dialogs/theme.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("Drovane");
    QApplication::setQuitOnLastWindowClosed(false);
    ApplyTheme(application);
    // What a test remembers is nobody's.
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    return RUN_ALL_TESTS();
}
