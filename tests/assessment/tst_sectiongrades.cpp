#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "assessment/sectiongrades.h"
#include "shell/language.h"
#include "tests/assessment/defects.h"
#include "tests/support/CTestFolder.h"

namespace {

class SectionGrades : public testing::Test {
protected:
    CTestFolder m_folder;
};

SectionRecords MakeSection(std::int32_t id, const char* start, const char* end, const char* length,
                           const char* diameter, float distanceEnd, const std::vector<TestDefect>& defects) {
    SectionRecords section;
    section.Section.ID = id;
    section.Section.StartWell = start;
    section.Section.EndWell = end;
    section.Section.PipeLength = length;
    section.Section.PipeDiameter = diameter;
    section.Section.DistanceStart = 1.5F;
    section.Section.DistanceEnd = distanceEnd;
    section.Records = MakeRecords(defects);
    return section;
}

std::vector<SectionRecords> FiveSections() {
    return {MakeSection(1, "W1", "é2", "30 m", "DN800", 26.5F, {{"JG", 1, 1, 2}}),
            MakeSection(2, "é2", "W1", "", "1200", 51.5F, {{"GN", 1, 1, 5}}),
            MakeSection(3, "w1", "É2", "abc", "600mm", 99.0F, {{"JG", 1, 1, 3}, {"GN", 1, 1, 1}}),
            MakeSection(4, "W9", "W8", "12.3", "0", 1.5F, {{"JG", 1, 1, 4}}),
            MakeSection(5, "W1", "é2", "40", "2000", 99.0F, {{"JG", 1, 1, 5}})};
}

TEST_F(SectionGrades, FullScoringTakesEachSectionByItself) {
    const std::vector<SectionGrade> grades = GradeSections(ScoringRoute::National, FiveSections(), 6, 10);
    ASSERT_EQ(grades.size(), 5U);
    const float lengths[] = {30.0F, 0.0F, 0.0F, 12.3F, 40.0F};
    const float diameters[] = {0.0F, 1200.0F, 600.0F, 0.0F, 2000.0F};
    for (std::size_t i = 0; i < grades.size(); ++i) {
        EXPECT_EQ(grades[i].Section.ID, static_cast<std::int32_t>(i) + 1);
        EXPECT_EQ(grades[i].Length, lengths[i]);
        EXPECT_EQ(grades[i].Diameter, diameters[i]);
    }
    EXPECT_EQ(grades[2].Result.countJG, 1U);
    EXPECT_EQ(grades[2].Result.countGN, 1U);
    EXPECT_EQ(grades[2].Records.GetSize(), 2);
    EXPECT_EQ(grades[4].Result.paramK, 6.0F);
    EXPECT_EQ(grades[4].Result.paramE, 10.0F);
    EXPECT_EQ(grades[4].Result.paramT, 10.0F);
    EXPECT_EQ(grades[4].Result.mergedJG, 1U);
}

TEST_F(SectionGrades, DensityScoringJoinsSectionsBetweenTheSameManholes) {
    const std::vector<SectionGrade> grades = GradeSections(ScoringRoute::Guangzhou, FiveSections(), 6, 10);
    ASSERT_EQ(grades.size(), 3U);  // the way back from é2 to W1 is a group of its own

    EXPECT_EQ(grades[0].Section.ID, 1);
    EXPECT_EQ(grades[0].Length, 25.0F);  // by the counter, not by the text
    EXPECT_EQ(grades[0].Diameter, 0.0F);
    EXPECT_EQ(grades[0].Result.countJG, 3U);
    EXPECT_EQ(grades[0].Result.countGN, 1U);
    EXPECT_EQ(grades[0].Result.avgJG, 40.0F);  // (2 + 3 + 5) x 100 / 25
    ASSERT_EQ(grades[0].Records.GetSize(), 4);
    EXPECT_EQ(grades[0].Records[0].Evaluate, 2.0F);
    EXPECT_EQ(grades[0].Records[1].Evaluate, 3.0F);
    EXPECT_EQ(grades[0].Records[3].Evaluate, 5.0F);

    EXPECT_EQ(grades[1].Section.ID, 2);
    EXPECT_EQ(grades[1].Length, 50.0F);
    EXPECT_EQ(grades[1].Result.avgGN, 10.0F);

    EXPECT_EQ(grades[2].Section.ID, 4);
    EXPECT_EQ(grades[2].Length, 0.0F);
    EXPECT_EQ(grades[2].Result.avgJG, 0.0F);
}

}  // namespace
