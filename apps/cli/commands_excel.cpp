// The inspection table for spreadsheets.
#include <ostream>

#include "apps/cli/CArguments.h"
#include "apps/cli/commands.h"
#include "reports/excel/excelexport.h"
#include "store/CDbRec.h"

int RunExportExcel(const CommandContext& context) {
    const CArguments arguments(context.Words, {"-o"}, {});
    arguments.ExpectPlaces(1, 1);
    const std::string& project = arguments.Places().front();
    const auto file = arguments.Get("-o");
    const std::string target = file ? TargetArgument(context, *file, {project}) : std::string();
    CDbRec database;
    OpenProject(database, context, project);
    if (file) {
        return WriteInspectionTable(database, target) ? 0 : 1;
    }
    const std::string path = ExportInspectionTable(database);
    if (path.empty()) {
        return 1;
    }
    context.Out << ShownPath(path) << '\n';
    return 0;
}
