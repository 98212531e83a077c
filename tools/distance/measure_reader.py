#!/usr/bin/env python3
"""Compares what the program reads from videos with the truth beside them.

    measure_reader.py DROVANE_CLI FOLDER

Prints a Markdown table, one line a video: whether the counter was found, how many readings are right, how many are
given as sure, and how many of these are wrong. Exit code 1 if a sure reading is wrong.
"""

import bisect
import json
import subprocess
import sys
import time
from pathlib import Path


def main(cli, folder):
    wrong_sure = 0
    print("| Video | Found | Readings | Right | Sure | Wrong though sure | Seconds |\n|---|---|---|---|---|---|---|")
    for truth_file in sorted(Path(folder).glob("*.json")):
        truth = json.loads(truth_file.read_text())
        begun = time.time()
        run = subprocess.run([cli, "distance", truth_file.with_suffix(".mp4"), "--json"], capture_output=True, text=True)
        took = time.time() - begun
        if run.returncode != 0:
            print(f"| {truth['style']} | {'no' if run.returncode == 3 else run.stderr.strip()} | | | | | {took:.1f} |", flush=True)
            continue
        track = json.loads(run.stdout)["track"]
        times = [value[0] for value in truth["values"]]

        def right(reading):
            # On the frame of a change either side is right.
            at = max(bisect.bisect_right(times, reading["time"] + 1e-6) - 1, 0)
            shown = {truth["values"][i][1] for i in (at - 1, at, at + 1)
                     if 0 <= i < len(times) and (i == at or abs(times[max(i, at)] - reading["time"]) < 0.041)}
            return any(abs(reading["distance"] - value) < 1e-6 for value in shown)

        good = sum(right(reading) for reading in track)
        sure = [reading for reading in track if reading["sure"]]
        bad = [reading for reading in sure if not right(reading)] if truth["values"] else sure
        wrong_sure += len(bad)
        print(f"| {truth['style']} | yes | {len(track)} | {100 * good / max(len(track), 1):.1f} % | "
              f"{100 * len(sure) / max(len(track), 1):.1f} % | {len(bad)} | {took:.1f} |", flush=True)
    return 1 if wrong_sure else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:3]))
