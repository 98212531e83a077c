// A defect coded in one line.
#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/choices.h"
#include "apps/cli/commands.h"
#include "shell/CHostFiles.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"
#include "workbench/coding/codingmeaning.h"
#include "workbench/coding/codingmessages.h"
#include "workbench/coding/codingstore.h"
#include "workbench/coding/openruns.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr int ExitMissing = 3;

Json MetresToJson(const std::optional<float>& metres) {
    return metres ? NumberToJson(static_cast<double>(*metres)) : Json();
}

const char* MarkName(CodingLine::Run mark) {
    switch (mark) {
        case CodingLine::Run::Begins:
            return "begins";
        case CodingLine::Run::Ends:
            return "ends";
        case CodingLine::Run::None:
            break;
    }
    return "";
}

Json MeaningToJson(const CodingMeaning& meaning, std::int32_t stored) {
    Json missing = Json::array();
    for (const CodingProblem& problem : meaning.Problems) {
        missing.push_back(problem.Text);
    }
    return {{"code", meaning.Code},
            {"name", meaning.Name},
            {"grade", meaning.Grade == 0 ? Json() : Json(meaning.Grade)},
            {"gradeText", meaning.GradeText},
            {"distanceStart", MetresToJson(meaning.Start)},
            {"distanceEnd", MetresToJson(meaning.End)},
            {"clockStart", meaning.ClockStart},
            {"clockEnd", meaning.ClockEnd},
            {"clockAssumed", meaning.ClockAssumed},
            {"comment", meaning.Comment},
            {"run", MarkName(meaning.Mark)},
            {"missing", std::move(missing)},
            {"stored", stored < 0 ? Json() : Json(stored)}};
}

void Print(std::ostream& out, const CodingMeaning& meaning, std::int32_t stored) {
    const auto metres = [](float value) { return FormatFixed(static_cast<double>(value), 2) + " m"; };
    out << meaning.Code << (meaning.Grade > 0 ? FormatInt(meaning.Grade) : "") << " " << meaning.Name << "\n";
    if (meaning.Mark == CodingLine::Run::Ends) {
        out << "ends at " << (meaning.End ? metres(*meaning.End) : "?") << "\n";
    } else {
        out << "grade: " << (meaning.Grade > 0 ? meaning.GradeText : "?") << "\n"
            << "distance: " << (meaning.Start ? metres(*meaning.Start) : "?")
            << (meaning.IsRun && meaning.End ? " to " + metres(*meaning.End) : "")
            << (meaning.Mark == CodingLine::Run::Begins ? ", the end is to come" : "") << "\n"
            << "clock: " << meaning.ClockStart << " to " << meaning.ClockEnd
            << (meaning.ClockAssumed ? " (assumed)" : "") << "\n"
            << "comment: " << meaning.Comment << "\n";
    }
    for (const CodingProblem& problem : meaning.Problems) {
        out << "missing: " << problem.Text << "\n";
    }
    if (stored >= 0) {
        out << "stored as record " << stored << "\n";
    }
}

double ReadPosition(const CArguments& arguments) {
    const std::string text = arguments.Require("--at");
    const std::optional<double> seconds = ParseWholeDouble(text);
    if (!seconds || !std::isfinite(*seconds) || *seconds < 0.0) {
        throw CUsageError("--at needs a number of seconds instead of " + text);
    }
    return *seconds;
}

}  // namespace

int RunCode(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--section", "--at"}, {"--dry-run", "--json"});
    arguments.ExpectPlaces(2, 2);
    const std::int32_t id = arguments.RequireId("--section");
    const CodingLine line = ReadCodingLine(arguments.Places()[1]);
    const bool dry = arguments.Has("--dry-run");
    const bool needsFrame = line.Mark != CodingLine::Run::Ends;
    const double seconds = needsFrame && !dry ? ReadPosition(arguments) : 0.0;
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    const _TESTING_DATA section = FindSection(database, id);
    CRecDataArray records;
    if (!database.LookAtRecords(id, records, false)) {
        throw std::runtime_error("the records can't be read");
    }
    CodingMeaning meaning = UnderstandCoding(line, database, section, OpenRuns(database, records));
    if (meaning.Manhole) {
        meaning.Problems.push_back({CodingField::Code, LoadMessage(CodingMessage::ManholeForm)});
    }
    std::int32_t stored = -1;
    if (!dry && meaning.IsComplete()) {
        const std::string video = section.FirstVideo();
        if (needsFrame && (video.empty() || !HostFiles().Exists(video))) {
            throw std::runtime_error("the video of the section isn't there: " + video);
        }
        const auto record = needsFrame ? StoreCoded(database, section, video, seconds, meaning)
                                       : EndCodedRun(database, meaning);
        if (!record) {
            return 1;
        }
        stored = *record;
    }
    if (arguments.Has("--json")) {
        context.Out << MeaningToJson(meaning, stored).dump(2) << "\n";
    } else {
        Print(context.Out, meaning, stored);
    }
    return meaning.IsComplete() ? 0 : ExitMissing;
}
