#include "controls/CFrameSeek.h"

#include <chrono>
#include <utility>

#include "controls/CSeekPlayer.h"

namespace {

constexpr std::chrono::milliseconds Limit{10000};
constexpr std::chrono::milliseconds StepPoll{15};

}  // namespace

CFrameSeek::CFrameSeek(CSeekPlayer& player) : m_player(player) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(Limit);
    m_limit.callOnTimeout([this] {
        if (const auto wish = m_wish) {
            wish->GiveUp();
        }
    });
    m_poll.setSingleShot(true);
    m_poll.setInterval(StepPoll);
    m_poll.callOnTimeout([this] {
        if (const auto wish = m_wish) {
            wish->Look();
        }
    });
}

void CFrameSeek::Begin(const File& file) {
    End();
    m_file = CSeekFile(file, m_player);
}

void CFrameSeek::End() {
    m_wish.reset();
    m_next.reset();
    m_limit.stop();
    m_poll.stop();
    m_file.Shown.reset();
    m_atEnd = false;
}

void CFrameSeek::Want(SeekGoal goal, double seconds) {
    const bool isStep = goal == SeekGoal::Back || goal == SeekGoal::Forward;
    if (isStep && m_next) {
        return;  // a key held down must not run on after it is let go
    }
    m_next = {goal, seconds};
    if (!IsBusy()) {
        Start();
    }
}

void CFrameSeek::Start() {
    const auto [goal, target] = *std::exchange(m_next, std::nullopt);
    const auto wish = std::make_shared<CSeekWish>(
        CSeekWish::Ground{m_player, m_file, m_limit, m_poll}, goal, target,
        [this](std::optional<double> time, bool byPosition) { Arrive(time, byPosition); });
    m_wish = wish;
    wish->TakeEnd(m_atEnd);
    wish->Start();
}

void CFrameSeek::TakeRestart() {
    if (const auto wish = m_wish) {
        wish->TakeRestart();
    }
}

void CFrameSeek::TakeTime(double seconds) {
    if (!IsBusy()) {
        m_file.Shown = seconds;
        m_file.Note(seconds);
    }
}

void CFrameSeek::TakeEnd(bool atEnd) {
    m_atEnd = atEnd;
    if (m_wish != nullptr) {
        m_wish->TakeEnd(atEnd);
    }
}

void CFrameSeek::Arrive(std::optional<double> time, bool byPosition) {
    m_limit.stop();
    m_poll.stop();
    const auto ended = std::exchange(m_wish, nullptr);
    if (OnArrived) {
        OnArrived({time, !m_next, !byPosition});
    }
    if (m_next && !IsBusy()) {
        Start();
    }
}
