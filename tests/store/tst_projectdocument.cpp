#include <gtest/gtest.h>

#include <limits>
#include <regex>
#include <string>

#include "store/projectdocument.h"
#include "tests/store/CProjectTest.h"

namespace {

class Document : public CProjectTest {
protected:
    std::string Dump(CDbRec& database) {
        std::string json;
        EXPECT_TRUE(DumpProject(database, [&json](std::string_view text) { json += text; }));
        return json;
    }
    // Without what is given anew.
    static std::string Lasting(const std::string& json) {
        return std::regex_replace(
            json, std::regex(R"re("(ID|TestingID|TestingOrder|CreateTime)": ("[^"]*"|-?\d+))re"), "$1");
    }
};

TEST_F(Document, ComesBackAsItWas) {
    _TESTING_DATA section;
    section.StartWell = "W'1\\\"管😀";
    section.GpsXStart = 121.123456789012;
    section.GpsYEnd = std::numeric_limits<double>::quiet_NaN();
    section.DistanceEnd = 12.345F;
    section.VideoFileList = "D:/V.AVI*E:\\b";
    section.Comment = "line\r\nline\x01";
    for (const char* name : {"a", "b", "c"}) {
        section.TestingName = name;
        ASSERT_TRUE(Database.AddTesting(section));
    }
    ASSERT_TRUE(Database.SetTestingOrder(1, 9));
    for (const int owner : {2, 1, 2, 77, 77, 88}) {
        _REC_DATA record;
        record.TestingID = owner;
        record.DefectCode = owner == 88 ? "GDZC" : "JCJ_JGJZQS";
        record.DefectType = Database.GetDefectType(record.DefectCode);
        record.DefectLevel = 255;
        record.GpsX = -std::numeric_limits<double>::infinity();
        record.JcjNo = "no";
        record.JcjType = -3;
        record.AddPicture("d:\\one.jpg", 1.5);
        if (owner == 2) {
            record.AddPicture("d:\\two.jpg", std::numeric_limits<double>::quiet_NaN());
        }
        ASSERT_TRUE(Database.AddRecord(record));
    }
    const std::string json = Dump(Database);

    CDbRec copy;
    ASSERT_TRUE(copy.OpenDatabase(Folder.MakeProject("copy.mdb"), CDbPassword));
    const LoadResult result = LoadProject(copy, json);
    EXPECT_TRUE(result.Done);
    EXPECT_EQ(result.SectionsAdded, 3);
    EXPECT_EQ(result.RecordsAdded, 6);
    EXPECT_TRUE(result.Refused.empty());
    EXPECT_EQ(Lasting(Dump(copy)), Lasting(json));
}

TEST_F(Document, FaultsAreNamedBeforeAnythingIsWritten) {
    struct Case {
        const char* Json;
        const char* Place;
    };
    constexpr Case cases[] = {
        {"[]", "the document"},
        {R"({"sections": [{}, {"Name": "x"}]})", "sections 2: unknown field \"Name\""},
        {R"({"sections": [{"TestingName": "a\u0000b"}]})", "sections 1, TestingName"},
        {R"({"sections": [{"DistanceEnd": 1e39}]})", "sections 1, DistanceEnd"},
        {R"({"sections": [{"records": [{}, {"DefectLevel": 256}]}]})", "sections 1, records 2, DefectLevel"},
        {R"({"sections": [{"records": [{"JcjType": 18446744073709551615}]}]})",
         "sections 1, records 1, JcjType"},
        {R"({"recordsWithoutSection": [{"Pictures": [{}, {"Path": ""}]}]})",
         "recordsWithoutSection 1, Pictures 2: unknown field \"Path\""},
        {R"({"sections": [{}], "attributes": {"GpsX": true}})", "attributes, GpsX"},
    };
    for (const Case& c : cases) {
        try {
            (void)LoadProject(Database, c.Json);
            ADD_FAILURE() << c.Json;
        } catch (const std::runtime_error& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(c.Place)) << error.what();
        }
    }
    EXPECT_THROW(LoadProject(Database, "{\"sections\": [{\"TestingName\": \"\xFF\"}]}"), std::runtime_error);
    EXPECT_EQ(Sections().GetSize(), 0);
    EXPECT_EQ(Database.CountRecords(-1), 0);
}

}  // namespace
