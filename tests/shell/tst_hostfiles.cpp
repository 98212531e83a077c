#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "shell/CFileMirror.h"
#include "shell/CHostFiles.h"
#include "shell/seams.h"
#include "shell/textcodec.h"
#include "tests/shell/processes.h"
#include "tests/support/CFullDisk.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::seconds;

class HostFile : public testing::Test {
protected:
    std::string Resolved(const std::string& path) { return HostFiles().HostPath(path); }
    int Count(const std::string& folder) {
        return static_cast<int>(std::distance(fs::directory_iterator(m_folder.Host(folder)), {}));
    }
    CTestFolder m_folder;
    CHostFiles& m_files = HostFiles();
};

TEST_F(HostFile, NamesMatchWithoutCase) {
    const std::string path = m_folder.WriteFile("Job/管段Ａ Ä/P1.JPG", "x");
    EXPECT_EQ(Resolved(LowerCase(path)), m_folder.Host("Job/管段Ａ Ä/P1.JPG"));
    EXPECT_EQ(m_files.ReadFile(LowerCase(path), 10), "x");
    // Exact first, then the first by name.
    m_folder.WriteFile("Job/a.txt", "lower");
    m_folder.WriteFile("Job/A.txt", "upper");
    EXPECT_EQ(m_files.ReadFile(m_folder.Path("job/a.txt"), 10), "lower");
    EXPECT_EQ(m_files.ReadFile(m_folder.Path("job/A.TXT"), 10), "upper");
    EXPECT_EQ(m_files.ReadFile(m_folder.Path("job/a.TXT"), 10), "upper");
    EXPECT_EQ(Resolved(m_folder.Path("Job") + "\\\\/a.txt"), m_folder.Host("Job/a.txt"));
    // What doesn't exist lies in the folder that does.
    EXPECT_EQ(Resolved(m_folder.Path("JOB/New/x.txt")), m_folder.Host("Job/New/x.txt"));
    EXPECT_FALSE(m_files.Exists(m_folder.Path("JOB/New/x.txt")));
}

TEST_F(HostFile, NamesWithABackslashAreNoPathTexts) {
    EXPECT_EQ(CHostFiles::PathText("/home/ann/a.avi"), "\\home\\ann\\a.avi");
    EXPECT_EQ(CHostFiles::PathText("/home/a\\b.avi"), std::nullopt);
    // Such a name would stand for another file.
    for (const char* name : {"l/b.mdb", "l/A.MDB", "l/c.mdb.bak", "l/x/y.mdb", "l/folder.mdb/z", "l/é.Mdb"}) {
        m_folder.WriteFile(name, "");
    }
    std::ofstream(m_folder.Host("l/x\\y.mdb")) << "z";
    EXPECT_EQ(m_files.ListFiles(m_folder.Path("L"), ".mdb"),
              (std::vector<std::string>{"A.MDB", "b.mdb", "é.Mdb"}));
}

TEST_F(HostFile, FilesAreReplacedWhole) {
    m_folder.WriteFile("real/a.txt", "old");
    fs::permissions(m_folder.Host("real/a.txt"), fs::perms{0640});
    fs::create_directory(m_folder.Host("links"));
    fs::create_symlink("../real/a.txt", m_folder.Host("links/a.txt"));
    EXPECT_TRUE(m_files.WriteFile(m_folder.Path("LINKS/a.txt"), "new"));
    EXPECT_TRUE(fs::is_symlink(m_folder.Host("links/a.txt")));
    EXPECT_EQ(m_folder.ReadFile("real/a.txt"), "new");
    EXPECT_EQ(fs::status(m_folder.Host("real/a.txt")).permissions(), fs::perms{0640});

    const std::string big = m_folder.WriteFile("big.bin", std::string(5000, 'b'));
    const std::string target = m_folder.Path("real/a.txt");
    {
        const CFullDisk full(1000);
        EXPECT_FALSE(m_files.WriteFile(target, std::string(2000, 'x')));
        EXPECT_FALSE(m_files.CopyFile(big, target, CHostFiles::Existing::Replace));
        EXPECT_FALSE(m_files.CopyFile(big, m_folder.Path("real/b.txt"), CHostFiles::Existing::Keep));
        EXPECT_FALSE(m_files.Mirror().Copy(big, target));
    }
    EXPECT_EQ(m_folder.ReadFile("real/a.txt"), "new");
    EXPECT_EQ(Count("real"), 1);
    fs::permissions(m_folder.Host("real/a.txt"), fs::perms{0444});
    fs::permissions(m_folder.Host("real"), fs::perms{0777});
    fs::permissions(m_folder.Host(""), fs::perms{0755});
    EXPECT_TRUE(AsOrdinaryUser([&] { return !m_files.WriteFile(m_folder.Path("real/a.txt"), "x"); }));
    EXPECT_EQ(m_folder.ReadFile("real/a.txt"), "new");
}

