// Frames taken out of videos of all kinds, checked by the numbers that the frames show.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>

#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "tests/support/CFullDisk.h"
#include "tests/support/CTestFolder.h"
#include "tests/workbench/numberedvideo.h"
#include "tests/workbench/videoformats.h"
#include "workbench/capture/grabframe.h"
#include "workbench/capture/jpegfile.h"
#include "workbench/capture/picturepath.h"

namespace {

namespace fs = std::filesystem;

// 40 in the everyday run. DROVANE_GRABS=200 is for after work on the decoding.
std::size_t GrabCount() {
    const char* text = std::getenv("DROVANE_GRABS");
    return text != nullptr ? static_cast<std::size_t>(ParseInt(text)) : 40;
}

class CaptureFormat : public testing::TestWithParam<VideoFormat> {};

TEST_P(CaptureFormat, EachPositionGivesTheFrameShownThere) {
    const CTestFolder folder;
    const VideoRecipe& recipe = GetParam().Recipe;
    const std::string name = "v" + recipe.Ending;
    ASSERT_TRUE(MakeNumberedVideo(recipe, folder.Host(name)));
    for (const auto& [position, number] : MakePositions(TimesOf(GetParam()), GrabCount())) {
        ASSERT_EQ(TryGrabFrame(folder.Path(name), position, folder.Path("p.jpg")), GrabResult::Done)
            << position;
        const QImage picture = ReadPicture(folder.ReadFile("p.jpg"));
        ASSERT_EQ(picture.size(), QSize(recipe.Width, recipe.Height));
        EXPECT_EQ(ReadNumber(picture), number) << "at " << FormatNumber(position, 6);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, CaptureFormat, testing::ValuesIn(VideoFormats()),
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
        return ReadNumber(ReadPicture(m_folder.ReadFile("p.jpg")));
    }

    CTestFolder m_folder;
};

TEST_F(Capture, TurnedVideosStandUpright) {
    MakeVideo("flat.mp4", std::string(X264) + "-g 12");
    for (const int turn : {90, 180, 270}) {
        ASSERT_TRUE(MakeTurnedVideo(m_folder.Host("flat.mp4"), turn, m_folder.Host("turned.mp4")));
        ASSERT_EQ(Grab("turned.mp4", 0.96), GrabResult::Done);
        const QImage turned = ReadPicture(m_folder.ReadFile("p.jpg"));
        ASSERT_EQ(turned.size(), turn == 180 ? QSize(176, 112) : QSize(112, 176));
        EXPECT_EQ(ReadNumber(turned.transformed(QTransform().rotate(turn))), 24) << turn;
    }
}

TEST_F(Capture, WhatIsNoVideoIsRefusedWithoutATrace) {
    WriteBadVideos(m_folder, "bad/");
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
    for (const auto& [name, options] : StreamableVideos()) {
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
    std::vector<unsigned char> pixels[2];
    for (int y = 0; y < 32; ++y) {
        for (const bool align : {false, true}) {
            for (int x = 0; x < 2; ++x) {
                pixels[align].insert(pixels[align].end(), {static_cast<unsigned char>(y < 16 ? 200 : 0), 0,
                                                           static_cast<unsigned char>(y < 16 ? 0 : 200)});
            }
        }
        pixels[true].insert(pixels[true].end(), 2, 255);
    }
    const std::string path = m_folder.Path("j.jpg");
    const auto top = [&](bool colour, bool flip, bool align) {
        EXPECT_TRUE(RGBToJpegFile(path, pixels[align].data(), 2, 32, colour, 100, flip, align));
        const QImage picture = ReadPicture(m_folder.ReadFile("j.jpg"));
        EXPECT_EQ(picture.size(), QSize(2, 32));
        return picture.pixel(0, 2);
    };
    for (const bool align : {false, true}) {
        EXPECT_NEAR(qRed(top(true, false, align)), 200, 4);
        EXPECT_NEAR(qBlue(top(true, true, align)), 200, 4);
        EXPECT_NEAR(qRed(top(false, false, align)), 59, 2);  // 0.299 of 200, and 0.114
        EXPECT_NEAR(qRed(top(false, true, align)), 22, 2);
    }
    const std::string former = m_folder.ReadFile("j.jpg");
    EXPECT_FALSE(RGBToJpegFile(path, nullptr, 2, 32, true, 80, false, false));
    EXPECT_FALSE(RGBToJpegFile(path, pixels[0].data(), 2, 0, true, 80, false, false));
    EXPECT_FALSE(RGBToJpegFile(path, pixels[0].data(), 70000, 1, true, 80, false, false));
    EXPECT_EQ(m_folder.ReadFile("j.jpg"), former);
}

}  // namespace
