#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/paths.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "store/records/fields.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

// A value of its own in each stored field.
template <class Record>
Record Filled(std::span<const FieldOf<Record>> fields) {
    Record record;
    int number = 1;
    for (const auto& field : fields) {
        std::visit(
            [&](auto member) {
                using Value = std::remove_reference_t<decltype(record.*member)>;
                if constexpr (std::is_same_v<Value, std::string>) {
                    record.*member = "it's \"" + std::string(field.Name) + "\" 管/Ａ;--";
                } else {
                    record.*member = static_cast<Value>(number);
                }
            },
            field.Member);
        ++number;
    }
    return record;
}

template <class Record>
void ExpectEqual(const Record& a, const Record& b, std::span<const FieldOf<Record>> fields,
                 const std::vector<std::string>& but) {
    for (const auto& field : fields) {
        if (std::find(but.begin(), but.end(), field.Name) == but.end()) {
            std::visit([&](auto member) { EXPECT_EQ(a.*member, b.*member) << field.Name; }, field.Member);
        }
    }
}

class Project : public testing::Test {
protected:
    Project() { EXPECT_TRUE(Db.OpenDatabase(Folder.MakeProject(), CDbPassword)); }

    _REC_DATA Record(const std::string& code, std::int32_t section = 1) const {
        _REC_DATA record;
        record.TestingID = section;
        record.DefectCode = code;
        record.DefectType = Db.GetDefectType(code);
        return record;
    }
    static _TESTING_DATA Section(std::int32_t id) {
        _TESTING_DATA section;
        section.ID = id;
        return section;
    }
    CRecDataArray Records(std::int32_t section = -1, bool withEvaluate = false) {
        CRecDataArray records;
        EXPECT_TRUE(Db.ReadRecords(section, records, withEvaluate));
        return records;
    }
    CTestingDataArray Sections() {
        CTestingDataArray sections;
        EXPECT_TRUE(Db.ReadTestings(sections));
        return sections;
    }
    void ExpectRefused(int message, const _REC_DATA& record) {
        Folder.Prompts.Expect(message);
        EXPECT_FALSE(Db.AddRecord(record));
    }

    CTestFolder Folder;
    CDbRec Db;
};

TEST_F(Project, AttributesAreOneRow) {
    _PRO_DATA in = Filled(ProjectFields());
    in.GpsX = 121.1234567890126;
    EXPECT_TRUE(Db.WriteAttrib(in, false));
    _PRO_DATA out;
    EXPECT_TRUE(Db.ReadAttrib(out));
    ExpectEqual(out, in, ProjectFields(), {"CriterionName", "GpsX", "CreateTime"});
    EXPECT_EQ(out.GpsX, 121.123456789013);
    EXPECT_EQ(out.CriterionName, "CJJ 181-2012 城镇排水管道检测与评估技术规程");
    EXPECT_EQ(out.CreateTime, "1899-12-30 00:00:00");
    EXPECT_TRUE(Db.WriteAttrib(in, true));
    EXPECT_TRUE(Db.ReadAttrib(out));
    EXPECT_EQ(out.CreateTime, "2026-03-14 09:26:53");

    Db.Execute("update Attrib set Location = NULL");
    Folder.Prompts.Expect(2005);
    EXPECT_FALSE(Db.ReadAttrib(out));
    Db.Execute("delete from Attrib");
    out.Comment = "stays";
    EXPECT_TRUE(Db.ReadAttrib(out));
    EXPECT_EQ(out.Comment, "stays");
}

