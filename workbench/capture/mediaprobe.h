// Looks into picture and video files: can they be shown, how long is a video, is a picture black or out of
// focus? It takes paths of this machine and touches nothing of the process but the files, so that it may run
// on any thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

enum class MediaState {
    Missing,     // no file, or none that may be read
    Unreadable,  // no regular file, or nothing in it that can be decoded
    Readable,
};

struct PictureProbe {
    MediaState State = MediaState::Missing;
    int Width = 0;  // pixels
    int Height = 0;
    // Of the middle, where no text is faded in: three fifths of the height, four fifths of the width.
    double DarkShare = 0.0;  // of pixels darker than 24 of 255, 0 to 1
    // Variance of the brightness's Laplacian at about 360x288 pixels. Sharp pictures of pipes have some
    // hundreds, blurred ones less than ten.
    double Sharpness = 0.0;
    std::int64_t Bytes = 0;
    std::uint64_t Digest = 0;  // of the bytes, the same in one process only
};

struct VideoProbe {
    MediaState State = MediaState::Missing;
    double Duration = 0.0;  // seconds; 0 if the file doesn't tell
};

// A file that takes longer counts as unreadable.
inline constexpr std::chrono::milliseconds ProbeLimit{3000};

PictureProbe ProbePicture(const std::string& hostPath);
VideoProbe ProbeVideo(const std::string& hostPath);
