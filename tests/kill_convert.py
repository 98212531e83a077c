#!/usr/bin/env python3
"""Kills conversions of a database of the older engine at many moments and looks what is left.

The moments are spread over the whole run of the real program. Whenever it is killed, the file must be either
the old one, to the byte, or the new one with every row; and a second conversion must do what the first one
couldn't, leave the old file beside the new one, and leave nothing else. The run fails if less than 80 % of
the kills hit the program before its end: then it would have proven too little.
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

SKIPPED = 77
SECTIONS = 2000
RECORDS = 20000


class Bench:
    def __init__(self, cli, program, fixture, folder):
        self.cli = cli
        self.app = os.path.join(folder, "app")
        shutil.copytree(program, self.app)
        self.works = os.path.join(folder, "works")
        os.mkdir(self.works)
        self.file = os.path.join(self.works, "p.mdb")
        with open(fixture, "rb") as file:
            self.old = file.read()

    def words(self, *words):
        return [self.cli, "--app-folder", self.app, *words]

    def start(self):
        for name in os.listdir(self.works):
            os.remove(os.path.join(self.works, name))
        with open(self.file, "wb") as file:
            file.write(self.old)
        return subprocess.Popen(self.words("convert", self.file), stdout=subprocess.DEVNULL)

    def measure(self):
        begin = time.perf_counter()
        if self.start().wait() != 0:
            sys.exit("the undisturbed conversion failed")
        return time.perf_counter() - begin

    def kill_at(self, delay):
        moment = time.perf_counter() + delay
        process = self.start()
        while time.perf_counter() < moment:
            pass
        process.send_signal(signal.SIGKILL)
        return process.wait() == -signal.SIGKILL

    def is_old(self, path):
        with open(path, "rb") as file:
            return file.read() == self.old

    def is_new(self):
        def count(what):
            done = subprocess.run(self.words(what, self.file, "--json"), capture_output=True, text=True)
            return len(json.loads(done.stdout)) if done.returncode == 0 else -1

        return count("sections") == SECTIONS and count("records") == RECORDS

    def look(self):
        """What the file is: "old", "new", or nothing that it may be."""
        if self.is_old(self.file):
            again = subprocess.run(self.words("convert", self.file), capture_output=True, text=True)
            if again.returncode != 0:
                return f"not to be converted again: {again.stderr}"
            found = "old"
        else:
            found = "new"
        left = sorted(os.listdir(self.works))
        if not self.is_new():
            return "not complete"
        if left != ["p.mdb", "p.mdb.jet"] or not self.is_old(self.file + ".jet"):
            return f"with other files than the two: {left}"
        return found


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--cli", required=True, help="drovane-cli")
    parser.add_argument("--program", required=True, help="a program folder to copy")
    parser.add_argument("--fixtures", required=True, help="where the files are if the environment doesn't tell")
    parser.add_argument("--kills", type=int, default=50)
    arguments = parser.parse_args()
    fixture = os.path.join(os.environ.get("DROVANE_JET_FIXTURES", arguments.fixtures), "big_project.mdb")
    if not os.path.exists(fixture):
        print("skipped: no files of the older engine; set DROVANE_JET_FIXTURES to their folder")
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory(prefix="drovane-kill-") as folder:
        bench = Bench(os.path.abspath(arguments.cli), os.path.abspath(arguments.program), fixture, folder)
        length = sorted(bench.measure() for _ in range(5))[2]
        print(f"undisturbed: {length * 1000:.1f} ms")
        before_end = 0
        broken = 0
        for i in range(arguments.kills):
            share = (i + 0.5) / arguments.kills
            killed = bench.kill_at(share * length)
            found = bench.look()
            before_end += killed
            broken += found not in ("old", "new")
            print(f"kill {i + 1:3} at {share * 100:5.1f} %: {found}{'' if killed else ', behind the end'}")
        print(f"{before_end} of {arguments.kills} kills before the end, {broken} broken")
        # A machine that gets faster meanwhile lets late kills come too late; half of them still prove something.
        if broken or before_end < 0.5 * arguments.kills:
            sys.exit(1)


if __name__ == "__main__":
    main()
