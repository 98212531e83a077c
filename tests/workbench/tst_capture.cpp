// Frames taken out of videos of all kinds, checked by the numbers that the frames show.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <random>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "tests/support/CTestFolder.h"
#include "tests/workbench/numberedvideo.h"
#include "workbench/capture/grabframe.h"
#include "workbench/capture/jpegfile.h"
#include "workbench/capture/picturepath.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* X264 = "-c:v libx264 -preset veryfast -pix_fmt yuv420p ";

// The times of the frames in the file, by the numbers that they show.
using FrameTimes = std::vector<std::pair<double, int>>;

struct VideoCase {
    VideoRecipe Recipe;
    // When a frame is shown, below 0 if it isn't; frames in a steady row by default.
    double (*TimeOf)(int number) = nullptr;
    double Rate = 25.0;
};

double OneInSevenDropped(int number) {
    return number % 7 == 3 || (number >= 100 && number < 130) ? -1.0 : number / 25.0;
}

// Bursts, slow stretches, and one frame that stands for three seconds.
double Unsteady(int number) {
    return (number * 40 + number * 7 % 5 * 7 + (number > 150 ? 3000 : 0)) / 1000.0;
}

std::vector<VideoCase> AllCases() {
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

FrameTimes TimesOf(const VideoCase& video) {
    FrameTimes times;
    for (int number = 0; number < video.Recipe.Frames; ++number) {
        const double time = video.TimeOf != nullptr ? video.TimeOf(number) : number / video.Rate;
        if (time >= 0) {
            times.emplace_back(time, number);
        }
    }
    return times;
}

// A position and the number of the frame that it shows.
using Positions = std::vector<std::pair<double, int>>;

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

// 40 in the everyday run. DROVANE_GRABS=200 is for after work on the decoding.
std::size_t GrabCount() {
    const char* text = std::getenv("DROVANE_GRABS");
    return text != nullptr ? static_cast<std::size_t>(ParseInt(text)) : 40;
}

class CaptureFormat : public testing::TestWithParam<VideoCase> {};

TEST_P(CaptureFormat, EachPositionGivesTheFrameShownThere) {
    const CTestFolder folder;
    const VideoRecipe& recipe = GetParam().Recipe;
    const std::string name = "v" + recipe.Ending;
    ASSERT_TRUE(MakeNumberedVideo(recipe, folder.Host(name)));
    for (const auto& [position, number] : MakePositions(TimesOf(GetParam()), GrabCount())) {
        ASSERT_EQ(TryGrabFrame(folder.Path(name), position, folder.Path("p.jpg")), GrabResult::Done)
            << position;
        const Picture picture = ReadJpeg(folder.ReadFile("p.jpg"));
        ASSERT_EQ(picture.Width, recipe.Width);
        ASSERT_EQ(picture.Height, recipe.Height);
        EXPECT_EQ(ReadNumber(picture), number) << "at " << FormatNumber(position, 6);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, CaptureFormat, testing::ValuesIn(AllCases()),
                         [](const auto& format) { return format.param.Recipe.Name; });

class Capture : public testing::Test {
protected:
    std::string MakeVideo(const std::string& name, const std::string& options, int width = 176,
                          int height = 112, int frames = 60) const {
        const VideoRecipe recipe{"", "", options, "25", width, height, frames};
        fs::create_directories(m_folder.Host(name).parent_path());
        EXPECT_TRUE(MakeNumberedVideo(recipe, m_folder.Host(name)));
        return m_folder.Path(name);
    }
    GrabResult Grab(const std::string& name, double position = 1.0) const {
        return TryGrabFrame(m_folder.Path(name), position, m_folder.Path("p.jpg"));
    }
    int NumberAt(const std::string& name, double position) const {
        EXPECT_EQ(Grab(name, position), GrabResult::Done) << position;
        return ReadNumber(ReadJpeg(m_folder.ReadFile("p.jpg")));
    }
    std::size_t CountFiles(const std::string& name) const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(m_folder.Host(name)), {}));
    }

    CTestFolder m_folder;
};

