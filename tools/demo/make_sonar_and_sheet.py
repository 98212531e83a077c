#!/usr/bin/env python3
"""Makes a sonar run and a surveyor's sheet for the demo jobs: make_sonar_and_sheet.py OUTPUT_FOLDER

Of the sonar run there are the description of the section, from data/demosonar, and that of the device, a profile of
the silt in a pipe of 1200 mm that runs full. The sheet is a workbook with the positions of all manholes. What is
there already stays as it is. Prints the device's description and the sheet.
"""
import csv
import math
import pathlib
import shutil
import sys
import zipfile
from xml.sax.saxutils import escape

SOURCES = pathlib.Path(__file__).resolve().parents[2] / "data" / "demosonar"
WIDTH = 1200  # millimetres
LENGTH = 46.0  # metres
STEP = 0.5


def silt(metres):
    """Depth in millimetres: a bank behind the bend at 30 m, and little ripples."""
    bank = 260 * math.exp(-((metres - 31) / 6) ** 2)
    return round(95 + 1.4 * metres + bank + 14 * math.sin(1.9 * metres))


def sonar_description():
    profile = [(i * STEP, silt(i * STEP)) for i in range(int(LENGTH / STEP) + 1)]
    depths = [depth for _, depth in profile]
    deepest = max(profile, key=lambda item: item[1])
    mean = sum(depths) / len(depths)
    cells = {1: "平均淤泥深度(mm)", 2: f"{mean:.0f}", 3: "最大淤泥深度(mm)", 4: f"{deepest[1]}",
             5: "最大深度位置(m)", 6: f"{deepest[0]:.1f}", 7: "最大淤积率(%)", 8: f"{deepest[1] / WIDTH * 100:.1f}",
             10: f"{LENGTH:.1f} m", 11: f"{mean / WIDTH * 100:.1f} %"}
    lines = ['<?xml version="1.0" encoding="GB2312"?>', "<cfg>", '<dixmlfilename value="XH1-XH2.xml"/>',
             '<videofilename value="XH1-XH2.avi"/>', '<cfginfo value="满水管段，声纳头居中"/>']
    lines += [f'<SiltItem{number} value="{text}"/>' for number, text in cells.items()]
    lines += [f'<PipeItem{number} CurRadius="{WIDTH // 2}" CurSiltDepth="{depth}" Meter="{metres:.2f}" '
              f'PipeWidth="{WIDTH}" SiltDepth="{depth}" SiltDepthPer="{depth / WIDTH * 100:.1f}"/>'
              for number, (metres, depth) in enumerate(profile, 1)]
    return ("\r\n".join(lines + ["</cfg>", ""])).encode("gbk")


def workbook(rows):
    space = "http://schemas.openxmlformats.org/"
    kinds = space + "officeDocument/2006/relationships/"
    head = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'

    def cell(value):
        try:
            return f"<c><v>{float(value)!r}</v></c>"
        except ValueError:
            return f'<c t="inlineStr"><is><t>{escape(value)}</t></is></c>'

    def relations(kind, target):
        return (f'{head}<Relationships xmlns="{space}package/2006/relationships"><Relationship Id="rId1" '
                f'Type="{kinds}{kind}" Target="{target}"/></Relationships>')

    sheet = "".join(f"<row>{''.join(cell(value) for value in row)}</row>" for row in rows)
    types = "application/vnd.openxmlformats-officedocument.spreadsheetml."
    main = f'xmlns="{space}spreadsheetml/2006/main"'
    yield "[Content_Types].xml", (
        f'{head}<Types xmlns="{space}package/2006/content-types"><Default Extension="rels" '
        'ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Override PartName="/xl/workbook.xml" '
        f'ContentType="{types}sheet.main+xml"/><Override PartName="/xl/worksheets/sheet1.xml" '
        f'ContentType="{types}worksheet+xml"/></Types>')
    yield "_rels/.rels", relations("officeDocument", "xl/workbook.xml")
    yield "xl/_rels/workbook.xml.rels", relations("worksheet", "worksheets/sheet1.xml")
    yield "xl/workbook.xml", (f'{head}<workbook {main} xmlns:r="{kinds[:-1]}"><sheets><sheet name="井位" sheetId="1" '
                              'r:id="rId1"/></sheets></workbook>')
    yield "xl/worksheets/sheet1.xml", f"{head}<worksheet {main}><sheetData>{sheet}</sheetData></worksheet>"


def place(target, write):
    """Complete or not at all."""
    if not target.exists():
        part = target.with_name(target.name + ".part")
        write(part)
        part.replace(target)
    return target


def write_workbook(path):
    with open(SOURCES / "wells.csv", encoding="utf-8", newline="") as file:
        rows = list(csv.reader(file))
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in workbook(rows):
            archive.writestr(name, content)


def main(arguments):
    if len(arguments) != 1:
        print(__doc__.splitlines()[0], file=sys.stderr)
        return 2
    output = pathlib.Path(arguments[0]).absolute()
    folder = output / "声纳 西环河 XH1-XH2"
    folder.mkdir(parents=True, exist_ok=True)
    place(folder / "XH1-XH2.xml", lambda part: shutil.copyfile(SOURCES / "XH1-XH2.xml", part))
    print(place(folder / "sonar.xml", lambda part: part.write_bytes(sonar_description())))
    print(place(output / "井位坐标.xlsx", write_workbook))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
