#include "workbench/distance/glyphs.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double PointHeight = 0.36;  // of a digit's, at most
constexpr double PointWidth = 0.45;
constexpr double MostGap = 0.6;  // between digits of one number, of their height
constexpr double LowLetter = 0.88;
constexpr int LeastDigit = 7;  // pixels
constexpr int MostDigits = 7;

struct Part {
    int Left, Top, Right, Bottom;  // inside
    std::vector<int> Labels;
    int Height() const { return Bottom - Top + 1; }
    int Width() const { return Right - Left + 1; }
};

// The brightness within a line, or how much it is over the darkest close by.
std::vector<std::uint8_t> LineValues(const GreyFrame& frame, const PictureBox& line, InkKind kind) {
    const auto width = static_cast<std::size_t>(line.Width);
    const auto height = static_cast<std::size_t>(line.Height);
    std::vector<std::uint8_t> values(width * height);
    for (std::size_t y = 0; y < height; ++y) {
        const auto from = static_cast<std::size_t>(line.Y) + y;
        std::copy_n(
            frame.Pixels.begin() + static_cast<std::ptrdiff_t>(from * static_cast<std::size_t>(frame.Width) +
                                                               static_cast<std::size_t>(line.X)),
            width, values.begin() + static_cast<std::ptrdiff_t>(y * width));
    }
    if (kind != InkKind::Outlined) {
        return values;
    }
    const std::size_t reach = std::max<std::size_t>(3, height / 8);
    std::vector<std::uint8_t> rows(values.size());
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const auto row = values.begin() + static_cast<std::ptrdiff_t>(y * width);
            rows[y * width + x] =
                *std::min_element(row + static_cast<std::ptrdiff_t>(x - std::min(x, reach)),
                                  row + static_cast<std::ptrdiff_t>(std::min(x + reach + 1, width)));
        }
    }
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            std::uint8_t least = 255;
            for (std::size_t k = y - std::min(y, reach); k < std::min(y + reach + 1, height); ++k) {
                least = std::min(least, rows[k * width + x]);
            }
            values[y * width + x] = static_cast<std::uint8_t>(values[y * width + x] - least);
        }
    }
    return values;
}

class CInk {
public:
    CInk(const GreyFrame& frame, const PictureBox& line, const InkRule& rule)
        : m_width(line.Width),
          m_height(line.Height),
          m_ink(static_cast<std::size_t>(line.Width) * static_cast<std::size_t>(line.Height)),
          m_labels(m_ink.size(), -1) {
        // Grey edges count by half: only so do digits keep their shapes in front of whatever passes by.
        const float range = 2.0F * static_cast<float>(std::max(std::abs(rule.Text - rule.Level), 8));
        const std::vector<std::uint8_t> values = LineValues(frame, line, rule.Kind);
        for (int y = 0; y < m_height; ++y) {
            for (int x = 0; x < m_width; ++x) {
                const int over = (values[Index(x, y)] - rule.Level) * (rule.Kind == InkKind::Dark ? -1 : 1);
                m_ink[Index(x, y)] = std::clamp(0.5F + static_cast<float>(over) / range, 0.0F, 1.0F);
            }
        }
    }
    bool At(int x, int y) const { return m_ink[Index(x, y)] > 0.5F; }

    // Connected parts, from left to right. Labels them.
    std::vector<Part> Parts() {
        std::vector<Part> parts;
        std::vector<std::pair<int, int>> open;
        for (int x = 0; x < m_width; ++x) {
            for (int y = 0; y < m_height; ++y) {
                if (!At(x, y) || m_labels[Index(x, y)] >= 0) {
                    continue;
                }
                const int label = static_cast<int>(parts.size());
                Part part{x, y, x, y, {label}};
                m_labels[Index(x, y)] = label;
                open.assign(1, {x, y});
                while (!open.empty()) {
                    const auto [px, py] = open.back();
                    open.pop_back();
                    part.Left = std::min(part.Left, px);
                    part.Right = std::max(part.Right, px);
                    part.Top = std::min(part.Top, py);
                    part.Bottom = std::max(part.Bottom, py);
                    for (int ny = std::max(py - 1, 0); ny <= std::min(py + 1, m_height - 1); ++ny) {
                        for (int nx = std::max(px - 1, 0); nx <= std::min(px + 1, m_width - 1); ++nx) {
                            if (At(nx, ny) && m_labels[Index(nx, ny)] < 0) {
                                m_labels[Index(nx, ny)] = label;
                                open.emplace_back(nx, ny);
                            }
                        }
                    }
                }
                parts.push_back(std::move(part));
            }
        }
        return parts;
    }

