// Speed of frame capture, as ratios against the ffmpeg program and against bare decoding, side by side.
// Prints a Markdown table; exit code 1 if a limit is broken. Needs the ffmpeg program.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cstdio>
#include <cstdlib>
#include <random>

#include "bench/CBenchFolder.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "shell/numbers.h"
#include "workbench/capture/grabframe.h"

namespace {

constexpr double Length = 40.0;  // seconds
constexpr double Rate = 25.0;

void RunProgram(const std::string& command) {
    Require(std::system(command.c_str()) == 0, command.c_str());
}

// A film of 720x576 with motion and noise, as a camera in a pipe makes it.
std::string MakeVideo(const CBenchFolder& folder, int keyDistance) {
    const std::string file = folder.Host("key" + std::to_string(keyDistance) + ".mp4").string();
    RunProgram(
        "ffmpeg -v error -y -f lavfi -i testsrc2=size=720x576:rate=25:duration=" + FormatNumber(Length, 0) +
        " -vf noise=alls=8:allf=t -c:v libx264 -preset veryfast -b:v 2500k " +
        "-pix_fmt yuv420p -bf 3 -sc_threshold 0 -g " + std::to_string(keyDistance) + " '" + file + "'");
    return file;
}

// What every way to a frame has to do: open, seek to the key frame, decode until the frame is there. With one
// thread and without converting or writing anything.
void DecodeBare(const std::string& file, double position) {
    AVFormatContext* format = nullptr;
    Require(avformat_open_input(&format, file.c_str(), nullptr, nullptr) == 0, "open");
    Require(avformat_find_stream_info(format, nullptr) >= 0, "streams");
    AVStream* stream = format->streams[0];
    const AVCodec* decoder = avcodec_find_decoder(stream->codecpar->codec_id);
    AVCodecContext* codec = avcodec_alloc_context3(decoder);
    Require(avcodec_parameters_to_context(codec, stream->codecpar) >= 0, "parameters");
    Require(avcodec_open2(codec, decoder, nullptr) == 0, "decoder");
    const auto target = static_cast<std::int64_t>(position / av_q2d(stream->time_base));
    Require(av_seek_frame(format, 0, target, AVSEEK_FLAG_BACKWARD) >= 0, "seek");
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    const auto step = static_cast<std::int64_t>(1 / Rate / av_q2d(stream->time_base));
    for (bool found = false; !found;) {
        const bool more = av_read_frame(format, packet) >= 0;
        if (avcodec_send_packet(codec, more ? packet : nullptr) == 0) {
            while (!found && avcodec_receive_frame(codec, frame) == 0) {
                found = frame->best_effort_timestamp + step > target;
            }
        }
        av_packet_unref(packet);
        Require(more || found, "find");
    }
    av_frame_free(&frame);
    av_packet_free(&packet);
    avcodec_free_context(&codec);
    avformat_close_input(&format);
}

// The same positions in the same order for both sides of a pair.
class CPositions {
public:
    double Next() {
        const auto frame = m_random() % static_cast<std::uint_fast32_t>(Length * Rate - 1);
        return (static_cast<double>(frame) + 0.5) / Rate;
    }

private:
    std::mt19937 m_random{5};
};

}  // namespace

int main() {
    const CBenchFolder folder;
    const std::string output = folder.Host("out.jpg").string();
    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    bool allHold = true;
    struct Row {
        int KeyDistance;
        double ProgramLimit;
        double BareLimit;
    };
    for (const Row& row : {Row{12, 0.35, 2.0}, Row{250, 0.6, 1.1}}) {
        const std::string host = MakeVideo(folder, row.KeyDistance);
        const std::string video = CHostFiles::PathText(host).value();
        const std::string name =
            "GrabFrame, 720x576, key frames " + std::to_string(row.KeyDistance) + " apart";
        const auto grab = [&](CPositions& positions) {
            return [&] { Require(GrabFrame(video, positions.Next(), folder.Path("p.jpg")), "grab"); };
        };
        {
            CPositions ours;
            CPositions theirs;
            allHold = PrintRatio({name, "the ffmpeg program", row.ProgramLimit, 41, grab(ours),
                                  [&] {
                                      RunProgram("ffmpeg -v error -y -ss " + FormatNumber(theirs.Next(), 3) +
                                                 " -i '" + host + "' -frames:v 1 '" + output + "'");
                                  }}) &&
                      allHold;
        }
        CPositions ours;
        CPositions theirs;
        allHold = PrintRatio({name, "bare decoding from the key frame, one thread", row.BareLimit, 41,
                              grab(ours), [&] { DecodeBare(host, theirs.Next()); }}) &&
                  allHold;
    }
    return allHold ? 0 : 1;
}
