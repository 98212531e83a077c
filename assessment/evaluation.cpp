#include "assessment/evaluation.h"

#include <algorithm>
#include <cfloat>
#include <vector>

#include "shell/language.h"

// Where the machine computes floats in wider registers, levels would change at their edges.
static_assert(FLT_EVAL_METHOD == 0);

namespace {

constexpr float MergeGap = 1.0F;  // metres; nearer defects are taken for one
constexpr float NearGap = 1.5F;   // metres; up to here neighbours make each other worse
constexpr float NearWeight = 1.1F;
constexpr float MaxScore = 10.0F;    // one place can't be worse
constexpr float MinLength = 1.0F;    // metres that a point defect counts
constexpr float SeriousFrom = 4.0F;  // below, region and diameter don't make a repair more urgent
constexpr float MaxDensity = 40.0F;  // from here the condition is MaxScore

// Numbers of messages; those of one list follow each other from the best band to the worst.
constexpr int FullLabels = 2331;
constexpr int FullConditionTextsJG = 2335;
constexpr int FullRepairTextsJG = 2339;
constexpr int FullConditionTextsGN = 2343;
constexpr int FullRepairTextsGN = 2347;
constexpr int DensityLabels = 2311;

struct DensityTexts {
    int FirstJG;
    int FirstGN;
};
constexpr DensityTexts GuangzhouTexts = {2320, 2323};
constexpr DensityTexts ShanghaiTexts = {2366, 2369};

struct _DEFECT_ITEM {
    std::uint8_t grade;
    float start;  // metres
    float end;
    float score;
};

using ItemList = std::vector<_DEFECT_ITEM>;

struct SelectedItems {
    ItemList Structural;
    ItemList Functional;
};

// What full scoring says about the defects of one group.
struct GroupCondition {
    std::uint32_t Merged = 0;
    float Max = 0.0F;
    float Average = 0.0F;
    float Value = 0.0F;
    float Density = 0.0F;
};

struct NearFarSums {
    float Far = 0.0F;        // scores
    float FarLength = 0.0F;  // scores times metres
    float Near = 0.0F;
    float NearLength = 0.0F;
};

SelectedItems SelectItems(const CRecDataArray& records) {
    SelectedItems items;
    for (const _REC_DATA& record : records) {
        const bool structural = record.IsJG();
        if ((structural || record.IsGN()) && !record.IsPipeNormal()) {
            (structural ? items.Structural : items.Functional)
                .push_back({record.DefectLevel, record.DistanceStart, record.DistanceEnd, record.Evaluate});
        }
    }
    return items;
}

std::uint32_t Count(const ItemList& items) {
    return static_cast<std::uint32_t>(items.size());
}

std::int32_t MaxGrade(const ItemList& items) {
    std::int32_t grade = 0;
    for (const _DEFECT_ITEM& item : items) {
        grade = std::max<std::int32_t>(grade, item.grade);
    }
    return grade;
}

float MaxScoreOf(const ItemList& items) {
    float score = 0.0F;
    for (const _DEFECT_ITEM& item : items) {
        score = std::max(score, item.score);
    }
    return score;
}

// Makes one item of a defect and those that follow close behind. All are measured against the end of the
// first, not against the end grown so far: else a row of small defects would grow into one over the whole
// section, with a score of one place. An overlap is a negative distance and merges as well.
ItemList MergeClose(const ItemList& items) {
    ItemList merged;
    float anchor = 0.0F;
    for (const _DEFECT_ITEM& item : items) {
        if (!merged.empty() && item.start - anchor < MergeGap) {
            _DEFECT_ITEM& last = merged.back();
            last.end = std::max(last.end, item.end);
            last.score = std::min(last.score + item.score, MaxScore);
        } else {
            merged.push_back(item);
            anchor = item.end;
        }
    }
    return merged;
}

float Gap(const _DEFECT_ITEM& before, const _DEFECT_ITEM& after) {
    return before.end > after.start ? 0.0F : after.start - before.end;
}

NearFarSums SumByDistance(const ItemList& items) {
    NearFarSums sums;
    const _DEFECT_ITEM* previous = nullptr;
    bool previousNear = false;
    for (const _DEFECT_ITEM& item : items) {
        const float length = item.end - item.start;
        if (previous == nullptr || Gap(*previous, item) > NearGap) {
            sums.Far += item.score;
            sums.FarLength += item.score * length;
            previousNear = false;
        } else {
            if (!previousNear) {
                // The neighbour was counted as far and moves over. Only here a point defect counts as a
                // metre, so that more may be taken away from the far lengths than was put there: the
                // sum may fall below zero. The densities that this gives are the ones in use.
                const float moved = std::max(previous->end - previous->start, MinLength);
                sums.Far -= previous->score;
                sums.FarLength -= previous->score * moved;
                sums.Near += previous->score;
                sums.NearLength += previous->score * moved;
            }
            sums.Near += item.score;
            sums.NearLength += item.score * length;
            previousNear = true;
        }
        previous = &item;
    }
    return sums;
}

GroupCondition ConditionOf(const ItemList& items, float L) {
    const ItemList merged = MergeClose(items);
    const NearFarSums sums = SumByDistance(merged);
    GroupCondition condition;
    condition.Merged = Count(merged);
    condition.Max = MaxScoreOf(merged);
    if (!merged.empty()) {
        condition.Average = (NearWeight * sums.Near + sums.Far) / static_cast<float>(merged.size());
    }
    condition.Value = condition.Max > condition.Average ? condition.Max : condition.Average;
    const float weight = condition.Average * L;
    if (weight != 0.0F) {
        condition.Density = (NearWeight * sums.NearLength + sums.FarLength) / weight;
    }
    return condition;
}

float DiameterParameter(float D) {
    if (D > 1500.0F) {
        return 10.0F;
    }
    if (D > 1000.0F) {
        return 6.0F;
    }
    return D >= 600.0F ? 3.0F : 0.0F;
}

// From the conditions, which must be there.
void FillIndexes(_EVALUATE_DATA& result, float D, float K, float T) {
    result.paramK = K;
    result.paramE = DiameterParameter(D);
    result.paramT = T;

    const bool slightJG = result.conditionJG < SeriousFrom;
    const float regionJG = slightJG ? 0.0F : K;
    const float diameterJG = slightJG ? 0.0F : result.paramE;
    const float soil = result.conditionJG == 0.0F ? 0.0F : T;
    result.riJG = 0.7F * result.conditionJG + 0.1F * regionJG + 0.05F * diameterJG + 0.15F * soil;

    const bool slightGN = result.conditionGN < SeriousFrom;
    const float regionGN = slightGN ? 0.0F : K;
    const float diameterGN = slightGN ? 0.0F : result.paramE;
    result.riGN = 0.8F * result.conditionGN + 0.15F * regionGN + 0.05F * diameterGN;
}

// The bounds belong to the lower band.
int FullBand(float value, float first, float second, float third) {
    if (value <= first) {
        return 0;
    }
    if (value <= second) {
        return 1;
    }
    return value <= third ? 2 : 3;
}

int ConditionBand(float condition) {
    return FullBand(condition, 1.0F, 3.0F, 6.0F);
}

int RepairBand(float index) {
    return FullBand(index, 1.0F, 4.0F, 7.0F);
}

// The bounds belong to the upper band.
int DensityBand(float index) {
    if (index < 4.0F) {
        return 0;
    }
    return index < 7.0F ? 1 : 2;
}

// A section without defects has levels too, the best ones; whether a report shows them is its own affair.
void FillFullLevels(_EVALUATE_DATA& result) {
    const int conditionJG = ConditionBand(result.conditionJG);
    result.levelJG = LoadMessage(FullLabels + conditionJG);
    result.levelDescJG = LoadMessage(FullConditionTextsJG + conditionJG);
    result.riLevelJG = FullIndexLevel(result.riJG);
    result.EvaluatethisJG = LoadMessage(FullRepairTextsJG + RepairBand(result.riJG));

    const int conditionGN = ConditionBand(result.conditionGN);
    result.levelGN = LoadMessage(FullLabels + conditionGN);
    result.levelDescGN = LoadMessage(FullConditionTextsGN + conditionGN);
    result.riLevelGN = FullIndexLevel(result.riGN);
    result.EvaluatethisGN = LoadMessage(FullRepairTextsGN + RepairBand(result.riGN));
}

void FillDensityLevels(_EVALUATE_DATA& result, const DensityTexts& texts) {
    const int repairJG = DensityBand(result.riJG);
    result.riLevelJG = LoadMessage(DensityLabels + repairJG);
    result.EvaluatethisJG = LoadMessage(texts.FirstJG + repairJG);
    const int repairGN = DensityBand(result.riGN);
    result.riLevelGN = LoadMessage(DensityLabels + repairGN);
    result.EvaluatethisGN = LoadMessage(texts.FirstGN + repairGN);
}

float DensityOf(const ItemList& items, float L) {
    float sum = 0.0F;
    for (const _DEFECT_ITEM& item : items) {
        sum += item.score * std::max(item.end - item.start, MinLength);
    }
    return L != 0.0F ? sum * 100.0F / L : 0.0F;
}

float ConditionOfDensity(float density) {
    return density < MaxDensity ? 0.25F * density : MaxScore;
}

_EVALUATE_DATA CountedItems(const SelectedItems& items) {
    _EVALUATE_DATA result;
    result.countJG = Count(items.Structural);
    result.countGN = Count(items.Functional);
    result.maxGradeJG = MaxGrade(items.Structural);
    result.maxGradeGN = MaxGrade(items.Functional);
    return result;
}

int EvaluateDensity(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                    const DensityTexts& texts) {
    const SelectedItems items = SelectItems(records);
    result = CountedItems(items);
    result.avgJG = DensityOf(items.Structural, L);
    result.maxJG = MaxScoreOf(items.Structural);
    result.conditionJG = ConditionOfDensity(result.avgJG);
    result.avgGN = DensityOf(items.Functional, L);
    result.maxGN = MaxScoreOf(items.Functional);
    result.conditionGN = ConditionOfDensity(result.avgGN);
    FillIndexes(result, D, K, T);
    FillDensityLevels(result, texts);
    return 1;
}

using Data = _EVALUATE_DATA;

const EvaluationField FieldTable[] = {
    {"countJG", &Data::countJG},
    {"countGN", &Data::countGN},
    {"paramK", &Data::paramK},
    {"paramE", &Data::paramE},
    {"paramT", &Data::paramT},
    {"avgJG", &Data::avgJG},
    {"maxJG", &Data::maxJG},
    {"conditionJG", &Data::conditionJG},
    {"smJG", &Data::smJG},
    {"riJG", &Data::riJG},
    {"avgGN", &Data::avgGN},
    {"maxGN", &Data::maxGN},
    {"conditionGN", &Data::conditionGN},
    {"smGN", &Data::smGN},
    {"riGN", &Data::riGN},
    {"maxGradeJG", &Data::maxGradeJG},
    {"maxGradeGN", &Data::maxGradeGN},
    {"levelJG", &Data::levelJG},
    {"levelDescJG", &Data::levelDescJG},
    {"riLevelJG", &Data::riLevelJG},
    {"EvaluatethisJG", &Data::EvaluatethisJG},
    {"levelGN", &Data::levelGN},
    {"levelDescGN", &Data::levelDescGN},
    {"riLevelGN", &Data::riLevelGN},
    {"EvaluatethisGN", &Data::EvaluatethisGN},
    {"mergedJG", &Data::mergedJG},
    {"mergedGN", &Data::mergedGN},
};

}  // namespace

std::string FullIndexLevel(float index) {
    return LoadMessage(FullLabels + RepairBand(index));
}

int EvaluateSection(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K,
                    float T) {
    const SelectedItems items = SelectItems(records);
    result = CountedItems(items);

    const GroupCondition structural = ConditionOf(items.Structural, L);
    result.mergedJG = structural.Merged;
    result.maxJG = structural.Max;
    result.avgJG = structural.Average;
    result.conditionJG = structural.Value;
    result.smJG = structural.Density;

    const GroupCondition functional = ConditionOf(items.Functional, L);
    result.mergedGN = functional.Merged;
    result.maxGN = functional.Max;
    result.avgGN = functional.Average;
    result.conditionGN = functional.Value;
    result.smGN = functional.Density;

    FillIndexes(result, D, K, T);
    FillFullLevels(result);
    return 1;
}

int EvaluateSectionGZ(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K,
                      float T) {
    return EvaluateDensity(result, records, L, D, K, T, GuangzhouTexts);
}

int EvaluateSectionSH(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K,
                      float T) {
    return EvaluateDensity(result, records, L, D, K, T, ShanghaiTexts);
}

std::span<const EvaluationField> EvaluationFields() {
    return FieldTable;
}
