#include "controls/CSeekFile.h"

#include <algorithm>
#include <cmath>

#include "controls/CSeekPlayer.h"
#include "shell/numbers.h"

CSeekFile::CSeekFile(const Head& head, CSeekPlayer& player)
    : Shown(head.FirstFrame), m_head(head), m_step(head.FrameRate > 0.1 ? 1.0 / head.FrameRate : 0.04) {
    SetLead(std::max(1.0, 5 * m_step), player);
}

bool CSeekFile::IsFirst(double time) const {
    return time <= m_head.FirstFrame + SameFrame;
}

double CSeekFile::Within(double seconds) const {
    const double aim = std::max(seconds, 0.0);  // below 0 counts from the end
    if (m_last) {
        return std::min(aim, *m_last + m_step);
    }
    return m_head.Duration > 0 ? std::min(aim, m_head.Duration + m_step) : aim;
}

void CSeekFile::SetDuration(double seconds) {
    if (seconds != m_head.Duration) {
        m_head.Duration = seconds;
        m_last.reset();
    }
}

void CSeekFile::SetLead(double seconds, CSeekPlayer& player) {
    if (seconds != m_lead) {
        m_lead = seconds;
        player.Set("hr-seek-demuxer-offset", FormatNumber(seconds, 3));
    }
}

// Containers round times to milliseconds at worst.
void CSeekFile::Note(double time) {
    const double number = GridNumber(time);
    if (std::abs(number - std::round(number)) * m_step > std::min(0.0015, m_step / 5)) {
        m_steady = false;
    }
}
