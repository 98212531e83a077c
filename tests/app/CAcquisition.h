// An acquisition program as others write it: plain sockets, and the frames of
// docs/files.md made by hand.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

class CAcquisition {
public:
    explicit CAcquisition(const std::filesystem::path& socketPath)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
        m_connected = connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~CAcquisition() { close(m_socket); }
    CAcquisition(const CAcquisition&) = delete;
    CAcquisition& operator=(const CAcquisition&) = delete;

    bool IsConnected() const { return m_connected; }

    static std::string Number(std::uint32_t value) {
        std::string bytes;
        for (int shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>(value >> shift);
        }
        return bytes;
    }
    static std::string Frame(std::uint32_t kind, const std::string& content) {
        return Number(kind) + Number(static_cast<std::uint32_t>(content.size())) + content;
    }

    bool Send(const std::string& bytes) const {
        return send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
    }
    // Takes what has come so far; true while the other end is there.
    bool Receive() {
        for (char buffer[4096];;) {
            const ssize_t got = recv(m_socket, buffer, sizeof buffer, MSG_DONTWAIT);
            if (got <= 0) {
                return got < 0 && errno == EAGAIN;
            }
            Received.append(buffer, static_cast<std::size_t>(got));
        }
    }

    std::string Received;

private:
    int m_socket;
    bool m_connected = false;
};
