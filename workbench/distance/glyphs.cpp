#include "workbench/distance/glyphs.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double PointHeight = 0.36;  // of a digit's, at most
constexpr double PointWidth = 0.45;
constexpr double MostGap = 0.5;  // between digits of one number, of their height
constexpr double LowLetter = 0.88;
constexpr int LeastDigit = 7;  // pixels
constexpr int MostDigits = 7;

struct Part {
    int Left, Top, Right, Bottom;  // inside
    int Height() const { return Bottom - Top + 1; }
    int Width() const { return Right - Left + 1; }
};

class CInk {
public:
    CInk(const GreyFrame& frame, const PictureBox& line, const InkRule& rule)
        : m_width(line.Width),
          m_height(line.Height),
          m_bits(static_cast<std::size_t>(line.Width) * static_cast<std::size_t>(line.Height)) {
        for (int y = 0; y < m_height; ++y) {
            for (int x = 0; x < m_width; ++x) {
                m_bits[Index(x, y)] = (frame.At(line.X + x, line.Y + y) > rule.Level) == rule.Bright ? 1 : 0;
            }
        }
    }
    bool At(int x, int y) const { return m_bits[Index(x, y)] != 0; }

    // Connected parts, from left to right.
    std::vector<Part> Parts() const {
        std::vector<Part> parts;
        std::vector<char> seen(m_bits.size(), 0);
        std::vector<std::pair<int, int>> open;
        for (int x = 0; x < m_width; ++x) {
            for (int y = 0; y < m_height; ++y) {
                if (!At(x, y) || seen[Index(x, y)] != 0) {
                    continue;
                }
                Part part{x, y, x, y};
                seen[Index(x, y)] = 1;
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
                            if (At(nx, ny) && seen[Index(nx, ny)] == 0) {
                                seen[Index(nx, ny)] = 1;
                                open.emplace_back(nx, ny);
                            }
                        }
                    }
                }
                parts.push_back(part);
            }
        }
        return parts;
    }

    int Holes(const Part& part) const {
        // Empty areas that don't reach the border of the part.
        std::vector<char> seen(m_bits.size(), 0);
        std::vector<std::pair<int, int>> open;
        int holes = 0;
        for (int y = part.Top; y <= part.Bottom; ++y) {
            for (int x = part.Left; x <= part.Right; ++x) {
                if (At(x, y) || seen[Index(x, y)] != 0) {
                    continue;
                }
                bool closed = true;
                int area = 0;
                seen[Index(x, y)] = 1;
                open.assign(1, {x, y});
                while (!open.empty()) {
                    const auto [px, py] = open.back();
                    open.pop_back();
                    ++area;
                    constexpr std::array<std::pair<int, int>, 4> Sides{{{1, 0}, {-1, 0}, {0, 1}, {0, -1}}};
                    for (const auto& [dx, dy] : Sides) {
                        const int nx = px + dx;
                        const int ny = py + dy;
                        if (nx < part.Left || nx > part.Right || ny < part.Top || ny > part.Bottom) {
                            closed = false;
                        } else if (!At(nx, ny) && seen[Index(nx, ny)] == 0) {
                            seen[Index(nx, ny)] = 1;
                            open.emplace_back(nx, ny);
                        }
                    }
                }
                holes += closed && area >= 2 ? 1 : 0;
            }
        }
        return holes;
    }

private:
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
    }

    int m_width;
    int m_height;
    std::vector<char> m_bits;
};

// Of one height, so that a "1" stays narrow.
Shape ShapeOf(const GreyFrame& frame, const PictureBox& line, const Part& part, int height) {
    Shape shape{};
    const double scale = static_cast<double>(height) / ShapeHeight;
    const double middle = (part.Left + part.Right) / 2.0;
    for (int y = 0; y < ShapeHeight; ++y) {
        for (int x = 0; x < ShapeWidth; ++x) {
            const double px = middle + (x - (ShapeWidth - 1) / 2.0) * scale;
            const double py = part.Bottom - (ShapeHeight - 0.5 - y) * scale + 0.5;
            const int ix = std::clamp(line.X + static_cast<int>(std::floor(px)), 0, frame.Width - 2);
            const int iy = std::clamp(line.Y + static_cast<int>(std::floor(py)), 0, frame.Height - 2);
            const double fx = std::clamp(px - std::floor(px), 0.0, 1.0);
            const double fy = std::clamp(py - std::floor(py), 0.0, 1.0);
            const double upper = frame.At(ix, iy) * (1 - fx) + frame.At(ix + 1, iy) * fx;
            const double lower = frame.At(ix, iy + 1) * (1 - fx) + frame.At(ix + 1, iy + 1) * fx;
            // Beyond the digit's own width there is only what moves behind it.
            const bool inside = px >= part.Left - 1.5 && px <= part.Right + 1.5;
            shape[static_cast<std::size_t>(y * ShapeWidth + x)] =
                inside ? static_cast<float>(upper * (1 - fy) + lower * fy) : -1.0F;
        }
    }
    float dark = 255.0F;
    for (const float value : shape) {
        dark = value >= 0.0F ? std::min(dark, value) : dark;
    }
    float mean = 0.0F;
    for (float& value : shape) {
        value = value < 0.0F ? dark : value;
        mean += value / static_cast<float>(shape.size());
    }
    float length = 0.0F;
    for (float& value : shape) {
        value -= mean;
        length += value * value;
    }
    length = std::sqrt(std::max(length, 1e-6F));
    for (float& value : shape) {
        value /= length;
    }
    return shape;
}

}  // namespace

