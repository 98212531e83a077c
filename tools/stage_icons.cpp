// Draws a picture of the program from its source form (SVG) at one size, in the format that the ending of
// the target tells:
//
//   .bmp  bitmap of 32 bits a pixel with an alpha channel: buttons
//   .dt   bitmap of 24 bits a pixel on white: the splash
//   .png
//
// The bitmaps are written by hand, since Qt writes none with alpha. For sharp strokes a source is drawn to
// the pixel grid of its own size, so targets are that size or a whole multiple of it.
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <string>
#include <vector>

namespace {

class CBitmapBytes {
public:
    void Add16(std::uint32_t value) { Add(value, 2); }
    void Add32(std::uint32_t value) { Add(value, 4); }
    void Add8(std::uint32_t value) { Add(value, 1); }
    void Fill(std::size_t size) { m_bytes.resize(size); }
    const std::vector<char>& Get() const { return m_bytes; }

private:
    void Add(std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i) {
            m_bytes.push_back(static_cast<char>((value >> (8 * i)) & 0xFF));
        }
    }

    std::vector<char> m_bytes;
};

// Rows from the bottom up, each padded to four bytes. Readers take alpha from a bitmap only if its header
// names a mask for it, which is possible from the fourth version of the header on.
std::vector<char> BitmapFrom(const QImage& image, bool alpha) {
    const auto width = static_cast<std::uint32_t>(image.width());
    const auto height = static_cast<std::uint32_t>(image.height());
    const std::uint32_t headerSize = alpha ? 108 : 40;
    const std::uint32_t start = 14 + headerSize;
    const std::uint32_t rowSize = alpha ? width * 4 : (width * 3 + 3) / 4 * 4;
    const std::uint32_t dotsPerMetre = 96 * 10000 / 254;  // 96 dots an inch
    CBitmapBytes bytes;
    bytes.Add8('B');
    bytes.Add8('M');
    bytes.Add32(start + rowSize * height);
    bytes.Add32(0);
    bytes.Add32(start);
    bytes.Add32(headerSize);
    bytes.Add32(width);
    bytes.Add32(height);
    bytes.Add16(1);  // planes
    bytes.Add16(alpha ? 32 : 24);
    bytes.Add32(alpha ? 3 : 0);  // bit fields, or plain
    bytes.Add32(rowSize * height);
    bytes.Add32(dotsPerMetre);
    bytes.Add32(dotsPerMetre);
    bytes.Add32(0);  // colours of a palette
    bytes.Add32(0);
    if (alpha) {
        for (const std::uint32_t mask : {0x00FF0000U, 0x0000FF00U, 0x000000FFU, 0xFF000000U}) {
            bytes.Add32(mask);
        }
        bytes.Add32(0x73524742);  // sRGB: end points and gamma below mean nothing
        bytes.Fill(start);
    }
    for (std::uint32_t row = 0; row < height; ++row) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const QRgb pixel = image.pixel(static_cast<int>(x), static_cast<int>(height - 1 - row));
            bytes.Add8(static_cast<std::uint32_t>(qBlue(pixel)));
            bytes.Add8(static_cast<std::uint32_t>(qGreen(pixel)));
            bytes.Add8(static_cast<std::uint32_t>(qRed(pixel)));
            if (alpha) {
                bytes.Add8(static_cast<std::uint32_t>(qAlpha(pixel)));
            }
        }
        bytes.Fill(start + (row + 1) * rowSize);
    }
    return bytes.Get();
}

bool Write(const QImage& image, const QString& target) {
    if (target.endsWith(".png")) {
        return image.save(target, "PNG");
    }
    if (!target.endsWith(".bmp") && !target.endsWith(".dt")) {
        return false;
    }
    const std::vector<char> bytes = BitmapFrom(image, target.endsWith(".bmp"));
    std::ofstream file(target.toStdString(), std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.flush();
    return static_cast<bool>(file);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 5) {
        std::cerr << "usage: stage_icons SOURCE.svg TARGET WIDTH HEIGHT\n";
        return 2;
    }
    const QString& target = arguments[2];
    const QSize size(arguments[3].toInt(), arguments[4].toInt());
    QSvgRenderer source(arguments[1]);
    if (!source.isValid() || size.isEmpty() || source.defaultSize().isEmpty() ||
        size.width() % source.defaultSize().width() != 0 ||
        size.width() / source.defaultSize().width() * source.defaultSize() != size) {
        std::cerr << argv[1] << " can't be drawn, or not at " << argv[3] << " x " << argv[4] << '\n';
        return 1;
    }
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(target.endsWith(".dt") ? Qt::white : Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    source.render(&painter);
    painter.end();
    if (!Write(image, target)) {
        std::cerr << argv[2] << " can't be written\n";
        return 1;
    }
    return 0;
}