TEST_F(Project, SectionsAreStoredWithAllTheirFields) {
    const _TESTING_DATA in = Filled(TestingFields());
    ASSERT_TRUE(Db.AddTesting(in));
    _TESTING_DATA out = Sections()[0];
    ExpectEqual(out, in, TestingFields(), {"ID", "TestingOrder", "CreateTime"});
    EXPECT_EQ(out.ID, 1);
    EXPECT_EQ(out.TestingOrder, 1);
    EXPECT_EQ(out.CreateTime, "2026-03-14 09:26:53");

    Folder.Clock.Local += std::chrono::hours(1);
    _TESTING_DATA change;
    change.ID = 1;
    change.TestingOrder = 9;
    change.DistanceEnd = 12.3456F;
    change.GpsXEnd = -0.1234567890126;
    change.VideoFileList = "D:\\Video/V1.AVI*E:\\x";
    ASSERT_TRUE(Db.UpdateTesting(change));
    out = Sections()[0];
    ExpectEqual(out, change, TestingFields(), {"TestingOrder", "CreateTime", "DistanceEnd", "GpsXEnd"});
    EXPECT_EQ(out.DistanceEnd, 12.346F);
    EXPECT_EQ(out.GpsXEnd, -0.123456789013);
    EXPECT_EQ(out.TestingOrder, 1);
    EXPECT_EQ(out.CreateTime, "2026-03-14 09:26:53");
}

TEST_F(Project, NewSectionsComeBehindTheFirstRow) {
    const auto add = [&](const char* name) {
        _TESTING_DATA section;
        section.TestingName = name;
        EXPECT_TRUE(Db.AddTesting(section));
    };
    const auto names = [&] {
        std::string text;
        for (const _TESTING_DATA& section : Sections()) {
            text += section.TestingName + std::to_string(section.TestingOrder) + " ";
        }
        return text;
    };
    add("a");
    add("b");
    add("c");
    EXPECT_EQ(names(), "a1 b2 c2 ");
    EXPECT_TRUE(Db.SetTestingOrder(1, 7));
    add("d");
    EXPECT_EQ(names(), "b2 c2 a7 d8 ");
    EXPECT_TRUE(Db.DeleteTesting(Sections()[2]));
    add("e");
    EXPECT_EQ(names(), "b2 c2 e3 d8 ");
    EXPECT_EQ(Sections()[2].ID, 5);  // IDs aren't given twice
    EXPECT_TRUE(Db.SetTestingOrder(2, 2147483647));
    add("f");  // beyond the last number, but no crash
    EXPECT_EQ(Sections().GetSize(), 5);
}

TEST_F(Project, SectionsAreFoundByTheirManholesWithoutCase) {
    _TESTING_DATA section;
    section.StartWell = "ÄW1管Ｂ";
    section.EndWell = "o'x";
    for (const char* name : {"first", "second"}) {
        section.TestingName = name;
        ASSERT_TRUE(Db.AddTesting(section));
    }
    _TESTING_DATA found;
    EXPECT_TRUE(Db.FindTestingByWells("äw1管ｂ", "O'X", &found));
    EXPECT_EQ(found.TestingName, "first");
    EXPECT_FALSE(Db.FindTestingByWells("o'x", "äw1管ｂ", &found));
    Db.Execute("drop table Testing");
    EXPECT_THROW(Db.FindTestingByWells("a", "b"), CDbError);
}

