#include "tests/reports/samplereport.h"

namespace {

std::string Text(int number) {
    return std::to_string(number);
}

void FillRows(CDocx& document, const std::string& bookmark, int rows, int firstRow, int firstColumn,
              int columns, bool numbered) {
    CDocxTable table = document.Table(bookmark);
    for (int r = 0; r < rows; ++r) {
        if (r > 0 && numbered) {
            table.AddRow();
        }
        if (numbered) {
            table.SetCell(r + firstRow, 1, Text(r + 1));
        }
        for (int c = 0; c < columns; ++c) {
            table.SetCell(r + firstRow, c + firstColumn, Text(r) + "." + Text(c));
        }
    }
}

void FillFull(CDocx& document, const SampleReport& sample) {
    FillRows(document, "wellDefectTotal", 13, 2, 3, 9, false);
    FillRows(document, "wellDefectList", 3, 2, 2, 6, true);
    FillRows(document, "rILevelTable", sample.Sections, 3, 2, 6, true);
    CDocxTable shares = document.Table("rILevelTotalTable");
    for (int row = 2; row <= 11; ++row) {
        shares.SetCell(row, 3, Text(row) + ".0%");
    }
    CDocxTable lengths = document.Table("rILevelTotalLenTable");
    lengths.SetCell(2, 2, "1234.567");
    for (const int first : {4, 9}) {
        for (int row = first; row < first + 4; ++row) {
            for (int column = 3; column <= 5; ++column) {
                lengths.SetCell(row, column, Text(row) + "/" + Text(column));
            }
        }
    }
}

void FillForms(CDocx& document, const SampleReport& sample, const DocxPicture& picture) {
    CDocxForm form = document.TakeForm("tblDefectDetail_GB");
    for (int i = 0; i < sample.Sections; ++i) {
        const int defects = i + 1;
        const int section = sample.Sections - i;
        if (i != sample.Sections - 1) {
            form.InsertPageBreak();
        }
        CDocxTable table = form.Paste();
        if (defects > 1) {
            table.InsertRowsBelow(9, defects - 1);
        }
        table.SetCell(1, 2, Text(section));
        table.SetCell(1, 4, "管段" + Text(section));
        for (int row = 2; row <= 5; ++row) {
            for (const int column : {2, 4, 6}) {
                table.SetCell(row, column, "值" + Text(row) + Text(column));
            }
        }
        for (const int row : {6, 7}) {
            table.SetCell(row, 2, "0.87");
            table.SetCell(row, 4, "1.2");
        }
        for (int d = 0; d < defects; ++d) {
            for (int column = 1; column <= 5; ++column) {
                table.SetCell(9 + d, column, column == 5 ? "管壁有裂口，间隙清晰可见" : "d" + Text(column));
            }
            table.SetCell(9 + d, 6, "图" + Text(d + 1));
        }
        if (defects > 2) {
            table.InsertRowsBelow(defects + 10, (defects + 1) / 2 - 1);
        }
        for (int k = 0; k < defects; ++k) {
            table.SetCell(defects + 10 + k / 2, k % 2 + 1, "图" + Text(k + 1));
            table.AddPicture(defects + 10 + k / 2, k % 2 + 1, picture, 240, 192);
        }
    }
    CDocxTable wells = document.Table("tblJcjDefectTotal");
    wells.InsertRowsBelow(2, 1);
    for (int row = 2; row <= 3; ++row) {
        for (int column = 1; column <= 6; ++column) {
            wells.SetCell(row, column, "井" + Text(row) + Text(column));
        }
    }
    wells.InsertRowsBelow(4, 1);
    for (int k = 0; k < 3; ++k) {
        wells.SetCell(4 + k / 2, k % 2 + 1, "图" + Text(k + 1));
        wells.AddPicture(4 + k / 2, k % 2 + 1, picture, 240, 192);
    }
}

void FillDefects(CDocx& document, const DocxPicture& picture) {
    constexpr int Defects = 7;
    CDocxForm form = document.TakeForm("tblDefectDetail");
    for (int i = 0; i < Defects; ++i) {
        if (i != Defects - 1) {
            if ((Defects - i) % 3 == 0) {
                form.InsertPageBreak();
            } else {
                form.InsertParagraphs(2);
            }
        }
        CDocxTable table = form.Paste();
        for (int row = 1; row <= 6; ++row) {
            table.SetCell(row, 2, "缺陷" + Text(Defects - i) + "." + Text(row));
        }
        table.AddPicture(1, 3, picture, 240, 192);
    }
}

}  // namespace

void FillSample(CDocx& document, const SampleReport& sample) {
    if (sample.Full) {
        FillFull(document, sample);
    }
    FillRows(document, "tbDefectAssess", sample.Sections, 3, 2, sample.Assessed, true);
    if (const auto map = document.LoadPicture(sample.MapPicture)) {
        document.ReplacePicture("picMap", *map);
    } else {
        document.SetText("picMap", "no map");
    }
    document.SetText("lbProjectName", "东山路 <A&B> 排水管道检测");
    document.SetText("lbReportSN", "SN-1");
    document.SetText("lbDetectAddress", "东山区");
    document.SetText("lbInspectionDate", "2026-03-01");
    document.SetText("lbCorporation", "管道检测公司");
    CDocxTable info = document.Table("tblPrjInfo");
    info.SetCell(1, 2, "东山路 <A&B> 排水管道检测");
    info.SetCell(2, 2, "东山区");
    info.SetCell(6, 2, "王工");

    CDocxTable list = document.Table("OLE_LINK1");
    list.CopyRow(2, sample.Sections - 1);
    for (int r = 0; r < sample.Sections; ++r) {
        for (int column = 1; column <= 5; ++column) {
            list.SetCell(r + 2, column, Text(r + 1) + "-" + Text(column));
        }
    }
    list.SetCell(sample.Sections + 2, 5, "987.6");
    CDocxTable types = document.Table("tblDefect");
    for (int i = 0; i < 16; ++i) {
        for (int column = 2; column <= 6; ++column) {
            types.SetCell(i + 3, column, Text(i) + ":" + Text(column));
        }
    }
    FillRows(document, "tblDefectAll", 40, 3, 2, 9, true);
    const DocxPicture picture = document.LoadPicture(sample.Picture).value();
    if (sample.Full) {
        FillForms(document, sample, picture);
    } else {
        FillDefects(document, picture);
    }
    document.SetChart("chartDefectCount", {ChartKind::Pie, 3, {"破裂", "变形", "沉积"}, {5, 3, 1}, 400, 400});
    document.SetChart("chartLevelCount",
                      {ChartKind::Columns, 1, {"1级", "2级", "3级", "4级"}, {7, 0, 2, 1}, 400, 250});
}
