// The live channel over a local socket in the user's runtime folder. docs/files.md tells the format of its
// frames to those who write acquisition programs.
//
// The identity of the live instance is a lock on a file beside the socket, which the system takes back
// however the process ends. The socket alone wouldn't do: it outlives a crash, and two instances that start
// together would both find none.
#pragma once

#include <QByteArray>
#include <map>
#include <memory>
#include <string>

#include "shell/CLiveChannel.h"

class CUnixFile;
class QLocalServer;
class QLocalSocket;

class CLocalLiveChannel : public CLiveChannel {
public:
    CLocalLiveChannel();
    ~CLocalLiveChannel() override;

    bool RaiseRunning() override;
    Claimed Claim() override;
    std::string Problem() const override { return m_problem; }
    void Release() override;
    bool Answer(LiveSender sender, std::string_view text) override;

    // Host path of the socket; empty if the user has no folder for it.
    static QString SocketPath();

private:
    struct Connection {
        QLocalSocket* Socket = nullptr;  // the server's
        QByteArray Unread;
    };
    void OnNewConnection();
    void OnBytes(LiveSender sender);
    void Drop(LiveSender sender);
    void Handle(LiveSender sender, std::uint32_t kind, const QByteArray& content);
    bool Send(LiveSender sender, std::uint32_t kind, std::string_view content);

    std::string m_problem;
    std::unique_ptr<CUnixFile> m_lock;
    std::unique_ptr<QLocalServer> m_server;
    std::map<LiveSender, Connection> m_connections;
    LiveSender m_lastSender = 0;
};
