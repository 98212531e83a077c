#include "apps/acquisition/CChannelClient.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t HeaderBytes = 8;

bool IsPrivate(const std::string& folder) {
    struct stat state {};
    return lstat(folder.c_str(), &state) == 0 && S_ISDIR(state.st_mode) && state.st_uid == geteuid() &&
           (state.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

}  // namespace

std::string CChannelClient::SocketPath() {
    std::string folder = Environment("XDG_RUNTIME_DIR");
    if (folder.empty() || folder.front() != '/' || !IsPrivate(folder)) {
        const std::string temporary = Environment("TMPDIR");
        folder = (temporary.empty() ? "/tmp" : temporary) + "/drovane-" + std::to_string(geteuid());
    }
    return IsPrivate(folder) ? folder + "/DROVANEWNDCLASS" : std::string();
}

CChannelClient::~CChannelClient() {
    Close();
}

void CChannelClient::Close() {
    if (m_socket >= 0) {
        close(m_socket);
        m_socket = -1;
    }
    m_unread.clear();
}

bool CChannelClient::Connect() {
    Close();
    const std::string path = SocketPath();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    m_socket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (m_socket < 0 || connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        Close();
        return false;
    }
    return true;
}

bool CChannelClient::Send(std::uint32_t kind, std::string_view content) {
    const auto length = static_cast<std::uint32_t>(content.size());
    std::string bytes(HeaderBytes, '\0');
    std::memcpy(bytes.data(), &kind, sizeof kind);
    std::memcpy(bytes.data() + sizeof kind, &length, sizeof length);
    bytes += content;
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t sent = send(m_socket, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR) {
            return false;
        }
        at += sent < 0 ? 0 : static_cast<std::size_t>(sent);
    }
    return true;
}

void CChannelClient::Receive() {
    std::array<char, 4096> part{};
    while (m_socket >= 0) {
        const ssize_t got = recv(m_socket, part.data(), part.size(), MSG_DONTWAIT);
        if (got > 0) {
            m_unread.append(part.data(), static_cast<std::size_t>(got));
        } else if (got < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            return;
        } else if (got == 0 || errno != EINTR) {
            const std::string rest = m_unread;
            Close();
            m_unread = rest;
            return;
        }
    }
}

std::optional<LiveFrame> CChannelClient::Next() {
    if (m_unread.size() < HeaderBytes) {
        return std::nullopt;
    }
    LiveFrame frame;
    std::uint32_t length = 0;
    std::memcpy(&frame.Kind, m_unread.data(), sizeof frame.Kind);
    std::memcpy(&length, m_unread.data() + sizeof frame.Kind, sizeof length);
    if (m_unread.size() < HeaderBytes + length) {
        return std::nullopt;
    }
    frame.Content = m_unread.substr(HeaderBytes, length);
    m_unread.erase(0, HeaderBytes + length);
    return frame;
}