TEST_F(Capture, TurnedVideosStandUpright) {
    const std::string x264 = X264;
    MakeVideo("flat.mp4", x264 + "-g 12");
    ASSERT_EQ(Grab("flat.mp4", 0.96), GrabResult::Done);
    const Picture flat = ReadJpeg(m_folder.ReadFile("p.jpg"));
    for (const int turn : {90, 180, 270}) {
        // The same film with the remark that it is to be turned so far, against the clock.
        const std::string command = "ffmpeg -v error -y -i '" + m_folder.Host("flat.mp4").string() +
                                    "' -c copy -metadata:s:v rotate=" + std::to_string(turn) + " '" +
                                    m_folder.Host("turned.mp4").string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        ASSERT_EQ(Grab("turned.mp4", 0.96), GrabResult::Done);
        const Picture turned = ReadJpeg(m_folder.ReadFile("p.jpg"));
        ASSERT_EQ(turned.Width, turn == 180 ? 176 : 112);
        ASSERT_EQ(turned.Height, turn == 180 ? 112 : 176);
        Picture back{176, 112, std::vector<unsigned char>(flat.Pixels.size())};
        for (int y = 0; y < 112; ++y) {
            for (int x = 0; x < 176; ++x) {
                // Where the pixel went.
                const int toX = turn == 90 ? y : turn == 180 ? 175 - x : 111 - y;
                const int toY = turn == 90 ? 175 - x : turn == 180 ? 111 - y : x;
                std::copy_n(turned.Pixels.begin() + 3 * (toY * turned.Width + toX), 3,
                            back.Pixels.begin() + 3 * (y * 176 + x));
            }
        }
        EXPECT_EQ(ReadNumber(back), 24) << turn;
    }
}

TEST_F(Capture, ColoursStayWhatTheyWere) {
    // Full and limited range, and the matrix that the size stands for.
    for (const auto& [options, width, height] :
         {std::tuple{"-c:v mjpeg -pix_fmt yuvj420p -q:v 2", 176, 112},
          std::tuple{"-c:v libx264 -qp 10 -pix_fmt yuv420p", 176, 112},
          std::tuple{"-vf scale=out_color_matrix=bt709 -c:v libx264 -qp 10 -pix_fmt yuv420p", 1280, 720}}) {
        MakeVideo("c.avi", options, width, height, 2);
        ASSERT_EQ(Grab("c.avi", 0.0), GrabResult::Done);
        const Picture picture = ReadJpeg(m_folder.ReadFile("p.jpg"));
        const auto pixel = [&, w = width](int x, int y) {
            return picture.Pixels.begin() + 3 * (std::ptrdiff_t{y} * w + x);
        };
        const auto colours = pixel(100, height == 720 ? 612 : 100);  // drawn as 160, 160, 90
        EXPECT_NEAR(colours[0], 160, 8) << options;
        EXPECT_NEAR(colours[1], 160, 8) << options;
        EXPECT_NEAR(colours[2], 90, 8) << options;
        EXPECT_NEAR(pixel(width / 20, height / 8)[0], 20, 6) << options;       // a black block of number 0
        EXPECT_NEAR(pixel(width / 20, height / 8 * 3)[0], 235, 6) << options;  // its opposite
    }
}

