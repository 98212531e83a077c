// What kind of picture a file holds and how large it is. By its content: endings of files lie.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct PictureInfo {
    const char* Extension = "";  // of the part that holds it
    const char* MediaType = "";
    int PixelWidth = 0;
    int PixelHeight = 0;
    // In points, from the resolution that the file tells, else at 96 pixels an inch.
    double Width = 0;
    double Height = 0;
};

// Nothing for all that isn't a whole JPEG, PNG or BMP. The data of a PNG carries checksums, which are looked
// at; of a JPEG no more than its structure and its end, since decoding thousands of pictures would take
// minutes.
std::optional<PictureInfo> ReadPictureInfo(std::string_view bytes);