    // Of one height, so that a "1" stays narrow.
    Shape ShapeOf(const Part& part) const {
        Shape shape{};
        const float scale = static_cast<float>(part.Height()) / ShapeHeight;
        const float middle = static_cast<float>(part.Left + part.Right) / 2.0F;
        for (int y = 0; y < ShapeHeight; ++y) {
            for (int x = 0; x < ShapeWidth; ++x) {
                const float px = middle + (static_cast<float>(x) - (ShapeWidth - 1) / 2.0F) * scale;
                const float py = static_cast<float>(part.Top) - 0.5F + (static_cast<float>(y) + 0.5F) * scale;
                shape[static_cast<std::size_t>(y * ShapeWidth + x)] = Sample(part, px, py);
            }
        }
        Normalise(shape);
        return shape;
    }

private:
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
    }
    // Of the part and its soft edge; what else is bright there is the wall.
    float InkOf(const Part& part, int x, int y) const {
        if (x < 0 || y < 0 || x >= m_width || y >= m_height || x < part.Left - 1 || x > part.Right + 1 ||
            y < part.Top - 1 || y > part.Bottom + 1) {
            return 0.0F;
        }
        const int label = m_labels[Index(x, y)];
        return label < 0 || std::find(part.Labels.begin(), part.Labels.end(), label) != part.Labels.end()
                   ? m_ink[Index(x, y)]
                   : 0.0F;
    }
    float Sample(const Part& part, float x, float y) const {
        const float left = std::floor(x);
        const float top = std::floor(y);
        const int ix = static_cast<int>(left);
        const int iy = static_cast<int>(top);
        const float fx = x - left;
        const float fy = y - top;
        return (InkOf(part, ix, iy) * (1 - fx) + InkOf(part, ix + 1, iy) * fx) * (1 - fy) +
               (InkOf(part, ix, iy + 1) * (1 - fx) + InkOf(part, ix + 1, iy + 1) * fx) * fy;
    }

    int m_width;
    int m_height;
    std::vector<float> m_ink;
    std::vector<int> m_labels;
};

// The height of digits: that of the most parts that are high enough. 0 if there aren't two.
int DigitHeight(const std::vector<Part>& parts, int lineHeight) {
    std::vector<int> heights;
    for (const Part& part : parts) {
        if (part.Height() >= LeastDigit && part.Height() < lineHeight && part.Width() <= part.Height()) {
            heights.push_back(part.Height());
        }
    }
    int height = 0;
    std::ptrdiff_t most = 1;
    for (const int candidate : heights) {
        const auto alike = std::count_if(heights.begin(), heights.end(),
                                         [&](int other) { return std::abs(other - candidate) <= 1; });
        if (alike > most || (alike == most && most > 1 && candidate > height)) {
            most = alike;
            height = candidate;
        }
    }
    return height;
}

// Without what shows through rings, and with the pieces of a digit that noise has broken put together.
std::vector<Part> Mend(const std::vector<Part>& parts, int height) {
    std::vector<Part> mended;
    for (const Part& part : parts) {
        const bool within = std::any_of(parts.begin(), parts.end(), [&](const Part& other) {
            return &other != &part && other.Height() <= height + 2 && other.Left <= part.Left &&
                   other.Right >= part.Right && other.Top < part.Top && other.Bottom > part.Bottom;
        });
        if (within) {
            continue;
        }
        bool joined = false;
        for (Part& other : mended) {
            const int shared = std::min(other.Right, part.Right) - std::max(other.Left, part.Left) + 1;
            const int top = std::min(other.Top, part.Top);
            const int bottom = std::max(other.Bottom, part.Bottom);
            if (2 * shared > std::min(other.Width(), part.Width()) &&
                std::abs(bottom - top + 1 - height) <= 1 && other.Height() < height - 1 &&
                part.Height() < height - 1) {
                other = {std::min(other.Left, part.Left), top, std::max(other.Right, part.Right), bottom,
                         other.Labels};
                other.Labels.insert(other.Labels.end(), part.Labels.begin(), part.Labels.end());
                joined = true;
                break;
            }
        }
        if (!joined) {
            mended.push_back(part);
        }
    }
    return mended;
}

// What stands right of the number.
NumberGlyphs::Tail TailOf(const std::vector<Part>& parts, const Part& last, int height,
                          std::vector<const Part*>& letters) {
    int low = 0;
    int narrow = 0;
    int other = 0;
    for (const Part& part : parts) {
        const bool near = part.Left > last.Right && part.Left - last.Right <= 3 * height;
        const bool onLine = std::abs(part.Bottom - last.Bottom) <= std::max(2, height / 6);
        if (!near || !onLine || part.Height() < height / 2) {
            continue;
        }
        const bool isLow = part.Height() < LowLetter * height && part.Width() > 0.75 * part.Height();
        letters.push_back(&part);
        (isLow ? low : part.Width() < part.Height() && part.Height() < 1.2 * height ? narrow : other) += 1;
    }
    using Tail = NumberGlyphs::Tail;
    return other > 0 || low > 1 || (low > 0 && narrow > 0) ? Tail::Other
           : low == 1                                      ? Tail::Low
           : narrow == 2                                   ? Tail::Two
           : narrow > 0                                    ? Tail::Other
                                                           : Tail::None;
}

struct Found {
    std::vector<const Part*> Digits;
    int Decimals = 0;
};

