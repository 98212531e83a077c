"""Prints the texts of a document by the eyes of another reader than the one who wrote it, in their order: a
paragraph a line, and a line a row of a table with "|" between its cells. "[picture]" stands for a picture."""
import sys

import docx
from docx.oxml.ns import qn


def text_of(paragraph):
    parts = []
    for node in paragraph.iter():
        if node.tag == qn("w:t"):
            parts.append(node.text or "")
        elif node.tag == qn("w:br"):
            parts.append("[page]" if node.get(qn("w:type")) == "page" else "/")
        elif node.tag == qn("pic:pic"):
            parts.append("[picture]")
        elif node.tag == qn("c:chart"):
            parts.append("[chart]")
    return "".join(parts)


def lines(body):
    for block in body:
        if block.tag == qn("w:p"):
            yield text_of(block)
        elif block.tag == qn("w:tbl"):
            for row in block.tr_lst:
                yield "|".join("/".join(text_of(p) for p in cell.p_lst) for cell in row.tc_lst)


sys.stdout.reconfigure(encoding="utf-8")
print("\n".join(lines(docx.Document(sys.argv[1]).element.body)))
