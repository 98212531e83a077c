// Videos as devices write them: formats for tests on frames, films that are turned, cut or broken, and files
// that are no films at all.
#pragma once

#include <random>
#include <utility>

#include "tests/support/CTestFolder.h"
#include "tests/workbench/numberedvideo.h"

inline constexpr const char* X264 = "-c:v libx264 -preset veryfast -pix_fmt yuv420p ";

struct VideoFormat {
    VideoRecipe Recipe;
    // When a frame is shown, below 0 if it isn't; frames in a steady row by default.
    double (*TimeOf)(int number) = nullptr;
    double Rate = 25.0;
};
inline void PrintTo(const VideoFormat& format, std::ostream* out) {
    *out << format.Recipe.Name << format.Recipe.Ending;
}
std::vector<VideoFormat> VideoFormats();

// The times of the frames in the file, by the numbers that they show.
using FrameTimes = std::vector<std::pair<double, int>>;
FrameTimes TimesOf(const VideoFormat& video);

// A position and the number of the frame that it shows.
using Positions = std::vector<std::pair<double, int>>;
Positions MakePositions(const FrameTimes& times, std::size_t count);

// The same film with the remark that it is to be turned so far, against the clock.
bool MakeTurnedVideo(const std::filesystem::path& flat, int degrees, const std::filesystem::path& turned);

// Names and options of videos that can be played although their end is missing.
std::vector<std::pair<std::string, std::string>> StreamableVideos();
std::string WithBrokenBytes(const std::string& video, std::mt19937& random);

// Files in the folder (with "/", or empty) that hold no video, and beside them the good.mp4 that some of them
// name.
void WriteBadVideos(const CTestFolder& folder, const std::string& name);
