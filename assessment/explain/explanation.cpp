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

bool IsSameGrade(const _EVALUATE_DATA& a, const _EVALUATE_DATA& b) {
    return a.riJG == b.riJG && a.riGN == b.riGN && a.levelJG == b.levelJG && a.levelGN == b.levelGN &&
           a.riLevelJG == b.riLevelJG && a.riLevelGN == b.riLevelGN;
}

_EVALUATE_DATA ScoreAgain(ScoringRoute route, const SectionGrade& grade, const CRecDataArray& records) {
    _EVALUATE_DATA result;
    (void)Evaluate(route, result, records, grade.Length, grade.Diameter, grade.Result.paramK,
                   grade.Result.paramT);
    return result;
}

// Scores the records with one of them changed. They are changed in place and put back, since copies of all
// for each of many would take longer than the scoring.
class CWeigher {
public:
    CWeigher(ScoringRoute route, const SectionGrade& grade, const ScoreOfGrade& scoreOf)
        : m_route(route), m_grade(grade), m_scoreOf(scoreOf), m_records(grade.Records) {}

    RecordWeight Weigh(int row, bool structural) {
        RecordWeight weight;
        weight.ID = m_records[row].ID;
        weight.Structural = structural;
        // A record of no group doesn't count.
        std::string type;
        std::swap(m_records[row].DefectType, type);
        weight.Without = Outcome(structural);
        std::swap(m_records[row].DefectType, type);
        weight.Milder = WithGrade(row, -1, structural);
        weight.Graver = WithGrade(row, 1, structural);
        return weight;
    }

private:
    WhatIf Outcome(bool structural) const {
        const _EVALUATE_DATA result = ScoreAgain(m_route, m_grade, m_records);
        return structural ? WhatIf{result.riJG, result.riLevelJG} : WhatIf{result.riGN, result.riLevelGN};
    }

    std::optional<WhatIf> WithGrade(int row, int change, bool structural) {
        _REC_DATA& record = m_records[row];
        const _REC_DATA& stored = m_grade.Records[row];
        const int grade = stored.DefectLevel + change;
        const std::optional<float> score = grade < 1 ? std::nullopt : m_scoreOf(stored, grade);
        if (!score) {
            return std::nullopt;
        }
        record.DefectLevel = static_cast<std::uint8_t>(grade);
        record.Evaluate = *score;
        const WhatIf outcome = Outcome(structural);
        record.DefectLevel = stored.DefectLevel;
        record.Evaluate = stored.Evaluate;
        return outcome;
    }

    ScoringRoute m_route;
    const SectionGrade& m_grade;
    const ScoreOfGrade& m_scoreOf;
    CRecDataArray m_records;
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
        if (AreScoredTogether(route, entry.Section, wanted->Section)) {
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

    CWeigher weigher(route, grade, scoreOf);
    for (int row = 0; row < grade.Records.GetSize(); ++row) {
        const DerivedRecord& derived = explanation.HowItCame.Records[static_cast<std::size_t>(row)];
        if (derived.Reason == CountReason::Counted) {
            explanation.Weights.push_back(weigher.Weigh(row, derived.Structural));
        }
    }
    explanation.InOrder = IsInOrder(grade.Records);
    explanation.ByDistance = ResultByDistance(route, grade);
    return explanation;
}

bool IsInOrder(const CRecDataArray& records) {
    return std::is_sorted(records.begin(), records.end(), [](const _REC_DATA& a, const _REC_DATA& b) {
        return a.DistanceStart < b.DistanceStart;
    });
}

std::optional<_EVALUATE_DATA> ResultByDistance(ScoringRoute route, const SectionGrade& grade) {
    // Density scoring takes each defect by itself, in whatever order.
    if (IsDensityScoring(route) || IsInOrder(grade.Records)) {
        return std::nullopt;
    }
    const _EVALUATE_DATA result = ScoreAgain(route, grade, SortedByDistance(grade.Records));
    return IsSameGrade(result, grade.Result) ? std::nullopt : std::optional(result);
}

std::vector<std::int32_t> IdsByDistance(const CRecDataArray& records) {
    std::vector<std::int32_t> ids;
    for (const _REC_DATA& record : SortedByDistance(records)) {
        ids.push_back(record.ID);
    }
    return ids;
}
