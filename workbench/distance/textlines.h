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
