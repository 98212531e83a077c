#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "fieldimport/acquisition.h"
#include "fieldimport/acquisitionimport.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "shell/textcodec.h"
#include "tests/store/CProjectTest.h"
#include "tests/support/CFullDisk.h"

namespace {

using Lines = std::vector<std::string>;

constexpr const char* Item =
    R"(<item index="1" name="破裂" code="PL" fullname="破裂" dist="1.2344" len="0.1004"
         Longitude="113.2644350000014" Latitude="-23.1291" type="1" time="0306" level="3" codeid="7"
         itemid="8" gentime="2025-05-06 07:08:09">
      <picfilename2 value="P2.JPG" time="-1.5005"/><picfilename value="P1.JPG" time="12.3456"/>
      <desc>环向裂缝 &amp; it's wide</desc>
    </item>)";

// Everything that a description can hold, elements in an order of their own.
std::string Description(const std::string& items = Item) {
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<cfg>\r\n<mdata name=\"段一\" "
        "gentime=\"2025/01/02 03:04:05\">\r\n";
    for (int i = 18; i > 0; --i) {
        xml += "<osd" + std::to_string(i) + " value=\"值" + std::to_string(i) + "\"/>\r\n";
    }
    return xml + items + "<videofilename value=\"V1.AVI\"/></mdata>\r\n</cfg>";
}

std::string With(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

std::string ItemOf(const std::string& code) {
    return With(Item, "code=\"PL\"", "code=\"" + code + "\"");
}

class Acquisition : public CProjectTest {
protected:
    bool Import(const std::string& xml) {
        Printed.clear();
        return ImportAcquisition(Database, Folder.WriteFile("外业/管段一/a.xml", xml),
                                 [this](const std::string& line) { Printed.push_back(line); });
    }
    // Nothing in the project, no box, and the reason as the last line.
    void ExpectRefused(const std::string& xml, const std::string& line) {
        EXPECT_FALSE(Import(xml)) << line;
        EXPECT_TRUE(!Printed.empty() && Printed.back().starts_with(line))
            << line << " / " << (Printed.empty() ? "no line" : Printed.back());
        EXPECT_EQ(Sections().GetSize(), 0) << line;
        EXPECT_EQ(Records().GetSize(), 0) << line;
    }

    Lines Printed;
};

TEST_F(Acquisition, BecomesASectionWithItsRecords) {
    Folder.WriteFile("外业/管段一/P1.JPG", "first");
    Folder.WriteFile("外业/管段一/P2.JPG", "second");
    const std::string onePicture =
        With(ItemOf("JCJ_JGJZQS"), R"(<picfilename2 value="P2.JPG" time="-1.5005"/>)", "");
    ASSERT_TRUE(Import(Description(std::string(Item) + onePicture)));
    EXPECT_EQ(Printed, Lines{"no element: picfilename2"});

    const CTestingDataArray sections = Sections();
    ASSERT_EQ(sections.GetSize(), 1);
    const _TESTING_DATA& section = sections[0];
    const std::string folder = Folder.Path("外业/管段一") + "\\";
    EXPECT_EQ(section.TestingName, "段一");
    EXPECT_EQ(section.TestingDate, "2025/01/02 03:04:05");
    EXPECT_EQ(section.VideoFileList, folder + "V1.AVI");
    EXPECT_EQ(section.Comment, "");
    const std::array<std::string, 18> values = {
        section.TaskIndex,        section.TestingDirection, section.TaskName,   section.Location,
        section.StartWell,        section.EndWell,          section.PipeType,   section.PipeMaterial,
        section.PipeDiameter,     section.TestingCompany,   section.Tester,     section.DepthStart,
        section.DepthEnd,         section.ManholeDepth,     section.PipeLength, section.LayingTime,
        section.EngineeringUnits, section.DetectionLength};
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(values[i], "值" + std::to_string(i + 1));
    }
    const CRecDataArray records = Records();
    ASSERT_EQ(records.GetSize(), 2);
    const _REC_DATA& record = records[0];
    EXPECT_EQ(record.TestingID, section.ID);
    EXPECT_EQ(record.DefectCode, "PL");
    EXPECT_EQ(record.Comment, "环向裂缝 & it's wide");
    EXPECT_EQ(record.DefectLevel, 3);
    EXPECT_EQ(record.DistanceStart, 1.234F);
    EXPECT_EQ(record.DistanceEnd, 1.335F);  // the sum of the unrounded texts
    EXPECT_EQ(record.DirectionStart, 3);
    EXPECT_EQ(record.DirectionEnd, 6);
    EXPECT_EQ(record.Video, LowerCase(folder + "V1.AVI"));
    EXPECT_EQ(record.GetPicture1(), LowerCase(folder + "P1.JPG"));
    EXPECT_EQ(record.GetPicTime1(), 12.346);
    EXPECT_EQ(record.GetPicture2(), LowerCase(folder + "P2.JPG"));
    EXPECT_EQ(record.GetPicTime2(), -1.501);
    EXPECT_EQ(record.GpsX, 113.264435000001);
    EXPECT_EQ(record.GpsY, -23.1291);
    EXPECT_TRUE(records[1].IsJCJ());
    EXPECT_EQ(records[1].JcjNo, "");
    EXPECT_EQ(records[1].GetPicture2(), "");
    EXPECT_EQ(records[1].GetPicTime2(), -1.0);
    EXPECT_EQ(Folder.ReadFile("word/Template/Images/P1.JPG"), "first");
    EXPECT_EQ(Folder.ReadFile("word/Template/Images/P2.JPG"), "second");

    Folder.Prompts.Expect(2189);  // only the manholes count
    EXPECT_FALSE(Import(With(Description(ItemOf("CK")), "段一", "另一段")));
    EXPECT_EQ(Records().GetSize(), 2);
}

