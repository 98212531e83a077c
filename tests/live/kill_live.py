#!/usr/bin/env python3
"""Plays an acquisition program against the live window, kills either, and counts.

What was acknowledged to the sender is a row of the project or waits on the list, what was answered is a row, and none
is there twice. The window is operated by a robot, which presses what an operator presses.
"""
import argparse
import json
import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

STANDARD = "CJJ 181-2012 城镇排水管道检测与评估技术规程"
ITEMS = 25


class Bench:
    def __init__(self, tools, program, folder):
        self.tools = tools
        self.app = os.path.join(folder, "app")
        shutil.copytree(program, self.app)
        runtime = os.path.join(folder, "run")
        os.mkdir(runtime, 0o700)
        self.environment = dict(os.environ, XDG_RUNTIME_DIR=runtime, QT_QPA_PLATFORM="offscreen")
        self.field = os.path.join(folder, "现场")
        os.mkdir(self.field)
        osd = "".join(f'<osd{i} value="{i}"/>' for i in range(1, 19))
        items = "".join(
            f'<item index="{i}" name="n" code="PL" fullname="f" dist="{i}.5" len="0.4" Longitude="113.2" '
            f'Latitude="23.1" type="t" time="0309" level="2" codeid="1" itemid="1" gentime="2026-03-14">'
            f'<picfilename value="{i}.jpg" time="{i * 100}.25"/></item>' for i in range(ITEMS))
        with open(os.path.join(self.field, "d.xml"), "w", encoding="utf-8") as file:
            file.write('<?xml version="1.0" encoding="utf-8"?><cfg><mdata name="n" gentime="2026-03-14 09:26:53">'
                       f'<videofilename value="v.avi"/>{osd}{items}</mdata></cfg>')
        subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc=s=64x48", "-frames:v", "1",
                        os.path.join(self.field, "0.jpg")], check=True)
        for i in range(1, ITEMS):
            shutil.copyfile(os.path.join(self.field, "0.jpg"), os.path.join(self.field, f"{i}.jpg"))
        self.project = self.run("cli", "new", "live", "--standard", STANDARD).stdout.strip()
        work = os.path.join(folder, "work")
        self.run("cli", "settings", "--work-folder", work)
        self.list = os.path.join(work, "live-records.txt")
        self.acknowledged, self.answered = set(), 0

    def run(self, tool, *words):
        head = ["--app-folder", self.app] if tool == "cli" else []
        return subprocess.run([self.tools[tool], *head, *words], capture_output=True, text=True,
                              env=self.environment)

    def robot(self, pause=0):
        process = subprocess.Popen([self.tools["robot"], self.app, str(pause)], stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, env=self.environment, text=True)
        if process.stdout.readline().strip() != "ready":
            sys.exit(f"the live window didn't come up: {process.wait()}")
        return process

    def play(self, *words):
        return subprocess.Popen([self.tools["acquire"], self.field, "--json", *words], stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL, env=self.environment, text=True)

    # What the sender knows. `base` tells runs apart: each counts its records from 1.
    def hear(self, process, base):
        keys = {}
        for line in process.stdout:
            try:
                event = json.loads(line)
            except ValueError:
                continue
            if event["event"] == "sent":
                keys[event["record"]] = (event["picture"].lower(), round(event["time"] + base, 3))
            elif event["event"] == "taken":
                self.acknowledged.add((base, keys[event["record"]]))
            elif event["event"] == "answer":
                self.answered += 1
        process.wait()

    def waiting(self):
        lines = open(self.list, encoding="utf-8").read().split("\n")[:-1] if os.path.exists(self.list) else []
        here = set()
        for line in lines:
            kind, number = line.split(" ")[:2]
            (here.add if kind == "+" else here.discard if kind == "-" else lambda _: None)(number)
        return len(here)

    def rows(self):
        done = self.run("cli", "records", self.project, "--json")
        if done.returncode != 0:
            sys.exit("the project can't be read: " + done.stderr)
        return [(row["Picture1"].lower(), round(row["PicTimeInVideo1"], 3)) for row in json.loads(done.stdout)]

    def drain(self):
        """Lets the robot take up what waits, until nothing does."""
        process = self.robot()
        end = time.monotonic() + 60
        while self.waiting() and time.monotonic() < end:
            time.sleep(0.05)
        process.kill()
        process.wait()


