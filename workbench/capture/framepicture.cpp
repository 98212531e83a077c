#include "workbench/capture/framepicture.h"

extern "C" {
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace {

constexpr int MaxSide = 32767;              // the whole of it must fit a count of bytes
constexpr std::size_t ConverterSlack = 64;  // the converter writes in blocks, over the end of the last row

struct ConverterDeleter {
    void operator()(SwsContext* converter) const { sws_freeContext(converter); }
};

// Files seldom say by which matrix their colours were made. Then players go by the size, and so do we.
int ColourMatrix(const AVFrame& frame) {
    switch (frame.colorspace) {
        case AVCOL_SPC_UNSPECIFIED:
        case AVCOL_SPC_RESERVED:
        case AVCOL_SPC_RGB:
            return frame.width >= 1280 || frame.height > 576 ? SWS_CS_ITU709 : SWS_CS_ITU601;
        default:
            return frame.colorspace;
    }
}

bool HasFullRange(const AVFrame& frame) {
    switch (frame.format) {
        case AV_PIX_FMT_YUVJ420P:
        case AV_PIX_FMT_YUVJ422P:
        case AV_PIX_FMT_YUVJ444P:
        case AV_PIX_FMT_YUVJ440P:
        case AV_PIX_FMT_YUVJ411P:
            return true;
        default:
            return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

bool ConvertPixels(const AVFrame& frame, RgbPicture& picture) {
    const std::unique_ptr<SwsContext, ConverterDeleter> converter(sws_getContext(
        frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), frame.width, frame.height,
        AV_PIX_FMT_RGB24, SWS_BILINEAR | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
    if (!converter) {
        return false;
    }
    const int* const matrix = sws_getCoefficients(ColourMatrix(frame));
    constexpr int unchanged = 1 << 16;
    (void)sws_setColorspaceDetails(converter.get(), matrix, HasFullRange(frame) ? 1 : 0, matrix, 1, 0,
                                   unchanged,
                                   unchanged);  // refused where the source is RGB: nothing to set then
    const std::size_t size =
        std::size_t{3} * static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height);
    picture.Width = frame.width;
    picture.Height = frame.height;
    picture.Pixels.resize(size + ConverterSlack);
    unsigned char* const planes[4] = {picture.Pixels.data(), nullptr, nullptr, nullptr};
    const int strides[4] = {3 * frame.width, 0, 0, 0};
    if (sws_scale(converter.get(), frame.data, frame.linesize, 0, frame.height, planes, strides) !=
        frame.height) {
        return false;
    }
    picture.Pixels.resize(size);
    return true;
}

// The matrix takes (x, y) to (a x + c y, b x + d y), up to a shift.
void Orient(const std::int32_t* matrix, RgbPicture& picture) {
    const std::int64_t a = matrix[0];
    const std::int64_t b = matrix[1];
    const std::int64_t c = matrix[3];
    const std::int64_t d = matrix[4];
    const bool turned = std::abs(b) + std::abs(c) > std::abs(a) + std::abs(d);
    const bool mirrorX = turned ? c < 0 : a < 0;
    const bool mirrorY = turned ? b < 0 : d < 0;
    if (!turned && !mirrorX && !mirrorY) {
        return;
    }
    RgbPicture source = std::move(picture);
    picture.Width = turned ? source.Height : source.Width;
    picture.Height = turned ? source.Width : source.Height;
    picture.Pixels.resize(source.Pixels.size());
    unsigned char* to = picture.Pixels.data();
    for (int y = 0; y < picture.Height; ++y) {
        const int down = mirrorY ? picture.Height - 1 - y : y;
        for (int x = 0; x < picture.Width; ++x, to += 3) {
            const int across = mirrorX ? picture.Width - 1 - x : x;
            const std::ptrdiff_t from = turned ? std::ptrdiff_t{across} * source.Width + down
                                               : std::ptrdiff_t{down} * source.Width + across;
            std::copy_n(source.Pixels.data() + 3 * from, 3, to);
        }
    }
}

}  // namespace

bool MakePicture(const AVFrame& frame, const std::vector<std::int32_t>& orientation, RgbPicture& picture) {
    if (frame.width <= 0 || frame.height <= 0 || frame.width > MaxSide || frame.height > MaxSide ||
        !ConvertPixels(frame, picture)) {
        return false;
    }
    const AVFrameSideData* own = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX);
    if (own != nullptr && own->size >= 9 * sizeof(std::int32_t)) {
        Orient(reinterpret_cast<const std::int32_t*>(own->data), picture);
    } else if (orientation.size() == 9) {
        Orient(orientation.data(), picture);
    }
    return true;
}
