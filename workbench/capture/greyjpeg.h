// The brightness of a JPEG at about half of its size, fast. For use within this room.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

struct GreyPicture {
    int Width = 0;  // pixels, of those that are here
    int Height = 0;
    int FullWidth = 0;  // of the file
    int FullHeight = 0;
    std::vector<unsigned char> Pixels;  // rows from the top without a gap

    int At(int x, int y) const {
        return Pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
                      static_cast<std::size_t>(x)];
    }
};

// Nothing if the bytes are no JPEG that can be read. `damaged`: they are one, and some of it is missing or
// broken.
std::optional<GreyPicture> ReadGreyJpeg(std::string_view bytes, bool& damaged);
