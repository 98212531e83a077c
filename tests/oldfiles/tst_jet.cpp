// Files of the older engine: converted, refused, listed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "oldfiles/CJetFiles.h"
#include "oldfiles/jetconversion.h"
#include "oldfiles/jetlisting.h"
#include "shell/CProgress.h"
#include "shell/CUnixFile.h"
#include "shell/language.h"
#include "shell/paths.h"
#include "store/CDbRec.h"
#include "store/catalogue.h"
#include "tests/oldfiles/jetcontent.h"
#include "tests/shell/processes.h"
#include "tests/support/CFullDisk.h"
#include "tests/support/CJetTest.h"

namespace {

namespace fs = std::filesystem;

class Jet : public CJetTest {
protected:
    bool Convert(const std::string& path) { return ConvertInPlace(path, CDbPassword); }
    // Refused with the message, and everything as it was.
    void ExpectRefused(const std::string& fixture, int number) {
        const std::string path = Take(fixture);
        m_folder.Prompts.Expect(number);
        EXPECT_FALSE(Convert(path)) << fixture;
        if (number == 2000) {
            EXPECT_EQ(m_folder.Prompts.LastText(), LoadMessage(2000) + path) << fixture;
        }
        EXPECT_TRUE(m_folder.ReadFile("db/p.mdb") == Bytes(fixture)) << fixture;
        EXPECT_EQ(Files(), std::vector<std::string>{"p.mdb"}) << fixture;
    }
    CJetFiles m_oldFiles;
    const COldFilesScope m_scope{m_oldFiles};

    fs::path Host() const { return m_folder.Host("db/p.mdb"); }
};

TEST_F(Jet, FilesComeOverValueByValue) {
    for (const char* fixture :
         {"GB", "SH", "project", "project_v2003", "project_nopassword", "project_encoded", "project_props",
          "project_overflow", "project_addedcols", "project_nojcj", "project_nulltext", "project_variant",
          "edge_values", "empty_tables", "partial_tables"}) {
        const std::string file = std::string(fixture) + ".mdb";
        fs::remove(m_folder.Host("db/p.mdb.jet"));
        ASSERT_TRUE(Convert(Take(file))) << fixture;
        ExpectContent(Host(), fixture);
        EXPECT_TRUE(m_folder.ReadFile("db/p.mdb.jet") == Bytes(file)) << fixture;
        EXPECT_EQ(Files(), (std::vector<std::string>{"p.mdb", "p.mdb.jet"})) << fixture;
    }
    // Their property blocks hang whoever reads them, but hold nothing that a project needs.
    for (const char* fixture : {"bad/lvprop_loop.mdb", "bad/lvprop_chain.mdb"}) {
        ASSERT_TRUE(Convert(Take(fixture))) << fixture;
        ExpectContent(Host(), "project_props");
    }
    ASSERT_TRUE(Convert(Take("big_project.mdb")));
    EXPECT_EQ(Query(Host(), "SELECT count(*) FROM Testing"), "2000");
    EXPECT_EQ(Query(Host(), "SELECT count(*) FROM Record"), "20000");
    EXPECT_EQ(Query(Host(), "PRAGMA integrity_check"), "ok");
}

TEST_F(Jet, ConvertedProjectsWorkOn) {
    // The next number is behind the highest ever given, not behind the highest there is.
    for (const auto& [fixture, next] : {std::pair("project_addedcols.mdb", "7"), {"project.mdb", "14"}}) {
        ASSERT_TRUE(Convert(Take(fixture)));
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(m_folder.Path("db/p.mdb"), CDbPassword));
        ASSERT_TRUE(database.AddRecord({}));
        database.Close();
        EXPECT_EQ(Query(Host(), "SELECT max(ID) FROM Record"), next);
    }
    // Manhole columns that the file lacks, with their defaults.
    ASSERT_TRUE(Convert(Take("project_nojcj.mdb")));
    EXPECT_EQ(Query(Host(),
                    "SELECT quote(JcjNo) || JcjType || JcjUnderRoad || JcjMaterial || JcjCoverMaterial "
                    "FROM Record"),
              "''0000");
    // Texts compare as everywhere in the store, whatever the letters of names.
    ASSERT_TRUE(Convert(Take("project_variant.mdb")));
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(m_folder.Path("db/p.mdb"), CDbPassword));
    _TESTING_DATA section;
    EXPECT_TRUE(database.FindTestingByWells("STARTWELL值2", "endwell值2", &section));
    EXPECT_EQ(section.PipeDiameter + " " + section.PipeLength + " " + section.TestingDate,
              "600 24.5 2021-03-04 12:00:00");
    CRecDataArray records;
    ASSERT_TRUE(database.ReadRecords(1, records, false));
    EXPECT_EQ(records[0].DistanceEnd, 2.25F);
}

