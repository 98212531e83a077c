#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "shell/paths.h"
#include "store/records/fields.h"
#include "tests/store/CProjectTest.h"

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

class Project : public CProjectTest {
protected:
    _REC_DATA Record(const std::string& code, std::int32_t section = 1) const {
        _REC_DATA record;
        record.TestingID = section;
        record.DefectCode = code;
        record.DefectType = Database.GetDefectType(code);
        return record;
    }
    static _TESTING_DATA Section(std::int32_t id) {
        _TESTING_DATA section;
        section.ID = id;
        return section;
    }
    void ExpectRefused(int message, const _REC_DATA& record) {
        Folder.Prompts.Expect(message);
        EXPECT_FALSE(Database.AddRecord(record));
    }
};

TEST_F(Project, AttributesAreOneRow) {
    _PRO_DATA in = Filled(ProjectFields());
    in.GpsX = 121.1234567890126;
    EXPECT_TRUE(Database.WriteAttrib(in, false));
    _PRO_DATA out;
    EXPECT_TRUE(Database.ReadAttrib(out));
    ExpectEqual(out, in, ProjectFields(), {"CriterionName", "GpsX", "CreateTime"});
    EXPECT_EQ(out.GpsX, 121.123456789013);
    EXPECT_EQ(out.CriterionName, "CJJ 181-2012 城镇排水管道检测与评估技术规程");
    EXPECT_EQ(out.CreateTime, "1899-12-30 00:00:00");
    EXPECT_TRUE(Database.WriteAttrib(in, true));
    EXPECT_TRUE(Database.ReadAttrib(out));
    EXPECT_EQ(out.CreateTime, "2026-03-14 09:26:53");

    Database.Execute("update Attrib set Location = NULL");
    Folder.Prompts.Expect(2005);
    EXPECT_FALSE(Database.ReadAttrib(out));
    Database.Execute("delete from Attrib");
    out.Comment = "stays";
    EXPECT_TRUE(Database.ReadAttrib(out));
    EXPECT_EQ(out.Comment, "stays");
}

TEST_F(Project, SectionsAreStoredWithAllTheirFields) {
    const _TESTING_DATA in = Filled(TestingFields());
    ASSERT_TRUE(Database.AddTesting(in));
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
    ASSERT_TRUE(Database.UpdateTesting(change));
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
        EXPECT_TRUE(Database.AddTesting(section));
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
    EXPECT_TRUE(Database.SetTestingOrder(1, 7));
    add("d");
    EXPECT_EQ(names(), "b2 c2 a7 d8 ");
    EXPECT_TRUE(Database.DeleteTesting(Sections()[2]));
    add("e");
    EXPECT_EQ(names(), "b2 c2 e3 d8 ");
    EXPECT_EQ(Sections()[2].ID, 5);  // IDs aren't given twice
    EXPECT_TRUE(Database.SetTestingOrder(2, 2147483647));
    add("f");  // beyond the last number, but no crash
    EXPECT_EQ(Sections().GetSize(), 5);
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
    ASSERT_TRUE(Database.AddRecord(in));
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
    ASSERT_TRUE(Database.UpdateRecord(change));  // the rule of AddRecord isn't asked
    const _REC_DATA updated = Records()[0];
    EXPECT_EQ(updated.Video, "d:\\video\\v1.avi");
    EXPECT_EQ(updated.TestingID, in.TestingID);
    EXPECT_TRUE(updated.IsPipeNormal());
    EXPECT_EQ(updated.JcjNo, "");  // not read for pipes
    EXPECT_EQ(updated.Pictures.GetSize(), 0);
    EXPECT_EQ(updated.GetPicture1(), "");
    EXPECT_EQ(updated.GetPicTime1(), -1.0);
    EXPECT_TRUE(Database.DeleteRecord(1));
    EXPECT_EQ(Database.CountRecords(-1), 0);
}

TEST_F(Project, RowsOfOtherProgramsAreReadAsFarAsTheyGo) {
    for (const int section : {1, 1, 2}) {
        ASSERT_TRUE(Database.AddRecord(Record("PL", section)));
    }
    Database.Execute(
        "update Record set DefectLevel = 300, DirectionStart = -1, PicTimeInVideo1 = NULL, Picture1 = \"a\", "
        "Picture2 = \"b\", GpsX = \"NaN\", JcjType = NULL where ID = 1");
    Database.Execute(
        "update Record set DefectLevel = 2, DefectCode = \"pl\", Picture2 = NULL, Picture1 = \"c\" where ID "
        "= 2");
    Database.Execute("update Record set DefectCode = \"unknown\", DefectLevel = 1 where ID = 3");
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

    Database.Execute("update Record set Comment = NULL where ID = 2");
    CRecDataArray out;
    Folder.Prompts.Expect(2017);
    EXPECT_FALSE(Database.ReadRecords(-1, out, false));
    EXPECT_EQ(out[0].ID, 1);  // what was read until then
}

