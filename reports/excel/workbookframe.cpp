#include "reports/excel/workbookframe.h"

#include <xlsxwriter.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

#include "reports/excel/inspectiontable.h"
#include "reports/ooxml/COoxmlError.h"
#include "reports/ooxml/xmltext.h"
#include "shell/numbers.h"

namespace {

constexpr lxw_color_t HeadColour = 0xE4ECF5;
constexpr lxw_color_t LineColour = 0x8FA3B8;
constexpr std::uint8_t PaperA3 = 8;

constexpr auto LastColumn = static_cast<lxw_col_t>(InspectionColumns - 1);

// Twice the width of a Latin letter for what lies behind the alphabets.
std::size_t ShownWidth(std::string_view utf8) {
    std::size_t width = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        width += (byte & 0xC0) == 0x80 ? 0 : (byte >= 0xE3 ? 2 : 1);
    }
    return width;
}

// So that nothing common is cut, and no long text pushes the rest out of sight.
double Width(const std::vector<std::string>& list, std::size_t column) {
    constexpr std::size_t Least = 7;
    constexpr std::size_t Most = 36;
    constexpr std::size_t FilterButton = 3;
    std::size_t width = ShownWidth(list[column]) + FilterButton;
    for (std::size_t at = column; at < list.size() && width < Most; at += InspectionColumns) {
        if (list[at].size() > width) {  // no text is shown wider than its bytes are many
            width = std::max(width, ShownWidth(LinkPath(list[at]).value_or(list[at])));
        }
    }
    return static_cast<double>(std::clamp(width, Least, Most)) + 2.5;
}

void SetUpSheet(lxw_worksheet* sheet, const std::vector<std::string>& list, lxw_row_t rows) {
    for (lxw_col_t column = 0; column <= LastColumn; ++column) {
        worksheet_set_column(sheet, column, column, Width(list, column), nullptr);
    }
    worksheet_set_row(sheet, 0, HeadHeight, nullptr);
    worksheet_freeze_panes(sheet, 1, 0);
    worksheet_autofilter(sheet, 0, 0, rows - 1, LastColumn);
    // Numbers of projects and tasks are texts on purpose; no cell needs a warning for it.
    char range[LXW_MAX_CELL_RANGE_LENGTH];
    lxw_rowcol_to_range(range, 0, 0, rows - 1, LastColumn);
    worksheet_ignore_errors(sheet, LXW_IGNORE_NUMBER_STORED_AS_TEXT, range);
    worksheet_set_landscape(sheet);
    worksheet_set_paper(sheet, PaperA3);
    // On fewer sheets side by side nobody could read it.
    worksheet_fit_to_pages(sheet, 3, 0);
    worksheet_print_across(sheet);
    worksheet_set_margins(sheet, 0.4, 0.4, 0.5, 0.6);
    worksheet_repeat_rows(sheet, 0, 0);
    worksheet_set_footer(sheet, "&C&P / &N");
}

lxw_format* NewFormat(lxw_workbook* book, lxw_format_alignments alignment) {
    lxw_format* format = workbook_add_format(book);
    format_set_align(format, LXW_ALIGN_VERTICAL_CENTER);
    format_set_align(format, static_cast<std::uint8_t>(alignment));
    if (alignment != LXW_ALIGN_CENTER) {
        format_set_indent(format, 1);
    }
    return format;
}

// Each with the place for its number.
using Looks = std::vector<std::pair<lxw_format*, std::string*>>;

// Those that the table has.
Looks MakeLooks(lxw_workbook* book, const std::vector<std::string>& list, CellLooks& looks) {
    lxw_format* head = NewFormat(book, LXW_ALIGN_CENTER);
    format_set_bold(head);
    format_set_bg_color(head, HeadColour);
    format_set_bottom(head, LXW_BORDER_THIN);
    format_set_bottom_color(head, LineColour);
    lxw_format* text = NewFormat(book, LXW_ALIGN_LEFT);
    lxw_format* centred = NewFormat(book, LXW_ALIGN_CENTER);
    lxw_format* link = NewFormat(book, LXW_ALIGN_LEFT);
    format_set_hyperlink(link);
    Looks made{{head, &looks.Head}, {text, &looks.Text}, {centred, &looks.Centred}, {link, &looks.Link}};

    std::array<bool, SureDigits> used{};
    for (std::size_t at = InspectionColumns; at < list.size(); ++at) {
        const bool number = InspectionKind(static_cast<int>(at % InspectionColumns)) == CellKind::Number;
        if (const int decimals = number ? ShownDecimals(list[at]) : -1; decimals >= 0) {
            used[static_cast<std::size_t>(decimals)] = true;
        }
    }
    for (std::size_t decimals = 0; decimals < used.size(); ++decimals) {
        if (used[decimals]) {
            const std::string picture = decimals == 0 ? "0" : "0." + std::string(decimals, '0');
            lxw_format* number = NewFormat(book, LXW_ALIGN_RIGHT);
            format_set_num_format(number, picture.c_str());
            made.emplace_back(number, &looks.Number[decimals]);
        }
    }
    return made;
}

