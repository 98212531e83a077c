#include "controls/CSeekWish.h"

#include <QTimer>
#include <algorithm>
#include <cmath>

#include "controls/CSeekPlayer.h"
#include "shell/numbers.h"

namespace {

constexpr double LibraryTolerance = 0.005;  // so much before the aim a frame may lie
constexpr double Rounded = 0.0006;          // positions have three decimals
constexpr double LongestLead = 30.0;
constexpr int MostRounds = 60;
constexpr int StepPolls = 8;
constexpr int PicturePolls = 5;

bool SameTime(std::optional<double> former, double time) {
    return former && std::abs(time - *former) < SameFrame;
}

}  // namespace

CSeekWish::CSeekWish(const Ground& ground, SeekGoal goal, double target, Arrived arrived)
    : m_ground(ground),
      m_file(ground.File),
      m_goal(goal),
      m_target(target),
      m_arrived(std::move(arrived)),
      m_byPosition(goal == SeekGoal::To || goal == SeekGoal::Stay),
      m_before(ground.File.Shown) {}

void CSeekWish::Start() {
    switch (m_goal) {
        case SeekGoal::To:
            m_file.IsSteady() ? GoGrid() : GoBehind();
            break;
        case SeekGoal::Stay:
            m_ground.Limit.start();
            Look();
            break;
        case SeekGoal::Back:
            m_target = m_file.Shown.value_or(0.0);
            GoBack();
            break;
        case SeekGoal::Forward:
            GoForward();
            break;
    }
}

void CSeekWish::Send(Way way, const std::vector<std::string>& words) {
    if (++m_rounds > MostRounds) {
        Arrive(m_file.Shown);
        return;
    }
    m_ground.Limit.start();
    m_way = way;
    m_polls = 0;
    m_picturesBefore = m_ground.Player.NewPictures();
    m_waitsForPicture = true;
    const unsigned serial = ++m_serial;
    m_ground.Player.Command(words, [weak = weak_from_this(), serial](bool ok) {
        const auto self = weak.lock();
        if (self != nullptr && !ok && serial == self->m_serial) {
            self->m_byPosition = false;  // some files can't be sought in: what counts is where it stayed
            self->Arrive(self->m_file.Shown);
        }
    });
}

// To the first frame from there on.
void CSeekWish::Seek(Way way, double seconds) {
    m_aim = m_file.Within(seconds);
    Send(way, {"seek", FormatNumber(m_aim, 6), "absolute+exact"});
}

void CSeekWish::GoGrid() {
    const double number = std::max(std::floor(m_file.GridNumber(m_target) + 0.25), 0.0);
    Seek(Way::Grid, m_file.FileHead().FirstFrame + (number - 0.5) * m_file.Step() + LibraryTolerance);
}

void CSeekWish::GoBehind() {
    Seek(Way::Behind, std::max(m_target, 0.0) + m_file.Step() / 4 + LibraryTolerance);
}

void CSeekWish::GoBack() {
    Send(Way::Back, {"frame-back-step"});
}

void CSeekWish::GoForward() {
    Send(Way::Step, {"frame-step"});
    m_waitsForPicture = false;  // steps are not told as such: what is shown is looked at until it changes
    m_ground.Poll.start();
}

void CSeekWish::TakeRestart() {
    if (m_waitsForPicture) {
        Look();
    }
}

void CSeekWish::Look() {
    m_waitsForPicture = false;
    const unsigned serial = ++m_serial;
    m_ground.Player.GetNumber("time-pos", [weak = weak_from_this(), serial](std::optional<double> time) {
        const auto self = weak.lock();
        if (self == nullptr || serial != self->m_serial) {
            return;
        }
        if (time) {
            self->Landed(*time);
        } else {
            self->GiveUp();
        }
    });
}

bool CSeekWish::IsBeforeAim(double time) const {
    return time < m_aim - LibraryTolerance - SameFrame;
}

