#include "workbench/capture/grabframe.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <new>

#include "shell/CHostFiles.h"
#include "shell/CUnixFile.h"
#include "shell/seams.h"
#include "workbench/capture/framepicture.h"
#include "workbench/capture/framesearch.h"
#include "workbench/capture/jpegfile.h"

namespace {

constexpr int JpegQuality = 80;

bool IsSameFile(const struct stat& video, std::string_view output) {
    struct stat state {};
    return stat(HostFiles().HostPath(output).c_str(), &state) == 0 && state.st_dev == video.st_dev &&
           state.st_ino == video.st_ino;
}

GrabResult Grab(std::string_view video, double seconds, std::string_view output,
                std::chrono::steady_clock::time_point end) {
    // Without blocking: opening a pipe would wait for its writer without limit.
    const CUnixFile file(HostFiles().HostPath(video), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat state {};
    if (!file.IsOpen() || !file.State(state) || !S_ISREG(state.st_mode)) {
        return GrabResult::NoFile;
    }
    if (IsSameFile(state, output)) {
        return GrabResult::NotWritten;
    }
    const FrameSearch search = FindFrame(file.Descriptor(), seconds, end);
    switch (search.Result) {
        case FrameSearch::Outcome::Found:
            break;
        case FrameSearch::Outcome::NoVideo:
            return GrabResult::NoVideo;
        case FrameSearch::Outcome::NoFrame:
            return GrabResult::NoFrame;
        case FrameSearch::Outcome::TooSlow:
            return GrabResult::TooSlow;
    }
    RgbPicture picture;
    if (!MakePicture(*search.Frame, search.Orientation, picture)) {
        return GrabResult::NoFrame;
    }
    const bool written = RGBToJpegFile(output, picture.Pixels.data(), picture.Width, picture.Height, true,
                                       JpegQuality, false, false);
    return written ? GrabResult::Done : GrabResult::NotWritten;
}

}  // namespace

GrabResult TryGrabFrame(std::string_view video, double seconds, std::string_view output,
                        std::chrono::milliseconds limit) {
    try {
        return Grab(video, seconds, output, std::chrono::steady_clock::now() + limit);
    } catch (const std::bad_alloc&) {
        return GrabResult::NoFrame;  // a size that only a broken file can have
    }
}

bool GrabFrame(std::string_view video, double seconds, std::string_view output) {
    return TryGrabFrame(video, seconds, output) == GrabResult::Done;
}
