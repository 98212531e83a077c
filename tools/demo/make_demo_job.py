#!/usr/bin/env python3
"""Makes the field folders of the demo job: make_demo_job.py OUTPUT_FOLDER

The descriptions of data/demo go to the output folder, and each gets the video and the pictures that it
names, as a field unit leaves them: a run through a pipe of its diameter and material, with its defects
where the description has them, and pictures taken out of the video at the seconds that it gives.

What is there already stays as it is; files appear complete or not at all, so an interrupted run is
completed by the next one. Prints the descriptions in the order in which they are to be imported.
"""
import concurrent.futures
import datetime
import itertools
import math
import operator
import os
import pathlib
import random
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

SOURCES = pathlib.Path(__file__).resolve().parents[2] / "data" / "demo"
SECONDS = 8
RATE = 25
WIDTH, HEIGHT = 240, 192  # as computed; the video has 720x576
ROWS = 24  # of the wall, along one radius of the pipe
COLUMNS = 192  # around it
MOVING = 7.6  # the crawler arrives after that many seconds and stands until the end
JOINTS = {"钢筋混凝土管": 2.0, "HDPE双壁波纹管": 0.75, "玻璃钢夹砂管": 3.0}  # metres from one to the next
TINTS = {"钢筋混凝土管": (121, 133), "HDPE双壁波纹管": (131, 126), "玻璃钢夹砂管": (120, 125)}  # Cb, Cr


def run_ffmpeg(*arguments, data=b""):
    result = subprocess.run(["ffmpeg", "-v", "error", "-y", *map(str, arguments)], input=data,
                            capture_output=True)
    if result.returncode != 0:
        raise RuntimeError("ffmpeg: " + result.stderr.decode(errors="replace").strip())


def font_of(languages=""):
    """The family of a font that has these languages' characters, else nothing: the one that stands for "Sans"
    may have none of them, and ffmpeg draws with one font only."""
    try:
        found = subprocess.run(["fc-list", f":{languages}", "family"], capture_output=True, check=True)
        if not found.stdout.strip():
            return ""
        matched = subprocess.run(["fc-match", "-f", "%{family[0]}", f"sans:{languages}"], capture_output=True,
                                 check=True)
    except (OSError, subprocess.CalledProcessError):
        return ""
    return matched.stdout.decode(errors="replace").strip()


class Description:
    def __init__(self, path):
        self.mdata = ElementTree.parse(path).getroot().find("mdata")
        self.video = self.value("videofilename")
        self.length = float(self.value("osd18"))
        self.radius = float(self.value("osd9")) / 2000  # metres
        self.speed = self.length / MOVING

    def value(self, name):
        return self.mdata.find(name).get("value")

    def pictures(self):
        for item in self.mdata.iter("item"):
            for name in ("picfilename", "picfilename2"):
                picture = item.find(name)
                if picture is not None:
                    yield picture.get("value"), picture.get("time")

    def start(self):
        return datetime.datetime.strptime(self.mdata.get("gentime"), "%Y/%m/%d %H:%M:%S")


def clock_sector(clock):
    """Middle and half width of the part of the wall between two hours, in radians clockwise from 12."""
    first, last = int(clock[:2]), int(clock[2:] or "0")
    if first == last:
        return 0.0, math.pi
    hours = (last - first) % 12 if last else 0
    middle = (first + hours / 2) * math.pi / 6
    return math.atan2(math.sin(middle), math.cos(middle)), max(hours * math.pi / 12, 0.12)


def defects(description):
    """Begin and end along the pipe, middle and half width around it, brightness."""
    brightness = {"SL": 250, "CJ": 95, "JG": 215, "ZW": 70, "CQ": 120, "SG": 40, "FZ": 190, "FS": 80, "AJ": 30}
    for item in description.mdata.iter("item"):
        code = item.get("code")
        if code == "GDZC" or code.startswith("JCJ_"):
            continue
        # The operator takes the picture a little before the defect, so that it stands well in it.
        begin = float(item.get("dist")) + 1.2 * description.radius
        yield (begin, begin + float(item.get("len")), *clock_sector(item.get("time")), brightness.get(code, 25))


