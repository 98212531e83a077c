#include <gtest/gtest.h>

#include <filesystem>

#include "shell/documents.h"
#include "shell/textcodec.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/CTestHome.h"

TEST(Documents, LieWhereTheDesktopSays) {
    CTestFolder folder;
    const CTestHome home(folder.Host("home"));
    const std::string usual = folder.Path("home/Documents") + "\\";
    EXPECT_EQ(GetDocumentsFolder(), usual);
    for (const auto& [line, expected] : std::vector<std::pair<std::string, std::string>>{
             {"XDG_DOCUMENTS_DIR=\"$HOME/文档/\"", folder.Path("home/文档") + "\\"},
             {"  XDG_DOCUMENTS_DIR=\"/srv/our \\\"docs\\\"\"  \nXDG_MUSIC_DIR=\"$HOME/m\"",
              "\\srv\\our \"docs\"\\"},
             {"XDG_DOCUMENTS_DIR=docs", usual},
             {"XDG_DOCUMENTS_DIR=\"$HOMES/x\"", usual},
             {"XDG_DOCUMENTS_DIR=\"/a\\\\b\"", usual}}) {
        home.WriteUserFolders(line);
        EXPECT_EQ(GetDocumentsFolder(), expected) << line;
    }
}

TEST(Documents, TakeNobodysPlace) {
    CTestFolder folder;
    const CTestHome home(folder.Host("home"));
    folder.WriteFile("home/Documents/Drovane/Plan.TXT", "mine");
    std::filesystem::create_directory(folder.Host("home/Documents/Drovane/plan (2).txt"));
    EXPECT_EQ(WriteDocument("plan", ".txt", "new"), folder.Path("home/Documents/Drovane/plan (3).txt"));
    EXPECT_EQ(folder.ReadFile("home/Documents/Drovane/Plan.TXT"), "mine");
    EXPECT_EQ(folder.ReadFile("home/Documents/Drovane/plan (3).txt"), "new");
    const std::string taken = folder.Path("home/Documents/Drovane/Plan.TXT");
    EXPECT_FALSE(HostFiles().WriteFile(taken, "other", CHostFiles::Existing::Keep));
}
