#include "reports/sonarchart/sonarchart.h"

#include <QBuffer>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <optional>

#include "controls/paint/CPaintApplication.h"
#include "shell/numbers.h"

namespace {

// Pixels.
constexpr int Width = 920;
constexpr int Height = 520;
constexpr int Left = 80;
constexpr int Top = 40;
constexpr int Right = Left + 800;
constexpr int Bottom = Top + 400;
constexpr int Divisions = 4;
constexpr int TextSize = 15;
constexpr int TurnedTextSize = 17;
constexpr int JpegQuality = 100;

constexpr float LeastLength = 0.1F;  // metres
constexpr float FarOutside = 100000.0F;

struct Axes {
    std::vector<float> X;
    const char* Caption = "序号";
    float Smallest = 0;
    float Largest = 0;
    float Highest = 0;
};

Axes MakeAxes(const std::vector<PipeItem>& items) {
    Axes axes;
    if (items.empty()) {
        return axes;
    }
    const bool metres = std::fabs(items.back().Meter - items.front().Meter) > LeastLength;
    for (const PipeItem& item : items) {
        axes.X.push_back(metres ? item.Meter : static_cast<float>(axes.X.size() + 1));
    }
    if (metres) {
        axes.Caption = "管长(m)";
    }
    const auto [smallest, largest] = std::minmax_element(axes.X.begin(), axes.X.end());
    axes.Smallest = *smallest;
    axes.Largest = *largest;
    axes.Highest = static_cast<float>(items.back().PipeWidth);
    return axes;
}

std::optional<QPoint> PointAt(const Axes& axes, float value, float depth) {
    const float x = Left + (Right - Left) * (value - axes.Smallest) / (axes.Largest - axes.Smallest);
    const float y = Bottom - (Bottom - Top) * depth / axes.Highest;
    if (!(std::fabs(x) < FarOutside && std::fabs(y) < FarOutside)) {
        return std::nullopt;
    }
    return QPoint(static_cast<int>(x), static_cast<int>(y));
}

// `x` and `y` are the upper left corner.
void Write(QPainter& painter, int x, int y, const std::string& text) {
    painter.drawText(x, y + painter.fontMetrics().ascent(), QString::fromStdString(text));
}

void DrawGrid(QPainter& painter, const Axes& axes) {
    painter.setPen(QPen(Qt::white, 1));
    for (int i = 0; i <= Divisions; ++i) {
        const int x = Left + (Right - Left) * i / Divisions;
        const int y = Top + (Bottom - Top) * i / Divisions;
        painter.drawLine(Left, y, Right, y);
        painter.drawLine(x, Top, x, Bottom);
        if (!axes.X.empty()) {
            const float share = static_cast<float>(i) / Divisions;
            Write(painter, Left - 50, y - 10, FormatFixed(axes.Highest * (1 - share), 1));
            Write(painter, x - 10, Bottom + 10,
                  FormatFixed(axes.Smallest + (axes.Largest - axes.Smallest) * share, 1));
        }
    }
}

void DrawCurve(QPainter& painter, const Axes& axes, const std::vector<PipeItem>& items) {
    painter.setPen(QPen(Qt::green, 1));
    std::optional<QPoint> former;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::optional<QPoint> point = PointAt(axes, axes.X[i], static_cast<float>(items[i].SiltDepth));
        if (former && point) {
            painter.drawLine(*former, *point);
        }
        former = point;
    }
}

void WriteCaptions(QPainter& painter, const Axes& axes) {
    painter.setPen(Qt::white);
    Write(painter, 440, 10, "淤泥深度分布图");
    Write(painter, 460, 480, axes.Caption);
    QFont font = painter.font();
    font.setPixelSize(TurnedTextSize);
    font.setBold(true);
    painter.setFont(font);
    painter.translate(10, 280);
    painter.rotate(-90);
    Write(painter, 0, 0, "淤泥深度(mm)");
}

}  // namespace

std::string DrawSonarChart(const std::vector<PipeItem>& items) {
    const CPaintApplication application;
    QImage image(Width, Height, QImage::Format_RGB888);
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        QFont font = painter.font();
        font.setPixelSize(TextSize);
        painter.setFont(font);
        const Axes axes = MakeAxes(items);
        DrawGrid(painter, axes);
        DrawCurve(painter, axes, items);
        WriteCaptions(painter, axes);
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return image.save(&buffer, "JPEG", JpegQuality) ? bytes.toStdString() : std::string();
}
