#include "controls/CFrameSeek.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include "controls/CMpvCore.h"
#include "shell/numbers.h"

namespace {

constexpr double LibraryTolerance = 0.005;  // so much before the aim a frame may lie
constexpr double Rounded = 0.0006;          // positions have three decimals
constexpr double SameFrame = 0.0003;
constexpr double Digits = 2e-6;  // of positions as the library is told them
constexpr double LongestLead = 30.0;
constexpr int MostRounds = 60;
constexpr std::chrono::milliseconds Limit{10000};
constexpr std::chrono::milliseconds StepPoll{15};
constexpr int StepPolls = 8;
constexpr int PicturePolls = 5;

}  // namespace

CFrameSeek::CFrameSeek(CMpvCore& core) : m_core(core) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(Limit);
    m_limit.callOnTimeout([this] { Arrive(std::nullopt); });
    m_poll.setSingleShot(true);
    m_poll.setInterval(StepPoll);
    m_poll.callOnTimeout([this] { Look(); });
}

void CFrameSeek::Begin(const File& file) {
    End();
    m_file = file;
    m_step = file.FrameRate > 0.1 ? 1.0 / file.FrameRate : 0.04;
    m_steady = true;
    m_shown = file.FirstFrame;
    m_lastFrame.reset();
    m_lead = -1.0;
    SetLead(std::max(1.0, 5 * m_step));
}

void CFrameSeek::End() {
    m_goal = m_nextGoal = Goal::None;
    m_limit.stop();
    m_poll.stop();
    m_shown.reset();
    m_atEnd = false;
    ++m_serial;
}

bool CFrameSeek::SameTime(std::optional<double> former, double time) {
    return former && std::abs(time - *former) < SameFrame;
}

void CFrameSeek::SetLead(double seconds) {
    if (seconds != m_lead) {
        m_lead = seconds;
        m_core.Set("hr-seek-demuxer-offset", FormatNumber(seconds, 3));
    }
}

void CFrameSeek::SetDuration(double seconds) {
    if (seconds != m_file.Duration) {
        m_file.Duration = seconds;
        m_lastFrame.reset();
    }
}

void CFrameSeek::GoTo(double seconds) {
    Want(Goal::To, seconds);
}

void CFrameSeek::StayAt(double seconds) {
    Want(Goal::Stay, seconds);
}

void CFrameSeek::StepBack() {
    Want(Goal::Back, 0.0);
}

void CFrameSeek::StepForward() {
    Want(Goal::Forward, 0.0);
}

void CFrameSeek::Want(Goal goal, double seconds) {
    const bool isStep = goal == Goal::Back || goal == Goal::Forward;
    if (isStep && m_nextGoal != Goal::None) {
        return;  // a key held down must not run on after it is let go
    }
    m_nextGoal = goal;
    m_nextTarget = seconds;
    if (!IsBusy()) {
        Start();
    }
}

void CFrameSeek::Start() {
    m_goal = m_nextGoal;
    m_target = m_nextTarget;
    m_nextGoal = Goal::None;
    m_before = m_shown;
    m_candidate.reset();
    m_usualLead.reset();
    m_rounds = 0;
    switch (m_goal) {
        case Goal::To:
            m_steady ? GoGrid() : GoBehind();
            break;
        case Goal::Stay:
            m_limit.start();
            m_way = Way::Look;
            Look();
            break;
        case Goal::Back:
            m_target = m_shown.value_or(0.0);
            GoBack();
            break;
        case Goal::Forward:
            GoForward();
            break;
        case Goal::None:
            break;
    }
}

void CFrameSeek::Send(Way way, const std::vector<std::string>& words) {
    if (++m_rounds > MostRounds) {
        Arrive(m_shown);
        return;
    }
    m_limit.start();
    m_way = way;
    m_polls = 0;
    m_picturesBefore = m_core.NewPictures();
    m_waitsForPicture = true;
    const unsigned serial = ++m_serial;
    m_core.Command(words, [this, serial](bool ok) {
        if (!ok && serial == m_serial && IsBusy()) {
            m_waitsForPicture = false;
            m_goal = Goal::Forward;  // some files can't be sought in: what counts is where it stayed
            Arrive(m_shown);
        }
    });
}

void CFrameSeek::SeekFrom(double seconds) {
    m_aim = std::max(seconds, 0.0);  // below 0 counts from the end
    if (m_lastFrame) {
        m_aim = std::min(m_aim, *m_lastFrame + m_step);
    } else if (m_file.Duration > 0) {
        m_aim = std::min(m_aim, m_file.Duration + m_step);
    }
}

void CFrameSeek::GoGrid() {
    const double number = std::max(std::floor(GridNumber(m_target) + 0.25), 0.0);
    SeekFrom(m_file.FirstFrame + (number - 0.5) * m_step + LibraryTolerance);
    Send(Way::Grid, {"seek", FormatNumber(m_aim, 6), "absolute+exact"});
}

void CFrameSeek::GoBehind() {
    SeekFrom(std::max(m_target, 0.0) + m_step / 4 + LibraryTolerance);
    Send(Way::Behind, {"seek", FormatNumber(m_aim, 6), "absolute+exact"});
}

void CFrameSeek::GoBack() {
    Send(Way::Back, {"frame-back-step"});
}

void CFrameSeek::GoForward() {
    Send(Way::Step, {"frame-step"});
    m_waitsForPicture = false;  // steps are not told as such: what is shown is looked at until it changes
    m_poll.start();
}

// To the first frame from there on.
void CFrameSeek::GoOnto(double seconds) {
    SeekFrom(seconds);
    Send(Way::Onto, {"seek", FormatNumber(m_aim, 6), "absolute+exact"});
}

