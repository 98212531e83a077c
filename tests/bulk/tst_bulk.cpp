// Finding rows, and changing many at once.
#include <gtest/gtest.h>

#include "bulk/CQueryRows.h"
#include "bulk/edits.h"
#include "history/CJournal.h"
#include "history/restorepoints.h"
#include "history/steps.h"
#include "store/CDbRec.h"
#include "store/projectdocument.h"
#include "tests/support/CTestFolder.h"

namespace {

using Ids = std::vector<std::int32_t>;

class Bulk : public testing::Test {
protected:
    Bulk() {
        EXPECT_TRUE(Database.OpenDatabase(Folder.MakeProject(), CDbPassword));
        AddSection("W1", "W2", "陆听禾", "400", Folder.WriteFile("job/a.avi", "x"));
        AddSection("W2", "W3", "章溯川", "1000", Folder.Path("job/gone.avi"));
        AddSection("W3", "w4 x", "Lu", "DN400", "");
        AddRecord(1, "PL", 3, 12.4F, "裂缝", true);
        AddRecord(1, "CK", 1, 20.0F, "own words", false);
        AddRecord(2, "PL", 1, 5.0F, "", true);
        AddRecord(2, "CK", 1, 0.0F, "", false);
        AddRecord(2, "JCJ_ZC", 1, 0.0F, "", true);
        Database.Execute("update Record set DefectCode = 'GDZC' where ID = 4");
    }

    void AddSection(const char* start, const char* end, const char* tester, const char* diameter,
                    const std::string& video) {
        _TESTING_DATA section;
        section.TestingName = "段";
        section.StartWell = start;
        section.EndWell = end;
        section.Tester = tester;
        section.PipeDiameter = diameter;
        section.PipeLength = "30.0";
        section.TestingDate = "2026/03/01 08:00:00";
        section.VideoFileList = video;
        EXPECT_TRUE(Database.AddTesting(section));
    }
    void AddRecord(int section, const char* code, int grade, float distance, const char* comment,
                   bool picture) {
        _REC_DATA record;
        record.TestingID = section;
        record.DefectCode = code;
        record.DefectLevel = static_cast<std::uint8_t>(grade);
        record.DistanceStart = record.DistanceEnd = distance;
        record.DirectionStart = 3;
        record.Comment = comment;
        if (picture) {
            record.AddPicture(Folder.Path("job/p.jpg"), 1.0);
        }
        EXPECT_TRUE(Database.AddRecord(record));
    }
    std::string Dump() {
        std::string text;
        EXPECT_TRUE(DumpProject(Database, [&](std::string_view part) { text += part; }));
        return text;
    }

