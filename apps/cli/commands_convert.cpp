// Files of the older engine, many at once.
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/CTextTable.h"
#include "apps/cli/commands.h"
#include "oldfiles/jetconversion.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "shell/seams.h"
#include "store/CDbBase.h"
#include "store/recordjson.h"

namespace {

using Json = nlohmann::ordered_json;

// With its trailing "\"; empty if the files are to be converted where they are.
std::string TargetFolder(const CommandContext& context, const CArguments& arguments) {
    const std::optional<std::string> argument = arguments.Get("--to");
    if (!argument) {
        return {};
    }
    const std::string folder = PathArgument(context, *argument);
    if (!HostFiles().MakeFolder(folder)) {
        throw std::runtime_error(*argument + " is no folder");
    }
    return folder.ends_with('\\') ? folder : folder + '\\';
}

}  // namespace

int RunConvert(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--to"}, {"--json"});
    arguments.ExpectPlaces(1, std::string::npos);
    const std::string folder = TargetFolder(context, arguments);
    Json json = Json::array();
    CTextTable table({"File", "Table", "Rows"});
    int refused = 0;
    for (const std::string& file : arguments.Places()) {
        const std::string path = PathArgument(context, file);
        const std::string target = folder.empty() ? path : folder + GetFileName(path);
        JetConversion conversion;
        const bool done = folder.empty() ? ConvertInPlace(path, CDbPassword, &conversion)
                                         : ConvertTo(path, target, CDbPassword, &conversion);
        if (!done) {
            context.Err << file << ": refused\n";
            ++refused;
            continue;
        }
        Json tables = Json::array();
        for (const JetTableCount& count : conversion.Tables) {
            tables.push_back({{"Table", count.Table}, {"Rows", count.Rows}});
            table.Add({ShownPath(target), count.Table, FormatInt(count.Rows)});
        }
        json.push_back({{"File", ShownPath(target)},
                        {"OldFile", ShownPath(conversion.OldPath)},
                        {"Tables", std::move(tables)}});
    }
    if (arguments.Has("--json")) {
        context.Out << JsonText(json) << '\n';
    } else if (!json.empty()) {
        table.Print(context.Out);
    }
    return refused == 0 ? 0 : 1;
}
