#include "workbench/distance/CLineReader.h"

#include <algorithm>
#include <map>

#include "workbench/distance/digitforms.h"

namespace {

constexpr std::size_t LearnFrom = 1500;  // frames
constexpr float LooksLikeFeet = 0.72F;

}  // namespace

CLineReader::CLineReader(const PictureBox& line, int number, const InkRule& ink,
                         const std::vector<KnownValue>& known, std::optional<CounterUnit> unit)
    : m_line(line), m_number(number), m_ink(ink), m_known(known), m_unit(unit) {}

void CLineReader::Take(const GreyFrame& frame) {
    ++m_taken;
    SeenNumber seen{frame.Time, FindNumber(frame, m_line, m_ink, m_known.empty())};
    if (m_names) {
        Read(seen);
        return;
    }
    m_seen.push_back(std::move(seen));
    if (m_seen.size() >= LearnFrom) {
        Learn();
        for (std::size_t i = 1; 2 * i < m_seen.size(); ++i) {
            m_seen[i] = std::move(m_seen[2 * i]);
        }
        m_seen.resize((m_seen.size() + 1) / 2);  // the camera hasn't moved yet, or a title was shown
    }
}

void CLineReader::Finish() {
    if (!m_names) {
        Learn();
    }
    m_seen.clear();
}

double CLineReader::ClearShare() const {
    const auto clear = std::count_if(m_readings.begin(), m_readings.end(),
                                     [](const CounterReading& reading) { return reading.Sure; });
    return m_taken == 0 ? 0.0 : static_cast<double>(clear) / static_cast<double>(m_taken);
}

CounterTrack CLineReader::Track() const {
    return {m_line, m_names->Decimals, *m_unit, m_readings, {}};
}

// Behind metres stands an "m" or nothing. What else stands there may be anything: nobody could be sure.
std::optional<CounterUnit> CLineReader::SeenUnit() const {
    std::map<NumberGlyphs::Tail, int> tails;
    Shape first{};
    Shape second{};
    for (const SeenNumber& seen : m_seen) {
        if (seen.Number) {
            ++tails[seen.Number->Behind];
            for (std::size_t i = 0; seen.Number->Letters.size() == 2 && i < first.size(); ++i) {
                first[i] += seen.Number->Letters[0][i];
                second[i] += seen.Number->Letters[1][i];
            }
        }
    }
    using Tail = NumberGlyphs::Tail;
    const int metres = tails[Tail::Low] + tails[Tail::None];
    const int two = tails[Tail::Two];
    if (metres > two && metres >= tails[Tail::Other]) {
        return CounterUnit::Metres;
    }
    Normalise(first);
    Normalise(second);
    if (two > metres + tails[Tail::Other] && FeetLikeness(first, second) >= LooksLikeFeet) {
        return CounterUnit::Feet;
    }
    return std::nullopt;
}

void CLineReader::Learn() {
    const std::optional<CounterUnit> unit = m_unit ? m_unit : SeenUnit();
    m_names = unit ? LearnDigits(m_seen, m_known) : std::nullopt;
    if (m_names) {
        m_unit = unit;
        for (const SeenNumber& seen : m_seen) {
            Read(seen);
        }
        m_seen.clear();
    }
}

void CLineReader::Read(const SeenNumber& seen) {
    if (const auto value = seen.Number ? ReadNumber(*seen.Number, *m_names) : std::nullopt) {
        m_readings.push_back({seen.Time, value->Value, value->Clear});
    }
}
