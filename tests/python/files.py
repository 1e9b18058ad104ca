"""The files that the tests read: samples, damaged ones made of them, and real ones."""

from __future__ import annotations

import os
import pathlib
import struct
import subprocess
from collections.abc import Iterator

SAMPLES = pathlib.Path(os.environ["CORVINEX_SAMPLES"])
TOOL = os.environ["CORVINEX_TOOL"]
IMAGES = (".tif", ".jpg")


def samples() -> list[pathlib.Path]:
    """All images among the samples."""
    return sorted(path for path in SAMPLES.iterdir() if path.suffix in IMAGES)


def corpus() -> list[pathlib.Path]:
    """Real files, in the folder that CORVINEX_CORPUS names; none where it names none."""
    folder = os.environ.get("CORVINEX_CORPUS")
    if not folder:
        return []
    return sorted(path for path in pathlib.Path(folder).rglob("*") if path.is_file())


def damaged(folder: pathlib.Path) -> Iterator[pathlib.Path]:
    """Samples that end too early, and samples with bytes changed, written to a folder."""
    for sample in samples():
        content = sample.read_bytes()
        for share in (0.1, 0.5, 0.9, 0.99):
            path = folder / f"{sample.stem}-cut-{share}{sample.suffix}"
            path.write_bytes(content[: int(len(content) * share)])
            yield path
        for step in (7, 13, 31, 101):
            changed = bytearray(content)
            for place in range(step, len(changed), step * 5):
                changed[place] ^= 0xFF
            path = folder / f"{sample.stem}-changed-{step}{sample.suffix}"
            path.write_bytes(changed)
            yield path


def records_of_tool(*words: str | pathlib.Path) -> list[str]:
    """The lines that the tool prints for paths."""
    command = [TOOL, "json", "-q", *words]
    told = subprocess.run(command, capture_output=True, check=False)
    assert told.returncode in (0, 1), told.stderr
    return told.stdout.decode().splitlines()


Row = tuple[int, int, int, bytes]


def tiff(rows: list[Row], order: str = "<") -> bytes:
    """A TIFF file of one directory. A row is number, type code, count, and the value's bytes."""
    mark = b"II" if order == "<" else b"MM"
    head = mark + struct.pack(order + "HI", 42, 8)
    behind = 8 + 2 + 12 * len(rows) + 4
    entries, values = b"", b""
    for number, code, count, value in sorted(rows):
        field = value.ljust(4, b"\0")
        if len(value) > 4:
            field = struct.pack(order + "I", behind + len(values))
            values += value + b"\0" * (len(value) % 2)
        entries += struct.pack(order + "HHI", number, code, count) + field
    return head + struct.pack(order + "H", len(rows)) + entries + bytes(4) + values


def big_tiff(rows: list[Row]) -> bytes:
    """A BigTIFF file of one directory, little-endian."""
    head = b"II" + struct.pack("<HHHQ", 43, 8, 0, 16)
    behind = 16 + 8 + 20 * len(rows) + 8
    entries, values = b"", b""
    for number, code, count, value in sorted(rows):
        field = value.ljust(8, b"\0")
        if len(value) > 8:
            field = struct.pack("<Q", behind + len(values))
            values += value.ljust(-(-len(value) // 8) * 8, b"\0")
        entries += struct.pack("<HHQ", number, code, count) + field
    return head + struct.pack("<Q", len(rows)) + entries + bytes(8) + values


def many_pages(count: int) -> bytes:
    """A stack of pages whose values lie behind their directories."""
    page = tiff([(270, 2, 12, b"page of many"), (282, 5, 1, bytes([72, 0, 0, 0, 1, 0, 0, 0]))])
    content = bytearray(page)
    for _ in range(count - 1):
        start = len(content)
        content += page[8:]
        for place in range(start + 2, start + 2 + 24, 12):
            old = int.from_bytes(content[place + 8 : place + 12], "little")
            content[place + 8 : place + 12] = (old - 8 + start).to_bytes(4, "little")
    length = len(page) - 8
    for number in range(count - 1):
        place = 8 + number * length + 2 + 24
        content[place : place + 4] = (8 + (number + 1) * length).to_bytes(4, "little")
    return bytes(content)
