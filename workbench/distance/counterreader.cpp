#include "workbench/distance/counterreader.h"

#include <algorithm>
#include <array>

#include "workbench/distance/CLineReader.h"

namespace {

constexpr double LookEvery = 1.0;  // seconds, for where text stands
constexpr std::size_t MostLooked = 80;
constexpr int Samples = 60;
constexpr std::size_t LeastSamples = 20;
constexpr double ReadEvery = 0.2;
constexpr double LeastShare = 0.2;  // of the frames that show a number in a line
constexpr double NearBest = 0.8;
constexpr std::size_t MostInks = 5;
constexpr double WellRead = 0.9;  // of the frames, for certain
constexpr std::array<int, 4> InkShares{25, 35, 48, 62};

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

// How text stands out is what lets numbers be seen in the most frames; what comes near is tried too, and the
// reading tells. Lines that hardly ever show a number aren't read.
std::vector<InkRule> ChooseInks(const std::vector<GreyFrame>& frames, const PictureBox& line,
                                bool needsPoint) {
    std::vector<std::pair<double, InkRule>> rules;
    double most = LeastShare * static_cast<double>(frames.size());
    for (const InkKind kind : {InkKind::Bright, InkKind::Outlined, InkKind::Dark}) {
        for (const int share : InkShares) {
            const InkRule ink = FindInk(frames, line, kind, share);
            const auto numbers = std::count_if(frames.begin(), frames.end(), [&](const GreyFrame& frame) {
                return FindNumber(frame, line, ink, needsPoint).has_value();
            });
            rules.emplace_back(static_cast<double>(numbers), ink);
            most = std::max(most, rules.back().first);
        }
    }
    std::stable_sort(rules.begin(), rules.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<InkRule> chosen;
    for (const auto& [numbers, ink] : rules) {
        if (numbers >= NearBest * most && chosen.size() < MostInks) {
            chosen.push_back(ink);
        }
    }
    return chosen;
}

bool Contains(const GreyFrame& frame, const PictureBox& box) {
    return box.X >= 0 && box.Y >= 0 && box.Width > 0 && box.Height > 0 && box.X + box.Width <= frame.Width &&
           box.Y + box.Height <= frame.Height;
}

std::vector<CLineReader> MakeReaders(const std::vector<GreyFrame>& frames, const CounterHints& hints) {
    std::vector<PictureBox> lines;
    if (!hints.Region) {
        lines = FindTextLines(frames);
    } else if (Contains(frames[0], *hints.Region)) {
        lines = {WithUnit(*hints.Region, frames[0].Width, frames[0].Height)};
    }
    std::vector<CLineReader> readers;
    int number = 0;
    for (const PictureBox& line : lines) {
        // Where the operator tells values he also tells where the point stands.
        for (const InkRule& ink : ChooseInks(frames, line, hints.Known.empty())) {
            readers.emplace_back(line, number, ink, hints.Known, hints.Unit);
        }
        ++number;
    }
    return readers;
}

// Once a line is read well with one ink, the others needn't be read.
void DropRivals(std::vector<CLineReader>& readers) {
    for (std::size_t i = 0; i < readers.size(); ++i) {
        if (!readers[i].IsFound() || readers[i].ClearShare() < WellRead) {
            continue;
        }
        const int line = readers[i].Line();
        for (std::size_t k = readers.size(); k-- > 0;) {
            if (k != i && readers[k].Line() == line) {
                readers.erase(readers.begin() + static_cast<std::ptrdiff_t>(k));
                i -= k < i ? 1 : 0;
            }
        }
    }
}

// The reader of the only line that behaves as a counter.
const CLineReader* ChooseReader(std::vector<CLineReader>& readers) {
    const CLineReader* found = nullptr;
    for (CLineReader& reader : readers) {
        if (found != nullptr && found->Line() == reader.Line() && found->ClearShare() >= WellRead) {
            continue;
        }
        reader.Finish();
        if (!reader.IsFound()) {
            continue;
        }
        if (found != nullptr && found->Line() != reader.Line()) {
            return nullptr;  // which of both is the counter, nobody can tell
        }
        if (found == nullptr || reader.ClearShare() > found->ClearShare()) {
            found = &reader;
        }
    }
    return found;
}

}  // namespace

CounterResult ReadCounter(std::string_view path, const CounterHints& hints,
                          const std::function<bool()>& isStopped) {
    CounterResult result;
    using Take = std::function<bool(const GreyFrame&)>;
    const auto walk = [&](const std::function<WalkResult(const Take&)>& walker,
                          const std::function<void(const GreyFrame&)>& take) {
        bool stopped = false;
        const WalkResult walked = walker([&](const GreyFrame& frame) {
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
    const auto look = [&](const GreyFrame& frame) {
        if (looked.empty() || (frame.Width == looked[0].Width && frame.Height == looked[0].Height)) {
            KeepSome(looked, frame, stride, count);
        }
    };
    bool alike = walk([&](const auto& take) { return SampleFrames(path, Samples, take); }, look);
    if (alike && looked.size() < LeastSamples) {
        looked.clear();
        alike = walk([&](const auto& take) { return WalkFrames(path, LookEvery, take); }, look);
    }
    if (!alike || looked.empty()) {
        return result;
    }
    std::vector<CLineReader> readers = MakeReaders(looked, hints);
    const int width = looked[0].Width;
    const int height = looked[0].Height;
    looked.clear();
    const auto read = [&](const GreyFrame& frame) {
        if (frame.Width != width || frame.Height != height) {
            return;
        }
        bool learned = false;
        for (CLineReader& reader : readers) {
            const bool before = reader.IsFound();
            reader.Take(frame);
            learned = learned || reader.IsFound() != before;
        }
        if (learned) {
            DropRivals(readers);
        }
    };
    if (readers.empty() || !walk([&](const auto& take) { return WalkFrames(path, ReadEvery, take); }, read)) {
        return result;
    }
    if (const CLineReader* found = ChooseReader(readers)) {
        result.Track = found->Track();
        FinishTrack(result.Track);
        result.Outcome = CounterOutcome::Found;
    }
    return result;
}
