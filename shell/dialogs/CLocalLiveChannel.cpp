#include "shell/dialogs/CLocalLiveChannel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QtEndian>
#include <cerrno>
#include <optional>

#include "shell/CUnixFile.h"
#include "shell/dialogs/qttext.h"

namespace {

// Both ends know it; it is what acquisition programs look for.
constexpr const char* ChannelName = "DROVANEWNDCLASS";

enum Kind : std::uint32_t { KindRecord = 1, KindRaise = 2, KindTaken = 3, KindAnswer = 4, KindNotTaken = 5 };

struct Header {
    std::uint32_t Kind;
    std::uint32_t Length;
};
constexpr int HeaderBytes = 8;

constexpr int ConnectMilliseconds = 1000;
constexpr int TakenMilliseconds = 1500;
constexpr int FarewellMilliseconds = 1000;

// What a sender may say, and how long it is.
std::optional<std::uint32_t> LengthOf(std::uint32_t kind) {
    switch (kind) {
        case KindRecord:
            return CLiveChannel::RecordBytes;
        case KindRaise:
            return 0;
        default:
            return std::nullopt;
    }
}

Header ReadHeader(const QByteArray& bytes) {
    return {qFromLittleEndian<std::uint32_t>(bytes.constData()),
            qFromLittleEndian<std::uint32_t>(bytes.constData() + 4)};
}

QByteArray Frame(std::uint32_t kind, std::string_view content) {
    QByteArray bytes(HeaderBytes, '\0');
    qToLittleEndian(kind, bytes.data());
    qToLittleEndian(static_cast<std::uint32_t>(content.size()), bytes.data() + 4);
    return bytes.append(content.data(), static_cast<qsizetype>(content.size()));
}

// A folder that nobody but the user can write to, or else another user could take our place.
bool IsPrivate(const QString& folder) {
    struct stat state {};
    return lstat(QFile::encodeName(folder).constData(), &state) == 0 && S_ISDIR(state.st_mode) &&
           state.st_uid == geteuid() && (state.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

QString ChannelFolder() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime) && IsPrivate(runtime)) {
        return runtime;
    }
    const QString own = QDir::tempPath() + "/drovane-" + QString::number(geteuid());
    (void)mkdir(QFile::encodeName(own).constData(), 0700);
    return IsPrivate(own) ? own : QString();
}

// Writing to a sender that has gone would throw away what it said last and isn't read yet.
bool HasGone(const QLocalSocket& socket) {
    pollfd state{static_cast<int>(socket.socketDescriptor()), 0, 0};
    return socket.state() != QLocalSocket::ConnectedState ||
           (poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR)) != 0);
}

// A slow reader must not keep the program from ending.
void SendRest(QLocalSocket& socket) {
    QElapsedTimer since;
    since.start();
    while (socket.bytesToWrite() > 0 && since.elapsed() < FarewellMilliseconds &&
           socket.waitForBytesWritten(FarewellMilliseconds)) {
    }
}

}  // namespace

CLocalLiveChannel::CLocalLiveChannel() = default;

CLocalLiveChannel::~CLocalLiveChannel() {
    Release();
}

QString CLocalLiveChannel::SocketPath() {
    const QString folder = ChannelFolder();
    return folder.isEmpty() ? QString() : folder + '/' + ChannelName;
}

bool CLocalLiveChannel::RaiseRunning() {
    const QString path = SocketPath();
    if (path.isEmpty()) {
        return false;
    }
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(ConnectMilliseconds)) {
        return false;
    }
    // An instance that is busy comes to the front when it gets to it. Waiting for it only serves that the
    // desktop still counts this as the user's own doing.
    socket.write(Frame(KindRaise, {}));
    (void)socket.waitForReadyRead(TakenMilliseconds);
    return true;
}

