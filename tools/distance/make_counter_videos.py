#!/usr/bin/env python3
"""Makes videos of pipes with a cable counter in the picture, and the truth beside each.

    make_counter_videos.py FOLDER [--seed N] [--seconds S] [--draw N] [STYLE...]

Makes all styles, or those named, or with --draw that many whose fonts, sizes, colours, places, texts and mishaps are drawn
(a few of them show no counter): for measuring on what nobody has tuned the reader on. Beside "NAME.mp4" stands "NAME.json": the style, the unit, and the distance that the picture shows from each second on at
which it changes. Without a seed each style has its usual numbers; with one, fonts, places, speeds and halts are
drawn anew. Needs ffmpeg with libass.
"""

import argparse
import json
import math
import random
import subprocess
import sys
from pathlib import Path

FPS = 25

# A font of pixels, as the generators of older cameras have it: five columns of seven rows.
PIXELS = {
    "0": "01110 10001 10011 10101 11001 10001 01110", "1": "00100 01100 00100 00100 00100 00100 01110",
    "2": "01110 10001 00001 00110 01000 10000 11111", "3": "11111 00010 00100 00010 00001 10001 01110",
    "4": "00010 00110 01010 10010 11111 00010 00010", "5": "11111 10000 11110 00001 00001 10001 01110",
    "6": "00110 01000 10000 11110 10001 10001 01110", "7": "11111 00001 00010 00100 01000 01000 01000",
    "8": "01110 10001 10001 01110 10001 10001 01110", "9": "01110 10001 10001 01111 00001 00010 01100",
    ".": "00000 00000 00000 00000 00000 01100 01100", "m": "00000 00000 11010 10101 10101 10101 10101",
    ":": "00000 01100 01100 00000 01100 01100 00000", "-": "00000 00000 00000 11111 00000 00000 00000",
    "F": "11111 10000 10000 11110 10000 10000 10000", "T": "11111 00100 00100 00100 00100 00100 00100",
    " ": "00000 00000 00000 00000 00000 00000 00000",
}

# text, font, size in pixels, colours as BGR, outline, box, place (ASS alignment), decimals.
STYLES = {
    "plain": {"text": "{:.2f} m", "font": "Noto Sans", "size": 34},
    "mono": {"text": "{:06.1f}m", "font": "DejaVu Sans Mono", "size": 32, "place": 1},
    "label": {"text": "距离：{:.2f}m", "font": "Noto Sans CJK SC", "size": 34, "place": 7},
    "serif": {"text": "{:.2f}m", "font": "DejaVu Serif", "size": 32, "place": 9},
    "bold": {"text": "{:.1f} m", "font": "DejaVu Sans", "size": 36, "bold": 1},
    "yellow": {"text": "{:.2f} m", "font": "Liberation Sans", "size": 34, "colour": "00FFFF", "place": 1},
    "box": {"text": "{:.2f}m", "font": "DejaVu Sans", "size": 30, "box": True},
    "narrow": {"text": "DIST {:.2f} m", "font": "DejaVu Sans Condensed", "size": 32, "place": 7},
    "pixel": {"text": "{:.2f} m", "pixels": 4},
    "pixelpad": {"text": "{:06.1f}m", "pixels": 3, "place": 1},
    "pixelbox": {"text": "{:.2f}m", "pixels": 3, "box": True, "place": 9},
    "feet": {"text": "{:.1f} FT", "pixels": 4, "unit": "ft"},
    "nounit": {"text": "{:.2f}", "font": "DejaVu Sans Mono", "size": 32, "unit": ""},
    "small": {"text": "{:.2f} m", "font": "DejaVu Sans", "size": 20},
    "lowrate": {"text": "{:.2f} m", "font": "DejaVu Sans", "size": 34, "crf": 38},
    "green": {"text": "L={:.2f}m", "font": "DejaVu Sans Mono", "size": 30, "colour": "00FF00", "place": 3},
    # Mishaps.
    "interlaced": {"text": "{:.2f} m", "font": "DejaVu Sans", "size": 30, "interlaced": True},
    "title": {"text": "{:.2f}m", "font": "DejaVu Sans Mono", "size": 32, "title": 6.0, "place": 1},
    "fade": {"text": "{:.2f} m", "font": "Noto Sans", "size": 34, "fade": True, "place": 9},
    "reset": {"text": "{:.2f} m", "font": "DejaVu Sans", "size": 32, "reset": 0.6},
    "strip": {"text": "{:.2f} m", "font": "DejaVu Sans", "size": 30, "box": True, "colour": "000000"},
    "nopoint": {"text": "{:.2f}", "font": "DejaVu Sans Mono", "size": 32, "hide_point": True},
    # Nothing that counts metres.
    "none": {"text": None},
    "clockonly": {"text": None, "clock": True, "name": True},
}

PLACES = {1: (40, 536), 3: (560, 536), 7: (40, 36), 9: (540, 36)}


