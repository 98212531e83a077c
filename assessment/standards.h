// What the standard of a project decides about its scoring. The name of the criterion alone says which
// standard it is.
#pragma once

#include <span>
#include <string_view>

enum class ScoringRoute {
    None,       // a standard that the program can't report on
    National,   // full scoring
    ListsOnly,  // the parameter lists of the national standard are offered, but nothing scores it
    Guangzhou,  // density scoring
    Shanghai,   // density scoring
    Chongqing,  // full scoring
};

ScoringRoute FindScoringRoute(std::string_view criterionName);
bool HasEvaluator(ScoringRoute route);
// Density scoring takes all sections between the same two manholes together.
bool IsDensityScoring(ScoringRoute route);

// One choice of a parameter.
struct ParameterRow {
    int Message;  // number of its text
    float Value;
};

// Importance of the region, and kind of soil. The first row is the preselected one.
std::span<const ParameterRow> ParametersK(ScoringRoute route);
std::span<const ParameterRow> ParametersT(ScoringRoute route);
