// Reports of a project, without windows.
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/choices.h"
#include "apps/cli/commands.h"
#include "assessment/standards.h"
#include "reports/CRecExport.h"
#include "reports/collectreport.h"
#include "shell/CPrompts.h"

int RunDataset(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--k", "--t", "--sections", "-o"}, {});
    arguments.ExpectPlaces(1, 1);
    const std::string target = arguments.Require("-o");
    CRecExport database;
    OpenProject(database, context, arguments.Places()[0]);
    _PRO_DATA project;
    if (!database.ReadAttrib(project)) {
        throw std::runtime_error("the project can't be read");
    }
    const ScoringRoute route = FindScoringRoute(project.CriterionName);
    if (!HasEvaluator(route)) {
        ShowMessage(2158, project.CriterionName);
        return 1;
    }
    const float k = ChosenParameter(context, arguments, "--k", ParametersK(route));
    const float t = ChosenParameter(context, arguments, "--t", ParametersT(route));
    CArrID ids;
    for (const _TESTING_DATA& section : ChosenSections(database, arguments)) {
        ids.push_back(static_cast<std::uint32_t>(section.ID));
    }
    ReportLists lists;
    if (!CollectReport(database, project.CriterionName, ids, k, t, lists)) {
        return 1;
    }
    if (!database.SaveReport(PathArgument(context, target))) {
        throw std::runtime_error(target + " can't be written");
    }
    return 0;
}
