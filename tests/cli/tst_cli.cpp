// The command line, run in this process against real files.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "apps/cli/cli.h"
#include "shell/CHostFiles.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"

namespace {

using Json = nlohmann::json;

constexpr const char* National = "CJJ 181-2012 城镇排水管道检测与评估技术规程";
constexpr const char* Shanghai = "DB31/T 444-2009 排水管道电视和声纳检测评估技术规程";

class Cli : public testing::Test {
protected:
    int Run(std::vector<std::string> words) {
        words.insert(words.begin(), {"--app-folder", m_folder.Host("").string()});
        m_out.str("");
        m_err.str("");
        return RunCli(words, m_out, m_err);
    }
    std::string Out() const { return m_out.str(); }
    std::string Err() const { return m_err.str(); }
    Json OutJson() const { return Json::parse(m_out.str()); }

    std::string NewProject(const std::string& standard = National) {
        EXPECT_EQ(Run({"new", "工程 'A'", "--standard", standard, "--comment", "备注"}), 0) << Err();
        std::string path = Out();
        path.pop_back();
        return path;
    }
    std::string Load(const std::string& project, const Json& document) {
        m_folder.WriteFile("in.json", document.dump());
        EXPECT_EQ(Run({"load", project, m_folder.Host("in.json").string()}), 0) << Err();
        return project;
    }

