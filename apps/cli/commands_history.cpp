// What was changed in a project, and the way back.
#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/CTextTable.h"
#include "apps/cli/commands.h"
#include "history/journaltables.h"
#include "history/restorepoints.h"
#include "history/steps.h"
#include "shell/CHostFiles.h"
#include "shell/CSilentPrompts.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbError.h"
#include "store/CDbRec.h"

namespace {

constexpr int NothingToDo = 3;

nlohmann::ordered_json StepToJson(const HistoryStep& step) {
    return {{"step", step.Number},      {"time", step.Time},        {"name", LoadMessage(step.Name)},
            {"place", StepPlace(step)}, {"account", step.Account},  {"section", step.Section},
            {"record", step.Record},    {"undone", step.Undone},    {"sections", step.Sections},
            {"records", step.Records},  {"pictures", step.Pictures}};
}

int StepCount(const CArguments& arguments) {
    if (arguments.Places().size() < 2) {
        return 1;
    }
    const auto count = ParseWholeInt(arguments.Places()[1]);
    if (!count || *count < 1 || *count > std::numeric_limits<int>::max()) {
        throw CUsageError("STEPS must be a whole number from 1 on");
    }
    return static_cast<int>(*count);
}

int Take(const CommandContext& context, StepResult (*take)(CDbRec&, int), const char* verb) {
    const CArguments arguments(context.Words, {}, {});
    arguments.ExpectPlaces(1, 2);
    const int count = StepCount(arguments);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    if (database.IsReadOnly()) {
        throw std::runtime_error(arguments.Places()[0] + " can't be written");
    }
    const StepResult result = take(database, count);
    switch (result.Result) {
        case StepResult::Outcome::Done:
            for (const HistoryStep& step : result.Steps) {
                context.Out << verb << ": " << StepTitle(step) << '\n';
            }
            return 0;
        case StepResult::Outcome::Nothing:
            context.Err << arguments.Places()[0] << ": there are not so many steps to " << verb << '\n';
            return NothingToDo;
        case StepResult::Outcome::Unfit:
            context.Err << arguments.Places()[0] << ": "
                        << (result.Steps.empty() ? std::string() : StepTitle(result.Steps.front()) + ": ")
                        << result.Why << '\n';
            return NothingToDo;
        case StepResult::Outcome::Failed:
            break;
    }
    return 1;
}

}  // namespace

int RunHistory(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    History history;
    try {
        history = ReadHistory(database);
    } catch (const CDbError& error) {
        throw std::runtime_error(arguments.Places()[0] + ": its history can't be read: " + error.what());
    }
    if (arguments.Has("--json")) {
        nlohmann::ordered_json steps = nlohmann::ordered_json::array();
        for (const HistoryStep& step : history.Steps) {
            steps.push_back(StepToJson(step));
        }
        const nlohmann::ordered_json document{
            {"began", history.Began}, {"copy", history.Foreign || history.Former}, {"steps", steps}};
        context.Out << document.dump(1) << '\n';
        return 0;
    }
    if (history.Foreign || history.Former) {
        context.Err
            << arguments.Places()[0]
            << ": this file is a copy of another one; its history begins with the first change made here\n";
    }
    CTextTable table({"Step", "Time", "Account", "What", "Where", "State"});
    for (const HistoryStep& step : history.Steps) {
        table.Add({std::to_string(step.Number), step.Time, step.Account, LoadMessage(step.Name),
                   StepPlace(step), step.Undone ? "undone" : ""});
    }
    table.Print(context.Out);
    return 0;
}

int RunUndo(const CommandContext& context) {
    return Take(context, UndoSteps, "undo");
}

int RunRedo(const CommandContext& context) {
    return Take(context, RedoSteps, "redo");
}

namespace {

// Also of a project that is open elsewhere, damaged or gone.
std::vector<RestorePoint> PointsOf(const std::string& project) {
    CSilentPrompts silent;
    const CSeamScope scope({.Prompts = &silent});
    std::string journal;
    CDbRec database;
    try {
        if (HostFiles().Exists(project) &&
            database.OpenDatabase(project, CDbPassword, CDbBase::Access::Shared)) {
            journal = JournalOf(database);
        }
    } catch (const CDbError&) {
        // Then by the file alone.
    }
    return ListRestorePoints(project, journal);
}

}  // namespace

int RunRestorePoints(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    const std::vector<RestorePoint> points = PointsOf(PathArgument(context, arguments.Places()[0]));
    if (arguments.Has("--json")) {
        nlohmann::ordered_json list = nlohmann::ordered_json::array();
        for (const RestorePoint& point : points) {
            list.push_back({{"point", point.Name},
                            {"time", point.Time},
                            {"reason", LoadMessage(point.Reason)},
                            {"bytes", point.Bytes},
                            {"file", ShownPath(point.Path)}});
        }
        context.Out << list.dump(1) << '\n';
        return 0;
    }
    CTextTable table({"Point", "Reason", "Bytes"});
    for (const RestorePoint& point : points) {
        table.Add({point.Name, LoadMessage(point.Reason), std::to_string(point.Bytes)});
    }
    table.Print(context.Out);
    return 0;
}

int RunRestore(const CommandContext& context) {
    const CArguments arguments(context.Words, {"-o"}, {});
    arguments.ExpectPlaces(2, 2);
    const std::string project = PathArgument(context, arguments.Places()[0]);
    const std::string& name = arguments.Places()[1];
    const std::vector<RestorePoint> points = PointsOf(project);
    const auto point = std::find_if(points.begin(), points.end(),
                                    [&](const RestorePoint& known) { return known.Name == name; });
    if (point == points.end()) {
        throw std::runtime_error("no restore point of the name \"" + name + "\"; see restore-points");
    }
    const std::string argument = arguments.Require("-o");
    const std::string target = TargetArgument(context, argument, {arguments.Places()[0]});
    if (HostFiles().Exists(target)) {
        throw CUsageError(argument + " is there already");
    }
    try {
        const RestoredPictures pictures = RestoreProject(*point, project, target);
        if (pictures.BroughtBack > 0) {
            context.Out << pictures.BroughtBack << " pictures brought back\n";
        }
        if (pictures.Missing > 0) {
            context.Err << argument << ": " << pictures.Missing
                        << " pictures that its records name are missing\n";
        }
        return 0;
    } catch (const CDbError& error) {
        throw std::runtime_error(argument + " can't be made: " + error.what());
    }
}

int RunForgetHistory(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    return ForgetHistory(database) ? 0 : 1;
}
