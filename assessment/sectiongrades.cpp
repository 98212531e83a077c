#include "assessment/sectiongrades.h"

#include <string>
#include <unordered_map>
#include <utility>

#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

using Evaluator = int (*)(_EVALUATE_DATA&, const CRecDataArray&, float, float, float, float);

Evaluator EvaluatorOf(ScoringRoute route) {
    switch (route) {
        case ScoringRoute::National:
        case ScoringRoute::Chongqing:
            return EvaluateSection;
        case ScoringRoute::Guangzhou:
            return EvaluateSectionGZ;
        case ScoringRoute::Shanghai:
            return EvaluateSectionSH;
        case ScoringRoute::None:
        case ScoringRoute::ListsOnly:
            return nullptr;
    }
    return nullptr;
}

float ParseFloat(const std::string& text) {
    return static_cast<float>(ParseDouble(text));
}

void JoinByLabel(std::vector<SectionRecords>& sections) {
    std::vector<SectionRecords> groups;
    std::unordered_map<std::string, std::size_t> groupOf;  // by lower-cased label
    for (SectionRecords& section : sections) {
        const auto [place, isNew] = groupOf.try_emplace(LowerCase(section.Section.Label()), groups.size());
        if (isNew) {
            groups.push_back(std::move(section));
            continue;
        }
        CRecDataArray& joined = groups[place->second].Records;
        for (_REC_DATA& record : section.Records) {
            joined.Add(std::move(record));
        }
    }
    sections = std::move(groups);
}

}  // namespace

std::vector<SectionGrade> GradeSections(ScoringRoute route, std::vector<SectionRecords> sections, float K,
                                        float T) {
    std::vector<SectionGrade> grades;
    const Evaluator evaluate = EvaluatorOf(route);
    if (evaluate == nullptr) {
        return grades;
    }
    const bool density = IsDensityScoring(route);
    if (density) {
        JoinByLabel(sections);
    }
    grades.reserve(sections.size());
    for (SectionRecords& unit : sections) {
        SectionGrade& grade = grades.emplace_back();
        grade.Section = std::move(unit.Section);
        grade.Records = std::move(unit.Records);
        grade.Length = density ? grade.Section.DistanceEnd - grade.Section.DistanceStart
                               : ParseFloat(grade.Section.PipeLength);
        grade.Diameter = ParseFloat(grade.Section.PipeDiameter);
        evaluate(grade.Result, grade.Records, grade.Length, grade.Diameter, K, T);
    }
    return grades;
}
