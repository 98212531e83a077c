"""Prints as JSON what the first sheet of a workbook holds, as a reader sees it who hasn't written it."""
import json
import sys

import openpyxl


def describe(cell, shown):
    if cell.data_type == "f":
        return {"formula": cell.value[1:], "text": shown.value or ""}
    if cell.data_type == "n":
        return {"number": repr(cell.value), "format": cell.number_format}
    return {"text": cell.value}


def main():
    sheet = openpyxl.load_workbook(sys.argv[1]).worksheets[0]
    values = openpyxl.load_workbook(sys.argv[1], data_only=True).worksheets[0]
    cells = {
        cell.coordinate: describe(cell, values[cell.coordinate])
        for row in sheet.iter_rows()
        for cell in row
        if cell.value is not None
    }
    json.dump(
        {
            "name": sheet.title,
            "rows": sheet.max_row,
            "frozen": sheet.freeze_panes or "",
            "filter": sheet.auto_filter.ref or "",
            "widths": {name: column.width for name, column in sheet.column_dimensions.items()},
            "cells": cells,
        },
        sys.stdout,
    )


main()
