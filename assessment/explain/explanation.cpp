#include "assessment/explain/explanation.h"

#include <algorithm>

#include "shell/textcodec.h"

namespace {

CRecDataArray SortedByDistance(const CRecDataArray& records) {
    std::vector<const _REC_DATA*> order;
    for (const _REC_DATA& record : records) {
        order.push_back(&record);
    }
    std::stable_sort(order.begin(), order.end(), [](const _REC_DATA* a, const _REC_DATA* b) {
        return a->DistanceStart < b->DistanceStart;
    });
    CRecDataArray sorted;
    for (const _REC_DATA* record : order) {
        sorted.Add(*record);
    }
    return sorted;
}

bool IsSameOrder(const CRecDataArray& a, const CRecDataArray& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const _REC_DATA& x, const _REC_DATA& y) { return x.ID == y.ID; });
}

bool IsSameGrade(const _EVALUATE_DATA& a, const _EVALUATE_DATA& b) {
    return a.riJG == b.riJG && a.riGN == b.riGN && a.levelJG == b.levelJG && a.levelGN == b.levelGN &&
           a.riLevelJG == b.riLevelJG && a.riLevelGN == b.riLevelGN;
}

class CWeigher {
public:
    CWeigher(ScoringRoute route, const SectionGrade& grade, float K, float T, const ScoreOfGrade& scoreOf)
        : m_route(route), m_grade(grade), m_K(K), m_T(T), m_scoreOf(scoreOf) {}

    _EVALUATE_DATA Score(const CRecDataArray& records) const {
        _EVALUATE_DATA result;
        (void)Evaluate(m_route, result, records, m_grade.Length, m_grade.Diameter, m_K, m_T);
        return result;
    }

    RecordWeight Weigh(int row, bool structural) const {
        RecordWeight weight;
        weight.ID = m_grade.Records[row].ID;
        weight.Structural = structural;
        CRecDataArray without = m_grade.Records;
        without.RemoveAt(row);
        weight.Without = Outcome(without, structural);
        weight.Milder = WithGrade(row, -1, structural);
        weight.Graver = WithGrade(row, 1, structural);
        return weight;
    }

private:
    WhatIf Outcome(const CRecDataArray& records, bool structural) const {
        const _EVALUATE_DATA result = Score(records);
        return structural ? WhatIf{result.riJG, result.riLevelJG} : WhatIf{result.riGN, result.riLevelGN};
    }

    std::optional<WhatIf> WithGrade(int row, int change, bool structural) const {
        const _REC_DATA& record = m_grade.Records[row];
        const int grade = record.DefectLevel + change;
        const std::optional<float> score = grade < 1 ? std::nullopt : m_scoreOf(record, grade);
        if (!score) {
            return std::nullopt;
        }
        CRecDataArray changed = m_grade.Records;
        changed[row].DefectLevel = static_cast<std::uint8_t>(grade);
        changed[row].Evaluate = *score;
        return Outcome(changed, structural);
    }

    ScoringRoute m_route;
    const SectionGrade& m_grade;
    float m_K;
    float m_T;
    const ScoreOfGrade& m_scoreOf;
};

// The section, or in density scoring all that are scored as one with it.
std::vector<SectionRecords> ScoredTogether(ScoringRoute route, const std::vector<SectionRecords>& sections,
                                           std::int32_t id) {
    const auto wanted = std::find_if(sections.begin(), sections.end(),
                                     [id](const SectionRecords& entry) { return entry.Section.ID == id; });
    std::vector<SectionRecords> together;
    if (wanted == sections.end()) {
        return together;
    }
    for (const SectionRecords& entry : sections) {
        if (entry.Section.ID == id ||
            (IsDensityScoring(route) && EqualNoCase(entry.Section.Label(), wanted->Section.Label()))) {
            together.push_back(entry);
        }
    }
    return together;
}

}  // namespace

std::optional<Explanation> ExplainGrade(ScoringRoute route, const std::vector<SectionRecords>& sections,
                                        std::int32_t id, float K, float T, const ScoreOfGrade& scoreOf) {
    std::vector<SectionRecords> together = ScoredTogether(route, sections, id);
    Explanation explanation;
    for (const SectionRecords& entry : together) {
        explanation.Sections.push_back(entry.Section.ID);
    }
    std::vector<SectionGrade> grades = GradeSections(route, std::move(together), K, T);
    if (grades.size() != 1) {
        return std::nullopt;
    }
    explanation.Grade = std::move(grades.front());
    SectionGrade& grade = explanation.Grade;
    (void)Evaluate(route, grade.Result, grade.Records, grade.Length, grade.Diameter, K, T,
                   &explanation.HowItCame);

    const CWeigher weigher(route, grade, K, T, scoreOf);
    for (int row = 0; row < grade.Records.GetSize(); ++row) {
        const DerivedRecord& derived = explanation.HowItCame.Records[static_cast<std::size_t>(row)];
        if (derived.Reason == CountReason::Counted) {
            explanation.Weights.push_back(weigher.Weigh(row, derived.Structural));
        }
    }
    const CRecDataArray sorted = SortedByDistance(grade.Records);
    explanation.InOrder = IsSameOrder(grade.Records, sorted);
    // Density scoring takes each defect by itself, in whatever order.
    if (!explanation.InOrder && !IsDensityScoring(route)) {
        const _EVALUATE_DATA result = weigher.Score(sorted);
        if (!IsSameGrade(result, grade.Result)) {
            explanation.ByDistance = result;
        }
    }
    return explanation;
}

std::vector<std::int32_t> IdsByDistance(const CRecDataArray& records) {
    std::vector<std::int32_t> ids;
    for (const _REC_DATA& record : SortedByDistance(records)) {
        ids.push_back(record.ID);
    }
    return ids;
}
