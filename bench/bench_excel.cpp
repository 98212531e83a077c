// Speed of the inspection table as a workbook: against the library that it is written with, doing nothing but
// the same cells, and against openpyxl (Debian package python3-openpyxl). Prints a Markdown table; exit code
// 1 if a limit is broken.
#include <stdio.h>
#include <sys/stat.h>
#include <xlsxwriter.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "bench/CBenchFolder.h"
#include "bench/fillproject.h"
#include "bench/ratio.h"
#include "bench/require.h"
#include "reports/excel/celltexts.h"
#include "reports/excel/inspectiontable.h"
#include "reports/excel/workbook.h"
#include "shell/numbers.h"
#include "shell/seams.h"
#include "store/CDbRec.h"

namespace {

constexpr std::size_t Rows = 20001;  // with the head
constexpr int Sections = 1819;       // whose rows are as many and a few more

// What has to be known of a cell to write it with the library and no more.
struct Cell {
    CellKind Kind = CellKind::Text;
    std::string Text;  // of a link, its formula
    std::string Shown;
    double Number = 0;
    int Decimals = 0;
};

std::vector<Cell> MakeCells(const std::vector<std::string>& list) {
    std::vector<Cell> cells;
    for (std::size_t i = 0; i < list.size(); ++i) {
        Cell cell{
            i < InspectionColumns ? CellKind::Text : InspectionKind(static_cast<int>(i % InspectionColumns)),
            list[i],
            {},
            0,
            0};
        if (const auto path = cell.Kind == CellKind::Link ? LinkPath(list[i]) : std::nullopt) {
            cell.Text = LinkFormula(*path).value();
            cell.Shown = *path;
        } else if (cell.Kind == CellKind::Link) {
            cell.Kind = CellKind::Text;
        } else if (cell.Kind == CellKind::Number) {
            cell.Decimals = ShownDecimals(list[i]);
            cell.Kind = cell.Decimals < 0 ? CellKind::Text : CellKind::Number;
            cell.Number = ParseDouble(list[i]);
        }
        cells.push_back(cell);
    }
    return cells;
}

void WriteBare(const std::vector<Cell>& cells, const std::string& file, std::string temporaryFolder) {
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = temporaryFolder.data();
    lxw_workbook* book = workbook_new_opt(file.c_str(), &options);
    lxw_worksheet* sheet = workbook_add_worksheet(book, nullptr);
    lxw_format* text = workbook_add_format(book);
    format_set_align(text, LXW_ALIGN_LEFT);
    lxw_format* link = workbook_add_format(book);
    format_set_hyperlink(link);
    std::map<int, lxw_format*> numbers;
    for (const auto& [decimals, picture] : {std::pair{0, "0"}, {1, "0.0"}, {2, "0.00"}, {6, "0.000000"}}) {
        numbers[decimals] = workbook_add_format(book);
        format_set_num_format(numbers[decimals], picture);
    }
    worksheet_freeze_panes(sheet, 1, 0);
    worksheet_autofilter(sheet, 0, 0, Rows - 1, InspectionColumns - 1);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const Cell& cell = cells[i];
        const auto row = static_cast<lxw_row_t>(i / InspectionColumns);
        const auto column = static_cast<lxw_col_t>(i % InspectionColumns);
        if (cell.Kind == CellKind::Link) {
            worksheet_write_formula_str(sheet, row, column, cell.Text.c_str(), link, cell.Shown.c_str());
        } else if (cell.Kind == CellKind::Number) {
            worksheet_write_number(sheet, row, column, cell.Number, numbers[cell.Decimals]);
        } else {
            worksheet_write_string(sheet, row, column, cell.Text.c_str(), text);
        }
    }
    Require(workbook_close(book) == LXW_NO_ERROR, "write with the library");
}

// The other program holds the cells already when it is asked to write them.
class COpenpyxl {
public:
    COpenpyxl(const CBenchFolder& folder, const std::vector<Cell>& cells) {
        nlohmann::json rows;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            nlohmann::json& row = rows[i / InspectionColumns];
            if (cells[i].Kind == CellKind::Number) {
                row.push_back(cells[i].Number);
            } else {
                row.push_back(cells[i].Text);
            }
        }
        const std::string cellFile = folder.Host("cells.json").string();
        const std::string pipe = folder.Host("done").string();
        std::ofstream(cellFile) << rows;
        Require(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR) == 0, "make a pipe");
        m_asked = popen(
            (DROVANE_PYTHON " '" DROVANE_BENCH_FILES "/write_workbook.py' '" + cellFile + "' '" + pipe + "'")
                .c_str(),
            "w");
        Require(m_asked != nullptr, "start python3");
        m_done = std::fopen(pipe.c_str(), "rb");
    }
    ~COpenpyxl() {
        pclose(m_asked);
        std::fclose(m_done);
    }
    COpenpyxl(const COpenpyxl&) = delete;
    COpenpyxl& operator=(const COpenpyxl&) = delete;

    void Write(const std::string& file) {
        std::fprintf(m_asked, "%s\n", file.c_str());
        std::fflush(m_asked);
        Require(std::fgetc(m_done) == '.', "write with openpyxl");
    }

private:
    FILE* m_asked = nullptr;
    FILE* m_done = nullptr;
};

}  // namespace

int main() {
    if (std::system(DROVANE_PYTHON " -c 'import openpyxl'") != 0) {
        std::fprintf(stderr, "needs the package python3-openpyxl\n");
        return 2;
    }
    const CBenchFolder folder;
    const std::string path = folder.MakeProject("p.mdb");
    FillProject(path, Sections, "\\jobs\\示范路\\WS1\\video.avi",
                [](int record) { return "\\jobs\\示范路\\WS1\\" + std::to_string(record) + ".jpg"; });
    CDbRec database;
    Require(database.OpenDatabase(path, CDbPassword), "open");
    std::vector<std::string> list;
    Require(BuildInspectionTable(database, list) > 0 && list.size() >= Rows * InspectionColumns, "build");
    list.resize(Rows * InspectionColumns);
    const std::vector<Cell> cells = MakeCells(list);

    const std::string ours = folder.Path("ours.xlsx");
    const auto write = [&] {
        const auto bytes = MakeWorkbook(list, "table");
        Require(bytes && HostFiles().WriteFile(ours, *bytes), "write");
    };
    const auto writeBare = [&] {
        WriteBare(cells, folder.Host("bare.xlsx").string(), folder.Host("").string());
    };
    COpenpyxl openpyxl(folder, cells);
    const auto writeOther = [&] { openpyxl.Write(folder.Host("other.xlsx").string()); };

    std::printf("| What | Against | Time | Peer | Ratio, median (range) | Limit | |\n");
    std::printf("|---|---|---|---|---|---|---|\n");
    const std::string what = "Workbook of 20,000 rows with 33 columns, flushed";
    bool holds = PrintRatio(
        {what, "the same cells by bare libxlsxwriter, constant memory", 1.5, 11, write, writeBare});
    holds =
        PrintRatio({what, "the same cells by openpyxl, write-only mode", 0.1, 3, write, writeOther}) && holds;
    return holds ? 0 : 1;
}
