// Where the marks of the time ruler lie.
#pragma once

#include <cstdint>
#include <vector>

// Pixels; right and bottom don't belong to it.
struct MarkRect {
    int Left = 0;
    int Top = 0;
    int Right = 0;
    int Bottom = 0;

    bool Contains(int x, int y) const { return x >= Left && x < Right && y >= Top && y < Bottom; }
    bool operator==(const MarkRect&) const = default;
};

// Above each mark stands a tick of this length.
inline constexpr int TickLength = 8;

// The tick's place for one of `seconds`, with `margin` pixels left free at each end of the width.
int TickOf(int second, int seconds, int width, int margin);
// One for each second; empty where there is no flag.
std::vector<MarkRect> LayOutMarks(const std::vector<std::uint8_t>& flags, int width, int height, int margin);
// The first second whose mark holds the point; -1 if none does.
int MarkAt(const std::vector<MarkRect>& marks, int x, int y);
