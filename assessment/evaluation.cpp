#include "assessment/evaluation.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <vector>

#include "assessment/recorders.h"
#include "shell/language.h"

// Where the machine computes floats in wider registers, levels would change at their edges.
static_assert(FLT_EVAL_METHOD == 0);

namespace {

constexpr float MergeGap = 1.0F;  // metres; nearer defects are taken for one
constexpr float NearGap = 1.5F;   // metres; up to here neighbours make each other worse
constexpr float FirstGap = 2.5F;  // what stands before the first is far
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

CountReason ReasonOf(const _REC_DATA& record) {
    if (record.IsJG() || record.IsGN()) {
        return record.IsPipeNormal() ? CountReason::NoDefect : CountReason::Counted;
    }
    return record.IsJCJ() ? CountReason::Manhole : CountReason::OtherGroup;
}

template <class Recorder>
SelectedItems SelectItems(const CRecDataArray& records, Recorder& recorder) {
    SelectedItems items;
    for (const _REC_DATA& record : records) {
        const bool structural = record.IsJG();
        const CountReason reason = ReasonOf(record);
        recorder.Select(record, reason, structural);
        if (reason == CountReason::Counted) {
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
template <class Recorder>
ItemList MergeClose(const ItemList& items, Recorder& recorder) {
    ItemList merged;
    float anchor = 0.0F;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const _DEFECT_ITEM& item = items[i];
        if (!merged.empty() && item.start - anchor < MergeGap) {
            recorder.Merge(i, std::max(item.start - anchor, 0.0F));
            _DEFECT_ITEM& last = merged.back();
            last.end = std::max(last.end, item.end);
            last.score = std::min(last.score + item.score, MaxScore);
        } else {
            recorder.Append(i, merged.empty() ? 0.0F : item.start - anchor);
            merged.push_back(item);
            anchor = item.end;
        }
    }
    recorder.Items(merged);
    return merged;
}

float Gap(const _DEFECT_ITEM& before, const _DEFECT_ITEM& after) {
    return before.end > after.start ? 0.0F : after.start - before.end;
}

template <class Recorder>
NearFarSums SumByDistance(const ItemList& items, Recorder& recorder) {
    NearFarSums sums;
    const _DEFECT_ITEM* previous = nullptr;
    bool previousNear = false;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const _DEFECT_ITEM& item = items[i];
        const float length = item.end - item.start;
        const float gap = previous == nullptr ? FirstGap : Gap(*previous, item);
        recorder.SetGap(i, gap);
        if (gap > NearGap) {
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
                recorder.SetNear(i - 1);
            }
            recorder.SetNear(i);
            sums.Near += item.score;
            sums.NearLength += item.score * length;
            previousNear = true;
        }
        previous = &item;
    }
    return sums;
}

template <class Recorder>
GroupCondition ConditionOf(const ItemList& items, float L, Recorder& recorder) {
    const ItemList merged = MergeClose(items, recorder);
    const NearFarSums sums = SumByDistance(merged, recorder);
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
    recorder.Value("sumFar", sums.Far);
    recorder.Value("sumFarLen", sums.FarLength);
    recorder.Value("sumNear", sums.Near);
    recorder.Value("sumNearLen", sums.NearLength);
    recorder.Value("max", condition.Max);
    recorder.Value("avg", condition.Average);
    recorder.Value("condition", condition.Value);
    recorder.Value("sm", condition.Density);
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
template <class Recorder>
void FillIndexes(_EVALUATE_DATA& result, float D, float K, float T, Recorder& recorder) {
    result.paramK = K;
    result.paramE = DiameterParameter(D);
    result.paramT = T;

    const bool slightJG = result.conditionJG < SeriousFrom;
    const float regionJG = slightJG ? 0.0F : K;
    const float diameterJG = slightJG ? 0.0F : result.paramE;
    const float soil = result.conditionJG == 0.0F ? 0.0F : T;
    result.riJG = 0.7F * result.conditionJG + 0.1F * regionJG + 0.05F * diameterJG + 0.15F * soil;
    recorder.BeginGroup(true);
    recorder.Value("K", regionJG);
    recorder.Value("E", diameterJG);
    recorder.Value("T", soil);
    recorder.Value("ri", result.riJG);

    const bool slightGN = result.conditionGN < SeriousFrom;
    const float regionGN = slightGN ? 0.0F : K;
    const float diameterGN = slightGN ? 0.0F : result.paramE;
    result.riGN = 0.8F * result.conditionGN + 0.15F * regionGN + 0.05F * diameterGN;
    recorder.BeginGroup(false);
    recorder.Value("K", regionGN);
    recorder.Value("E", diameterGN);
    recorder.Value("ri", result.riGN);
    recorder.Common("K", K);
    recorder.Common("E", result.paramE);
    recorder.Common("T", T);
}

constexpr std::array ConditionLimits = {1.0F, 3.0F, 6.0F};
constexpr std::array RepairLimits = {1.0F, 4.0F, 7.0F};
constexpr std::array DensityLimits = {4.0F, 7.0F};

// The limits belong to the lower band.
int FullBand(float value, std::span<const float> limits) {
    int band = 0;
    for (const float limit : limits) {
        band += value <= limit ? 0 : 1;
    }
    return band;
}

int ConditionBand(float condition) {
    return FullBand(condition, ConditionLimits);
}

int RepairBand(float index) {
    return FullBand(index, RepairLimits);
}

// The limits belong to the upper band.
int DensityBand(float index) {
    if (index < DensityLimits[0]) {
        return 0;
    }
    return index < DensityLimits[1] ? 1 : 2;
}

// A section without defects has levels too, the best ones; whether a report shows them is its own affair.
template <class Recorder>
void FillFullLevels(_EVALUATE_DATA& result, Recorder& recorder) {
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
    recorder.Band("conditionJG", result.conditionJG, conditionJG, ConditionLimits, true);
    recorder.Band("riJG", result.riJG, RepairBand(result.riJG), RepairLimits, true);
    recorder.Band("conditionGN", result.conditionGN, conditionGN, ConditionLimits, true);
    recorder.Band("riGN", result.riGN, RepairBand(result.riGN), RepairLimits, true);
}

template <class Recorder>
void FillDensityLevels(_EVALUATE_DATA& result, const DensityTexts& texts, Recorder& recorder) {
    const int repairJG = DensityBand(result.riJG);
    result.riLevelJG = LoadMessage(DensityLabels + repairJG);
    result.EvaluatethisJG = LoadMessage(texts.FirstJG + repairJG);
    const int repairGN = DensityBand(result.riGN);
    result.riLevelGN = LoadMessage(DensityLabels + repairGN);
    result.EvaluatethisGN = LoadMessage(texts.FirstGN + repairGN);
    recorder.Band("riJG", result.riJG, repairJG, DensityLimits, false);
    recorder.Band("riGN", result.riGN, repairGN, DensityLimits, false);
}

float ConditionOfDensity(float density) {
    return density < MaxDensity ? 0.25F * density : MaxScore;
}

template <class Recorder>
float DensityOf(const ItemList& items, float L, Recorder& recorder) {
    float sum = 0.0F;
    for (std::size_t i = 0; i < items.size(); ++i) {
        recorder.Append(i, 0.0F);
        sum += items[i].score * std::max(items[i].end - items[i].start, MinLength);
    }
    recorder.Items(items);
    const float density = L != 0.0F ? sum * 100.0F / L : 0.0F;
    recorder.Value("sum", sum);
    recorder.Value("max", MaxScoreOf(items));
    recorder.Value("avg", density);
    recorder.Value("condition", ConditionOfDensity(density));
    return density;
}

_EVALUATE_DATA CountedItems(const SelectedItems& items) {
    _EVALUATE_DATA result;
    result.countJG = Count(items.Structural);
    result.countGN = Count(items.Functional);
    result.maxGradeJG = MaxGrade(items.Structural);
    result.maxGradeGN = MaxGrade(items.Functional);
    return result;
}

template <class Recorder>
int EvaluateDensity(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                    const DensityTexts& texts, Recorder& recorder) {
    const SelectedItems items = SelectItems(records, recorder);
    result = CountedItems(items);
    recorder.BeginGroup(true);
    result.avgJG = DensityOf(items.Structural, L, recorder);
    result.maxJG = MaxScoreOf(items.Structural);
    result.conditionJG = ConditionOfDensity(result.avgJG);
    recorder.BeginGroup(false);
    result.avgGN = DensityOf(items.Functional, L, recorder);
    result.maxGN = MaxScoreOf(items.Functional);
    result.conditionGN = ConditionOfDensity(result.avgGN);
    FillIndexes(result, D, K, T, recorder);
    FillDensityLevels(result, texts, recorder);
    return 1;
}

template <class Recorder>
int EvaluateFull(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                 Recorder& recorder) {
    const SelectedItems items = SelectItems(records, recorder);
    result = CountedItems(items);

    recorder.BeginGroup(true);
    const GroupCondition structural = ConditionOf(items.Structural, L, recorder);
    result.mergedJG = structural.Merged;
    result.maxJG = structural.Max;
    result.avgJG = structural.Average;
    result.conditionJG = structural.Value;
    result.smJG = structural.Density;

    recorder.BeginGroup(false);
    const GroupCondition functional = ConditionOf(items.Functional, L, recorder);
    result.mergedGN = functional.Merged;
    result.maxGN = functional.Max;
    result.avgGN = functional.Average;
    result.conditionGN = functional.Value;
    result.smGN = functional.Density;

    FillIndexes(result, D, K, T, recorder);
    FillFullLevels(result, recorder);
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
    NoRecorder recorder;
    return EvaluateFull(result, records, L, D, K, T, recorder);
}

int EvaluateSectionGZ(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K,
                      float T) {
    NoRecorder recorder;
    return EvaluateDensity(result, records, L, D, K, T, GuangzhouTexts, recorder);
}

int EvaluateSectionSH(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K,
                      float T) {
    NoRecorder recorder;
    return EvaluateDensity(result, records, L, D, K, T, ShanghaiTexts, recorder);
}

int ExplainSection(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                   Derivation& derivation) {
    CDerivationRecorder recorder(derivation);
    return EvaluateFull(result, records, L, D, K, T, recorder);
}

int ExplainSectionGZ(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                     Derivation& derivation) {
    CDerivationRecorder recorder(derivation);
    return EvaluateDensity(result, records, L, D, K, T, GuangzhouTexts, recorder);
}

int ExplainSectionSH(_EVALUATE_DATA& result, const CRecDataArray& records, float L, float D, float K, float T,
                     Derivation& derivation) {
    CDerivationRecorder recorder(derivation);
    return EvaluateDensity(result, records, L, D, K, T, ShanghaiTexts, recorder);
}

std::span<const EvaluationField> EvaluationFields() {
    return FieldTable;
}