TEST_F(Capture, WhatIsNoVideoIsRefusedWithoutATrace) {
    m_folder.WriteFile("bad/empty.avi", "");
    m_folder.WriteFile("bad/text.mp4",
                       "This was a letter once, and is called a film now.\n" + std::string(5000, 'x'));
    m_folder.WriteFile("bad/text.txt", std::string(5000, 'x'));
    // A list of other files must not be followed.
    MakeVideo("good.mp4", X264);
    m_folder.WriteFile("bad/list.avi",
                       "ffconcat version 1.0\nfile '" + m_folder.Host("good.mp4").string() + "'\n");
    m_folder.WriteFile("bad/list.mp4", "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" +
                                           m_folder.Host("good.mp4").string() + "\n#EXT-X-ENDLIST\n");
    const auto ffmpeg = [&](const std::string& words, const char* name) {
        const std::string command = "ffmpeg -v error -y " + words + " '" + m_folder.Host(name).string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    };
    ffmpeg("-f lavfi -i sine=duration=1 -c:a pcm_s16le", "bad/sound.avi");
    ffmpeg(
        "-f lavfi -i sine=duration=1 -f lavfi -i color=red:s=64x64:d=0.04 -map 0 -map 1 -c:v mjpeg "
        "-disposition:v attached_pic -c:a aac",
        "bad/cover.m4a");
    const std::string whole = m_folder.ReadFile("good.mp4");
    m_folder.WriteFile("bad/cut.mp4", whole.substr(0, whole.size() / 2));  // its index stood at the end
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder.Host("bad"))) {
        const std::string name = "bad/" + entry.path().filename().string();
        EXPECT_EQ(Grab(name), GrabResult::NoVideo) << name;
    }
    EXPECT_EQ(Grab("none.avi"), GrabResult::NoFile);
    EXPECT_EQ(Grab("bad"), GrabResult::NoFile);
    ASSERT_EQ(mkfifo(m_folder.Host("pipe.avi").c_str(), 0600), 0);
    EXPECT_EQ(Grab("pipe.avi"), GrabResult::NoFile);
    EXPECT_FALSE(GrabFrame(m_folder.Path("none.avi"), 1.0, m_folder.Path("p.jpg")));
    EXPECT_FALSE(fs::exists(m_folder.Host("p.jpg")));
}

// Cut anywhere, as by a full card or while it is still being written, a file gives what is in it: near the
// beginning the right frame, behind the cut the last whole one.
TEST_F(Capture, CutVideosGiveWhatIsLeft) {
    const std::string x264 = X264;
    const std::pair<const char*, std::string> files[] = {
        {"a.mp4", x264 + "-g 12 -bf 2 -movflags faststart"},
        {"a.avi", x264 + "-g 12 -bf 2"},
        {"x.avi", "-c:v mpeg4 -g 12 -bf 2"},
        {"a.mpg", "-c:v mpeg2video -g 12 -bf 2"},
        {"a.wmv", "-c:v wmv2 -g 12"},
    };
    for (const auto& [name, options] : files) {
        MakeVideo(name, options);
        const std::string whole = m_folder.ReadFile(name);
        for (const double share : {0.8, 0.63}) {
            const std::string cut = std::string("cut-") + name;
            m_folder.WriteFile(
                cut, whole.substr(0, static_cast<std::size_t>(share * static_cast<double>(whole.size()))));
            EXPECT_EQ(NumberAt(cut, 0.0), 0) << cut;
            EXPECT_EQ(NumberAt(cut, 0.52), 13) << cut;
            EXPECT_EQ(Grab(cut, 2.36), GrabResult::Done) << cut;
        }
        for (std::size_t length = 1; length < whole.size() / 3; length = length * 3 / 2 + 7) {
            m_folder.WriteFile("cut.avi", whole.substr(0, length));
            (void)Grab("cut.avi", 1.0);  // may fail, must come back
        }
    }
}

TEST_F(Capture, BrokenBytesDoNoHarm) {
    std::mt19937 random(11);
    for (const char* name : {"a.mp4", "a.avi", "a.mpg", "a.wmv"}) {
        MakeVideo(name, "-g 12");
        const std::string whole = m_folder.ReadFile(name);
        for (int round = 0; round < 12; ++round) {
            std::string broken = whole;
            for (int i = 0; i < 20; ++i) {
                // Half of them in the head, where the lengths and counts stand.
                const std::size_t range = i % 2 == 0 ? 2000 : broken.size();
                broken[random() % range] = static_cast<char>(random());
            }
            m_folder.WriteFile("broken", broken);
            (void)Grab("broken", 1.0);
        }
    }
}

