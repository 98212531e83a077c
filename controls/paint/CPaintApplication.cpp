#include "controls/paint/CPaintApplication.h"

#include <QGuiApplication>
#include <array>

struct CPaintApplication::Own {
    std::array<char, 8> Name{"drovane"};
    std::array<char, 10> Option{"-platform"};
    std::array<char, 10> Platform{"offscreen"};
    std::array<char*, 4> Words{Name.data(), Option.data(), Platform.data(), nullptr};
    int Count = 3;
    QGuiApplication Application{Count, Words.data()};
};

CPaintApplication::CPaintApplication() {
    if (QGuiApplication::instance() == nullptr) {
        // What it has to say of a session without a desktop is of no use to anybody.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        m_own = std::make_unique<Own>();
        qInstallMessageHandler(nullptr);
    }
}

CPaintApplication::~CPaintApplication() = default;
