#include "defects/timeruler.h"

#include <algorithm>

namespace {

constexpr int HalfMark = 2;

// As wide as it is high, around the same middle.
MarkRect Squared(MarkRect rect) {
    const int width = rect.Right - rect.Left;
    const int height = rect.Bottom - rect.Top;
    const int side = std::max(width, height);
    const int shift = (height - width) / 2;
    rect.Left -= shift;
    rect.Right = rect.Left + side;
    rect.Bottom = rect.Top + side;
    return rect;
}

}  // namespace

int TickOf(int second, int seconds, int width, int margin) {
    return static_cast<int>(static_cast<std::int64_t>(second) * (width - 2 * margin) / seconds) + margin;
}

std::vector<MarkRect> LayOutMarks(const std::vector<std::uint8_t>& flags, int width, int height, int margin) {
    std::vector<MarkRect> marks(flags.size());
    const auto seconds = static_cast<int>(flags.size());
    for (int second = 0; second < seconds; ++second) {
        const auto index = static_cast<std::size_t>(second);
        if (flags[index] != 0) {
            const int x = TickOf(second, seconds, width, margin);
            marks[index] = Squared({x - HalfMark, TickLength, x + HalfMark, height});
        }
    }
    return marks;
}

int MarkAt(const std::vector<MarkRect>& marks, int x, int y) {
    const auto hit =
        std::find_if(marks.begin(), marks.end(), [=](const MarkRect& mark) { return mark.Contains(x, y); });
    return hit == marks.end() ? -1 : static_cast<int>(hit - marks.begin());
}
