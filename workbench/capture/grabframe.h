// Takes one frame out of a video file and writes it as a JPEG. The file is decoded anew and not the player's
// window photographed, so the picture has the video's full size and no overlay.
#pragma once

#include <chrono>
#include <string_view>

enum class GrabResult {
    Done,
    NoFile,      // missing, not readable, or no regular file
    NoVideo,     // no video in it that can be decoded
    NoFrame,     // a video, but not one frame of it can be decoded
    TooSlow,     // the limit has passed
    NotWritten,  // the picture can't be stored there
};

inline constexpr std::chrono::milliseconds GrabLimit{10000};

// The frame is the one that a player shows at that position, counted from the file's first moment: the last
// frame whose time isn't after it. A quarter of a frame is tolerated, since positions come rounded. Before
// the beginning that is the first frame, behind the end the last. The picture stands as the file says that it
// is to be shown, also if it says "turned by 90 degrees".
//
// Unless the result is Done, nothing has changed at `output`.
GrabResult TryGrabFrame(std::string_view video, double seconds, std::string_view output,
                        std::chrono::milliseconds limit = GrabLimit);

bool GrabFrame(std::string_view video, double seconds, std::string_view output);
