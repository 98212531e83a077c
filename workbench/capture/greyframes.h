// Walks through a video and hands out the brightness of its frames, for who looks at many of them.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

struct GreyFrame {
    double Time = 0.0;  // seconds from the file's first moment
    int Width = 0;
    int Height = 0;
    std::vector<std::uint8_t> Pixels;  // rows without a gap, the top one first

    int At(int x, int y) const {
        return Pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
                      static_cast<std::size_t>(x)];
    }
};

enum class WalkResult {
    Done,     // to the end, or until it was told to stop
    NoFile,   // missing, not readable, or no regular file
    NoVideo,  // none in it that can be decoded
};

// One frame every `every` seconds (0: each of them), in their order, until `take` returns false. `path` is a
// path text. The picture isn't turned as the file may say.
WalkResult WalkFrames(std::string_view path, double every, const std::function<bool(const GreyFrame&)>& take);

// About `count` frames from all over the video, cheap to come by: key frames, each at most once, in their
// order. Some videos have few of them, or can't be entered in the middle.
WalkResult SampleFrames(std::string_view path, int count, const std::function<bool(const GreyFrame&)>& take);
