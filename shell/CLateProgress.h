// Tells Progress() of work that lasts, from half a second on, and that it is over.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

class CLateProgress {
public:
    // `text` says what is being done, and to what.
    explicit CLateProgress(std::string text) : m_text(std::move(text)) {}
    ~CLateProgress();
    CLateProgress(const CLateProgress&) = delete;
    CLateProgress& operator=(const CLateProgress&) = delete;

    // As often as one likes. Throws CStopped.
    void At(std::int64_t done, std::int64_t total);

    // The operator doesn't want it any more.
    class CStopped {};

private:
    std::string m_text;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point m_next = m_begin;
    std::int64_t m_total = 1;
    bool m_shown = false;
};
