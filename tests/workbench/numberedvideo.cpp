#include "tests/workbench/numberedvideo.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace {

constexpr int Bits = 10;
constexpr int Border = 4;  // pixels; the blocks reach nearly to the edges, so that skewed rows show

// The block that holds a bit: the upper row tells it, the lower one its opposite.
struct Block {
    int Left, Right, Top, Bottom;
};

Block BlockOf(int bit, bool opposite, int width, int height) {
    const int inner = width - 2 * Border;
    const int side = height / 4;
    const int top = opposite ? side + Border : Border;
    return {Border + inner * bit / Bits, Border + inner * (bit + 1) / Bits, top, top + side - Border};
}

bool IsWhite(int number, int bit, bool opposite) {
    return ((number >> bit & 1) != 0) != opposite;
}

std::vector<unsigned char> DrawFrame(int number, int width, int height) {
    std::vector<unsigned char> pixels(3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    // Something that moves gives the encoders a use for frames in between.
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::size_t at = 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                        static_cast<std::size_t>(x));
            pixels[at] = static_cast<unsigned char>(60 + (x + 2 * number) % 128);
            pixels[at + 1] = static_cast<unsigned char>(60 + (y + number) % 128);
            pixels[at + 2] = 90;
        }
    }
    for (int bit = 0; bit < Bits; ++bit) {
        for (const bool opposite : {false, true}) {
            const Block block = BlockOf(bit, opposite, width, height);
            for (int y = block.Top; y < block.Bottom; ++y) {
                const auto row = pixels.begin() + std::ptrdiff_t{3} * (std::ptrdiff_t{y} * width);
                std::fill(row + 3 * block.Left, row + 3 * block.Right,
                          static_cast<unsigned char>(IsWhite(number, bit, opposite) ? 235 : 20));
            }
        }
    }
    return pixels;
}

// Of the block's middle.
int Brightness(const QImage& picture, const Block& block) {
    int sum = 0;
    int count = 0;
    for (int y = block.Top + 3; y < block.Bottom - 3; ++y) {
        for (int x = block.Left + 3; x < block.Right - 3; ++x) {
            sum += qGreen(picture.pixel(x, y));
            ++count;
        }
    }
    return count > 0 ? sum / count : 0;
}

}  // namespace

bool MakeNumberedVideo(const VideoRecipe& recipe, const std::filesystem::path& file) {
    const std::string command = "ffmpeg -v error -y -f rawvideo -pix_fmt rgb24 -s " +
                                std::to_string(recipe.Width) + "x" + std::to_string(recipe.Height) + " -r " +
                                recipe.Rate + " -i - " + recipe.Options + " '" + file.string() + "'";
    std::FILE* pipe = popen(command.c_str(), "w");
    if (pipe == nullptr) {
        return false;
    }
    for (int number = 0; number < recipe.Frames; ++number) {
        const std::vector<unsigned char> pixels = DrawFrame(number, recipe.Width, recipe.Height);
        std::fwrite(pixels.data(), 1, pixels.size(), pipe);
    }
    return pclose(pipe) == 0;
}

QImage ReadPicture(const std::string& bytes) {
    return QImage::fromData(reinterpret_cast<const uchar*>(bytes.data()), static_cast<int>(bytes.size()));
}

int ReadNumber(const QImage& picture) {
    int number = 0;
    for (int bit = 0; bit < Bits; ++bit) {
        const int upper = Brightness(picture, BlockOf(bit, false, picture.width(), picture.height()));
        const int lower = Brightness(picture, BlockOf(bit, true, picture.width(), picture.height()));
        if ((upper < 90) == (lower < 90) || (upper > 165) == (lower > 165)) {
            return -1;
        }
        number |= (upper > lower ? 1 : 0) << bit;
    }
    return number;
}