TEST_F(Project, ASectionIsNormalOrHasDefects) {
    const auto check = [&](std::int32_t section) {
        EXPECT_TRUE(Database.AddRecord(Record("gdzc", section)));
        ExpectRefused(2800, Record("GDZC", section));
        ExpectRefused(2801, Record("PL", section));
        ExpectRefused(2801, Record("unknown", section));
        EXPECT_TRUE(Database.DeleteRecord(Database.LastInsertId()));
        EXPECT_TRUE(Database.AddRecord(Record("PL", section)));
        ExpectRefused(2800, Record("GDZC", section));
        EXPECT_TRUE(Database.AddRecord(Record("unknown", section)));
        // Only a filled group makes the code what it is, and a stored one is judged by the criterion.
        _REC_DATA untyped = Record("GDZC", section);
        untyped.DefectType = "";
        EXPECT_TRUE(Database.AddRecord(untyped));
        ExpectRefused(2801, Record("PL", section));
        EXPECT_TRUE(Database.AddRecord(Record("PL", section + 1)));
        EXPECT_TRUE(Database.DeleteTesting(Section(section)));
        EXPECT_TRUE(Database.AddRecord(Record("GDZC", section)));
        _REC_DATA edited = Record("PL", section);
        edited.ID = Database.LastInsertId();
        EXPECT_TRUE(Database.UpdateRecord(edited));
        EXPECT_TRUE(Database.AddRecord(Record("PL", section)));
    };
    check(1);
    const auto outside = Database.CountRecords(-1);
    {
        CDbBatch batch(Database);
        check(3);
        // The whole project, for a record without a section.
        ExpectRefused(2800, Record("GDZC", -1));
        EXPECT_TRUE(Database.AddRecord(Record("GDZC", 9)));
        ExpectRefused(2801, Record("PL", -1));
        batch.Commit();
    }
    EXPECT_EQ(Database.CountRecords(-1), 2 * outside + 1);
    CDbBatch next(Database);
    Database.Execute("delete from Record");
    EXPECT_TRUE(Database.AddRecord(Record("GDZC", 3)));  // what the last batch knew is forgotten
}

// Moved, replaced or removed by another program: what is changed then would be in no project.
TEST_F(Project, WhatIsOpenIsSavedWhenItsFileHasGone) {
    ASSERT_TRUE(Database.AddTesting({}));
    EXPECT_FALSE(Database.FileGone());
    fs::rename(Folder.Host("db/p.mdb"), Folder.Host("db/moved.mdb"));
    Folder.WriteFile("db/p.mdb", "another");
    EXPECT_TRUE(Database.FileGone());
    Folder.Prompts.Expect(2007);
    EXPECT_FALSE(Database.AddTesting({}));
    EXPECT_EQ(Sections().GetSize(), 1) << "reading goes on";
    Database.SaveCopy(Folder.Path("db/p.mdb"));
    Database.Close();
    ASSERT_TRUE(Database.OpenDatabase(Folder.Path("db/p.mdb"), CDbPassword));
    EXPECT_EQ(Sections().GetSize(), 1);
    EXPECT_TRUE(Database.AddTesting({}));
}

TEST_F(Project, DeletingASectionTakesItsRecordsAlong) {
    ASSERT_TRUE(Database.AddTesting({}));
    ASSERT_TRUE(Database.AddTesting({}));
    ASSERT_TRUE(Database.AddRecord(Record("PL", 1)));
    ASSERT_TRUE(Database.AddRecord(Record("PL", 2)));
    fs::current_path("/");
    EXPECT_TRUE(Database.DeleteTesting(Section(1)));
    EXPECT_TRUE(fs::equivalent(fs::current_path(), Folder.Host("")));
    ASSERT_EQ(Sections().GetSize(), 1);
    EXPECT_EQ(Records()[0].TestingID, 2);
    EXPECT_EQ(Database.CountRecords(-1), 1);
    // The records go although the section can't.
    Database.Execute("drop table Testing");
    Folder.Prompts.Expect(2010);
    EXPECT_FALSE(Database.DeleteTesting(Section(2)));
    EXPECT_EQ(Database.CountRecords(-1), 0);
}

TEST_F(Project, RecordsArePlacedBetweenTheManholes) {
    _TESTING_DATA section;
    section.GpsXStart = 121.0;
    section.GpsYStart = section.GpsYEnd = 31.0;
    section.GpsXEnd = 121.001;
    ASSERT_TRUE(Database.AddTesting(section));
    _REC_DATA record = Record("PL");
    record.DistanceStart = 50.0F;
    ASSERT_TRUE(Database.AddRecord(record));
    ASSERT_TRUE(Database.AddRecord(Record("PL", 2)));
    EXPECT_TRUE(Database.RecalcRecordGps(1));
    EXPECT_EQ(Records(1)[0].GpsX, 121.000524608934);
    EXPECT_EQ(Records(2)[0].GpsX, 0.0);
    Folder.Prompts.Expect(2019);
    EXPECT_FALSE(Database.RecalcRecordGps(2));
}

}  // namespace
