// Reads the counter of the cable out of the pictures of a video. Nothing is known beforehand: not where it
// stands, nor how its digits look. What gives it away is how it behaves: a number with a decimal point whose
// tenths follow each other in a ring of ten shapes, and whose value moves as a camera does.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/distance/textlines.h"

struct CounterReading {
    double Time = 0.0;      // seconds
    double Distance = 0.0;  // as the picture shows it
    bool Sure = false;      // its shapes are beyond doubt, and so is its place among its neighbours
};

// Where the camera stood for a while.
struct CounterHalt {
    double From = 0.0;  // seconds
    double To = 0.0;
    double Distance = 0.0;
};

struct CounterTrack {
    PictureBox Region;  // of the line that it stands in
    int Decimals = 0;
    std::vector<CounterReading> Readings;  // by time
    std::vector<CounterHalt> Halts;        // of at least HaltSeconds, by time
};

inline constexpr double HaltSeconds = 5.0;

enum class CounterOutcome {
    Found,
    None,     // there is no number that behaves so, or none that can be told from its mirror with certainty
    NoFile,   // missing, not readable, or no regular file
    NoVideo,  // none in it that can be decoded
    Stopped,
};

struct CounterResult {
    CounterOutcome Outcome = CounterOutcome::None;
    CounterTrack Track;
};

// `path` is a path text. With a region only what stands there is looked at. `isStopped` is asked between
// frames. Holds at most some hundred pictures in memory, however long the video is.
CounterResult ReadCounter(
    std::string_view path, const std::optional<PictureBox>& region = {},
    const std::function<bool()>& isStopped = [] { return false; });
