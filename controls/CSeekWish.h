// One wish for a frame on its way, from the first command to the library until the frame shown is known.
// Answers to a wish that has ended find nobody.
//
// The library itself shows the first frame from a position on, and in some files not even that one. So where
// it landed is read after every seek and put right: where frames come in a steady row the way is aimed
// between two frames and checked; elsewhere it goes to the first frame behind the position and one back.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/CSeekFile.h"

class CSeekPlayer;
class QTimer;

enum class SeekGoal { To, Stay, Back, Forward };

class CSeekWish : public std::enable_shared_from_this<CSeekWish> {
public:
    // What all wishes of a file share; it must outlive them.
    struct Ground {
        CSeekPlayer& Player;
        CSeekFile& File;
        QTimer& Limit;  // the library owes no answer in broken files
        QTimer& Poll;
    };
    // The time of the frame shown, if it is known, and whether it was a position that led there.
    using Arrived = std::function<void(std::optional<double> time, bool byPosition)>;

    // `target` in seconds, for a goal that is a position. `arrived` is called once, last of all.
    CSeekWish(const Ground& ground, SeekGoal goal, double target, Arrived arrived);

    void Start();
    void TakeRestart();  // the library's word that a picture is there
    void TakeEnd(bool atEnd) { m_atEnd = atEnd; }
    void Look();  // which frame is shown
    void GiveUp() { Arrive(std::nullopt); }

private:
    enum class Way {
        Grid,    // to the frame counted out
        Behind,  // to the first frame behind the position
        Back,    // one frame back
        Step,    // one frame on
        Onto,    // to the frame that is the one
        Look,    // which frame is shown
    };

    void Seek(Way way, double seconds);
    void GoGrid();
    void GoBehind();
    void GoBack();
    void GoForward();
    void Send(Way way, const std::vector<std::string>& words);
    void Landed(double time);
    bool IsBeforeAim(double time) const;
    bool GoesOn(double time);
    void LandedOnGrid(double time);
    void LandedBehind(double time);
    void LandedBack(double time);
    void LandedOnStep(double time);
    void Weigh(double time);
    void Arrive(std::optional<double> time);

    Ground m_ground;
    CSeekFile& m_file;
    SeekGoal m_goal;
    Way m_way = Way::Look;
    double m_target;
    double m_aim = 0.0;
    Arrived m_arrived;
    bool m_byPosition;
    bool m_atEnd = false;
    bool m_waitsForPicture = false;
    std::optional<double> m_before;     // what was shown when the wish began
    std::optional<double> m_candidate;  // may be the one, if the frame before isn't too near
    std::optional<double> m_usualLead;  // to go back to
    unsigned m_serial = 0;              // of the command that is awaited
    int m_rounds = 0;
    int m_polls = 0;
    std::uint64_t m_picturesBefore = 0;
};
