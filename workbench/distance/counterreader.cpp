#include "workbench/distance/counterreader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "workbench/distance/digitnames.h"

namespace {

constexpr double LookEvery = 1.0;  // seconds, for where text stands
constexpr std::size_t MostLooked = 80;
constexpr double ReadEvery = 0.2;
constexpr double LeastShare = 0.3;  // of the frames that show a number in a line
constexpr double NearBest = 0.85;
constexpr std::array<int, 4> InkShares{25, 35, 48, 62};
constexpr std::size_t LearnFrom = 3000;  // frames; ten minutes
constexpr double MostSpeed = 0.6;        // metres a second
constexpr double Neighbourhood = 1.5;    // seconds on both sides
constexpr double HaltDrift = 0.03;       // metres within a halt

// Ever fewer of ever more: every second one goes when there are too many.
void KeepSome(std::vector<GreyFrame>& kept, const GreyFrame& frame, std::size_t& stride, std::size_t& count) {
    if (count++ % stride != 0) {
        return;
    }
    kept.push_back(frame);
    if (kept.size() >= MostLooked) {
        for (std::size_t i = 1; 2 * i < kept.size(); ++i) {
            kept[i] = std::move(kept[2 * i]);
        }
        kept.resize((kept.size() + 1) / 2);
        stride *= 2;
    }
}

class CLineReader {
public:
    CLineReader(const PictureBox& line, int number, const InkRule& ink)
        : m_line(line), m_number(number), m_ink(ink) {}

    void Take(const GreyFrame& frame) {
        if (m_failed) {
            return;
        }
        SeenNumber seen{frame.Time, FindNumber(frame, m_line, m_ink)};
        if (m_names) {
            Read(seen);
            return;
        }
        m_seen.push_back(std::move(seen));
        if (m_seen.size() >= LearnFrom) {
            Learn();
        }
    }
    void Finish() {
        if (!m_failed && !m_names) {
            Learn();
        }
    }
    bool IsFound() const { return m_names.has_value(); }
    int Line() const { return m_number; }
    std::ptrdiff_t ClearReadings() const {
        return std::count_if(m_readings.begin(), m_readings.end(),
                             [](const CounterReading& reading) { return reading.Sure; });
    }
    CounterTrack Track() && { return {m_line, m_names->Decimals, std::move(m_readings), {}}; }

private:
    void Learn() {
        std::map<NumberGlyphs::Tail, int> tails;
        for (const SeenNumber& seen : m_seen) {
            if (seen.Number) {
                ++tails[seen.Number->Behind];
            }
        }
        // Behind metres stands an "m" or nothing. What else stands there may be feet: nobody could be sure.
        const int other = tails[NumberGlyphs::Tail::Other];
        const bool metres = other <= tails[NumberGlyphs::Tail::Low] + tails[NumberGlyphs::Tail::None];
        m_names = metres ? NameDigits(m_seen) : std::nullopt;
        m_failed = !m_names;
        if (m_names) {
            for (const SeenNumber& seen : m_seen) {
                Read(seen);
            }
        }
        m_seen.clear();
    }

    void Read(const SeenNumber& seen) {
        const auto value = seen.Number ? ReadNumber(*seen.Number, *m_names) : std::nullopt;
        if (value) {
            m_readings.push_back({seen.Time, value->Value, value->Clear});
        }
    }

    PictureBox m_line;
    int m_number;
    InkRule m_ink;
    std::vector<SeenNumber> m_seen;
    std::optional<DigitNames> m_names;
    std::vector<CounterReading> m_readings;
    bool m_failed = false;
};

// A reading is sure only if the clear ones around it lead to it and on from it.
void DoubtLoners(std::vector<CounterReading>& readings, int decimals) {
    const double step = std::pow(10.0, -decimals);
    const std::vector<CounterReading> all = readings;
    std::size_t from = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        while (all[from].Time < all[i].Time - Neighbourhood) {
            ++from;
        }
        int agree = 0;
        int disagree = 0;
        for (std::size_t j = from; j < all.size() && all[j].Time <= all[i].Time + Neighbourhood; ++j) {
            if (j == i || !all[j].Sure) {
                continue;
            }
            const double most = MostSpeed * std::fabs(all[j].Time - all[i].Time) + 1.5 * step;
            (std::fabs(all[j].Distance - all[i].Distance) <= most ? agree : disagree) += 1;
        }
        readings[i].Sure = all[i].Sure && agree >= 3 && disagree == 0;
    }
}