TEST_F(Acquisition, ClockAndDistancesAreReadAsTheUnitsWriteThem) {
    struct Clock {
        const char* Time;
        int Start;
        int End;
    };
    // Characters are bytes of the code page, where a Chinese one has two.
    constexpr Clock clocks[] = {{"0306", 3, 6},  {"123", 12, 3}, {"12", 12, 0}, {"9", 9, 0},
                                {"03061", 3, 6}, {"中08", 0, 8}, {"0中", 0, 0}, {"-109", 255, 9}};
    std::string items;
    for (const Clock& clock : clocks) {
        items += With(Item, "time=\"0306\"", "time=\"" + std::string(clock.Time) + "\"");
    }
    items += With(With(With(Item, "1.2344", "-0.0005"), "0.1004", "x"), "level=\"3\"", "level=\"300\"");
    ASSERT_TRUE(Import(Description(items)));
    const CRecDataArray records = Records();
    ASSERT_EQ(records.GetSize(), 9);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(records[i].DirectionStart, clocks[i].Start) << clocks[i].Time;
        EXPECT_EQ(records[i].DirectionEnd, clocks[i].End) << clocks[i].Time;
    }
    EXPECT_EQ(records[8].DistanceStart, -0.001F);
    EXPECT_EQ(records[8].DistanceEnd, -0.001F);
    EXPECT_EQ(records[8].DefectLevel, 44);
}

TEST_F(Acquisition, WhatMayBeMissingHasItsDefaults) {
    std::string xml = With(Description(""), " gentime=\"2025/01/02 03:04:05\"", "");
    xml = With(xml, "<osd12 value=\"值12\"/>", "");
    xml = With(xml, "value=\"值13\"", "value=\"\"");
    xml = With(xml, "<osd14 value=\"值14\"/>", "");
    EXPECT_TRUE(Import(xml));
    EXPECT_EQ(Printed, (Lines{"no attribute: gentime", "no element: osd12",
                              "no element: osd13, attribute: value", "no element: osd14"}));
    // A date of 7 bytes isn't one, the first long enough one of an item is; "二五年五" has 8.
    const std::string late = With(Item, "2025-05-06 07:08:09", "二五年五");
    const std::string items = With(Item, "2025-05-06 07:08:09", "20250") + late + Item;
    EXPECT_TRUE(Import(With(With(Description(items), "2025/01/02 03:04:05", "二五年5"), "值5\"", "W2\"")));
    // No pictures' files, no text of a description, and a character that the code page lacks.
    std::string bare = With(Item, "环向裂缝 &amp; it's wide", "");
    bare = With(With(bare, " time=\"-1.5005\"", ""), "dist=\"1.2344\"", "dist=\"一\"");
    EXPECT_TRUE(Import(With(With(Description(bare), "段一", "段😀"), "值6\"", "W3\"")));
    EXPECT_EQ(Printed, (Lines{"no element: picfilename2, attribute: time", "no element: desc, text"}));

    const CTestingDataArray sections = Sections();
    ASSERT_EQ(sections.GetSize(), 3);
    EXPECT_EQ(sections[0].TestingDate, "2026/03/14 11:22:33");
    EXPECT_EQ(sections[0].DepthStart, "/");
    EXPECT_EQ(sections[0].DepthEnd, "/");
    EXPECT_EQ(sections[0].ManholeDepth, "");
    EXPECT_EQ(sections[1].TestingDate, "二五年五");
    EXPECT_EQ(sections[2].TestingName, "段?");
    const CRecDataArray records = Records();
    ASSERT_EQ(records.GetSize(), 4);
    EXPECT_EQ(records[3].Comment, "");
    EXPECT_EQ(records[3].DistanceStart, 0.0F);
    EXPECT_EQ(records[3].GetPicTime2(), 0.0);
}

