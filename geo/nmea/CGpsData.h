// The satellite receiver at a serial port, read on a thread of its own, and its last fix.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "geo/nmea/CNmeaReceiver.h"
#include "geo/serial/CSerial.h"

class CGpsData {
public:
    CGpsData() = default;
    virtual ~CGpsData();
    CGpsData(const CGpsData&) = delete;
    CGpsData& operator=(const CGpsData&) = delete;

    // Opens the port and begins to read. 1 or 0: the port's LastError tells why, or 2400 was shown.
    int Open(int port, int baud);
    // Ends a waiting read at once. The last fix stays.
    void Close();

    // Longitude and latitude of one and the same fix.
    GpsFix Fix() const;
    double GetLongitude() const { return Fix().Longitude; }
    double GetLatitude() const { return Fix().Latitude; }
    std::string GetReceiveBuffer() const;

    // Since the last valid position came in; nothing before the first.
    std::optional<std::chrono::seconds> Age() const;
    // Whether that is longer ago than a receiver that works would let it be: 20 s, or three times the usual
    // gap between two blocks of text, whichever is longer.
    bool IsStale() const;

    const CSerial& Port() const { return m_port; }

private:
    void ReadAll();
    void Take(std::string_view bytes);

    CSerial m_port;
    std::thread m_reader;
    std::atomic<bool> m_reading{false};
    mutable std::mutex m_lock;  // of what follows
    CNmeaReceiver m_receiver;
    std::int64_t m_positions = 0;
    using SteadyClock = std::chrono::steady_clock;
    std::optional<SteadyClock::time_point> m_lastPosition;
    std::optional<SteadyClock::time_point> m_lastBlock;
    SteadyClock::time_point m_begin{};
    std::chrono::duration<double> m_usualGap{0};
};
