#include "fieldimport/xlssheet.h"

#include <freexl.h>

#include <memory>
#include <string>

#include "fieldimport/CSheetError.h"
#include "shell/CHostFiles.h"
#include "shell/numbers.h"
#include "shell/seams.h"

namespace {

struct CloseWorkbook {
    void operator()(const void* workbook) const { freexl_close(workbook); }
};
using Workbook = std::unique_ptr<const void, CloseWorkbook>;

[[noreturn]] void Refuse(const void* workbook) {
    unsigned int password = 0;
    const bool hidden = workbook != nullptr &&
                        freexl_get_info(workbook, FREEXL_BIFF_PASSWORD, &password) == FREEXL_OK &&
                        password == FREEXL_BIFF_OBFUSCATED;
    throw CSheetError(hidden ? SheetFault::Protected : SheetFault::Damaged);
}

GpsCell ReadCell(const void* workbook, unsigned int row, unsigned short column) {
    FreeXL_CellValue value;
    if (freexl_get_cell_value(workbook, row, column, &value) != FREEXL_OK) {
        throw CSheetError(SheetFault::Damaged);
    }
    switch (value.type) {
        case FREEXL_CELL_INT:
            return {FormatInt(value.value.int_value), true};
        case FREEXL_CELL_DOUBLE:
            return {FormatNumber(value.value.double_value, 12), true};
        case FREEXL_CELL_TEXT:
        case FREEXL_CELL_SST_TEXT:
            return {value.value.text_value, *value.value.text_value != '\0'};
        default:
            return {{}, value.type != FREEXL_CELL_NULL};
    }
}

}  // namespace

bool IsXls(std::string_view bytes) {
    // A compound file, or what came before these.
    return bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") ||
           (bytes.size() > 4 && bytes[0] == '\x09' &&
            (bytes[1] == '\0' || bytes[1] == '\x02' || bytes[1] == '\x04' || bytes[1] == '\x08'));
}

void ReadXlsSheet(std::string_view path, CGpsRows& rows) {
    const void* opened = nullptr;
    const int result = freexl_open(HostFiles().HostPath(path).c_str(), &opened);
    const Workbook workbook(opened);
    if (result != FREEXL_OK || freexl_select_active_worksheet(opened, 0) != FREEXL_OK) {
        Refuse(opened);
    }
    unsigned int height = 0;
    unsigned short width = 0;
    if (freexl_worksheet_dimensions(opened, &height, &width) != FREEXL_OK) {
        Refuse(opened);
    }
    unsigned int password = 0;
    if (freexl_get_info(opened, FREEXL_BIFF_PASSWORD, &password) == FREEXL_OK &&
        password == FREEXL_BIFF_OBFUSCATED) {
        Refuse(opened);
    }
    for (unsigned int row = 0; row < height; ++row) {
        GpsRow cells;
        for (unsigned short column = 0; column < GpsColumns && column < width; ++column) {
            cells[column] = ReadCell(opened, row, column);
        }
        rows.Add(row + 1, std::move(cells));
    }
}
