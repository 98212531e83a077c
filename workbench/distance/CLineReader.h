// Reads the number of one line of text, frame by frame: collects, learns its digits, and reads by them.
#pragma once

#include <optional>
#include <vector>

#include "workbench/distance/countertrack.h"
#include "workbench/distance/digitnames.h"
#include "workbench/distance/glyphs.h"

class CLineReader {
public:
    // `line`: where it stands.. `unit`: if someone has told it.
    CLineReader(const PictureBox& line, int number, const InkRule& ink, const std::vector<KnownValue>& known,
                std::optional<CounterUnit> unit);

    // By time.
    void Take(const GreyFrame& frame);
    void Finish();

    bool IsFound() const { return m_names.has_value(); }
    int Line() const { return m_number; }  // several may read one line with different inks
    double ClearShare() const;             // of the frames that it took
    CounterTrack Track() const;            // once found

private:
    void Learn();
    void Read(const SeenNumber& seen);
    std::optional<CounterUnit> SeenUnit() const;

    PictureBox m_line;
    int m_number;
    InkRule m_ink;
    std::vector<KnownValue> m_known;
    std::optional<CounterUnit> m_unit;
    std::vector<SeenNumber> m_seen;
    std::optional<DigitNames> m_names;
    std::vector<CounterReading> m_readings;
    std::size_t m_taken = 0;
};
