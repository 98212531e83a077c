#include "workbench/capture/mediaprobe.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <new>
#include <optional>
#include <string_view>
#include <vector>

#include "shell/CUnixFile.h"
#include "workbench/capture/CVideoFile.h"
#include "workbench/capture/framepicture.h"
#include "workbench/capture/framesearch.h"
#include "workbench/capture/greyjpeg.h"

namespace {

constexpr std::int64_t MostPictureBytes = std::int64_t{64} << 20;
constexpr int Dark = 24;             // of 255: what an unlit lens gives
constexpr int LaplacianWidth = 540;  // pixels; wider pictures are halved until they aren't

CVideoFile::TimePoint End() {
    return std::chrono::steady_clock::now() + ProbeLimit;
}

GreyPicture Halved(const GreyPicture& picture) {
    GreyPicture half;
    half.Width = picture.Width / 2;
    half.Height = picture.Height / 2;
    half.FullWidth = picture.FullWidth;
    half.FullHeight = picture.FullHeight;
    half.Pixels.resize(static_cast<std::size_t>(half.Width) * static_cast<std::size_t>(half.Height));
    for (int y = 0; y < half.Height; ++y) {
        for (int x = 0; x < half.Width; ++x) {
            const int sum = picture.At(2 * x, 2 * y) + picture.At(2 * x + 1, 2 * y) +
                            picture.At(2 * x, 2 * y + 1) + picture.At(2 * x + 1, 2 * y + 1);
            half.Pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(half.Width) +
                        static_cast<std::size_t>(x)] = static_cast<unsigned char>(sum / 4);
        }
    }
    return half;
}

// What isn't a JPEG that is read at a smaller size, as the first frame of a video.
std::optional<GreyPicture> DecodeFrame(int descriptor) {
    const FrameSearch search = FindFrame(descriptor, 0.0, End());
    RgbPicture rgb;
    if (search.Result != FrameSearch::Outcome::Found ||
        !MakePicture(*search.Frame, search.Orientation, rgb)) {
        return std::nullopt;
    }
    GreyPicture picture;
    picture.Width = picture.FullWidth = rgb.Width;
    picture.Height = picture.FullHeight = rgb.Height;
    picture.Pixels.resize(rgb.Pixels.size() / 3);
    for (std::size_t i = 0; i < picture.Pixels.size(); ++i) {
        const int grey = 299 * rgb.Pixels[3 * i] + 587 * rgb.Pixels[3 * i + 1] + 114 * rgb.Pixels[3 * i + 2];
        picture.Pixels[i] = static_cast<unsigned char>(grey / 1000);
    }
    return picture;
}

void Measure(GreyPicture picture, PictureProbe& probe) {
    while (picture.Width > LaplacianWidth) {
        picture = Halved(picture);
    }
    const int left = std::max(picture.Width / 10, 1);
    const int right = std::min(picture.Width - left, picture.Width - 1);
    const int top = std::max(picture.Height / 5, 1);
    const int bottom = std::min(picture.Height - top, picture.Height - 1);
    std::int64_t dark = 0;
    std::int64_t count = 0;
    double sum = 0.0;
    double squares = 0.0;
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const int at = picture.At(x, y);
            const int laplacian = picture.At(x - 1, y) + picture.At(x + 1, y) + picture.At(x, y - 1) +
                                  picture.At(x, y + 1) - 4 * at;
            dark += at < Dark ? 1 : 0;
            sum += laplacian;
            squares += static_cast<double>(laplacian) * laplacian;
            ++count;
        }
    }
    if (count > 0) {
        const auto pixels = static_cast<double>(count);
        probe.DarkShare = static_cast<double>(dark) / pixels;
        probe.Sharpness = squares / pixels - (sum / pixels) * (sum / pixels);
    }
}

PictureProbe Look(const std::string& hostPath) {
    PictureProbe probe;
    const CUnixFile file(hostPath, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat state {};
    if (!file.IsOpen() || !file.State(state)) {
        return probe;
    }
    probe.State = MediaState::Unreadable;
    if (!S_ISREG(state.st_mode) || state.st_size > MostPictureBytes) {
        return probe;
    }
    std::string bytes(static_cast<std::size_t>(state.st_size), '\0');
    if (!file.ReadAll(bytes.data(), bytes.size())) {
        return probe;
    }
    probe.Bytes = state.st_size;
    probe.Digest = std::hash<std::string_view>()(bytes);
    bool damaged = false;
    std::optional<GreyPicture> picture = ReadGreyJpeg(bytes, damaged);
    if (!picture && !damaged) {
        picture = DecodeFrame(file.Descriptor());
    }
    if (picture && !damaged) {
        probe.State = MediaState::Readable;
        probe.Width = picture->FullWidth;
        probe.Height = picture->FullHeight;
        Measure(std::move(*picture), probe);
    }
    return probe;
}

}  // namespace

PictureProbe ProbePicture(const std::string& hostPath) {
    try {
        return Look(hostPath);
    } catch (const std::bad_alloc&) {
        return {MediaState::Unreadable};  // a size that only a broken file can have
    }
}

VideoProbe ProbeVideo(const std::string& hostPath) {
    VideoProbe probe;
    try {
        const CUnixFile file(hostPath, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        struct stat state {};
        if (!file.IsOpen() || !file.State(state)) {
            return probe;
        }
        probe.State = MediaState::Unreadable;
        CVideoFile video(file.Descriptor(), End());
        if (S_ISREG(state.st_mode) && video.Open()) {
            probe.State = MediaState::Readable;
            probe.Duration = video.Duration();
        }
    } catch (const std::bad_alloc&) {
        probe.State = MediaState::Unreadable;
    }
    return probe;
}
