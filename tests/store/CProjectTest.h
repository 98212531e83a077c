// A test on an open project, which is empty and of the national standard.
#pragma once

#include <gtest/gtest.h>

#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"

class CProjectTest : public testing::Test {
protected:
    CProjectTest() { EXPECT_TRUE(Database.OpenDatabase(Folder.MakeProject(), CDbPassword)); }

    CTestingDataArray Sections() {
        CTestingDataArray sections;
        EXPECT_TRUE(Database.ReadTestings(sections));
        return sections;
    }
    CRecDataArray Records(std::int32_t section = -1, bool withEvaluate = false) {
        CRecDataArray records;
        EXPECT_TRUE(Database.ReadRecords(section, records, withEvaluate));
        return records;
    }

    CTestFolder Folder;
    CDbRec Database;
};
