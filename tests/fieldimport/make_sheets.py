"""Writes surveyors' sheets as other programs write them: make_sheets.py FOLDER"""
import datetime
import sys
from pathlib import Path

import openpyxl
import xlwt

folder = Path(sys.argv[1])
# The first sheet of the list isn't the first that was made; the heading is never read.
ROWS = [
    ["井号", "经度", "纬度", "备注"],
    ["YS1", 113.264435123456, 23.1291, "x"],
    [12, "113.5", "北纬"],
    [20241234, 1e-7, -0.5],
    ["a<&\n\"", None, 0],
    [12.5, True, datetime.datetime(2026, 1, 2)],
    ["尾 ", 1234567.125, 1],
    [None, 5, 6],
    ["behind", 7, 8],
    [None, None, None, "only a remark"],
]

book = openpyxl.Workbook()
book.active.title = "second"
sheet = book.create_sheet("first", 0)
for row in ROWS:
    sheet.append(row)
sheet["B7"].number_format = '"¥"#,##0.00'
sheet["C7"].number_format = "0.00E+00"
book.save(folder / "openpyxl.xlsx")

old = xlwt.Workbook(encoding="utf-8")
sheet = old.add_sheet("first")
date = xlwt.easyxf(num_format_str="yyyy-mm-dd")
for r, row in enumerate(ROWS):
    for c, value in enumerate(row):
        if value is not None:
            sheet.write(r, c, value, date if isinstance(value, datetime.datetime) else xlwt.Style.default_style)
sheet.write(9, 0, xlwt.Formula("1+1"))
old.save(folder / "xlwt.xls")

old = openpyxl.Workbook()
sheet = old.active
sheet.append(["well", "x", "y"])
sheet.append(["F1", "=1/8", '="2"&"3"'])
sheet.append(["F2", "=1/0", "=TRUE()"])
old.save(folder / "formulas.xlsx")