TEST_F(Project, RecordsAreStoredWithAllTheirFields) {
    _REC_DATA in = Filled(RecordFields());
    in.DefectCode = "jcj_jgjzqs";
    in.DefectType = "JCJ";
    in.DistanceStart = 1.2345F;
    in.Video = "D:\\Video/V1.AVI";
    in.AddPicture(Folder.WriteFile("Job/P1.JPG", "one"), 12.3456);
    in.AddPicture("D:\\Video/It's.JPG", -1.0);
    in.AddPicture("third.jpg", 3.0);
    in.AddPicture("", 3.0);
    ASSERT_EQ(in.Pictures.GetSize(), 3);
    ASSERT_TRUE(Db.AddRecord(in));
    fs::remove_all(Folder.Host("word"));
    const _REC_DATA out = Records(in.TestingID)[0];
    ExpectEqual(out, in, RecordFields(), {"ID", "DistanceStart", "Video"});
    EXPECT_EQ(out.DistanceStart, 1.235F);
    EXPECT_EQ(out.Video, "d:\\video\\v1.avi");
    EXPECT_EQ(out.DefectType, "JCJ");
    ASSERT_EQ(out.Pictures.GetSize(), 2);
    EXPECT_EQ(GetFileName(out.GetPicture1()), "p1.jpg");
    EXPECT_EQ(out.GetPicTime1(), 12.346);
    EXPECT_EQ(out.GetPicture2(), "d:\\video\\it's.jpg");
    EXPECT_EQ(out.GetPicTime2(), -1.0);
    EXPECT_EQ(Folder.ReadFile("word/Template/Images/p1.jpg"), "one");  // by the read

    _REC_DATA change = Record("gdzc");
    change.ID = 1;
    change.Video = "other";
    change.JcjNo = "of a manhole";
    ASSERT_TRUE(Db.UpdateRecord(change));  // the rule of AddRecord isn't asked
    const _REC_DATA updated = Records()[0];
    EXPECT_EQ(updated.Video, "d:\\video\\v1.avi");
    EXPECT_EQ(updated.TestingID, in.TestingID);
    EXPECT_TRUE(updated.IsPipeNormal());
    EXPECT_EQ(updated.JcjNo, "");  // not read for pipes
    EXPECT_EQ(updated.Pictures.GetSize(), 0);
    EXPECT_EQ(updated.GetPicture1(), "");
    EXPECT_EQ(updated.GetPicTime1(), -1.0);
    EXPECT_TRUE(Db.DeleteRecord(1));
    EXPECT_EQ(Db.CountRecords(-1), 0);
}

TEST_F(Project, RowsOfOtherProgramsAreReadAsFarAsTheyGo) {
    for (const int section : {1, 1, 2}) {
        ASSERT_TRUE(Db.AddRecord(Record("PL", section)));
    }
    EXPECT_EQ(Db.CountRecords(1), 2);
    EXPECT_EQ(Db.CountRecords(3), 0);
    EXPECT_EQ(Db.CountRecords(-1), 3);
    Db.Execute(
        "update Record set DefectLevel = 300, DirectionStart = -1, PicTimeInVideo1 = NULL, Picture1 = \"a\", "
        "Picture2 = \"b\", GpsX = \"NaN\", JcjType = NULL where ID = 1");
    Db.Execute(
        "update Record set DefectLevel = 2, DefectCode = \"pl\", Picture2 = NULL, Picture1 = \"c\" where ID "
        "= 2");
    Db.Execute("update Record set DefectCode = \"unknown\", DefectLevel = 1 where ID = 3");
    const CRecDataArray records = Records(-1, true);
    ASSERT_EQ(records.GetSize(), 3);
    EXPECT_EQ(records[0].DefectLevel, 44);
    EXPECT_EQ(records[0].DirectionStart, 255);
    EXPECT_EQ(records[0].Pictures.GetSize(), 0);
    EXPECT_NE(records[0].GpsX, records[0].GpsX);
    EXPECT_EQ(records[0].Evaluate, 0.0F);
    EXPECT_EQ(records[1].Pictures.GetSize(), 1);
    EXPECT_EQ(records[1].Evaluate, 2.0F);
    EXPECT_EQ(records[2].DefectType, "");
    EXPECT_FALSE(records[2].IsPipeNormal());

    Db.Execute("update Record set Comment = NULL where ID = 2");
    CRecDataArray out;
    Folder.Prompts.Expect(2017);
    EXPECT_FALSE(Db.ReadRecords(-1, out, false));
    EXPECT_EQ(out[0].ID, 1);  // what was read until then
}

