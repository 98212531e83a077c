// Why a section has its grade.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/CTextTable.h"
#include "apps/cli/choices.h"
#include "apps/cli/commands.h"
#include "apps/cli/gradejson.h"
#include "assessment/explain/projectgrades.h"
#include "shell/numbers.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"

namespace {

using Json = nlohmann::ordered_json;

const char* ReasonText(const DerivedRecord& record) {
    switch (record.Reason) {
        case CountReason::Counted:
            return record.Weightless ? "the standard has no score for its grade" : "";
        case CountReason::Manhole:
            return "a manhole";
        case CountReason::NoDefect:
            return "no defect";
        case CountReason::OtherGroup:
            break;
    }
    return "not a defect that is scored";
}

std::string Text(float value) {
    return FormatNumber(static_cast<double>(value), 3);
}

Json ValueToJson(float value) {
    return NumberToJson(static_cast<double>(value));
}

// Steps as they were computed, with the kind behind their names, as in the result.
std::vector<std::pair<std::string, float>> StepsOf(const Derivation& derivation) {
    std::vector<std::pair<std::string, float>> steps;
    for (const DerivedValue& value : derivation.Common) {
        steps.emplace_back("param" + std::string(value.Name), value.Value);
    }
    for (const auto& [group, ending] :
         {std::pair{&derivation.Structural, "JG"}, {&derivation.Functional, "GN"}}) {
        for (const DerivedValue& value : group->Values) {
            steps.emplace_back(std::string(value.Name) + ending, value.Value);
        }
    }
    return steps;
}

Json WhatIfToJson(const WhatIf& outcome) {
    return {{"index", ValueToJson(outcome.Index)}, {"level", outcome.Level}};
}

Json RecordsToJson(const Explanation& explanation) {
    Json records = Json::array();
    auto weight = explanation.Weights.begin();
    for (const DerivedRecord& record : explanation.HowItCame.Records) {
        Json entry{{"id", record.ID},
                   {"counted", record.Reason == CountReason::Counted},
                   {"reason", ReasonText(record)},
                   {"mergedInto", record.MergedInto < 0 ? Json() : Json(record.MergedInto)},
                   {"gap", ValueToJson(record.Gap)}};
        if (record.Reason == CountReason::Counted) {
            entry["without"] = WhatIfToJson(weight->Without);
            entry["milder"] = weight->Milder ? WhatIfToJson(*weight->Milder) : Json();
            entry["graver"] = weight->Graver ? WhatIfToJson(*weight->Graver) : Json();
            ++weight;
        }
        records.push_back(std::move(entry));
    }
    return records;
}

Json MarginsToJson(const Derivation& derivation) {
    Json margins = Json::array();
    for (const DerivedBand& band : derivation.Bands) {
        margins.push_back({{"name", std::string(band.Name)},
                           {"value", ValueToJson(band.Value)},
                           {"band", band.Band},
                           {"lower", ValueToJson(band.Lower)},
                           {"upper", ValueToJson(band.Upper)},
                           {"toLower", band.Band == 0 ? Json() : ValueToJson(band.Value - band.Lower)},
                           {"toUpper", ValueToJson(band.Upper - band.Value)}});
    }
    return margins;
}

void PrintExplanation(std::ostream& out, const Explanation& explanation) {
    CTextTable records({"Record", "Counted", "Merged into", "Gap (m)", "Index without", "Reason"});
    auto weight = explanation.Weights.begin();
    for (const DerivedRecord& record : explanation.HowItCame.Records) {
        const bool counted = record.Reason == CountReason::Counted;
        records.Add(
            {FormatInt(record.ID), counted ? "yes" : "no",
             record.MergedInto < 0 ? "" : FormatInt(record.MergedInto), counted ? Text(record.Gap) : "",
             counted ? Text(weight->Without.Index) + " " + weight->Without.Level : "", ReasonText(record)});
        weight += counted ? 1 : 0;
    }
    records.Print(out);
    out << '\n';
    CTextTable steps({"Step", "Value"});
    for (const auto& [name, value] : StepsOf(explanation.HowItCame)) {
        steps.Add({name, Text(value)});
    }
    steps.Print(out);
    out << '\n';
    CTextTable bands({"Value", "Is", "Band", "From", "To"});
    for (const DerivedBand& band : explanation.HowItCame.Bands) {
        bands.Add({std::string(band.Name), Text(band.Value), FormatInt(band.Band + 1), Text(band.Lower),
                   Text(band.Upper)});
    }
    bands.Print(out);
    if (explanation.ByDistance) {
        out << "\nThe records stand out of order. By distance the repair index would be "
            << Text(explanation.ByDistance->riJG) << " (" << explanation.ByDistance->riLevelJG
            << "), the maintenance index " << Text(explanation.ByDistance->riGN) << " ("
            << explanation.ByDistance->riLevelGN << "); see reorder.\n";
    }
}

Explanation Explain(const CommandContext& context, const CArguments& arguments, CDbRec& database) {
    const std::int32_t id = arguments.RequireId("--section");
    OpenProject(database, context, arguments.Places()[0]);
    std::optional<AssessmentChoice> choice = ChooseAssessment(context, arguments, database, 2153);
    if (!choice) {
        throw std::runtime_error("nothing can be graded");
    }
    std::optional<Explanation> explanation =
        ReadExplanation(database, choice->Route, choice->Sections, id, choice->K, choice->T);
    if (!explanation) {
        throw std::runtime_error("no section with the ID " + FormatInt(id));
    }
    return std::move(*explanation);
}

}  // namespace

int RunExplain(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--section", "--k", "--t"}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    const Explanation explanation = Explain(context, arguments, database);
    if (!arguments.Has("--json")) {
        PrintExplanation(context.Out, explanation);
        return 0;
    }
    Json steps = Json::array();
    for (const auto& [name, value] : StepsOf(explanation.HowItCame)) {
        steps.push_back({{"name", name}, {"value", ValueToJson(value)}});
    }
    SectionGrade ordered = explanation.Grade;
    if (explanation.ByDistance) {
        ordered.Result = *explanation.ByDistance;
    }
    context.Out << JsonText({{"result", GradeToJson(explanation.Grade)},
                             {"sections", explanation.Sections},
                             {"records", RecordsToJson(explanation)},
                             {"steps", steps},
                             {"margins", MarginsToJson(explanation.HowItCame)},
                             {"ordered",
                              {{"inOrder", explanation.InOrder},
                               {"result", explanation.ByDistance ? GradeToJson(ordered) : Json()}}}})
                << '\n';
    return 0;
}

int RunReorder(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--section"}, {"--dry-run"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    const Explanation explanation = Explain(context, arguments, database);
    if (!explanation.ByDistance) {
        context.Out << "nothing to do: the order of entry makes no difference\n";
        return 0;
    }
    const std::vector<std::int32_t> ids = IdsByDistance(explanation.Grade.Records);
    std::vector<std::int32_t> places = ids;
    std::sort(places.begin(), places.end());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (ids[i] != places[i]) {
            context.Out << "record " << ids[i] << " becomes " << places[i] << '\n';
        }
    }
    const bool done =
        arguments.Has("--dry-run") || database.SetRecordOrder(explanation.Grade.Section.ID, ids);
    return done ? 0 : 1;
}
