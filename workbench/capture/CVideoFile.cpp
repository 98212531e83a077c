#include "workbench/capture/CVideoFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <new>
#include <string_view>

namespace {

constexpr int IoBufferSize = 1 << 16;
constexpr int DecoderThreads = 2;  // more cost the short way from a near key frame more than they gain
constexpr int ReadAttempts = 10;   // broken places in a row that are jumped over

template <class T>
T* Require(T* made) {
    if (made == nullptr) {
        throw std::bad_alloc();
    }
    return made;
}

int RefuseOtherFiles(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

}  // namespace

void AvDeleter::operator()(AVIOContext* io) const {
    av_freep(&io->buffer);  // the library may have exchanged it
    avio_context_free(&io);
}

CVideoFile::CVideoFile(int descriptor, TimePoint end)
    : m_descriptor(descriptor), m_end(end), m_packet(Require(av_packet_alloc())) {
    av_log_set_level(AV_LOG_QUIET);  // results are told by us
    m_io.reset(Require(avio_alloc_context(static_cast<unsigned char*>(Require(av_malloc(IoBufferSize))),
                                          IoBufferSize, 0, this, &CVideoFile::ReadBytes, nullptr,
                                          &CVideoFile::SeekBytes)));
}

int CVideoFile::ReadBytes(void* self, std::uint8_t* buffer, int size) {
    const CVideoFile& file = *static_cast<CVideoFile*>(self);
    for (;;) {
        if (file.TooLate()) {
            return AVERROR_EXIT;
        }
        const ssize_t got = read(file.m_descriptor, buffer, static_cast<std::size_t>(size));
        if (got >= 0) {
            return got == 0 ? AVERROR_EOF : static_cast<int>(got);
        }
        if (errno != EINTR) {
            return AVERROR(errno);
        }
    }
}

std::int64_t CVideoFile::SeekBytes(void* self, std::int64_t offset, int whence) {
    const int descriptor = static_cast<CVideoFile*>(self)->m_descriptor;
    if ((whence & AVSEEK_SIZE) != 0) {
        struct stat state {};
        return fstat(descriptor, &state) == 0 ? state.st_size : AVERROR(errno);
    }
    const off_t at = lseek(descriptor, offset, whence & ~AVSEEK_FORCE);
    return at < 0 ? AVERROR(errno) : at;
}

bool CVideoFile::Open() {
    if (lseek(m_descriptor, 0, SEEK_SET) != 0) {
        return false;
    }
    AVFormatContext* format = Require(avformat_alloc_context());
    format->pb = m_io.get();
    format->io_open = RefuseOtherFiles;
    format->interrupt_callback = {
        [](void* self) { return static_cast<CVideoFile*>(self)->TooLate() ? 1 : 0; }, this};
    // Without a name: the kind shows in the bytes, and the ending of a name would make a video of a text.
    if (avformat_open_input(&format, nullptr, nullptr, nullptr) != 0) {
        return false;  // and freed
    }
    m_format.reset(format);
    if (avformat_find_stream_info(format, nullptr) < 0) {
        return false;
    }
    m_stream = ChooseStream();
    return m_stream != nullptr && OpenCodec();
}

AVStream* CVideoFile::ChooseStream() const {
    AVStream* chosen = nullptr;
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        AVStream* stream = m_format->streams[i];
        stream->discard = AVDISCARD_ALL;
        const AVCodecParameters& codec = *stream->codecpar;
        if (chosen == nullptr && codec.codec_type == AVMEDIA_TYPE_VIDEO && codec.width > 0 &&
            (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) == 0 &&
            avcodec_find_decoder(codec.codec_id) != nullptr) {
            chosen = stream;
            stream->discard = AVDISCARD_DEFAULT;
        }
    }
    return chosen;
}

bool CVideoFile::OpenCodec() {
    const AVCodec* decoder = avcodec_find_decoder(m_stream->codecpar->codec_id);
    m_codec.reset(Require(avcodec_alloc_context3(decoder)));
    if (avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar) < 0) {
        return false;
    }
    m_codec->pkt_timebase = m_stream->time_base;
    m_codec->thread_count = DecoderThreads;
    if (avcodec_open2(m_codec.get(), decoder, nullptr) != 0) {
        return false;
    }
    for (const AVRational rate : {m_stream->avg_frame_rate, m_stream->r_frame_rate}) {
        if (rate.num > 0 && rate.den > 0) {
            m_step = av_q2d(av_inv_q(rate));
            break;
        }
    }
    // AVI stores when a frame is decoded and not when it is shown. What the library makes up for the second
    // is wrong as soon as frames change their order.
    m_onlyDecodeTimes = std::string_view(m_format->iformat->name) == "avi";
    if (!m_onlyDecodeTimes && m_format->start_time != AV_NOPTS_VALUE) {
        m_origin = static_cast<double>(m_format->start_time) / AV_TIME_BASE;
    }
    return true;
}

