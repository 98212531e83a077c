#include "tests/defectswindows/oddpictures.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include <QBuffer>

#include <jpeglib.h>

std::string Encoded(const QImage& image, const char* format) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 95);
    return buffer.data().toStdString();
}

std::string CmykJpeg(int width, int height, unsigned char cyan, unsigned char magenta, unsigned char yellow) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &bytes, &size);
    info.image_width = static_cast<JDIMENSION>(width);
    info.image_height = static_cast<JDIMENSION>(height);
    info.input_components = 4;
    info.in_color_space = JCS_CMYK;
    jpeg_set_defaults(&info);
    jpeg_start_compress(&info, TRUE);
    std::vector<unsigned char> row;
    for (int x = 0; x < width; ++x) {
        // 255 is no ink.
        for (const int ink : {int{cyan}, int{magenta}, int{yellow}, 0}) {
            row.push_back(static_cast<unsigned char>(255 - ink));
        }
    }
    JSAMPROW rows[] = {row.data()};
    while (info.next_scanline < info.image_height) {
        jpeg_write_scanlines(&info, rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::string result(reinterpret_cast<const char*>(bytes), size);
    std::free(bytes);
    return result;
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
