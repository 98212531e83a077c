// Leads the playing library to exactly the frame that a position means: the last whose time isn't after the
// position. A quarter of a frame is tolerated, since positions come rounded. Pictures taken at a position
// follow the same rule, so an operator gets the picture that he sees. Wishes are met one after the other.
#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

#include "controls/CSeekFile.h"
#include "controls/CSeekWish.h"

class CSeekPlayer;

class CFrameSeek {
public:
    using File = CSeekFile::Head;

    // The player must outlive it.
    explicit CFrameSeek(CSeekPlayer& player);

    // A file has just been loaded.
    void Begin(const File& file);
    void End();
    void SetDuration(double seconds) { m_file.SetDuration(seconds); }

    // Of many wishes while one is under way only the last counts. The file must be paused.
    void GoTo(double seconds) { Want(SeekGoal::To, seconds); }
    // As GoTo, but nothing is done if the frame shown is the one already.
    void StayAt(double seconds) { Want(SeekGoal::Stay, seconds); }
    void StepBack() { Want(SeekGoal::Back, 0.0); }
    void StepForward() { Want(SeekGoal::Forward, 0.0); }
    bool IsBusy() const { return m_wish != nullptr; }

    void TakeRestart();             // the library's word that a picture is there
    void TakeTime(double seconds);  // of a frame that plays or was stepped to
    void TakeEnd(bool atEnd);

    struct Arrival {
        std::optional<double> Time;     // of the frame shown, if it is known
        bool IsLast = true;             // nothing else is wished for
        bool CountsAsPosition = false;  // it wasn't a position that led there
    };
    std::function<void(const Arrival& arrival)> OnArrived;

private:
    struct Wanted {
        SeekGoal Goal;
        double Seconds;
    };
    void Want(SeekGoal goal, double seconds);
    void Start();
    void Arrive(std::optional<double> time, bool byPosition);

    CSeekPlayer& m_player;
    QTimer m_limit;
    QTimer m_poll;
    CSeekFile m_file;
    bool m_atEnd = false;
    std::shared_ptr<CSeekWish> m_wish;  // the one under way
    std::optional<Wanted> m_next;
};
