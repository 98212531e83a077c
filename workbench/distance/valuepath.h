// The most likely course of a counter through frames whose digits are only known by likeness: the camera
// moves slowly, so that a frame that could be read in two ways is read as its neighbours say.
#pragma once

#include <array>
#include <optional>
#include <vector>

struct DigitsSeen {
    double Time = 0.0;                            // seconds
    std::vector<std::array<float, 10>> Likeness;  // of each place to each digit, the highest place first
    std::optional<int> Known;                     // the value, if someone has read it; in steps
};

inline constexpr double MostCameraSpeed = 0.6;  // metres a second, as crews drive at the very most
inline constexpr int MostPathPlaces = 5;        // higher ones count as 0

// The values in steps of the last place, one for each frame. By time. Needs memory for as many values as the
// places allow, times the frames.
std::vector<int> MostLikelyPath(const std::vector<DigitsSeen>& frames, int decimals);
