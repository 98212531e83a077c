#include "tests/workbench/videoformats.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "shell/numbers.h"

namespace {

double OneInSevenDropped(int number) {
    return number % 7 == 3 || (number >= 100 && number < 130) ? -1.0 : number / 25.0;
}

// Bursts, slow stretches, and one frame that stands for three seconds.
double Unsteady(int number) {
    return (number * 40 + number * 7 % 5 * 7 + (number > 150 ? 3000 : 0)) / 1000.0;
}

void RunFfmpeg(const std::string& words, const std::filesystem::path& file) {
    EXPECT_EQ(std::system(("ffmpeg -v error -y " + words + " '" + file.string() + "'").c_str()), 0);
}

}  // namespace

std::vector<VideoFormat> VideoFormats() {
    const std::string x264 = X264;
    const std::string dropped =
        "-vf 'select=not(eq(mod(n\\,7)\\,3)+between(n\\,100\\,129))' -fps_mode passthrough";
    const std::string unsteady =
        "-vf 'settb=1/1000,setpts=N*40+mod(N*7\\,5)*7+gt(N\\,150)*3000' -fps_mode passthrough -enc_time_base "
        "1:1000";
    const std::string mpeg4 = "-c:v mpeg4 -q:v 4 ";
    const std::string mpeg2 = "-c:v mpeg2video -q:v 4 ";
    return {
        {{"H264Mp4Near", ".mp4", x264 + "-g 12 -bf 3"}},
        {{"H264Mp4Far", ".mp4", x264 + "-g 250 -bf 3 -movflags faststart"}},
        {{"H264Mp4InOrder", ".mp4", x264 + "-g 250 -bf 0"}},
        {{"H264Mp4OpenGop", ".mp4", x264 + "-g 12 -bf 3 -x264-params open-gop=1:scenecut=0"}},
        {{"H264Mp4Interlaced", ".mp4", x264 + "-g 12 -bf 2 -flags +ilme+ildct"}},
        {{"H264Mp4Ntsc", ".mp4", x264 + "-g 250 -bf 2", "30000/1001"}, nullptr, 30000.0 / 1001},
        {{"H264Mp4Slow", ".mp4", x264 + "-g 12 -bf 3", "5"}, nullptr, 5.0},
        {{"H264Mp4Unsteady", ".mp4", x264 + "-g 250 -bf 3 " + unsteady}, Unsteady},
        {{"H264Mp4Narrow", ".mp4", x264 + "-g 12", "25", 178, 118}},
        {{"H264AviNear", ".avi", x264 + "-g 12 -bf 3"}},
        {{"H264AviFar", ".avi", x264 + "-g 250 -bf 3"}},
        {{"H264AviOpenGop", ".avi", x264 + "-g 12 -bf 3 -x264-params open-gop=1:scenecut=0"}},
        {{"H264AviInOrder", ".avi", x264 + "-g 12 -bf 0"}},
        {{"H264AviSlow", ".avi", x264 + "-g 250 -bf 3", "5"}, nullptr, 5.0},
        {{"H264AviDropped", ".avi", x264 + "-g 12 -bf 2 " + dropped}, OneInSevenDropped},
        {{"H264Mpg", ".mpg", x264 + "-g 12 -bf 2 -f vob"}},
        {{"Mpeg4AviNear", ".avi", mpeg4 + "-vtag XVID -g 12 -bf 2"}},
        {{"Mpeg4AviFar", ".avi", mpeg4 + "-vtag XVID -g 250 -bf 2"}},
        {{"Mpeg4AviInOrder", ".avi", mpeg4 + "-g 12 -bf 0"}},
        {{"Mpeg4AviDropped", ".avi", mpeg4 + "-g 12 -bf 0 " + dropped}, OneInSevenDropped},
        {{"Mpeg4Mp4", ".mp4", mpeg4 + "-g 250 -bf 2"}},
        {{"Mpeg2MpgNear", ".mpg", mpeg2 + "-g 12 -bf 2"}},
        {{"Mpeg2MpgFar", ".mpg", mpeg2 + "-g 250 -bf 2 -sc_threshold 1000000000"}},
        {{"Mpeg2MpgInterlaced", ".mpg", mpeg2 + "-g 12 -bf 2 -flags +ilme+ildct"}},
        {{"Mpeg2MpgInOrder", ".mpg", mpeg2 + "-g 250 -bf 0"}},
        {{"Mpeg2Avi", ".avi", mpeg2 + "-g 12 -bf 2"}},
        {{"Mpeg1Mpg", ".mpg", "-c:v mpeg1video -q:v 4 -g 12 -bf 2"}},
        {{"MjpegAvi", ".avi", "-c:v mjpeg -pix_fmt yuvj420p -q:v 4"}},
        {{"MjpegAviOddSize", ".avi", "-c:v mjpeg -pix_fmt yuvj422p -q:v 4", "25", 181, 117}},
        {{"WmvNear", ".wmv", "-c:v wmv2 -q:v 4 -g 12"}},
        {{"WmvFar", ".wmv", "-c:v wmv2 -q:v 4 -g 250"}},
        {{"WmvNtsc", ".wmv", "-c:v wmv1 -q:v 4 -g 12", "30000/1001"}, nullptr, 30000.0 / 1001},
        {{"WmvAvi", ".avi", "-c:v wmv2 -q:v 4 -g 12"}},
    };
}

