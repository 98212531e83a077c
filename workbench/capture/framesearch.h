// Finds the frame that is shown at a position of a video.
#pragma once

#include <cstdint>
#include <vector>

#include "workbench/capture/CVideoFile.h"

struct FrameSearch {
    enum class Outcome { Found, NoVideo, NoFrame, TooSlow };

    Outcome Result = Outcome::NoVideo;
    AvPtr<AVFrame> Frame;
    // A display matrix if the file has one.
    std::vector<std::int32_t> Orientation;
};

// `seconds` from the file's first moment; see TryGrabFrame. Ends when `end` has passed.
FrameSearch FindFrame(int descriptor, double seconds, CVideoFile::TimePoint end);
