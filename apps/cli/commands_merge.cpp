// Two projects into one.
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "shell/language.h"
#include "shell/numbers.h"
#include "store/catalogue.h"
#include "store/merge.h"

namespace {

_PRO_DATA ReadProject(const CommandContext& context, const std::string& argument) {
    ProjectListing listing;
    if (!AddProjectRow(PathArgument(context, argument), listing)) {
        throw std::runtime_error(argument + " can't be read");
    }
    return listing.Projects[0];
}

}  // namespace

int RunMerge(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {});
    arguments.ExpectPlaces(2, 2);
    const _PRO_DATA first = ReadProject(context, arguments.Places()[0]);
    const _PRO_DATA second = ReadProject(context, arguments.Places()[1]);
    MergeResult result;
    const bool merged = MergeProjects(first, second, result);
    if (!result.Path.empty()) {
        context.Out << ShownPath(result.Path) << '\n';
    }
    if (!merged) {
        return 1;
    }
    const std::string log = WriteMergeLog(result);
    if (!log.empty()) {
        context.Out << ShownPath(log) << '\n';
    } else if (!result.Log.empty()) {
        context.Err << result.Log;
    }
    for (const std::string& record : result.RefusedRecords) {
        context.Err << record << ": refused\n";
    }
    if (result.WithoutSection > 0) {
        context.Err << FormatInt(result.WithoutSection) << " records without a section\n";
    }
    return result.Log.empty() && result.RefusedRecords.empty() ? 0 : 1;
}