    CTestFolder m_folder;

private:
    std::ostringstream m_out;
    std::ostringstream m_err;
};

Json Defect(const char* code, int level, double start, double end) {
    return {{"DefectCode", code}, {"DefectLevel", level}, {"DistanceStart", start}, {"DistanceEnd", end}};
}

Json Section(const char* from, const char* to, Json records) {
    return {{"TestingName", "一号 管"},     {"StartWell", from},     {"EndWell", to},
            {"PipeLength", "50"},           {"PipeDiameter", "800"}, {"DistanceEnd", 50.0},
            {"records", std::move(records)}};
}

TEST_F(Cli, WrongCallsAreTwoFailuresAreOne) {
    EXPECT_EQ(Run({}), 2);
    EXPECT_EQ(Run({"nonsense"}), 2);
    EXPECT_EQ(Run({"grade"}), 2);
    EXPECT_EQ(Run({"gps-calc", "p", "--section", "x"}), 2);
    EXPECT_EQ(Run({"projects", "--jason"}), 2);
    EXPECT_EQ(Run({"help"}), 0);
    EXPECT_EQ(Run({"new", "a", "--standard", "no such"}), 1);
    EXPECT_NE(Err().find(National), std::string::npos) << "what there is should be told";
    EXPECT_EQ(Run({"new", "", "--standard", National}), 1);
    EXPECT_EQ(Run({"sections", m_folder.Host("db/none.mdb").string()}), 1);
    EXPECT_EQ(Run({"load", NewProject(), "/no/such.json"}), 1);
}

TEST_F(Cli, GradesByTheProjectsStandard) {
    // Worked by hand: 5.0 and 5.5 to 6.0 merge to a score of 7, 7.2 stands near.
    const Json records = Json::array({Defect("PL", 3, 5, 5), Defect("BX", 2, 5.5, 6),
                                      Defect("BX", 1, 7.2, 7.2), Defect("JCJ_PS", 1, 9, 9)});
    const Json document = {{"sections", {Section("W1", "W2", records), Section("W2", "W3", Json::array())}}};
    std::string project = Load(NewProject(), document);
    ASSERT_EQ(Run({"grade", project, "--k", "6", "--t", "0", "--json"}), 0) << Err();
    const Json grade = OutJson();
    EXPECT_EQ(grade["standard"], National);
    ASSERT_EQ(grade["sections"].size(), 2U);
    const Json first = grade["sections"][0];
    EXPECT_EQ(first["StartWell"], "W1");
    EXPECT_EQ(first["mergedJG"], 2);
    EXPECT_EQ(first["maxJG"].get<float>(), 7.0F);
    EXPECT_NEAR(first["riJG"].get<double>(), 5.65, 1e-5);
    EXPECT_FALSE(first["EvaluatethisJG"].get<std::string>().empty());

    const int second = grade["sections"][1]["ID"].get<int>();
    ASSERT_EQ(Run({"grade", project, "--sections", std::to_string(second), "--json"}), 0);
    EXPECT_EQ(OutJson()["sections"].size(), 1U);
    EXPECT_EQ(OutJson()["k"], 10) << "the first of the standard's list";
    EXPECT_EQ(Run({"grade", project, "--sections", "77"}), 1);
    EXPECT_EQ(Run({"grade", project, "--sections", "1,,2"}), 2);

    // Density scoring takes sections between the same manholes together, without regard to case.
    project = Load(NewProject(Shanghai), {{"sections",
                                           {Section("a1", "b", Json::array({Defect("PL", 4, 1, 1)})),
                                            Section("A1", "B", Json::array({Defect("PL", 4, 9, 9)}))}}});
    ASSERT_EQ(Run({"grade", project, "--json"}), 0) << Err();
    ASSERT_EQ(OutJson()["sections"].size(), 1U);
    EXPECT_EQ(OutJson()["sections"][0]["countJG"], 2);

    // A standard that nothing scores.
    m_folder.WriteFile("own.json", R"({"criterionName": "自定规程", "defects": []})");
    ASSERT_EQ(Run({"make-standard", m_folder.Host("own.json").string(), "-o",
                   m_folder.Host("db/Criterion/own.mdb").string()}),
              0);
    EXPECT_EQ(Run({"grade", NewProject("自定规程")}), 1);
    EXPECT_NE(Err().find("自定规程"), std::string::npos);
}

TEST_F(Cli, ChecksAProject) {
    Json section = Section("W1", "W2", Json::array({Defect("PL", 3, 9, 9), Defect("PL", 2, 99, 99)}));
    section["PipeDiameter"] = "400";
    const std::string project = Load(NewProject(), {{"sections", {section}}});
    ASSERT_EQ(Run({"check", project, "--only", "errors", "--json"}), 3) << Err();
    const Json findings = OutJson()["findings"];
    ASSERT_FALSE(findings.empty());
    const auto beyond = std::find_if(findings.begin(), findings.end(),
                                     [](const Json& finding) { return finding["rule"] == 30; });
    ASSERT_NE(beyond, findings.end());
    EXPECT_EQ((*beyond)["severity"], "error");
    EXPECT_EQ((*beyond)["section"], 1);
    EXPECT_EQ((*beyond)["record"], 2);
    EXPECT_EQ((*beyond)["field"], "DistanceStart");
    EXPECT_NE((*beyond)["text"].get<std::string>().find("99"), std::string::npos);
    EXPECT_TRUE(std::all_of(findings.begin(), findings.end(),
                            [](const Json& finding) { return finding["severity"] == "error"; }));
    EXPECT_TRUE(OutJson()["waived"].empty());
    EXPECT_EQ(Run({"check", project}), 3);
    EXPECT_EQ(Run({"check", project, "--only", "all"}), 2);
    EXPECT_EQ(Run({"check", m_folder.Host("db/none.mdb").string()}), 1);
}

TEST_F(Cli, FindsRowsAndChangesThemTogether) {
    const std::string project = Load(
        NewProject(), {{"sections",
                        {Section("W1", "W2", Json::array({Defect("PL", 3, 9, 9), Defect("CK", 1, 12, 12)})),
                         Section("W2", "W3", Json::array({Defect("PL", 1, 9, 9)}))}}});
    ASSERT_EQ(Run({"records", project, "--where", "grade>=3 code:PL", "--json"}), 0) << Err();
    ASSERT_EQ(OutJson().size(), 1U);
    EXPECT_EQ(OutJson()[0]["ID"], 1);
    ASSERT_EQ(Run({"sections", project, "--where", "-grade>=3", "--json"}), 0);
    ASSERT_EQ(OutJson().size(), 1U);
    EXPECT_EQ(OutJson()[0]["EndWell"], "W3");
    EXPECT_EQ(Run({"sections", project, "--where", "colour=red"}), 2);

    EXPECT_EQ(Run({"edit-sections", project, "--where", "well=W2", "tester=Lu", "diameter=none"}), 1);
    EXPECT_EQ(Run({"edit-sections", project, "--where", "well=W2", "grade=1"}), 2);
    EXPECT_EQ(Run({"edit-sections", project, "tester=Lu"}), 2) << "all of them would have to be asked for";
    ASSERT_EQ(Run({"edit-sections", project, "--where", "W3", "tester=Lu", "--dry-run"}), 0) << Err();
    EXPECT_NE(Out().find("1 of 1"), std::string::npos);
    ASSERT_EQ(Run({"sections", project, "--where", "tester=Lu", "--json"}), 0);
    EXPECT_TRUE(OutJson().empty());
    ASSERT_EQ(Run({"edit-sections", project, "--where", "W3", "tester=Lu"}), 0) << Err();
    ASSERT_EQ(Run({"sections", project, "--where", "tester=Lu", "--json"}), 0);
    EXPECT_EQ(OutJson().size(), 1U);
}

TEST_F(Cli, ExplainsAGradeAndPutsItsRecordsInOrder) {
    const Json records = Json::array(
        {Defect("PL", 3, 9, 9), Defect("PL", 2, 2, 2), Defect("JCJ_PS", 1, 0, 0), Defect("PL", 1, 20, 20)});
    const std::string project = Load(NewProject(), {{"sections", {Section("W1", "W2", records)}}});
    ASSERT_EQ(Run({"grade", project, "--k", "6", "--json"}), 0);
    const Json grade = OutJson()["sections"][0];
    ASSERT_EQ(Run({"explain", project, "--section", "1", "--k", "6", "--json"}), 0) << Err();
    const Json told = OutJson();
    EXPECT_EQ(told["result"], grade);
    EXPECT_EQ(told["records"][1]["mergedInto"], 1);
    EXPECT_EQ(told["margins"].size(), 4U);
    EXPECT_EQ(told["ordered"]["inOrder"], false);
    EXPECT_NE(told["ordered"]["result"]["riJG"], grade["riJG"]);
    const auto last = std::find_if(told["steps"].begin(), told["steps"].end(),
                                   [](const Json& step) { return step["name"] == "riJG"; });
    ASSERT_NE(last, told["steps"].end());
    EXPECT_EQ((*last)["value"], grade["riJG"]);
    EXPECT_EQ(Run({"explain", project, "--section", "9"}), 1);
    EXPECT_EQ(Run({"explain", project, "--section", "1"}), 0);

    ASSERT_EQ(Run({"dump", project}), 0);
    const std::string before = Out();
    ASSERT_EQ(Run({"reorder", project, "--section", "1", "--dry-run"}), 0);
    ASSERT_EQ(Run({"dump", project}), 0);
    EXPECT_EQ(Out(), before);
    ASSERT_EQ(Run({"reorder", project, "--section", "1"}), 0) << Err();
    ASSERT_EQ(Run({"explain", project, "--section", "1", "--k", "6", "--json"}), 0);
    EXPECT_EQ(OutJson()["result"]["riJG"], told["ordered"]["result"]["riJG"]);
    EXPECT_EQ(OutJson()["ordered"]["inOrder"], true);
    ASSERT_EQ(Run({"reorder", project, "--section", "1"}), 0);
    EXPECT_NE(Out().find("nothing to do"), std::string::npos);
    ASSERT_EQ(Run({"undo", project}), 0) << Err();
    ASSERT_EQ(Run({"dump", project}), 0);
    EXPECT_EQ(Out(), before);
}

TEST_F(Cli, MakesTheWordReportOfTheStandard) {
    const auto project = [&](const char* standard, const Json& records) {
        return Load(NewProject(standard), {{"sections", {Section("W1", "W2", records)}}});
    };
    const auto make = [&](const std::string& from, const char* name) {
        return Run({"export-word", from, "-o", m_folder.Host(name).string()});
    };
    const Json defects = Json::array({Defect("PL", 3, 5, 5)});
    const std::string national = project(National, defects);
    EXPECT_EQ(make(national, "national.docx"), 0) << Err();
    EXPECT_TRUE(m_folder.ReadFile("national.docx").starts_with("PK"));
    // Without a defect there is no chart; what could be made is kept.
    EXPECT_EQ(make(project(Shanghai, Json::array()), "shanghai.docx"), 1);
    EXPECT_TRUE(m_folder.ReadFile("shanghai.docx").starts_with("PK"));

    const std::string generated = project("重庆规范", defects);
    EXPECT_EQ(make(generated, "generated.docx"), 0) << Err();
    EXPECT_TRUE(m_folder.ReadFile("generated.docx").starts_with("PK"));
    EXPECT_EQ(make(generated, "none/generated.docx"), 1);
    std::filesystem::remove(m_folder.Host("word/DocxGenerator"));
    EXPECT_EQ(make(generated, "other.docx"), 1);
    EXPECT_FALSE(std::filesystem::exists(m_folder.Host("other.docx")));

    // The project under another name is still the project.
    std::filesystem::create_symlink(national, m_folder.Host("link.docx"));
    for (const char* command : {"export-word", "export-excel", "dataset"}) {
        EXPECT_EQ(Run({command, national, "-o", m_folder.Host("link.docx").string()}), 2) << command;
    }
    EXPECT_EQ(Run({"sections", national}), 0) << Err();
}

TEST_F(Cli, EditsWhatAnUpdateWritesAndNothingElse) {
    const std::string project =
        Load(NewProject(), {{"sections", {Section("W1", "W2", Json::array({Defect("PL", 2, 10, 12)}))}}});
    ASSERT_EQ(Run({"edit-section", project, "--section", "1", "PipeLength=61.5", "GpsXStart=113.25",
                   "GpsYStart=23", "GpsXEnd=113.26", "GpsYEnd=23", "Comment=it's = fine"}),
              0)
        << Err();
    ASSERT_EQ(Run({"edit-record", project, "--record", "1", "DefectLevel=3", "Picture1=D:\\Video/P1.JPG",
                   "Picture2=D:\\Video/P2.JPG", "PicTimeInVideo2=7.5"}),
              0)
        << Err();
    for (const char* refused : {"ID=5", "Nothing=1", "GpsXEnd=east", "GpsXEnd="}) {
        EXPECT_EQ(Run({"edit-section", project, "--section", "1", refused}), 1) << refused;
    }
    for (const char* refused : {"Video=x", "TestingID=2", "DefectLevel=256", "Evaluate=1", "DefectType=GN"}) {
        EXPECT_EQ(Run({"edit-record", project, "--record", "1", refused}), 1) << refused;
    }
    EXPECT_EQ(Run({"edit-record", project, "--record", "1", "Comment"}), 2);
    EXPECT_EQ(Run({"edit-record", project, "--record", "9", "Comment=x"}), 1);

    ASSERT_EQ(Run({"gps-calc", project, "--section", "1"}), 0);
    ASSERT_EQ(Run({"records", project, "--section", "1", "--json"}), 0);
    ASSERT_EQ(OutJson().size(), 1U);
    const Json record = OutJson()[0];
    EXPECT_EQ(record["DefectLevel"], 3);
    EXPECT_EQ(record["Picture1"], "d:\\video\\p1.jpg");
    EXPECT_EQ(record["PicTimeInVideo2"], 7.5);
    EXPECT_GT(record["GpsX"].get<double>(), 113.25);
    ASSERT_EQ(Run({"sections", project, "--json"}), 0);
    EXPECT_EQ(OutJson()[0]["Comment"], "it's = fine");

    EXPECT_EQ(Run({"delete-record", project, "--record", "1"}), 0);
    EXPECT_EQ(Run({"delete-record", project, "--record", "1"}), 1);
    EXPECT_EQ(Run({"delete-section", project, "--section", "1"}), 0);
    ASSERT_EQ(Run({"dump", project}), 0);
    EXPECT_TRUE(OutJson()["sections"].empty());
}

TEST_F(Cli, ImportsInOrderAndGoesOnBehindARefusedFile) {
    const std::string project = NewProject();
    const auto description = [](const std::string& well, const std::string& item) {
        std::string xml = "<cfg><mdata name='n' gentime='2026-03-14 09:00:00'><videofilename value='v.avi'/>";
        for (int i = 1; i <= 11; ++i) {
            xml += "<osd" + std::to_string(i) + " value='" + (i == 5 ? well : "x") + "'/>";
        }
        return xml + item + "</mdata></cfg>";
    };
    m_folder.WriteFile("现场 1/a.xml", description("W1", ""));
    m_folder.WriteFile("现场 1/bad.xml", description("W2", "<item index='1'/>"));
    m_folder.WriteFile("现场 1/c.xml", description("W3", ""));
    // Relative to where the user stands, not to the program.
    std::filesystem::current_path(m_folder.Host("现场 1"));
    EXPECT_EQ(Run({"import-xml", project, "a.xml", "bad.xml", "none.xml", "./c.xml"}), 1);
    EXPECT_NE(Err().find("bad.xml: refused"), std::string::npos);
    EXPECT_NE(Err().find("no attribute: name"), std::string::npos);
    ASSERT_EQ(Run({"sections", project, "--json"}), 0);
    ASSERT_EQ(OutJson().size(), 2U);
    EXPECT_EQ(OutJson()[1]["StartWell"], "W3");

    // A whole folder once more: only what isn't there yet.
    m_folder.WriteFile("现场 1/deep/er/d.XML", description("W4", ""));
    m_folder.WriteFile("现场 1/other.xml", "<notes/>");
    EXPECT_EQ(Run({"import-xml", project, ".", "--json"}), 1) << "one can't be read, two are known";
    std::map<std::string, int> results;
    for (const Json& line : OutJson()) {
        ++results[line["result"]];
        EXPECT_NE(line["file"].get<std::string>().find("现场 1/"), std::string::npos);
    }
    EXPECT_EQ(results["taken"], 1);
    EXPECT_EQ(results["known"], 2);
    EXPECT_EQ(results["refused"], 1);
    EXPECT_GT(results["missing"], 0) << "the video, and values that may be missing";
    std::filesystem::remove(m_folder.Host("现场 1/bad.xml"));
    EXPECT_EQ(Run({"import-xml", project, "."}), 1);
    EXPECT_EQ(Run({"import-xml", project, ".", "--skip-known"}), 0) << Err();
    EXPECT_EQ(Run({"import-xml", project, m_folder.Host("map").string()}), 1) << "no description there";
}

TEST_F(Cli, NoCommandReplacesAProjectASourceOrADevice) {
    const std::string project = NewProject();
    const std::string other = NewProject();
    const std::string standard = m_folder.Host("db/Criterion/GB.mdb").string();
    const std::string source = m_folder.Host("s.json").string();
    m_folder.WriteFile("s.json", R"({"criterionName":"x","defects":[]})");
    const std::string content = ReadHostFile(other);
    const std::string folder = m_folder.Host("db").string();
    std::filesystem::create_symlink(other, m_folder.Host("link.mdb"));
    ASSERT_EQ(mkfifo(m_folder.Host("pipe").c_str(), 0600), 0);
    const std::string link = m_folder.Host("link.mdb").string();
    const std::string pipe = m_folder.Host("pipe").string();
    for (const std::string& target : {other, link, pipe, folder, std::string("/dev/null")}) {
        EXPECT_EQ(Run({"make-standard", source, "-o", target}), 2) << target;
        EXPECT_EQ(Run({"dataset", project, "-o", target}), 2) << target;
        EXPECT_EQ(Run({"export-excel", project, "-o", target}), 2) << target;
        EXPECT_EQ(Run({"export-word", project, "-o", target}), 2) << target;
        EXPECT_EQ(Run({"grab", source, "0", "-o", target}), 2) << target;
    }
    EXPECT_EQ(Run({"make-standard", source, "-o", source}), 2);
    EXPECT_EQ(Run({"grab", source, "0", "-o", source}), 2);
    EXPECT_EQ(Run({"dataset", project, "-o", standard}), 2);
    EXPECT_EQ(Run({"dataset", project, "-o", project}), 2);
    {
        CDbRec open;
        ASSERT_TRUE(open.OpenDatabase(CHostFiles::PathText(other).value(), CDbPassword));
        EXPECT_EQ(Run({"make-standard", source, "-o", other}), 2);
    }
    EXPECT_TRUE(ReadHostFile(other) == content);
    EXPECT_EQ(Run({"make-standard", source, "-o", standard}), 0) << Err();  // a standard may become another
}

TEST_F(Cli, GrabWritesAPictureOrSaysWhyNot) {
    const std::string video = m_folder.Host("v.avi").string();
    const std::string picture = m_folder.Host("p.jpg").string();
    const std::string command =
        "ffmpeg -v error -f lavfi -i testsrc=size=64x48:rate=25:duration=1 -c:v mjpeg '" + video + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(Run({"grab", video, "-1", "-o", picture}), 0) << Err();
    EXPECT_TRUE(m_folder.ReadFile("p.jpg").starts_with("\xFF\xD8"));
    EXPECT_EQ(Run({"grab", video, "half", "-o", picture}), 2);
    EXPECT_EQ(Run({"grab", m_folder.Host("none.avi").string(), "0", "-o", picture}), 1);
    EXPECT_NE(Err().find("none.avi can't be read"), std::string::npos) << Err();
    EXPECT_EQ(Run({"grab", video, "0", "-o", m_folder.Host("no/p.jpg").string()}), 1);
    EXPECT_NE(Err().find("no/p.jpg can't be written"), std::string::npos) << Err();
}

}  // namespace
