// The pictures as they lie in the program folder.
#include <gtest/gtest.h>

#include <QImage>

#include "tests/support/CTestFolder.h"

namespace {

const QRgb Accent = qRgb(0x1F, 0x6F, 0xB2);

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
            std::string file = "ui/" + name;
            file.insert(file.rfind('.'), scale == 1 ? "" : "@2x");
            QImage image;
            ASSERT_TRUE(image.load(QString::fromStdString(folder.Host(file).string()), "BMP"));
            ASSERT_EQ(image.size(), QSize(size, size) * scale);
            EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
            EXPECT_TRUE(HasColour(image, Accent));
        }
    }
}