    CTestFolder Folder;
    CJournals Journals;
    CChangeWatchesScope Scope{Journals};
    CDbRec Database;
};

TEST_F(Bulk, FindsWhatIsAskedFor) {
    CQueryRows rows;
    ASSERT_TRUE(rows.Read(Database));
    int asked = 0;
    rows.AskFindings = [&asked] {
        ++asked;
        return CQueryRows::Findings{{1, 2}, {3}};
    };
    struct Case {
        const char* Text;
        Ids Sections;
        Ids Records;
    };
    for (const Case& c : {
             Case{"", {1, 2, 3}, {1, 2, 3, 4, 5}},
             {"grade>=3 code:PL", {1}, {1}},
             {"GRADE>=3 CODE:pl", {1}, {1}},
             {"code:P", {1, 2}, {1, 3}},
             {"code=P", {}, {}},
             {"grade!=1", {1}, {1}},
             // No single record is both.
             {"grade>=3 code:CK", {}, {}},
             {"distance>=12.4", {1}, {1, 2}},
             {"distance<=12.4 distance>5", {1}, {1}},
             {"diameter>400", {2}, {3, 4, 5}},
             {"diameter=400.0", {1}, {1, 2}},
             {"diameter=dn400", {3}, {}},
             {"date>=2026/03", {1, 2, 3}, {1, 2, 3, 4, 5}},
             {"well=w2", {1, 2}, {1, 2, 3, 4, 5}},
             {"\"w4 x\"", {3}, {}},
             {"well:\"4 x\"", {3}, {}},
             {"检测员:陆", {1}, {1, 2}},
             {"Tester:lu", {3}, {}},
             {"own", {1}, {2}},
             {"no video", {2, 3}, {3, 4, 5}},
             {"no picture", {1}, {2}},
             {"no records", {3}, {}},
             {"records>=3", {2}, {3, 4, 5}},
             {"-no records -code:CK", {2}, {1, 3, 4, 5}},
             {"-code:PL", {3}, {2, 4, 5}},
             {"finding", {1, 2}, {3}},
             {"finding code:PL", {2}, {3}},
             {"comment=", {2}, {3, 4, 5}},
             // Still being typed.
             {"grade>= code:CK", {1}, {2}},
             {"colour=red well=w2", {1, 2}, {1, 2, 3, 4, 5}},
         }) {
        const CQueryRows::Hits hits = rows.Find(ParseQuery(c.Text));
        EXPECT_EQ(hits.Sections, c.Sections) << c.Text;
        EXPECT_EQ(hits.Records, c.Records) << c.Text;
    }
    EXPECT_EQ(asked, 1) << "it takes long";
    EXPECT_EQ(ParseQuery("colour=red grade>= x").Unclear,
              (std::vector<std::string>{"colour=red", "grade>="}));
    EXPECT_FALSE(ParseQuery("no video").IsOfRecords());
    EXPECT_TRUE(ParseQuery("no picture").IsOfRecords());
}

TEST_F(Bulk, ChangesManySectionsInOneStep) {
    const std::string before = Dump();
    CQueryRows rows;
    ASSERT_TRUE(rows.Read(Database));
    std::vector<const _TESTING_DATA*> sections;
    for (const _TESTING_DATA& section : rows.Sections()) {
        sections.push_back(&section);
    }
    // What the form refuses is refused, whatever else is wrong with the sections.
    for (const FieldChange& change : {FieldChange{"PipeLength", "long"},
                                      {"PipeDiameter", "DN"},
                                      {"TestingName", ""},
                                      {"StartWell", " "},
                                      {"TestingDate", "yesterday"},
                                      {"GpsXStart", "200"}}) {
        EXPECT_FALSE(PlanSectionEdits(sections, {change}).Refused.empty()) << change.Column;
    }
    const SectionPlan plan = PlanSectionEdits(
        sections, {{"Tester", "陆听禾"}, {"PipeLength", "42"}, {"TestingDate", "2026-04-05 06:07:08"}});
    ASSERT_EQ(plan.Refused, "");
    ASSERT_EQ(plan.Edits.size(), 3U);
    EXPECT_EQ(plan.Edits[0].Fields.size(), 2U) << "the first has that tester";
    EXPECT_EQ(plan.Edits[1].Fields[0].Before, "章溯川");
    EXPECT_EQ(Dump(), before) << "nothing is changed before it is wanted";
    ASSERT_TRUE(ApplyEdits(Database, plan.Edits));
    ASSERT_TRUE(rows.Read(Database));
    for (const _TESTING_DATA& section : rows.Sections()) {
        EXPECT_EQ(section.Tester, "陆听禾");
        EXPECT_EQ(section.PipeLength, "42.0");
        EXPECT_EQ(section.DistanceEnd, 42.0F) << "as the form does";
        EXPECT_EQ(section.TestingDate, "2026/04/05 06:07:08");
    }
    EXPECT_EQ(rows.Sections()[2].PipeDiameter, "DN400");
    const std::vector<RestorePoint> points = ListRestorePoints(Database.Path());
    EXPECT_EQ(std::count_if(points.begin(), points.end(),
                            [](const RestorePoint& point) { return point.Reason == PointBulkEdit; }),
              1);
    EXPECT_EQ(UndoSteps(Database).Result, StepResult::Outcome::Done);
    EXPECT_EQ(Dump(), before);
}

TEST_F(Bulk, RecordsKeepTheirOwnWordsWithANewGrade) {
    std::vector<std::string> texts;
    ASSERT_TRUE(Database.LoadDefectLevels("PL", &texts, nullptr));
    Database.Execute("update Record set Comment = '" + texts.at(2) + "' where ID = 1");
    const std::string before = Dump();
    CQueryRows rows;
    ASSERT_TRUE(rows.Read(Database));
    std::vector<const _REC_DATA*> records;
    for (const std::int32_t id : {1, 2, 3, 4, 5}) {
        records.push_back(rows.FindRecord(id));
    }
    const RecordEdits edits =
        PlanRecordEdits(Database, records, {{"DefectLevel", "2"}, {"DirectionEnd", "0"}});
    EXPECT_EQ(edits[0].Changed.Comment, texts.at(1));
    EXPECT_EQ(edits[1].Changed.Comment, "own words");
    EXPECT_FALSE(edits[3].Refused.empty()) << "nothing is wrong there";
    EXPECT_FALSE(edits[4].Refused.empty()) << "a manhole";
    EXPECT_FALSE(PlanRecordEdits(Database, {records[0]}, {{"DefectLevel", "9"}})[0].Refused.empty());
    EXPECT_FALSE(PlanRecordEdits(Database, {records[0]}, {{"DirectionStart", "0"}})[0].Refused.empty());
    ASSERT_TRUE(ApplyEdits(Database, edits));
    ASSERT_TRUE(rows.Read(Database));
    EXPECT_EQ(rows.FindRecord(1)->DefectLevel, 2);
    EXPECT_EQ(rows.FindRecord(4)->DefectLevel, 1);
    EXPECT_EQ(UndoSteps(Database).Result, StepResult::Outcome::Done);
    EXPECT_EQ(Dump(), before);
}

}  // namespace
