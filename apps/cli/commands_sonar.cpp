// Sonar data of a project, and the report on it.
#include <nlohmann/json.hpp>
#include <ostream>
#include <stdexcept>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "reports/sonar/sonarreport.h"
#include "reports/sonarchart/sonarchart.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"
#include "store/sonar.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* NoData = "the project has no sonar data";

Json ToJson(const PipeItem& item) {
    return {{"CurRadius", item.CurRadius},       {"CurSiltDepth", item.CurSiltDepth},
            {"Meter", NumberToJson(item.Meter)}, {"PipeWidth", item.PipeWidth},
            {"SiltDepth", item.SiltDepth},       {"SiltDepthPer", NumberToJson(item.SiltDepthPer)}};
}

Json ToJson(const SonarData& data) {
    Json pipe = Json::array();
    for (const PipeItem& item : data.PipeItems) {
        pipe.push_back(ToJson(item));
    }
    Json silt = Json::array();
    for (const auto& [first, second] : data.SiltItems) {
        silt.push_back(Json::array({first, second}));
    }
    return {{"PipeItems", std::move(pipe)},
            {"SiltItems", std::move(silt)},
            {"cfginfo", data.cfginfo},
            {"videofilename", data.videofilename},
            {"dixmlfilename", data.dixmlfilename},
            {"Pictures", data.Pictures}};
}

}  // namespace

int RunSonar(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    OpenProject(database, context, arguments.Places().front());
    SonarData data;
    if (!LoadSonarData(database, data)) {
        throw std::runtime_error(NoData);
    }
    context.Out << JsonText(ToJson(data)) << '\n';
    return 0;
}

int RunExportSonar(const CommandContext& context) {
    const CArguments arguments(context.Words, {"-o"}, {});
    arguments.ExpectPlaces(1, 1);
    const std::string& project = arguments.Places().front();
    const std::string target = TargetArgument(context, arguments.Require("-o"), {project});
    CDbRec database;
    OpenProject(database, context, project);
    SonarData data;
    if (!LoadSonarData(database, data)) {
        throw std::runtime_error(NoData);
    }
    return WriteSonarReportTo(target, data, DrawSonarChart).Complete ? 0 : 1;
}
