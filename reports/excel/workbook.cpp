#include "reports/excel/workbook.h"

#include <stdlib.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "reports/excel/inspectiontable.h"
#include "reports/excel/workbookcheck.h"
#include "shell/numbers.h"
#include "shell/textcodec.h"

namespace {

namespace fs = std::filesystem;

// Limits of the file format, in 16-bit units as it counts.
constexpr std::size_t LongestText = 32767;
constexpr std::size_t LongestLiteral = 255;
constexpr std::size_t LongestFormula = 8192;
constexpr std::size_t SureDigits = 15;  // of a number

constexpr double HeadHeight = 24;  // points
constexpr lxw_color_t HeadColour = 0xE4ECF5;
constexpr lxw_color_t LineColour = 0x8FA3B8;
constexpr std::uint8_t PaperA3 = 8;

// The user's own, gone with all that is in it.
class CTemporaryFolder {
public:
    CTemporaryFolder() {
        std::error_code error;
        m_name = (fs::temp_directory_path(error) / "drovane-XXXXXX").string();
        if (error || mkdtemp(m_name.data()) == nullptr) {
            m_name.clear();
        }
    }
    ~CTemporaryFolder() {
        std::error_code error;
        if (!m_name.empty()) {
            fs::remove_all(m_name, error);
        }
    }
    CTemporaryFolder(const CTemporaryFolder&) = delete;
    CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;

    std::string& Name() { return m_name; }  // empty if there is none

private:
    std::string m_name;
};

std::size_t Units(unsigned char byte) {
    const bool continuation = (byte & 0xC0) == 0x80;
    return continuation ? 0 : (byte >= 0xF0 ? 2 : 1);
}

std::size_t Units(std::string_view utf8) {
    std::size_t units = 0;
    for (const char c : utf8) {
        units += Units(static_cast<unsigned char>(c));
    }
    return units;
}

// U+FFFE and U+FFFF are characters of no XML document.
bool IsXmlText(std::string_view text) {
    return IsValidUtf8(text) && text.find("\xEF\xBF\xBE") == std::string_view::npos &&
           text.find("\xEF\xBF\xBF") == std::string_view::npos;
}

// With U+FFFD for what a cell can't hold, and cut where no cell is longer.
std::string CellText(std::string_view text) {
    std::string clean;
    if (IsXmlText(text)) {
        clean = text;
    } else {
        for (std::size_t at = 0, length = 1; at < text.size(); at += length) {
            length = 1;
            while (length < 4 && !IsValidUtf8(text.substr(at, length))) {
                ++length;
            }
            const std::string_view character = text.substr(at, length);
            clean += IsXmlText(character) ? character : "\xEF\xBF\xBD";
            length = IsValidUtf8(character) ? character.size() : 1;
        }
    }
    std::size_t units = 0;
    for (std::size_t at = 0; at < clean.size() && clean.size() > LongestText; ++at) {
        units += Units(static_cast<unsigned char>(clean[at]));
        if (units > LongestText) {
            clean.erase(at);
        }
    }
    return clean;
}

// Twice the width of a Latin letter for what lies behind the alphabets.
std::size_t ShownWidth(std::string_view utf8) {
    std::size_t width = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        width += (byte & 0xC0) == 0x80 ? 0 : (byte >= 0xE3 ? 2 : 1);
    }
    return width;
}

class CSheet {
public:
    CSheet(lxw_workbook* book, lxw_worksheet* sheet) : m_book(book), m_sheet(sheet) {
        m_head = NewFormat();
        format_set_bold(m_head);
        format_set_bg_color(m_head, HeadColour);
        format_set_bottom(m_head, LXW_BORDER_THIN);
        format_set_bottom_color(m_head, LineColour);
        format_set_align(m_head, LXW_ALIGN_CENTER);
        m_text = NewFormat();
        format_set_align(m_text, LXW_ALIGN_LEFT);
        format_set_indent(m_text, 1);
        m_centred = NewFormat();
        format_set_align(m_centred, LXW_ALIGN_CENTER);
        m_link = NewFormat();
        format_set_hyperlink(m_link);
        format_set_align(m_link, LXW_ALIGN_LEFT);
        format_set_indent(m_link, 1);
    }

