#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "apps/cli/cli.h"
#include "tests/support/CJetTest.h"

namespace {

using Json = nlohmann::json;

class CliConvert : public CJetTest {
protected:
    int Run(std::vector<std::string> words) {
        words.insert(words.begin(), {"--app-folder", m_folder.Host("").string()});
        m_out.str({});
        m_err.str({});
        return RunCli(words, m_out, m_err);
    }
    std::string Host(const std::string& name) { return m_folder.Host(name).string(); }

    std::ostringstream m_out;
    std::ostringstream m_err;
};

TEST_F(CliConvert, ManyAtOnceInPlaceOrIntoAFolder) {
    Take("project.mdb", "in/a.mdb");
    Take("bad/trunc_half.mdb", "in/b.mdb");
    Take("foreign.mdb", "in/c.mdb");
    Take("project_variant.mdb", "in/d.mdb");
    const std::vector<std::string> files = {Host("in/a.mdb"), Host("in/b.mdb"), Host("in/c.mdb"),
                                            Host("in/d.mdb")};
    std::vector<std::string> words = {"convert", "--json", "--to", Host("out")};
    words.insert(words.end(), files.begin(), files.end());
    EXPECT_EQ(Run(words), 1);
    EXPECT_NE(m_err.str().find("b.mdb: refused"), std::string::npos);
    EXPECT_NE(m_err.str().find("c.mdb: refused"), std::string::npos);
    const Json json = Json::parse(m_out.str());
    ASSERT_EQ(json.size(), 2U);
    EXPECT_EQ(json[0]["File"], Host("out/a.mdb"));
    EXPECT_EQ(json[0]["OldFile"], Host("in/a.mdb"));
    EXPECT_EQ(json[0]["Tables"][2], (Json{{"Table", "Record"}, {"Rows", 12}}));
    EXPECT_EQ(json[1]["Tables"].size(), 7U);
    EXPECT_EQ(Files("in"), (std::vector<std::string>{"a.mdb", "b.mdb", "c.mdb", "d.mdb"}));
    EXPECT_EQ(Files("out"), (std::vector<std::string>{"a.mdb", "d.mdb"}));
    EXPECT_TRUE(m_folder.ReadFile("in/a.mdb") == Bytes("project.mdb"));
    // What is there already stays.
    EXPECT_EQ(Run({"convert", "--to", Host("out"), Host("in/a.mdb")}), 1);

    EXPECT_EQ(Run({"convert", Host("in/a.mdb"), Host("in/d.mdb")}), 0) << m_err.str();
    EXPECT_NE(m_out.str().find("DefectLevel"), std::string::npos);
    EXPECT_TRUE(m_folder.ReadFile("in/a.mdb.jet") == Bytes("project.mdb"));
    EXPECT_EQ(Run({"convert", Host("in/a.mdb")}), 1);  // it is none of the older engine any more
    ASSERT_EQ(Run({"sections", Host("in/a.mdb"), "--json"}), 0);
    EXPECT_EQ(Json::parse(m_out.str()).size(), 3U);
    EXPECT_EQ(Run({"convert"}), 2);
}

TEST_F(CliConvert, OtherCommandsConvertOnlyIfTold) {
    const std::string file = Host("db/p.mdb");
    Take("project.mdb");
    ASSERT_EQ(Run({"projects", "--json"}), 0);
    EXPECT_EQ(Json::parse(m_out.str())[0]["RecordCount"], 12);
    EXPECT_EQ(Run({"sections", file}), 1);
    EXPECT_TRUE(m_folder.ReadFile("db/p.mdb") == Bytes("project.mdb"));
    EXPECT_EQ(Run({"--yes", "sections", file}), 0) << m_err.str();
    EXPECT_TRUE(m_folder.ReadFile("db/p.mdb.jet") == Bytes("project.mdb"));
}

}  // namespace
