// What goes into a project and what comes out of it.
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>
#include <stdexcept>
#include <unordered_map>

#include "apps/cli/CArguments.h"
#include "apps/cli/CTextTable.h"
#include "apps/cli/commands.h"
#include "apps/cli/wherechoice.h"
#include "fieldimport/acquisitionimport.h"
#include "history/restorepoints.h"
#include "shell/numbers.h"
#include "store/CDbRec.h"
#include "store/projectdocument.h"
#include "store/recordjson.h"
#include "store/stepnames.h"

namespace {

constexpr const char* ReadFailure = "the project can't be read";

template <class Rows>
void KeepOnly(Rows& rows, const std::vector<std::int32_t>& ids) {
    const std::set<std::int32_t> wanted(ids.begin(), ids.end());
    Rows kept;
    for (auto& row : rows) {
        if (wanted.contains(row.ID)) {
            kept.Add(std::move(row));
        }
    }
    rows = std::move(kept);
}

}  // namespace

int RunImportXml(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {});
    arguments.ExpectPlaces(2, std::string::npos);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    const auto sink = [&](const std::string& line) { context.Err << line << '\n'; };
    const bool several = arguments.Places().size() > 2;
    if (several && !MakeRestorePoint(database, PointImport)) {
        return 1;
    }
    const CDbStep step(database, StepImportField);
    int refused = 0;
    for (std::size_t i = 1; i < arguments.Places().size(); ++i) {
        const std::string& file = arguments.Places()[i];
        ImportNotes notes;
        if (!ImportAcquisition(database, PathArgument(context, file), sink, &notes)) {
            context.Err << file << ": refused\n";
            ++refused;
        }
        for (const std::string& line : notes.Converted) {
            context.Err << line << '\n';
        }
        for (const std::string& line : notes.Refused) {
            context.Err << line << ": refused\n";
        }
        refused += notes.Refused.empty() ? 0 : 1;
    }
    return refused == 0 ? 0 : 1;
}

int RunSections(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--where"}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    CTestingDataArray sections;
    if (!database.ReadTestings(sections)) {
        throw std::runtime_error(ReadFailure);
    }
    if (arguments.Has("--where")) {
        CQueryRows rows;
        KeepOnly(sections, ChosenRows(database, arguments, rows).Sections);
    }
    if (arguments.Has("--json")) {
        CJsonList list([&context](std::string_view text) { context.Out << text; });
        for (const _TESTING_DATA& section : sections) {
            list.Add(SectionToJson(section));
        }
        list.End();
        context.Out << '\n';
        return 0;
    }
    CTextTable table({"ID", "Section", "Manholes", "Diameter", "Length", "Material", "Records", "Date"});
    std::unordered_map<std::int32_t, std::int32_t> counts;
    if (!database.CountRecordsBySection(counts)) {
        throw std::runtime_error(ReadFailure);
    }
    for (const _TESTING_DATA& section : sections) {
        table.Add({FormatInt(section.ID), section.TestingName, section.Label(), section.PipeDiameter,
                   section.PipeLength, section.PipeMaterial, FormatInt(counts[section.ID]),
                   section.TestingDate});
    }
    table.Print(context.Out);
    return 0;
}

int RunRecords(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--section", "--where"}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    const std::int32_t section = arguments.Has("--section") ? arguments.RequireId("--section") : -1;
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    CRecDataArray records;
    if (!database.ReadRecords(section, records, true)) {
        throw std::runtime_error(ReadFailure);
    }
    if (arguments.Has("--where")) {
        CQueryRows rows;
        KeepOnly(records, ChosenRows(database, arguments, rows).Records);
    }
    if (arguments.Has("--json")) {
        CJsonList list([&context](std::string_view text) { context.Out << text; });
        for (const _REC_DATA& record : records) {
            list.Add(RecordToJson(record));
        }
        list.End();
        context.Out << '\n';
        return 0;
    }
    CTextTable table({"ID", "Section", "Code", "Grade", "Score", "From", "To", "Clock", "Comment"});
    for (const _REC_DATA& record : records) {
        table.Add({FormatInt(record.ID), FormatInt(record.TestingID), record.DefectCode,
                   FormatInt(record.DefectLevel), FormatNumber(static_cast<double>(record.Evaluate), 3),
                   FormatNumber(static_cast<double>(record.DistanceStart), 3),
                   FormatNumber(static_cast<double>(record.DistanceEnd), 3),
                   FormatInt(record.DirectionStart) + "/" + FormatInt(record.DirectionEnd), record.Comment});
    }
    table.Print(context.Out);
    return 0;
}

int RunDump(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    if (!DumpProject(database, [&context](std::string_view text) { context.Out << text; })) {
        throw std::runtime_error(ReadFailure);
    }
    context.Out << '\n';
    return 0;
}

int RunLoad(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {});
    arguments.ExpectPlaces(2, 2);
    const std::string& file = arguments.Places()[1];
    const std::string json = ReadInput(PathArgument(context, file), file);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    LoadResult result;
    try {
        result = LoadProject(database, json);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(file + ": " + error.what());
    }
    for (const std::string& place : result.Refused) {
        context.Err << file << ": " << place << ": refused\n";
    }
    context.Out << result.SectionsAdded << " sections, " << result.RecordsAdded << " records\n";
    return result.Done && result.Refused.empty() ? 0 : 1;
}
