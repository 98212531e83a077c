#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/CDbRec.h"
#include "store/criterionmaker.h"
#include "tests/support/CTestFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* Small =
    R"({"criterionName": "小规范", "note": 1, "defects": [
        {"code": "QF", "name": "起伏", "type": "GN", "levels": [
            {"level": 2, "description": "it's \"two\"", "score": 0.1}, {"level": 1, "description": "一", "score": 5}]},
        {"code": "GDZC", "name": "管道正常", "type": "JG", "levels": []},
        {"code": "JCJ_A", "name": "井", "type": "JCJ", "levels": [{"level": 4, "description": "d", "score": 10}]}]})";

TEST(CriterionTables, GradesHaveTheirPlaceInTheLists) {
    const CTestFolder folder;
    CDbRec database;
    ASSERT_TRUE(database.OpenDatabase(folder.MakeProject(), CDbPassword));
    int grade = 7;
    for (const char* score : {"7", "4", "2", "1", "0", "-1"}) {
        database.Execute("insert into DefectLevel values(\"X1\", " + std::to_string(grade) + ", \"grade " +
                         std::to_string(grade) + "\", " + score + ".5)");
        grade = grade == 7 ? 4 : (grade == 4 ? 2 : grade - 1);
    }
    std::vector<std::string> texts;
    std::vector<float> scores;
    EXPECT_TRUE(database.LoadDefectLevels("x1", &texts, &scores));
    EXPECT_EQ(texts, (std::vector<std::string>{"grade 1", "grade 2", "", "grade 4"}));
    EXPECT_EQ(scores, (std::vector<float>{1.5F, 2.5F, 0.0F, 4.5F}));
    texts.clear();
    EXPECT_TRUE(database.LoadDefectLevels("unknown", &texts, nullptr));
    EXPECT_TRUE(texts.empty());

    const int index = database.FindDefectIndex("gdzc");
    ASSERT_GE(index, 0);
    const auto at = static_cast<std::size_t>(index);
    EXPECT_EQ(database.DefectLabels[at], "(GDZC)" + database.DefectNames[at]);
    EXPECT_EQ(database.GetDefectType("pl"), "JG");
    EXPECT_EQ(database.GetDefectType("jcj_jgjzqs"), "JCJ");
    EXPECT_EQ(database.GetDefectType("PL "), "");
}

TEST(CriterionTables, FaultsOfADescriptionAreNamedWithTheirPlace) {
    struct Case {
        const char* From;
        const char* To;
        const char* Place;
    };
    constexpr Case cases[] = {
        {"小规范\"", "小规范\",,", "not valid JSON"},
        {"小规范", "a\\u0000b", "the document: \"criterionName\""},
        {"\"GDZC\"", "\"qf\"", "defect 2: "},
        {"\"JCJ\"", "\"jcj\"", "defect 3: \"type\""},
        {"\"level\": 4", "\"level\": 18446744073709551615", "defect 3 (JCJ_A), levels: \"level\""},
        {"\"level\": 2", "\"level\": 1", "defect 1 (QF): "},
        {"\"score\": 10", "\"score\": 1e39", "defect 3 (JCJ_A), levels: \"score\""},
    };
    for (const Case& c : cases) {
        std::string text = Small;
        text.replace(text.find(c.From), std::string(c.From).size(), c.To);
        try {
            (void)ParseCriterion(text);
            ADD_FAILURE() << c.To;
        } catch (const std::runtime_error& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(c.Place)) << error.what();
        }
    }
    EXPECT_THROW(ParseCriterion("\xFF"), std::runtime_error);
    EXPECT_THROW(ParseCriterion(std::string(100000, '[')), std::runtime_error);
}

}  // namespace