double CVideoFile::Duration() const {
    return m_format->duration > 0 ? static_cast<double>(m_format->duration) / AV_TIME_BASE : 0.0;
}

double CVideoFile::SeekMargin() const {
    if (m_onlyDecodeTimes) {
        return (m_codec->has_b_frames + 0.5) * m_step;
    }
    // These have no index: a seek goes to any frame near that time.
    return (m_format->iformat->flags & AVFMT_TS_DISCONT) != 0 ? 1.0 : 0.0;
}

const std::int32_t* CVideoFile::DisplayMatrix() const {
    return reinterpret_cast<const std::int32_t*>(
        av_stream_get_side_data(m_stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
}

bool CVideoFile::Seek(double seconds) {
    const auto stamp =
        static_cast<std::int64_t>(std::floor((seconds + m_origin) / av_q2d(m_stream->time_base)));
    if (av_seek_frame(m_format.get(), m_stream->index, stamp, AVSEEK_FLAG_BACKWARD) < 0) {
        return false;
    }
    avcodec_flush_buffers(m_codec.get());
    av_packet_unref(m_packet.get());
    m_pending = false;
    m_waitForKey = true;
    return true;
}

double CVideoFile::Seconds(std::int64_t stamp) const {
    return static_cast<double>(stamp) * av_q2d(m_stream->time_base) - m_origin;
}

bool CVideoFile::ReadPacket() {
    for (int attempt = 0; attempt < ReadAttempts && !TooLate();) {
        av_packet_unref(m_packet.get());
        const int result = av_read_frame(m_format.get(), m_packet.get());
        if (result == AVERROR_EOF || result == AVERROR_EXIT) {
            return false;
        }
        if (result < 0) {
            ++attempt;
            continue;
        }
        attempt = 0;
        // An empty packet repeats the frame before, and would mean the end to the decoder.
        if (m_packet->stream_index != m_stream->index || m_packet->size == 0) {
            continue;
        }
        if (m_waitForKey && (m_packet->flags & AV_PKT_FLAG_KEY) == 0) {
            continue;  // some decoders would make grey smears of what comes before
        }
        m_waitForKey = false;
        return true;
    }
    return false;
}

void CVideoFile::Feed() {
    if (!m_pending) {
        if (!ReadPacket()) {
            (void)avcodec_send_packet(m_codec.get(), nullptr);
            return;
        }
        const std::int64_t stamp = m_packet->dts != AV_NOPTS_VALUE ? m_packet->dts : m_packet->pts;
        const bool care = stamp == AV_NOPTS_VALUE || Seconds(stamp) >= m_careFrom;
        m_codec->skip_frame = care ? AVDISCARD_DEFAULT : AVDISCARD_NONREF;
    }
    // What can't be decoded is passed over, as players do.
    m_pending = avcodec_send_packet(m_codec.get(), m_packet.get()) == AVERROR(EAGAIN);
}

bool CVideoFile::Next(AVFrame& frame, double& time) {
    while (!TooLate()) {
        const int result = avcodec_receive_frame(m_codec.get(), &frame);
        if (result == 0) {
            m_lastTime = time = TimeOf(frame);
            return true;
        }
        if (result == AVERROR_EOF || result == AVERROR(ENOMEM)) {
            return false;
        }
        Feed();
    }
    return false;
}

double CVideoFile::TimeOf(const AVFrame& frame) const {
    if (!m_onlyDecodeTimes) {
        return frame.best_effort_timestamp != AV_NOPTS_VALUE ? Seconds(frame.best_effort_timestamp)
                                                             : m_lastTime + m_step;
    }
    // A decoder that puts frames in order holds some back: with each packet it gives out the frame that is
    // shown so many places before. At the end it gives out the rest without further packets.
    return frame.pkt_dts != AV_NOPTS_VALUE ? Seconds(frame.pkt_dts) - m_codec->has_b_frames * m_step
                                           : m_lastTime + m_step;
}
