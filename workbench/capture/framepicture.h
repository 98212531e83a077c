// From a decoded frame to the pixels of a picture.
#pragma once

#include <cstdint>
#include <vector>

struct AVFrame;

struct RgbPicture {
    int Width = 0;
    int Height = 0;
    std::vector<unsigned char> Pixels;  // three bytes each, red first, rows without a gap, the top one first
};

// `orientation` is the file's display matrix or empty; one of the frame's own goes before it. Quarter turns
// and mirrorings are followed. False if the frame's kind of pixels can't be converted.
bool MakePicture(const AVFrame& frame, const std::vector<std::int32_t>& orientation, RgbPicture& picture);
