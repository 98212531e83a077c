// A test on an open project with a history, which is empty and of the national standard.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "history/CJournal.h"
#include "store/CDbRec.h"
#include "store/projectdocument.h"
#include "tests/support/CTestFolder.h"

class CHistoryTest : public testing::Test {
protected:
    CHistoryTest() { Open(); }

    void Open() {
        Database.Close();
        ASSERT_TRUE(Database.OpenDatabase(Path, CDbPassword));
    }
    static std::string Dump(CDbRec& database) {
        std::string text;
        EXPECT_TRUE(DumpProject(database, [&](std::string_view part) { text += part; }));
        return text;
    }
    std::string Dump() { return Dump(Database); }
    std::int32_t AddSection(const std::string& well) {
        _TESTING_DATA section;
        section.StartWell = well;
        section.EndWell = well + "b";
        EXPECT_TRUE(Database.AddTesting(section));
        return Database.LastInsertId();
    }
    // `picture` is a path text, or empty.
    _REC_DATA AddRecord(std::int32_t section, const std::string& picture = {}) {
        _REC_DATA record;
        record.TestingID = section;
        record.DefectCode = "PL";
        record.DefectType = "JG";
        record.DistanceStart = 12.4F;
        if (!picture.empty()) {
            record.AddPicture(picture, 1.5);
        }
        EXPECT_TRUE(Database.AddRecord(record));
        record.ID = Database.LastInsertId();
        return record;
    }

    CTestFolder Folder;
    CJournals Journals;
    CChangeWatchesScope Scope{Journals};
    std::string Path = Folder.MakeProject();
    CDbRec Database;
};
