#include "reports/excel/excelexport.h"

#include <optional>

#include "reports/excel/inspectiontable.h"
#include "reports/excel/workbook.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/documents.h"
#include "shell/language.h"
#include "shell/seams.h"
#include "store/CDbRec.h"

namespace {

constexpr int MessageNoWorkbook = 2378;
constexpr int MessageNoProgram = 3290;
constexpr int MessageNotWritten = 3291;
constexpr int MessageSheetName = 3292;
constexpr const char* Ending = ".xlsx";

std::optional<std::string> MakeTable(CDbRec& database) {
    std::vector<std::string> list;
    if (BuildInspectionTable(database, list) <= 0) {
        return std::nullopt;
    }
    std::optional<std::string> bytes = MakeWorkbook(list, LoadMessage(MessageSheetName));
    if (!bytes) {
        ShowMessage(MessageNoWorkbook);
    }
    return bytes;
}

}  // namespace

bool WriteInspectionTable(CDbRec& database, const std::string& path) {
    const std::optional<std::string> bytes = MakeTable(database);
    if (bytes && !HostFiles().WriteFile(path, *bytes)) {
        ShowMessage(MessageNotWritten, "\n" + HostFiles().HostPath(path));
        return false;
    }
    return bytes.has_value();
}

std::string ExportInspectionTable(CDbRec& database) {
    _PRO_DATA project;
    if (!database.ReadAttrib(project)) {
        return {};
    }
    const std::optional<std::string> bytes = MakeTable(database);
    if (!bytes) {
        return {};
    }
    std::string path = WriteDocument(project.ProjectName, Ending, *bytes);
    if (path.empty()) {
        ShowMessage(MessageNotWritten, "\n" + HostFiles().HostPath(GetDocumentsFolder()));
    }
    return path;
}

void OpenInspectionTable(const std::string& path) {
    if (!Desktop().OpenFile(path)) {
        ShowMessage(MessageNoProgram, "\n" + HostFiles().HostPath(path));
    }
}
