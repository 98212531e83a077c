#!/usr/bin/env python3
"""Kills an import or a merge at many moments and looks what is left.

A person's day of work is in these files, so the claim "all of an import or nothing" is proven by real
kills of the real program, spread over the time from the first write of the import (the engine's journal
comes into being) to the last one (the journal goes, the import is stored). Afterwards the project must
open and hold either none of the import or all of it. So must a surveyor's sheet (--operation sheet), and a
merge of two projects (--operation merge), which may also leave no new file. A kill that leaves none fell before the last write.
The run fails if less than half of the kills fell between first and last write: then it would have proven
too little.
"""
import argparse
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import openpyxl

ITEMS = 1500
WELLS = 600
STANDARD = "CJJ 181-2012 城镇排水管道检测与评估技术规程"


def description():
    osd = "".join(f'<osd{i} value="{i}"/>' for i in range(1, 19))
    items = "".join(
        f'<item index="{i}" name="n" code="PL" fullname="f" dist="{i}.5" len="0.4" Longitude="113.2" '
        f'Latitude="23.1" type="t" time="0309" level="2" codeid="1" itemid="1" gentime="2026-03-14">'
        f'<picfilename value="{i}.jpg" time="{i}.2"/><desc>裂口</desc></item>'
        for i in range(ITEMS))
    return (f'<?xml version="1.0" encoding="utf-8"?><cfg><mdata name="n" gentime="2026-03-14 09:26:53">'
            f'<videofilename value="v.avi"/>{osd}{items}</mdata></cfg>')


def job(prefix):
    """A project as a document: sections between manholes of that prefix, with two defects each."""
    return {"sections": [
        {"StartWell": f"{prefix}{i}", "EndWell": f"{prefix}{i + 1}", "PipeLength": "30",
         "records": [{"DefectCode": "PL", "DistanceStart": 1.5}, {"DefectCode": "CJ", "DistanceStart": 9.0}]}
        for i in range(WELLS)]}


class Bench:
    """Imports a description. `project` is the file that is written, `journal` the engine's beside it."""

    def __init__(self, cli, program, folder):
        self.cli = cli
        self.app = os.path.join(folder, "app")
        shutil.copytree(program, self.app)
        self.field = os.path.join(folder, "现场")
        os.mkdir(self.field)
        with open(os.path.join(self.field, "d.xml"), "w", encoding="utf-8") as file:
            file.write(description())
        for i in range(ITEMS):
            with open(os.path.join(self.field, f"{i}.jpg"), "wb") as file:
                file.write(b"\xff\xd8" + b"x" * 3000)
        self.folder = folder
        self.empty = self.make("empty")
        self.project = os.path.join(self.app, "db", "p.mdb")
        self.prepare()

    def prepare(self):
        self.none, self.all = (0, 0), (1, ITEMS)

    @property
    def journal(self):
        return self.project + "-journal"

    def make(self, name, content=None):
        made = self.run("new", name, "--standard", STANDARD)
        project = os.path.join(self.folder, name + ".mdb")
        os.rename(made.stdout.strip(), project)
        if content is not None:
            document = os.path.join(self.folder, name + ".json")
            with open(document, "w", encoding="utf-8") as file:
                json.dump(content, file)
            self.run("load", project, document)
        return project

    def run(self, *words):
        done = subprocess.run([self.cli, "--app-folder", self.app, *words], capture_output=True, text=True)
        if done.returncode != 0:
            sys.exit(f"{' '.join(words)}: exit code {done.returncode}\n{done.stderr}")
        return done

    def start(self):
        for path in (self.project, self.journal):
            if os.path.exists(path):
                os.remove(path)
        shutil.copyfile(self.empty, self.project)
        # Each run copies its pictures anew, as the first import of a folder does.
        shutil.rmtree(os.path.join(self.app, "word"), ignore_errors=True)
        return subprocess.Popen(
            [self.cli, "--app-folder", self.app, "import-xml", self.project, os.path.join(self.field, "d.xml")],
            stderr=subprocess.DEVNULL)

    def journal_is_written(self):
        try:
            return os.stat(self.journal).st_size > 0
        except FileNotFoundError:
            return False

    def wait_for_first_write(self, process):
        while not self.journal_is_written():
            if process.poll() is not None:
                sys.exit(f"the import ended without a write, exit code {process.returncode}")
        return time.perf_counter()

    def measure(self):
        """Seconds from the first to the last write of an import that nobody disturbs."""
        process = self.start()
        begin = self.wait_for_first_write(process)
        while self.journal_is_written():
            pass
        length = time.perf_counter() - begin
        if process.wait() != 0:
            sys.exit("the undisturbed import failed")
        return length

    def kill_at(self, delay):
        process = self.start()
        moment = self.wait_for_first_write(process) + delay
        while time.perf_counter() < moment:
            pass
        process.send_signal(signal.SIGKILL)
        return process.wait() == -signal.SIGKILL

    def rows(self):
        sections = json.loads(self.run("sections", self.project, "--json").stdout)
        records = json.loads(self.run("records", self.project, "--json").stdout)
        return len(sections), len(records)


