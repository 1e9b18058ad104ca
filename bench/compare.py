#!/usr/bin/env python3
"""Runs the module, the inspection, their peers and the floor side by side and prints what they cost.

Every figure is that of a whole process. The programs of one input run in turn, round after round,
so that whatever else the machine does meets all of them; a ratio is the median of the rounds' own
ratios. `--check` runs everything once instead and compares what the programs counted.
"""

import argparse
import datetime
import operator
import os
import pathlib
import platform
import re
import shutil
import statistics
import subprocess
import sys
from dataclasses import dataclass

MODULE = "corvinex"
INSPECTION = "inspection"
KIB = 1024
MIB = 1024 * KIB


@dataclass
class Case:
    """An input and the programs that read it."""

    name: str
    argument: str
    programs: list
    # The rounds are this many times the number asked for: short runs need more of them.
    share: float = 1


CASES = [
    Case("pages-5k", "pages-5k.tif", [MODULE, "libtiff", "floor"], 2),
    Case(
        "pages-50k",
        "pages-50k.tif",
        [MODULE, "libtiff", "libtiff, reading", "floor", "call", "show", INSPECTION, "json"],
    ),
    Case("pages-50k-mm", "pages-50k-mm.tif", [MODULE, "libtiff", "floor"]),
    Case("pages-50k-big", "pages-50k-big.tif", [MODULE, "libtiff", "floor"]),
    Case("pages-500k", "pages-500k.tif", [MODULE, "libtiff", "floor"], 0.25),
    Case(
        "scattered-20k",
        "scattered-20k.tif",
        [MODULE, "libtiff", "libtiff, reading", "floor", INSPECTION],
    ),
    Case("wide-60k", "wide-60k.tif", [MODULE, "floor", INSPECTION], 2),
    Case("wide-text", "wide-text.tif", [MODULE, "floor"], 2),
    Case("big-arrays", "big-arrays.tif", [MODULE, "libtiff", "floor"]),
    Case(
        "small-tiff",
        "@small-tiff.list",
        [MODULE, "libtiff", "exiv2", "floor", INSPECTION, "json -j 1", "json -j 2"],
    ),
    Case("small-jpeg", "@small-jpeg.list", [MODULE, "libexif", "exiv2", "floor", INSPECTION], 2),
    # Apart, because one round takes as long as all others of the input.
    Case("small-jpeg as JSON", "@small-jpeg.list", ["json", "exiftool -j"], 0.2),
    Case("one small TIFF", "small-tiff/00000.tif", ["inspect", "tiffinfo"], 4),
]


class Programs:
    """The command lines of the programs."""

    def __init__(self, build, inputs):
        self.bench = build / "bench"
        self.inputs = inputs
        tool = str(build / "bin" / "corvinex")
        self.commands = {
            MODULE: [self._path("read_tags"), "--no-count"],
            "floor": [self._path("floor")],
            "libtiff": [self._path("walk_libtiff")],
            "libtiff, reading": [self._path("walk_libtiff"), "--read"],
            "libexif": [self._path("walk_libexif")],
            "exiv2": [self._path("walk_exiv2")],
            "call": [tool, "call"],
            "show": [tool, "show"],
            INSPECTION: [self._path("walk_inspect")],
            "json": [tool, "json"],
            "json -j 1": [tool, "json", "-j", "1"],
            "json -j 2": [tool, "json", "-j", "2"],
            "inspect": [tool, "inspect"],
            "tiffinfo": [shutil.which("tiffinfo") or "tiffinfo"],
            "exiftool -j": [shutil.which("exiftool") or "exiftool", "-j", "-q"],
        }

    def _path(self, name):
        return str(self.bench / name)

    def command(self, program, argument):
        # The paths are relative to the inputs' folder, in which the programs are started. A list holds
        # all files of the folder of its name, and only the benchmark's own programs read one.
        if not self.counts(program) and argument.startswith("@"):
            argument = argument.removeprefix("@").removesuffix(".list")
        return [*self.commands[program], argument]

    def counts(self, program):
        """Whether a program prints totals; the others print what they read, which is not needed."""
        return pathlib.Path(self.commands[program][0]).parent == self.bench

    def counting(self, argument):
        return [self._path("read_tags"), argument]

    def is_there(self, program):
        return os.access(self.commands[program][0], os.X_OK)


@dataclass
class Run:
    """What one process took."""

    cpu: float
    wall: float
    peak: int  # bytes
    totals: dict


def parse_totals(text):
    """The lines "name number" of a program's output."""
    return {name: float(number) for name, number in re.findall(r"^(\w+) ([\d.]+)$", text, re.M)}


def show_progress(text):
    if sys.stderr.isatty():
        print(f"\r{text:<40}\r", end="", file=sys.stderr, flush=True)


