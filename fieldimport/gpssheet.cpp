#include "fieldimport/gpssheet.h"

#include <optional>
#include <string>

#include "fieldimport/CSheetError.h"
#include "fieldimport/xlssheet.h"
#include "fieldimport/xlsxsheet.h"
#include "reports/ooxml/COoxmlError.h"
#include "shell/CHostFiles.h"
#include "shell/CPrompts.h"
#include "shell/language.h"
#include "shell/seams.h"

namespace {

constexpr int MessageNotRead = 3320;
constexpr std::size_t MostBytes = std::size_t{128} << 20;

// Workbooks of the newer format with a password are compound files like those of the older one, in which the
// archive lies encrypted under this name.
constexpr std::string_view Encrypted("E\0n\0c\0r\0y\0p\0t\0e\0d\0P\0a\0c\0k\0a\0g\0e\0", 32);

void Read(std::string_view path, CGpsRows& rows) {
    const std::optional<std::string> bytes = HostFiles().ReadFile(path, MostBytes);
    if (!bytes) {
        throw CSheetError(SheetFault::NoFile);
    }
    if (bytes->starts_with("PK")) {
        ReadXlsxSheet(*bytes, rows);
    } else if (!IsXls(*bytes)) {
        throw CSheetError(SheetFault::NoWorkbook);
    } else if (bytes->find(Encrypted) != std::string::npos) {
        throw CSheetError(SheetFault::Protected);
    } else {
        ReadXlsSheet(path, rows);
    }
}

bool Fail(std::string_view path, const std::string& reason, GpsSheet& sheet) {
    sheet = {};
    ShowMessage(MessageNotRead, "\r\n" + HostFiles().HostPath(path) + "\r\n" + reason);
    return false;
}

}  // namespace

bool ReadGpsSheet(std::string_view path, GpsSheet& sheet) {
    sheet = {};
    CGpsRows rows(sheet);
    try {
        Read(path, rows);
        return true;
    } catch (const CSheetError& error) {
        return Fail(path, error.what(), sheet);
    } catch (const COoxmlError& error) {
        const bool archive = error.Fault() == OoxmlFault::NoDocument;
        return Fail(path, archive ? CSheetError(SheetFault::NoWorkbook).what() : error.what(), sheet);
    }
}