FrameTimes TimesOf(const VideoFormat& video) {
    FrameTimes times;
    for (int number = 0; number < video.Recipe.Frames; ++number) {
        const double time = video.TimeOf != nullptr ? video.TimeOf(number) : number / video.Rate;
        if (time >= 0) {
            times.emplace_back(time, number);
        }
    }
    return times;
}

Positions MakePositions(const FrameTimes& times, std::size_t count) {
    const int last = times.back().second;
    Positions positions = {{0.0, times[0].second},          {-5.0, times[0].second},
                           {times.back().first, last},      {times.back().first + 0.03, last},
                           {times.back().first + 60, last}, {1e300, last}};
    std::mt19937 random(7);
    while (positions.size() < count) {
        const std::size_t i = 1 + random() % (times.size() - 2);
        const auto [start, number] = times[i];
        const double before = start - times[i - 1].first;
        const double after = times[i + 1].first - start;
        for (const double at :
             {start, RoundTo(start, 3), start - 0.001, start + 0.001, start + 0.7 * after}) {
            positions.emplace_back(at, number);
        }
        // A quarter of a frame early is near enough, more is not.
        positions.emplace_back(start - 0.2 * std::min(before, 0.03), number);
        positions.emplace_back(start - 0.3 * before, times[i - 1].second);
    }
    return positions;
}

bool MakeTurnedVideo(const std::filesystem::path& flat, int degrees, const std::filesystem::path& turned) {
    const std::string command = "ffmpeg -v error -y -i '" + flat.string() +
                                "' -c copy -metadata:s:v rotate=" + std::to_string(degrees) + " '" +
                                turned.string() + "'";
    return std::system(command.c_str()) == 0;
}

std::vector<std::pair<std::string, std::string>> StreamableVideos() {
    const std::string x264 = X264;
    return {
        {"a.mp4", x264 + "-g 12 -bf 2 -movflags faststart"},
        {"a.avi", x264 + "-g 12 -bf 2"},
        {"x.avi", "-c:v mpeg4 -g 12 -bf 2"},
        {"a.mpg", "-c:v mpeg2video -g 12 -bf 2"},
        {"a.wmv", "-c:v wmv2 -g 12"},
    };
}

std::string WithBrokenBytes(const std::string& video, std::mt19937& random) {
    std::string broken = video;
    for (int i = 0; i < 20; ++i) {
        // Half of them in the head, where the lengths and counts stand.
        broken[random() % (i % 2 == 0 ? 2000 : broken.size())] = static_cast<char>(random());
    }
    return broken;
}

void WriteBadVideos(const CTestFolder& folder, const std::string& name) {
    EXPECT_TRUE(MakeNumberedVideo({"", "", X264, "25", 176, 112, 60}, folder.Host("good.mp4")));
    const std::string whole = folder.ReadFile("good.mp4");
    const std::string good = folder.Host("good.mp4").string();
    folder.WriteFile(name + "empty.avi", "");
    folder.WriteFile(name + "text.mp4", "This was a letter once.\n" + std::string(5000, 'x'));
    folder.WriteFile(name + "text.txt", std::string(5000, 'x'));
    // Lists of other files must not be followed.
    folder.WriteFile(name + "list.avi", "ffconcat version 1.0\nfile '" + good + "'\n");
    folder.WriteFile(name + "list.mp4",
                     "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" + good + "\n#EXT-X-ENDLIST\n");
    folder.WriteFile(name + "cut.mp4", whole.substr(0, whole.size() / 2));  // its index stood at the end
    RunFfmpeg("-f lavfi -i sine=duration=1 -c:a pcm_s16le", folder.Host(name + "sound.avi"));
    RunFfmpeg(
        "-f lavfi -i sine=duration=1 -f lavfi -i color=red:s=64x64:d=0.04 -map 0 -map 1 -c:v mjpeg "
        "-disposition:v attached_pic -c:a aac",
        folder.Host(name + "cover.m4a"));
}
