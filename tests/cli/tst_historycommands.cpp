// The history by the command line: long random sequences, and what the commands tell.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "apps/cli/cli.h"
#include "tests/support/CTestFolder.h"

namespace {

using Json = nlohmann::json;

class CHistoryCli {
public:
    CHistoryCli() { Project = Folder.Host("db/p.mdb").string(); }

    int Run(std::vector<std::string> words) {
        words.insert(words.begin(), {"--app-folder", Folder.Host("").string()});
        std::ostringstream out;
        std::ostringstream err;
        const int code = RunCli(words, out, err);
        Out = out.str();
        Err = err.str();
        return code;
    }
    std::string Dump() {
        EXPECT_EQ(Run({"dump", Project}), 0) << Err;
        return Out;
    }
    std::size_t StepCount() {
        EXPECT_EQ(Run({"history", Project, "--json"}), 0) << Err;
        const Json steps = Json::parse(Out)["steps"];
        return static_cast<std::size_t>(
            std::count_if(steps.begin(), steps.end(), [](const Json& step) { return !step["undone"]; }));
    }
    std::string File(const std::string& name, const std::string& text) {
        Folder.WriteFile(name, text);
        return Folder.Host(name).string();
    }

    CTestFolder Folder;
    std::string FirstPath = Folder.MakeProject();
    std::string Project;
    std::string Out;
    std::string Err;
};

// One random change of a project; whether it succeeds is its own affair.
class CRandomChange {
public:
    explicit CRandomChange(CHistoryCli& cli) : m_cli(cli) {}

    void Make() {
        m_cli.Folder.Clock.Local += std::chrono::seconds(7);
        switch (Number(8)) {
            case 0:
                (void)m_cli.Run({"load", m_cli.Project, m_cli.File("in.json", Document().dump())});
                break;
            case 1:
                (void)m_cli.Run({"import-xml", m_cli.Project, m_cli.File("field/d.xml", Description())});
                break;
            case 2:
                (void)m_cli.Run({"delete-section", m_cli.Project, "--section", Id("sections", "ID")});
                break;
            case 3:
                (void)m_cli.Run({"delete-record", m_cli.Project, "--record", Id("records", "ID")});
                break;
            case 4:
                (void)m_cli.Run({"gps-calc", m_cli.Project, "--section", Id("sections", "ID")});
                break;
            case 5:
                (void)m_cli.Run({"edit-section", m_cli.Project, "--section", Id("sections", "ID"),
                                 "GpsXEnd=" + std::to_string(Number(9)) + ".5", "Comment=" + Text()});
                break;
            default:
                (void)m_cli.Run({"edit-record", m_cli.Project, "--record", Id("records", "ID"),
                                 "DistanceStart=" + std::to_string(Number(40)) + ".125",
                                 "Comment=" + Text()});
                break;
        }
    }

    int Number(int below) { return std::uniform_int_distribution(0, below - 1)(m_random); }

private:
    std::string Text() { return Number(2) == 0 ? "" : "裂口 '" + std::to_string(Number(4)) + "\" \n?"; }

    std::string Id(const char* list, const char* field) {
        EXPECT_EQ(m_cli.Run({list, m_cli.Project, "--json"}), 0);
        const Json rows = Json::parse(m_cli.Out);
        if (rows.empty()) {
            return "1";
        }
        const auto row = static_cast<std::size_t>(Number(static_cast<int>(rows.size())));
        return std::to_string(rows[row][field].get<int>());
    }

    Json Document() {
        Json records = Json::array();
        for (int i = Number(4); i > 0; --i) {
            records.push_back({{"DefectCode", Number(5) == 0 ? "GDZC" : "PL"},
                               {"DistanceStart", Number(50) / 7.0},
                               {"Comment", Text()}});
        }
        return {{"sections",
                 {{{"StartWell", "W" + std::to_string(Number(30))},
                   {"EndWell", "W" + std::to_string(Number(30))},
                   {"records", records}}}}};
    }

    std::string Description() {
        return R"(<?xml version="1.0" encoding="utf-8"?><cfg><mdata name="n" gentime="2026-03-14 09:26:53">)"
               R"(<videofilename value="v.avi"/><osd4 value="S)" +
               std::to_string(Number(9)) + R"("/><osd5 value="E"/>)" +
               R"(<item index="0" name="n" code="PL" fullname="f" dist="3.5" len="0.4" Longitude="1.2" )"
               R"(Latitude="2.1" type="t" time="0309" level="2" codeid="1" itemid="1" gentime="2026-03-14">)"
               R"(<picfilename value="1.jpg" time="1.2"/><desc>d</desc></item></mdata></cfg>)";
    }

    CHistoryCli& m_cli;
    std::mt19937 m_random{20261124};
};