class Bench:
    def __init__(self, programs):
        self.programs = programs
        self.runs = {}  # (case, program): [Run]
        self.counts = {}  # case: totals of one counting run of the module

    def run(self, command, counts=True):
        measure = str(self.programs.bench / "measure")
        done = subprocess.run(
            [measure, *command],
            cwd=self.programs.inputs,
            stdout=subprocess.PIPE if counts else subprocess.DEVNULL,
            stderr=subprocess.PIPE,
            text=True,
            check=False,
        )
        *complaints, figures = done.stderr.splitlines() or [""]
        fields = figures.split()
        if done.returncode != 0 or len(fields) != 4 or fields[0] != "0":
            sys.exit(f"{' '.join(command)} failed:\n" + "\n".join(complaints or [figures]))
        totals = parse_totals(done.stdout) if counts else {}
        return Run(float(fields[1]), float(fields[2]), int(fields[3]) * KIB, totals)

    def run_program(self, program, argument):
        command = self.programs.command(program, argument)
        return self.run(command, self.programs.counts(program))

    def present(self, case):
        return [program for program in case.programs if self.programs.is_there(program)]

    def count(self, case):
        self.counts[case.name] = self.run(self.programs.counting(case.argument)).totals

    def measure(self, case, rounds):
        self.count(case)
        for number in range(max(1, round(rounds * case.share))):
            show_progress(f"{case.name}, round {number + 1}")
            for program in self.present(case):
                run = self.run_program(program, case.argument)
                self.runs.setdefault((case.name, program), []).append(run)
        show_progress("")

    def check(self, case):
        """Compares what the programs count, and returns the differences as sentences."""
        self.count(case)
        expected = {name: self.counts[case.name][name] for name in ("directories", "values")}
        complaints = []
        for program in self.present(case):
            run = self.run_program(program, case.argument)
            counted = run.totals
            if program == MODULE or not counted:
                continue  # counted above; the tool counts nothing
            found = {name: counted[name] for name in expected}
            if found != expected:
                complaints.append(f"{case.name}: {program} reads {found}, the module {expected}")
        return complaints

    # Figures.

    def cpu(self, case, program):
        return statistics.median(run.cpu for run in self.runs[case, program])

    def wall(self, case, program):
        return statistics.median(run.wall for run in self.runs[case, program])

    def peak(self, case, program):
        return statistics.median(run.peak for run in self.runs[case, program])

    def ratio(self, case, program, other, cost=operator.attrgetter("cpu")):
        """The ratio of costs, or None where one of the two did not run."""
        pairs = zip(self.runs.get((case, program), []), self.runs.get((case, other), []))
        ratios = [cost(run) / cost(other_run) for run, other_run in pairs]
        return statistics.median(ratios) if ratios else None

    def calls_cpu(self, case):
        return statistics.median(run.totals["cpu_seconds"] for run in self.runs[case, MODULE])

    def directories(self, case):
        return self.counts[case]["directories"]

    def peak_per_directory(self, case, idle_peak):
        return (self.peak(case, MODULE) - idle_peak) / self.directories(case)


@dataclass
class Target:
    text: str
    measured: float
    limit: float
    unit: str = ""

    def cells(self):
        if self.measured is None:
            return [self.text, "not measured", f"<= {self.limit:g}{self.unit}", ""]
        met = "met" if self.measured <= self.limit else "missed"
        return [self.text, f"{self.measured:.2f}{self.unit}", f"<= {self.limit:g}{self.unit}", met]


def cpu_targets(bench):
    limits = [
        (case, other, limit)
        for case in ("pages-50k", "pages-50k-mm", "pages-50k-big")
        for other, limit in (("libtiff", 0.4), ("floor", 12))
    ] + [
        ("scattered-20k", "libtiff", 1.6),
        ("scattered-20k", "libtiff, reading", 0.8),
        ("scattered-20k", "floor", 1.7),
        ("wide-60k", "floor", 6),
        ("wide-text", "floor", 8),
        ("big-arrays", "libtiff", 0.5),
        ("big-arrays", "floor", 4),
        ("small-tiff", "libtiff", 0.75),
        ("small-tiff", "floor", 3),
        ("small-jpeg", "libexif", 1.2),
        ("small-jpeg", "floor", 3),
    ]
    for case, other, limit in limits:
        yield Target(f"{case}: CPU against {other}", bench.ratio(case, MODULE, other), limit)
    for command in ("call", "show"):
        ratio = bench.ratio("pages-50k", command, MODULE)
        yield Target(f"pages-50k: CPU of `corvinex {command}` against the read", ratio, 3)


