// Speed of the annotation canvas: a whole frame of it against the bare scaled drawing of the same picture,
// side by side, both drawn by software into memory. Prints a Markdown table; exit code 1 if a limit is
// broken.
#include <QApplication>
#include <QBuffer>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>
#include <cstdlib>
#include <random>

#include "bench/CBenchFolder.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "defects/dialogs/CCtrlPic.h"

namespace {

constexpr QSize PictureSize(1920, 1080);
constexpr QSize CanvasSize(1280, 720);
constexpr double MostMilliseconds = 8.0;

// Soft shapes with noise, as a camera in a pipe sees them.
QImage MakePicture() {
    QImage picture(PictureSize, QImage::Format_RGB32);
    std::mt19937 random(7);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const double distance = std::hypot(x - 960, y - 540);
            const int light =
                static_cast<int>(90 + 60 * std::sin(distance / 80)) + static_cast<int>(random() % 16);
            picture.setPixel(x, y, qRgb(light, light * 9 / 10, light * 7 / 10));
        }
    }
    return picture;
}

void SendMouse(QWidget& widget, QEvent::Type type, QPoint at) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, at, button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void Drag(QWidget& widget, QPoint from, QPoint to) {
    SendMouse(widget, QEvent::MouseButtonPress, from);
    SendMouse(widget, QEvent::MouseMove, to);
    SendMouse(widget, QEvent::MouseButtonRelease, to);
}

// 200 circles, arrows and measured lengths, all over the canvas.
void DrawShapes(CCtrlPic& canvas) {
    std::mt19937 random(11);
    const auto within = [&](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from));
    };
    const auto drag = [&](int most) {
        const QPoint from(within(0, CanvasSize.width() - most), within(0, CanvasSize.height() - most));
        Drag(canvas, from, from + QPoint(within(20, most), within(20, most)));
    };
    canvas.SetTool(ToolMode::Circle);
    for (int i = 0; i < 80; ++i) {
        drag(200);
    }
    canvas.SetTool(ToolMode::Arrow);
    for (int i = 0; i < 80; ++i) {
        drag(200);
    }
    canvas.SetTool(ToolMode::Measuring);
    for (int i = 0; i < 80; ++i) {
        drag(200);
    }
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const CBenchFolder folder;
    const QImage picture = MakePicture();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    Require(picture.save(&buffer, "jpeg"), "encode");
    const std::string path = folder.Path("p.jpg");
    Require(HostFiles().WriteFile(path, bytes.toStdString()), "write");
    CCtrlPic canvas;
    canvas.resize(CanvasSize);
    Require(canvas.ShowPicture(path), "show");
    MmPerPixel = 0.25F;
    DrawShapes(canvas);
    // Each frame is one of a further circle that the mouse draws.
    canvas.SetTool(ToolMode::Circle);
    SendMouse(canvas, QEvent::MouseButtonPress, {300, 200});
    QImage frame(CanvasSize, QImage::Format_RGB32);
    int step = 0;
    const auto paint = [&] {
        ++step;
        SendMouse(canvas, QEvent::MouseMove, {600 + step % 300, 400 + step % 200});
        canvas.render(&frame, {}, {}, {});
    };
    const auto change = [&] { canvas.SetColour(static_cast<std::uint32_t>(++step)); };
    const auto bare = [&] {
        QPainter painter(&frame);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(frame.rect(), picture);
    };
    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    const std::string what =
        "A frame of the canvas while a circle is drawn, 1920x1080 into 1280x720, 200 shapes";
    const std::string peer = "bare smooth drawing of the picture, scaled";
    bool allHold = PrintRatio({what, peer, 1.3, 101, paint, bare});
    allHold =
        PrintRatio({"The same after a change of all shapes", peer, 6.0, 101, paint, bare, change}) && allHold;
    std::vector<double> times;
    for (int i = 0; i < 101; ++i) {
        times.push_back(MillisecondsOf(paint));
    }
    const double time = MedianOf(times);
    std::printf("| The first again | %.0f ms | %.2f ms | | | %.0f ms | %s |\n", MostMilliseconds, time,
                MostMilliseconds, time < MostMilliseconds ? "holds" : "BROKEN");
    return allHold && time < MostMilliseconds ? 0 : 1;
}
