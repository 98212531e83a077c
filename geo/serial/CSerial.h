// One serial port, blocking: 8 data bits, no parity, one stop bit, no handshake, and reads without a
// time-out. Read may wait on one thread while another one closes.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>

class CSerial {
public:
    // What Read gives on failure, and for a port that was closed meanwhile.
    static constexpr std::size_t Failed = static_cast<std::size_t>(-1);

    CSerial() = default;
    virtual ~CSerial();
    CSerial(const CSerial&) = delete;
    CSerial& operator=(const CSerial&) = delete;

    // 1, or 0 with the reason in LastError. `port` is a number from 1 on: see serialports.h. A port that
    // another program holds can't be opened.
    virtual int Open(int port, int baud);
    // Ends a read that waits.
    virtual void Close();
    // Returns when `count` bytes have come.
    virtual std::size_t Read(char* buffer, std::size_t count);
    // 1 if the byte went out, else 0.
    virtual int Write(int byte);

    bool IsOpen() const;
    // Throws away what was received and not read yet.
    void Purge();
    const std::string& LastError() const { return m_lastError; }

private:
    struct Device;
    std::shared_ptr<Device> Current() const;
    int Fail(int message, const std::string& name);

    mutable std::mutex m_lock;
    std::shared_ptr<Device> m_device;  // whoever reads keeps it until he has left
    std::string m_lastError;
};
