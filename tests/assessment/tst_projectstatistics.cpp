// Expected values are worked out by hand from the rules of scoring.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "assessment/projectstatistics.h"
#include "shell/language.h"
#include "tests/assessment/defects.h"
#include "tests/support/CTestFolder.h"

namespace {

using Texts = std::vector<std::string>;

class ProjectStatisticsTest : public testing::Test {
protected:
    CTestFolder m_folder;
};

SectionRecords MakeSection(const char* name, const char* start, const char* end, const char* length,
                           const char* diameter, const std::vector<TestDefect>& defects) {
    SectionRecords section;
    section.Section.TestingName = name;
    section.Section.StartWell = start;
    section.Section.EndWell = end;
    section.Section.PipeLength = length;
    section.Section.PipeDiameter = diameter;
    section.Section.PipeMaterial = "PVC";
    section.Section.DistanceStart = 1.5F;
    section.Section.DistanceEnd = 26.5F;
    section.Records = MakeRecords(defects);
    return section;
}

ProjectStatistics Statistics(std::vector<SectionRecords> sections) {
    return MakeProjectStatistics(GradeSections(ScoringRoute::National, std::move(sections), 6, 0));
}

TEST_F(ProjectStatisticsTest, FiveSectionsOfEveryKind) {
    const ProjectStatistics statistics = Statistics({
        // 5.0 and 5.5 to 6.0 merge to 7, 7.2 stands near: 1.1 x 8 / 2 = 4.4; 7.7 / (4.4 x 40) = 0.04.
        MakeSection("a", "W1", "W2", "40", "800",
                    {{"JG", 5, 5, 5}, {"JG", 5.5F, 6, 2}, {"JG", 7.2F, 7.2F, 1}, {"GN", 9, 9, 5}}),
        MakeSection("b", "W2", "W3", "100.5", "1200.456", {{"JG", 10, 12, 10}, {"GN", 1, 1, 1}}),
        MakeSection("c", "W3", "W4", "25 m", "", {{"GN", 1, 1, 2}, {"GN", 1.5F, 1.5F, 2}}),
        MakeSection("d", "W4", "W5", "30", "600", {{"JCJ", 0, 0, 9, 0, "JCJ_ZC"}}),
        MakeSection("e", "W5", "W6", "", "600", {}),
    });
    const std::string i = LoadMessage(2331);
    const std::string iii = LoadMessage(2333);
    const std::string iv = LoadMessage(2334);
    const Texts rows = {"5",                                                              //
                        "a",   "W1 - W2", "800",     "40.0",  "PVC",                      //
                        "4.4", "7",       iv,        "0.04",  "5.65", LoadMessage(2341),  //
                        "5",   "5",       iii,       "0",     "5.05", LoadMessage(2349),  //
                        "b",   "W2 - W3", "1200.46", "100.5", "PVC",                      //
                        "10",  "10",      iv,        "0.02",  "7.9",  LoadMessage(2342),  //
                        "1",   "1",       i,         "0",     "0.8",  LoadMessage(2347),  //
                        "c",   "W3 - W4", "0",       "25.0",  "PVC",                      //
                        "-",   "-",       "-",       "-",     "-",    "-",
                        "4",   "4",       iii,       "0.02",  "4.1",  LoadMessage(2349),  //
                        "d",   "W4 - W5", "600",     "30.0",  "PVC",                      //
                        "-",   "-",       "-",       "-",     "-",    "-",
                        "-",   "-",       "-",       "-",     "-",    "-",  //
                        "e",   "W5 - W6", "600",     "0.0",   "PVC",        //
                        "-",   "-",       "-",       "-",     "-",    "-",
                        "-",   "-",       "-",       "-",     "-",    "-"};
    EXPECT_EQ(statistics.SectionRows, rows);
    const Texts shortRows = {"5",                                 //
                             "a", "W1 - W2", iii, "2", iii, "1",  //
                             "b", "W2 - W3", iv,  "1", i,   "1",  //
                             "c", "W3 - W4", "-", "-", iii, "1",  //
                             "d", "W4 - W5", "-", "-", "-", "-",  //
                             "e", "W5 - W6", "-", "-", "-", "-"};
    EXPECT_EQ(statistics.ShortRows, shortRows);
    EXPECT_EQ(statistics.LevelCountRows, (Texts{"0.0%", "0.0%", "20.0%", "20.0%", "60.0%",  //
                                                "20.0%", "0.0%", "40.0%", "0.0%", "40.0%"}));
    EXPECT_EQ(statistics.LevelLengthRows,
              (Texts{"195.5",                                                                              //
                     "-",     "-",     "-",     "-", "-", "-", "1", "40", "20.5%", "1", "100.5", "51.4%",  //
                     "1",     "100.5", "51.4%", "-", "-", "-", "2", "65", "33.2%", "-", "-",     "-"}));
    const ProjectSummary& summary = statistics.Summary;
    EXPECT_EQ(summary.Sections, 5);
    EXPECT_EQ(summary.WithRecords, 4);
    EXPECT_EQ(summary.StructuralSections, 2);
    EXPECT_EQ(summary.FunctionalSections, 1);
    EXPECT_EQ(summary.BothSections, 0);
    EXPECT_EQ(summary.NoDefectSections(), 1);
    EXPECT_EQ(summary.SumJG, 4U);
    EXPECT_EQ(summary.SumGN, 4U);
}

TEST_F(ProjectStatisticsTest, NothingToDivideBy) {
    const ProjectStatistics none = Statistics({});
    EXPECT_EQ(none.SectionRows, Texts{"0"});
    EXPECT_EQ(none.ShortRows, Texts{"0"});
    EXPECT_EQ(none.LevelCountRows, Texts(10, "-"));
    EXPECT_EQ(none.LevelLengthRows.front(), "0");
    EXPECT_EQ(Texts(none.LevelLengthRows.begin() + 1, none.LevelLengthRows.end()), Texts(24, "-"));

    const ProjectStatistics short1 = Statistics({MakeSection("a", "W1", "W2", "", "", {{"JG", 1, 1, 1}})});
    ASSERT_EQ(short1.LevelLengthRows.size(), 25U);
    EXPECT_EQ(short1.LevelLengthRows[1], "1");
    EXPECT_EQ(short1.LevelLengthRows[2], "0");
    EXPECT_EQ(short1.LevelLengthRows[3], "nan%");
}

TEST_F(ProjectStatisticsTest, GroupsOfDensityScoring) {
    // On 25 m: (2 + 3) x 100 / 25 = 20, so the condition is 5 and the index 3.5 + 0.6 + 0.3 + 1.5.
    const std::vector<SectionRecords> sections = {
        MakeSection("a", "W1", "W2", "99", "1200", {{"JG", 1, 1, 2}}),
        MakeSection("b", "W2", "W1", "99", "", {}),
        MakeSection("c", "w1", "w2", "99", "600", {{"JG", 1, 1, 3}}),
    };
    EXPECT_EQ(MakeGroupRowsGZ(GradeSections(ScoringRoute::Guangzhou, sections, 6, 10)),
              (Texts{"2",  //
                     "a",
                     "W1 - W2",
                     "PVC",
                     "1200",
                     "25",
                     "",
                     "6",
                     "6",
                     "10",
                     "5",
                     "0",
                     "5.9",
                     "0",  //
                     LoadMessage(2321),
                     LoadMessage(2323),  //
                     "b",
                     "W2 - W1",
                     "PVC",
                     "0",
                     "25",
                     "",
                     "6",
                     "0",
                     "10",
                     "0",
                     "0",
                     "0",
                     "0",  //
                     LoadMessage(2320),
                     LoadMessage(2323)}));
    EXPECT_EQ(MakeGroupRowsSH(GradeSections(ScoringRoute::Shanghai, sections, 6, 10)),
              (Texts{"2",  //
                     "a",
                     "W1 - W2",
                     "PVC",
                     "1200",
                     "25",
                     "",
                     "6",
                     "6",
                     "5",
                     "0",
                     "5.9",
                     "0",  //
                     LoadMessage(2367),
                     LoadMessage(2369),  //
                     "b",
                     "W2 - W1",
                     "PVC",
                     "0",
                     "25",
                     "",
                     "6",
                     "0",
                     "0",
                     "0",
                     "0",
                     "0",  //
                     LoadMessage(2366),
                     LoadMessage(2369)}));
}

}  // namespace
