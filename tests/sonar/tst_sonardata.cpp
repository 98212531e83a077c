#include <gtest/gtest.h>

#include <filesystem>

#include "fieldimport/acquisitionimport.h"
#include "fieldimport/sonarimport.h"
#include "shell/language.h"
#include "shell/textcodec.h"
#include "store/catalogue.h"
#include "store/sonar.h"
#include "tests/store/CProjectTest.h"

namespace fs = std::filesystem;

namespace {

using Pair = std::pair<std::string, std::string>;

std::string Acquisition(const std::string& well) {
    std::string xml = "<cfg><mdata name=\"段一\" gentime=\"2025/01/02 03:04:05\">";
    for (int i = 1; i <= 11; ++i) {
        xml += "<osd" + std::to_string(i) + " value=\"" + (i == 5 ? well : "w") + "\"/>";
    }
    return xml +
           "<videofilename value=\"v.avi\"/><item index=\"1\" name=\"n\" code=\"PL\" fullname=\"n\" "
           "dist=\"1\" "
           "len=\"0\" Longitude=\"113\" Latitude=\"23\" type=\"1\" time=\"12\" level=\"3\" codeid=\"7\" "
           "itemid=\"8\" "
           "gentime=\"2025-05-06 07:08:09\"><picfilename value=\"p.jpg\" time=\"1\"/></item></mdata></cfg>";
}

class Sonar : public CProjectTest {
protected:
    SonarData Read(const std::string& xml) {
        SonarData data;
        data.cfginfo = "of before";
        ReadSonarXml(Folder.WriteFile("sonar.xml", xml), data);
        return data;
    }
    bool Import(const std::string& name, const std::string& xml) {
        Notes = {};
        return ImportAcquisition(
            Database, Folder.WriteFile(name, xml), [](const std::string&) {}, &Notes);
    }

    ImportNotes Notes;
};

}  // namespace

TEST_F(Sonar, EachElementGoesByItsName) {
    const SonarData data = Read(GbkFromUtf8(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><cfg><cfginfo value=\"淤泥深度\"/><SiltItem1 "
        "value=\"前\"/>"
        "<SiltItem1 value=\"淤泥\"/><SiltItem2 value=\"2\"/><SiltItem5 value=\"5\"/><SiltItem8 value=\"8\"/>"
        "<SiltItem9 value=\"9\"/><SiltItem10 value=\"10\"/><SiltItem11 value=\"11\"/><SiltItem12 "
        "value=\"12\"/>"
        "<SiltItem-3 value=\"x\"/><SiltItem99999999999 value=\"x\"/>"
        "<PipeItem1 CurRadius=\"300\" CurSiltDepth=\"-7\" Meter=\"1.25\" PipeWidth=\"600\" "
        "SiltDepth=\"99999999999\" "
        "SiltDepthPer=\"0.1\"/><aPipeItemSiltItem3 value=\"no\"/><SiltItem3/><other value=\"y\"/>"
        "<group><SiltItem4 value=\"inside\"/></group><videofilename value=\"视频.avi\"/>"
        "<dixmlfilename value=\"a.xml\"/></cfg>"));
    EXPECT_EQ(data.cfginfo, "淤泥深度");
    EXPECT_EQ(data.videofilename, "视频.avi");
    EXPECT_EQ(data.dixmlfilename, "a.xml");
    EXPECT_EQ(data.SiltItems,
              (std::array<Pair, 5>{{{"淤泥", "2"}, {"", ""}, {"5", ""}, {"", "8"}, {"10", "11"}}}));
    ASSERT_EQ(data.PipeItems.size(), 2U);
    const PipeItem& item = data.PipeItems[0];
    EXPECT_EQ(item.CurRadius, 300);
    EXPECT_EQ(item.CurSiltDepth, -7);
    EXPECT_EQ(item.Meter, 1.25F);
    EXPECT_EQ(item.PipeWidth, 600);
    EXPECT_EQ(item.SiltDepth, 2147483647);
    EXPECT_EQ(item.SiltDepthPer, 0.1F);
    EXPECT_EQ(data.PipeItems[1].Meter, 0.0F);

    EXPECT_EQ(Read("<cfg><SiltItem0 value=\"a\"/><SiltItemX value=\"b\"/></cfg>").SiltItems[0],
              Pair("", "b"));
    // The device's own declaration isn't believed.
    EXPECT_EQ(Read("<?xml version=\"1.0\" encoding=\"UTF-8\"?><cfg><cfginfo value=\"中\"/></cfg>").cfginfo,
              Utf8FromGbk("中"));
}