std::vector<CounterHalt> FindHalts(const std::vector<CounterReading>& readings) {
    std::vector<CounterHalt> halts;
    std::optional<CounterHalt> halt;
    const auto end = [&] {
        if (halt && halt->To - halt->From >= HaltSeconds) {
            halts.push_back(*halt);
        }
        halt.reset();
    };
    for (const CounterReading& reading : readings) {
        if (!reading.Sure) {
            continue;
        }
        if (!halt || std::fabs(reading.Distance - halt->Distance) > HaltDrift) {
            end();
            halt = CounterHalt{reading.Time, reading.Time, reading.Distance};
        }
        halt->To = reading.Time;
    }
    end();
    return halts;
}

// How text stands out is what lets numbers be seen in the most frames; what comes near is tried too, and the
// reading tells. Lines that hardly ever show a number aren't read.
std::vector<InkRule> ChooseInks(const std::vector<GreyFrame>& frames, const PictureBox& line) {
    std::vector<std::pair<double, InkRule>> rules;
    double most = LeastShare * static_cast<double>(frames.size());
    for (const bool bright : {true, false}) {
        for (const int share : InkShares) {
            const InkRule ink = FindInk(frames, line, bright, share);
            const auto numbers = std::count_if(frames.begin(), frames.end(), [&](const GreyFrame& frame) {
                return FindNumber(frame, line, ink).has_value();
            });
            rules.emplace_back(static_cast<double>(numbers), ink);
            most = std::max(most, rules.back().first);
        }
    }
    std::vector<InkRule> chosen;
    for (const auto& [numbers, ink] : rules) {
        if (numbers >= NearBest * most) {
            chosen.push_back(ink);
        }
    }
    return chosen;
}

std::vector<CLineReader> MakeReaders(const std::vector<GreyFrame>& frames,
                                     const std::optional<PictureBox>& region) {
    std::vector<CLineReader> readers;
    int number = 0;
    for (const PictureBox& line : region ? std::vector{*region} : FindTextLines(frames)) {
        for (const InkRule& ink : ChooseInks(frames, line)) {
            readers.emplace_back(line, number, ink);
        }
        ++number;
    }
    return readers;
}

bool Contains(const GreyFrame& frame, const PictureBox& box) {
    return box.X >= 0 && box.Y >= 0 && box.Width > 0 && box.Height > 0 && box.X + box.Width <= frame.Width &&
           box.Y + box.Height <= frame.Height;
}

}  // namespace

CounterResult ReadCounter(std::string_view path, const std::optional<PictureBox>& region,
                          const std::function<bool()>& isStopped) {
    CounterResult result;
    const auto walk = [&](double every, const std::function<void(const GreyFrame&)>& take) {
        bool stopped = false;
        const WalkResult walked = WalkFrames(path, every, [&](const GreyFrame& frame) {
            take(frame);
            stopped = isStopped();
            return !stopped;
        });
        result.Outcome = stopped                         ? CounterOutcome::Stopped
                         : walked == WalkResult::NoFile  ? CounterOutcome::NoFile
                         : walked == WalkResult::NoVideo ? CounterOutcome::NoVideo
                                                         : CounterOutcome::None;
        return result.Outcome == CounterOutcome::None;
    };
    std::vector<GreyFrame> looked;
    std::size_t stride = 1;
    std::size_t count = 0;
    const bool alike = walk(LookEvery, [&](const GreyFrame& frame) {
        if (looked.empty() || (frame.Width == looked[0].Width && frame.Height == looked[0].Height)) {
            KeepSome(looked, frame, stride, count);
        }
    });
    if (!alike || looked.empty() || (region && !Contains(looked[0], *region))) {
        return result;
    }
    std::vector<CLineReader> readers = MakeReaders(looked, region);
    const int width = looked[0].Width;
    const int height = looked[0].Height;
    looked.clear();
    if (readers.empty() || !walk(ReadEvery, [&](const GreyFrame& frame) {
            if (frame.Width == width && frame.Height == height) {
                for (CLineReader& reader : readers) {
                    reader.Take(frame);
                }
            }
        })) {
        return result;
    }
    CLineReader* found = nullptr;
    for (CLineReader& reader : readers) {
        reader.Finish();
        if (!reader.IsFound()) {
            continue;
        }
        if (found != nullptr && found->Line() != reader.Line()) {
            return result;  // which of both lines is the counter, nobody can tell
        }
        if (found == nullptr || reader.ClearReadings() > found->ClearReadings()) {
            found = &reader;
        }
    }
    if (found != nullptr) {
        result.Track = std::move(*found).Track();
        DoubtLoners(result.Track.Readings, result.Track.Decimals);
        result.Track.Halts = FindHalts(result.Track.Readings);
        result.Outcome = CounterOutcome::Found;
    }
    return result;
}
