// A workbook without its rows: what the format asks for around them, and the look of the sheet and its cells.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "reports/excel/celltexts.h"
#include "reports/ooxml/ziparchive.h"

// The looks of cells, as the numbers that stand for them in the attribute "s".
struct CellLooks {
    std::string Head;
    std::string Text;
    std::string Centred;
    std::string Link;
    std::array<std::string, SureDigits> Number;  // by decimals; those that the table has
};

struct WorkbookFrame {
    std::vector<ZipEntry> Parts;
    std::size_t Sheet = 0;  // which of the parts is the sheet; its content is in the next two
    std::string BeforeRows;
    std::string BehindRows;
    CellLooks Looks;
};

inline constexpr double HeadHeight = 24;  // points

// For the rows of `list`, the first of which holds the headings. Nothing if the temporary folder has no room.
std::optional<WorkbookFrame> MakeFrame(const std::vector<std::string>& list, const std::string& sheetName,
                                       std::string temporaryFolder);