TEST_F(HostFile, Copies) {
    using enum CHostFiles::Existing;
    const std::string from = m_folder.WriteFile("From.bin", "one");
    const std::string to = m_folder.Path("to.bin");
    fs::permissions(m_folder.Host("From.bin"), fs::perms{0444});
    EXPECT_TRUE(m_files.CopyFile(from, to, Keep));
    EXPECT_NE(fs::status(m_folder.Host("to.bin")).permissions() & fs::perms::owner_write, fs::perms::none);
    EXPECT_EQ(fs::last_write_time(m_folder.Host("to.bin")), fs::last_write_time(m_folder.Host("From.bin")));
    m_folder.WriteFile("other.bin", "two");
    EXPECT_FALSE(m_files.CopyFile(m_folder.Path("other.bin"), m_folder.Path("TO.bin"), Keep));
    EXPECT_EQ(m_folder.ReadFile("to.bin"), "one");
    EXPECT_TRUE(m_files.CopyFile(m_folder.Path("other.bin"), m_folder.Path("TO.bin"), Replace));
    EXPECT_EQ(m_folder.ReadFile("to.bin"), "two");
    // Onto itself, under whatever name.
    fs::create_symlink("to.bin", m_folder.Host("link.bin"));
    EXPECT_FALSE(m_files.CopyFile(to, m_folder.Path("TO.BIN"), Replace));
    EXPECT_FALSE(m_files.CopyFile(to, m_folder.Path("link.bin"), Replace));
    EXPECT_FALSE(m_files.Mirror().Copy(to, m_folder.Path("link.bin")));
    EXPECT_FALSE(m_files.CopyFile(m_folder.Path("none"), to, Replace));
    EXPECT_EQ(m_folder.ReadFile("to.bin"), "two");
}

TEST_F(HostFile, NothingIsLeftOfWhatWasCutOff) {
    const auto twins = [&] {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(m_folder.Host("job"))) {
            if (entry.path().filename().string().starts_with(".drovane-")) {
                names.push_back(entry.path().filename().string());
            }
        }
        return names;
    };
    const auto old = fs::file_time_type::clock::now() - seconds(1000);
    // Of killed processes; of one that lives; and too young to tell.
    for (const char* name : {".drovane-Ab12xy", ".drovane-0123456789abcdef.lock",
                             ".drovane-0123456789abcdef.new", ".drovane-living", ".drovane-mine.txt"}) {
        m_folder.WriteFile(std::string("job/") + name, "x");
        fs::last_write_time(m_folder.Host(std::string("job/") + name), old);
    }
    m_folder.WriteFile("job/.drovane-young1", "x");
    const CUnixFile living(m_folder.Host("job/.drovane-living").string(), O_RDONLY);
    ASSERT_EQ(flock(living.Descriptor(), LOCK_EX), 0);
    std::size_t meanwhile = 0;
    EXPECT_TRUE(m_files.WriteFile(m_folder.Path("job/a.txt"), [&](const CUnixFile& file) {
        meanwhile = twins().size();
        return file.WriteAll("whole");
    }));
    EXPECT_EQ(meanwhile, 3U) << "a file without a name is left by nobody";
    std::vector<std::string> left = twins();
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<std::string>{".drovane-living", ".drovane-mine.txt", ".drovane-young1"}));
    EXPECT_EQ(m_folder.ReadFile("job/a.txt"), "whole");
    // Links are followed by whatever writes.
    fs::create_symlink("a.txt", m_folder.Host("job/link.txt"));
    m_folder.WriteFile("job/b.txt", "other");
    EXPECT_TRUE(m_files.CopyFile(m_folder.Path("job/b.txt"), m_folder.Path("job/link.txt"),
                                 CHostFiles::Existing::Replace));
    EXPECT_TRUE(fs::is_symlink(m_folder.Host("job/link.txt")));
    EXPECT_EQ(m_folder.ReadFile("job/a.txt"), "other");
}

TEST_F(HostFile, MirrorsAreMadeOnceAndFollowTheirSource) {
    const auto time = fs::file_time_type::clock::now() - seconds(1000);
    const auto write = [&](const char* name, const char* bytes) {
        m_folder.WriteFile(name, bytes);
        fs::last_write_time(m_folder.Host(name), time);
        return m_folder.Path(name);
    };
    const std::string first = write("one/1.jpg", "first");
    const std::string second = write("two/1.jpg", "2econ");
    const std::string copy = m_folder.Path("word/Template/Images/1.jpg");
    const auto mirrored = [&](CHostFiles& files, const std::string& from) {
        EXPECT_TRUE(files.Mirror().Copy(from, copy));
        return m_folder.ReadFile("word/Template/Images/1.jpg");
    };
    EXPECT_EQ(mirrored(m_files, first), "first");
    write("word/Template/Images/1.jpg", "FIRST");
    EXPECT_EQ(mirrored(m_files, LowerCase(first)), "FIRST");  // nothing was copied
    // Devices use the same names in each folder: the last one read wins.
    EXPECT_EQ(mirrored(m_files, second), "2econ");
    EXPECT_EQ(mirrored(m_files, first), "first");
    CHostFiles nextRun(m_folder.Host(""));
    EXPECT_EQ(mirrored(nextRun, second), "2econ");
    EXPECT_EQ(mirrored(nextRun, first), "first");

    m_folder.WriteFile("one/1.jpg", "later");
    EXPECT_EQ(mirrored(m_files, first), "later");
    fs::remove(m_folder.Host("word/Template/Images/1.jpg"));
    EXPECT_EQ(mirrored(m_files, first), "later");
}

}  // namespace
