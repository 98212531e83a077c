#include "geo/serial/CSerial.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "geo/serial/serialports.h"
#include "shell/CUnixFile.h"
#include "shell/failures.h"
#include "shell/language.h"

namespace {

constexpr int MessageNoPort = 3440;
constexpr int MessageInUse = 3441;
constexpr int MessageNoTimeouts = 501;
constexpr int MessageNoParameters = 502;

speed_t SpeedOf(int baud) {
    constexpr std::pair<int, speed_t> speeds[] = {{4800, B4800},   {9600, B9600},   {19200, B19200},
                                                  {38400, B38400}, {57600, B57600}, {115200, B115200}};
    for (const auto& [number, speed] : speeds) {
        if (number == baud) {
            return speed;
        }
    }
    return B0;
}

// As raw as a wire: nothing is translated, no byte means anything.
bool SetParameters(int descriptor, int baud) {
    termios settings{};
    const speed_t speed = SpeedOf(baud);
    if (speed == B0 || tcgetattr(descriptor, &settings) != 0) {
        return false;
    }
    cfmakeraw(&settings);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | PARENB | CRTSCTS);
    settings.c_cflag |= CLOCAL | CREAD | CS8;
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    return cfsetispeed(&settings, speed) == 0 && cfsetospeed(&settings, speed) == 0 &&
           tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

}  // namespace

struct CSerial::Device {
    CUnixFile Port{-1};
    CUnixFile Wake{-1};

    ~Device() {
        int lines = TIOCM_DTR;
        (void)ioctl(Port.Descriptor(), TIOCMBIC, &lines);
        (void)tcflush(Port.Descriptor(), TCIOFLUSH);
    }
};

CSerial::~CSerial() {
    Close();
}

int CSerial::Fail(int message, const std::string& name) {
    m_lastError = LoadMessage(message) + name;
    return 0;
}

int CSerial::Open(int port, int baud) {
    Close();
    const std::string name = SerialDeviceName(port);
    auto device = std::make_shared<Device>();
    device->Port.Take(open(name.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!device->Port.IsOpen()) {
        const int reason = errno;
        return Fail(MessageNoPort, " " + name + ": " + FailureText(reason));
    }
    if (isatty(device->Port.Descriptor()) == 0) {
        return Fail(MessageNoPort, " " + name);
    }
    // The second keeps out programs that ask for no lock, but not those of root.
    if (flock(device->Port.Descriptor(), LOCK_EX | LOCK_NB) != 0 ||
        ioctl(device->Port.Descriptor(), TIOCEXCL) != 0) {
        return Fail(MessageInUse, " " + name);
    }
    device->Wake.Take(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!device->Wake.IsOpen()) {
        return Fail(MessageNoTimeouts, name);
    }
    if (!SetParameters(device->Port.Descriptor(), baud)) {
        return Fail(MessageNoParameters, name);
    }
    const std::lock_guard<std::mutex> guard(m_lock);
    m_device = std::move(device);
    return 1;
}

void CSerial::Close() {
    const std::lock_guard<std::mutex> guard(m_lock);
    if (m_device) {
        (void)eventfd_write(m_device->Wake.Descriptor(), 1);
        m_device.reset();
    }
}

std::shared_ptr<CSerial::Device> CSerial::Current() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_device;
}

bool CSerial::IsOpen() const {
    return Current() != nullptr;
}

std::size_t CSerial::Read(char* buffer, std::size_t count) {
    const std::shared_ptr<Device> device = Current();
    std::size_t got = 0;
    while (device && got < count) {
        pollfd waiting[] = {{device->Port.Descriptor(), POLLIN, 0}, {device->Wake.Descriptor(), POLLIN, 0}};
        const int ready = poll(waiting, 2, -1);
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready < 0 || waiting[1].revents != 0) {
            return Failed;
        }
        const ssize_t part = read(device->Port.Descriptor(), buffer + got, count - got);
        if (part > 0) {
            got += static_cast<std::size_t>(part);
        } else if (part == 0 || (errno != EAGAIN && errno != EINTR)) {
            return Failed;  // unplugged
        }
    }
    return device ? got : Failed;
}

int CSerial::Write(int byte) {
    const std::shared_ptr<Device> device = Current();
    const char value = static_cast<char>(byte);
    return device && write(device->Port.Descriptor(), &value, 1) == 1 ? 1 : 0;
}

void CSerial::Purge() {
    if (const std::shared_ptr<Device> device = Current()) {
        (void)tcflush(device->Port.Descriptor(), TCIOFLUSH);
    }
}
