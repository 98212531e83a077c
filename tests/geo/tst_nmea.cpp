#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <thread>

#include "geo/nmea/CGpsData.h"
#include "geo/serial/serialports.h"
#include "shell/language.h"
#include "tests/support/CTestFolder.h"

namespace {

using namespace std::chrono_literals;

constexpr const char* Rmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";

GpsFix FixOf(const std::string& text, int offset = 8) {
    CNmeaReceiver receiver(offset);
    receiver.Receive(text);
    return receiver.Fix();
}

bool WaitFor(const std::function<bool()>& condition) {
    for (int i = 0; i < 500 && !condition(); ++i) {
        std::this_thread::sleep_for(10ms);
    }
    return condition();
}

// A pair of pseudo terminals: ours, and the one that a port number is tied to.
class Pty {
public:
    Pty() { EXPECT_EQ(openpty(&m_ours, &m_theirs, m_name, nullptr, nullptr), 0); }
    ~Pty() { Unplug(); }
    void Unplug() {
        if (m_ours >= 0) {
            close(m_ours);
            close(m_theirs);
            m_ours = -1;
        }
    }
    void Send(std::string text) const {
        while (!text.empty()) {
            const ssize_t sent = write(m_ours, text.data(), std::min<std::size_t>(text.size(), 512));
            ASSERT_GT(sent, 0);
            text.erase(0, static_cast<std::size_t>(sent));
            std::this_thread::sleep_for(1ms);
        }
    }
    const char* Name() const { return m_name; }

private:
    int m_ours = -1;
    int m_theirs = -1;
    char m_name[64]{};
};

}  // namespace

TEST(Nmea, EachSentenceHasItsRules) {
    const GpsFix fix = FixOf(Rmc);
    EXPECT_EQ(fix.Time, "20:35:19");
    EXPECT_DOUBLE_EQ(fix.Latitude, 48.1173);
    EXPECT_DOUBLE_EQ(fix.Longitude, 11 + 31.0 / 60);
    const GpsFix gga = FixOf("$GPGGA,003519.55,4807.038,X,01131.000,,2,08,0.9,545.4,M,46.9,M,,*47\r\n", -8);
    EXPECT_EQ(gga.Time + " " + gga.Satellites + " " + gga.Altitude, "-8:35:19 08 545.4");
    EXPECT_DOUBLE_EQ(gga.Latitude, -48.1173);
    EXPECT_GT(gga.Longitude, 0);
    EXPECT_EQ(FixOf("$GPGLL,4916.45,N,12311.12,W,225444,A,\r\n").Time, "06:54:44");
    EXPECT_LT(FixOf("$GPGLL,4916.45,N,12311.12,W,225444,A,\r\n").Longitude, -123);
    // Too short for a position, long enough for a time.
    const GpsFix brief = FixOf("$GPRMC,123519,A,123,N,01131.000,E,,\r\n");
    EXPECT_EQ(brief.Time, "20:35:19");
    EXPECT_EQ(brief.Latitude, 0);
    for (const char* ignored :
         {"$GPRMC,123519,V,4807.038,N,01131.000,E,,,,,\r\n",
          "$GNRMC,123519,A,4807.038,N,01131.000,E,,,,,\r\n",
          "$gprmc,123519,A,4807.038,N,01131.000,E,,,,,\r\n",
          "$GPGGA,123519,4807.038,N,01131.000,E,0,08,0.9,5,M\r\n",
          "$GPGLL,4916.45,N,12311.12,W,225444,A*1D\r\n", "x$GPRMC,123519,A,4807.038,N,01131.000,E,,,,,\r\n",
          "$GPRMC,123519,A,4807.038,N,01131.000,E,,,,,\n", "$GPRMC", "\r\n\r\n"}) {
        EXPECT_EQ(FixOf(ignored), GpsFix()) << ignored;
    }
}

