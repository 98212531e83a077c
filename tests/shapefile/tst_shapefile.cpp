#include <gtest/gtest.h>
#include <shapefil.h>

#include <cstdlib>
#include <filesystem>

#include "geo/shapefile/CShapeFile.h"
#include "geo/shapefile/shapeexport.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "tests/store/CProjectTest.h"
#include "tests/support/CFullDisk.h"

namespace fs = std::filesystem;

namespace {

class ShapeFile : public CProjectTest {
protected:
    static CRecDataArray Some(const std::vector<std::tuple<const char*, double, double>>& defects) {
        CRecDataArray records;
        for (const auto& [code, x, y] : defects) {
            _REC_DATA record;
            record.DefectCode = code;
            record.GpsX = x;
            record.GpsY = y;
            records.Add(record);
        }
        return records;
    }
    int Write(const CRecDataArray& records, const std::string& name) {
        CShapeFile file;
        file.AddRecords(records);
        return file.WriteShapeFile(Folder.Path(name));
    }
    // The same by bare calls of the library.
    void WriteBare(const CRecDataArray& records, const std::string& name) {
        const std::string path = Folder.Host(name).string();
        SHPHandle shapes = SHPCreate(path.c_str(), SHPT_MULTIPOINT);
        DBFHandle table = DBFCreate(path.c_str());
        DBFAddField(table, "DefectCode", FTString, 10, 0);
        for (int i = 0; i < records.GetSize(); ++i) {
            SHPObject* shape =
                SHPCreateSimpleObject(SHPT_MULTIPOINT, 1, &records[i].GpsX, &records[i].GpsY, nullptr);
            SHPWriteObject(shapes, -1, shape);
            SHPDestroyObject(shape);
            DBFWriteStringAttribute(table, i, 0, GbkFromUtf8(records[i].DefectCode).c_str());
        }
        SHPClose(shapes);
        DBFClose(table);
    }
    std::string Files(const std::string& stem) {
        std::string all;
        for (const char* extension : {".shp", ".shx", ".dbf"}) {
            all += Folder.ReadFile(stem + extension) + "|";
        }
        return all;
    }

    const CRecDataArray Records = Some({{"PL", 113.25, 23.125},
                                        {"破裂", 0, 0},
                                        {"裂裂裂裂裂裂", -1.5, 1e300},
                                        {"ABCDEFGHIJKL", 113.5, 23.5},
                                        {"", 1, 2}});
};

}  // namespace

TEST_F(ShapeFile, HoldsWhatTheLibraryWouldWriteAndTheCodePage) {
    EXPECT_EQ(Write(Records, "标 段.shp"), 1);
    WriteBare(Records, "bare.shp");
    EXPECT_EQ(Files("标 段"), Files("bare"));
    EXPECT_EQ(Folder.ReadFile("标 段.cpg"), "936");
    EXPECT_EQ(Folder.ReadFile("标 段.shp").size(), 100U + 5 * 64);
    EXPECT_EQ(Write({}, "none.shp"), 1);
    WriteBare({}, "bare.shp");
    EXPECT_EQ(Files("none"), Files("bare"));
    // Names.
    EXPECT_EQ(Write(Records, "标段1.2"), 1);
    EXPECT_TRUE(fs::exists(Folder.Host("标段1.2.shp")) && fs::exists(Folder.Host("标段1.2.dbf")));
    EXPECT_EQ(Write(Records, "X.SHP"), 1);
    EXPECT_TRUE(fs::exists(Folder.Host("X.SHP")) && fs::exists(Folder.Host("X.dbf")));
}

TEST_F(ShapeFile, AFailureTouchesNoOlderSet) {
    // Without an older set, what is complete stays.
    fs::create_directory(Folder.Host("a.dbf"));
    fs::create_directory(Folder.Host("x"));
    Folder.Prompts.Expect(2500);
    EXPECT_EQ(Write(Records, "no folder/b"), 0);
    fs::create_directory(Folder.Host("f.shp"));
    Folder.Prompts.Expect(2500);
    EXPECT_EQ(Write(Records, "f.shp"), 0);

    CRecDataArray many;
    for (int i = 0; i < 5000; ++i) {
        many.Add(Records[0]);
    }
    Folder.Prompts.Expect(2500);
    {
        const CFullDisk full(100000);
        EXPECT_EQ(Write(many, "new.shp"), 0);
    }
    EXPECT_FALSE(fs::exists(Folder.Host("new.shp")));
    // The table is the larger of two files here.
    ASSERT_EQ(Write(Records, "old.shp"), 1);
    const std::string before = Files("old");
    Folder.Prompts.Expect(2500);
    {
        const CFullDisk full(100000);
        EXPECT_EQ(Write(many, "old.shp"), 0);
    }
    EXPECT_EQ(Files("old"), before);
    Folder.Prompts.Expect(2503);
    EXPECT_EQ(Write(Records, "a.shp"), 0);
    EXPECT_FALSE(fs::exists(Folder.Host("a.shp")));
    for (const auto& entry : fs::directory_iterator(Folder.Host(""))) {
        EXPECT_FALSE(entry.path().filename().string().starts_with(".drovane")) << entry.path();
    }
}

TEST_F(ShapeFile, OtherReadersFindTheDefectsOfTheSections) {
    for (const auto& [well, code, x] :
         {std::tuple("A", "PL", 113.5), {"B", "破裂", 114.5}, {"C", "CJ", 115.5}}) {
        _TESTING_DATA section;
        section.StartWell = well;
        ASSERT_TRUE(Database.AddTesting(section));
        _REC_DATA record = Some({{code, x, 23.25}})[0];
        record.TestingID = Database.LastInsertId();
        ASSERT_TRUE(Database.AddRecord(record));
    }
    EXPECT_TRUE(ExportShapes(Database, {3, 2}, Folder.Path("两段.shp")));
    if (std::system("command -v ogrinfo >/dev/null") != 0) {
        GTEST_SKIP() << "no ogrinfo";
    }
    ASSERT_EQ(std::system(("ogrinfo -al '" + Folder.Host("两段.shp").string() + "' > '" +
                           Folder.Host("told.txt").string() + "' 2>&1")
                              .c_str()),
              0);
    const std::string told = Folder.ReadFile("told.txt");
    EXPECT_NE(told.find("Geometry: Multi Point"), std::string::npos) << told;
    EXPECT_NE(told.find("Feature Count: 2"), std::string::npos);
    EXPECT_NE(told.find("DefectCode: String (10.0)"), std::string::npos);
    const std::size_t first = told.find("DefectCode (String) = CJ");
    const std::size_t second = told.find("DefectCode (String) = 破裂");
    EXPECT_LT(first, second);
    EXPECT_NE(second, std::string::npos) << told;
    EXPECT_NE(told.find("115.5 23.25"), std::string::npos);
}
