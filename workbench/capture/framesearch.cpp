#include "workbench/capture/framesearch.h"

#include <algorithm>
#include <limits>
#include <new>
#include <optional>

namespace {

constexpr double Always = -std::numeric_limits<double>::infinity();
constexpr double Latest = 1e8;  // three years; stays far from the ends of the file's own time counts

// From when on each frame counts. In files with decode times only, the frames near the end of the stretch
// that is thinned out have no right time.
double StretchInFull(double step) {
    return std::max(0.6, 16 * step);
}

// The shown frame that `Next` leads to.
class CShownFrame {
public:
    CShownFrame(double target, double step) : m_target(target), m_step(step) {}

    bool IsBehind(double time) const {
        // Where frames follow each other faster than usual, a quarter of the usual step could be all of
        // theirs.
        const double gap = m_time ? std::min(m_step, std::max(time - *m_time, 0.0)) : m_step;
        return time > m_target + gap / 4;
    }
    void Take(AVFrame& frame, double time) {
        if (!m_frame) {
            m_frame.reset(av_frame_alloc());
            if (!m_frame) {
                throw std::bad_alloc();
            }
        }
        av_frame_unref(m_frame.get());
        av_frame_move_ref(m_frame.get(), &frame);
        m_time = time;
    }
    const std::optional<double>& Time() const { return m_time; }
    AvPtr<AVFrame> Release() { return std::move(m_frame); }

private:
    double m_target;
    double m_step;
    std::optional<double> m_time;
    AvPtr<AVFrame> m_frame;
};

// Leaves `shown` empty if the frame lies before those that the video gives now. At the file's start there is
// nothing before, and the first frame is shown early.
void Search(CVideoFile& video, bool atStart, CShownFrame& shown) {
    const AvPtr<AVFrame> frame(av_frame_alloc());
    if (!frame) {
        throw std::bad_alloc();
    }
    double time = 0.0;
    while (video.Next(*frame, time)) {
        if (shown.IsBehind(time)) {
            if (!shown.Time() && atStart) {
                shown.Take(*frame, time);
            }
            return;
        }
        shown.Take(*frame, time);
    }
}

}  // namespace

FrameSearch FindFrame(int descriptor, double seconds, CVideoFile::TimePoint end) {
    FrameSearch search;
    auto video = std::make_unique<CVideoFile>(descriptor, end);
    if (!video->Open()) {
        search.Result = video->TooLate() ? FrameSearch::Outcome::TooSlow : FrameSearch::Outcome::NoVideo;
        return search;
    }
    const double target = seconds > 0 ? std::min(seconds, Latest) : 0.0;  // also for "not a number"
    const double length = video->Duration();
    const double aim = length > 0 ? std::min(target, length) : target;
    double margin = video->SeekMargin();
    double careFrom = aim - StretchInFull(video->FrameStep());
    for (bool fresh = true;;) {
        bool atStart = aim <= margin;
        if (!atStart) {
            fresh = false;
            atStart = !video->Seek(aim - margin);
        }
        if (atStart && !fresh) {
            // Not every format can seek to its beginning, but each begins there.
            video = std::make_unique<CVideoFile>(descriptor, end);
            if (!video->Open()) {
                search.Result =
                    video->TooLate() ? FrameSearch::Outcome::TooSlow : FrameSearch::Outcome::NoFrame;
                return search;
            }
        }
        fresh = false;
        video->CareFrom(careFrom);
        CShownFrame shown(target, video->FrameStep());
        Search(*video, atStart, shown);
        if (video->TooLate()) {
            search.Result = FrameSearch::Outcome::TooSlow;
            return search;
        }
        if (shown.Time() && *shown.Time() < careFrom && careFrom != Always) {
            careFrom = Always;  // it stood for long, and frames behind it may have been left out
        } else if (shown.Time()) {
            if (const std::int32_t* matrix = video->DisplayMatrix()) {
                search.Orientation.assign(matrix, matrix + 9);
            }
            search.Frame = shown.Release();
            search.Result = FrameSearch::Outcome::Found;
            return search;
        } else if (atStart) {
            search.Result = FrameSearch::Outcome::NoFrame;
            return search;
        } else {
            // The key frame is shown later than it is decoded, or the file ends before its index does.
            margin = std::max(1.0, margin * 4);
        }
    }
}