TEST(Nmea, LinesComeInPieces) {
    CNmeaReceiver receiver(0);
    const std::string text = std::string(Rmc) + "$GPGLL,4916.45,N,12311.12,W,225444,A,\r\nrest";
    for (const char c : text) {
        receiver.Receive({&c, 1});
    }
    EXPECT_EQ(receiver.Lines(), 2);
    EXPECT_EQ(receiver.Fix().Time, "22:54:44");
    EXPECT_EQ(receiver.Buffer(), "rest");
    // What stands behind a zero byte is lost, in that block only.
    receiver.Receive(std::string("\r\nab\0lost\r\n", 11));
    EXPECT_EQ(receiver.Buffer(), "ab");
    receiver.Receive(std::string(2 << 20, 'x'));
    EXPECT_EQ(receiver.Buffer(), "");
    receiver.Receive("\r\n" + std::string(Rmc));
    EXPECT_EQ(receiver.Fix().Time, "12:35:19");
}

TEST(Gps, ReadsAPortUntilItIsClosedOrUnplugged) {
    const CTestFolder folder;
    Pty pty;
    ASSERT_TRUE(TieDevice(3, pty.Name()));
    EXPECT_EQ(SerialDeviceName(3), pty.Name());
    CGpsData gps;
    ASSERT_EQ(gps.Open(3, 9600), 1) << gps.Port().LastError();
    EXPECT_FALSE(gps.IsStale());
    // Bytes come in blocks of 1024: nothing before.
    pty.Send(Rmc);
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(gps.GetReceiveBuffer(), "");
    EXPECT_EQ(gps.GetLatitude(), 0);
    std::string text;
    for (int i = 0; i < 40; ++i) {
        text += Rmc;
    }
    pty.Send(text);
    EXPECT_TRUE(WaitFor([&] { return gps.GetLatitude() != 0; }));
    EXPECT_DOUBLE_EQ(gps.GetLatitude(), 48.1173);
    EXPECT_LE(gps.Age()->count(), 1);
    // Another program, or another object, doesn't get it.
    CSerial other;
    EXPECT_EQ(other.Open(3, 9600), 0);
    EXPECT_NE(other.LastError().find(pty.Name()), std::string::npos) << other.LastError();
    other.Close();

    const auto begin = std::chrono::steady_clock::now();
    gps.Close();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 500ms);
    EXPECT_DOUBLE_EQ(gps.GetLatitude(), 48.1173);
    ASSERT_EQ(gps.Open(3, 4800), 1) << gps.Port().LastError();
    pty.Send(std::string(5000, '\xFF'));
    pty.Unplug();
    std::this_thread::sleep_for(50ms);
    EXPECT_DOUBLE_EQ(gps.GetLatitude(), 48.1173);
    gps.Close();
    EXPECT_EQ(gps.Open(3, 9600), 0);
    EXPECT_NE(gps.Port().LastError(), "");
}

TEST(Gps, PortsThatCantBeOpenedSayWhy) {
    const CTestFolder folder;
    CSerial port;
    EXPECT_EQ(port.Open(4242, 9600), 0);
    EXPECT_NE(port.LastError().find("/dev/ttyS4241"), std::string::npos) << port.LastError();
    folder.WriteFile("no port", "");
    ASSERT_TRUE(TieDevice(1, folder.Host("no port").string()));
    EXPECT_EQ(port.Open(1, 9600), 0);
    Pty pty;
    ASSERT_TRUE(TieDevice(1, pty.Name()));
    EXPECT_EQ(port.Open(1, 1234), 0);
    EXPECT_TRUE(port.LastError().starts_with(LoadMessage(502)));
    EXPECT_FALSE(port.IsOpen());
    char byte = 0;
    EXPECT_EQ(port.Read(&byte, 1), CSerial::Failed);
    EXPECT_EQ(port.Write('a'), 0);
    port.Close();
    ASSERT_TRUE(TieDevice(1, ""));
    EXPECT_EQ(TiedDevice(1), "");
}
