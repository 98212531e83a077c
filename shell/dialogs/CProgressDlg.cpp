#include "shell/dialogs/CProgressDlg.h"

#include <QApplication>
#include <QLocale>

#include "shell/dialogs/qttext.h"

namespace {

constexpr int Steps = 1000;
constexpr int AppearsAfter = 500;  // milliseconds
constexpr int UpdateEvery = 50;

QString Amount(std::int64_t bytes) {
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

}  // namespace

CProgressDlg::CProgressDlg(QWidget* parent, const QString& title, Unit unit)
    : m_dialog(title, MessageText(51), 0, Steps, parent), m_title(title), m_unit(unit) {
    m_dialog.setWindowModality(Qt::WindowModal);
    m_dialog.setWindowTitle(QApplication::applicationDisplayName());
    m_dialog.setMinimumDuration(AppearsAfter);
    m_dialog.setMinimumWidth(m_dialog.fontMetrics().averageCharWidth() * 60);
    m_dialog.setAutoClose(false);
    m_dialog.setAutoReset(false);
    m_dialog.setValue(0);
    m_sinceStart.start();
    m_sinceUpdate.start();
}

void CProgressDlg::At(std::int64_t done, std::int64_t total, const std::string& text) {
    if (m_sinceUpdate.elapsed() < UpdateEvery) {
        return;
    }
    m_sinceUpdate.restart();
    if (m_unit == Unit::Items) {
        m_dialog.setLabelText(m_title + QString("\n%1 / %2    ").arg(done).arg(total) + ToQt(text));
    } else {
        const std::int64_t milliseconds = m_sinceStart.elapsed();
        const std::int64_t speed = milliseconds > 0 ? done * 1000 / milliseconds : 0;
        m_dialog.setLabelText(m_title + "\n" + Amount(done) + " / " + Amount(total) + "    " + Amount(speed) +
                              "/s");
    }
    // Handles what the operator does meanwhile.
    m_dialog.setValue(total > 0 ? static_cast<int>(done * Steps / total) : 0);
}