// The decimal point between two digits; a colon is none.
const Part* PointBetween(const std::vector<Part>& parts, const Part& left, const Part& right, int height) {
    const Part* point = nullptr;
    for (const Part& part : parts) {
        const bool between = part.Left > left.Right && part.Right < right.Left;
        const bool small = part.Height() >= 2 && part.Height() <= PointHeight * height &&
                           part.Width() <= PointWidth * height;
        if (!between || !small || part.Bottom > right.Bottom + 2) {
            continue;
        }
        if (part.Bottom < right.Bottom - 2) {
            if (part.Top > right.Top + height / 6) {
                return nullptr;
            }
            continue;
        }
        point = &part;
    }
    return point;
}

// Digits from left to right with at most a narrow gap between them; a point in it is told.
std::vector<Found> DigitRuns(const std::vector<Part>& parts, int height) {
    const auto isDigit = [&](const Part& part) {
        return std::abs(part.Height() - height) <= std::max(1, height / 10) && part.Width() <= height;
    };
    std::vector<Found> runs;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!isDigit(parts[i])) {
            continue;
        }
        const Part* last = runs.empty() ? nullptr : runs.back().Digits.back();
        const Part* point = last != nullptr && std::abs(parts[i].Bottom - last->Bottom) <= 2
                                ? PointBetween(parts, *last, parts[i], height)
                                : nullptr;
        const bool joins =
            last != nullptr && std::abs(parts[i].Bottom - last->Bottom) <= 2 && parts[i].Left > last->Right &&
            (point != nullptr ? std::max(point->Left - last->Right, parts[i].Left - point->Right)
                              : parts[i].Left - last->Right) <= MostGap * height &&
            (point == nullptr || runs.back().Decimals == 0);
        if (!joins) {
            runs.emplace_back();
        } else if (point != nullptr) {
            runs.back().Decimals = 1;
        } else if (runs.back().Decimals > 0) {
            ++runs.back().Decimals;
        }
        runs.back().Digits.push_back(&parts[i]);
    }
    return runs;
}

}  // namespace

void Normalise(Shape& shape) {
    float mean = 0.0F;
    for (const float value : shape) {
        mean += value / static_cast<float>(shape.size());
    }
    float length = 0.0F;
    for (float& value : shape) {
        value -= mean;
        length += value * value;
    }
    length = std::sqrt(std::max(length, 1e-9F));
    for (float& value : shape) {
        value /= length;
    }
}

float Likeness(const Shape& a, const Shape& b) {
    float sum = 0.0F;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

InkRule FindInk(const std::vector<GreyFrame>& frames, const PictureBox& line, InkKind kind, int share) {
    std::array<std::int64_t, 256> counts{};
    std::int64_t all = 0;
    for (const GreyFrame& frame : frames) {
        for (const std::uint8_t value : LineValues(frame, line, kind)) {
            ++counts[value];
            ++all;
        }
    }
    const auto quantile = [&](double part) {
        std::int64_t left = static_cast<std::int64_t>(part * static_cast<double>(all));
        for (int level = 0; level < 256; ++level) {
            left -= counts[static_cast<std::size_t>(level)];
            if (left < 0) {
                return level;
            }
        }
        return 255;
    };
    // Beyond an outline a bright wall stands out as well, and more of it than there is text.
    const int text = quantile(kind == InkKind::Dark ? 0.015 : kind == InkKind::Bright ? 0.985 : 0.93);
    const int around = kind == InkKind::Outlined ? 0 : quantile(0.5);
    return {text + (around - text) * share / 100, text, kind};
}

std::optional<NumberGlyphs> FindNumber(const GreyFrame& frame, const PictureBox& line, const InkRule& ink,
                                       bool needsPoint) {
    CInk bits(frame, line, ink);
    const std::vector<Part> all = bits.Parts();
    const int height = DigitHeight(all, line.Height);
    if (height == 0) {
        return std::nullopt;
    }
    const std::vector<Part> parts = Mend(all, height);
    const std::vector<Found> runs = DigitRuns(parts, height);
    const Found* found = nullptr;
    for (const Found& run : runs) {
        const bool fits = run.Digits.size() <= MostDigits && run.Decimals <= 3 &&
                          (run.Decimals > 0 || (!needsPoint && run.Digits.size() >= 2));
        if (fits && (found == nullptr || (run.Decimals > 0) > (found->Decimals > 0))) {
            found = &run;
        }
    }
    if (found == nullptr) {
        return std::nullopt;
    }
    NumberGlyphs number;
    for (const Part* part : found->Digits) {
        number.Digits.push_back(
            {{part->Left, part->Top, part->Width(), part->Height()}, bits.ShapeOf(*part)});
    }
    number.Decimals = found->Decimals;
    std::vector<const Part*> letters;
    number.Behind = TailOf(parts, *found->Digits.back(), height, letters);
    if (number.Behind == NumberGlyphs::Tail::Two) {
        for (const Part* letter : letters) {
            number.Letters.push_back(bits.ShapeOf(*letter));
        }
    }
    return number;
}
