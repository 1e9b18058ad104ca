#!/usr/bin/python3
"""Measures corvinex.inspect and corvinex.table beside other readers of Python.

  PYTHONPATH=build/python bench/python_inspect.py [INPUTS]

INPUTS is the folder that scripts/bench has made (build/bench/inputs). Each reader is a process of
its own that reads twice; the second time counts, as the first one loads modules and asks the system
for memory. Readers run in turn, round after round, and a ratio is the median of the rounds' own.
"""

from __future__ import annotations

import json
import logging
import pathlib
import statistics
import subprocess
import sys
import time
from collections.abc import Callable
from dataclasses import dataclass

ROUNDS = 5
FILES = 5_000


@dataclass(frozen=True)
class Case:
    """What is read, by which readers, and the most that the first may take of the others' time."""

    name: str
    input: str
    readers: tuple[str, ...]
    most: float


CASES = (
    Case("all tags of all pages", "pages-5k.tif", ("inspect", "tifffile"), 0.05),
    Case("a table of 5,000 files", "small-tiff", ("table", "exifread", "pillow"), 0.1),
)

Read = Callable[[pathlib.Path], int]


def inspect_reader() -> Read:
    import numpy  # noqa: F401

    import corvinex

    def read(path: pathlib.Path) -> int:
        count = 0
        for directory in corvinex.inspect(path).directories:
            for entry in directory:
                entry.value
                count += 1
        return count

    return read


def tifffile_reader() -> Read:
    import tifffile  # type: ignore[import]

    def read(path: pathlib.Path) -> int:
        count = 0
        with tifffile.TiffFile(path) as file:
            for page in file.pages:
                for tag in page.tags:
                    tag.value
                    count += 1
        return count

    return read


def files_in(folder: pathlib.Path) -> list[pathlib.Path]:
    return sorted(folder.iterdir())[:FILES]


def table_reader() -> Read:
    import pandas  # type: ignore[import] # noqa: F401

    import corvinex

    return lambda folder: len(corvinex.table(files_in(folder)))


def exifread_reader() -> Read:
    import exifread  # type: ignore[import]

    logging.disable(logging.CRITICAL)

    def read(folder: pathlib.Path) -> int:
        for path in files_in(folder):
            with open(path, "rb") as file:
                exifread.process_file(file, details=False)
        return len(files_in(folder))

    return read


def pillow_reader() -> Read:
    from PIL import ExifTags, Image  # type: ignore[import]

    def read(folder: pathlib.Path) -> int:
        for path in files_in(folder):
            with Image.open(path) as image:
                exif = image.getexif()
                dict(exif.items())
                dict(exif.get_ifd(ExifTags.IFD.Exif))
        return len(files_in(folder))

    return read


READERS = {
    "inspect": inspect_reader,
    "tifffile": tifffile_reader,
    "table": table_reader,
    "exifread": exifread_reader,
    "pillow": pillow_reader,
}


def measure(reader: str, path: pathlib.Path) -> None:
    """Prints seconds of processor time and of the clock that a reading takes, and what it read."""
    read = READERS[reader]()
    read(path)
    clock, processor = time.perf_counter(), time.process_time()
    count = read(path)
    print(json.dumps([time.process_time() - processor, time.perf_counter() - clock, count]))


def run(reader: str, path: pathlib.Path) -> tuple[float, float, int]:
    command = [sys.executable, __file__, "--measure", reader, str(path)]
    told = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    processor, clock, count = json.loads(told)
    return processor, clock, count


def compare(case: Case, inputs: pathlib.Path) -> bool:
    """Prints a row for each reader; returns whether the first takes little enough."""
    rounds = [
        {name: run(name, inputs / case.input) for name in case.readers} for _ in range(ROUNDS)
    ]
    first = case.readers[0]
    is_kept = True
    for name in case.readers:
        processor, clock = (
            1000 * statistics.median(one[name][figure] for one in rounds) for figure in (0, 1)
        )
        ratio = statistics.median(one[first][0] / one[name][0] for one in rounds)
        print(
            f"{case.name:24} {name:10} {rounds[0][name][2]:8,} {processor:9.1f} {clock:9.1f}"
            + (f" {ratio:9.3f}" if name != first else "")
        )
        is_kept = is_kept and (name == first or ratio <= case.most)
    return is_kept


def main() -> int:
    inputs = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build/bench/inputs")
    print(f"{'':24} {'':10} {'read':>8} {'cpu, ms':>9} {'wall, ms':>9} {'ratio':>9}")
    return 0 if all([compare(case, inputs) for case in CASES]) else 1


if __name__ == "__main__":
    if sys.argv[1:2] == ["--measure"]:
        measure(sys.argv[2], pathlib.Path(sys.argv[3]))
    else:
        sys.exit(main())
