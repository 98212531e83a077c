#include "shell/dialogs/CQtDesktop.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>
#include <memory>

#include "shell/CHostFiles.h"
#include "shell/dialogs/CWatchedProcess.h"
#include "shell/dialogs/qttext.h"
#include "shell/seams.h"

namespace {

QString HostName(std::string_view path) {
    return ToQt(HostFiles().HostPath(path));
}

// The file manager needn't run yet, the bus starts it; but a bus that doesn't answer mustn't hold the window.
bool AskFileManager(const QString& file) {
    QDBusMessage call =
        QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                       "org.freedesktop.FileManager1", "ShowItems");
    call << QStringList{QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)} << QString();
    constexpr int PatienceMilliseconds = 1000;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() &&
           bus.call(call, QDBus::Block, PatienceMilliseconds).type() == QDBusMessage::ReplyMessage;
}

}  // namespace

bool CQtDesktop::OpenFile(std::string_view path) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(HostName(path)));
}

bool CQtDesktop::ShowInFolder(std::string_view path) {
    const QString file = HostName(path);
    return AskFileManager(file) ||
           QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
}

bool CQtDesktop::StartProcess(std::string_view program, const std::vector<std::string>& arguments,
                              std::string_view folder,
                              const std::function<void(const std::string&)>& failed) {
    const auto process = std::make_shared<CWatchedProcess>(HostFiles().HostPath(program), arguments,
                                                           HostFiles().HostPath(folder));
    if (!process->IsStarted()) {
        return false;
    }
    auto* timer = new QTimer(QCoreApplication::instance());
    QObject::connect(timer, &QTimer::timeout, timer, [timer, process, failed] {
        if (!process->HasEnded()) {
            return;
        }
        // Before anything is shown: a box runs the event loop, and with it this timer.
        timer->stop();
        timer->deleteLater();
        if (process->Failed()) {
            failed(process->Told());
        }
    });
    constexpr int EachMilliseconds = 200;
    timer->start(EachMilliseconds);
    return true;
}

// By the desktop's rules for the trash: a file among `files`, and beside it where it came from. The info
// file comes first, since making it is what claims the name.
bool CQtDesktop::CopyToTrash(std::string_view path) {
    const QFileInfo source(HostName(path));
    const QDir trash(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/Trash");
    if (!source.isFile() || !trash.mkpath("files") || !trash.mkpath("info")) {
        return false;
    }
    QString name = source.fileName();
    QFile info;
    constexpr int Attempts = 1000;
    for (int number = 2; number < Attempts; ++number) {
        info.setFileName(trash.filePath("info/" + name + ".trashinfo"));
        if (!QFileInfo::exists(trash.filePath("files/" + name)) &&
            info.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            break;
        }
        name = source.completeBaseName() + "." + QString::number(number) + "." + source.suffix();
    }
    if (!info.isOpen()) {
        return false;
    }
    const QByteArray text =
        "[Trash Info]\nPath=" + QUrl::toPercentEncoding(source.absoluteFilePath(), "/") +
        "\nDeletionDate=" + QDateTime::currentDateTime().toString("yyyy-MM-ddThh:mm:ss").toLatin1() + "\n";
    const bool done = info.write(text) == text.size() && info.flush() &&
                      QFile::copy(source.absoluteFilePath(), trash.filePath("files/" + name));
    if (!done) {
        info.remove();
    }
    return done;
}