# For --draw; those that aren't installed are replaced by the system.
DRAWN_FONTS = ["Roboto", "Hack", "FreeSans", "FreeSerif", "FreeMono", "Inconsolata", "OCRA", "Open Sans", "Lato",
               "Liberation Sans Narrow", "Liberation Mono", "Vollkorn", "URW Gothic", "C059", "Noto Sans CJK SC", "DejaVu Sans"]
DRAWN_TEXTS = ["{:.2f} m", "{:.2f}m", "{:.1f} m", "{:06.1f}m", "{:07.2f} m", "距离：{:.2f}m", "DIST {:.2f} m", "L={:.2f}m",
               "{:.1f} FT", "{:.1f} ft", "{:.2f}"]


def drawn_style(rng):
    style = {"text": rng.choice(DRAWN_TEXTS), "place": rng.choice([1, 3, 7, 9]), "outline": rng.choice([1, 2, 2, 3]),
             "begin": rng.choice([0.0, 0.0, 3.0, 8.0, 95.0])}
    latin = all(c in PIXELS for c in style["text"].replace("{:", "").replace("}", "").replace("f", "").replace("L", "~").replace("D", "~"))
    if latin and rng.random() < 0.35:
        style["pixels"] = rng.choice([3, 3, 4])
    else:
        style["font"] = "Noto Sans CJK SC" if "距" in style["text"] else rng.choice(DRAWN_FONTS)
        style["size"] = rng.randrange(24, 44, 2)
        style["bold"] = rng.choice([0, 0, 1])
    style["colour"] = rng.choice(["FFFFFF", "FFFFFF", "FFFFFF", "00FFFF", "00FF00", "FFFF00"])
    if rng.random() < 0.25:
        style["box"] = True
        if "pixels" not in style and rng.random() < 0.4:
            style["colour"] = "000000"
    style["crf"] = rng.choice([22, 24, 26, 30, 34])
    style["unit"] = "ft" if "ft" in style["text"].lower() else "m" if "m" in style["text"] else ""
    mishap = rng.choice(["", "", "", "interlaced", "title", "fade", "reset"])
    if mishap:
        style[mishap] = {"interlaced": True, "title": 5.0, "fade": True, "reset": 0.5}[mishap]
    return style


def drive(rng, seconds):
    """Stretches of (seconds, metres a second): halts, changes of speed, and once a way back."""
    parts, left = [(1.5, 0.0)], seconds - 1.5
    while left > 0:
        long = min(left, rng.uniform(6, 14))
        parts.append((long, rng.uniform(0.10, 0.22)))
        left -= long
        if left > 8:
            halt = rng.uniform(2, 7)
            parts.append((halt, 0.0))
            left -= halt
            if rng.random() < 0.3:
                parts.append((2.0, -0.12))
                left -= 2.0
    return parts


def distance_at(parts, time):
    total = 0.0
    for long, speed in parts:
        step = min(long, time)
        total += step * speed
        time -= step
        if time <= 0:
            break
    return max(total, 0.0)


def expression(parts):
    """The same for the filter that draws the wall."""
    text, time, total = "0", 0.0, 0.0
    for long, speed in parts:
        text = f"if(gte(T,{time:.3f}),{total:.4f}+(T-{time:.3f})*{speed:.4f},{text})"
        time, total = time + long, total + long * speed
    return text


def drawn(text, size):
    """The text as squares, in the drawing language of subtitles."""
    commands, x = [], 0
    for letter in text:
        for row, line in enumerate(PIXELS[letter].split()):
            for column, bit in enumerate(line):
                if bit == "1":
                    left, top = x + column * size, row * size
                    commands.append(f"m {left} {top} l {left + size} {top} {left + size} {top + size} {left} {top + size}")
        x += 6 * size
    return " ".join(commands)


def stamp(time):
    centi = round(time * 100)
    return f"{centi // 360000}:{centi // 6000 % 60:02}:{centi // 100 % 60:02}.{centi % 100:02}"