def kill_round(bench, generator, number):
    """One kill. Returns what is wrong, or nothing."""
    for path in (bench.list,):
        if os.path.exists(path):
            os.remove(path)
    bench.acknowledged, bench.answered = set(), 0
    before = len(bench.rows())
    robot = bench.robot(generator.choice([0, 10, 40]))
    records = 20
    sender = bench.play("--records", str(records), "--interval", str(generator.choice([0, 5, 20])), "--burst",
                        str(generator.choice([1, 3])), "--senders", str(generator.choice([1, 2])))
    time.sleep(generator.uniform(0.02, 0.6))
    (robot if number % 2 else sender).send_signal(signal.SIGKILL)
    bench.hear(sender, 0)
    if number % 2 == 0:
        time.sleep(0.2)
    robot.kill()
    robot.wait()
    bench.drain()
    rows = bench.rows()[before:]
    wrong = []
    if bench.waiting():
        wrong.append(f"{bench.waiting()} still wait")
    acknowledged = {key for _, key in bench.acknowledged}
    missing = [key for key in acknowledged if key not in rows]
    if missing:
        wrong.append(f"{len(missing)} of {len(acknowledged)} acknowledged are lost")
    if len(rows) != len(set(rows)):
        wrong.append(f"{len(rows) - len(set(rows))} are there twice")
    if len(rows) < bench.answered:
        wrong.append(f"{bench.answered} were answered, {len(rows)} are there")
    print(f"round {number + 1:3}: {len(acknowledged):3} acknowledged, {bench.answered:3} answered, {len(rows):3} rows"
          f"{'  BROKEN: ' + '; '.join(wrong) if wrong else ''}", flush=True)
    return wrong


def misbehave(bench):
    """Senders that do what they shouldn't. Returns what is wrong, or nothing."""
    wrong = []
    robot = bench.robot()
    for words, taken in ((["--records", "1", "--interval", "0"], 1),  # opens the project, which takes its time
                         (["--records", "6", "--interval", "200", "--short", "3", "--full-texts"], 5),
                         (["--records", "6", "--interval", "5", "--die-after", "4"], None),
                         (["--records", "12", "--burst", "12", "--interval", "0", "--senders", "3"], 12)):
        bench.acknowledged = set()
        bench.hear(bench.play(*words), 0)
        if taken is not None and len(bench.acknowledged) != taken:
            wrong.append(f"{words}: {len(bench.acknowledged)} taken instead of {taken}")
        if robot.poll() is not None:
            return [f"{words}: the window is gone"]
    robot.kill()
    robot.wait()
    bench.drain()
    return wrong + ([f"{bench.waiting()} still wait"] if bench.waiting() else [])


def main():
    parser = argparse.ArgumentParser()
    for tool in ("cli", "acquire", "robot", "program"):
        parser.add_argument("--" + tool, required=True)
    parser.add_argument("--kills", type=int, default=50)
    parser.add_argument("--records", type=int, default=1000)
    arguments = parser.parse_args()
    tools = {name: os.path.abspath(getattr(arguments, name)) for name in ("cli", "acquire", "robot")}
    with tempfile.TemporaryDirectory(prefix="drovane-live-") as folder:
        bench = Bench(tools, os.path.abspath(arguments.program), folder)
        robot = bench.robot()
        begin = time.monotonic()
        bench.hear(bench.play("--records", str(arguments.records), "--interval", "2", "--senders", "2"), 0)
        for _ in range(100):
            if not bench.waiting():
                break
            time.sleep(0.1)
        robot.kill()
        robot.wait()
        rows = bench.rows()
        print(f"{arguments.records} records in {time.monotonic() - begin:.1f} s: {len(rows)} rows, "
              f"{bench.answered} answered, {bench.waiting()} waiting", flush=True)
        broken = (len(rows) != arguments.records or len(set(rows)) != len(rows) or bench.waiting() != 0 or
                  len(bench.acknowledged) != arguments.records)
        for line in (wrong := misbehave(bench)):
            print("BROKEN:", line, flush=True)
        broken = broken or bool(wrong)
        generator = random.Random(20260314)
        for number in range(arguments.kills):
            # The same pictures and times come again: each round counts what it added.
            bench.run("cli", "delete-section", bench.project, "--section", "1")
            bench.project = bench.run("cli", "new", f"r{number}", "--standard", STANDARD).stdout.strip()
            for name in os.listdir(os.path.join(bench.app, "db")):
                path = os.path.join(bench.app, "db", name)
                if name.endswith(".mdb") and not os.path.samefile(path, bench.project):
                    os.remove(path)
            broken = bool(kill_round(bench, generator, number)) or broken
        if broken:
            sys.exit(1)


if __name__ == "__main__":
    main()
