#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "shell/language.h"
#include "shell/paths.h"
#include "shell/textcodec.h"
#include "store/CDbRec.h"
#include "store/catalogue.h"
#include "tests/shell/processes.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

class Catalogue : public testing::Test {
protected:
    Catalogue() { LoadCriterionList(m_criteria, GetCriterionFolder(), CDbPassword); }

    std::string Create(const std::string& name, int criterion = 0) {
        return CreateProject({name, "c'", "i", "l"}, criterion, m_criteria);
    }
    _PRO_DATA Attributes(const std::string& path) {
        CDbRec database;
        _PRO_DATA project;
        EXPECT_TRUE(database.OpenDatabase(path, CDbPassword) && database.ReadAttrib(project));
        return project;
    }
    CTestFolder m_folder;
    CCriterionDataArray m_criteria;
};

TEST_F(Catalogue, StandardsComeByFileName) {
    std::vector<std::string> names;
    for (const _CRITERION_DATA& entry : m_criteria) {
        names.push_back(GetFileName(entry.Path));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"CQ.mdb", "GB.mdb", "GZ.mdb", "SH.mdb"}));
    EXPECT_EQ(m_criteria[0].Name, "重庆规范");

    m_folder.WriteFile("db/Criterion/b.MDB", "garbage");
    fs::create_directory(m_folder.Host("db/Criterion/a.mdb"));
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(GetCriterionFolder() + "SH.mdb", CDbPassword));
    database.Execute("delete from Attrib");
    database.Close();
    CCriterionDataArray list;
    m_folder.Prompts.Expect(2000);
    LoadCriterionList(list, GetCriterionFolder(), CDbPassword);
    ASSERT_EQ(list.GetSize(), 5);
    EXPECT_EQ(list[0].Name, LoadMessage(2004));
    EXPECT_EQ(list[4].Name, "");
}

TEST_F(Catalogue, ProjectsAreNamedByTheFirstFreeSecond) {
    m_folder.Clock.Local =
        std::chrono::local_days{std::chrono::year{2026} / 12 / 31} + std::chrono::seconds(86398);
    m_folder.WriteFile("db/2026-12-31-235959.MDB", "of somebody else");
    fs::create_directory(m_folder.Host("db/2027-01-01-000000_sn"));
    const std::string first = Create("甲'", 1);
    const std::string second = Create("乙", 2);
    EXPECT_EQ(first, GetDbFolder() + "2026-12-31-235958.mdb");
    EXPECT_EQ(second, GetDbFolder() + "2027-01-01-000001.mdb");
    const _PRO_DATA project = Attributes(first);
    EXPECT_EQ(project.ProjectName, "甲'");
    EXPECT_EQ(project.Comment + project.ProjectIndex + project.Location, "c'il");
    EXPECT_EQ(project.StandardIndex, "1");
    EXPECT_EQ(project.CreateTime, "2026-12-31 23:59:58");
    EXPECT_EQ(project.CriterionName, m_criteria[1].Name);

    EXPECT_EQ(Create("", 0), "");
    fs::remove(m_folder.Host("db/Criterion/CQ.mdb"));
    m_folder.Prompts.Expect(2203);
    EXPECT_EQ(Create("x", 0), "");
    EXPECT_EQ(m_folder.Prompts.LastText(), LoadMessage(2203) + GetDbFolder() + "2027-01-01-000002.mdb");
    m_folder.WriteFile("db/Criterion/CQ.mdb", "garbage");
    m_folder.Prompts.Expect(2000);
    EXPECT_EQ(Create("x", 0), "");
    EXPECT_EQ(m_folder.ReadFile("db/2027-01-01-000002.mdb"), "garbage");  // stays behind
}

TEST_F(Catalogue, RowsBehindAnUnreadableFileAreShifted) {
    ASSERT_NE(Create("first"), "");
    m_folder.Clock.Local += std::chrono::seconds(10);
    const std::string foreign = m_folder.WriteFile("db/2026-03-14-092655.mdb", "garbage");
    const std::string last = Create("last");
    {
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(last, CDbPassword));
        ASSERT_TRUE(database.AddRecord({}));
    }
    m_folder.Prompts.Expect(2000);
    ProjectListing listing;
    FillProjects(GetDbFolder(), "", listing);
    ASSERT_EQ(listing.Projects.GetSize(), 3);
    ASSERT_EQ(listing.Rows.size(), 2U);
    EXPECT_EQ(listing.Rows[1].ProjectName, "last");
    EXPECT_EQ(listing.Rows[1].CriterionName, "重庆规范");
    EXPECT_EQ(listing.Rows[1].OwnPath, last);
    EXPECT_EQ(listing.Projects[1].ProjectPath, foreign);
    EXPECT_EQ(listing.Projects[2].ProjectName, "last");
}