void CFrameSeek::TakeRestart() {
    if (IsBusy() && m_waitsForPicture) {
        Look();
    }
}

void CFrameSeek::Look() {
    m_waitsForPicture = false;
    const unsigned serial = ++m_serial;
    m_core.GetNumber("time-pos", [this, serial](std::optional<double> time) {
        if (serial != m_serial || !IsBusy()) {
            return;
        }
        if (time) {
            Landed(*time);
        } else {
            Arrive(std::nullopt);
        }
    });
}

void CFrameSeek::TakeTime(double seconds) {
    if (!IsBusy()) {
        m_shown = seconds;
        Note(seconds);
    }
}

// Containers round times to milliseconds at worst.
void CFrameSeek::Note(double time) {
    const double number = GridNumber(time);
    if (std::abs(number - std::round(number)) * m_step > std::min(0.0015, m_step / 5)) {
        m_steady = false;
    }
}

void CFrameSeek::Landed(double time) {
    if (m_way == Way::Grid || m_way == Way::Behind) {
        const bool isPastLast = time < m_aim - LibraryTolerance - SameFrame;
        // If nothing was decoded before the end came, the former picture stands, and the library takes its
        // wish or the file's end for where it is.
        const bool isFormer = isPastLast && (time < m_aim - m_lead - m_step || SameTime(m_before, time));
        const bool isWish = (SameTime(m_aim, time) || SameTime(m_file.Duration, time)) &&
                            m_core.NewPictures() == m_picturesBefore;
        if (isWish && m_polls++ < PicturePolls) {
            m_poll.start();  // it may still come
            return;
        }
        if ((isFormer || isWish) && m_lead < m_aim) {
            m_usualLead = m_usualLead.value_or(m_lead);
            SetLead(m_lead * 4);
            m_way == Way::Grid ? GoGrid() : GoBehind();
            return;
        }
        if (isPastLast) {
            m_lastFrame = time;
        }
    }
    switch (m_way) {
        case Way::Grid:
            LandedOnGrid(time);
            break;
        case Way::Behind:
            Note(time);
            if (time < m_aim - LibraryTolerance - SameFrame) {
                Weigh(time);
            } else if (time <= m_file.FirstFrame + SameFrame) {
                Arrive(time);
            } else {
                m_shown = time;
                GoBack();
            }
            break;
        case Way::Back:
            LandedBack(time);
            break;
        case Way::Step:
            if (!SameTime(m_before, time)) {
                Note(time);
                Arrive(time);
            } else if (!m_atEnd && ++m_polls < StepPolls) {
                m_poll.start();
            } else {
                // A picture that stands for long is held for so long even on the way to the next.
                m_core.Set("pause", "yes");
                GoOnto(time + LibraryTolerance + SameFrame);
            }
            break;
        case Way::Onto:
            Note(time);
            Arrive(time);
            break;
        case Way::Look:
            if (std::abs(time - m_target) < SameFrame) {
                Arrive(time);
            } else {
                m_goal = Goal::To;
                m_steady ? GoGrid() : GoBehind();
            }
            break;
    }
}

void CFrameSeek::LandedOnGrid(double time) {
    Note(time);
    const bool tooLate = time > m_target + m_step / 4 + SameFrame && time > m_file.FirstFrame + SameFrame;
    if (!m_steady) {
        GoBehind();
    } else if (!tooLate) {
        Arrive(time);
    } else if (!m_file.HasIndex && m_lead < LongestLead) {
        // The nearest frame that can be decoded by itself was behind the position.
        SetLead(m_lead * 3);
        GoGrid();
    } else {
        m_shown = time;  // the frame counted out is left out in the file
        GoBack();
    }
}

void CFrameSeek::LandedBack(double time) {
    if (m_shown && time >= *m_shown - SameFrame) {
        if (time <= m_file.FirstFrame + SameFrame || m_lead >= LongestLead) {
            Arrive(time);
        } else {
            SetLead(m_lead * 3);
            m_shown = time;
            GoBack();
        }
        return;
    }
    Note(time);
    if (m_goal == Goal::Back) {
        m_shown = time;
        time < m_target - SameFrame ? Arrive(time) : GoBack();
    } else if (m_candidate) {
        // Where frames follow each other faster than usual, a quarter of the usual step could be all of
        // theirs.
        const double gap = std::min(m_step, *m_candidate - time);
        if (*m_candidate <= m_target + gap / 4) {
            GoOnto(*m_candidate + LibraryTolerance - SameFrame);
        } else {
            m_candidate.reset();
            Weigh(time);
        }
    } else {
        Weigh(time);
    }
}

// The last frame that may be the one.
void CFrameSeek::Weigh(double time) {
    m_shown = time;
    if (time <= m_target + Rounded || time <= m_file.FirstFrame + SameFrame) {
        Arrive(time);
    } else {
        if (time <= m_target + m_step / 4) {
            m_candidate = time;
        }
        GoBack();
    }
}

void CFrameSeek::Arrive(std::optional<double> time) {
    m_limit.stop();
    m_poll.stop();
    m_waitsForPicture = false;
    ++m_serial;
    if (m_usualLead) {
        SetLead(*m_usualLead);
    }
    const bool isStep = m_goal == Goal::Back || m_goal == Goal::Forward;
    m_goal = Goal::None;
    m_shown = time;
    if (OnArrived) {
        OnArrived({time, m_nextGoal == Goal::None, isStep});
    }
    if (m_nextGoal != Goal::None && !IsBusy()) {
        Start();
    }
}
