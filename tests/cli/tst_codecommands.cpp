// Coding and drawing sections from the command line.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "apps/cli/cli.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"

namespace {

using Json = nlohmann::json;

class CodeCommands : public testing::Test {
protected:
    CodeCommands() {
        const std::string command =
            "ffmpeg -v error -f lavfi -i testsrc=size=64x48:rate=25:duration=2 -c:v mjpeg '" +
            Folder.Host("v.avi").string() + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        const std::string path = Folder.MakeProject();
        CDbRec database;
        EXPECT_TRUE(database.OpenDatabase(path, CDbPassword));
        _TESTING_DATA section;
        section.StartWell = "Y1";
        section.EndWell = "Y2 & <3>";
        section.TestingDirection = "顺流";
        section.PipeLength = "30";
        section.DistanceEnd = 30.0F;
        section.VideoFileList = Folder.Path("v.avi");
        EXPECT_TRUE(database.AddTesting(section));
        database.Close();
        Project = Folder.Host("p.mdb").string();
        for (const auto& entry : std::filesystem::recursive_directory_iterator(Folder.Host(""))) {
            Project = entry.path().filename() == "p.mdb" ? entry.path().string() : Project;
        }
    }
    int Run(std::vector<std::string> words) {
        words.insert(words.begin(), {"--app-folder", Folder.Host("").string()});
        Out.str("");
        Err.str("");
        return RunCli(words, Out, Err);
    }
    int Code(const char* line, std::vector<std::string> more = {"--at", "1.2"}) {
        more.insert(more.begin(), {"code", Project, "--section", "1", line});
        return Run(more);
    }

    CTestFolder Folder;
    std::string Project;
    std::ostringstream Out;
    std::ostringstream Err;
};

}  // namespace

TEST_F(CodeCommands, StoreAsTheLineDoesAndTellWhatIsMissing) {
    EXPECT_EQ(Code("PL3 12.4", {"--dry-run", "--json"}), 0) << Err.str();
    Json told = Json::parse(Out.str());
    EXPECT_EQ(told["code"], "PL");
    EXPECT_TRUE(told["clockAssumed"]);
    EXPECT_TRUE(told["stored"].is_null());
    EXPECT_EQ(Code("PL 12", {"--dry-run", "--json"}), 3);
    EXPECT_EQ(Json::parse(Out.str())["missing"].size(), 2U);
    EXPECT_EQ(Code("PL3"), 3);
    EXPECT_NE(Out.str().find("missing: "), std::string::npos);
    EXPECT_EQ(Code("JCJ_ZC"), 3);
    EXPECT_EQ(Run({"records", Project, "--json"}), 0);
    EXPECT_TRUE(Json::parse(Out.str()).empty()) << "nothing of all that was stored";

    EXPECT_EQ(Code("[PL3 12.4 0903"), 0) << Err.str();
    EXPECT_NE(Out.str().find("stored as record 1"), std::string::npos) << Out.str();
    EXPECT_EQ(Code("]15.0", {}), 0) << Err.str();
    EXPECT_EQ(Run({"records", Project, "--json"}), 0);
    const Json record = Json::parse(Out.str())[0];
    EXPECT_NEAR(record["DistanceEnd"].get<double>(), 15.0, 1e-3);
    EXPECT_EQ(record["DirectionStart"], 9);
    EXPECT_TRUE(std::filesystem::exists(Folder.Host("picture")));

    EXPECT_EQ(Code("PL3 12.4", {}), 2);
    EXPECT_EQ(Code("PL3 12.4", {"--at", "-1"}), 2);
    EXPECT_EQ(Code("PL3 12.4", {"--at", "nan"}), 2);
    std::filesystem::remove(Folder.Host("v.avi"));
    EXPECT_EQ(Code("PL3 13.0"), 1);
    EXPECT_NE(Err.str().find("v.avi"), std::string::npos);
}

TEST_F(CodeCommands, AStripIsADrawingThatOthersRead) {
    ASSERT_EQ(Code("PL3 12.4~15"), 0) << Err.str();
    const std::string picture = Folder.Host("s.svg").string();
    EXPECT_EQ(Run({"strip", Project, "--section", "1", "-o", picture}), 0) << Err.str();
    const std::string svg = Folder.ReadFile("s.svg");
    EXPECT_NE(svg.find("width=\"1200\" height=\"56\""), std::string::npos) << svg.substr(0, 300);
    EXPECT_NE(svg.find("Y2 &amp; &lt;3"), std::string::npos) << "names are data, not markup";
    EXPECT_NE(svg.find("结3"), std::string::npos);
    EXPECT_EQ(
        std::system(("python3 -c 'import sys, xml.dom.minidom as m; m.parse(sys.argv[1])' '" + picture + "'")
                        .c_str()),
        0);
    EXPECT_EQ(Run({"strip", Project, "--section", "9", "-o", picture}), 1);
    EXPECT_EQ(Run({"strip", Project, "--section", "1", "--width", "5", "-o", picture}), 2);
    EXPECT_EQ(Run({"strip", Project, "--section", "1", "-o", Project}), 2);
}
