#!/usr/bin/env python3
"""Makes a report template (.dotx) from a source in data/word: stage_template.py SOURCE TARGET

A source is an XML file of these elements; lengths are millimetres.

  report title standard   the whole; {title} and {standard} in any text stand for these, as do all attributes;
                          cover="no" if it begins without a cover
  include file            the content of another source
  cover, title, subtitle, h1, h2, p, note     paragraphs; h1 page="yes" begins a page, an empty note isn't there
  field bookmark          in p or cell: a text with a bookmark around it
  landscape               pages across, with what is in it; one that follows another goes on in it
  table bookmark widths   look: "grid" (default) or "lines" (for the cover); keep="yes" keeps it on one page
    row                   head="yes" repeats on each page; height; keep="yes" stays with the next row
      cell                look: "text" (default), "left", "head", "label"; span; merge: "first" or "next" of
                          cells that are one from top to bottom
  picture bookmark width height     a grey frame where a picture will be
  chart bookmark          what stands there if no chart can be drawn

A row may have times="n" to stand n times; {n} in it is its number, and {0}, {1}... are the words of its attribute
`each`, a list with ";" between the rows.
"""
import re
import struct
import sys
import zipfile
import zlib
from pathlib import Path
from xml.etree import ElementTree
from xml.sax.saxutils import escape

W = "http://schemas.openxmlformats.org/wordprocessingml/2006/main"
R = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006"
DRAWING = "http://schemas.openxmlformats.org/drawingml/2006"
TYPES = "application/vnd.openxmlformats-officedocument.wordprocessingml."
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'

PAGE = (210, 297)
SIDE, TOP, BOTTOM = 17, 22, 20
ACCENT, HEAD_FILL, LABEL_FILL, GRID = "1F4E79", "E3ECF5", "F3F6F9", "8C9BAB"


def twips(mm):
    return round(float(mm) * 1440 / 25.4)


