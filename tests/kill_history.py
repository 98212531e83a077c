#!/usr/bin/env python3
"""Kills changes, undoing and redoing at many moments, and looks whether the way back still leads there.

A project is changed by random commands, and each is killed at a random moment of its life, from its start to
after its end. Whatever the kill left, the project must open, and taking back all its steps must give the first state byte for byte, doing them again the last.
The run fails if too few commands were killed between their first and their last write: then it would have
proven too little.
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


class Bench:
    def __init__(self, cli, program, folder, seed):
        self.cli = cli
        self.app = os.path.join(folder, "app")
        shutil.copytree(program, self.app)
        self.random = random.Random(seed)
        self.document = os.path.join(folder, "in.json")
        with open(self.document, "w", encoding="utf-8") as file:
            records = [{"DefectCode": "PL", "DistanceStart": i / 7, "Comment": "裂口" * 40} for i in range(600)]
            json.dump({"sections": [{"StartWell": "A", "EndWell": "B", "records": records}]}, file)
        self.project = self.run("new", "job", "--standard", STANDARD).strip()
        self.first = self.dump()

    def command(self, *words):
        return [self.cli, "--app-folder", self.app, *words]

    def run(self, *words, codes=(0,)):
        done = subprocess.run(self.command(*words), capture_output=True, text=True)
        if done.returncode not in codes:
            sys.exit(f"{' '.join(words)}: exit code {done.returncode}\n{done.stderr}")
        return done.stdout

    def dump(self):
        return self.run("dump", self.project)

    def steps(self):
        steps = json.loads(self.run("history", self.project, "--json"))["steps"]
        return sum(1 for step in steps if not step["undone"]), len(steps)

    def change(self):
        """A command that changes something, or would."""
        done, known = self.steps()
        sections = json.loads(self.run("sections", self.project, "--json"))
        choices = ["load"]
        if done > 1:
            choices += ["undo", "undo"]
        if known > done:
            choices += ["redo", "redo"]
        if sections:
            choices += ["delete-section", "gps-calc", "edit-section"]
        choice = self.random.choice(choices)
        section = str(self.random.choice(sections)["ID"]) if sections else "1"
        return {
            "load": ["load", self.project, self.document],
            "undo": ["undo", self.project, str(self.random.randint(1, max(1, min(3, done))))],
            "redo": ["redo", self.project, str(self.random.randint(1, max(1, min(3, known - done))))],
            "delete-section": ["delete-section", self.project, "--section", section],
            "gps-calc": ["gps-calc", self.project, "--section", section],
            "edit-section": ["edit-section", self.project, "--section", section,
                             f"GpsXEnd={self.random.randint(1, 90)}.25"],
        }[choice]

    def duration(self):
        begin = time.perf_counter()
        self.run("edit-section", self.project, "--section", "1", "Comment=x", codes=(0, 1))
        return time.perf_counter() - begin

    def kill_one(self, longest):
        """Whether the kill met the command alive, after its first write."""
        words = self.change()
        process = subprocess.Popen(self.command(*words), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        if self.random.random() < 0.7:
            # From the first write on, where there is one.
            journal = self.project + "-journal"
            while process.poll() is None and not os.path.exists(journal):
                pass
            time.sleep(self.random.random() * longest / 20)
        else:
            time.sleep(self.random.random() * longest)
        alive = process.poll() is None
        hot = alive and os.path.exists(self.project + "-journal")
        process.send_signal(signal.SIGKILL)
        process.wait()
        after = self.dump()
        done, _ = self.steps()
        if done > 0:
            self.run("undo", self.project, str(done))
        if self.dump() != self.first:
            sys.exit(f"after {' '.join(words)} the way back leads elsewhere")
        if done > 0:
            self.run("redo", self.project, str(done))
        if self.dump() != after:
            sys.exit(f"after {' '.join(words)} the way forth leads elsewhere")
        return hot


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--program", required=True)
    parser.add_argument("--kills", type=int, default=10)
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="drovane-kill-") as folder:
        bench = Bench(arguments.cli, arguments.program, folder, arguments.seed)
        bench.run("load", bench.project, bench.document)
        longest = bench.duration() * 1.2
        hot = sum(bench.kill_one(longest) for _ in range(arguments.kills))
    print(f"{arguments.kills} kills, {hot} of them between first and last write; all ways back lead there")
    if hot * 4 < arguments.kills:
        sys.exit("too few kills fell into the writes")


if __name__ == "__main__":
    main()
