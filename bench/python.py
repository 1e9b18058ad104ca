#!/usr/bin/python3
"""Measures corvinex.read beside another reader of Python, over a stack of 5,000 pages.

Each reader is a process of its own, in which the modules are loaded before the clock starts. It reads
twice, each time for a row: the first time the system provides its memory. Readers run in turn, round
after round; a ratio is the median of the rounds' own ratios.
"""

from __future__ import annotations

import argparse
import os
import pathlib
import statistics
import subprocess
import sys

PEER = "tifffile, and every value as a Python object"

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
    PEER: """
def read(path):
    with tifffile.TiffFile(path) as file:
        return sum(len([tag.value for tag in page.tags.values()]) for page in file.pages)
import tifffile
""",
}
TIMED = """
import pathlib, sys, time
for _ in range(2):
    start = time.process_time()
    count = read(sys.argv[1])
    print(time.process_time() - start, count)
"""
TIMES = ("first", "second")
MOST = 0.05  # of the peer's time


def run(reader: str, path: pathlib.Path, package: pathlib.Path) -> list[tuple[float, int]]:
    """Seconds of the processor and the number of values, of the first time and the second."""
    told = subprocess.run(
        [sys.executable, "-c", READERS[reader] + TIMED, path],
        env=os.environ | {"PYTHONPATH": str(package)},
        check=True,
        stdout=subprocess.PIPE,
        text=True,
    ).stdout.splitlines()
    return [(float(seconds), int(count)) for seconds, count in map(str.split, told)]


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--inputs", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=15)
    arguments = parser.parse_args()
    path = arguments.inputs / "pages-5k.tif"
    runs: dict[str, list[list[tuple[float, int]]]] = {name: [] for name in READERS}
    for _ in range(arguments.rounds):
        for name in READERS:
            runs[name].append(run(name, path, arguments.build / "python"))
    print("| reader | time | ms | values | of the peer's time |\n|---|---|---|---|---|")
    for name, rounds in runs.items():
        for place, which in enumerate(TIMES):
            times = [one[place] for one in rounds]
            peer = [one[place][0] for one in runs[PEER]]
            milliseconds = statistics.median(seconds for seconds, _ in times) * 1000
            ratio = statistics.median(
                seconds / other for (seconds, _), other in zip(times, peer, strict=True)
            )
            print(f"| {name} | {which} | {milliseconds:.1f} | {times[0][1]} | {ratio:.3f} |")
    print(f"\nThe limit is {MOST}.")


if __name__ == "__main__":
    main()