    void SetUp(const std::vector<std::string>& list, lxw_row_t rows) {
        constexpr auto LastColumn = static_cast<lxw_col_t>(InspectionColumns - 1);
        for (lxw_col_t column = 0; column <= LastColumn; ++column) {
            worksheet_set_column(m_sheet, column, column, Width(list, column), nullptr);
        }
        worksheet_set_row(m_sheet, 0, HeadHeight, nullptr);
        worksheet_freeze_panes(m_sheet, 1, 0);
        worksheet_autofilter(m_sheet, 0, 0, rows - 1, LastColumn);
        // Numbers of projects and tasks are texts on purpose; no cell needs a warning for it.
        char range[LXW_MAX_CELL_RANGE_LENGTH];
        lxw_rowcol_to_range(range, 0, 0, rows - 1, LastColumn);
        worksheet_ignore_errors(m_sheet, LXW_IGNORE_NUMBER_STORED_AS_TEXT, range);
        worksheet_set_landscape(m_sheet);
        worksheet_set_paper(m_sheet, PaperA3);
        // On fewer sheets side by side nobody could read it.
        worksheet_fit_to_pages(m_sheet, 3, 0);
        worksheet_print_across(m_sheet);
        worksheet_set_margins(m_sheet, 0.4, 0.4, 0.5, 0.6);
        worksheet_repeat_rows(m_sheet, 0, 0);
        worksheet_set_footer(m_sheet, "&C&P / &N");
    }

    bool Write(lxw_row_t row, int column, const std::string& text) {
        const auto place = static_cast<lxw_col_t>(column);
        const CellKind kind = row == 0 ? CellKind::Text : InspectionKind(column);
        const auto path = kind == CellKind::Link ? LinkPath(text) : std::nullopt;
        const auto formula = path ? LinkFormula(*path) : std::nullopt;
        if (formula) {
            return worksheet_write_formula_str(m_sheet, row, place, formula->c_str(),
                                               path->empty() ? m_text : m_link,
                                               std::string(*path).c_str()) == LXW_NO_ERROR;
        }
        const int decimals = kind == CellKind::Number ? ShownDecimals(text) : -1;
        if (decimals >= 0) {
            return worksheet_write_number(m_sheet, row, place, ParseDouble(text), NumberFormat(decimals)) ==
                   LXW_NO_ERROR;
        }
        lxw_format* format = kind == CellKind::Centred ? m_centred : m_text;
        return worksheet_write_string(m_sheet, row, place, CellText(path.value_or(text)).c_str(),
                                      row == 0 ? m_head : format) == LXW_NO_ERROR;
    }

private:
    lxw_format* NewFormat() {
        lxw_format* format = workbook_add_format(m_book);
        format_set_align(format, LXW_ALIGN_VERTICAL_CENTER);
        return format;
    }

    lxw_format* NumberFormat(int decimals) {
        lxw_format*& format = m_numbers[decimals];
        if (format == nullptr) {
            format = NewFormat();
            format_set_align(format, LXW_ALIGN_RIGHT);
            format_set_indent(format, 1);
            const std::string picture =
                decimals == 0 ? "0" : "0." + std::string(static_cast<std::size_t>(decimals), '0');
            format_set_num_format(format, picture.c_str());
        }
        return format;
    }

    // So that nothing common is cut, and no long text pushes the rest out of sight.
    static double Width(const std::vector<std::string>& list, std::size_t column) {
        constexpr std::size_t Least = 7;
        constexpr std::size_t Most = 36;
        constexpr std::size_t FilterButton = 3;
        std::size_t width = ShownWidth(list[column]) + FilterButton;
        for (std::size_t at = column; at < list.size() && width < Most; at += InspectionColumns) {
            width = std::max(width, ShownWidth(LinkPath(list[at]).value_or(list[at])));
        }
        return static_cast<double>(std::clamp(width, Least, Most)) + 2.5;
    }

