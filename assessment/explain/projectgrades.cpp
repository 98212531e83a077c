#include "assessment/explain/projectgrades.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "shell/textcodec.h"
#include "store/CDbRec.h"

namespace {

std::optional<std::vector<SectionRecords>> ReadTogether(CDbRec& database, ScoringRoute route,
                                                        const CTestingDataArray& sections, std::int32_t id) {
    const auto wanted = std::find_if(sections.begin(), sections.end(),
                                     [id](const _TESTING_DATA& section) { return section.ID == id; });
    if (wanted == sections.end() || !HasEvaluator(route)) {
        return std::nullopt;
    }
    std::vector<SectionRecords> together;
    for (const _TESTING_DATA& section : sections) {
        if (!AreScoredTogether(route, section, *wanted)) {
            continue;
        }
        SectionRecords& entry = together.emplace_back();
        entry.Section = section;
        if (!database.LookAtRecords(section.ID, entry.Records, true)) {
            return std::nullopt;
        }
    }
    return together;
}

}  // namespace

std::optional<SectionGrade> ReadGrade(CDbRec& database, ScoringRoute route, const CTestingDataArray& sections,
                                      std::int32_t id, float K, float T) {
    std::optional<std::vector<SectionRecords>> together = ReadTogether(database, route, sections, id);
    if (!together) {
        return std::nullopt;
    }
    return std::move(GradeSections(route, std::move(*together), K, T).front());
}

std::optional<Explanation> ReadExplanation(CDbRec& database, ScoringRoute route,
                                           const CTestingDataArray& sections, std::int32_t id, float K,
                                           float T) {
    const std::optional<std::vector<SectionRecords>> together = ReadTogether(database, route, sections, id);
    if (!together) {
        return std::nullopt;
    }
    return ExplainGrade(
        route, *together, id, K, T, [&database](const _REC_DATA& record, int grade) -> std::optional<float> {
            std::vector<float> scores;
            const auto row = static_cast<std::size_t>(grade) - 1;
            const bool known =
                database.LoadDefectLevels(record.DefectCode, nullptr, &scores) && row < scores.size();
            return known ? std::optional(scores[row]) : std::nullopt;
        });
}
