#!/usr/bin/env python3
"""Fills a report as a script through python-docx would: fill_word_report.py TEMPLATE.docx LISTS.json TARGET.docx

The peer of bench_word: the same tables, forms and pictures from the same lists, without the charts.
"""
import copy
import json
import sys

import docx
from docx.oxml.ns import qn
from docx.shared import Pt
from docx.table import Table


def table_of(document, bookmark):
    for mark in document.element.body.iter(qn("w:bookmarkStart")):
        if mark.get(qn("w:name")) == bookmark:
            return Table(next(mark.iterancestors(qn("w:tbl"))), document)
    raise SystemExit(f"no table {bookmark}")


def insert_rows(table, row, count):
    model = table.rows[row - 1]._tr
    for _ in range(count):
        model.addnext(copy.deepcopy(model))


def set_cells(table, row, first, texts):
    cells = table.rows[row - 1]._tr.tc_lst
    for cell, text in zip(cells[first - 1:], texts):
        docx.table._Cell(cell, table).text = text


def fill_counted(document, bookmark, texts, row, column, numbered):
    table = table_of(document, bookmark)
    count = int(texts[0]) if texts else 0
    width = (len(texts) - 1) // count if count else 0
    for r in range(count):
        if numbered and r:
            table.add_row()
        if numbered:
            set_cells(table, row + r, 1, [str(r + 1)])
        set_cells(table, row + r, column, texts[1 + r * width:1 + (r + 1) * width])


def main():
    document = docx.Document(sys.argv[1])
    lists = json.load(open(sys.argv[2], encoding="utf-8"))
    strings = iter(lists["ProjectStrings"])

    def take(count):
        return [next(strings) for _ in range(count)]

    fill_counted(document, "wellDefectTotal", lists["WellTotalRows"], 2, 3, False)
    fill_counted(document, "rILevelTable", lists["ShortRows"], 3, 2, True)
    fill_counted(document, "tbDefectAssess", lists["SectionRows"], 3, 2, True)
    take(6)
    sections = table_of(document, "OLE_LINK1")
    count = int(float(next(strings)))
    insert_rows(sections, 2, count - 1)
    for r in range(count):
        set_cells(sections, r + 2, 1, [str(r + 1)] + take(4))
    set_cells(sections, count + 2, 5, take(1))
    types = table_of(document, "tblDefect")
    for r in range(lists["Codes"]):
        set_cells(types, r + 3, 2, take(5))
    defects = table_of(document, "tblDefectAll")
    count = int(float(next(strings)))
    for r in range(count):
        set_cells(defects, r + 3, 1, [str(r + 1)] + take(9))
        if r < count - 1:
            defects.add_row()
    model = table_of(document, "tblDefectDetail_GB")._tbl
    place = model.getprevious()
    model.getparent().remove(model)
    forms = int(next(strings))
    for i in range(forms):
        form = copy.deepcopy(model)
        place.addnext(form)
        table = Table(form, document)
        rows = int(next(strings))
        insert_rows(table, 9, rows - 1)
        values = take(17)
        set_cells(table, 1, 2, [str(forms - i)])
        set_cells(table, 1, 4, values[:1])
        for k, (row, column) in enumerate([(r, c) for r in (2, 3, 4, 5) for c in (2, 4, 6)] +
                                          [(6, 2), (6, 4), (7, 2), (7, 4)]):
            set_cells(table, row, column, [values[1 + k]])
        pictures = []
        for r in range(rows):
            texts = take(8)
            pictures += [picture for picture in texts[5:7] if picture]
            set_cells(table, 9 + r, 1, texts[:5] + [str(len(pictures))])
        insert_rows(table, rows + 10, (len(pictures) + 1) // 2 - 1)
        for k, picture in enumerate(pictures):
            cell = docx.table._Cell(table.rows[rows + 9 + k // 2]._tr.tc_lst[k % 2], table)
            cell.paragraphs[0].add_run().add_picture(picture, Pt(240), Pt(192))
    document.save(sys.argv[3])


main()
