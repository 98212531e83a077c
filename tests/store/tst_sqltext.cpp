#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "store/CDbError.h"
#include "store/sqltext.h"
#include "tests/store/CProjectTest.h"

namespace {

using Cursor = CProjectTest;

TEST_F(Cursor, CodesAreValuesWhateverTheyHold) {
    std::vector<std::string> texts;
    for (const char* code : {"P\"L", "P\" or \"1\"=\"1", "PL\"; delete from DefectLevel where \"\"=\"",
                             "PL\" --", "P'L; -- /*", "\""}) {
        EXPECT_TRUE(Database.LoadDefectLevels(code, &texts, nullptr)) << code;
        EXPECT_TRUE(texts.empty()) << code;
        _REC_DATA record;
        record.TestingID = 1;
        record.DefectCode = code;
        record.DefectLevel = 1;
        ASSERT_TRUE(Database.AddRecord(record)) << code;
    }
    for (const _REC_DATA& record : Records(1, true)) {
        EXPECT_EQ(record.Evaluate, 0.0F) << record.DefectCode;
    }
    EXPECT_EQ(Records(1)[1].DefectCode, "P\" or \"1\"=\"1");
    EXPECT_TRUE(Database.LoadDefectLevels("PL", &texts, nullptr));
    EXPECT_EQ(texts.size(), 4U);
    // A row that can't be read is named.
    Database.Execute("update Record set TestingID = 1, DefectLevel = NULL where ID = 2");
    Folder.Prompts.Expect(2017);
    CRecDataArray records;
    EXPECT_FALSE(Database.ReadRecords(1, records, true));
    EXPECT_NE(Folder.Prompts.LastText().find("P\" or"), std::string::npos) << Folder.Prompts.LastText();
    for (const char* statement : {"", " ", ";", "no statement", "select * from NoTable", "select \"x"}) {
        EXPECT_THROW(Database.Execute(statement), CDbError) << statement;
    }
}

TEST_F(Cursor, ValuesBecomeWhatIsAskedFor) {
    CDbCursor row = Database.Execute(
        "select NULL as none, ' 12 ' as text, 3000000000 as big, 'NaN' as nan, '-Infinity' as minus, 2.5 as "
        "even,"
        "cast('1' as blob) as bytes, 3.5 as odd, '1e39' as wide, '12x' as word, '' as empty, 45000.5 as "
        "number,"
        "-2147483648 as least, 2147483647.6 as most, '2026-01-02 03:04:05.678' as date, '2026-01-02' as "
        "short,"
        "'2026-02-30 00:00:00' as day, '2026-01-02 24:00:00' as hour");
    EXPECT_EQ(row.GetLong("TEXT"), 12);
    EXPECT_EQ(row.GetFloat("Text"), 12.0F);
    EXPECT_EQ(row.GetText("text"), " 12 ");
    EXPECT_EQ(row.GetText("big"), "3000000000");
    EXPECT_EQ(row.GetDouble("big"), 3e9);
    EXPECT_EQ(row.GetLong("least"), -2147483647 - 1);
    EXPECT_EQ(row.GetLong("even"), 2);
    EXPECT_EQ(row.GetLong("odd"), 4);
    EXPECT_TRUE(std::isnan(row.GetDouble("nan")));
    EXPECT_TRUE(std::isnan(row.GetFloat("nan")));
    EXPECT_EQ(row.GetFloat("minus"), -std::numeric_limits<float>::infinity());
    EXPECT_EQ(row.GetDouble("wide"), 1e39);
    for (const char* column :
         {"none", "big", "nan", "minus", "bytes", "wide", "word", "empty", "most", "missing"}) {
        EXPECT_THROW(row.GetLong(column), CDbError) << column;
    }
    for (const char* column : {"none", "bytes", "wide", "word", "empty", "missing"}) {
        EXPECT_THROW(row.GetFloat(column), CDbError) << column;
    }
    for (const char* column : {"none", "bytes", "missing"}) {
        EXPECT_THROW(row.GetText(column), CDbError) << column;
    }
    EXPECT_EQ(row.GetDate("date"), "2026-01-02 03:04:05");
    for (const char* column : {"none", "bytes", "word", "empty", "day", "hour", "short", "number"}) {
        EXPECT_EQ(row.GetDate(column), "1899-12-30 00:00:00") << column;
    }
    EXPECT_THROW(row.GetDate("missing"), CDbError);
    row.MoveNext();
    EXPECT_TRUE(row.IsEof());
}

}  // namespace
