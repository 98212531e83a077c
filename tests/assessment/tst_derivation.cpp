// The derivation of a grade says what the evaluation did, over sections made by chance.
#include "assessment/derivation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <random>

#include "assessment/evaluation.h"
#include "tests/support/CTestFolder.h"

namespace {

using Evaluator = int (*)(_EVALUATE_DATA&, const CRecDataArray&, float, float, float, float);
using Explainer = int (*)(_EVALUATE_DATA&, const CRecDataArray&, float, float, float, float, Derivation&);
constexpr std::array<Evaluator, 3> Evaluators{EvaluateSection, EvaluateSectionGZ, EvaluateSectionSH};
constexpr std::array<Explainer, 3> Explainers{ExplainSection, ExplainSectionGZ, ExplainSectionSH};

bool SameBits(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

float ValueOf(const std::vector<DerivedValue>& values, std::string_view name) {
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const DerivedValue& value) { return value.Name == name; });
    EXPECT_NE(found, values.end()) << name;
    return found == values.end() ? std::nanf("") : found->Value;
}

class DerivationTest : public testing::Test {
protected:
    int Number(int below) { return std::uniform_int_distribution(0, below - 1)(m_random); }

    CRecDataArray Records() {
        CRecDataArray records;
        for (int i = Number(12); i > 0; --i) {
            _REC_DATA record;
            record.ID = 100 + i;
            record.DefectType = std::array{"JG", "JG", "GN", "JCJ", ""}[static_cast<std::size_t>(Number(5))];
            record.DefectCode = Number(9) == 0 ? "GDZC" : "PL";
            record.DefectLevel = static_cast<std::uint8_t>(Number(5));
            record.Evaluate = static_cast<float>(std::array{0.0, 0.5, 2.0, 5.0, 10.0}[record.DefectLevel]);
            record.DistanceStart = static_cast<float>(Number(300)) / 10.0F;
            record.DistanceEnd = record.DistanceStart + static_cast<float>(Number(4) * Number(8)) / 10.0F;
            records.Add(record);
        }
        return records;
    }

    CTestFolder Folder;

private:
    std::mt19937 m_random{42};
};

void ExpectSame(const _EVALUATE_DATA& a, const _EVALUATE_DATA& b) {
    for (const EvaluationField& field : EvaluationFields()) {
        std::visit(
            [&](auto member) {
                if constexpr (std::is_same_v<decltype(member), float _EVALUATE_DATA::*>) {
                    EXPECT_TRUE(SameBits(a.*member, b.*member)) << field.Name;
                } else {
                    EXPECT_EQ(a.*member, b.*member) << field.Name;
                }
            },
            field.Member);
    }
}

// The items are what the records that count add up to.
void ExpectAddsUp(const CRecDataArray& records, const Derivation& derivation, bool structural) {
    const DerivedGroup& group = structural ? derivation.Structural : derivation.Functional;
    std::map<std::int32_t, DerivedItem> items;
    for (int i = 0; i < records.GetSize(); ++i) {
        const DerivedRecord& derived = derivation.Records[static_cast<std::size_t>(i)];
        EXPECT_EQ(derived.ID, records[i].ID);
        if (derived.Reason != CountReason::Counted || derived.Structural != structural) {
            continue;
        }
        const std::int32_t owner = derived.MergedInto < 0 ? derived.ID : derived.MergedInto;
        auto [item, fresh] = items.try_emplace(owner, DerivedItem{owner, records[i].DistanceStart});
        EXPECT_EQ(fresh, derived.MergedInto < 0);
        EXPECT_EQ(fresh || derived.Gap < 1.0F, true);
        item->second.End =
            fresh ? records[i].DistanceEnd : std::max(item->second.End, records[i].DistanceEnd);
        item->second.Score =
            fresh ? records[i].Evaluate : std::min(item->second.Score + records[i].Evaluate, 10.0F);
    }
    ASSERT_EQ(items.size(), group.Items.size());
    for (const DerivedItem& item : group.Items) {
        EXPECT_TRUE(SameBits(items[item.ID].Score, item.Score));
        EXPECT_TRUE(SameBits(items[item.ID].End, item.End));
    }
}