// Whether what is shown isn't an answer yet. If nothing was decoded before the end came, the former picture
// stands, and the library takes its wish or the file's end for where it is.
bool CSeekWish::GoesOn(double time) {
    const bool isPastLast = IsBeforeAim(time);
    const bool isFormer =
        isPastLast && (time < m_aim - m_file.Lead() - m_file.Step() || SameTime(m_before, time));
    const bool isWish = (SameTime(m_aim, time) || SameTime(m_file.FileHead().Duration, time)) &&
                        m_ground.Player.NewPictures() == m_picturesBefore;
    if (isWish && m_polls++ < PicturePolls) {
        m_ground.Poll.start();  // it may still come
        return true;
    }
    if ((isFormer || isWish) && m_file.Lead() < m_aim) {
        m_usualLead = m_usualLead.value_or(m_file.Lead());
        m_file.SetLead(m_file.Lead() * 4, m_ground.Player);
        m_way == Way::Grid ? GoGrid() : GoBehind();
        return true;
    }
    if (isPastLast) {
        m_file.NoteLast(time);
    }
    return false;
}

void CSeekWish::Landed(double time) {
    switch (m_way) {
        case Way::Grid:
            LandedOnGrid(time);
            break;
        case Way::Behind:
            LandedBehind(time);
            break;
        case Way::Back:
            LandedBack(time);
            break;
        case Way::Step:
            LandedOnStep(time);
            break;
        case Way::Onto:
            m_file.Note(time);
            Arrive(time);
            break;
        case Way::Look:
            if (std::abs(time - m_target) < SameFrame) {
                Arrive(time);
            } else {
                m_goal = SeekGoal::To;
                Start();
            }
            break;
    }
}

void CSeekWish::LandedOnStep(double time) {
    if (!SameTime(m_before, time)) {
        m_file.Note(time);
        Arrive(time);
    } else if (!m_atEnd && ++m_polls < StepPolls) {
        m_ground.Poll.start();
    } else {
        // A picture that stands for long is held for so long even on the way to the next.
        m_ground.Player.Set("pause", "yes");
        Seek(Way::Onto, time + LibraryTolerance + SameFrame);
    }
}

void CSeekWish::LandedBehind(double time) {
    if (GoesOn(time)) {
        return;
    }
    m_file.Note(time);
    if (IsBeforeAim(time)) {
        Weigh(time);
    } else if (m_file.IsFirst(time)) {
        Arrive(time);
    } else {
        m_file.Shown = time;
        GoBack();
    }
}

void CSeekWish::LandedOnGrid(double time) {
    if (GoesOn(time)) {
        return;
    }
    m_file.Note(time);
    const bool tooLate = time > m_target + m_file.Step() / 4 + SameFrame && !m_file.IsFirst(time);
    if (!m_file.IsSteady()) {
        GoBehind();
    } else if (!tooLate) {
        Arrive(time);
    } else if (!m_file.FileHead().HasIndex && m_file.Lead() < LongestLead) {
        // The nearest frame that can be decoded by itself was behind the position.
        m_file.SetLead(m_file.Lead() * 3, m_ground.Player);
        GoGrid();
    } else {
        m_file.Shown = time;  // the frame counted out is left out in the file
        GoBack();
    }
}

void CSeekWish::LandedBack(double time) {
    if (m_file.Shown && time >= *m_file.Shown - SameFrame) {
        if (m_file.IsFirst(time) || m_file.Lead() >= LongestLead) {
            Arrive(time);
        } else {
            m_file.SetLead(m_file.Lead() * 3, m_ground.Player);
            m_file.Shown = time;
            GoBack();
        }
        return;
    }
    m_file.Note(time);
    if (m_goal == SeekGoal::Back) {
        m_file.Shown = time;
        time < m_target - SameFrame ? Arrive(time) : GoBack();
    } else if (m_candidate) {
        // Where frames follow each other faster than usual, a quarter of the usual step could be all of
        // theirs.
        const double gap = std::min(m_file.Step(), *m_candidate - time);
        if (*m_candidate <= m_target + gap / 4) {
            Seek(Way::Onto, *m_candidate + LibraryTolerance - SameFrame);
        } else {
            m_candidate.reset();
            Weigh(time);
        }
    } else {
        Weigh(time);
    }
}

// The last frame that may be the one.
void CSeekWish::Weigh(double time) {
    m_file.Shown = time;
    if (time <= m_target + Rounded || m_file.IsFirst(time)) {
        Arrive(time);
    } else {
        if (time <= m_target + m_file.Step() / 4) {
            m_candidate = time;
        }
        GoBack();
    }
}

void CSeekWish::Arrive(std::optional<double> time) {
    m_waitsForPicture = false;
    ++m_serial;
    if (m_usualLead) {
        m_file.SetLead(*m_usualLead, m_ground.Player);
    }
    m_file.Shown = time;
    m_arrived(time, m_byPosition);
}
