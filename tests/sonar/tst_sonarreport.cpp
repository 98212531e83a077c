#include <gtest/gtest.h>

#include <QImage>
#include <fstream>

#include "reports/sonar/sonarreport.h"
#include "reports/sonarchart/sonarchart.h"
#include "tests/reports/documents.h"
#include "tests/support/CTestFolder.h"

namespace {

class SonarReport : public testing::Test {
protected:
    SonarReport() {
        Data.SiltItems = {
            {{"甲1", "乙1"}, {"甲2", "乙2"}, {"甲3", "乙3"}, {"甲4", "<乙&4>"}, {"甲5", "乙5"}}};
        for (int i = 0; i <= 10; ++i) {
            Data.PipeItems.push_back({0, 0, static_cast<float>(2 + i), 600, i * 60, 0});
        }
        for (int i = 0; i < 5; ++i) {
            Data.Pictures.push_back(
                Folder.WriteFile("p" + std::to_string(i) + ".bmp", MakeBitmap(40 + i, 30, i)));
        }
    }
    bool Write() { return WriteSonarReportTo(Folder.Path("r.docx"), Data, DrawSonarChart).Complete; }
    // As an independent reader finds it: a line a row, cells apart by "|", "*" and a size for a picture.
    std::vector<std::string> Tables() {
        const std::string command = std::string(DROVANE_PYTHON) + " " + DROVANE_TEST_FILES +
                                    "/read_tables.py '" + Folder.Host("r.docx").string() + "' > '" +
                                    Folder.Host("t.txt").string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        std::vector<std::string> lines;
        std::ifstream file(Folder.Host("t.txt"));
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

    CTestFolder Folder;
    SonarData Data;
};

QImage Chart(const std::vector<PipeItem>& items) {
    const std::string bytes = DrawSonarChart(items);
    return QImage::fromData(QByteArray::fromStdString(bytes), "JPEG");
}

bool IsGreen(QRgb pixel) {
    return qGreen(pixel) > qRed(pixel) + 60 && qGreen(pixel) > qBlue(pixel) + 60;
}

bool IsWhite(QRgb pixel) {
    return qGreen(pixel) > 170 && qRed(pixel) > 170 && qBlue(pixel) > 170;
}

int CountPixels(const QImage& image, const QRect& area, bool (*is)(QRgb)) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            count += is(image.pixel(x, y)) ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

TEST_F(SonarReport, FillsTheFourTables) {
    ASSERT_TRUE(Write());
    EXPECT_TRUE(IsValid(Folder.Host("r.docx")));
    const std::vector<std::string> expected = {
        "声纳测量汇总",
        "序号|测量值一|测量值二",
        "1|甲1|乙1",
        "2|甲2|乙2",
        "3|甲3|乙3",
        "4|甲4|<乙&4>",
        "*240x192|*240x192",
        "*240x192|*240x192",
        "*240x192|",
        "管段淤积信息",
        "管段名称|检测日期|测量值一|测量值二|备注",
        "||甲5|乙5|",
        "*400x200",
    };
    EXPECT_EQ(Tables(), expected);

    Data.Pictures.clear();
    ASSERT_TRUE(Write());
    EXPECT_EQ(Tables()[6], "|");
    EXPECT_EQ(Tables().size(), expected.size() - 2);
}

TEST_F(SonarReport, AMissingPictureEndsTheFillingAndKeepsWhatIsFilled) {
    Data.Pictures[3] = Folder.Path("gone.jpg");
    Folder.Prompts.Expect(3250);
    EXPECT_FALSE(Write());
    EXPECT_NE(Folder.Prompts.LastText().find("gone.jpg"), std::string::npos);
    const std::vector<std::string> tables = Tables();
    ASSERT_EQ(tables.size(), 13U);
    EXPECT_EQ(tables[5], "4|甲4|<乙&4>");
    EXPECT_EQ(tables[7], "*240x192|");
    EXPECT_EQ(tables[11], "||||");

    std::filesystem::remove(Folder.Host("r.docx"));
    Folder.WriteFile("sn.dot", "no template");
    Folder.Prompts.Expect(2388);
    EXPECT_FALSE(Write());
    EXPECT_FALSE(std::filesystem::exists(Folder.Host("r.docx")));
}

TEST_F(SonarReport, TheCurveRunsThroughThePoints) {
    const QImage chart = Chart(Data.PipeItems);
    ASSERT_EQ(chart.size(), QSize(920, 520));
    // From (80, 440) to (880, 40), one step each 80 by 40 pixels.
    for (const int step : {1, 3, 5, 7, 9}) {
        const QPoint at(80 + step * 80, 440 - step * 40);
        EXPECT_GT(CountPixels(chart, {at.x() - 5, at.y() - 4, 11, 9}, IsGreen), 3) << step;
    }
    EXPECT_EQ(CountPixels(chart, {90, 50, 180, 80}, IsGreen), 0);
    // The grid, and the captions where they belong: the turned one is higher than wide.
    for (const int i : {0, 1, 2, 3, 4}) {
        EXPECT_TRUE(IsWhite(chart.pixel(80 + 200 * i, 90))) << i;
        EXPECT_TRUE(IsWhite(chart.pixel(130, 40 + 100 * i))) << i;
    }
    EXPECT_GT(CountPixels(chart, {440, 10, 120, 25}, IsWhite), 100);
    EXPECT_GT(CountPixels(chart, {460, 480, 70, 25}, IsWhite), 50);
    EXPECT_GT(CountPixels(chart, {10, 170, 20, 110}, IsWhite), 100);
    EXPECT_EQ(CountPixels(chart, {10, 290, 18, 40}, IsWhite), 0);
}

TEST_F(SonarReport, WhatHasNoPlaceInTheChartIsntDrawn) {
    const QRect all(0, 0, 920, 520);
    const auto drawn = [&](const std::vector<PipeItem>& items) {
        const QImage chart = Chart(items);
        EXPECT_EQ(chart.size(), all.size());
        EXPECT_TRUE(IsWhite(chart.pixel(280, 90)));
        return CountPixels(chart, all, IsGreen);
    };
    EXPECT_EQ(drawn({}), 0);
    EXPECT_EQ(drawn({Data.PipeItems[0]}), 0);
    std::vector<PipeItem> items = Data.PipeItems;
    items.back().PipeWidth = 0;
    EXPECT_EQ(drawn(items), 0);
    items.back().PipeWidth = 1;
    items[5].SiltDepth = 2147483647;
    (void)drawn(items);
    // Within 0.1 m serial numbers run along the pipe.
    items = {{0, 0, 5.0F, 600, 300, 0}, {0, 0, 5.05F, 600, 300, 0}, {0, 0, 5.1F, 600, 0, 0}};
    const QImage chart = Chart(items);
    EXPECT_GT(CountPixels(chart, {90, 238, 380, 5}, IsGreen) + CountPixels(chart, {90, 238, 380, 5}, IsWhite),
              300);
    EXPECT_GT(CountPixels(chart, {660, 330, 40, 40}, IsGreen), 5);
}