def wall(description, metres):
    """The pipe cut open along its bottom: COLUMNS bytes of brightness a row."""
    joints = JOINTS.get(description.value("osd8"), 2.0)
    radius = description.radius
    angles = [(column + 0.5) * 2 * math.pi / COLUMNS - math.pi for column in range(COLUMNS)]
    flow = [min(1.0, max(0.0, (-math.cos(angle) - 0.84) * 20)) for angle in angles]
    chance = random.Random(description.video)
    streaks = [10 * math.sin(5 * angle + 2) + 7 * math.sin(23 * angle) + chance.uniform(-7, 7) for angle in angles]
    rows = []
    for number in range(int(metres / radius * ROWS)):
        at = number * radius / ROWS
        to_joint = abs(at % joints - joints / 2)
        joint = 0.35 if to_joint < 0.05 * radius else 1.0
        edge = 22 if 0.05 * radius <= to_joint < 0.11 * radius else 0
        stain = 14 * math.sin(1.7 * at) + 9 * math.sin(7.3 * at)
        row = []
        for column, angle in enumerate(angles):
            bright = joint * (170 + edge + streaks[column] + stain * math.sin(3 * angle + at) + chance.random() * 22)
            water = 75 + 30 * math.sin(11 * at + 40 * angle) * math.sin(5 * at) + chance.random() * 12
            row.append(bright + (water - bright) * flow[column])
        rows.append(row)
    for begin, end, middle, half, shade in defects(description):
        reach = 0.25 * radius
        for number in range(max(0, int((begin - 2 * reach) / radius * ROWS)),
                            min(len(rows), int((end + 2 * reach) / radius * ROWS))):
            at = number * radius / ROWS
            along = max(begin - at, 0.0, at - end) / reach
            row = rows[number]
            for column, angle in enumerate(angles):
                off = abs((angle - middle + 3 * math.pi) % (2 * math.pi) - math.pi)
                around = max(0.0, off - half + 0.1 * math.sin(9 * at / radius) + 0.07 * math.sin(17 * at / radius + 2)) / 0.14
                strength = math.exp(-along * along - around * around) * chance.uniform(0.7, 1.0)
                row[column] += (shade - row[column]) * strength
    return b"".join(bytes(min(255, max(0, int(value))) for value in row) for row in rows)


def frames(description):
    """Frame by frame the pipe as a crawler sees it that moves along its axis, without light: grey, WIDTH by HEIGHT."""
    deepest = 22  # radii
    places = []
    for y in range(HEIGHT):
        for x in range(WIDTH):
            right, up = (x + 0.5 - WIDTH / 2) / (HEIGHT / 2), (HEIGHT / 2 - y - 0.5) / (HEIGHT / 2)
            depth = min(deepest, 1 / (math.hypot(right, up) + 0.01))
            column = int((math.atan2(right, up) + math.pi) / (2 * math.pi) * COLUMNS) % COLUMNS
            places.append(int(depth * ROWS) * COLUMNS + column)
    look = operator.itemgetter(*places)
    unrolled = memoryview(wall(description, description.length + (deepest + 1) * description.radius))
    for number in range(SECONDS * RATE):
        travelled = min(number / RATE, MOVING) * description.speed
        yield bytes(look(unrolled[int(travelled / description.radius * ROWS) * COLUMNS:]))


