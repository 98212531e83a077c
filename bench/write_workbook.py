"""Writes cells into workbooks with openpyxl, in its mode for large tables; the peer of a benchmark.

Takes the cells (JSON: rows of texts and numbers) and a pipe. For each line on standard input the file that it
names is written, and then a byte into the pipe.
"""
import json
import sys

import openpyxl


def write(rows, path):
    book = openpyxl.Workbook(write_only=True)
    sheet = book.create_sheet()
    sheet.freeze_panes = "A2"
    last = openpyxl.utils.get_column_letter(len(rows[0]))
    sheet.auto_filter.ref = f"A1:{last}{len(rows)}"
    for row in rows:
        sheet.append(row)
    book.save(path)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        rows = json.load(file)
    with open(sys.argv[2], "wb", buffering=0) as done:
        for line in sys.stdin:
            write(rows, line.rstrip("\n"))
            done.write(b".")


main()