def subtitles(style, values, seconds):
    colour, outline = style.get("colour", "FFFFFF"), style.get("outline", 2)
    border = 3 if style.get("box") else 1
    back = "000000" if colour != "000000" else "FFFFFF"
    x, y = style.get("at") or PLACES[style.get("place", 3)]
    head = ["[Script Info]", "PlayResX: 720", "PlayResY: 576", "[V4+ Styles]",
            "Format: Name, Fontname, Fontsize, PrimaryColour, OutlineColour, BackColour, Bold, BorderStyle, Outline, Shadow, "
            "Alignment, MarginL, MarginR, MarginV",
            f"Style: D,{style.get('font', 'DejaVu Sans')},{style.get('size', 30)},&H{colour},&H{back},&H{back},"
            f"{-style.get('bold', 0)},{border},{outline},0,7,0,0,0",
            "Style: N,DejaVu Sans,26,&HFFFFFF,&H000000,&H000000,0,1,2,0,7,0,0,0",
            "[Events]", "Format: Layer, Start, End, Style, MarginL, MarginR, MarginV, Text"]
    lines = []
    for i, (time, text) in enumerate(values):
        end = values[i + 1][0] if i + 1 < len(values) else seconds + 1
        body = text = text.replace(".", "") if style.get("hide_point") else text
        if "pixels" in style:
            if style.get("box"):
                size, wide = style["pixels"], 6 * style["pixels"] * len(text)
                lines.append(f"Dialogue: 0,{stamp(time)},{stamp(end)},N,0,0,0,{{\\pos({x - 6},{y - 6})\\bord0\\1c&H000000&\\p1}}"
                             f"m 0 0 l {wide + 10} 0 {wide + 10} {7 * size + 12} 0 {7 * size + 12}")
            body = "{\\p1}" + drawn(text, style["pixels"])
        lines.append(f"Dialogue: 1,{stamp(time)},{stamp(end)},D,0,0,0,{{\\pos({x},{y})}}" + body)
    if style.get("clock", True):
        for second in range(math.ceil(seconds)):
            clock = f"2025-10-16 10:{40 + second // 60:02}:{second % 60:02}"
            place = (40, 90) if y < 200 and x < 300 else (40, 30)
            lines.append(f"Dialogue: 1,{stamp(second)},{stamp(second + 1)},N,0,0,0,{{\\pos({place[0]},{place[1]})}}{clock}")
    if style.get("name", True):
        lines.append(f"Dialogue: 1,{stamp(0)},{stamp(seconds + 1)},N,0,0,0,{{\\pos(330,{y + 0 if x < 300 and y > 300 else 500})}}YS1-YS2 DN600")
    return "\n".join(head + lines) + "\n"


def make(folder, name, style, rng, seconds):
    parts = drive(rng, seconds)
    values, truth = [], []
    begin = style.get("begin", 0.0)
    title, reset = style.get("title", 0.0), style.get("reset", 2.0) * seconds
    for frame in range(int(seconds * FPS)):
        time = frame / FPS
        if time < title:
            continue
        shown = begin + distance_at(parts, time)
        if time >= reset:
            shown = distance_at(parts, time) - distance_at(parts, reset)
        text = style["text"].format(max(shown, 0.0)) if style["text"] else ""
        if style["text"] and (not values or values[-1][1] != text):
            values.append((time, text))  # with its point, whether that is shown or not
            digits = "".join(c for c in text if c.isdigit() or c == ".").strip(".")
            truth.append([round(time, 3), float(digits)])
    script = folder / (name + ".ass")
    script.write_text(subtitles(style, values, seconds), encoding="utf-8")
    away = expression(parts)
    wall = (f"nullsrc=s=90x72:r=5:d={seconds},geq=lum='118+34*sin(9*log(2*hypot(X-45,Y-36)+2)-7*({away}))"
            f"+16*sin(5*atan2(Y-36,X-45)+3*({away}))+random(1)*22-60*exp(-hypot(X-45,Y-36)/11)':cb=124:cr=132,"
            f"fps={FPS},scale=720:576:flags=bicubic,ass={script.name}")
    if title:
        wall += f",drawbox=t=fill:color=0x203040:enable='lt(t,{title})'"
    if style.get("fade"):
        wall += f",fade=in:d=1,fade=out:st={seconds - 1.5}:d=1"
    if style.get("interlaced"):
        # Two half pictures of different moments in each frame.
        wall = wall.replace(f"fps={FPS},", f"fps={2 * FPS},") + ",tinterlace=interleave_top"
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", wall, "-c:v", "libx264", "-preset", "veryfast",
                    "-crf", str(style.get("crf", 24)), "-g", "50", "-pix_fmt", "yuv420p", name + ".mp4"],
                   cwd=folder, check=True)
    script.unlink()
    (folder / (name + ".json")).write_text(json.dumps(
        {"style": name, "unit": style.get("unit", "m"), "drawn": {k: v for k, v in style.items()}, "values": truth}, indent=0))


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=Path)
    parser.add_argument("--seed", type=int)
    parser.add_argument("--seconds", type=float, default=60.0)
    parser.add_argument("styles", nargs="*")
    parser.add_argument("--draw", type=int, default=0)
    given = parser.parse_args(arguments)
    given.folder.mkdir(parents=True, exist_ok=True)
    names = [f"drawn{i + 1:02}" for i in range(given.draw)] or given.styles or list(STYLES)
    for number, name in enumerate(names):
        rng = random.Random(number + 1 if given.seed is None else given.seed * 1000 + number)
        if given.draw:
            style = drawn_style(rng) if number % 8 != 7 else {"text": None, "clock": True, "name": rng.random() < 0.5}
        else:
            style = dict(STYLES[name])
            if given.seed is not None and "size" in style:
                style["size"] += rng.choice([-4, -2, 0, 2, 4])
                style["begin"] = rng.choice([0.0, 0.0, 3.0, 8.0])
        make(given.folder, name, style, rng, given.seconds)
        print(name, flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