TEST_F(Jet, DamagedAndForeignFilesStayAsTheyAre) {
    int count = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(JetFixtures() / "bad")) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with("lvprop")) {
            ExpectRefused("bad/" + name, 2000);
            ++count;
        }
    }
    EXPECT_GT(count, 20);
    ExpectRefused("project_wrongpassword.mdb", 2000);
    ExpectRefused("foreign.mdb", 2002);
    ExpectRefused("foreign_nopassword.mdb", 2002);
    // Nobody is asked about what can't be done, and nothing else is told.
    for (const auto& [fixture, number] : {std::pair("bad/memo_loop.mdb", 2000), {"foreign.mdb", 2002}}) {
        const std::string path = Take(fixture);
        m_folder.Prompts.Expect(number);
        EXPECT_FALSE(CDbRec().OpenDatabase(path, CDbPassword));
    }
}

TEST_F(Jet, OpeningToWorkOnAsksOnce) {
    const std::string path = Take("project.mdb");
    m_folder.WriteFile("db/p.mdb.jet", "of somebody else");
    CDbRec database;
    m_folder.Prompts.ExpectQuestion(3200, false);
    EXPECT_FALSE(database.OpenDatabase(path, CDbPassword));
    EXPECT_TRUE(m_folder.ReadFile("db/p.mdb") == Bytes("project.mdb"));
    m_folder.Prompts.ExpectQuestion(3200, true);
    ASSERT_TRUE(database.OpenDatabase(path, CDbPassword));
    EXPECT_EQ(database.CountRecords(-1), 12);
    database.Close();
    EXPECT_TRUE(database.OpenDatabase(path, CDbPassword));
    EXPECT_EQ(m_folder.ReadFile("db/p.mdb.jet"), "of somebody else");
    EXPECT_TRUE(m_folder.ReadFile("db/p.mdb.jet2") == Bytes("project.mdb"));
}

TEST_F(Jet, WithoutRoomOrRightAllStaysAsItWas) {
    const std::string path = Take("big_project.mdb");
    {
        const CFullDisk full(2'000'000);
        m_folder.Prompts.Expect(2000);
        EXPECT_FALSE(Convert(path));
    }
    EXPECT_EQ(Files(), std::vector<std::string>{"p.mdb"});

    // Somebody else is at it.
    {
        const CUnixFile held(Host().string(), O_RDONLY);
        ASSERT_EQ(flock(held.Descriptor(), LOCK_EX), 0);
        m_folder.Prompts.Expect(2000);
        EXPECT_FALSE(Convert(path));
    }
    fs::permissions(m_folder.Host("db"), fs::perms{0555});
    fs::permissions(m_folder.Host(""), fs::perms{0755});
    m_folder.Prompts.Allow(2000);
    EXPECT_TRUE(AsOrdinaryUser(
        [&] { return !Convert(path) && m_folder.Prompts.LastText() == LoadMessage(2000) + path; }));
    fs::permissions(m_folder.Host("db"), fs::perms{0755});
    EXPECT_EQ(Files(), std::vector<std::string>{"p.mdb"});
    EXPECT_TRUE(m_folder.ReadFile("db/p.mdb") == Bytes("big_project.mdb"));
}

class CSlowProgress : public CProgress {
public:
    explicit CSlowProgress(bool stop) : m_stop(stop) {}
    void At(std::int64_t done, std::int64_t total, const std::string& text) override {
        Last = done;
        Total = total;
        Texts.push_back(text);
    }
    bool Stopped() const override {
        if (!m_stop && Texts.empty()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(550));
        }
        return m_stop;
    }
    std::int64_t Last = -1;
    std::int64_t Total = -1;
    std::vector<std::string> Texts;

