// Positions: surveyors' sheets in, shapefiles out.
#include <nlohmann/json.hpp>
#include <ostream>

#include "apps/cli/CArguments.h"
#include "apps/cli/choices.h"
#include "apps/cli/commands.h"
#include "fieldimport/gpsimport.h"
#include "fieldimport/gpssheet.h"
#include "geo/mapview/mapcontent.h"
#include "geo/shapefile/shapeexport.h"
#include "history/restorepoints.h"
#include "reports/collectreport.h"
#include "shell/numbers.h"
#include "shell/paths.h"
#include "store/CDbRec.h"
#include "store/recordjson.h"

int RunGpsSheet(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    GpsSheet sheet;
    if (!ReadGpsSheet(PathArgument(context, arguments.Places().front()), sheet)) {
        return 1;
    }
    if (!arguments.Has("--json")) {
        for (std::size_t i = 0; i + 2 < sheet.Texts.size(); i += GpsColumns) {
            context.Out << sheet.Texts[i] << '\t' << sheet.Texts[i + 1] << '\t' << sheet.Texts[i + 2] << '\n';
        }
        return 0;
    }
    context.Out << "{\n \"rows\": ";
    CJsonList rows([&context](std::string_view text) { context.Out << text; }, 1);
    for (std::size_t i = 0; i + 2 < sheet.Texts.size(); i += GpsColumns) {
        rows.Add(nlohmann::ordered_json::array({sheet.Texts[i], sheet.Texts[i + 1], sheet.Texts[i + 2]}));
    }
    rows.End();
    context.Out << "\n}\n";
    return 0;
}

int RunImportGps(const CommandContext& context) {
    const CArguments arguments(context.Words, {}, {});
    arguments.ExpectPlaces(2, 2);
    CDbRec database;
    OpenProject(database, context, arguments.Places()[0]);
    GpsImport result;
    if (!MakeRestorePoint(database, PointImport)) {
        return 1;
    }
    if (!ImportGpsSheet(database, PathArgument(context, arguments.Places()[1]), result)) {
        return 1;
    }
    TellGpsImport(result);
    context.Out << FormatInt(result.Sections) << '\n';
    return 0;
}

int RunExportShape(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--sections", "-o"}, {});
    arguments.ExpectPlaces(1, 1);
    const std::string& project = arguments.Places().front();
    const std::string target =
        TargetArgument(context, WithExtension(arguments.Require("-o"), ".shp"), {project});
    CDbRec database;
    OpenProject(database, context, project);
    return ExportShapes(database, SectionIds(ChosenSections(database, arguments)), target) ? 0 : 1;
}

int RunMap(const CommandContext& context) {
    const CArguments arguments(context.Words, {"--sections"}, {"--json"});
    arguments.ExpectPlaces(1, 1);
    CDbRec database;
    OpenProject(database, context, arguments.Places().front());
    MapContent content;
    if (!ReadMapContent(database, -1, SectionIds(ChosenSections(database, arguments)), content)) {
        return 1;
    }
    nlohmann::ordered_json bubbles = nlohmann::ordered_json::array();
    for (int row = 0; row < content.Records.GetSize(); ++row) {
        bubbles.push_back(BubbleOf(database, content, row));
    }
    context.Out << JsonText({{"calls", MapCalls(content)}, {"bubbles", std::move(bubbles)}}) << '\n';
    return 0;
}
