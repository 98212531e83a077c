#include "shell/dialogs/CProgressNote.h"

#include <QApplication>

#include "shell/dialogs/qttext.h"

namespace {

constexpr int Steps = 1000;

}  // namespace

void CProgressNote::At(std::int64_t done, std::int64_t total, const std::string& text) {
    if (total <= 0 || done >= total) {
        m_dialog.reset();
        return;
    }
    if (!m_dialog) {
        m_dialog = std::make_unique<QProgressDialog>(ToQt(text), MessageText(51), 0, Steps,
                                                     QApplication::activeWindow());
        m_dialog->setWindowModality(Qt::ApplicationModal);
        m_dialog->setWindowTitle(QApplication::applicationName());
        m_dialog->setMinimumDuration(0);
        m_dialog->setMinimumWidth(m_dialog->fontMetrics().averageCharWidth() * 50);
        m_dialog->setAutoClose(false);
        m_dialog->setAutoReset(false);
        m_dialog->setCursor(Qt::ArrowCursor);
        m_dialog->show();
    }
    m_dialog->setLabelText(ToQt(text));
    m_dialog->setValue(static_cast<int>(done * Steps / total));
    // Where the bar stands still, the operator may still press Cancel.
    QApplication::processEvents(QEventLoop::AllEvents);
}
