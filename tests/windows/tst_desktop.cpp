#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "shell/dialogs/CQtDesktop.h"
#include "tests/support/CTestFolder.h"
#include "tests/support/windows.h"

TEST(Desktop, TellsOfAProcessThatFailed) {
    const CTestFolder folder;
    const std::string program = folder.WriteFile("job/a program.sh", R"(#!/bin/sh
pwd >"$1"
echo "no paper" >&2
exit "$2"
)");
    std::filesystem::permissions(folder.Host("job/a program.sh"), std::filesystem::perms::owner_all);
    CQtDesktop desktop;
    std::optional<std::string> told;
    const auto start = [&](const std::string& file, const std::string& exitCode) {
        return desktop.StartProcess(program, {folder.Host(file).string(), exitCode},
                                    folder.Path("job") + "\\", [&](const std::string& text) { told = text; });
    };
    ASSERT_TRUE(start("good's $HOME.txt", "0"));
    ASSERT_TRUE(start("bad.txt", "3"));
    WaitFor([&] { return told.has_value(); });
    EXPECT_EQ(told.value_or(""), "no paper");
    EXPECT_EQ(folder.ReadFile("good's $HOME.txt"), folder.Host("job").string() + "\n");
    told.reset();
    WaitFor(500);
    EXPECT_FALSE(told);
    EXPECT_FALSE(desktop.StartProcess(folder.Path("job/none"), {}, folder.Path("job"), {}));
}