CLiveChannel::Claimed CLocalLiveChannel::Claim() {
    const QString path = SocketPath();
    if (path.isEmpty()) {
        m_problem = FromQt(QDir::tempPath());
        return Claimed::NotPossible;
    }
    m_problem = FromQt(path);
    const QByteArray lockName = QFile::encodeName(path + ".lock");
    auto lock = std::make_unique<CUnixFile>(open(lockName.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock->IsOpen()) {
        return Claimed::NotPossible;
    }
    if (flock(lock->Descriptor(), LOCK_EX | LOCK_NB) != 0) {
        return errno == EWOULDBLOCK ? Claimed::TakenByOther : Claimed::NotPossible;
    }
    // A crash leaves its socket behind, where nobody listens. If somebody does, it isn't ours to take.
    QLocalSocket probe;
    probe.connectToServer(path);
    if (probe.waitForConnected(ConnectMilliseconds)) {
        return Claimed::TakenByOther;
    }
    QLocalServer::removeServer(path);
    auto server = std::make_unique<QLocalServer>();
    server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server->listen(path)) {
        m_problem += ": " + FromQt(server->errorString());
        return Claimed::NotPossible;
    }
    m_problem.clear();
    m_lock = std::move(lock);
    m_server = std::move(server);
    QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(),
                     [this] { OnNewConnection(); });
    return Claimed::Yes;
}

void CLocalLiveChannel::Release() {
    if (!m_server) {
        return;
    }
    m_server->close();
    std::map<LiveSender, Connection> connections;
    connections.swap(m_connections);  // so that nothing comes in any more
    for (auto& [sender, connection] : connections) {
        SendRest(*connection.Socket);
        connection.Socket->abort();
    }
    // The window may close over a record that one of its sockets is just telling.
    m_server.release()->deleteLater();
    m_lock.reset();
}

void CLocalLiveChannel::OnNewConnection() {
    while (m_server) {
        QLocalSocket* socket = m_server->nextPendingConnection();
        if (socket == nullptr) {
            return;
        }
        const LiveSender sender = ++m_lastSender;
        m_connections[sender] = {socket, {}};
        // Nobody needs to send ahead, so what is read doesn't grow beyond a few frames.
        socket->setReadBufferSize(4 * (HeaderBytes + static_cast<int>(RecordBytes)));
        QObject::connect(socket, &QLocalSocket::readyRead, socket, [this, sender] { OnBytes(sender); });
        QObject::connect(socket, &QLocalSocket::disconnected, socket, [this, sender] {
            OnBytes(sender);  // a sender may leave right behind its last record
            Drop(sender);
        });
        OnBytes(sender);  // what came before anybody listened
    }
}

void CLocalLiveChannel::OnBytes(LiveSender sender) {
    // Looked up anew for each frame: handling one may let the sender go.
    for (auto at = m_connections.find(sender); at != m_connections.end(); at = m_connections.find(sender)) {
        Connection& connection = at->second;
        connection.Unread += connection.Socket->readAll();
        if (connection.Unread.size() < HeaderBytes) {
            return;
        }
        const Header header = ReadHeader(connection.Unread);
        if (LengthOf(header.Kind) != header.Length) {
            Drop(sender);
            return;
        }
        const qsizetype end = HeaderBytes + static_cast<qsizetype>(header.Length);
        if (connection.Unread.size() < end) {
            return;
        }
        const QByteArray content = connection.Unread.mid(HeaderBytes, end - HeaderBytes);
        connection.Unread.remove(0, end);
        Handle(sender, header.Kind, content);
    }
}

void CLocalLiveChannel::Handle(LiveSender sender, std::uint32_t kind, const QByteArray& content) {
    if (kind == KindRecord) {
        const bool taken =
            OnRecord && OnRecord({content.constData(), static_cast<std::size_t>(content.size())}, sender);
        // Whoever sent it must know if nobody has it.
        (void)Send(sender, taken ? KindTaken : KindNotTaken, {});
        return;
    }
    if (kind == KindRaise && OnRaise) {
        OnRaise();
    }
    (void)Send(sender, KindTaken, {});
}

void CLocalLiveChannel::Drop(LiveSender sender) {
    const auto at = m_connections.find(sender);
    if (at == m_connections.end()) {
        return;
    }
    QLocalSocket* socket = at->second.Socket;
    m_connections.erase(at);
    socket->abort();
    socket->deleteLater();
}

bool CLocalLiveChannel::Send(LiveSender sender, std::uint32_t kind, std::string_view content) {
    const auto at = m_connections.find(sender);
    if (at == m_connections.end() || HasGone(*at->second.Socket)) {
        return false;
    }
    const QByteArray frame = Frame(kind, content);
    const bool written = at->second.Socket->write(frame) == frame.size();
    at->second.Socket->flush();
    return written;
}

bool CLocalLiveChannel::Answer(LiveSender sender, std::string_view text) {
    return Send(sender, KindAnswer, text);
}
