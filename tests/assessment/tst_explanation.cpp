#include "assessment/explain/explanation.h"

#include <gtest/gtest.h>

#include "assessment/explain/explanationtext.h"
#include "assessment/explain/projectgrades.h"
#include "shell/numbers.h"
#include "store/CDbRec.h"
#include "tests/support/CTestFolder.h"

namespace {

class ExplanationTest : public testing::Test {
protected:
    // Of a standard whose scores are the grades.
    static std::optional<float> ScoreOf(const _REC_DATA&, int grade) {
        return grade <= 4 ? std::optional(static_cast<float>(grade)) : std::nullopt;
    }
    void Add(SectionRecords& section, std::int32_t id, const char* type, int grade, float start) {
        _REC_DATA record;
        record.ID = id;
        record.DefectType = type;
        record.DefectCode = "PL";
        record.DefectLevel = static_cast<std::uint8_t>(grade);
        record.Evaluate = static_cast<float>(grade);
        record.DistanceStart = start;
        record.DistanceEnd = start;
        section.Records.Add(record);
    }
    SectionRecords& Section(std::int32_t id, const char* start, const char* end) {
        SectionRecords& section = Sections.emplace_back();
        section.Section.ID = id;
        section.Section.StartWell = start;
        section.Section.EndWell = end;
        section.Section.PipeLength = "40";
        section.Section.DistanceEnd = 40.0F;
        return section;
    }

    CTestFolder Folder;
    std::vector<SectionRecords> Sections;
};

TEST_F(ExplanationTest, TellsWhatEachRecordWeighsAndWhereTheOrderDecides) {
    SectionRecords& section = Section(7, "A", "B");
    // The second lies before the first: a distance backwards counts as none, so that they are merged.
    Add(section, 1, "JG", 4, 9.0F);
    Add(section, 2, "JG", 4, 2.0F);
    Add(section, 3, "JG", 1, 20.0F);
    Add(section, 4, "GN", 2, 5.0F);
    Section(8, "A", "B");

    const auto told = ExplainGrade(ScoringRoute::National, Sections, 7, 10.0F, 0.0F, ScoreOf);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->Sections, (std::vector<std::int32_t>{7}));
    EXPECT_EQ(told->HowItCame.Records[1].MergedInto, 1);
    EXPECT_FALSE(told->InOrder);
    ASSERT_TRUE(told->ByDistance);
    EXPECT_EQ(told->Grade.Result.maxJG, 8.0F);
    EXPECT_EQ(told->ByDistance->maxJG, 4.0F) << "apart they are milder";
    EXPECT_EQ(IdsByDistance(told->Grade.Records), (std::vector<std::int32_t>{2, 4, 1, 3}));

    ASSERT_EQ(told->Weights.size(), 4U);
    _EVALUATE_DATA without;
    CRecDataArray records = told->Grade.Records;
    records.RemoveAt(0);
    (void)EvaluateSection(without, records, 40.0F, 0.0F, 10.0F, 0.0F);
    EXPECT_EQ(told->Weights[0].Without.Index, without.riJG);
    EXPECT_EQ(told->Weights[0].Without.Level, without.riLevelJG);
    EXPECT_LT(told->Weights[0].Milder->Index, told->Grade.Result.riJG);
    EXPECT_FALSE(told->Weights[0].Graver) << "the standard has no grade 5";
    EXPECT_FALSE(told->Weights[2].Milder);
    EXPECT_FALSE(told->Weights[3].Structural);
    EXPECT_EQ(told->Weights[3].Without.Index, 0.0F);

    EXPECT_FALSE(ExplainGrade(ScoringRoute::National, Sections, 9, 10.0F, 0.0F, ScoreOf));
    EXPECT_FALSE(ExplainGrade(ScoringRoute::None, Sections, 7, 10.0F, 0.0F, ScoreOf));
}

TEST_F(ExplanationTest, TakesTheWholeGroupOfDensityScoring) {
    Add(Section(1, "a1", "b"), 1, "JG", 4, 30.0F);
    Section(2, "x", "y");
    Add(Section(3, "A1", "B"), 2, "JG", 4, 9.0F);
    const auto told = ExplainGrade(ScoringRoute::Shanghai, Sections, 3, 10.0F, 0.0F, ScoreOf);
    ASSERT_TRUE(told);
    EXPECT_EQ(told->Sections, (std::vector<std::int32_t>{1, 3}));
    EXPECT_EQ(told->HowItCame.Records.size(), 2U);
    EXPECT_FALSE(told->InOrder);
    EXPECT_FALSE(told->ByDistance) << "each defect counts by itself";
}

// What is read names each value that was computed, and each record where it counted, weighed or didn't count.
TEST_F(ExplanationTest, ReadsAsRowsOfBothLanguages) {
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(Folder.MakeProject(), CDbPassword));
    _TESTING_DATA section;
    section.StartWell = "A";
    section.EndWell = "B";
    section.PipeLength = "40";
    ASSERT_TRUE(database.AddTesting(section));
    for (const auto& [code, distance] :
         {std::pair("PL", 5.0F), {"PL", 5.5F}, {"CJ", 9.0F}, {"JCJ_ZC", 0.0F}}) {
        _REC_DATA record;
        record.TestingID = 1;
        record.DefectCode = code;
        record.DefectLevel = 3;
        record.DistanceStart = record.DistanceEnd = distance;
        ASSERT_TRUE(database.AddRecord(record));
    }
    CTestingDataArray sections;
    ASSERT_TRUE(database.ReadTestings(sections));
    const auto told = ReadExplanation(database, ScoringRoute::National, sections, 1, 10.0F, 0.0F);
    ASSERT_TRUE(told);
    for (const char* language : {"简体中文", "English"}) {
        Folder.UseLanguage(language);
        const std::vector<ExplanationRow> rows = ExplanationRows(*told, database, sections);
        std::map<std::int32_t, int> named;
        std::multiset<std::string> values;
        for (const ExplanationRow& row : rows) {
            EXPECT_FALSE(row.What.empty() && row.How.empty());
            EXPECT_EQ(row.Record >= 0, row.Section >= 0);
            EXPECT_EQ((row.What + row.How).find("%s"), std::string::npos) << row.How;
            named[row.Record] += row.Record >= 0 ? 1 : 0;
            values.insert(row.Value);
        }
        EXPECT_EQ(named[1], 3) << "as a record, after merging, and by its weight";
        EXPECT_EQ(named[2], 2) << "it is part of the first";
        EXPECT_EQ(named[4], 1) << "a manhole";
        for (const DerivedGroup* group : {&told->HowItCame.Structural, &told->HowItCame.Functional}) {
            for (const DerivedValue& value : group->Values) {
                EXPECT_TRUE(values.contains(FormatNumber(static_cast<double>(value.Value), 3))) << value.Name;
            }
        }
    }
}

}  // namespace
