#include "workbench/distance/textlines.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int LeastStep = 40;  // of an edge's brightness, averaged over the frames
constexpr double Deviations = 3.0;
constexpr int Reach = 14;       // pixels between letters that belong together
constexpr int LeastHeight = 9;  // of a line
constexpr int MostHeight = 72;
constexpr int Room = 4;
constexpr int MostUnitHeight = 48;

struct Grid {
    int Width;
    int Height;
    std::vector<float> Values;

    float& At(int x, int y) {
        return Values[static_cast<std::size_t>(y) * static_cast<std::size_t>(Width) +
                      static_cast<std::size_t>(x)];
    }
};

Grid MeanEdges(const std::vector<GreyFrame>& frames) {
    Grid grid{frames[0].Width, frames[0].Height, {}};
    grid.Values.assign(frames[0].Pixels.size(), 0.0F);
    const float share = 1.0F / static_cast<float>(frames.size());
    for (const GreyFrame& frame : frames) {
        for (int y = 1; y + 1 < grid.Height; ++y) {
            for (int x = 1; x + 1 < grid.Width; ++x) {
                const int edge = std::max(std::abs(frame.At(x + 1, y) - frame.At(x - 1, y)),
                                          std::abs(frame.At(x, y + 1) - frame.At(x, y - 1)));
                grid.At(x, y) += share * static_cast<float>(edge);
            }
        }
    }
    return grid;
}

}  // namespace

PictureBox WithUnit(const PictureBox& box, int width, int height) {
    const int x = std::max(box.X - Room, 0);
    const int y = std::max(box.Y - Room, 0);
    const int right = box.X + box.Width + Room + 3 * std::min(box.Height, MostUnitHeight);
    return {x, y, std::min(right, width) - x, std::min(box.Y + box.Height + Room, height) - y};
}

std::vector<PictureBox> FindTextLines(const std::vector<GreyFrame>& frames) {
    if (frames.empty() || frames[0].Width < 2 * MostHeight || frames[0].Height < MostHeight) {
        return {};
    }
    Grid edges = MeanEdges(frames);
    double sum = 0.0;
    double squares = 0.0;
    for (const float value : edges.Values) {
        sum += static_cast<double>(value);
        squares += static_cast<double>(value) * static_cast<double>(value);
    }
    const auto count = static_cast<double>(edges.Values.size());
    const double mean = sum / count;
    const double deviation = std::sqrt(std::max(squares / count - mean * mean, 0.0));
    const auto least = static_cast<float>(std::max<double>(LeastStep, mean + Deviations * deviation));

    // Marks, filled between letters, as runs of rows that touch: one label for each line.
    std::vector<int> labels(edges.Values.size(), -1);
    std::vector<PictureBox> boxes;
    std::vector<std::pair<int, int>> open;
    for (int y = 0; y < edges.Height; ++y) {
        for (int x = 0; x < edges.Width; ++x) {
            const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(edges.Width) +
                                   static_cast<std::size_t>(x);
            if (edges.Values[at] < least || labels[at] >= 0) {
                continue;
            }
            const int label = static_cast<int>(boxes.size());
            int right = x;
            int bottom = y;
            int left = x;
            int top = y;
            labels[at] = label;
            open.assign(1, {x, y});
            while (!open.empty()) {
                const auto [px, py] = open.back();
                open.pop_back();
                left = std::min(left, px);
                right = std::max(right, px);
                top = std::min(top, py);
                bottom = std::max(bottom, py);
                for (int ny = std::max(py - 2, 0); ny <= std::min(py + 2, edges.Height - 1); ++ny) {
                    for (int nx = std::max(px - Reach, 0); nx <= std::min(px + Reach, edges.Width - 1);
                         ++nx) {
                        const std::size_t next =
                            static_cast<std::size_t>(ny) * static_cast<std::size_t>(edges.Width) +
                            static_cast<std::size_t>(nx);
                        if (labels[next] < 0 && edges.Values[next] >= least) {
                            labels[next] = label;
                            open.emplace_back(nx, ny);
                        }
                    }
                }
            }
            boxes.push_back({left, top, right - left + 1, bottom - top + 1});
        }
    }
    std::vector<PictureBox> lines;
    for (const PictureBox& box : boxes) {
        if (box.Height >= LeastHeight && box.Height <= MostHeight && box.Width >= 2 * LeastHeight) {
            const PictureBox line = WithUnit(box, edges.Width, edges.Height);
            const int left = std::max(line.X - box.Height * 3 / 2, 0);
            lines.push_back({left, line.Y, line.X + line.Width - left, line.Height});
        }
    }
    return lines;
}
