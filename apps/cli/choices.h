// What commands on a project's condition are asked for: which sections, and which parameters.
#pragma once

#include <span>

#include "store/records/records.h"

class CArguments;
class CDbRec;
struct CommandContext;
struct ParameterRow;

// Those of "--sections", or all, in the project's order. Throws if one isn't there.
CTestingDataArray ChosenSections(CDbRec& database, const CArguments& arguments);

// The first of the standard's `rows` if the option isn't given. A value that isn't among them is told and
// taken.
float ChosenParameter(const CommandContext& context, const CArguments& arguments, const char* option,
                      std::span<const ParameterRow> rows);
