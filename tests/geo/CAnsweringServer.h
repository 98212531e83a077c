// A server on this machine that answers each connection with the bytes it is told, for what asks the network.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class CAnsweringServer {
public:
    // Gets the head of each request, and what sends bytes (false once the other side has gone). The
    // connection is closed when it returns.
    using Send = std::function<bool(const std::string& bytes)>;
    explicit CAnsweringServer(std::function<void(const std::string& request, const Send& send)> answer);
    ~CAnsweringServer();
    CAnsweringServer(const CAnsweringServer&) = delete;
    CAnsweringServer& operator=(const CAnsweringServer&) = delete;

    const std::string& Host() const { return m_host; }  // with the port
    std::vector<std::string> TakeRequests();

private:
    void Serve();

    std::function<void(const std::string&, const Send&)> m_answer;
    int m_listening = -1;
    std::string m_host;
    std::mutex m_lock;
    std::vector<std::string> m_requests;
    std::thread m_thread;
};
