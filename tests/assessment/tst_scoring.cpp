#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "assessment/evaluation.h"
#include "shell/language.h"
#include "tests/assessment/defects.h"
#include "tests/support/CTestFolder.h"

namespace {

class Scoring : public testing::Test {
protected:
    CTestFolder m_folder;
};

_EVALUATE_DATA Full(const std::vector<TestDefect>& defects, float L = 50.0F, float D = 0.0F, float K = 0.0F,
                    float T = 0.0F) {
    _EVALUATE_DATA result;
    EXPECT_EQ(EvaluateSection(result, MakeRecords(defects), L, D, K, T), 1);
    return result;
}

_EVALUATE_DATA Density(const std::vector<TestDefect>& defects, float L, float D = 0.0F, float K = 0.0F,
                       float T = 0.0F) {
    _EVALUATE_DATA result;
    EXPECT_EQ(EvaluateSectionGZ(result, MakeRecords(defects), L, D, K, T), 1);
    return result;
}

float Above(float value) {
    return std::nextafter(value, INFINITY);
}

float Below(float value) {
    return std::nextafter(value, -INFINITY);
}

std::string Message(int number) {
    std::string text = LoadMessage(number);
    EXPECT_FALSE(text.empty()) << number;  // else all comparisons with it would be hollow
    return text;
}

TEST_F(Scoring, ThreeDefectsOfWhichTwoMerge) {
    const _EVALUATE_DATA result =
        Full({{"JG", 5.0F, 5.0F, 5.0F}, {"JG", 5.5F, 6.0F, 2.0F}, {"JG", 7.2F, 7.2F, 1.0F}}, 50, 800, 6, 0);
    EXPECT_EQ(result.countJG, 3U);
    EXPECT_EQ(result.mergedJG, 2U);
    EXPECT_EQ(result.maxJG, 7.0F);
    EXPECT_EQ(result.avgJG, 4.4F);
    EXPECT_EQ(result.conditionJG, 7.0F);
    EXPECT_EQ(result.smJG, 0.035F);
    EXPECT_EQ(result.paramE, 3.0F);
    EXPECT_EQ(result.riJG, 5.65F);
    EXPECT_EQ(result.levelJG, Message(2334));
    EXPECT_EQ(result.levelDescJG, Message(2338));
    EXPECT_EQ(result.riLevelJG, Message(2333));
    EXPECT_EQ(result.EvaluatethisJG, Message(2341));
}

// The expectations come from a separate calculation in exact arithmetic that rounds to the nearest 32-bit
// float after each single operation. The lists were picked from thousands of random ones: each comes out
// differently in 64-bit arithmetic, and between them they notice 64-bit constants, fused operations and
// another order of the operations.
TEST_F(Scoring, IsExactToTheLastBit) {
    struct Given {
        float L, D, K, T;
    };
    struct Ratings {
        float Average, Max, Condition, Density, Index;
    };
    struct Case {
        int (*Evaluate)(_EVALUATE_DATA&, const CRecDataArray&, float, float, float, float);
        Given Section;
        std::vector<TestDefect> Defects;
        Ratings JG, GN;
    };
    const Case cases[] = {
        {EvaluateSection,
         {34.1F, 1200.0F, 6.0F, 6.0F},
         {{"GN", 4.27F, 6.04F, 1.0F},
          {"JG", 12.04F, 15.04F, 2.5F},
          {"GN", 15.48F, 15.48F, 7.21F},
          {"JG", 16.78F, 17.98F, 0.2F},
          {"JG", 19.01F, 19.01F, 1.62F},
          {"JG", 20.11F, 22.98F, 4.79F}},
         {0x1.38ac08p+1F, 0x1.328f5cp+2F, 0x1.328f5cp+2F, 0x1.1957f2p-2F, 0x1.49cac2p+2F},
         {0x1.06b852p+2F, 0x1.cd70a4p+2F, 0x1.cd70a4p+2F, 0x1.9e56cp-7F, 0x1.bdf3b8p+2F}},
        {EvaluateSection,
         {13.3F, 600.0F, 6.0F, 0.0F},
         {{"GN", 1.6F, 2.8F, 0.5F},
          {"JG", 4.4F, 4.7F, 2.0F},
          {"JG", 5.4F, 5.4F, 0.0F},
          {"JG", 6.4F, 6.8F, 2.0F},
          {"GN", 8.3F, 9.5F, 10.0F}},
         {0x1.19999ap+1F, 0x1p+1F, 0x1.19999ap+1F, 0x1.af286ep-4F, 0x1.8a3d7p+0F},
         {0x1.5p+2F, 0x1.4p+3F, 0x1.4p+3F, 0x1.719058p-3F, 0x1.219998p+3F}},
        {EvaluateSection,
         {57.6F, 1200.0F, 6.0F, 10.0F},
         {{"JG", 2.75F, 2.75F, 5.0F},
          {"JG", 3.75F, 5.0F, 5.0F},
          {"JG", 5.0F, 7.0F, 10.0F},
          {"GN", 8.0F, 8.0F, 4.74F},
          {"JG", 9.0F, 9.0F, 4.74F},
          {"JG", 11.5F, 12.0F, 2.5F}},
         {0x1.7bd70ap+2F, 0x1.4p+3F, 0x1.4p+3F, 0x1.c14fep-4F, 0x1.2cccccp+3F},
         {0x1.2f5c28p+2F, 0x1.2f5c28p+2F, 0x1.2f5c28p+2F, 0.0F, 0x1.3f7ceep+2F}},
        {EvaluateSectionSH,
         {44.1F, 1200.0F, 3.0F, 0.0F},
         {{"JG", 2.01F, 2.34F, 10.0F},
          {"GN", 2.78F, 5.56F, 2.0F},
          {"GN", 5.56F, 5.56F, 4.74F},
          {"GN", 6.46F, 7.66F, 0.5F},
          {"JG", 8.51F, 8.91F, 2.0F},
          {"JG", 9.81F, 12.81F, 1.0F},
          {"JG", 14.31F, 15.51F, 2.0F},
          {"JG", 16.61F, 19.61F, 5.0F}},
         {0x1.25e0aap+6F, 0x1.4p+3F, 0x1.4p+3F, 0.0F, 0x1.e66668p+2F},
         {0x1.8b7702p+4F, 0x1.2f5c28p+2F, 0x1.8b7702p+2F, 0.0F, 0x1.6c5f36p+2F}},
        {EvaluateSectionSH,
         {59.1F, 1200.0F, 6.0F, 6.0F},
         {{"GN", 1.7F, 2.1F, 4.74F},
          {"JG", 3.6F, 5.8F, 1.0F},
          {"JG", 6.1F, 7.6F, 0.0F},
          {"JG", 7.9F, 7.9F, 4.74F},
          {"JG", 9.0F, 9.0F, 3.92F}},
         {0x1.26029ap+4F, 0x1.2f5c28p+2F, 0x1.26029ap+2F, 0.0F, 0x1.4101d4p+2F},
         {0x1.00a656p+3F, 0x1.2f5c28p+2F, 0x1.00a656p+1F, 0.0F, 0x1.9aa3bep+0F}},
    };
    for (const Case& c : cases) {
        const Given& given = c.Section;
        SCOPED_TRACE(testing::Message() << "section of " << given.L << " m");
        _EVALUATE_DATA result;
        c.Evaluate(result, MakeRecords(c.Defects), given.L, given.D, given.K, given.T);
        EXPECT_EQ(result.avgJG, c.JG.Average);
        EXPECT_EQ(result.maxJG, c.JG.Max);
        EXPECT_EQ(result.conditionJG, c.JG.Condition);
        EXPECT_EQ(result.smJG, c.JG.Density);
        EXPECT_EQ(result.riJG, c.JG.Index);
        EXPECT_EQ(result.avgGN, c.GN.Average);
        EXPECT_EQ(result.maxGN, c.GN.Max);
        EXPECT_EQ(result.conditionGN, c.GN.Condition);
        EXPECT_EQ(result.smGN, c.GN.Density);
        EXPECT_EQ(result.riGN, c.GN.Index);
    }
}

TEST_F(Scoring, SelectsByClassAndLeavesOutNormalPipes) {
    const _EVALUATE_DATA result = Full({{"jg", 1, 1, 2, 2},
                                        {"JG", 10, 10, 9, 9, "gdzc"},
                                        {"GN", 20, 20, 9, 9, "GDZC"},
                                        {"JCJ", 30, 30, 9, 9},
                                        {"", 35, 35, 9, 9},
                                        {"Gn", 40, 40, 1, 3},
                                        {"GN", 45, 45, 3, 1}});
    EXPECT_EQ(result.countJG, 1U);
    EXPECT_EQ(result.mergedJG, 1U);
    EXPECT_EQ(result.maxJG, 2.0F);
    EXPECT_EQ(result.avgJG, 2.0F);
    EXPECT_EQ(result.maxGradeJG, 2);
    EXPECT_EQ(result.countGN, 2U);
    EXPECT_EQ(result.mergedGN, 2U);
    EXPECT_EQ(result.maxGN, 3.0F);
    EXPECT_EQ(result.avgGN, 2.0F);
    EXPECT_EQ(result.maxGradeGN, 3);
}

TEST_F(Scoring, MergesWhatFollowsCloseBehindTheFirstOfARun) {
    const auto merged = [](const std::vector<TestDefect>& defects) { return Full(defects).mergedJG; };
    EXPECT_EQ(merged({{"JG", 2, 2, 1}, {"JG", 3, 3, 1}}), 2U);
    EXPECT_EQ(merged({{"JG", 2, 2, 1}, {"JG", 2.99F, 2.99F, 1}}), 1U);
    EXPECT_EQ(merged({{"JG", 2, 8, 1}, {"JG", 4, 5, 1}}), 1U);
    EXPECT_EQ(merged({{"JG", 1, 1, 1}, {"JG", 1.5F, 1.5F, 1}, {"JG", 1.9F, 1.9F, 1}}), 1U);
    // 0.3 m behind the grown end, but 1.2 m behind the end of the first.
    EXPECT_EQ(merged({{"JG", 1, 1, 1}, {"JG", 1.5F, 1.5F, 1}, {"JG", 1.9F, 1.9F, 1}, {"JG", 2.2F, 2.2F, 1}}),
              2U);
    // A second run is measured against its own first.
    EXPECT_EQ(merged({{"JG", 1, 1, 1}, {"JG", 1.5F, 1.5F, 1}, {"JG", 9, 9, 1}, {"JG", 9.9F, 9.9F, 1}}), 2U);
    // Nothing sorts: what lies before the former one counts as overlapping.
    EXPECT_EQ(merged({{"JG", 9, 9, 1}, {"JG", 1, 1, 1}}), 1U);
    // Structural and functional defects don't see each other.
    EXPECT_EQ(merged({{"JG", 1, 1, 1}, {"GN", 1.5F, 1.5F, 1}, {"JG", 2, 2, 1}}), 2U);
}

TEST_F(Scoring, MergedScoreStopsAtTen) {
    EXPECT_EQ(Full(std::vector<TestDefect>(10, {"JG", 4, 4, 3})).maxJG, 10.0F);
    EXPECT_EQ(Full({{"JG", 4, 4, 12}}).maxJG, 12.0F);  // of a single defect the standard's score stands
}

TEST_F(Scoring, NeighboursWeighMoreUpToOneAndAHalfMetres) {
    EXPECT_EQ(Full({{"JG", 2, 2, 2}, {"JG", 3.5F, 3.5F, 2}}).avgJG, 2.2F);
    EXPECT_EQ(Full({{"JG", 2, 2, 2}, {"JG", Above(3.5F), 4, 2}}).avgJG, 2.0F);
    // In a chain each one moves over once: 1.1 x 6 / 3.
    EXPECT_EQ(Full({{"JG", 1, 1, 2}, {"JG", 2.25F, 2.25F, 2}, {"JG", 3.5F, 3.5F, 2}}).avgJG, 2.2F);
    // Far, far, near, far: (1.1 x 4 + 4) / 4.
    EXPECT_EQ(Full({{"JG", 1, 1, 2}, {"JG", 9, 9, 2}, {"JG", 10.25F, 10.25F, 2}, {"JG", 20, 20, 2}}).avgJG,
              2.1F);
    // The first two merge to 1 to 6 with score 2; the third isn't merged, since it lies 2 m behind the
    // first, but it overlaps the merged one: 1.1 x 4 / 2.
    EXPECT_EQ(Full({{"JG", 1, 1, 1}, {"JG", 1.5F, 6, 1}, {"JG", 3, 3, 2}}).avgJG, 2.2F);
}

TEST_F(Scoring, PointDefectCountsAsAMetreOnlyWhenItMovesOver) {
    // First: far 4, far length 4 x 0 = 0. It moves over as 1 m long: far length 0 - 4 = -4, near length 4.
    // Second, 2 m long: near 6, near length 4 + 2 x 2 = 8. Mean 1.1 x 6 / 2 = 3.3.
    // Density (1.1 x 8 - 4) / (3.3 x 10) = 4.8 / 33.
    const _EVALUATE_DATA longer = Full({{"JG", 10, 10, 4}, {"JG", 11.25F, 13.25F, 2}}, 10);
    EXPECT_FLOAT_EQ(longer.avgJG, 3.3F);
    EXPECT_FLOAT_EQ(longer.smJG, 4.8F / 33.0F);
    // The other way round the point is the second and adds nothing:
    // (1.1 x (2 x 2) + (4 - 4)) / (3.3 x 10) = 4.4 / 33.
    EXPECT_FLOAT_EQ(Full({{"JG", 8, 10, 2}, {"JG", 11.25F, 11.25F, 4}}, 10).smJG, 4.4F / 33.0F);
    // A point far from all others adds nothing to the density either.
    EXPECT_EQ(Full({{"JG", 10, 10, 4}}, 10).smJG, 0.0F);
}

TEST_F(Scoring, FullLevelsIncludeTheirUpperBound) {
    // With K, E and T at 0 the indexes are 0.7 and 0.8 times the score.
    struct Edge {
        float Score;
        int Band;
    };
    const auto check = [](const Edge& edge, int label, int text,
                          const std::string _EVALUATE_DATA::*labelField,
                          const std::string _EVALUATE_DATA::*textField, const char* type) {
        SCOPED_TRACE(testing::Message() << type << " " << edge.Score);
        const _EVALUATE_DATA at = Full({{type, 5, 5, edge.Score}});
        EXPECT_EQ(at.*labelField, Message(label + edge.Band));
        EXPECT_EQ(at.*textField, Message(text + edge.Band));
        const _EVALUATE_DATA above = Full({{type, 5, 5, Above(edge.Score)}});
        EXPECT_EQ(above.*labelField, Message(label + edge.Band + 1));
        EXPECT_EQ(above.*textField, Message(text + edge.Band + 1));
    };
    using Data = _EVALUATE_DATA;
    for (const Edge& edge : {Edge{1, 0}, Edge{3, 1}, Edge{6, 2}}) {
        check(edge, 2331, 2335, &Data::levelJG, &Data::levelDescJG, "JG");
        check(edge, 2331, 2343, &Data::levelGN, &Data::levelDescGN, "GN");
    }
    for (const Edge& edge : {Edge{1.4285715F, 0}, Edge{5.714286F, 1}, Edge{10, 2}}) {
        check(edge, 2331, 2339, &Data::riLevelJG, &Data::EvaluatethisJG, "JG");
    }
    for (const Edge& edge : {Edge{1.25F, 0}, Edge{5, 1}, Edge{8.75F, 2}}) {
        check(edge, 2331, 2347, &Data::riLevelGN, &Data::EvaluatethisGN, "GN");
    }
}

TEST_F(Scoring, ParametersCountFromTheirConditionOn) {
    const auto index = [](float _EVALUATE_DATA::*field, const char* type, float score, float D, float K,
                          float T) {
        return Full({{type, 5, 5, score}}, 50, D, K, T).*field;
    };
    const auto riJG = &_EVALUATE_DATA::riJG;
    const auto riGN = &_EVALUATE_DATA::riGN;
    EXPECT_FLOAT_EQ(index(riJG, "JG", 3.99F, 2000, 10, 0), 2.793F);
    EXPECT_FLOAT_EQ(index(riJG, "JG", 4, 2000, 10, 0), 2.8F + 1.0F + 0.5F);
    EXPECT_FLOAT_EQ(index(riJG, "JG", 0.5F, 2000, 10, 8), 0.35F + 1.2F);
    EXPECT_EQ(index(riJG, "JG", 0, 2000, 10, 8), 0.0F);
    EXPECT_FLOAT_EQ(index(riGN, "GN", 3.99F, 2000, 10, 8), 3.192F);
    EXPECT_FLOAT_EQ(index(riGN, "GN", 4, 2000, 10, 8), 3.2F + 1.5F + 0.5F);
    // Each rating asks its own condition.
    EXPECT_EQ(index(riGN, "JG", 9, 2000, 10, 8), 0.0F);
    EXPECT_EQ(index(riJG, "GN", 9, 2000, 10, 8), 0.0F);

    const auto E = [](float D) { return Full({}, 50, D).paramE; };
    EXPECT_EQ(E(0), 0.0F);
    EXPECT_EQ(E(Below(600)), 0.0F);
    EXPECT_EQ(E(600), 3.0F);
    EXPECT_EQ(E(1000), 3.0F);
    EXPECT_EQ(E(Above(1000)), 6.0F);
    EXPECT_EQ(E(1500), 6.0F);
    EXPECT_EQ(E(Above(1500)), 10.0F);
}

TEST_F(Scoring, SectionWithoutDefectsIsOfTheBestLevel) {
    _EVALUATE_DATA result = Full({{"JG", 1, 4, 9}, {"GN", 1, 4, 9}});
    EvaluateSection(result, MakeRecords({{"JG", 1, 1, 9, 1, "GDZC"}}), 50, 800, 6, 8);
    EXPECT_EQ(result.countJG + result.countGN + result.mergedJG + result.mergedGN, 0U);
    for (const float value : {result.avgJG, result.maxJG, result.conditionJG, result.smJG, result.riJG,
                              result.avgGN, result.maxGN, result.conditionGN, result.smGN, result.riGN}) {
        EXPECT_EQ(value, 0.0F);
    }
    EXPECT_EQ(result.paramK, 6.0F);
    EXPECT_EQ(result.paramE, 3.0F);
    EXPECT_EQ(result.paramT, 8.0F);
    EXPECT_EQ(result.levelJG, Message(2331));
    EXPECT_EQ(result.EvaluatethisJG, Message(2339));
    EXPECT_EQ(result.levelGN, Message(2331));
    EXPECT_EQ(result.EvaluatethisGN, Message(2347));
}

TEST_F(Scoring, SectionWithoutLengthHasNoDensity) {
    const std::vector<TestDefect> defects = {{"JG", 1, 4, 5}, {"GN", 1, 4, 5}};
    const _EVALUATE_DATA full = Full(defects, 0);
    EXPECT_EQ(full.smJG, 0.0F);
    EXPECT_EQ(full.smGN, 0.0F);
    EXPECT_EQ(full.conditionJG, 5.0F);
    const _EVALUATE_DATA density = Density(defects, 0);
    EXPECT_EQ(density.avgJG, 0.0F);
    EXPECT_EQ(density.avgGN, 0.0F);
    EXPECT_EQ(density.conditionJG, 0.0F);
    EXPECT_EQ(density.maxJG, 5.0F);
}

TEST_F(Scoring, DensityTakesEachDefectByItself) {
    // Neither merged nor weighted by nearness: (2 x 1 + 3 x 1 + 4 x 2.5) x 100 / 100.
    const _EVALUATE_DATA result = Density({{"JG", 1, 1, 2, 3},
                                           {"JG", 1.2F, 1.5F, 3, 1},
                                           {"JG", 1.5F, 4, 4, 2},
                                           {"GN", 1, 2, 5, 4},
                                           {"JG", 1, 9, 9, 9, "gdzc"}},
                                          100, 800, 6, 10);
    EXPECT_EQ(result.avgJG, 15.0F);
    EXPECT_EQ(result.conditionJG, 3.75F);
    EXPECT_EQ(result.maxJG, 4.0F);
    EXPECT_EQ(result.countJG, 3U);
    EXPECT_EQ(result.maxGradeJG, 3);
    EXPECT_EQ(result.avgGN, 5.0F);
    EXPECT_EQ(result.countGN, 1U);
    EXPECT_EQ(result.maxGradeGN, 4);
    EXPECT_FLOAT_EQ(result.riJG, 2.625F + 1.5F);
    EXPECT_EQ(result.riGN, 1.0F);
    EXPECT_EQ(result.mergedJG + result.mergedGN, 0U);
    EXPECT_EQ(result.smJG, 0.0F);
    EXPECT_EQ(result.levelJG + result.levelDescJG + result.levelGN + result.levelDescGN, "");

    EXPECT_EQ(Density({{"JG", 1, 1, 10}}, 25).avgJG, 40.0F);
    EXPECT_EQ(Density({{"JG", 1, 1, 10}}, 25).conditionJG, 10.0F);
    EXPECT_EQ(Density({{"JG", 1, 1, 12}}, 25).conditionJG, 10.0F);
    EXPECT_LT(Density({{"JG", 1, 1, Below(10)}}, 25).conditionJG, 10.0F);
}

TEST_F(Scoring, DensityLevelsBeginAtTheirLowerBound) {
    // On 25 m a point's condition is its score, so that the indexes are 0.7 and 0.8 times the score.
    struct Edge {
        float JG, GN;
        int Band;
    };
    for (const Edge& edge : {Edge{5.714286F, 5, 1}, Edge{10, 8.75F, 2}}) {
        for (const int step : {-1, 0}) {
            SCOPED_TRACE(testing::Message() << edge.JG << " " << step);
            const CRecDataArray records = MakeRecords({{"JG", 1, 1, step < 0 ? Below(edge.JG) : edge.JG},
                                                       {"GN", 1, 1, step < 0 ? Below(edge.GN) : edge.GN}});
            const int band = edge.Band + step;
            _EVALUATE_DATA gz;
            EvaluateSectionGZ(gz, records, 25, 0, 0, 0);
            EXPECT_EQ(gz.riLevelJG, Message(2311 + band));
            EXPECT_EQ(gz.EvaluatethisJG, Message(2320 + band));
            EXPECT_EQ(gz.riLevelGN, Message(2311 + band));
            EXPECT_EQ(gz.EvaluatethisGN, Message(2323 + band));
            _EVALUATE_DATA sh;
            EvaluateSectionSH(sh, records, 25, 0, 0, 0);
            EXPECT_EQ(sh.riLevelJG, Message(2311 + band));
            EXPECT_EQ(sh.EvaluatethisJG, Message(2366 + band));
            EXPECT_EQ(sh.riLevelGN, Message(2311 + band));
            EXPECT_EQ(sh.EvaluatethisGN, Message(2369 + band));
        }
    }
}

}  // namespace