class SheetBench(Bench):
    """Counts the sections with positions and the records that lie on their lines."""

    def prepare(self):
        self.empty = self.make("job", job("W"))
        self.sheet = os.path.join(self.folder, "wells.xlsx")
        book = openpyxl.Workbook()
        book.active.append(["well", "x", "y"])
        for i in range(WELLS + 1):
            book.active.append([f"W{i}", 113 + i / 1000, 23 + i / 1000])
        book.save(self.sheet)
        self.none, self.all = (0, 0), (WELLS, WELLS * 2)

    def start(self):
        for path in (self.project, self.journal):
            if os.path.exists(path):
                os.remove(path)
        shutil.copyfile(self.empty, self.project)
        return subprocess.Popen([self.cli, "--app-folder", self.app, "import-gps", self.project, self.sheet],
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def rows(self):
        sections = json.loads(self.run("sections", self.project, "--json").stdout)
        records = json.loads(self.run("records", self.project, "--json").stdout)
        return (sum(section["GpsXStart"] != 0 and section["GpsXEnd"] != 0 for section in sections),
                sum(record["GpsX"] != 0 for record in records))


class MergeBench(Bench):
    def prepare(self):
        self.first, self.second = self.make("first", job("A")), self.make("second", job("B"))
        self.none, self.all = (WELLS, WELLS * 2), (WELLS * 2, WELLS * 4)

    def start(self):
        for name in os.listdir(os.path.join(self.app, "db")):
            if name.endswith((".mdb", "-journal")):
                os.remove(os.path.join(self.app, "db", name))
        self.project = os.path.join(self.app, "db", "none.mdb")
        return subprocess.Popen([self.cli, "--app-folder", self.app, "merge", self.first, self.second],
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def journal_is_written(self):
        for name in os.listdir(os.path.join(self.app, "db")):
            if name.endswith(".mdb"):
                self.project = os.path.join(self.app, "db", name)
        return super().journal_is_written()

    def rows(self):
        return super().rows() if os.path.exists(self.project) else self.none


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--cli", required=True, help="drovane-cli")
    parser.add_argument("--program", required=True, help="a program folder to copy")
    parser.add_argument("--operation", choices=("xml", "sheet", "merge"), default="xml")
    parser.add_argument("--kills", type=int, default=100)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="drovane-kill-") as folder:
        kind = {"xml": Bench, "sheet": SheetBench, "merge": MergeBench}[arguments.operation]
        bench = kind(os.path.abspath(arguments.cli), os.path.abspath(arguments.program), folder)
        length = sorted(bench.measure() for _ in range(5))[2]
        print(f"undisturbed: {bench.rows()} rows, {length * 1000:.1f} ms from first to last write")
        if bench.rows() != bench.all:
            sys.exit("the undisturbed import isn't complete")
        between = 0
        broken = 0
        for i in range(arguments.kills):
            share = (i + 0.5) / arguments.kills
            killed = bench.kill_at(share * length)
            found = bench.rows()
            inside = killed and found == bench.none
            between += inside
            good = inside or found == bench.all
            broken += not good
            print(f"kill {i + 1:3} at {share * 100:5.1f} %: sections {found[0]} records {found[1]:4} "
                  f"{'between' if inside else 'behind the last write' if good else 'BROKEN'}")
        print(f"{between} of {arguments.kills} kills between first and last write, {broken} broken")
        if broken or between < 0.5 * arguments.kills:
            sys.exit(1)


if __name__ == "__main__":
    main()