TEST_F(Sonar, WhatIsNoDescriptionGivesNothing) {
    std::string deep = "<cfg>";
    for (int i = 0; i < 300000; ++i) {
        deep += "<a>";
    }
    std::string hidden = "<cfg>";
    for (int i = 0; i < 100000; ++i) {
        hidden += "<a><?xml version=\"></a>\"?><b c=\"</b>\"><!--</a>-->";
    }
    for (const std::string& xml :
         {std::string("<cfg><cfginfo value=\"x\"/>"), std::string("<other><cfginfo value=\"x\"/></other>"),
          std::string("no xml"), std::string(), std::string("<cfg><cfginfo value=\"x\"/></cfg>\0<", 33), deep,
          hidden}) {
        const SonarData data = Read(xml);
        EXPECT_EQ(data.cfginfo, "") << xml.substr(0, 100);
    }
    SonarData data;
    ReadSonarXml(Folder.Path("none.xml"), data);
    EXPECT_TRUE(data.PipeItems.empty());
}

TEST_F(Sonar, AnImportMakesTheSectionAndKeepsTheDescription) {
    const std::string xml =
        GbkFromUtf8("<cfg>\r\n<dixmlfilename value=\"段 1.xml\"/><cfginfo value=\"说\"/></cfg>");
    SonarData data;
    EXPECT_FALSE(LoadSonarData(Database, data));
    Folder.WriteFile("外 业/段 1.xml", Acquisition("A1"));
    ASSERT_TRUE(Import("外 业/sonar.xml", xml));
    EXPECT_TRUE(Notes.Refused.empty());
    ASSERT_EQ(Sections().GetSize(), 1);
    EXPECT_EQ(Sections()[0].StartWell, "A1");
    EXPECT_EQ(Records().GetSize(), 0);
    EXPECT_EQ(Folder.ReadFile("db/p_sn/sn.xml"), xml);
    EXPECT_EQ(Folder.ReadFile("db/p_sn/test_id.ini"), "[test_id]\r\ntest_id=1\r\n");

    // The pictures come from the section's records, first and second of each in their order.
    for (const auto& [first, second] : {Pair("a.jpg", "b.jpg"), Pair("", ""), Pair("c.jpg", "")}) {
        _REC_DATA record;
        record.TestingID = 1;
        record.AddPicture(first, 1);
        record.AddPicture(second, 2);
        ASSERT_TRUE(Database.AddRecord(record));
    }
    ASSERT_TRUE(LoadSonarData(Database, data));
    EXPECT_EQ(data.cfginfo, "说");
    EXPECT_EQ(data.Pictures, (std::vector<std::string>{"a.jpg", "b.jpg", "c.jpg"}));

    // A second run takes the place of the first, whatever else lay there. Its description is one itself.
    Folder.WriteFile("db/p_sn/more/x", "x");
    const std::string both =
        "<cfg>\n<dixmlfilename value=\"\"/>" + Acquisition("B1").substr(std::string("<cfg>").size());
    ASSERT_TRUE(Import("both.xml", both));
    EXPECT_EQ(Sections()[1].StartWell, "B1");
    EXPECT_EQ(Folder.ReadFile("db/p_sn/sn.xml"), both);
    EXPECT_FALSE(fs::exists(Folder.Host("db/p_sn/more")));
    ASSERT_TRUE(LoadSonarData(Database, data));
    EXPECT_TRUE(data.Pictures.empty());

    // Without the profile it belongs to section 0, without the folder to nobody; a deleted section leaves it.
    fs::remove(Folder.Host("db/p_sn/test_id.ini"));
    ASSERT_TRUE(Database.DeleteTesting(Sections()[1]));
    EXPECT_TRUE(LoadSonarData(Database, data));
    Database.Close();
    EXPECT_FALSE(LoadSonarData(Database, data));
}

TEST_F(Sonar, WhatCantBeKeptIsToldAndTheSectionStays) {
    const std::string xml = "<cfg>\n<dixmlfilename value=\"a.xml\"/></cfg>";
    Folder.WriteFile("a.xml", Acquisition("A1"));
    fs::create_directory(Folder.Host("elsewhere"));
    Folder.WriteFile("elsewhere/sn.xml", "mine");
    fs::create_directory_symlink(Folder.Host("elsewhere"), Folder.Host("db/p_sn"));
    ASSERT_TRUE(Import("sonar.xml", xml));
    EXPECT_EQ(Folder.ReadFile("elsewhere/sn.xml"), "mine");
    ASSERT_EQ(Notes.Refused.size(), 1U);
    EXPECT_NE(Notes.Refused[0].find("sonar.xml: " + LoadMessage(3083)), std::string::npos);

    Database.Close();
    fs::copy(Folder.Host("db/Criterion/GB.mdb"), Folder.Host("db/Q.MDB"));
    ASSERT_TRUE(Database.OpenDatabase(Folder.Path("db/Q.MDB"), CDbPassword));
    ASSERT_TRUE(Import("sonar.xml", xml));
    EXPECT_EQ(Notes.Refused.size(), 1U);
    SonarData data;
    EXPECT_FALSE(LoadSonarData(Database, data));
    EXPECT_EQ(Sections().GetSize(), 1);

    // A description that isn't there makes nothing.
    EXPECT_FALSE(Import("sonar.xml", "<cfg><dixmlfilename value=\"none.xml\"/></cfg>"));
    EXPECT_EQ(Sections().GetSize(), 1);
}