TEST_F(Acquisition, WhatMustNotBeMissingLeavesTheProjectAsItWas) {
    const std::string full = Description();
    ExpectRefused(With(With(full, "<cfg", "<cgf"), "</cfg", "</cgf"), "no cfg");
    ExpectRefused("<cfg><item/></cfg>", "no mdata");
    ExpectRefused(With(full, "name=\"段一\"", "name=\"\""), "no attribute: name");
    ExpectRefused(With(full, "<videofilename", "<videofile"), "no element: videofilename");
    ExpectRefused(With(full, "value=\"V1", "src=\"V1"), "no element: videofilename, attribute: value");
    ExpectRefused(With(full, "\"值5\"", "\"\""), "no element: osd5, attribute: value");
    ExpectRefused(With(full, "<osd11 value=\"值11\"/>", ""), "no element: osd11");
    // The second item of two fails, and the first doesn't come in either.
    const auto second = [](const std::string& from, const std::string& to) {
        return Description(Item + With(Item, from, to));
    };
    for (const char* name : {"index", "name", "code", "fullname", "dist", "len", "Longitude", "Latitude",
                             "type", "time", "level", "codeid", "itemid", "gentime"}) {
        ExpectRefused(second(std::string(" ") + name + "=", " x="), std::string("no attribute: ") + name);
    }
    ExpectRefused(second("<picfilename ", "<pic "), "no element: picfilename");
    ExpectRefused(second(" time=\"12.3456\"", ""), "no element: picfilename, attribute: time");
}

TEST_F(Acquisition, WhatWasRefusedOrTakenAsAnotherValueIsNamed) {
    std::string bent = With(Item, "level=\"3\"", "level=\"300\"");
    bent = With(With(bent, "dist=\"1.2344\"", "dist=\"6,20\""), "time=\"0306\"", "time=\"ab\"");
    const std::string path = Folder.WriteFile("外业/管段一/a.xml", Description(Item + ItemOf("GDZC") + bent));
    ImportNotes notes;
    Folder.Prompts.Expect(2800);
    EXPECT_TRUE(ImportAcquisition(
        Database, path, [](const std::string&) {}, &notes));
    ASSERT_EQ(notes.Refused.size(), 1U);
    EXPECT_EQ(notes.Refused[0], "a.xml, item 2 (GDZC): " + LoadMessage(2800));
    EXPECT_EQ(notes.Converted, (Lines{"a.xml, item 3 (PL): level \"300\" taken as 44",
                                      "a.xml, item 3 (PL): time \"ab\" taken as 0",
                                      "a.xml, item 3 (PL): dist \"6,20\" taken as 6"}));
    // Attributes without end would keep the parser busy for good.
    std::string many = Description();
    std::string attributes;
    for (int n = 0; n < 100'000; ++n) {
        attributes += " a" + std::to_string(n) + "=\"\"";
    }
    many.insert(many.find("<item ") + 5, attributes);
    EXPECT_FALSE(Import(many));
    EXPECT_EQ(Printed.size(), 1U);
}

TEST_F(Acquisition, FilesThatAreNoDescriptionAreRefused) {
    const std::string full = Description();
    ExpectRefused(full.substr(0, full.size() / 2), "Error=XML_ERROR");
    ExpectRefused("", "Error=XML_ERROR_EMPTY_DOCUMENT");
    std::string deep;
    for (int i = 0; i < 100000; ++i) {
        deep += "<a>";
    }
    ExpectRefused(deep, "Error=XML_ELEMENT_DEPTH_EXCEEDED");
    ExpectRefused(GbkFromUtf8(full), "not in UTF-8");
    std::string wide;
    for (const char c : With(full, "段一", "x").substr(0, 60)) {
        wide += {c, '\0'};
    }
    ExpectRefused(wide, "zero bytes in the text");
    ExpectRefused("\xFF\xFE" + wide, "not in UTF-8");
    ExpectRefused(With(full, "值5\"", std::string(5000000, 'x') + "\""),
                  "no element: osd5, attribute: value of at most 65535 bytes");

    const auto sink = [this](const std::string& line) { Printed.push_back(line); };
    const std::string path = Folder.WriteFile("long.xml", full);
    std::filesystem::resize_file(Folder.Host("long.xml"), 100U << 20);
    for (const std::string& name : {path, Folder.Path("missing.xml"), Folder.Path("db")}) {
        Printed.clear();
        EXPECT_FALSE(ImportAcquisition(Database, name, sink));
        EXPECT_EQ(Printed, Lines{"no readable file of at most 16 MB: " + name});
    }
    EXPECT_EQ(Sections().GetSize(), 0);

    CDbRec closed;
    Folder.Prompts.Expect(2185);
    EXPECT_FALSE(ImportAcquisition(closed, path, sink));
}

}  // namespace
