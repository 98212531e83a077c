// Reads the counter of the cable out of the pictures of a video. Nothing is known beforehand: not where it
// stands, nor how its digits look. What gives it away is how it behaves: a number with a decimal point that
// moves as a camera does, and whose shapes look like digits.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "workbench/distance/countertrack.h"
#include "workbench/distance/digitnames.h"

// What the operator has told of a video, or of others of the same camera.
struct CounterHints {
    std::optional<PictureBox> Region;  // only what stands there is looked at
    std::vector<KnownValue> Known;     // two settle what is too uncertain else, and where the point is
    std::optional<CounterUnit> Unit;
};

enum class CounterOutcome {
    Found,
    None,     // there is no number that behaves so, or none that can be read with certainty
    NoFile,   // missing, not readable, or no regular file
    NoVideo,  // none in it that can be decoded
    Stopped,
};

struct CounterResult {
    CounterOutcome Outcome = CounterOutcome::None;
    CounterTrack Track;
};

// `path` is a path text. `isStopped` is asked between frames. Holds at most some hundred pictures in memory,
// however long the video is.
CounterResult ReadCounter(
    std::string_view path, const CounterHints& hints = {},
    const std::function<bool()>& isStopped = [] { return false; });
