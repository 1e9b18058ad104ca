"""Catalogues for tests: of the samples, and of files with names and texts made to do harm."""

import os
import pathlib
import shutil
import struct
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
TOOL = os.environ["CORVINEX_TOOL"]

# A name for what each of them would do to a page or a terminal that shows it as it is.
HOSTILE_NAMES = (
    b"<script>document.title='taken'<.tif",
    b"<img src=x onerror=alert(1)>.tif",
    b"\"' onmouseover='alert(1)&amp;.tif",
    b"{{ 7 * 7 }}.tif",
    b"two\nlines.tif",
    b"escape\x1b[31m.tif",
    b"no-utf-8-\xff\xfe.tif",
    b"surrogate-\xed\xa0\x80.tif",
    "turned-\u202egpj.tif".encode(),
    "\u6771\u4eac.tif".encode(),
    b"long-" + 200 * b"x" + b".tif",
)
# A label of a chart that is a formula, an element and a control character.
HOSTILE_MODEL = b"$\\frac$</title><b>\x01 EO-1"


def tiff(entries: list[tuple[int, int, bytes]]) -> bytes:
    """A little-endian TIFF with entries of a tag, a type and the value's bytes."""
    sizes = {1: 1, 2: 1, 3: 2, 4: 4, 5: 8, 11: 4}
    place = 8 + 2 + 12 * len(entries) + 4
    directory, values = struct.pack("<H", len(entries)), b""
    for tag, kind, value in entries:
        directory += struct.pack("<HHI", tag, kind, len(value) // sizes[kind])
        if len(value) <= 4:
            directory += value.ljust(4, b"\0")
        else:
            directory += struct.pack("<I", place + len(values))
            values += value
    return b"II*\0" + struct.pack("<I", 8) + directory + bytes(4) + values


def make_hostile_tree(folder: pathlib.Path) -> None:
    """The samples, an emptied file, one that cannot be read, one with a hostile camera, and damaged
    ones with hostile names.
    """
    folder.mkdir()
    for sample in (ROOT / "samples").iterdir():
        if sample.suffix in (".tif", ".dng", ".jpg"):
            shutil.copy(sample, folder)
    damaged = (ROOT / "samples" / "damaged.tif").read_bytes()
    for name in HOSTILE_NAMES:
        with open(os.path.join(os.fsencode(folder), name), "wb") as file:
            file.write(damaged)
    (folder / "empty.tif").write_bytes(b"")
    (folder / "loop.tif").symlink_to("loop.tif")
    (folder / "camera.tif").write_bytes(
        tiff(
            [
                (256, 3, b"\1\0"),
                (257, 3, b"\1\0"),
                (258, 11, struct.pack("<f", 8.5)),
                (271, 2, b"Example Optics\0"),
                (272, 2, HOSTILE_MODEL + b"\0"),
                (282, 5, struct.pack("<II", 118, 1)),
                (283, 5, struct.pack("<II", 118, 1)),
                (296, 3, b"\3\0"),
                (306, 2, b"1999:12:31 23:59:59\0"),
            ]
        )
    )


def scan(tree: pathlib.Path, catalogue: pathlib.Path) -> pathlib.Path:
    """Has the tool make a catalogue of a folder, whose files may be unreadable."""
    result = subprocess.run([TOOL, "scan", "-q", ".", "-o", catalogue], cwd=tree, check=False)
    assert result.returncode in (0, 1)
    return catalogue
