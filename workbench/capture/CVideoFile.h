// A video file that gives its frames in the order in which they are shown, each with its time. For use within
// this room: it shows the decoding library's types.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <chrono>
#include <cstdint>
#include <memory>

struct AvDeleter {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
    void operator()(AVIOContext* io) const;
};
template <class T>
using AvPtr = std::unique_ptr<T, AvDeleter>;

class CVideoFile {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // Reads from the descriptor, which must outlive it, and nothing else: no other file or address that a
    // playlist names. Everything fails once `end` has passed.
    CVideoFile(int descriptor, TimePoint end);
    ~CVideoFile() = default;
    CVideoFile(const CVideoFile&) = delete;
    CVideoFile& operator=(const CVideoFile&) = delete;

    // Only once, before all else. False if there is no video that can be decoded. A still picture that goes
    // with a sound file is none.
    bool Open();
    bool TooLate() const { return std::chrono::steady_clock::now() >= m_end; }

    // All times are seconds from the file's first moment.
    double FrameStep() const { return m_step; }  // the usual time from one frame to the next
    double Duration() const;                     // 0 if it isn't known
    // How far in front of a frame's time a seek must aim, so that the frames from there on come whole.
    double SeekMargin() const;
    // Quarter turns and mirrorings of the picture as a matrix of the file, or none.
    const std::int32_t* DisplayMatrix() const;

    // Goes on from the last key frame that isn't after that time, as far as the file knows it.
    bool Seek(double seconds);
    // Frames before that time that no other frame builds on may be left out; halves the work.
    void CareFrom(double seconds) { m_careFrom = seconds; }
    // The next frame; false at the end.
    bool Next(AVFrame& frame, double& time);

private:
    static int ReadBytes(void* self, std::uint8_t* buffer, int size);
    static std::int64_t SeekBytes(void* self, std::int64_t offset, int whence);
    AVStream* ChooseStream() const;
    bool OpenCodec();
    double Seconds(std::int64_t stamp) const;
    double TimeOf(const AVFrame& frame) const;
    // Gives the decoder one more packet, or the end.
    void Feed();
    bool ReadPacket();

    int m_descriptor;
    TimePoint m_end;
    // Each is used by those below it.
    AvPtr<AVIOContext> m_io;
    AvPtr<AVFormatContext> m_format;
    AvPtr<AVCodecContext> m_codec;
    AvPtr<AVPacket> m_packet;
    AVStream* m_stream = nullptr;
    bool m_onlyDecodeTimes = false;
    double m_origin = 0.0;
    double m_step = 0.04;
    double m_careFrom = -1e9;
    double m_lastTime = 0.0;

    // Since the last seek.
    bool m_pending = false;  // the packet is still to be decoded
    bool m_waitForKey = false;
};
