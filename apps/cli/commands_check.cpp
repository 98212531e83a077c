// What a client would send back.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/CTextTable.h"
#include "apps/cli/choices.h"
#include "apps/cli/commands.h"
#include "assessment/standards.h"
#include "check/CCheckRun.h"
#include "check/rules.h"
#include "check/waivers.h"
#include "shell/numbers.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr int Found = 3;

const char* NameOf(CheckSeverity severity) {
    switch (severity) {
        case CheckSeverity::Error:
            return "error";
        case CheckSeverity::Warning:
            return "warning";
        case CheckSeverity::Hint:
            break;
    }
    return "hint";
}

std::optional<CheckSeverity> AskedSeverity(const CArguments& arguments) {
    const auto only = arguments.Get("--only");
    if (!only) {
        return std::nullopt;
    }
    for (const CheckSeverity severity : {CheckSeverity::Error, CheckSeverity::Warning, CheckSeverity::Hint}) {
        if (*only == std::string(NameOf(severity)) + "s") {
            return severity;
        }
    }
    throw CUsageError("--only takes errors, warnings or hints");
}

Json ToJson(const CheckFinding& finding) {
    return {{"rule", finding.Rule},
            {"severity", NameOf(SeverityOf(finding.Rule))},
            {"section", IdToJson(finding.Section)},
            {"record", IdToJson(finding.Record)},
            {"field", finding.Field},
            {"text", FindingText(finding)}};
}

std::string IdText(std::int32_t id) {
    return id < 0 ? std::string() : FormatInt(id);
}

}  // namespace

int RunCheck(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--only", "--k", "--t"}, {"--pictures", "--json"});
    arguments.ExpectPlaces(1, 1);
    const std::optional<CheckSeverity> asked = AskedSeverity(arguments);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    _PRO_DATA project;
    if (!database.ReadAttrib(project)) {
        return 1;
    }
    CheckOptions options;
    if (const ScoringRoute route = FindScoringRoute(project.CriterionName); HasEvaluator(route)) {
        options.K = ChosenParameter(context, arguments, "--k", ParametersK(route));
        options.T = ChosenParameter(context, arguments, "--t", ParametersT(route));
    }
    options.Media = arguments.Has("--pictures") ? CheckOptions::Files::Opened : CheckOptions::Files::Missed;
    std::optional<std::vector<CheckFinding>> findings = CheckProject(database, options);
    if (!findings) {
        return 1;
    }
    std::erase_if(*findings,
                  [&](const CheckFinding& finding) { return asked && SeverityOf(finding.Rule) != *asked; });
    const CWaivers waivers(database.Path());
    Json told = Json::array();
    Json waived = Json::array();
    CTextTable table({"Rule", "Severity", "Section", "Record", "Finding"});
    for (const CheckFinding& finding : *findings) {
        if (const std::string* reason = waivers.ReasonOf(finding)) {
            waived.push_back(ToJson(finding));
            waived.back()["reason"] = *reason;
        } else {
            told.push_back(ToJson(finding));
            table.Add({FormatInt(finding.Rule), NameOf(SeverityOf(finding.Rule)), IdText(finding.Section),
                       IdText(finding.Record), FindingText(finding)});
        }
    }
    if (arguments.Has("--json")) {
        context.Out << JsonText({{"findings", told}, {"waived", waived}}) << '\n';
    } else {
        if (!told.empty()) {
            table.Print(context.Out);
            context.Out << '\n';
        }
        context.Out << told.size() << " found, " << waived.size() << " left as they are\n";
    }
    return told.empty() ? 0 : Found;
}