float Likeness(const Shape& a, const Shape& b) {
    float sum = 0.0F;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sum += a[i] * b[i];
    }
    return sum;
}

InkRule FindInk(const std::vector<GreyFrame>& frames, const PictureBox& line, bool bright, int share) {
    std::array<std::int64_t, 256> counts{};
    std::int64_t all = 0;
    for (const GreyFrame& frame : frames) {
        for (int y = line.Y; y < line.Y + line.Height; ++y) {
            for (int x = line.X; x < line.X + line.Width; ++x) {
                ++counts[static_cast<std::size_t>(frame.At(x, y))];
                ++all;
            }
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
    const int text = bright ? quantile(0.985) : quantile(0.015);
    const int around = quantile(0.5);
    return {text + (around - text) * share / 100, bright};
}

std::optional<NumberGlyphs> FindNumber(const GreyFrame& frame, const PictureBox& line, const InkRule& ink) {
    const CInk bits(frame, line, ink);
    const std::vector<Part> parts = bits.Parts();
    // The height of digits: that of the most parts that are high enough.
    std::vector<int> heights;
    for (const Part& part : parts) {
        if (part.Height() >= LeastDigit && part.Height() < line.Height && part.Width() <= part.Height()) {
            heights.push_back(part.Height());
        }
    }
    int height = 0;
    std::ptrdiff_t most = 0;
    for (const int candidate : heights) {
        const auto alike = std::count_if(heights.begin(), heights.end(),
                                         [&](int other) { return std::abs(other - candidate) <= 1; });
        if (alike > most || (alike == most && candidate > height)) {
            most = alike;
            height = candidate;
        }
    }
    if (most < 2) {
        return std::nullopt;
    }
    const auto isDigit = [&](const Part& part) {
        return std::abs(part.Height() - height) <= std::max(1, height / 10) && part.Width() <= height;
    };
    for (std::size_t point = 0; point < parts.size(); ++point) {
        const Part& dot = parts[point];
        if (dot.Height() > PointHeight * height || dot.Width() > PointWidth * height || dot.Height() < 2) {
            continue;
        }
        std::vector<const Part*> before;
        for (std::size_t i = point; i-- > 0;) {
            const Part& part = parts[i];
            const int right = before.empty() ? dot.Left : before.back()->Left;
            const bool onLine = std::abs(part.Bottom - dot.Bottom) <= 2;
            if (!isDigit(part) || !onLine || right - part.Right > MostGap * height) {
                break;
            }
            before.push_back(&part);
        }
        std::vector<const Part*> behind;
        std::size_t next = point + 1;
        for (; next < parts.size(); ++next) {
            const Part& part = parts[next];
            const int left = behind.empty() ? dot.Right : behind.back()->Right;
            if (!isDigit(part) || std::abs(part.Bottom - dot.Bottom) > 2 ||
                part.Left - left > MostGap * height) {
                break;
            }
            behind.push_back(&part);
        }
        if (before.empty() || behind.empty() || behind.size() > 3 ||
            before.size() + behind.size() > MostDigits) {
            continue;
        }
        NumberGlyphs number;
        std::reverse(before.begin(), before.end());
        before.insert(before.end(), behind.begin(), behind.end());
        for (const Part* part : before) {
            number.Digits.push_back({{part->Left, part->Top, part->Width(), part->Height()},
                                     ShapeOf(frame, line, *part, height),
                                     bits.Holes(*part)});
        }
        number.Decimals = static_cast<int>(behind.size());
        int low = 0;
        int other = 0;
        for (; next < parts.size(); ++next) {
            const Part& part = parts[next];
            if (part.Left - behind.back()->Right > 3 * height || part.Height() < height / 3) {
                continue;
            }
            (part.Height() < LowLetter * height ? low : other) += 1;
        }
        number.Behind = other > 0 ? NumberGlyphs::Tail::Other
                        : low > 0 ? NumberGlyphs::Tail::Low
                                  : NumberGlyphs::Tail::None;
        return number;
    }
    return std::nullopt;
}