// Name of the root element of a document that begins so.
std::string RootName(std::string_view beginning) {
    for (std::size_t at = beginning.find('<'); at != std::string_view::npos;
         at = beginning.find('<', at + 1)) {
        const std::size_t end = beginning.find_first_of(" \t\r\n/>", at + 1);
        if (end != std::string_view::npos && beginning.substr(at + 1, 1) != "?") {
            return std::string(beginning.substr(at + 1, end - at - 1));
        }
    }
    return {};
}

// The library doesn't notice a disk that fills up while it keeps its parts in temporary files.
bool IsWholeXml(std::string_view bytes) {
    bytes = bytes.substr(0, bytes.find_last_not_of("\r\n") + 1);
    const std::string root = RootName(bytes);
    return !root.empty() && (bytes.ends_with("</" + root + ">") ||
                             (bytes.ends_with("/>") && bytes.rfind('<') == bytes.rfind("<" + root)));
}

// The value of the next attribute "s" from `at` on; moves `at` behind it.
std::string NextLook(std::string_view sheet, std::size_t& at) {
    constexpr std::string_view Attribute = " s=\"";
    const std::size_t begin =
        std::min(sheet.find(Attribute, at), sheet.size() - Attribute.size()) + Attribute.size();
    at = std::min(sheet.find('"', begin), sheet.size());
    return std::string(sheet.substr(begin, at - begin));
}

// Takes the book of the library apart.
bool ReadFrame(const std::string& file, lxw_row_t rows, const Looks& looks, WorkbookFrame& frame) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    try {
        frame.Parts = ReadZip(bytes);
    } catch (const COoxmlError&) {
        return false;
    }
    if (!std::all_of(frame.Parts.begin(), frame.Parts.end(),
                     [](const ZipEntry& part) { return IsWholeXml(part.Bytes); })) {
        return false;
    }
    const auto found = std::find_if(frame.Parts.begin(), frame.Parts.end(), [](const ZipEntry& part) {
        return part.Name == "xl/worksheets/sheet1.xml";
    });
    if (found == frame.Parts.end()) {
        return false;
    }
    frame.Sheet = static_cast<std::size_t>(found - frame.Parts.begin());
    const std::string& xml = found->Bytes;
    constexpr std::string_view RowsBegin = "<sheetData>";
    const std::size_t begin = xml.find(RowsBegin);
    const std::size_t end = xml.find("</sheetData>");
    std::size_t at = xml.find("<row r=\"" + FormatInt(rows) + "\"");
    if (begin == xml.npos || end == xml.npos || at == xml.npos) {
        return false;
    }
    for (const auto& [format, number] : looks) {
        *number = NextLook(xml, at);
    }
    frame.BeforeRows = xml.substr(0, begin + RowsBegin.size());
    frame.BehindRows = xml.substr(end);
    found->Bytes.clear();
    return true;
}

}  // namespace

std::optional<WorkbookFrame> MakeFrame(const std::vector<std::string>& list, const std::string& sheetName,
                                       std::string temporaryFolder) {
    const std::string file = temporaryFolder + "/frame.xlsx";
    lxw_workbook_options options{};
    options.tmpdir = temporaryFolder.data();
    lxw_workbook* book = workbook_new_opt(file.c_str(), &options);
    if (book == nullptr) {
        return std::nullopt;
    }
    // Language files are open to their users, and not every text can name a sheet.
    const bool canName = !sheetName.empty() && IsXmlText(sheetName) &&
                         workbook_validate_sheet_name(book, sheetName.c_str()) == LXW_NO_ERROR;
    lxw_worksheet* sheet = workbook_add_worksheet(book, canName ? sheetName.c_str() : nullptr);
    WorkbookFrame frame;
    const auto rows = static_cast<lxw_row_t>(list.size() / InspectionColumns);
    const auto looks = MakeLooks(book, list, frame.Looks);
    if (sheet != nullptr) {
        SetUpSheet(sheet, list, rows);
        // The first and the last cell tell how large the sheet is. The last row shows each look once, where
        // its number can be read.
        worksheet_write_blank(sheet, 0, 0, looks[0].first);
        worksheet_write_blank(sheet, rows - 1, LastColumn, looks[0].first);
        for (std::size_t i = 0; i < looks.size(); ++i) {
            worksheet_write_blank(sheet, rows - 1, static_cast<lxw_col_t>(i), looks[i].first);
        }
    }
    if (workbook_close(book) != LXW_NO_ERROR || sheet == nullptr) {
        return std::nullopt;
    }
    return ReadFrame(file, rows, looks, frame) ? std::optional(std::move(frame)) : std::nullopt;
}
