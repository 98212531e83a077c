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
#include "bulk/jobimport.h"
#include "shell/CHostFiles.h"
#include "shell/CProgress.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "store/projectdocument.h"
#include "store/recordjson.h"
#include "store/stepnames.h"

namespace {

constexpr const char* ReadFailure = "the project can't be read";

const char* KindName(ImportLine::Kind kind) {
    switch (kind) {
        case ImportLine::Kind::Taken:
            return "taken";
        case ImportLine::Kind::Known:
            return "known";
        case ImportLine::Kind::Refused:
            return "refused";
        case ImportLine::Kind::Missing:
            return "missing";
        case ImportLine::Kind::Changed:
            break;
    }
    return "changed";
}

void PrintLine(std::ostream& out, const ImportLine& line, bool skipsKnown) {
    const bool ofFile = line.Section < 0;
    switch (line.What) {
        case ImportLine::Kind::Taken:
            return;
        case ImportLine::Kind::Known:
            out << line.Text << '\n' << ShownPath(line.File) << (skipsKnown ? ": skipped\n" : ": refused\n");
            return;
        case ImportLine::Kind::Refused:
            if (ofFile) {
                out << line.Text << '\n' << ShownPath(line.File);
            } else {
                out << line.Text;
            }
            out << ": refused\n";
            return;
        default:
            out << line.Text << '\n';
    }
}

// A folder stands for all that are below it.
std::vector<std::string> DescriptionsOf(const CommandContext& context, const CArguments& arguments) {
    std::vector<std::string> files;
    for (std::size_t i = 1; i < arguments.Places().size(); ++i) {
        const std::string path = PathArgument(context, arguments.Places()[i]);
        if (!HostFiles().IsFolder(path)) {
            files.push_back(path);
            continue;
        }
        const std::vector<std::string> found = FindDescriptions(path);
        if (found.empty()) {
            throw std::runtime_error(arguments.Places()[i] + ": no description in this folder");
        }
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

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
    const CArguments arguments(context.Words, {}, {"--skip-known", "--json"});
    arguments.ExpectPlaces(2, std::string::npos);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    const std::vector<std::string> files = DescriptionsOf(context, arguments);
    CProgress silent;
    const ImportJobResult result = ImportJob(database, files, silent);
    if (!result.Begun) {
        return 1;
    }
    const bool skipsKnown = arguments.Has("--skip-known");
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const ImportLine& line : result.Lines) {
        if (arguments.Has("--json")) {
            list.push_back({{"file", ShownPath(line.File)},
                            {"result", KindName(line.What)},
                            {"section", IdToJson(line.Section)},
                            {"record", IdToJson(line.Record)},
                            {"text", line.Text}});
        } else {
            PrintLine(context.Err, line, skipsKnown);
        }
    }
    if (arguments.Has("--json")) {
        context.Out << JsonText(list) << '\n';
    }
    return result.Refused == 0 && (skipsKnown || result.Known == 0) ? 0 : 1;
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
