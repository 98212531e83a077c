#include "geo/nmea/CNmeaReceiver.h"

#include <array>
#include <chrono>

#include "shell/CClock.h"
#include "shell/numbers.h"
#include "shell/seams.h"

namespace {

constexpr std::size_t LeastFields = 12;
constexpr std::size_t MostBuffer = 1U << 20U;
constexpr std::string_view LineEnd = "\r\n";

// A field counts only with a comma behind it. Those that nothing came for are empty.
using Fields = std::array<std::string_view, LeastFields>;

Fields Split(std::string_view line) {
    Fields fields;
    std::size_t at = 0;
    for (std::string_view& field : fields) {
        const std::size_t comma = line.find(',', at);
        if (comma == line.npos) {
            break;
        }
        field = line.substr(at, comma - at);
        at = comma + 1;
    }
    return fields;
}

int HoursOf(std::chrono::seconds time) {
    using std::chrono::floor;
    using std::chrono::hours;
    const hours whole = floor<hours>(time);
    return static_cast<int>((whole - floor<std::chrono::days>(whole)).count());
}

// What the clocks show, so half hours are left out, and around midnight it is off by a day.
int OffsetOfMachine() {
    return HoursOf(Clock().LocalNow().time_since_epoch()) - HoursOf(Clock().UtcNow().time_since_epoch());
}

std::string TwoDigits(int number) {
    const std::string text = FormatInt(number);
    return text.size() < 2 ? "0" + text : text;
}

double Degrees(std::string_view text, std::size_t whole) {
    return ParseInt(text.substr(0, whole)) + ParseDouble(text.substr(whole)) / 60;
}

}  // namespace

void CNmeaReceiver::Receive(std::string_view bytes) {
    m_buffer += bytes.substr(0, bytes.find('\0'));
    const std::string_view text = m_buffer;
    std::size_t at = 0;
    for (std::size_t end = text.find(LineEnd); end != text.npos; end = text.find(LineEnd, at)) {
        TakeLine(text.substr(at, end - at));
        at = end + LineEnd.size();
    }
    m_buffer.erase(0, at);
    if (m_buffer.size() > MostBuffer) {
        m_buffer.clear();
    }
}

void CNmeaReceiver::TakeLine(std::string_view line) {
    ++m_lines;
    const std::string_view name = line.substr(0, 6);
    const bool rmc = name == "$GPRMC";
    const bool gll = name == "$GPGLL";
    const bool gga = name == "$GPGGA";
    if (!rmc && !gll && !gga) {
        return;
    }
    const Fields fields = Split(line);
    if (rmc ? fields[2] != "A" : gll ? fields[6] != "A" : fields[6] != "1" && fields[6] != "2") {
        return;
    }
    const std::size_t position = rmc ? 3 : gll ? 1 : 2;
    TakeTime(fields[gll ? 5 : 1]);
    m_positions +=
        TakePosition(fields[position], fields[position + 1], fields[position + 2], fields[position + 3]) ? 1
                                                                                                         : 0;
    if (gga) {
        m_fix.Satellites = fields[7];
        m_fix.Altitude = fields[9];
    }
    if (OnSentence) {
        OnSentence();
    }
}

void CNmeaReceiver::TakeTime(std::string_view text) {
    if (text.size() < 6) {
        return;
    }
    if (m_offset == UnknownOffset) {
        m_offset = OffsetOfMachine();
    }
    // The remainder keeps its sign, also in the text.
    const int hour = (ParseInt(text.substr(0, 2)) + m_offset) % 24;
    m_fix.Time =
        TwoDigits(hour) + ":" + std::string(text.substr(2, 2)) + ":" + std::string(text.substr(4, 2));
}

bool CNmeaReceiver::TakePosition(std::string_view latitude, std::string_view north,
                                 std::string_view longitude, std::string_view east) {
    constexpr std::size_t Least = 5;
    if (latitude.size() < Least || longitude.size() < Least) {
        return false;
    }
    const double y = Degrees(latitude, 2);
    const double x = Degrees(longitude, 3);
    m_fix.Latitude = north == "N" ? y : -y;
    m_fix.Longitude = east == "W" ? -x : x;
    return true;
}
