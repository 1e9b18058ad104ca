#!/usr/bin/python3
"""Measures corvinex.read beside another reader of Python, over a stack of 5,000 pages.

Each reading is a process of its own, in which the modules are loaded before the clock starts. Readers
run in turn, round after round; a ratio is the median of the rounds' own ratios.
"""

from __future__ import annotations

import argparse
import os
import pathlib
import statistics
import subprocess
import sys

# Seconds of the processor, and how many values were at hand.
READERS = {
    "read": """
def read(path):
    return sum(len(page) for page in corvinex.read(path))
import corvinex
""",
    "read, and every value as a Python object": """
def read(path):
    return sum(len(list(page.values())) for page in corvinex.read(path))
import corvinex
""",
    "tifffile, and every value as a Python object": """
def read(path):
    with tifffile.TiffFile(path) as file:
        return sum(len([tag.value for tag in page.tags.values()]) for page in file.pages)
import tifffile
""",
}
TIMED = """
import pathlib, sys, time
start = time.process_time()
count = read(sys.argv[1])
print(time.process_time() - start, count)
"""
MOST = {"read": 0.05}


def run(reader: str, path: pathlib.Path, package: pathlib.Path) -> tuple[float, int]:
    told = subprocess.run(
        [sys.executable, "-c", READERS[reader] + TIMED, path],
        env=os.environ | {"PYTHONPATH": str(package)},
        check=True,
        stdout=subprocess.PIPE,
        text=True,
    ).stdout.split()
    return float(told[0]), int(told[1])


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--inputs", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=15)
    arguments = parser.parse_args()
    path = arguments.inputs / "pages-5k.tif"
    runs: dict[str, list[tuple[float, int]]] = {name: [] for name in READERS}
    for _ in range(arguments.rounds):
        for name in READERS:
            runs[name].append(run(name, path, arguments.build / "python"))
    peer = [seconds for seconds, _ in runs["tifffile, and every value as a Python object"]]
    print("| reader | ms | values | of the peer's time | at most |\n|---|---|---|---|---|")
    for name, times in runs.items():
        milliseconds = statistics.median(seconds for seconds, _ in times) * 1000
        ratio = statistics.median(
            seconds / other for (seconds, _), other in zip(times, peer, strict=True)
        )
        count = times[0][1]
        print(f"| {name} | {milliseconds:.1f} | {count} | {ratio:.3f} | {MOST.get(name, '')} |")


if __name__ == "__main__":
    main()
