// The sender's end of the live channel: see docs/files.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct LiveFrame {
    static constexpr std::uint32_t Record = 1;
    static constexpr std::uint32_t Taken = 3;
    static constexpr std::uint32_t Answer = 4;
    static constexpr std::uint32_t NotTaken = 5;

    std::uint32_t Kind = 0;
    std::string Content;
};

class CChannelClient {
public:
    CChannelClient() = default;
    ~CChannelClient();
    CChannelClient(const CChannelClient&) = delete;
    CChannelClient& operator=(const CChannelClient&) = delete;

    // False if no live instance listens.
    bool Connect();
    void Close();
    bool IsOpen() const { return m_socket >= 0; }
    int Descriptor() const { return m_socket; }
    // The length is that of the content, unless another one is to be claimed.
    bool Send(std::uint32_t kind, std::string_view content);
    // What has come, without waiting; closes when the other end has gone.
    void Receive();
    std::optional<LiveFrame> Next();

    // Of the socket; empty if there can be none.
    static std::string SocketPath();

private:
    int m_socket = -1;
    std::string m_unread;
};
