#include "geo/nmea/CGpsData.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "shell/CPrompts.h"

namespace {

// The receiver's text arrives in blocks of this size: the port has no time-outs.
constexpr std::size_t BlockBytes = 1024;
constexpr std::chrono::seconds Patience(20);

}  // namespace

CGpsData::~CGpsData() {
    Close();
}

int CGpsData::Open(int port, int baud) {
    Close();
    if (m_port.Open(port, baud) == 0) {
        return 0;
    }
    m_port.Purge();
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        m_begin = SteadyClock::now();
        m_lastBlock.reset();
    }
    m_reading = true;
    try {
        m_reader = std::thread([this] { ReadAll(); });
    } catch (const std::system_error&) {
        Close();
        ShowMessage(2400);
        return 0;
    }
    return 1;
}

void CGpsData::Close() {
    m_reading = false;
    m_port.Close();
    if (m_reader.joinable()) {
        m_reader.join();
    }
}

void CGpsData::ReadAll() {
    std::array<char, BlockBytes> block{};
    while (m_reading) {
        const std::size_t got = m_port.Read(block.data(), block.size());
        if (got < 1 || got == CSerial::Failed) {
            return;
        }
        Take({block.data(), got});
    }
}

void CGpsData::Take(std::string_view bytes) {
    const std::lock_guard<std::mutex> guard(m_lock);
    const SteadyClock::time_point now = SteadyClock::now();
    m_receiver.Receive(bytes);
    if (m_receiver.Positions() != m_positions) {
        m_positions = m_receiver.Positions();
        m_lastPosition = now;
    }
    if (m_lastBlock) {
        const std::chrono::duration<double> gap = now - *m_lastBlock;
        m_usualGap = m_usualGap.count() == 0 ? gap : m_usualGap * 0.75 + gap * 0.25;
    }
    m_lastBlock = now;
}

GpsFix CGpsData::Fix() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_receiver.Fix();
}

std::string CGpsData::GetReceiveBuffer() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    return m_receiver.Buffer();
}

std::optional<std::chrono::seconds> CGpsData::Age() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    if (!m_lastPosition) {
        return std::nullopt;
    }
    return std::chrono::duration_cast<std::chrono::seconds>(SteadyClock::now() - *m_lastPosition);
}

bool CGpsData::IsStale() const {
    const std::lock_guard<std::mutex> guard(m_lock);
    const std::chrono::duration<double> patience =
        std::max(std::chrono::duration<double>(Patience), m_usualGap * 3);
    return SteadyClock::now() - m_lastPosition.value_or(m_begin) > patience;
}
