// Videos whose every frame shows its own number as a row of black and white blocks, readable through any
// lossy compression, and the way back from a picture to the number.
#pragma once

#include <QImage>
#include <filesystem>
#include <ostream>
#include <string>

struct VideoRecipe {
    std::string Name;     // of the test, letters and digits
    std::string Ending;   // with its point
    std::string Options;  // of ffmpeg
    std::string Rate = "25";
    int Width = 176;
    int Height = 112;
    int Frames = 300;
};

// For names of tests.
inline void PrintTo(const VideoRecipe& recipe, std::ostream* out) {
    *out << recipe.Name;
}

// Needs the ffmpeg program. False if it fails.
bool MakeNumberedVideo(const VideoRecipe& recipe, const std::filesystem::path& file);

// Null if it is no picture.
QImage ReadPicture(const std::string& bytes);
// -1 if the blocks aren't clear, as in a mixture of two frames, or in a skewed picture.
int ReadNumber(const QImage& picture);
