// The shapes of digits in a line of text.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "workbench/capture/greyframes.h"
#include "workbench/distance/textlines.h"

inline constexpr int ShapeWidth = 12;
inline constexpr int ShapeHeight = 16;
// How much ink each cell has, row by row; mean 0, length 1.
using Shape = std::array<float, ShapeWidth * ShapeHeight>;

struct Glyph {
    PictureBox Box;  // within the line
    Shape Form{};
};

// What one frame shows of a number.
struct NumberGlyphs {
    std::vector<Glyph> Digits;
    int Decimals = 0;  // how many of them stand behind the point; 0 if none is seen
    // What stands right of the number: nothing, one letter lower than digits, as "m", two narrow ones about
    // as high as digits, as "ft", or something else.
    enum class Tail { None, Low, Two, Other } Behind = Tail::None;
    std::vector<Shape> Letters;  // with Two
};

// How text stands out in a line over the whole video.
enum class InkKind {
    Bright,    // brighter than anything around
    Dark,      // darker
    Outlined,  // brighter than an outline close by, whatever the wall behind is
};
struct InkRule {
    int Level = 128;  // between text and its surroundings: brightness, or with an outline what is over it
    int Text = 255;   // of the text
    InkKind Kind = InkKind::Bright;
};
// `share`: how far the level lies on the way from the text to its surroundings, in percent.
InkRule FindInk(const std::vector<GreyFrame>& frames, const PictureBox& line, InkKind kind, int share);
// Nothing if no number stands there. `needsPoint`: only one with a decimal point that can be seen.
std::optional<NumberGlyphs> FindNumber(const GreyFrame& frame, const PictureBox& line, const InkRule& ink,
                                       bool needsPoint);

void Normalise(Shape& shape);
float Likeness(const Shape& a, const Shape& b);  // 1: the same
