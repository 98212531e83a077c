#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "shell/language.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"
#include "tests/shell/processes.h"
#include "tests/support/CFullDisk.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

class Database : public testing::Test {
protected:
    bool Opens(const std::string& path) { return CDbBase().Open(path, CDbPassword); }
    void ExpectRefused(const std::string& path, const char* password = CDbPassword) {
        CDbBase database;
        m_folder.Prompts.Expect(2000);
        EXPECT_FALSE(database.Open(path, password)) << path;
        EXPECT_FALSE(database.IsOpen());
        EXPECT_EQ(m_folder.Prompts.LastText(), LoadMessage(2000) + path);
    }
    std::int32_t Count(CDbBase& database) {
        return database.Execute("select count(*) as n from Testing").GetLong("n");
    }
    void Insert(CDbBase& database, const std::string& name = "x") {
        database.Execute("insert into Testing(TestingName)values(\"" + name + "\")");
    }
    CTestFolder m_folder;
};

TEST_F(Database, IsOpenForOneAlone) {
    const std::string path = m_folder.MakeProject();
    CDbBase other;
    const COtherProcess process([&](char order) {
        m_folder.Prompts.Allow(2000);
        if (order == 'c') {
            other.Close();
        }
        return order == 'c' || other.Open(path, CDbPassword);
    });
    {
        CDbBase database;
        ASSERT_TRUE(database.Open(path, CDbPassword));
        // A second open in this process fails, and takes nothing from the first.
        ExpectRefused(path);
        fs::create_symlink(m_folder.Host("db/p.mdb"), m_folder.Host("db/link.mdb"));
        ExpectRefused(m_folder.Path("db/LINK.mdb"));
        EXPECT_FALSE(process.Do('o'));
        EXPECT_NO_THROW(Insert(database));
        EXPECT_TRUE(database.Open(path, CDbPassword));  // again: closes the first
        EXPECT_FALSE(process.Do('o'));
        database.Close();
        EXPECT_FALSE(database.IsOpen());
        EXPECT_THROW(Count(database), CDbError);
    }
    ASSERT_TRUE(process.Do('o'));
    ExpectRefused(path);
    ASSERT_TRUE(process.Do('c'));
    EXPECT_TRUE(Opens(path));
}

TEST_F(Database, WhatIsNoDatabaseIsRefusedAndStaysAsItIs) {
    const std::string whole = ReadHostFile(m_folder.Host("db/Criterion/GB.mdb"));
    std::mt19937 random(1);
    std::string garbage(20000, '\0');
    for (char& byte : garbage) {
        byte = static_cast<char>(random());
    }
    std::vector<std::string> contents = {"", "x", garbage, "SQLite format 3" + garbage};
    for (const std::size_t size : {1U, 100U, 1023U, 4095U}) {
        contents.push_back(whole.substr(0, size));
    }
    std::string damaged = whole;
    damaged[100] = static_cast<char>(damaged[100] ^ 1);
    contents.push_back(damaged);
    for (const std::string& content : contents) {
        const std::string path = m_folder.WriteFile("db/x.mdb", content);
        ExpectRefused(path);
        EXPECT_TRUE(m_folder.ReadFile("db/x.mdb") == content) << content.size();
    }
    ExpectRefused(m_folder.Path("db/missing.mdb"));
    ExpectRefused(m_folder.Path("db/Criterion"));
    ExpectRefused("");
    const std::string path = m_folder.MakeProject();
    ExpectRefused(path, "wrong");
    ExpectRefused(path, "");
    EXPECT_TRUE(Opens(path));

    // Cut at the end of a page, or damaged behind the first, it may open; what is left must stay.
    for (const int number : {2000, 2002, 2005, 2013, 2017, 2018}) {
        m_folder.Prompts.Allow(number);
    }
    for (std::size_t size = 4096; size <= whole.size(); size += 4096) {
        std::string content = whole.substr(0, size);
        if (size == whole.size()) {
            content[size - 100] = static_cast<char>(content[size - 100] ^ 1);
        }
        const std::string cut = m_folder.WriteFile("db/x.mdb", content);
        CDbRec database;
        if (database.OpenDatabase(cut, CDbPassword)) {
            _PRO_DATA project;
            CTestingDataArray sections;
            (void)database.ReadAttrib(project);
            (void)database.ReadTestings(sections);
            EXPECT_LE(database.CountRecords(-1), 0);
        }
        database.Close();
        EXPECT_TRUE(m_folder.ReadFile("db/x.mdb") == content) << size;
    }
}

TEST_F(Database, WhatAKilledProcessLeftIsRolledBack) {
    const std::string path = m_folder.MakeProject();
    const std::string before = m_folder.ReadFile("db/p.mdb");
    const COtherProcess process([&](char) {
        CDbBase database;
        if (database.Open(path, CDbPassword)) {
            database.Execute("pragma cache_size = 5");  // so that pages go to the file before the end
            const CDbBatch batch(database);
            for (int i = 0; i < 300; ++i) {
                Insert(database, std::string(2000, 'x'));
            }
            raise(SIGKILL);
        }
        return true;
    });
    EXPECT_FALSE(process.Do('x'));
    ASSERT_TRUE(fs::exists(m_folder.Host("db/p.mdb-journal")));
    ASSERT_GT(m_folder.ReadFile("db/p.mdb").size(), before.size());
    {
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(path, CDbPassword));
        EXPECT_EQ(Count(database), 0);
    }
    EXPECT_FALSE(fs::exists(m_folder.Host("db/p.mdb-journal")));
    EXPECT_EQ(m_folder.ReadFile("db/p.mdb").size(), before.size());
}

TEST_F(Database, BatchesKeepWhatWasDoneOnEveryWayOut) {
    const std::string path = m_folder.MakeProject();
    CDbBase database;
    EXPECT_THROW(CDbBatch{database}, CDbError);
    ASSERT_TRUE(database.Open(path, CDbPassword));
    const auto failing = [&] {
        const CDbBatch batch(database);
        Insert(database);
        {
            CDbBatch inner(database);
            Insert(database);
            inner.Commit();
        }
        database.Execute("insert into NoTable values(1)");
    };
    EXPECT_THROW(failing(), CDbError);
    ASSERT_TRUE(database.Open(path, CDbPassword));
    EXPECT_EQ(Count(database), 2);
}

TEST_F(Database, ABatchThatDoesNotFitOnTheDiskLeavesNothing) {
    const std::string path = m_folder.MakeProject();
    CDbBase database;
    ASSERT_TRUE(database.Open(path, CDbPassword));
    Insert(database, "kept");
    std::optional<CFullDisk> full(std::in_place, fs::file_size(m_folder.Host("db/p.mdb")));
    {
        // Given up in its midst: nothing may go on as if there had been no batch.
        CDbBatch batch(database);
        const auto insertMany = [&] {
            for (int i = 0; i < 10000; ++i) {
                Insert(database, std::string(3000, 'x'));
            }
        };
        EXPECT_THROW(insertMany(), CDbError);
        EXPECT_TRUE(batch.IsLost());
        full.reset();
        EXPECT_THROW(Insert(database), CDbError);
        EXPECT_THROW(batch.Commit(), CDbError);
    }
    EXPECT_EQ(Count(database), 1);
    Insert(database, "again");
    ASSERT_TRUE(database.Open(path, CDbPassword));
    EXPECT_EQ(Count(database), 2);
}

}  // namespace