// The long form is run by hand: DROVANE_OPERATIONS=10000.
TEST(HistoryCommands, EveryStateOfARandomSequenceComesBack) {
    const char* const wanted = std::getenv("DROVANE_OPERATIONS");
    const int operations = wanted == nullptr ? 250 : std::atoi(wanted);
    constexpr std::size_t deepest = 900;  // the journal keeps 1,000 steps
    CHistoryCli cli;
    CRandomChange change(cli);
    std::vector<std::string> states{cli.Dump()};  // by steps; those behind `now` are undone
    std::size_t now = 0;
    int walks = 0;
    for (int i = 0; i < operations; ++i) {
        const bool back = now > deepest || (now > 0 && change.Number(3) == 0);
        if (back || (now + 1 < states.size() && change.Number(2) == 0)) {
            const std::size_t room = back ? now : states.size() - 1 - now;
            const auto steps = static_cast<std::size_t>(
                1 + change.Number(static_cast<int>(std::min<std::size_t>(room, now > deepest ? 400 : 4))));
            ASSERT_EQ(cli.Run({back ? "undo" : "redo", cli.Project, std::to_string(steps)}), 0) << cli.Err;
            now = back ? now - steps : now + steps;
            ASSERT_EQ(cli.Dump(), states[now]) << "operation " << i;
            ++walks;
            continue;
        }
        change.Make();
        const std::string state = cli.Dump();
        if (state != states[now]) {
            states.resize(++now);
            states.push_back(state);
        }
        if (i % 50 == 0) {
            ASSERT_EQ(cli.StepCount(), now) << "each change is one step";
        }
    }
    EXPECT_GT(walks, operations / 5);
    EXPECT_GT(states.size(), 5U);
    ASSERT_EQ(cli.StepCount(), now);
    ASSERT_EQ(cli.Run({"undo", cli.Project, std::to_string(now)}), 0) << cli.Err;
    EXPECT_EQ(cli.Dump(), states.front());
    ASSERT_EQ(cli.Run({"redo", cli.Project, std::to_string(states.size() - 1)}), 0) << cli.Err;
    EXPECT_EQ(cli.Dump(), states.back());
}

TEST(HistoryCommands, TellWhatThereIsAndExitWithThree) {
    CHistoryCli cli;
    EXPECT_EQ(cli.Run({"undo", cli.Project}), 3);
    EXPECT_EQ(cli.Run({"undo", cli.Project, "0"}), 2);
    EXPECT_EQ(cli.Run({"undo", cli.Project, "x"}), 2);
    const std::string document = cli.File(
        "in.json", R"({"sections":[{"StartWell":"A","EndWell":"B","records":[{"DefectCode":"PL"}]}]})");
    ASSERT_EQ(cli.Run({"load", cli.Project, document}), 0) << cli.Err;
    ASSERT_EQ(cli.Run({"delete-record", cli.Project, "--record", "1"}), 0) << cli.Err;
    ASSERT_EQ(cli.Run({"history", cli.Project, "--json"}), 0);
    const Json steps = Json::parse(cli.Out)["steps"];
    ASSERT_EQ(steps.size(), 2U);
    EXPECT_EQ(steps[1]["section"], 1);
    EXPECT_EQ(steps[1]["record"], 1);
    EXPECT_EQ(steps[1]["time"], "2026-03-14 09:26:53");
    EXPECT_EQ(steps[0]["sections"], 1);
    EXPECT_EQ(cli.Run({"undo", cli.Project, "3"}), 3) << "all or none";
    ASSERT_EQ(cli.Run({"records", cli.Project, "--json"}), 0);
    EXPECT_TRUE(Json::parse(cli.Out).empty());
    EXPECT_EQ(cli.Run({"undo", cli.Project}), 0) << cli.Err;
    EXPECT_EQ(cli.Run({"redo", cli.Project, "2"}), 3);

    cli.Folder.Clock.Local += std::chrono::days(1);
    const std::string before = cli.Dump();
    ASSERT_EQ(cli.Run({"delete-section", cli.Project, "--section", "1"}), 0) << cli.Err;
    ASSERT_EQ(cli.Run({"restore-points", cli.Project, "--json"}), 0);
    const Json points = Json::parse(cli.Out);
    ASSERT_EQ(points.size(), 2U) << "one for each day that began with rows";
    EXPECT_EQ(points[0]["point"], "2026-03-15-092653");
    const std::string copy = cli.Folder.Host("db/new.mdb").string();
    EXPECT_EQ(cli.Run({"restore", cli.Project, "2026-03-15", "-o", copy}), 1);
    EXPECT_EQ(cli.Run({"restore", cli.Project, "2026-03-15-092653", "-o", cli.Project}), 2);
    ASSERT_EQ(cli.Run({"restore", cli.Project, "2026-03-15-092653", "-o", copy}), 0) << cli.Err;
    ASSERT_EQ(cli.Run({"dump", copy}), 0);
    EXPECT_EQ(cli.Out, before);
    EXPECT_EQ(cli.Run({"projects", "--json"}), 0);
    EXPECT_EQ(Json::parse(cli.Out).size(), 2U) << "points aren't projects";

    EXPECT_EQ(cli.Run({"forget-history", cli.Project}), 0) << cli.Err;
    EXPECT_EQ(cli.Run({"redo", cli.Project}), 3);
    EXPECT_EQ(cli.Run({"undo", cli.Project}), 3);
    // The names of people and places aren't in the file any more; only an empty journal is.
    EXPECT_EQ(cli.StepCount(), 0U);
}

}  // namespace
