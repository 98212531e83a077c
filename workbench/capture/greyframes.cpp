#include "workbench/capture/greyframes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>

#include "shell/CHostFiles.h"
#include "shell/CUnixFile.h"
#include "shell/seams.h"
#include "workbench/capture/CVideoFile.h"
#include "workbench/capture/framepicture.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace {

constexpr std::chrono::hours Limit{6};

// The first plane of most kinds of pixels is the brightness already.
bool HasGreyPlane(const AVFrame& frame) {
    const AVPixFmtDescriptor* kind = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return kind != nullptr && (kind->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) == 0 &&
           kind->comp[0].depth == 8 && kind->comp[0].plane == 0 && kind->comp[0].step == 1 &&
           kind->comp[0].offset == 0;
}

bool FillGrey(const AVFrame& frame, GreyFrame& grey) {
    grey.Width = frame.width;
    grey.Height = frame.height;
    const auto width = static_cast<std::size_t>(frame.width);
    grey.Pixels.resize(width * static_cast<std::size_t>(frame.height));
    if (HasGreyPlane(frame)) {
        for (int y = 0; y < frame.height; ++y) {
            const std::uint8_t* row = frame.data[0] + static_cast<std::ptrdiff_t>(y) * frame.linesize[0];
            std::copy_n(row, width, grey.Pixels.begin() + static_cast<std::ptrdiff_t>(y) * frame.width);
        }
        return true;
    }
    RgbPicture picture;
    if (!MakePicture(frame, {}, picture) || picture.Width != frame.width) {
        return false;
    }
    for (std::size_t i = 0; i < grey.Pixels.size(); ++i) {
        const unsigned char* rgb = &picture.Pixels[3 * i];
        grey.Pixels[i] = static_cast<std::uint8_t>((299 * rgb[0] + 587 * rgb[1] + 114 * rgb[2]) / 1000);
    }
    return true;
}

}  // namespace

WalkResult WalkFrames(std::string_view path, double every,
                      const std::function<bool(const GreyFrame&)>& take) {
    // Without waiting for who may never come, as a pipe would.
    const CUnixFile file(HostFiles().HostPath(path), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat state {};
    if (!file.IsOpen() || !file.State(state) || !S_ISREG(state.st_mode)) {
        return WalkResult::NoFile;
    }
    CVideoFile video(file.Descriptor(), std::chrono::steady_clock::now() + Limit);
    if (!video.Open()) {
        return WalkResult::NoVideo;
    }
    const AvPtr<AVFrame> frame(av_frame_alloc());
    GreyFrame grey;
    double next = -1e9;
    while (video.Next(*frame, grey.Time)) {
        if (grey.Time + video.FrameStep() / 2 < next) {
            continue;
        }
        next = std::max(next, grey.Time) < 0 ? grey.Time + every : std::max(next + every, grey.Time);
        if (FillGrey(*frame, grey) && !take(grey)) {
            break;
        }
    }
    return WalkResult::Done;
}
