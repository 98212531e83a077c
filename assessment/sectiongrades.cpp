#include "assessment/sectiongrades.h"

#include <string>
#include <unordered_map>
#include <utility>

#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

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

int Evaluate(ScoringRoute route, _EVALUATE_DATA& result, const CRecDataArray& records, float L, float D,
             float K, float T, Derivation* derivation) {
    const auto run = [&](auto evaluate, auto explain) {
        return derivation == nullptr ? evaluate(result, records, L, D, K, T)
                                     : explain(result, records, L, D, K, T, *derivation);
    };
    switch (route) {
        case ScoringRoute::National:
        case ScoringRoute::Chongqing:
            return run(EvaluateSection, ExplainSection);
        case ScoringRoute::Guangzhou:
            return run(EvaluateSectionGZ, ExplainSectionGZ);
        case ScoringRoute::Shanghai:
            return run(EvaluateSectionSH, ExplainSectionSH);
        case ScoringRoute::None:
        case ScoringRoute::ListsOnly:
            return 0;
    }
    return 0;
}

bool AreScoredTogether(ScoringRoute route, const _TESTING_DATA& a, const _TESTING_DATA& b) {
    return a.ID == b.ID || (IsDensityScoring(route) && EqualNoCase(a.Label(), b.Label()));
}

std::vector<SectionGrade> GradeSections(ScoringRoute route, std::vector<SectionRecords> sections, float K,
                                        float T) {
    std::vector<SectionGrade> grades;
    if (!HasEvaluator(route)) {
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
        (void)Evaluate(route, grade.Result, grade.Records, grade.Length, grade.Diameter, K, T);
    }
    return grades;
}
