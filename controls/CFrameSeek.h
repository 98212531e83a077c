// Leads the playing library to exactly the frame that a position means: the last whose time isn't after the
// position. A quarter of a frame is tolerated, since positions come rounded. Pictures taken at a position
// follow the same rule, so an operator gets the picture that he sees.
//
// The library itself shows the first frame from a position on, and in some files not even that one. So where
// it landed is read after every seek and put right: where frames come in a steady row the way is aimed
// between two frames and checked; elsewhere it goes to the first frame behind the position and one back.
#pragma once

#include <QTimer>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class CMpvCore;

class CFrameSeek {
public:
    // The core must outlive it.
    explicit CFrameSeek(CMpvCore& core);

    // Of a file just loaded: times in seconds. Frame rate and duration are 0 if they aren't known.
    struct File {
        double FirstFrame = 0.0;
        double FrameRate = 0.0;
        double Duration = 0.0;
        bool HasIndex = true;  // without one, the library only guesses where in the file a time lies
    };
    void Begin(const File& file);
    void End();
    void SetDuration(double seconds);  // grows with a file that is still being written

    // Of many wishes while one is under way only the last counts. The file must be paused.
    void GoTo(double seconds);
    // As GoTo, but nothing is done if the frame shown is the one already.
    void StayAt(double seconds);
    void StepBack();
    void StepForward();
    bool IsBusy() const { return m_goal != Goal::None; }

    void TakeRestart();             // the library's word that a picture is there
    void TakeTime(double seconds);  // of a frame that plays or was stepped to
    void TakeEnd(bool atEnd) { m_atEnd = atEnd; }

    struct Arrival {
        std::optional<double> Time;     // of the frame shown, if it is known
        bool IsLast = true;             // nothing else is wished for
        bool CountsAsPosition = false;  // it wasn't a position that led there
    };
    std::function<void(const Arrival& arrival)> OnArrived;

private:
    enum class Goal { None, To, Stay, Back, Forward };
    enum class Way {
        Grid,    // to the frame counted out
        Behind,  // to the first frame behind the position
        Back,    // one frame back
        Step,    // one frame on
        Onto,    // to the frame that is the one
        Look,    // which frame is shown
    };

    void Want(Goal goal, double seconds);
    void Start();
    void SeekFrom(double seconds);
    void GoGrid();
    void GoBehind();
    void GoBack();
    void GoForward();
    void GoOnto(double seconds);
    void Send(Way way, const std::vector<std::string>& words);
    void Look();
    void Landed(double time);
    void LandedOnGrid(double time);
    void LandedBack(double time);
    void Weigh(double time);
    void Arrive(std::optional<double> time);
    void Note(double time);
    static bool SameTime(std::optional<double> former, double time);
    void SetLead(double seconds);
    double GridNumber(double time) const { return (time - m_file.FirstFrame) / m_step; }

    CMpvCore& m_core;
    QTimer m_limit;  // the library owes no answer in broken files
    QTimer m_poll;
    File m_file;
    double m_step = 0.04;
    bool m_steady = true;  // all frames seen so far stand in a row of equal steps
    double m_lead = 0.0;   // so many seconds before a position decoding begins
    bool m_atEnd = false;
    std::optional<double> m_lastFrame;  // if it was seen; the file may end before its head says so
    std::optional<double> m_usualLead;  // to go back to

    Goal m_goal = Goal::None;
    Way m_way = Way::Look;
    double m_target = 0.0;
    double m_aim = 0.0;
    bool m_waitsForPicture = false;
    std::optional<double> m_before;     // what was shown when the goal was set
    std::optional<double> m_shown;      // the last landing of all
    std::optional<double> m_candidate;  // may be the one, if the frame before isn't too near
    unsigned m_serial = 0;
    int m_rounds = 0;
    int m_polls = 0;
    std::uint64_t m_picturesBefore = 0;

    Goal m_nextGoal = Goal::None;
    double m_nextTarget = 0.0;
};
