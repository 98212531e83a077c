#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "assessment/standards.h"
#include "shell/language.h"
#include "tests/support/CTestFolder.h"

namespace {

class Standards : public testing::Test {
protected:
    CTestFolder m_folder;
};

std::vector<float> Values(std::span<const ParameterRow> rows, int firstMessage) {
    std::vector<float> values;
    for (const ParameterRow& row : rows) {
        EXPECT_EQ(row.Message, firstMessage++);
        EXPECT_FALSE(LoadMessage(row.Message).empty()) << row.Message;
        values.push_back(row.Value);
    }
    return values;
}

TEST_F(Standards, AreFoundByName) {
    EXPECT_EQ(FindScoringRoute(LoadMessage(2150)), ScoringRoute::National);
    EXPECT_EQ(FindScoringRoute(LoadMessage(2700)), ScoringRoute::ListsOnly);
    EXPECT_EQ(FindScoringRoute(LoadMessage(2151)), ScoringRoute::Guangzhou);
    EXPECT_EQ(FindScoringRoute(LoadMessage(2152)), ScoringRoute::Shanghai);
    EXPECT_EQ(FindScoringRoute("重庆规范"), ScoringRoute::Chongqing);

    // As the databases of the standards carry them; "cjj" in the other case.
    EXPECT_EQ(FindScoringRoute("cjj 181-2012 城镇排水管道检测与评估技术规程"), ScoringRoute::National);
    EXPECT_EQ(FindScoringRoute("广州市公共排水管道电视和声纳检测评估技术规程"), ScoringRoute::Guangzhou);
    EXPECT_EQ(FindScoringRoute("db31/t 444-2009 排水管道电视和声纳检测评估技术规程"), ScoringRoute::Shanghai);

    EXPECT_EQ(FindScoringRoute("重庆规范 "), ScoringRoute::None);
    EXPECT_EQ(FindScoringRoute("CJJ 181-2012"), ScoringRoute::None);
    EXPECT_EQ(FindScoringRoute(""), ScoringRoute::None);
}

TEST_F(Standards, OfferTheirParameters) {
    const std::vector<float> k = {10, 6, 3, 0};
    const std::vector<float> soils = {0, 10, 10, 8, 6, 10, 8, 6, 10, 8, 8};
    for (const ScoringRoute route :
         {ScoringRoute::National, ScoringRoute::ListsOnly, ScoringRoute::Chongqing}) {
        EXPECT_EQ(Values(ParametersK(route), 2351), k);
        EXPECT_EQ(Values(ParametersT(route), 2355), soils);
    }
    EXPECT_EQ(Values(ParametersK(ScoringRoute::Guangzhou), 2300), k);
    EXPECT_EQ(Values(ParametersT(ScoringRoute::Guangzhou), 2304), (std::vector<float>{0, 10}));
    EXPECT_EQ(Values(ParametersK(ScoringRoute::Shanghai), 2372), k);
    EXPECT_EQ(Values(ParametersT(ScoringRoute::Shanghai), 2376), (std::vector<float>{0, 10}));
    EXPECT_TRUE(ParametersK(ScoringRoute::None).empty());
    EXPECT_TRUE(ParametersT(ScoringRoute::None).empty());
}

}  // namespace
