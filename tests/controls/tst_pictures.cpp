// The pictures as they lie in the program folder.
#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>
#include <cmath>
#include <numbers>

#include "controls/icons.h"
#include "tests/support/CTestFolder.h"

namespace {

const QRgb Accent = qRgb(0x1F, 0x6F, 0xB2);

QImage Load(const CTestFolder& folder, const std::string& name) {
    return QImage(QString::fromStdString(folder.Host("ui/" + name).string()));
}

std::string TwinOf(std::string name) {
    return name.insert(name.rfind('.'), "@2x");
}

bool HasColour(const QImage& image, QRgb colour) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == colour) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

TEST(Pictures, EveryButtonHasItsBitmapWithAlphaAndTheTwinForSmallPixels) {
    const CTestFolder folder;
    std::vector<std::pair<std::string, int>> bitmaps;
    for (const char* name :
         {"set", "about", "exit", "open", "attrib", "shp", "map", "word", "excel", "xml", "gps"}) {
        bitmaps.emplace_back("big/" + std::string(name) + ".bmp", 32);
    }
    for (const char* name : {"new", "del", "attrib", "calc", "snap"}) {
        bitmaps.emplace_back("small/" + std::string(name) + ".bmp", 20);
    }
    for (const auto& [name, size] : bitmaps) {
        for (const int scale : {1, 2}) {
            SCOPED_TRACE(name + " at " + std::to_string(scale));
            const std::string file = scale == 1 ? name : TwinOf(name);
            EXPECT_EQ(folder.ReadFile("ui/" + file).substr(0, 2), "BM");
            const QImage image = Load(folder, file);
            ASSERT_EQ(image.size(), QSize(size, size) * scale);
            EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
            EXPECT_TRUE(HasColour(image, Accent));
        }
    }
}

TEST(Pictures, TheSplashIsAPlainOpaqueBitmap) {
    const CTestFolder folder;
    for (const int scale : {1, 2}) {
        const std::string file = scale == 1 ? "start.dt" : TwinOf("start.dt");
        const std::string bytes = folder.ReadFile("ui/" + file);
        EXPECT_EQ(bytes.substr(0, 2), "BM");
        EXPECT_EQ(bytes.at(28), 24);  // bits a pixel
        const QImage image = Load(folder, file);
        ASSERT_EQ(image.size(), QSize(560, 320) * scale);
        EXPECT_FALSE(image.hasAlphaChannel());
        EXPECT_EQ(image.pixel(10 * scale, 10 * scale), qRgb(255, 255, 255));  // the sky, not the ground
        EXPECT_EQ(image.pixel(252 * scale, 259 * scale), Accent);             // the camera
    }
}

// The program turns the sector by whole hours and draws it on the dial, pixel on pixel.
TEST(Pictures, TheClocksSectorCoversTheHourTwelveOfTheDialOnly) {
    const CTestFolder folder;
    for (const int scale : {1, 2}) {
        const QImage dial = Load(folder, scale == 1 ? "clock0.png" : TwinOf("clock0.png"));
        const QImage sector = Load(folder, scale == 1 ? "clock1.png" : TwinOf("clock1.png"));
        ASSERT_EQ(dial.size(), QSize(160, 160) * scale);
        ASSERT_EQ(sector.size(), dial.size());
        EXPECT_EQ(qAlpha(dial.pixel(0, 0)), 0);
        for (int degrees = -180; degrees < 180; ++degrees) {
            if (std::abs(degrees) == 15) {
                continue;  // the edge itself
            }
            const double angle = degrees * std::numbers::pi / 180;
            const auto x = static_cast<int>((80 + 70 * std::sin(angle)) * scale);
            const auto y = static_cast<int>((80 - 70 * std::cos(angle)) * scale);
            EXPECT_EQ(qAlpha(dial.pixel(x, y)), 255) << degrees;
            const int alpha = qAlpha(sector.pixel(x, y));
            EXPECT_TRUE(std::abs(degrees) < 15 ? alpha > 100 && alpha < 200 : alpha < 100) << degrees;
        }
    }
    EXPECT_EQ(Load(folder, "drovane.png").size(), QSize(256, 256));
}
