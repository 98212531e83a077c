#include <gtest/gtest.h>

#include <stdexcept>

#include "apps/drovane/CDrovaneApp.h"
#include "apps/drovane/CDrovaneGui.h"
#include "shell/CLiveChannel.h"
#include "shell/dialogs/CSizeDlg.h"
#include "shell/newpipedefaults.h"
#include "shell/settings.h"
#include "tests/support/CTestFolder.h"

namespace {

using Words = std::vector<std::string>;
using Steps = std::vector<std::string>;

class CChannelOfTest : public CLiveChannel {
public:
    explicit CChannelOfTest(Steps& steps) : m_steps(steps) {}
    bool RaiseRunning() override {
        m_steps.push_back("raise");
        return Running;
    }
    Claimed Claim() override {
        m_steps.push_back("claim");
        return Result;
    }
    std::string Problem() const override { return "/run/x"; }
    void Release() override {}
    bool Answer(LiveSender, std::string_view) override { return false; }

    bool Running = false;
    Claimed Result = Claimed::Yes;

private:
    Steps& m_steps;
};

class CWindowOfTest : public CSizeDlg {
public:
    explicit CWindowOfTest(std::function<void()> run) : m_run(std::move(run)) {}

protected:
    void OnInitDialog() override { SetTimer(1, 1); }
    void OnTimer(int) override {
        KillTimer(1);
        m_run();
        EndDialog(IdCancel);
    }

private:
    std::function<void()> m_run;
};

class App : public testing::Test {
protected:
    // What happened, with the settings and defaults as they were when a window
    // was made.
    Steps Run(const std::string& commandLine, const std::string& project = {}) {
        m_steps.clear();
        CDrovaneApp* running = nullptr;
        const auto make = [&](const std::string& what) {
            m_steps.push_back(what + ' ' + GetLanguageName() + ' ' + GetNewPipeDefaults().Place);
            return std::make_unique<CWindowOfTest>([&] {
                EXPECT_NE(running->GetMainWnd(), nullptr);
                m_duringRun();
                m_steps.push_back("ran");
            });
        };
        CDrovaneApp app(m_channel, {[&](const std::string& path) { return make("review " + path); },
                                    [&](CLiveChannel&) { return make("live"); }});
        running = &app;
        EXPECT_EQ(app.Run(commandLine, project), 0);
        EXPECT_EQ(app.GetMainWnd(), nullptr);
        return m_steps;
    }

    CTestFolder m_folder;
    Steps m_steps;
    CChannelOfTest m_channel{m_steps};
    std::function<void()> m_duringRun = [] {};
};

TEST_F(App, OnlyTheWholeCommandLineMakesLiveMode) {
    SetLanguageName("English");
    ASSERT_TRUE(SaveSettings());
    m_folder.WriteFile("config.ini", "[new_pipe_section]\r\nplace=road\r\n");
    SetLanguageName("x");
    EXPECT_EQ(Run(CommandLine({"-Add"})), (Steps{"raise", "claim", "live English road", "ran"}));
    for (const Words& words : {Words{}, Words{"-add", "x"}, Words{"-add", ""}, Words{" -add"}}) {
        EXPECT_EQ(Run(CommandLine(words)), (Steps{"review  English road", "ran"})) << CommandLine(words);
    }
    EXPECT_EQ(Run("p.mdb", "\\a\\p.mdb"), (Steps{"review \\a\\p.mdb English road", "ran"}));
}

TEST_F(App, DefaultsReachTheFileOnEveryWayOut) {
    NewPipeDefaults values;
    values.Place = "幸福路";
    m_duringRun = [&] {
        SetNewPipeDefaults(values);
        EXPECT_EQ(LoadNewPipeDefaults(), NewPipeDefaults());
    };
    (void)Run("");
    EXPECT_EQ(LoadNewPipeDefaults(), values);

    values.Company = "c";
    CDrovaneApp app(m_channel, {[&](const std::string&) -> std::unique_ptr<CSizeDlg> {
                                    SetNewPipeDefaults(values);
                                    throw std::runtime_error("no window");
                                },
                                {}});
    EXPECT_THROW((void)app.Run(""), std::runtime_error);
    EXPECT_EQ(LoadNewPipeDefaults(), values);
}

TEST_F(App, ProjectsAreTakenFromTheCommandLineOnlyIfTheyAreThere) {
    const std::string here = m_folder.Host("").string();
    m_folder.MakeProject("p.mdb");
    std::filesystem::create_directory(m_folder.Host("db/folder.mdb"));
    EXPECT_EQ(ProjectArgument({"db/p.mdb"}, here), m_folder.Path("db/p.mdb"));
    EXPECT_EQ(ProjectArgument({m_folder.Host("db/P.MDB").string()}, "/"), m_folder.Path("db/P.MDB"));
    EXPECT_EQ(ProjectArgument({m_folder.Path("db/p.mdb")}, "/"), m_folder.Path("db/p.mdb"));
    for (const Words& words : {Words{}, Words{"db/none.mdb"}, Words{"db/folder.mdb"},
                               Words{"Language/English.lgu"}, Words{"db/p.mdb", "db/p.mdb"}}) {
        EXPECT_EQ(ProjectArgument(words, here), "") << CommandLine(words);
    }
}

class CFailingPrompts : public CScriptedPrompts {
public:
    void ShowMessage(int number, const std::string& text) override {
        CScriptedPrompts::ShowMessage(number, text);
        EXPECT_FALSE(RunGuarded(true, []() -> bool { throw std::runtime_error("while telling"); }));
    }
};

TEST_F(App, WhatAHandlerThrowsIsToldOnceAndEndsNothing) {
    CFailingPrompts prompts;
    const CSeamScope seams({&prompts, nullptr, nullptr, nullptr});
    EXPECT_TRUE(RunGuarded(true, [] { return true; }));
    for (int i = 0; i < 2; ++i) {
        prompts.Expect(3060);
        EXPECT_FALSE(RunGuarded(true, []() -> bool { throw std::runtime_error("disk on fire"); }));
        EXPECT_TRUE(prompts.LastText().ends_with("disk on fire"));
    }
    EXPECT_FALSE(RunGuarded(false, []() -> bool { throw std::runtime_error("drawing"); }));
}

}  // namespace
