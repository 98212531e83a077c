// Sentences of a satellite receiver (NMEA 0183) as they come in, and the last fix that they tell. Only
// $GPRMC, $GPGLL and $GPGGA count; checksums aren't looked at.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

struct GpsFix {
    double Longitude = 0;  // degrees, west negative; 0 until the first fix
    double Latitude = 0;   // degrees, south negative
    // As they came.
    std::string Satellites;
    std::string Altitude;
    std::string Time;  // local, "hour:minutes:seconds"; empty until the first fix

    bool operator==(const GpsFix&) const = default;
};

class CNmeaReceiver {
public:
    // Local time less UTC, in hours; without it that of the machine when the first fix comes.
    static constexpr int UnknownOffset = 25;
    explicit CNmeaReceiver(int offset = UnknownOffset) : m_offset(offset) {}

    // Bytes behind a zero byte are lost. What is no whole line waits for the next call; a megabyte without an
    // end of line is thrown away.
    void Receive(std::string_view bytes);

    const GpsFix& Fix() const { return m_fix; }
    const std::string& Buffer() const { return m_buffer; }
    // Lines so far.
    std::int64_t Lines() const { return m_lines; }
    // Valid positions so far.
    std::int64_t Positions() const { return m_positions; }

    // After each line that was taken for a fix, changed or not.
    std::function<void()> OnSentence;

private:
    void TakeLine(std::string_view line);
    void TakeTime(std::string_view text);
    bool TakePosition(std::string_view latitude, std::string_view north, std::string_view longitude,
                      std::string_view east);

    GpsFix m_fix;
    std::string m_buffer;
    int m_offset;
    std::int64_t m_lines = 0;
    std::int64_t m_positions = 0;
};
