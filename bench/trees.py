#!/usr/bin/env python3
"""Measures `corvinex check` and `corvinex scan` over trees of small files, beside other programs.

Trees of 20,000 and 100,000 files are made of hard links to the 5,000 files of small-tiff. Programs that are
compared run in turn, round after round; a ratio is the median of the rounds' own ratios.
"""

import argparse
import os
import pathlib
import statistics
import struct
import sys
import tempfile
from dataclasses import dataclass

from compare import MIB, Bench, Programs, Target, print_table

STRIPS = 1_000_000


def make_tree(inputs, name, copies):
    """Links to the small files, as often as is asked for."""
    tree = inputs / name
    sources = [inputs / line for line in (inputs / "small-tiff.list").read_text().split()]
    if not (tree / "made").exists():
        for copy in range(copies):
            folder = tree / f"{copy:02}"
            folder.mkdir(parents=True, exist_ok=True)
            for source in sources:
                link = folder / source.name
                if not link.exists():
                    link.hardlink_to(source)
        (tree / "made").touch()
    return tree


def make_strips(inputs, count):
    """A grey image of a pixel's width, each row of which is a strip."""
    path = inputs / "million-strips.tif"
    if not path.exists():
        first = 8 + 2 + 9 * 12 + 4
        places, lengths, pixels = first, first + 4 * count, first + 8 * count
        entries = [(256, 3, 1, 1), (257, 4, 1, count), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1),
                   (273, 4, count, places), (277, 3, 1, 1), (278, 3, 1, 1), (279, 4, count, lengths)]
        content = b"II*\0" + struct.pack("<IH", 8, len(entries))
        content += b"".join(struct.pack("<HHII", *entry) for entry in entries) + bytes(4)
        content += struct.pack(f"<{count}I", *range(pixels, pixels + count)) + struct.pack(f"<{count}I", *[1] * count)
        path.write_bytes(content + bytes(count))
    return path


@dataclass
class Row:
    """What one command took, in the median of its rounds."""

    name: str
    runs: list

    def cells(self):
        return [self.name, f"{self.median('cpu') * 1000:.0f}", f"{self.median('wall') * 1000:.0f}",
                f"{self.median('peak') / MIB:.1f}", str(len(self.runs))]

    def median(self, figure):
        return statistics.median(getattr(run, figure) for run in self.runs)


class Trees:
    def __init__(self, build, inputs):
        self.bench = Bench(Programs(build, inputs))
        self.tool = str(build / "bin" / "corvinex")
        self.walker = str(build / "bench" / "walk_libtiff")
        self.inputs = inputs
        self.rows = {}

    def run(self, name, *command, is_tool=True):
        run = self.bench.run([str(word) for word in command], counts=not is_tool)
        self.rows.setdefault(name, Row(name, [])).runs.append(run)

    def ratio(self, name, other, figure="cpu"):
        if name not in self.rows or other not in self.rows:
            return None
        pairs = zip(self.rows[name].runs, self.rows[other].runs)
        return statistics.median(getattr(run, figure) / getattr(base, figure) for run, base in pairs)

    def check(self, name, path, jobs):
        # What is wrong with the files is no failure of the run.
        self.run(name, self.tool, "check", "-q", "--fail-on", "unreadable", "-j", jobs, path)

    def walk(self, name, tree):
        """libtiff over the same files, by a list of them."""
        with tempfile.NamedTemporaryFile("w", suffix=".list") as names:
            for path in sorted(tree.rglob("*.tif")):
                names.write(f"{path}\n")
            names.flush()
            self.run(name, self.walker, f"@{names.name}", is_tool=False)

    def scan(self, tree, jobs):
        with tempfile.TemporaryDirectory(dir=self.inputs) as folder:
            command = [self.tool, "scan", "-q", "-j", jobs, tree, "-o", pathlib.Path(folder) / "c.sqlite"]
            self.run(f"scan {tree.name}", *command)
            self.run(f"scan {tree.name} again", *command)

    def measure(self, rounds, with_exiftool):
        small = self.inputs / "small-tiff"
        tree = make_tree(self.inputs, "tree-20k", 4)
        large = make_tree(self.inputs, "tree-100k", 20)
        strips = make_strips(self.inputs, STRIPS)
        for _ in range(rounds):
            self.check("check small-tiff", small, 1)
            self.walk("libtiff small-tiff", small)
            self.check("check tree-20k", tree, 1)
            self.walk("libtiff tree-20k", tree)
            self.check("check tree-20k, 2 threads", tree, 2)
            self.scan(tree, 1)
            self.check("check million-strips", strips, 1)
        self.check("check tree-100k", large, os.cpu_count())
        self.scan(large, os.cpu_count())
        if with_exiftool:
            self.run("exiftool -validate small-tiff", "/bin/sh", "-c",
                     'exiftool -q -a -validate -warning "$0" || true', small)

    def targets(self):
        percents = [
            ("check small-tiff: CPU against libtiff", "check small-tiff", "libtiff small-tiff", "cpu", 100),
            ("check tree-20k: CPU against libtiff", "check tree-20k", "libtiff tree-20k", "cpu", 100),
            ("check small-tiff: CPU against exiftool -validate", "check small-tiff",
             "exiftool -validate small-tiff", "cpu", 2),
            ("check tree-20k: wall time of two threads against one", "check tree-20k, 2 threads",
             "check tree-20k", "wall", 100 / 1.8),
            ("scan tree-20k: CPU against check", "scan tree-20k", "check tree-20k", "cpu", 300),
            ("scan tree-20k: CPU of a second one against the first", "scan tree-20k again", "scan tree-20k",
             "cpu", 5),
        ]
        for text, name, other, figure, limit in percents:
            ratio = self.ratio(name, other, figure)
            yield Target(text, None if ratio is None else 100 * ratio, limit, " %")
        for name in ("check tree-100k", "scan tree-100k"):
            yield Target(f"{name}: peak memory", self.rows[name].median("peak") / MIB, 64, " MiB")
        yield Target("check million-strips: CPU", self.rows["check million-strips"].median("cpu"), 0.5, " s")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, required=True, help="the build folder")
    parser.add_argument("--inputs", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--no-exiftool", action="store_true", help="leave exiftool out, which takes long")
    arguments = parser.parse_args()
    if not (arguments.inputs / "small-tiff.list").exists():
        sys.exit("scripts/bench makes the inputs")
    trees = Trees(arguments.build.resolve(), arguments.inputs.resolve())
    trees.measure(arguments.rounds, not arguments.no_exiftool)
    print_table(["command", "CPU ms", "wall ms", "peak MiB", "rounds"], [row.cells() for row in trees.rows.values()])
    print_table(["target", "measured", "limit", ""], [target.cells() for target in trees.targets()])


if __name__ == "__main__":
    main()