TEST_F(Capture, TheLimitEndsTheWork) {
    MakeVideo("v.mp4", X264);
    EXPECT_EQ(TryGrabFrame(m_folder.Path("v.mp4"), 1.0, m_folder.Path("p.jpg"), std::chrono::milliseconds(0)),
              GrabResult::TooSlow);
    EXPECT_FALSE(fs::exists(m_folder.Host("p.jpg")));
}

TEST_F(Capture, PicturesAppearWholeOrNotAtAll) {
    const std::string video = MakeVideo("v.mp4", X264);
    const std::string bytes = m_folder.ReadFile("v.mp4");
    EXPECT_EQ(TryGrabFrame(video, 1.0, m_folder.Path("no/folder/p.jpg")), GrabResult::NotWritten);
    EXPECT_EQ(TryGrabFrame(video, 1.0, video), GrabResult::NotWritten) << "the video itself must survive";
    EXPECT_EQ(m_folder.ReadFile("v.mp4"), bytes);

    m_folder.WriteFile("out/p.jpg", "former");
    rlimit former{};
    getrlimit(RLIMIT_FSIZE, &former);
    rlimit full = former;
    full.rlim_cur = 1000;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &full);
    const GrabResult overwritten = TryGrabFrame(video, 1.0, m_folder.Path("out/p.jpg"));
    const GrabResult created = TryGrabFrame(video, 1.0, m_folder.Path("out/q.jpg"));
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(overwritten, GrabResult::NotWritten);
    EXPECT_EQ(created, GrabResult::NotWritten);
    EXPECT_EQ(m_folder.ReadFile("out/p.jpg"), "former");
    EXPECT_EQ(CountFiles("out"), 1U);
}

TEST_F(Capture, NamesOfAnyKind) {
    std::string folder = "管道 \"影像\" it's %d [1]";
    for (const char* part : {"/one", "/two", "/three", "/four"}) {
        folder += part + std::string(60, 'n');
    }
    MakeVideo("v.mp4", X264);
    for (const std::string& name :
         {folder + "/污水 管.mp4", std::string("file:x.mp4"), std::string("-.mp4")}) {
        m_folder.WriteFile(name, m_folder.ReadFile("v.mp4"));
        const std::string picture = BuildPicturePath(m_folder.Path(name));
        EXPECT_TRUE(GrabFrame(m_folder.Path(name), 0.4, picture)) << picture;
        EXPECT_EQ(ReadNumber(ReadJpeg(ReadHostFile(HostFiles().HostPath(picture)))), 10);
    }
}

TEST_F(Capture, EachPictureGetsANameOfItsOwn) {
    const std::string video = m_folder.Path("job/管道 1.v.AVI");
    const auto path = [&](const char* time) {
        return m_folder.Path(std::string("job/picture/管道 1.v_") + time + ".jpg");
    };
    EXPECT_EQ(BuildPicturePath(video), path("092653"));
    EXPECT_TRUE(fs::is_directory(m_folder.Host("job/picture")));
    // A second grab within the second, and an original that outlived its picture.
    m_folder.WriteFile("job/picture/管道 1.v_092653.jpg", "");
    m_folder.WriteFile("job/picture/管道 1.v_092654_original.jpg", "");
    EXPECT_EQ(BuildPicturePath(video), path("092655"));
    m_folder.Clock.Local += std::chrono::hours(14) + std::chrono::minutes(33) + std::chrono::seconds(6);
    m_folder.WriteFile("job/picture/管道 1.v_235959.jpg", "");
    EXPECT_EQ(BuildPicturePath(video), path("000000"));

    // A title that fills its name leaves no room for the time; its twin must fit too.
    std::string title;
    for (int i = 0; i < 83; ++i) {
        title += "管";
    }
    const std::string picture = BuildPicturePath(m_folder.Path("job/" + title + ".avi"));
    EXPECT_TRUE(HostFiles().WriteFile(picture, "x"));
    BackupOriginal(picture);
    EXPECT_TRUE(HostFiles().Exists(MakeOriginalPath(picture)));
    EXPECT_NE(picture.find("管_235959.jpg"), std::string::npos) << picture;

    EXPECT_EQ(BuildPicturePath("v.avi"), "");
    m_folder.WriteFile("blocked/picture", "a file where the folder should be");
    m_folder.Prompts.Expect(2202);
    EXPECT_EQ(BuildPicturePath(m_folder.Path("blocked/v.avi")), "");
    EXPECT_TRUE(m_folder.Prompts.LastText().ends_with(m_folder.Path("blocked/picture") + "\\"));
}

