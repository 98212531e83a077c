// The condition of a project's sections under its standard.
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/CTextTable.h"
#include "apps/cli/choices.h"
#include "apps/cli/commands.h"
#include "apps/cli/gradejson.h"
#include "assessment/sectiongrades.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"

namespace {

using Json = nlohmann::ordered_json;

std::string Number(float value) {
    return FormatNumber(static_cast<double>(value), 2);
}

// A class without scored defects shows "-", as in the reports.
void AddRating(std::vector<std::string>& row, bool scored, std::initializer_list<std::string> cells) {
    for (const std::string& cell : cells) {
        row.push_back(scored ? cell : "-");
    }
}

void PrintTable(std::ostream& out, const std::vector<SectionGrade>& grades, bool density) {
    std::vector<std::string> headings{"ID", "Section", "Manholes", "L (m)", "D (mm)"};
    if (density) {
        headings.insert(headings.end(), {"S", "F", "RI", "Grade", "Y", "G", "MI", "Grade"});
    } else {
        headings.insert(headings.end(), {"S", "Smax", "F", "Level", "RI", "Grade"});
        headings.insert(headings.end(), {"Y", "Ymax", "G", "Level", "MI", "Grade"});
    }
    CTextTable table(headings);
    for (const SectionGrade& grade : grades) {
        const _EVALUATE_DATA& r = grade.Result;
        std::vector<std::string> row{FormatInt(grade.Section.ID), grade.Section.TestingName,
                                     grade.Section.Label(), Number(grade.Length), Number(grade.Diameter)};
        if (density) {
            AddRating(row, r.countJG > 0,
                      {Number(r.avgJG), Number(r.conditionJG), Number(r.riJG), r.riLevelJG});
            AddRating(row, r.countGN > 0,
                      {Number(r.avgGN), Number(r.conditionGN), Number(r.riGN), r.riLevelGN});
        } else {
            AddRating(row, r.countJG > 0,
                      {Number(r.avgJG), Number(r.maxJG), Number(r.conditionJG), r.levelJG, Number(r.riJG),
                       r.riLevelJG});
            AddRating(row, r.countGN > 0,
                      {Number(r.avgGN), Number(r.maxGN), Number(r.conditionGN), r.levelGN, Number(r.riGN),
                       r.riLevelGN});
        }
        table.Add(std::move(row));
    }
    table.Print(out);
}

}  // namespace

int RunGrade(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--k", "--t", "--sections"}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    std::optional<AssessmentChoice> choice = ChooseAssessment(context, arguments, database, 2153);
    if (!choice) {
        return 1;
    }
    const auto& [project, route, chosen, k, t] = *choice;
    const std::vector<SectionGrade> grades =
        GradeSections(route, ReadSections(database, std::move(choice->Sections)), k, t);
    if (arguments.Has("--json")) {
        Json sections = Json::array();
        for (const SectionGrade& grade : grades) {
            sections.push_back(GradeToJson(grade));
        }
        context.Out << JsonText({{"standard", project.CriterionName},
                                 {"k", NumberToJson(static_cast<double>(k))},
                                 {"t", NumberToJson(static_cast<double>(t))},
                                 {"sections", sections}})
                    << '\n';
        return 0;
    }
    context.Out << project.ProjectName << "    " << project.CriterionName << "    K = " << Number(k)
                << ", T = " << Number(t) << "\n\n";
    PrintTable(context.Out, grades, IsDensityScoring(route));
    return 0;
}