def inspection_targets(bench):
    limits = [
        ("pages-50k", INSPECTION, "libtiff", 0.25),
        ("small-tiff", INSPECTION, "libtiff", 0.5),
        ("small-jpeg", INSPECTION, "libexif", 0.7),
        ("scattered-20k", INSPECTION, "libtiff", 0.5),
        ("wide-60k", INSPECTION, "floor", 4),
        ("pages-50k", "json", "libtiff", 1),
        ("small-jpeg as JSON", "json", "exiftool -j", 0.03),
        ("one small TIFF", "inspect", "tiffinfo", 1.5),
    ]
    for case, program, other, limit in limits:
        what = "the inspection" if program == INSPECTION else f"`corvinex {program}`"
        text = f"{case}: CPU of {what} against {other}"
        yield Target(text, bench.ratio(case, program, other), limit)
    ratio = bench.ratio("small-tiff", "json -j 2", "json -j 1", operator.attrgetter("wall"))
    text = "small-tiff: wall time of `corvinex json -j 2` against `-j 1`"
    yield Target(text, ratio, round(1 / 1.8, 3))
    folders = ["small-tiff"] * 4
    peak = bench.run([*bench.programs.commands["json"], *folders], counts=False).peak
    yield Target("small-tiff, 4 times: peak memory of `corvinex json`", peak / MIB, 32, " MiB")


def size_targets(bench):
    first_small = (bench.programs.inputs / "small-tiff.list").read_text().split()[0]
    idle_peak = bench.run(bench.programs.command(MODULE, first_small)).peak
    for case in ("pages-50k", "pages-50k-mm", "pages-50k-big"):
        peak = bench.peak_per_directory(case, idle_peak)
        yield Target(f"{case}: peak memory a directory", peak / KIB, 2, " KiB")
    pages = ("pages-5k", "pages-50k", "pages-500k")
    costs = {
        "CPU": [bench.calls_cpu(case) / bench.directories(case) for case in pages],
        "memory": [bench.peak_per_directory(case, idle_peak) for case in pages],
    }
    for what, (few, _, many) in costs.items():
        text = f"pages-5k to pages-500k: {what} a directory grows by"
        yield Target(text, (many / few - 1) * 100, 15, " %")
    result = bench.counts["big-arrays"]["element_bytes"]
    peak = bench.peak("big-arrays", MODULE)
    yield Target("big-arrays: peak memory against the result's bytes", peak / result, 2.2)
    peak = bench.peak("small-tiff", MODULE)
    yield Target("small-tiff: peak memory in all", peak / MIB, 8, " MiB")


def print_table(header, rows):
    widths = [max(len(row[i]) for row in [header, *rows]) for i in range(len(header))]
    for row in [header, ["-" * width for width in widths], *rows]:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")
    print()


def processor():
    try:
        text = pathlib.Path("/proc/cpuinfo").read_text()
        return re.search(r"model name\s*: (.*)", text).group(1)
    except (OSError, AttributeError):
        return platform.processor() or "unknown processor"


def packages():
    names = ["libtiff6", "libexif12", "libexiv2-27", "libtiff-tools", "libimage-exiftool-perl"]
    command = ["dpkg-query", "-W", "-f", "${Package} ${Version}\n", *names]
    listed = subprocess.run(command, capture_output=True, text=True, check=False).stdout
    return ", ".join(listed.splitlines())


def report(bench):
    print(f"{datetime.date.today()}, {os.cpu_count()} x {processor()}")
    print(f"Peers: {packages()}\n")
    rows = []
    for (case, program), runs in bench.runs.items():
        ratio = bench.ratio(case, MODULE, program)
        rows.append(
            [
                case,
                program,
                f"{bench.cpu(case, program) * 1000:.1f}",
                f"{bench.wall(case, program) * 1000:.1f}",
                f"{bench.peak(case, program) / MIB:.1f}",
                f"{ratio:.2f}" if ratio is not None else "",
                str(len(runs)),
            ]
        )
    header = ["input", "program", "CPU ms", "wall ms", "peak MiB", "corvinex / it", "rounds"]
    print_table(header, rows)
    targets = [*cpu_targets(bench), *inspection_targets(bench), *size_targets(bench)]
    print_table(["target", "measured", "limit", ""], [target.cells() for target in targets])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, required=True, help="the build folder")
    parser.add_argument("--inputs", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=15)
    parser.add_argument("--check", action="store_true", help="run once and compare the counts")
    arguments = parser.parse_args()
    bench = Bench(Programs(arguments.build.resolve(), arguments.inputs.resolve()))
    if arguments.check:
        complaints = [complaint for case in CASES for complaint in bench.check(case)]
        if complaints:
            sys.exit("\n".join(complaints))
        print("The benchmark's programs count the same directories and values")
        return
    for case in CASES:
        bench.measure(case, arguments.rounds)
    report(bench)


if __name__ == "__main__":
    main()
