// The parameters of region and soil that an operator has chosen for a project, kept in his settings. Grades
// on the screen are scored with them; a report asks anew.
#pragma once

#include <span>
#include <string_view>

#include "assessment/standards.h"

class QComboBox;

// Rows of ParametersK and ParametersT, and what they are worth.
struct GradeChoice {
    int RowK = 0;
    int RowT = 0;
    float K = 0.0F;
    float T = 0.0F;
};

// The first rows if nothing was chosen, or if the standard's lists don't have those rows.
GradeChoice KeptGradeChoice(std::string_view projectPath, ScoringRoute route);
void KeepGradeChoice(std::string_view projectPath, int rowK, int rowT);

// The rows of a list, their values as data; the first is chosen.
void FillParameterBox(QComboBox& box, std::span<const ParameterRow> rows);
