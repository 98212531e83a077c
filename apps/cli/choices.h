// What commands on a project's condition are asked for: which sections, and which parameters.
#pragma once

#include <optional>
#include <span>

#include "assessment/standards.h"
#include "store/records/records.h"

class CArguments;
class CDbRec;
struct CommandContext;

// What an assessment of a project begins with.
struct AssessmentChoice {
    _PRO_DATA Project;
    ScoringRoute Route = ScoringRoute::None;
    CTestingDataArray Sections;  // as ChosenSections
    // As ChosenParameter, of "--k" and "--t".
    float K = 0;
    float T = 0;
};
// Nothing if nothing assesses the project's standard; then the message `unknown` was shown. Throws as
// ChosenSections does, and if the project can't be read.
std::optional<AssessmentChoice> ChooseAssessment(const CommandContext& context, const CArguments& arguments,
                                                 CDbRec& database, int unknown);

// Those of "--sections", or all, in the project's order. Throws if one isn't there.
CTestingDataArray ChosenSections(CDbRec& database, const CArguments& arguments);

// The first of the standard's `rows` if the option isn't given. A value that isn't among them is told and
// taken.
float ChosenParameter(const CommandContext& context, const CArguments& arguments, const char* option,
                      std::span<const ParameterRow> rows);