def overlay(description, folder, fonts):
    """What field units write into the picture."""
    label = f"{description.value('osd5')}-{description.value('osd6')}"
    if not fonts["chinese"] and not label.isascii():
        label = folder.name.split()[0]
    first = f"{label}  DN{description.value('osd9')}"
    # The clock of the unit: `pts` counts from the begin of the video.
    epoch = int(description.start().replace(tzinfo=datetime.timezone.utc).timestamp())
    centimetres = f"trunc(min(t\\,{MOVING})*{description.speed * 100:.4f}+0.5)"
    distance = f"%{{eif\\:trunc({centimetres}/100)\\:d}}.%{{eif\\:mod({centimetres}\\,100)\\:d\\:2}} m"
    family = fonts["chinese"] or fonts["any"]
    style = f"font='{family}':fontsize=24:fontcolor=white:borderw=2:bordercolor=black@0.8"
    return ",".join((f"drawtext=text='{first}':x=28:y=24:{style}",
                     f"drawtext=text='%{{pts\\:gmtime\\:{epoch}}}':x=w-tw-28:y=24:{style}",
                     f"drawtext=text='{distance}':x=w-tw-28:y=h-48:{style}"))


def make_video(description, folder, fonts):
    target = folder / description.video
    if target.exists():
        return
    # The crawler's lamps reach a few diameters far; one picture of their light serves all frames.
    light = "255/(1+0.22*pow(hypot((X-W/2)/(H/2),(Y-H/2)/(H/2))+0.015,-2))"
    red, blue = TINTS.get(description.value("osd8"), (124, 130))
    filters = [f"color=black:size={WIDTH}x{HEIGHT}:rate={RATE},format=gray,trim=end_frame=1,geq=lum='{light}',"
               "loop=-1:1[light];[0][light]blend=all_mode=multiply:shortest=1",
               f"gblur=0.7,format=yuv420p,lutyuv=y=val*0.9+16:u={red}:v={blue}", "scale=768:614:flags=bicubic",
               "crop=720:576:24+8*sin(t*2.1):19+6*sin(t*3.3)", "noise=c0s=9:c0f=t"]
    if fonts["any"]:
        filters.append(overlay(description, folder, fonts))
    part = target.with_name(target.name + ".part")
    run_ffmpeg("-f", "rawvideo", "-pixel_format", "gray", "-video_size", f"{WIDTH}x{HEIGHT}", "-framerate", RATE,
               "-i", "-", "-filter_complex", ",".join(filters), "-c:v", "mpeg4", "-vtag", "XVID", "-q:v", 6,
               "-g", 12, "-f", "avi", part, data=b"".join(frames(description)))
    part.replace(target)


def make_pictures(description, folder):
    for name, second in description.pictures():
        target = folder / name
        if target.exists():
            continue
        part = target.with_name(target.name + ".part")
        run_ffmpeg("-ss", second, "-i", folder / description.video, "-frames:v", 1, "-q:v", 5,
                   "-f", "image2", "-c:v", "mjpeg", "-update", 1, part)
        if not part.exists():
            raise RuntimeError(f"{description.video} has no picture at second {second}")
        part.replace(target)


def make_folder(source, output, fonts):
    folder = output / source.parent.name
    folder.mkdir(parents=True, exist_ok=True)
    target = folder / source.name
    if not target.exists():
        part = target.with_name(target.name + ".part")
        shutil.copyfile(source, part)
        part.replace(target)
    description = Description(target)
    make_video(description, folder, fonts)
    make_pictures(description, folder)
    return target


def main(arguments):
    if len(arguments) != 1:
        print(__doc__.splitlines()[0], file=sys.stderr)
        return 2
    output = pathlib.Path(arguments[0]).absolute()
    fonts = {"any": font_of(), "chinese": font_of("lang=zh-cn")}
    sources = sorted(SOURCES.glob("*/*.xml"))
    with concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
        try:
            for target in pool.map(make_folder, sources, itertools.repeat(output), itertools.repeat(fonts)):
                print(target, flush=True)
        except (OSError, RuntimeError, ElementTree.ParseError) as error:
            pool.shutdown(cancel_futures=True)
            print(f"make_demo_job: {error}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
