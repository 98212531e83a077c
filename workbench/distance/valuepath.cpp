#include "workbench/distance/valuepath.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

constexpr float WindowCost = 0.1F;  // of a move as far as the camera gets at most; in likeness
constexpr float JumpCost = 2.0F;    // of any move: counters are set to 0 between
constexpr float KnownGain = 20.0F;

// From any value to any other: each state gets the best of those before it, less the cost of the way.
void Move(std::vector<float>& scores, std::vector<std::int32_t>& from, float cost) {
    const std::size_t count = scores.size();
    const auto best = std::max_element(scores.begin(), scores.end());
    const float jumped = *best - JumpCost;
    const auto jumper = static_cast<std::int32_t>(best - scores.begin());
    for (std::size_t i = 0; i < count; ++i) {
        from[i] = static_cast<std::int32_t>(i);
    }
    for (std::size_t i = 1; i < count; ++i) {
        if (scores[i - 1] - cost > scores[i]) {
            scores[i] = scores[i - 1] - cost;
            from[i] = from[i - 1];
        }
    }
    for (std::size_t i = count - 1; i-- > 0;) {
        if (scores[i + 1] - cost > scores[i]) {
            scores[i] = scores[i + 1] - cost;
            from[i] = from[i + 1];
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (jumped > scores[i]) {
            scores[i] = jumped;
            from[i] = jumper;
        }
    }
}

void AddSeen(std::vector<float>& scores, const DigitsSeen& frame) {
    const std::size_t skipped =
        frame.Likeness.size() - std::min<std::size_t>(frame.Likeness.size(), MostPathPlaces);
    std::vector<float> sums{0.0F};
    for (std::size_t place = skipped; place < frame.Likeness.size(); ++place) {
        std::vector<float> next(sums.size() * 10);
        for (std::size_t i = 0; i < next.size(); ++i) {
            next[i] = sums[i / 10] + frame.Likeness[place][i % 10];
        }
        sums = std::move(next);
    }
    for (std::size_t i = 0; i < scores.size(); ++i) {
        // With fewer places than the value would need it can't be shown.
        scores[i] += i < sums.size() ? sums[i] : -1.0F;
    }
    if (frame.Known && *frame.Known >= 0 && static_cast<std::size_t>(*frame.Known) < scores.size()) {
        scores[static_cast<std::size_t>(*frame.Known)] += KnownGain;
    }
}

}  // namespace

std::vector<int> MostLikelyPath(const std::vector<DigitsSeen>& frames, int decimals) {
    if (frames.empty()) {
        return {};
    }
    std::size_t places = 1;
    for (const DigitsSeen& frame : frames) {
        places = std::max(places, std::min<std::size_t>(frame.Likeness.size(), MostPathPlaces));
    }
    const auto count = static_cast<std::size_t>(std::lround(std::pow(10.0, static_cast<double>(places))));
    std::vector<float> scores(count, 0.0F);
    std::vector<std::vector<std::int32_t>> from(frames.size());
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (i > 0) {
            const double most =
                1.0 + MostCameraSpeed * (frames[i].Time - frames[i - 1].Time) * std::pow(10.0, decimals);
            from[i].resize(count);
            Move(scores, from[i], WindowCost / static_cast<float>(most));
        }
        AddSeen(scores, frames[i]);
    }
    std::vector<int> values(frames.size());
    values.back() = static_cast<int>(std::max_element(scores.begin(), scores.end()) - scores.begin());
    for (std::size_t i = frames.size() - 1; i > 0; --i) {
        values[i - 1] = from[i][static_cast<std::size_t>(values[i])];
    }
    return values;
}
