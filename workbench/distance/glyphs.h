// The shapes of letters in a line of text, and which of them are alike.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "workbench/capture/greyframes.h"
#include "workbench/distance/textlines.h"

inline constexpr int ShapeWidth = 12;
inline constexpr int ShapeHeight = 16;
using Shape = std::array<float, ShapeWidth * ShapeHeight>;  // mean 0, length 1

struct Glyph {
    PictureBox Box;  // within the line
    Shape Form{};
    int Holes = 0;  // closed rings in it
};

// What one frame shows of a number: the shapes before and behind the decimal point.
struct NumberGlyphs {
    std::vector<Glyph> Digits;
    int Decimals = 0;  // how many of them stand behind the point
    // What stands right of the number, as far as letters go: nothing, one letter lower than digits, as "m",
    // or something else.
    enum class Tail { None, Low, Other } Behind = Tail::None;
};

// How text stands out in a line over the whole video.
struct InkRule {
    int Level = 128;     // brightness between text and its surroundings
    bool Bright = true;  // text is brighter
};
// `share`: how far the level lies on the way from the text to its surroundings, in percent.
InkRule FindInk(const std::vector<GreyFrame>& frames, const PictureBox& line, bool bright, int share);
// Nothing if no number with a decimal point stands there.
std::optional<NumberGlyphs> FindNumber(const GreyFrame& frame, const PictureBox& line, const InkRule& ink);

float Likeness(const Shape& a, const Shape& b);  // 1: the same
