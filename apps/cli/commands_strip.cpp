// A section as a strip.
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "controls/paint/pipestrip.h"
#include "shell/CHostFiles.h"
#include "shell/failures.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbRec.h"
#include "workbench/coding/openruns.h"
#include "workbench/coding/sectionstrip.h"

namespace {

constexpr int UsualWidth = 1200;  // pixels
constexpr int LeastWidth = 200;
constexpr int MostWidth = 20'000;

int ReadWidth(const CArguments& arguments) {
    const std::optional<std::string> text = arguments.Get("--width");
    if (!text) {
        return UsualWidth;
    }
    const std::optional<std::int64_t> width = ParseWholeInt(*text);
    if (!width || *width < LeastWidth || *width > MostWidth) {
        throw CUsageError("--width needs " + FormatInt(LeastWidth) + " to " + FormatInt(MostWidth) +
                          " pixels instead of " + *text);
    }
    return static_cast<int>(*width);
}

}  // namespace

int RunStrip(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--section", "--width", "-o"}, {});
    arguments.ExpectPlaces(1, 1);
    const std::int32_t id = arguments.RequireId("--section");
    const int width = ReadWidth(arguments);
    const std::string& project = arguments.Places()[0];
    const std::string picture = arguments.Require("-o");
    const std::string target = TargetArgument(context, picture, {project});
    CDbRec database;
    OpenProject(database, context, project);
    const _TESTING_DATA section = FindSection(database, id);
    CRecDataArray records;
    if (!database.LookAtRecords(id, records, false)) {
        throw std::runtime_error("the records can't be read");
    }
    const PipeStrip strip = MakeSectionStrip(section, records, OpenRuns(database, records), database);
    if (!HostFiles().WriteFile(target, PipeStripSvg(strip, width))) {
        throw std::runtime_error(picture + " can't be written: " + FailureText(HostFiles().LastError()));
    }
    return 0;
}
