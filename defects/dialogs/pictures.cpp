#include "defects/dialogs/pictures.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include "shell/dialogs/qttext.h"
#include "shell/paths.h"

namespace {

constexpr int LongestSide = 4096;
// A file of a few bytes may claim any size, and a progressive one takes memory for all of it.
constexpr qint64 MostPixels = 120'000'000;

// Formats that are nothing but pixels. Others may name files of their own, such as drawings.
bool IsPictureFormat(const QByteArray& format) {
    static const QList<QByteArray> formats{"jpeg", "jpg", "png", "bmp", "gif", "tiff", "tif", "webp"};
    return formats.contains(format);
}

}  // namespace

QImage DecodePicture(const std::string& bytes) {
    QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead() || !IsPictureFormat(reader.format())) {
        return {};
    }
    const QSize size = reader.size();
    if (qint64{size.width()} * size.height() > MostPixels) {
        return {};
    }
    if (size.width() > LongestSide || size.height() > LongestSide) {
        reader.setScaledSize(
            size.scaled(LongestSide, LongestSide, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    const QImage image = reader.read();
    if (!image.hasAlphaChannel()) {
        return image.convertToFormat(QImage::Format_RGB32);
    }
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::black);
    QPainter(&opaque).drawImage(0, 0, image);
    return opaque;
}

std::string EncodePicture(const QImage& image, std::string_view path) {
    QByteArray format = ToQt(GetFileExtension(path)).toLower().toLatin1();
    if (format == "jpe" || format == "jfif") {
        format = "jpeg";
    }
    // An empty format would let the library guess.
    if (format.isEmpty()) {
        return {};
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return QImageWriter(&buffer, format).write(image) ? buffer.data().toStdString() : std::string();
}