TEST_F(Project, ASectionIsNormalOrHasDefects) {
    const auto check = [&](std::int32_t section) {
        EXPECT_TRUE(Db.AddRecord(Record("gdzc", section)));
        ExpectRefused(2800, Record("GDZC", section));
        ExpectRefused(2801, Record("PL", section));
        ExpectRefused(2801, Record("unknown", section));
        EXPECT_TRUE(Db.DeleteRecord(Db.LastInsertId()));
        EXPECT_TRUE(Db.AddRecord(Record("PL", section)));
        ExpectRefused(2800, Record("GDZC", section));
        EXPECT_TRUE(Db.AddRecord(Record("unknown", section)));
        // Only a filled group makes the code what it is, and a stored one is judged by the criterion.
        _REC_DATA untyped = Record("GDZC", section);
        untyped.DefectType = "";
        EXPECT_TRUE(Db.AddRecord(untyped));
        ExpectRefused(2801, Record("PL", section));
        EXPECT_TRUE(Db.AddRecord(Record("PL", section + 1)));
        EXPECT_TRUE(Db.DeleteTesting(Section(section)));
        EXPECT_TRUE(Db.AddRecord(Record("GDZC", section)));
        _REC_DATA edited = Record("PL", section);
        edited.ID = Db.LastInsertId();
        EXPECT_TRUE(Db.UpdateRecord(edited));
        EXPECT_TRUE(Db.AddRecord(Record("PL", section)));
    };
    check(1);
    const auto outside = Db.CountRecords(-1);
    {
        CDbBatch batch(Db);
        check(3);
        // The whole project, for a record without a section.
        ExpectRefused(2800, Record("GDZC", -1));
        EXPECT_TRUE(Db.AddRecord(Record("GDZC", 9)));
        ExpectRefused(2801, Record("PL", -1));
        batch.Commit();
    }
    EXPECT_EQ(Db.CountRecords(-1), 2 * outside + 1);
    CDbBatch next(Db);
    Db.Execute("delete from Record");
    EXPECT_TRUE(Db.AddRecord(Record("GDZC", 3)));  // what the last batch knew is forgotten
}

TEST_F(Project, DeletingASectionTakesItsRecordsAlong) {
    ASSERT_TRUE(Db.AddTesting({}));
    ASSERT_TRUE(Db.AddTesting({}));
    ASSERT_TRUE(Db.AddRecord(Record("PL", 1)));
    ASSERT_TRUE(Db.AddRecord(Record("PL", 2)));
    fs::current_path("/");
    EXPECT_TRUE(Db.DeleteTesting(Section(1)));
    EXPECT_TRUE(fs::equivalent(fs::current_path(), Folder.Host("")));
    ASSERT_EQ(Sections().GetSize(), 1);
    EXPECT_EQ(Records()[0].TestingID, 2);
    EXPECT_EQ(Db.CountRecords(-1), 1);
    // The records go although the section can't.
    Db.Execute("drop table Testing");
    Folder.Prompts.Expect(2010);
    EXPECT_FALSE(Db.DeleteTesting(Section(2)));
    EXPECT_EQ(Db.CountRecords(-1), 0);
}

TEST_F(Project, RecordsArePlacedBetweenTheManholes) {
    _TESTING_DATA section;
    section.GpsXStart = 121.0;
    section.GpsYStart = section.GpsYEnd = 31.0;
    section.GpsXEnd = 121.001;
    ASSERT_TRUE(Db.AddTesting(section));
    _REC_DATA record = Record("PL");
    record.DistanceStart = 50.0F;
    record.Comment = "stays";
    ASSERT_TRUE(Db.AddRecord(record));
    ASSERT_TRUE(Db.AddRecord(Record("PL", 2)));
    EXPECT_TRUE(Db.RecalcRecordGps(1));
    EXPECT_EQ(Records(1)[0].GpsX, 121.000524608934);
    EXPECT_EQ(Records(1)[0].GpsY, 31.0);
    EXPECT_EQ(Records(1)[0].Comment, "stays");
    EXPECT_EQ(Records(2)[0].GpsX, 0.0);
    Folder.Prompts.Expect(2019);
    EXPECT_FALSE(Db.RecalcRecordGps(2));
    Db.Execute("update Testing set GpsXEnd = NULL");
    Folder.Prompts.Expect(2020);
    EXPECT_FALSE(Db.RecalcRecordGps(1));
}

}  // namespace
