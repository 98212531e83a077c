// What seeks know of the file that plays, and learn of it on their way. All times are seconds.
#pragma once

#include <optional>

class CSeekPlayer;

class CSeekFile {
public:
    // As the container tells it. Frame rate and duration are 0 if they aren't known.
    struct Head {
        double FirstFrame = 0.0;
        double FrameRate = 0.0;
        double Duration = 0.0;
        bool HasIndex = true;  // without one, the library only guesses where in the file a time lies
    };

    CSeekFile() = default;
    CSeekFile(const Head& head, CSeekPlayer& player);

    const Head& FileHead() const { return m_head; }
    double Step() const { return m_step; }      // from frame to frame
    bool IsSteady() const { return m_steady; }  // all frames seen until now stand in a row of equal steps
    double GridNumber(double time) const { return (time - m_head.FirstFrame) / m_step; }
    bool IsFirst(double time) const;
    // Where to send the library for a time: not before the file, and not far behind it.
    double Within(double seconds) const;
    void SetDuration(double seconds);  // grows with a file that is still being written

    // So many seconds before a position decoding begins.
    double Lead() const { return m_lead; }
    void SetLead(double seconds, CSeekPlayer& player);

    // A frame was seen at that time.
    void Note(double time);
    // It is the last one; the file may end before its head says so.
    void NoteLast(double time) { m_last = time; }

    std::optional<double> Shown;  // the last landing of all

private:
    Head m_head;
    double m_step = 0.04;
    bool m_steady = true;
    double m_lead = -1.0;
    std::optional<double> m_last;
};

// Times nearer than that are those of one frame.
inline constexpr double SameFrame = 0.0003;
