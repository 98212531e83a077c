#include "apps/cli/choices.h"

#include <algorithm>
#include <ostream>
#include <set>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "shell/CPrompts.h"
#include "shell/numbers.h"
#include "store/CDbRec.h"

namespace {

std::set<std::int32_t> ParseIdList(const std::string& text) {
    std::set<std::int32_t> ids;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(',', at), text.size());
        ids.insert(ParseId(std::string_view(text).substr(at, end - at)));
        at = end + 1;
    }
    return ids;
}

}  // namespace

std::optional<AssessmentChoice> ChooseAssessment(const CommandContext& context, const CArguments& arguments,
                                                 CDbRec& database, int unknown) {
    AssessmentChoice choice;
    if (!database.ReadAttrib(choice.Project)) {
        throw std::runtime_error("the project can't be read");
    }
    choice.Route = FindScoringRoute(choice.Project.CriterionName);
    if (!HasEvaluator(choice.Route)) {
        ShowMessage(unknown, choice.Project.CriterionName);
        return std::nullopt;
    }
    choice.K = ChosenParameter(context, arguments, "--k", ParametersK(choice.Route));
    choice.T = ChosenParameter(context, arguments, "--t", ParametersT(choice.Route));
    choice.Sections = ChosenSections(database, arguments);
    return choice;
}

CTestingDataArray ChosenSections(CDbRec& database, const CArguments& arguments) {
    std::set<std::int32_t> wanted;
    if (const auto list = arguments.Get("--sections")) {
        wanted = ParseIdList(*list);
    }
    const bool all = wanted.empty();
    CTestingDataArray sections;
    if (!database.ReadTestings(sections)) {
        throw std::runtime_error("the sections can't be read");
    }
    CTestingDataArray chosen;
    for (_TESTING_DATA& section : sections) {
        if (all || wanted.erase(section.ID) != 0) {
            chosen.Add(std::move(section));
        }
    }
    if (!wanted.empty()) {
        throw std::runtime_error("no section with the ID " + FormatInt(*wanted.begin()));
    }
    return chosen;
}

float ChosenParameter(const CommandContext& context, const CArguments& arguments, const char* option,
                      std::span<const ParameterRow> rows) {
    const float value = arguments.GetNumber(option).value_or(rows.front().Value);
    const auto known = [&](const ParameterRow& row) { return row.Value == value; };
    if (std::none_of(rows.begin(), rows.end(), known)) {
        context.Err << "warning: " << option << ' ' << FormatNumber(static_cast<double>(value), 3)
                    << " isn't a value of this standard\n";
    }
    return value;
}