private:
    bool m_stop;
};

// Does something once, in the middle of an operation.
class CMeanwhile : public CProgress {
public:
    explicit CMeanwhile(std::function<void()> work) : m_work(std::move(work)) {}
    bool Stopped() const override {
        if (const auto work = std::exchange(m_work, nullptr)) {
            work();
        }
        return false;
    }

private:
    mutable std::function<void()> m_work;
};

TEST_F(Jet, TwoConversionsDontMeet) {
    const std::string path = Take("big_project.mdb");
    const std::string target = m_folder.Path("db/new.mdb");
    m_folder.Prompts.Allow(2203);
    const COtherProcess other([&](char) { return !ConvertTo(path, target, CDbPassword); });
    CMeanwhile meanwhile([&] { EXPECT_TRUE(other.Do('x')); });
    const CSeamScope seams({nullptr, nullptr, nullptr, nullptr, &meanwhile});
    ASSERT_TRUE(ConvertTo(path, target, CDbPassword));
    EXPECT_EQ(Query(m_folder.Host("db/new.mdb"), "SELECT count(*) FROM Record"), "20000");
    EXPECT_EQ(Files(), (std::vector<std::string>{"new.mdb", "p.mdb"}));

    // What is written while it is read isn't taken over.
    CMeanwhile writing([&] { fs::last_write_time(Host(), fs::file_time_type::clock::now()); });
    const CSeamScope more({nullptr, nullptr, nullptr, nullptr, &writing});
    m_folder.Prompts.Expect(2000);
    EXPECT_FALSE(ConvertTo(path, m_folder.Path("db/late.mdb"), CDbPassword));
    EXPECT_EQ(Files(), (std::vector<std::string>{"new.mdb", "p.mdb"}));
}

TEST_F(Jet, ListingsReadFilesAsTheyAre) {
    for (const auto& [fixture, name] : {std::pair("project.mdb", "db/a.mdb"),
                                        {"foreign.mdb", "db/b.mdb"},
                                        {"bad/memo_loop.mdb", "db/c.mdb"},
                                        {"project_nulltext.mdb", "db/d.mdb"},
                                        {"partial_tables.mdb", "db/e.mdb"},
                                        {"project_v2003.mdb", "db/f.mdb"}}) {
        Take(fixture, name);
    }
    const auto list = [&](std::initializer_list<int> messages) {
        for (const int number : messages) {
            m_folder.Prompts.Expect(number);
        }
        ProjectListing listing;
        FillProjects(GetDbFolder(), {}, listing);
        return listing;
    };
    const auto expectAll = [&](const ProjectListing& listing) {
        ASSERT_EQ(listing.Rows.size(), 2U);
        EXPECT_EQ(listing.Projects.GetSize(), 6);
        EXPECT_EQ(listing.Rows[0].ProjectName, "城东片区O'Brien路雨污水管道检测");
        EXPECT_EQ(listing.Rows[1].CriterionName, "国标");
        EXPECT_EQ(listing.Rows[1].RecordCount, 12);
        EXPECT_EQ(listing.Rows[1].CreateTime, "2018-05-09 14:03:27");
        EXPECT_EQ(listing.Rows[1].OwnPath, m_folder.Path("db/f.mdb"));
        EXPECT_EQ(listing.Projects[5].ProjectPath, m_folder.Path("db/f.mdb"));
    };
    expectAll(list({2002, 2000, 2005, 2018}));
    EXPECT_TRUE(m_folder.ReadFile("db/a.mdb") == Bytes("project.mdb"));

    // A second listing needs no reader, also after a new start; but a file that has changed does.
    fs::remove(m_folder.Host("drovane-jetreader"));
    expectAll(list({2002, 2000, 2005, 2018}));
    SetAppFolder("\\elsewhere\\");
    (void)ListOldDatabase(m_folder.Path("db/a.mdb"), CDbPassword);
    SetAppFolder(m_folder.Path(""));
    expectAll(list({2002, 2000, 2005, 2018}));
    fs::last_write_time(m_folder.Host("db/a.mdb"), fs::file_time_type::clock::now());
    EXPECT_EQ(list({2000, 2002, 2000, 2005, 2018}).Rows.size(), 1U);
}

}  // namespace
