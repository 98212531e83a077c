#!/usr/bin/env python3
"""Prints workbench/distance/digitforms.cpp: how the ten digits, and the letters of feet, look in usual kinds of letters.

    make_digit_forms.py >workbench/distance/digitforms.cpp

Each digit is drawn large, cut to its ink, and brought to the raster of a shape: 12 columns of 16 rows, of one height, in the
middle. A hexadecimal digit tells how much ink a cell has. Needs Pillow and the fonts named below.
"""

import subprocess
import sys

from PIL import Image, ImageDraw, ImageFont

sys.path.insert(0, __file__.rsplit("/", 1)[0])
from make_counter_videos import PIXELS  # noqa: E402

FONTS = ["DejaVu Sans", "DejaVu Sans:bold", "DejaVu Sans Mono", "DejaVu Serif", "Nimbus Sans", "Nimbus Sans Narrow",
         "Nimbus Mono PS:bold", "Nimbus Roman", "Noto Sans CJK SC", "Noto Mono"]
WIDTH, HEIGHT, BIG = 12, 16, 160


def drawn_by_font(path, digit):
    image = Image.new("L", (3 * BIG, 3 * BIG), 0)
    ImageDraw.Draw(image).text((BIG, BIG // 2), digit, fill=255, font=ImageFont.truetype(path, BIG))
    return image


def drawn_by_pixels(digit):
    image = Image.new("L", (50, 70), 0)
    for y, row in enumerate(PIXELS[digit].split()):
        for x, bit in enumerate(row):
            if bit == "1":
                image.paste(255, (10 * x, 10 * y, 10 * x + 10, 10 * y + 10))
    return image


def form(image):
    image = image.crop(image.getbbox())
    width = max(1, round(image.width * HEIGHT / image.height))
    if width > WIDTH:
        width = WIDTH
    small = image.resize((width, HEIGHT), Image.BOX)
    whole = Image.new("L", (WIDTH, HEIGHT), 0)
    # Half a column aside where the width is odd, as the reader puts it in the middle.
    if (WIDTH - width) % 2:
        wide = image.resize((width * 2, HEIGHT), Image.BOX)
        double = Image.new("L", (WIDTH * 2, HEIGHT), 0)
        double.paste(wide, (WIDTH - width, 0))
        whole = double.resize((WIDTH, HEIGHT), Image.BOX)
    else:
        whole.paste(small, ((WIDTH - width) // 2, 0))
    return "".join(f"{min(15, value * 16 // 256):x}" for value in whole.tobytes())


def main():
    paths = [subprocess.run(["fc-match", "-f", "%{file}", font], capture_output=True, text=True, check=True).stdout for font in FONTS]
    print("// Made by tools/distance/make_digit_forms.py; not to be changed by hand.\n"
          '#include "workbench/distance/digitforms.h"\n\n'
          "// clang-format off\n"
          "const std::array<std::array<std::string_view, DigitFormKinds>, 10> DigitForms{{")
    for digit in "0123456789":
        print("    {{  // " + digit)
        for text in [form(drawn_by_font(path, digit)) for path in paths] + [form(drawn_by_pixels(digit))]:
            print(f'     "{text[:96]}"\n     "{text[96:]}",')
        print("    }},")
    print("}};\n\nconst std::array<std::array<std::string_view, UnitFormKinds>, 4> FeetForms{{")
    for letter in "FTft":
        print("    {{  // " + letter)
        for text in [form(drawn_by_font(path, letter)) for path in paths]:
            print(f'     "{text[:96]}"\n     "{text[96:]}",')
        print("    }},")
    print("}};\n// clang-format on")


if __name__ == "__main__":
    main()
