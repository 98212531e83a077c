// Where text stands in the pictures of a video: it stays in its place while the pipe moves behind it.
#pragma once

#include <vector>

#include "workbench/capture/greyframes.h"

struct PictureBox {
    int X = 0;  // pixels from the picture's top left
    int Y = 0;
    int Width = 0;
    int Height = 0;
};

// Boxes of lines of text, with a little room around. The frames are of one size, and best from all over the
// video.
std::vector<PictureBox> FindTextLines(const std::vector<GreyFrame>& frames);
// The box with a little room around, and to its right for a unit, which may stand some blanks away: whoever
// doesn't see it takes feet for metres. Within a picture of that size.
PictureBox WithUnit(const PictureBox& box, int width, int height);
