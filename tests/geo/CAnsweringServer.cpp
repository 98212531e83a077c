#include "tests/geo/CAnsweringServer.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

CAnsweringServer::CAnsweringServer(std::function<void(const std::string&, const Send&)> answer)
    : m_answer(std::move(answer)), m_listening(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const auto name = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listening, name, size) != 0 || listen(m_listening, 8) != 0 ||
        getsockname(m_listening, name, &size) != 0) {
        throw std::runtime_error("no server");
    }
    m_host = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    m_thread = std::thread([this] { Serve(); });
}

CAnsweringServer::~CAnsweringServer() {
    shutdown(m_listening, SHUT_RDWR);
    m_thread.join();
    close(m_listening);
}

std::vector<std::string> CAnsweringServer::TakeRequests() {
    const std::lock_guard<std::mutex> lock(m_lock);
    return std::exchange(m_requests, {});
}

void CAnsweringServer::Serve() {
    for (int connection; (connection = accept(m_listening, nullptr, nullptr)) >= 0; close(connection)) {
        std::string request;
        char bytes[1024];
        while (!request.ends_with("\r\n\r\n")) {
            const ssize_t got = recv(connection, bytes, sizeof bytes, 0);
            if (got <= 0) {
                break;
            }
            request.append(bytes, static_cast<std::size_t>(got));
        }
        {
            const std::lock_guard<std::mutex> lock(m_lock);
            m_requests.push_back(request);
        }
        m_answer(request, [&](const std::string& part) {
            for (std::size_t sent = 0; sent < part.size();) {
                const ssize_t now = send(connection, part.data() + sent, part.size() - sent, MSG_NOSIGNAL);
                if (now <= 0) {
                    return false;
                }
                sent += static_cast<std::size_t>(now);
            }
            return true;
        });
    }
}
