#include "shell/CLateProgress.h"

#include <algorithm>

#include "shell/CProgress.h"
#include "shell/seams.h"

CLateProgress::~CLateProgress() {
    if (m_shown) {
        Progress().At(m_total, m_total, {});
    }
}

void CLateProgress::At(std::int64_t done, std::int64_t total) {
    constexpr std::chrono::milliseconds patience(500);
    constexpr std::chrono::milliseconds pace(50);
    const auto now = std::chrono::steady_clock::now();
    if (now < m_next) {
        return;
    }
    if (now - m_begin >= patience) {
        m_total = std::max<std::int64_t>(total, 1);
        m_shown = true;
        Progress().At(std::min(done, m_total - 1), m_total, m_text);
    }
    m_next = now + pace;
    if (Progress().Stopped()) {
        throw CStopped();
    }
}
