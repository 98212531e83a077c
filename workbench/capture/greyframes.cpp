#include "workbench/capture/greyframes.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <optional>

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
constexpr double SparseStep = 0.1;  // seconds
constexpr double Never = 1e12;

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

// An open video and its current frame.
class CGreyVideo {
public:
    explicit CGreyVideo(std::string_view path)
        // Without waiting for who may never come, as a pipe would.
        : m_descriptor(HostFiles().HostPath(path), O_RDONLY | O_NONBLOCK | O_CLOEXEC) {
        struct stat state {};
        if (!m_descriptor.IsOpen() || !m_descriptor.State(state) || !S_ISREG(state.st_mode)) {
            m_state = WalkResult::NoFile;
            return;
        }
        m_file.emplace(m_descriptor.Descriptor(), std::chrono::steady_clock::now() + Limit);
        m_frame.reset(av_frame_alloc());
        m_state = m_file->Open() && m_frame ? WalkResult::Done : WalkResult::NoVideo;
    }
    WalkResult State() const { return m_state; }
    CVideoFile& File() { return *m_file; }
    bool Next() { return m_file->Next(*m_frame, m_grey.Time); }
    double Time() const { return m_grey.Time; }
    bool Fill() { return FillGrey(*m_frame, m_grey); }
    const GreyFrame& Grey() const { return m_grey; }

private:
    CUnixFile m_descriptor;
    std::optional<CVideoFile> m_file;
    AvPtr<AVFrame> m_frame;
    GreyFrame m_grey;
    WalkResult m_state = WalkResult::Done;
};

}  // namespace

WalkResult WalkFrames(std::string_view path, double every,
                      const std::function<bool(const GreyFrame&)>& take) {
    CGreyVideo video(path);
    if (video.State() != WalkResult::Done) {
        return video.State();
    }
    if (every >= SparseStep) {
        video.File().CareFrom(Never);  // frames that no other builds on are never missed at such steps
    }
    double next = -1e9;
    while (video.Next()) {
        if (video.Time() + video.File().FrameStep() / 2 < next) {
            continue;
        }
        next = std::max(next, video.Time()) < 0 ? video.Time() + every : std::max(next + every, video.Time());
        if (video.Fill() && !take(video.Grey())) {
            break;
        }
    }
    return WalkResult::Done;
}

WalkResult SampleFrames(std::string_view path, int count, const std::function<bool(const GreyFrame&)>& take) {
    CGreyVideo video(path);
    if (video.State() != WalkResult::Done) {
        return video.State();
    }
    const double step = video.File().Duration() / count;
    double last = -1e9;
    for (int i = 0; i < count && step > 0; ++i) {
        if (!video.File().Seek((i + 0.5) * step) || !video.Next() || video.Time() <= last) {
            continue;
        }
        last = video.Time();
        if (video.Fill() && !take(video.Grey())) {
            break;
        }
    }
    return WalkResult::Done;
}