TEST_F(Catalogue, DeletingTakesTheSideFolderAndLeavesACopyInTheTrash) {
    const std::string path = Create("x");
    m_folder.WriteFile("db/2026-03-14-092653_sn/sn.xml", "");
    {
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(path, CDbPassword));
        ASSERT_TRUE(database.AddTesting({}));
    }
    const std::string content = m_folder.ReadFile("db/2026-03-14-092653.mdb");
    {
        CDbRec open;
        ASSERT_TRUE(open.OpenDatabase(path, CDbPassword));
        m_folder.Prompts.ExpectQuestion(2204, true);
        m_folder.Prompts.Expect(2000);
        EXPECT_FALSE(DeleteProject(path));
    }
    EXPECT_TRUE(m_folder.Desktop.Trashed.empty());
    m_folder.Prompts.ExpectQuestion(2204, true);
    EXPECT_TRUE(DeleteProject(path));
    EXPECT_TRUE(m_folder.Desktop.Trashed == std::vector{content});
    EXPECT_FALSE(fs::exists(m_folder.Host("db/2026-03-14-092653.mdb")));
    EXPECT_FALSE(fs::exists(m_folder.Host("db/2026-03-14-092653_sn")));

    // Whose folder is it? Not that of a project with another ending or case, and never what a link leads to.
    const auto remove = [this](const char* name) {
        fs::copy(m_folder.Host("db/Criterion/GB.mdb"), m_folder.Host(name));
        m_folder.Prompts.ExpectQuestion(2204, true);
        EXPECT_TRUE(DeleteProject(m_folder.Path(name)));
    };
    fs::create_directories(m_folder.Host("Kİ.mdb/y"));
    fs::create_directories(m_folder.Host("Kİ_sn/x_sn/y"));
    remove("Kİ.mdb/x.MDB");
    remove("Kİ.mdb/X.mdb");
    EXPECT_TRUE(fs::exists(m_folder.Host("Kİ_sn/x_sn/y")));
    remove("Kİ.mdb/x.mdb");
    EXPECT_FALSE(fs::exists(m_folder.Host("Kİ_sn/x_sn")));
    fs::create_directory_symlink(m_folder.Host("Kİ.mdb"), m_folder.Host("Kİ_sn/x_sn"));
    remove("Kİ.mdb/x.mdb");
    EXPECT_TRUE(fs::exists(m_folder.Host("Kİ_sn/x_sn/y")));
}

TEST_F(Catalogue, ADeletionThatFailsLeavesTheProjectWhole) {
    const std::string path = Create("幸福路");
    {
        CDbRec database;
        ASSERT_TRUE(database.OpenDatabase(path, CDbPassword));
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(database.AddTesting({}));
        }
        _REC_DATA record;
        record.TestingID = 2;
        ASSERT_TRUE(database.AddRecord(record));
        database.Execute("update Record set DefectLevel = NULL");  // a row that can't be read
    }
    const std::string content = m_folder.ReadFile("db/2026-03-14-092653.mdb");
    m_folder.Prompts.ExpectQuestion(2204, true);
    m_folder.Prompts.Expect(2017);
    const ProjectRow other{"新华路", "", 0, "", m_folder.Path("db/other.mdb")};
    EXPECT_FALSE(DeleteProject(path, &other)) << "and after one message";
    EXPECT_EQ(m_folder.ReadFile("db/2026-03-14-092653.mdb"), content);

    m_folder.Desktop.TakesTrash = false;
    m_folder.Prompts.ExpectQuestion(2204, true);
    m_folder.Prompts.ExpectQuestion(3411, false);
    EXPECT_FALSE(DeleteProject(path));
    EXPECT_EQ(m_folder.ReadFile("db/2026-03-14-092653.mdb"), content);
    m_folder.Prompts.ExpectQuestion(2204, false);
    EXPECT_FALSE(DeleteProject(path, &other));
    for (const char* named : {"幸福路", "2026-03-14-092653.mdb", "3", "新华路", "other.mdb"}) {
        EXPECT_NE(m_folder.Prompts.LastText().find(named), std::string::npos) << named;
    }
}

TEST_F(Catalogue, UnreadableFilesAreSetAsideButNotThoseInUse) {
    Create("first");
    m_folder.WriteFile("db/0.mdb", "garbage");
    m_folder.WriteFile("db/unreadable/0.mdb", "earlier");
    CDbRec open;
    ASSERT_TRUE(open.OpenDatabase(m_folder.MakeProject("1.mdb"), CDbPassword));
    m_folder.Prompts.Expect(2000);
    m_folder.Prompts.Expect(2000);
    ProjectListing listing;
    FillProjects(GetDbFolder(), "", listing);
    EXPECT_EQ(UnreadableFiles(listing), (std::vector{m_folder.Path("db/0.mdb"), m_folder.Path("db/1.mdb")}));
    m_folder.Prompts.Expect(3414);
    EXPECT_FALSE(SetAside(UnreadableFiles(listing)));
    EXPECT_TRUE(fs::exists(m_folder.Host("db/1.mdb")));
    EXPECT_FALSE(fs::exists(m_folder.Host("db/0.mdb")));
    EXPECT_EQ(m_folder.ReadFile("db/unreadable/0 (2).mdb"), "garbage");
}

TEST_F(Catalogue, StandardsAreListedWhileOthersLookAtThem) {
    const int pid = fork();
    if (pid == 0) {
        CDbRec other;
        const bool opened =
            other.OpenDatabase(GetCriterionFolder() + "GB.mdb", CDbPassword, CDbBase::Access::Shared);
        std::this_thread::sleep_for(std::chrono::seconds(opened ? 5 : 0));
        _exit(opened ? 0 : 1);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    CCriterionDataArray list;
    LoadCriterionList(list, GetCriterionFolder(), CDbPassword);
    EXPECT_EQ(list.GetSize(), 4);
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

}  // namespace