TEST_F(DerivationTest, EndsAtTheGradeToTheLastBit) {
    constexpr int sections = 100000;
    for (int i = 0; i < sections && !HasFailure(); ++i) {
        const CRecDataArray records = Records();
        const auto length = static_cast<float>(Number(60));
        const auto diameter = static_cast<float>(Number(18) * 100);
        const auto region = static_cast<float>(Number(11));
        const auto soil = static_cast<float>(Number(11));
        const auto route = static_cast<std::size_t>(i % 3);
        const bool full = route == 0;
        _EVALUATE_DATA plain;
        _EVALUATE_DATA told;
        Derivation derivation;
        Evaluators[route](plain, records, length, diameter, region, soil);
        Explainers[route](told, records, length, diameter, region, soil, derivation);
        ExpectSame(plain, told);
        EXPECT_TRUE(SameBits(ValueOf(derivation.Structural.Values, "ri"), plain.riJG));
        EXPECT_TRUE(SameBits(ValueOf(derivation.Structural.Values, "condition"), plain.conditionJG));
        EXPECT_TRUE(SameBits(ValueOf(derivation.Functional.Values, "ri"), plain.riGN));
        EXPECT_TRUE(SameBits(ValueOf(derivation.Functional.Values, "avg"), plain.avgGN));
        ASSERT_EQ(derivation.Records.size(), static_cast<std::size_t>(records.GetSize()));
        ASSERT_EQ(derivation.Bands.size(), full ? 4U : 2U);
        for (const DerivedBand& band : derivation.Bands) {
            EXPECT_TRUE(band.UpperBelongs ? band.Value <= band.Upper : band.Value < band.Upper) << band.Name;
            EXPECT_TRUE(band.Band == 0 ||
                        (band.UpperBelongs ? band.Value > band.Lower : band.Value >= band.Lower))
                << band.Name;
        }
        ExpectAddsUp(records, derivation, true);
        ExpectAddsUp(records, derivation, false);
        if (full) {
            EXPECT_EQ(derivation.Structural.Items.size(), plain.mergedJG);
        }
    }
}

TEST_F(DerivationTest, TellsWhyARecordDoesNotCount) {
    CRecDataArray records;
    const auto add = [&](std::int32_t id, const char* type, const char* code, float score, float start) {
        _REC_DATA record;
        record.ID = id;
        record.DefectType = type;
        record.DefectCode = code;
        record.Evaluate = score;
        record.DistanceStart = start;
        record.DistanceEnd = start;
        records.Add(record);
    };
    add(1, "JG", "PL", 5.0F, 1.0F);
    add(2, "JG", "gdzc", 0.0F, 1.0F);
    add(3, "JCJ", "JCJ_PS", 1.0F, 1.0F);
    add(4, "", "XX", 0.0F, 1.0F);
    add(5, "GN", "CJ", 0.0F, 1.0F);
    add(6, "JG", "BX", 2.0F, 1.9F);
    add(7, "JG", "BX", 2.0F, 3.0F);
    _EVALUATE_DATA result;
    Derivation derivation;
    (void)ExplainSection(result, records, 30.0F, 600.0F, 10.0F, 0.0F, derivation);
    const std::vector<DerivedRecord>& derived = derivation.Records;
    ASSERT_EQ(derived.size(), 7U);
    EXPECT_EQ(derived[1].Reason, CountReason::NoDefect);
    EXPECT_EQ(derived[2].Reason, CountReason::Manhole);
    EXPECT_EQ(derived[3].Reason, CountReason::OtherGroup);
    EXPECT_TRUE(derived[4].Weightless);
    EXPECT_EQ(derived[5].MergedInto, 1);
    EXPECT_FLOAT_EQ(derived[5].Gap, 0.9F);
    EXPECT_EQ(derived[6].MergedInto, -1);
    EXPECT_FLOAT_EQ(derived[6].Gap, 2.0F);
    ASSERT_EQ(derivation.Structural.Items.size(), 2U);
    EXPECT_FLOAT_EQ(derivation.Structural.Items[0].Score, 7.0F);
    EXPECT_TRUE(derivation.Structural.Items[0].Near);
    EXPECT_FLOAT_EQ(derivation.Structural.Items[1].Gap, 1.1F);
}

}  // namespace
