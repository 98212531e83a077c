"""Prints the tables of a document: a line for each row, cells apart by "|", pictures as "*" with their points."""
import sys

import docx

SPACE = "{http://schemas.openxmlformats.org/drawingml/2006/wordprocessingDrawing}"
for table in docx.Document(sys.argv[1]).tables:
    for row in table.rows:
        texts, seen = [], []
        for cell in row.cells:
            if cell._tc in seen:
                continue
            seen.append(cell._tc)
            sizes = [[int(extent.get(side)) // 12700 for side in ("cx", "cy")]
                     for extent in cell._tc.iter(SPACE + "extent")]
            texts.append("".join(f"*{width}x{height}" for width, height in sizes) + cell.text.strip())
        print("|".join(texts))
