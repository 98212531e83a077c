#include <gtest/gtest.h>

#include "geo/mapview/mapcontent.h"
#include "geo/mapview/mapdetails.h"
#include "geo/mapview/mapsettings.h"
#include "geo/mapview/maptexts.h"
#include "geo/staticmap/chinashift.h"
#include "shell/textcodec.h"
#include "tests/store/CProjectTest.h"

namespace {

using Lines = std::vector<std::string>;

class MapTexts : public CProjectTest {
protected:
    void AddSection(const std::string& name, double x, double y) {
        _TESTING_DATA section;
        section.TestingName = name;
        section.StartWell = name + "1";
        section.EndWell = name + "2";
        section.PipeLength = "30";
        section.PipeDiameter = "300";
        section.GpsXStart = x;
        section.GpsYStart = y;
        section.GpsXEnd = x + 0.25;
        ASSERT_TRUE(Database.AddTesting(section));
    }
    void AddRecord(std::int32_t section, const std::string& code, double x) {
        _REC_DATA record;
        record.TestingID = section;
        record.DefectCode = code;
        record.DefectType = Database.GetDefectType(code);
        record.DefectLevel = 4;
        record.DistanceStart = 1.005F;
        record.DistanceEnd = 20;
        record.GpsX = x;
        record.Comment = "a\r\nb";
        ASSERT_TRUE(Database.AddRecord(record));
    }
};

}  // namespace

TEST_F(MapTexts, CallsComeInTheOrderOfListAndSections) {
    AddSection("一", 113.123456789012, -23.5);
    AddSection("二", 0, 0);
    AddSection("三", 1e7, 5);
    AddRecord(3, "PL", 5);
    AddRecord(1, "XX", 113.5);
    AddRecord(2, "PL", 7);
    AddRecord(99, "PL", 8);
    MapContent content;
    ASSERT_TRUE(ReadMapContent(Database, -1, {1, 3}, content));
    EXPECT_EQ(MapCalls(content),
              (Lines{"AddMarker(5,0)", "AddMarker(113.5,0)",
                     "Line(113.123456789012,-23.5,113.373456789012,0)", "Line(10000000,5,10000000.25,0)"}));
    const std::string bubble = BubbleOf(Database, content, 0);
    std::size_t at = 0;
    for (const char* part : {"<table", "width='197' height='157' src='file:///'", "测段名称", "三",
                             "起始距离", "1.00米", "结束距离", "20.00米", "缺陷代码", "PL", "缺陷名称",
                             "破裂", "colspan='2'", "备注", "a\\nb", "</table>"}) {
        at = bubble.find(part, at);
        ASSERT_NE(at, std::string::npos) << part << " in " << bubble;
    }
    EXPECT_EQ(bubble.find('"'), std::string::npos);
    EXPECT_EQ(ShowInfoWndCall(content.Records[1], "<x>"), "ShowInfoWnd(113.5,0,\"<x>\")");
    EXPECT_NE(BubbleOf(Database, content, 1).find(">XX<"), std::string::npos);

    // A grade 4 break makes the structure of the third section as bad as can be; the other one's code is
    // unknown.
    const std::string details =
        DetailsCall(Database, "CJJ 181-2012 城镇排水管道检测与评估技术规程", content, {});
    EXPECT_NE(details.find("\"sr\":0,\"f\":\"\",\"fr\":0,\"m\":1}"), std::string::npos) << details;
    EXPECT_NE(details.find("\"sr\":4"), std::string::npos) << details;
    EXPECT_NE(DetailsCall(Database, "another", content, {}).find("\"sr\":-1"), std::string::npos);
}

TEST_F(MapTexts, TextsAndPicturesAreEncoded) {
    EXPECT_EQ(EncodeForPage("a<b>&\"'`\\\r\nc\rd\t中\xFF"),
              "a&#60;b&#62;&#38;&#34;&#39;&#96;&#92;\\nc\\nd 中?");
    for (const char* path : {"\\job\\图 片'%41.jpg", "D:\\a#b?c\"<>&.jpg", "\\\\server\\x"}) {
        const std::string address = PictureAddress(path);
        ASSERT_TRUE(address.starts_with("drovane://picture/"));
        EXPECT_EQ(PictureOfAddress(address.substr(std::string("drovane://picture").size())), path);
    }
    EXPECT_EQ(PictureOfAddress("/a%4"), "");
    EXPECT_EQ(PictureOfAddress("/a%zz"), "");
}

TEST_F(MapTexts, TilesComeFromTheSettingsOfTheOffice) {
    Folder.WriteFile("map.ini",
                     GbkFromUtf8("[tiles]\nurl=ftp://x/{z}\nattribution=办公室\nmbtiles=/a/b.mbtiles\n"
                                 "max_zoom=99\nsystem=bd-09\n"));
    MapTiles tiles = ReadMapTiles();
    EXPECT_EQ(tiles.Address + tiles.Attribution + tiles.File + tiles.System, "办公室\\a\\b.mbtilesBD-09");
    EXPECT_EQ(tiles.DeepestZoom, 22);
    Folder.WriteFile("map.ini", "[tiles]\nurl=https://x/{z}/{x}/{y}.png\nsystem=other\n");
    tiles = ReadMapTiles();
    EXPECT_EQ(tiles.Address + tiles.System, "https://x/{z}/{x}/{y}.pngWGS-84");
}

TEST(ChinaShift, TurnsPositionsWithinTheCountry) {
    // A place in Beijing in the three systems, as published with the formulas.
    const auto [gx, gy] = ShiftedPosition(116.397428, 39.90923, "GCJ-02");
    EXPECT_NEAR(gx, 116.403671, 0.00001);
    EXPECT_NEAR(gy, 39.910633, 0.00001);
    const auto [bx, by] = ShiftedPosition(116.397428, 39.90923, "BD-09");
    EXPECT_NEAR(bx, 116.410035, 0.0001);
    EXPECT_NEAR(by, 39.916949, 0.0001);
    EXPECT_EQ(ShiftedPosition(2.35, 48.85, "GCJ-02"), std::pair(2.35, 48.85));
    EXPECT_EQ(ShiftedPosition(116.4, 39.9, "WGS-84"), std::pair(116.4, 39.9));
}
