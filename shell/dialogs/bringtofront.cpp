#include "shell/dialogs/bringtofront.h"

#include <QApplication>
#include <QWidget>

void BringToFront(QWidget& window) {
    if (window.isMinimized() || !window.isVisible()) {
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);  // maximised stays so
        window.show();
    }
    window.raise();
    QWidget* popup = QApplication::activeModalWidget();
    QWidget* top = popup != nullptr && popup->isVisible() ? popup : &window;
    top->raise();
    top->activateWindow();
    // Desktops that keep windows from coming to the front by themselves mark it instead.
    if (!top->isActiveWindow()) {
        QApplication::alert(top);
    }
}

bool IsBlocked(const QWidget& window) {
    const QWidget* modal = QApplication::activeModalWidget();
    for (const QWidget* widget = &window; widget != nullptr; widget = widget->parentWidget()) {
        if (widget == modal) {
            return false;
        }
    }
    return modal != nullptr;
}