class Template:
    def __init__(self, root, folder):
        self.values = dict(root.attrib)
        self.folder = folder
        self.body = []
        self.bookmarks = set()
        self.pictures = []
        self.first_section = True
        self.across_end = None  # the paragraph that ends the last landscape

    # Texts and bookmarks

    def text(self, text):
        text = re.sub(r"[ \t\r\n]+", " ", text or "").strip(" ")
        for name, value in self.values.items():
            text = text.replace("{" + name + "}", value)
        return text

    def run(self, text):
        return run(text) if text else ""

    def mark(self, name, content):
        if name in self.bookmarks:
            raise SystemExit(f"bookmark {name} stands twice")
        self.bookmarks.add(name)
        number = len(self.bookmarks)
        return (f'<w:bookmarkStart w:id="{number}" w:name="{name}"/>{content}<w:bookmarkEnd w:id="{number}"/>')

    def inline(self, element):
        xml = self.run(self.text(element.text))
        for child in element:
            if child.tag != "field":
                raise SystemExit(f"{child.tag} inside {element.tag}")
            xml += self.mark(child.get("bookmark"), self.run(self.text(child.text)))
            xml += self.run(self.text(child.tail))
        return xml

    def paragraph(self, style, content, settings=""):
        return f'<w:p><w:pPr><w:pStyle w:val="{style}"/>{settings}</w:pPr>{content}</w:p>'

    # Tables

    def table(self, element):
        widths = [twips(width) for width in element.get("widths").split()]
        lines = element.get("look") == "lines"
        rows = [copy for row in element for copy in self.repeated(row)]
        cells = [self.row(row, widths, lines, element.get("keep") == "yes" and row is not rows[-1])
                 for row in rows]
        name = element.get("bookmark")
        xml = "".join(cells)
        if name:
            # From the first paragraph of the first cell to the last of the last one: there word processors
            # keep the marks whatever is done around the table.
            start, end = self.mark(name, "\0").split("\0")
            xml = xml.replace("</w:pPr>", "</w:pPr>" + start, 1)
            head, tail = xml.rsplit("</w:p>", 1)
            xml = head + end + "</w:p>" + tail
        style = "ReportLines" if lines else "ReportGrid"
        grid = "".join(f'<w:gridCol w:w="{width}"/>' for width in widths)
        self.body.append(
            f'<w:tbl><w:tblPr><w:tblStyle w:val="{style}"/><w:tblW w:w="{sum(widths)}" w:type="dxa"/>'
            f'<w:jc w:val="center"/><w:tblLayout w:type="fixed"/></w:tblPr><w:tblGrid>{grid}</w:tblGrid>'
            f'{xml}</w:tbl>')
        # Tables that follow each other stay apart.
        self.body.append(self.paragraph("Gap", ""))

    def repeated(self, row):
        if row.tag != "row":
            raise SystemExit(f"{row.tag} inside table")
        words = [word.strip() for word in (row.get("each") or "").split(";")]
        for number in range(1, int(row.get("times", len(words))) + 1):
            copy = ElementTree.fromstring(ElementTree.tostring(row, encoding="unicode"))
            word = words[number - 1].split() if number <= len(words) else []
            for cell in copy:
                cell.text = (cell.text or "").replace("{n}", str(number))
                for i, part in enumerate(word):
                    cell.text = cell.text.replace("{%d}" % i, part)
                if cell.get("merge") == "each":
                    cell.set("merge", "first" if number == 1 else "next")
            yield copy

    def row(self, row, widths, lines, keep):
        settings = '<w:cantSplit/>'
        if row.get("height"):
            settings += f'<w:trHeight w:val="{twips(row.get("height"))}" w:hRule="atLeast"/>'
        if row.get("head") == "yes":
            settings += "<w:tblHeader/>"
        xml, column = "", 0
        for cell in row:
            span = int(cell.get("span", 1))
            xml += self.cell(cell, sum(widths[column:column + span]), span, lines,
                             keep or row.get("keep") == "yes" or row.get("head") == "yes")
            column += span
        if column != len(widths):
            raise SystemExit(f"a row has {column} columns of {len(widths)}")
        return f"<w:tr><w:trPr>{settings}</w:trPr>{xml}</w:tr>"

    def cell(self, cell, width, span, lines, keep):
        look = cell.get("look", "text")
        style = {"text": "TableText", "left": "TableLeft", "head": "TableHead", "label": "TableLabel"}[look]
        if lines:
            style = "CoverLabel" if look == "label" else "CoverText"
        settings = f'<w:tcW w:w="{width}" w:type="dxa"/>'
        settings += f'<w:gridSpan w:val="{span}"/>' if span > 1 else ""
        merge = cell.get("merge")
        settings += {"first": '<w:vMerge w:val="restart"/>', "next": "<w:vMerge/>"}.get(merge, "")
        if lines and look != "label":
            settings += f'<w:tcBorders><w:bottom w:val="single" w:sz="4" w:space="0" w:color="{GRID}"/></w:tcBorders>'
        fill = {"head": HEAD_FILL, "label": LABEL_FILL}.get(look)
        if fill and not lines:
            settings += f'<w:shd w:val="clear" w:color="auto" w:fill="{fill}"/>'
        settings += '<w:vAlign w:val="center"/>'
        content = self.paragraph(style, self.inline(cell), "<w:keepNext/>" if keep else "")
        return f"<w:tc><w:tcPr>{settings}</w:tcPr>{content}</w:tc>"

    # Pictures

    def picture(self, element):
        width, height = (round(float(element.get(name)) * 36000) for name in ("width", "height"))
        self.pictures.append(grey_png(width // 9000, height // 9000))
        number = len(self.pictures)
        content = (
            '<w:r><w:drawing><wp:inline distT="0" distB="0" distL="0" distR="0">'
            f'<wp:extent cx="{width}" cy="{height}"/><wp:docPr id="{number}" name="Picture {number}"/>'
            f'<wp:cNvGraphicFramePr/><a:graphic><a:graphicData uri="{DRAWING}/picture"><pic:pic><pic:nvPicPr>'
            f'<pic:cNvPr id="{number}" name="placeholder.png"/><pic:cNvPicPr/></pic:nvPicPr><pic:blipFill>'
            f'<a:blip r:embed="rIdPicture{number}"/><a:stretch><a:fillRect/></a:stretch></pic:blipFill><pic:spPr>'
            f'<a:xfrm><a:off x="0" y="0"/><a:ext cx="{width}" cy="{height}"/></a:xfrm><a:prstGeom prst="rect">'
            '<a:avLst/></a:prstGeom></pic:spPr></pic:pic></a:graphicData></a:graphic></wp:inline></w:drawing></w:r>')
        self.body.append(self.paragraph("Picture", self.mark(element.get("bookmark"), content)))

    # The whole

    def section(self, across, last):
        width, height = (PAGE[1], PAGE[0]) if across else PAGE
        orient = ' w:orient="landscape"' if across else ""
        # The cover is the first page and has neither head nor foot.
        title = "<w:titlePg/>" if self.first_section and self.values.get("cover") != "no" else ""
        self.first_section = False
        side = twips(SIDE)
        xml = ('<w:sectPr><w:headerReference w:type="default" r:id="rIdHeader"/>'
               '<w:footerReference w:type="default" r:id="rIdFooter"/>'
               f'<w:pgSz w:w="{twips(width)}" w:h="{twips(height)}"{orient}/>'
               f'<w:pgMar w:top="{twips(TOP)}" w:right="{side}" w:bottom="{twips(BOTTOM)}" w:left="{side}" '
               f'w:header="{twips(11)}" w:footer="{twips(10)}" w:gutter="0"/>{title}</w:sectPr>')
        self.body.append(xml if last else self.paragraph("Break", "", xml))

    def end_section(self, across):
        # The gap below the last table would only take room before the page ends.
        if self.body[-1] == self.paragraph("Gap", ""):
            self.body.pop()
        self.section(across, False)

    def fill(self, root):
        styles = {"title": "CoverTitle", "subtitle": "CoverSubtitle", "h1": "Heading1", "h2": "Heading2",
                  "p": "BodyText", "note": "Note", "cover": "CoverTop"}
        for element in root:
            if element.tag == "include":
                self.fill(ElementTree.parse(self.folder / element.get("file")).getroot())
            elif element.tag == "landscape":
                if self.across_end is not None and self.body[-1] is self.across_end:
                    self.body.pop()
                    self.body.append(self.paragraph("Gap", ""))
                else:
                    self.end_section(False)
                self.fill(element)
                self.end_section(True)
                self.across_end = self.body[-1]
            elif element.tag == "table":
                self.table(element)
            elif element.tag == "picture":
                self.picture(element)
            elif element.tag == "chart":
                self.body.append(self.paragraph(
                    "Picture", self.mark(element.get("bookmark"), self.run(self.text(element.text)))))
            elif element.tag in styles:
                content = self.inline(element)
                if element.tag == "note" and not content:
                    continue
                page = "<w:pageBreakBefore/>" if element.get("page") == "yes" else ""
                self.body.append(self.paragraph(styles[element.tag], content, page))
            else:
                raise SystemExit(f"unknown element {element.tag}")

    def document(self):
        self.section(False, True)
        return (HEAD + f'<w:document xmlns:w="{W}" xmlns:r="{R}" xmlns:wp="{DRAWING}/wordprocessingDrawing" '
                f'xmlns:a="{DRAWING}/main" xmlns:pic="{DRAWING}/picture"><w:body>' + "".join(self.body) +
                "</w:body></w:document>")


def grey_png(width, height):
    """A light frame, so that whoever restyles the template sees the room."""
    edge = bytes([0xB4]) * width
    inner = bytes([0xB4]) * 2 + bytes([0xF2]) * (width - 4) + bytes([0xB4]) * 2
    rows = b"".join(b"\0" + (edge if y < 2 or y >= height - 2 else inner) for y in range(height))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def style(name, settings="", look="", based="Normal", kind="paragraph", extra=""):
    parent = f'<w:basedOn w:val="{based}"/>' if based else ""
    default = ' w:default="1"' if name == "Normal" else ""
    title = {"Heading1": "heading 1", "Heading2": "heading 2", "BodyText": "Body Text"}.get(name, name)
    return (f'<w:style w:type="{kind}"{default} w:styleId="{name}"><w:name w:val="{title}"/>{parent}<w:qFormat/>'
            f'<w:pPr>{settings}</w:pPr><w:rPr>{look}</w:rPr>{extra}</w:style>')


def look(size, bold=False, colour=None, heading=False):
    fonts = '<w:rFonts w:eastAsia="黑体"/>' if heading else ""
    return (fonts + ("<w:b/>" if bold else "") + (f'<w:color w:val="{colour}"/>' if colour else "") +
            f'<w:sz w:val="{round(size * 2)}"/><w:szCs w:val="{round(size * 2)}"/>')


def spacing(before, after, line=None):
    exact = f' w:line="{round(line * 20)}" w:lineRule="exact"' if line else ""
    return f'<w:spacing w:before="{round(before * 20)}" w:after="{round(after * 20)}"{exact}/>'


def styles():
    def border(edges):
        return "".join(f'<w:{edge} w:val="single" w:sz="4" w:space="0" w:color="{GRID}"/>' for edge in edges)

    margins = ('<w:tblCellMar><w:top w:w="34" w:type="dxa"/><w:left w:w="57" w:type="dxa"/>'
               '<w:bottom w:w="34" w:type="dxa"/><w:right w:w="57" w:type="dxa"/></w:tblCellMar>')
    centre, together = '<w:jc w:val="center"/>', "<w:keepNext/>"
    grid = (f'<w:tblPr><w:tblBorders>{border(("top", "left", "bottom", "right", "insideH", "insideV"))}</w:tblBorders>'
            f'{margins}</w:tblPr>')
    lines = ('<w:tblPr><w:tblCellMar><w:top w:w="113" w:type="dxa"/><w:left w:w="57" w:type="dxa"/>'
             '<w:bottom w:w="57" w:type="dxa"/><w:right w:w="57" w:type="dxa"/></w:tblCellMar></w:tblPr>')
    return (HEAD + f'<w:styles xmlns:w="{W}"><w:docDefaults><w:rPrDefault><w:rPr>'
            '<w:rFonts w:ascii="Arial" w:hAnsi="Arial" w:cs="Arial" w:eastAsia="宋体"/>'
            '<w:sz w:val="21"/><w:szCs w:val="21"/><w:lang w:val="en-US" w:eastAsia="zh-CN"/>'
            '</w:rPr></w:rPrDefault><w:pPrDefault/></w:docDefaults>' +
            style("Normal", based=None) +
            style("CoverTop", spacing(0, 150)) +
            style("CoverTitle", spacing(0, 14) + centre, look(28, True, ACCENT, True)) +
            style("CoverSubtitle", spacing(0, 190) + centre, look(13, False, "5A6673")) +
            style("CoverLabel", '<w:jc w:val="right"/>', look(12, False, "5A6673")) +
            style("CoverText", "", look(12)) +
            style("Heading1", together + spacing(10, 8) + '<w:outlineLvl w:val="0"/>', look(16, True, ACCENT, True)) +
            style("Heading2", together + spacing(10, 5) + '<w:outlineLvl w:val="1"/>', look(12, True, ACCENT, True)) +
            style("BodyText", '<w:spacing w:before="0" w:after="120" w:line="320" w:lineRule="atLeast"/>'
                  '<w:jc w:val="both"/>') +
            style("Note", spacing(2, 4), look(9, False, "5A6673")) +
            style("TableText", centre, look(9)) +
            style("TableLeft", "", look(9)) +
            style("TableHead", together + centre, look(9, True, ACCENT, True)) +
            style("TableLabel", centre, look(9, False, "33475B", True)) +
            style("Picture", spacing(4, 8) + centre, look(9, False, "5A6673")) +
            style("Gap", spacing(0, 0, 6), look(3)) +
            style("Break", spacing(0, 0, 1), look(1)) +
            style("PageHead", f'<w:pBdr><w:bottom w:val="single" w:sz="4" w:space="4" w:color="{GRID}"/></w:pBdr>',
                  look(9, False, "5A6673")) +
            style("PageFoot", centre, look(9, False, "5A6673")) +
            style("TableNormal", based=None, kind="table") +
            style("ReportGrid", based="TableNormal", kind="table", extra=grid) +
            style("ReportLines", based="TableNormal", kind="table", extra=lines) + "</w:styles>")


def field(code):
    def mark(kind):
        return f'<w:r><w:fldChar w:fldCharType="{kind}"/></w:r>'

    return (mark("begin") + f'<w:r><w:instrText xml:space="preserve"> {code} </w:instrText></w:r>' +
            mark("separate") + "<w:r><w:t>1</w:t></w:r>" + mark("end"))


def relations(entries):
    return (HEAD + f'<Relationships xmlns="{PACKAGE}/relationships">' +
            "".join(f'<Relationship Id="{name}" Type="{kind}" Target="{target}"/>' for name, kind, target in entries) +
            "</Relationships>")


def run(text):
    return f'<w:r><w:t xml:space="preserve">{escape(text)}</w:t></w:r>'


def content_types():
    def default(extension, kind):
        return f'<Default Extension="{extension}" ContentType="{kind}"/>'

    def override(name, kind):
        return f'<Override PartName="/{name}.xml" ContentType="{kind}+xml"/>'

    kinds = {"document": "template.main", "styles": "styles", "settings": "settings", "header": "header",
             "footer": "footer"}
    package = "application/vnd.openxmlformats-package."
    return (HEAD + f'<Types xmlns="{PACKAGE}/content-types">' +
            default("rels", package + "relationships+xml") + default("xml", "application/xml") +
            default("png", "image/png") +
            "".join(override("word/" + name, TYPES + kind) for name, kind in kinds.items()) +
            override("docProps/core", package + "core-properties") + "</Types>")


def parts(template, title):
    yield "[Content_Types].xml", content_types()
    yield "_rels/.rels", relations([
        ("rId1", R + "/officeDocument", "word/document.xml"),
        ("rId2", PACKAGE + "/relationships/metadata/core-properties", "docProps/core.xml")])
    yield "docProps/core.xml", (
        HEAD + f'<cp:coreProperties xmlns:cp="{PACKAGE}/metadata/core-properties" '
        f'xmlns:dc="http://purl.org/dc/elements/1.1/"><dc:title>{escape(title)}</dc:title></cp:coreProperties>')
    yield "word/document.xml", template.document()
    yield "word/_rels/document.xml.rels", relations(
        [("rIdStyles", R + "/styles", "styles.xml"), ("rIdSettings", R + "/settings", "settings.xml"),
         ("rIdHeader", R + "/header", "header.xml"), ("rIdFooter", R + "/footer", "footer.xml")] +
        [(f"rIdPicture{i}", R + "/image", f"media/placeholder{i}.png")
         for i in range(1, len(template.pictures) + 1)])
    yield "word/styles.xml", styles()
    yield "word/settings.xml", (
        HEAD + f'<w:settings xmlns:w="{W}"><w:zoom w:percent="100"/><w:defaultTabStop w:val="420"/>'
        '<w:characterSpacingControl w:val="compressPunctuation"/><w:compat><w:compatSetting '
        'w:name="compatibilityMode" w:uri="http://schemas.microsoft.com/office/word" w:val="15"/></w:compat>'
        '</w:settings>')
    yield "word/header.xml", (
        HEAD + f'<w:hdr xmlns:w="{W}"><w:p><w:pPr><w:pStyle w:val="PageHead"/></w:pPr>' + run(title) +
        "</w:p></w:hdr>")
    yield "word/footer.xml", (
        HEAD + f'<w:ftr xmlns:w="{W}"><w:p><w:pPr><w:pStyle w:val="PageFoot"/></w:pPr>' + run("第 ") +
        field("PAGE") + run(" 页　共 ") + field("NUMPAGES") + run(" 页") + "</w:p></w:ftr>")
    for i, picture in enumerate(template.pictures, 1):
        yield f"word/media/placeholder{i}.png", picture


def main():
    source, target = Path(sys.argv[1]), Path(sys.argv[2])
    root = ElementTree.parse(source).getroot()
    template = Template(root, source.parent)
    template.fill(root)
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in parts(template, root.get("title")):
            # A fixed time: equal sources make equal files.
            archive.writestr(zipfile.ZipInfo(name, (1980, 1, 1, 0, 0, 0)), content, zipfile.ZIP_DEFLATED)


if __name__ == "__main__":
    main()