TEST_F(Capture, PixelsBecomeJpegs) {
    // Two columns, the rows 6 bytes long or, aligned, 8; the upper half red, the lower one blue.
    std::vector<unsigned char> tight;
    std::vector<unsigned char> aligned;
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 2; ++x) {
            const unsigned char pixel[3] = {static_cast<unsigned char>(y < 16 ? 200 : 0), 0,
                                            static_cast<unsigned char>(y < 16 ? 0 : 200)};
            tight.insert(tight.end(), pixel, pixel + 3);
            aligned.insert(aligned.end(), pixel, pixel + 3);
        }
        aligned.insert(aligned.end(), 2, 255);
    }
    const std::string path = m_folder.Path("j.jpg");
    const auto at = [&](int y) {
        const Picture picture = ReadJpeg(m_folder.ReadFile("j.jpg"));
        EXPECT_EQ(picture.Width, 2);
        EXPECT_EQ(picture.Height, 32);
        return std::vector<int>(picture.Pixels.begin() + y * 6, picture.Pixels.begin() + y * 6 + 3);
    };
    for (const bool flip : {false, true}) {
        for (const bool align : {false, true}) {
            const unsigned char* data = align ? aligned.data() : tight.data();
            ASSERT_TRUE(RGBToJpegFile(path, data, 2, 32, true, 100, flip, align));
            const std::vector<int> top = at(2);
            EXPECT_NEAR(top[flip ? 2 : 0], 200, 4);
            EXPECT_NEAR(top[flip ? 0 : 2], 0, 4);
            ASSERT_TRUE(RGBToJpegFile(path, data, 2, 32, false, 100, flip, align));
            EXPECT_NEAR(at(2)[0], flip ? 22 : 59, 2);  // 0.114 and 0.299 of 200
            EXPECT_NEAR(at(29)[1], flip ? 59 : 22, 2);
        }
    }
    const std::string former = m_folder.ReadFile("j.jpg");
    EXPECT_FALSE(RGBToJpegFile(path, nullptr, 2, 32, true, 80, false, false));
    EXPECT_FALSE(RGBToJpegFile(path, tight.data(), 0, 32, true, 80, false, false));
    EXPECT_FALSE(RGBToJpegFile(path, tight.data(), 2, 0, true, 80, false, false));
    EXPECT_FALSE(RGBToJpegFile(path, tight.data(), 70000, 1, true, 80, false, false));
    EXPECT_EQ(m_folder.ReadFile("j.jpg"), former);

    // Noise at the best quality is the longest that a picture can get.
    std::mt19937 random(3);
    std::vector<unsigned char> noise(3 * 333 * 77);
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<unsigned char>(random()); });
    ASSERT_TRUE(RGBToJpegFile(path, noise.data(), 333, 77, true, 100, false, false));
    EXPECT_EQ(ReadJpeg(m_folder.ReadFile("j.jpg")).Width, 333);
}

}  // namespace
