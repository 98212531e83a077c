#include "tests/defectswindows/oddpictures.h"

#include <QBuffer>

std::string Encoded(const QImage& image, const char* format) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 95);
    return buffer.data().toStdString();
}

std::string WithQuarterTurn(const std::string& jpeg) {
    // One entry: tag 0x0112, one short, 6.
    const char exif[] =
        "\xFF\xE1\x00\x22"
        "Exif\0\0"
        "MM\0\x2A\0\0\0\x08"
        "\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0"
        "\0\0\0\0";
    return jpeg.substr(0, 2) + std::string(exif, sizeof exif - 1) + jpeg.substr(2);
}

std::string WithClaimedSize(const std::string& jpeg, int width, int height) {
    std::string result = jpeg;
    const std::size_t frame = result.find("\xFF\xC0");
    for (const auto& [offset, value] : {std::pair(5U, height), std::pair(7U, width)}) {
        result[frame + offset] = static_cast<char>(value >> 8);
        result[frame + offset + 1] = static_cast<char>(value & 0xFF);
    }
    return result;
}