    lxw_workbook* m_book;
    lxw_worksheet* m_sheet;
    lxw_format* m_head;
    lxw_format* m_text;
    lxw_format* m_centred;
    lxw_format* m_link;
    std::map<int, lxw_format*> m_numbers;
};

bool WriteBook(const std::vector<std::string>& list, const std::string& sheetName, const std::string& file,
               std::string& temporaryFolder) {
    // Row by row into a temporary file: a table of any length takes little memory.
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = temporaryFolder.data();
    lxw_workbook* book = workbook_new_opt(file.c_str(), &options);
    if (book == nullptr) {
        return false;
    }
    // Language files are open to their users, and not every text can name a sheet.
    const bool canName = !sheetName.empty() && IsXmlText(sheetName) &&
                         workbook_validate_sheet_name(book, sheetName.c_str()) == LXW_NO_ERROR;
    lxw_worksheet* page = workbook_add_worksheet(book, canName ? sheetName.c_str() : nullptr);
    bool good = page != nullptr;
    if (good) {
        const auto rows = static_cast<lxw_row_t>(list.size() / InspectionColumns);
        CSheet sheet(book, page);
        sheet.SetUp(list, rows);
        for (lxw_row_t row = 0; row < rows && good; ++row) {
            for (int column = 0; column < InspectionColumns && good; ++column) {
                good = sheet.Write(row, column,
                                   list[static_cast<std::size_t>(row) * InspectionColumns +
                                        static_cast<std::size_t>(column)]);
            }
        }
    }
    return workbook_close(book) == LXW_NO_ERROR && good;
}

}  // namespace

std::optional<std::string> LinkFormula(std::string_view path) {
    const bool control =
        std::any_of(path.begin(), path.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; });
    if (control || !IsXmlText(path)) {
        return std::nullopt;
    }
    std::string formula = "=HYPERLINK(\"";
    std::size_t units = 0;
    for (const char c : path) {
        const std::size_t more = c == '"' ? 2 : Units(static_cast<unsigned char>(c));
        if (units + more > LongestLiteral) {
            formula += "\"&\"";
            units = 0;
        }
        units += more;
        formula.append(c == '"' ? 2 : 1, c);
    }
    formula += "\")";
    return Units(formula) <= LongestFormula ? std::optional(formula) : std::nullopt;
}

int ShownDecimals(std::string_view text) {
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative ? 1 : 0);
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view decimals = point == std::string_view::npos ? "" : text.substr(point + 1);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const bool number = !whole.empty() && std::all_of(whole.begin(), whole.end(), isDigit) &&
                        std::all_of(decimals.begin(), decimals.end(), isDigit) &&
                        (point == std::string_view::npos || !decimals.empty());
    const bool leadingZero = whole.size() > 1 && whole.front() == '0';
    const bool negativeZero = negative && text.find_first_not_of("0.") == std::string_view::npos;
    if (!number || leadingZero || negativeZero || whole.size() + decimals.size() > SureDigits) {
        return -1;
    }
    return static_cast<int>(decimals.size());
}

std::optional<std::string> MakeWorkbook(const std::vector<std::string>& list, const std::string& sheetName) {
    constexpr std::size_t MostRows = LXW_ROW_MAX;
    CTemporaryFolder folder;
    const std::size_t rows = list.size() / InspectionColumns;
    if (folder.Name().empty() || rows == 0 || rows > MostRows) {
        return std::nullopt;
    }
    const std::string file = folder.Name() + "/table.xlsx";
    if (!WriteBook(list, sheetName, file, folder.Name())) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return IsWholeWorkbook(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}
