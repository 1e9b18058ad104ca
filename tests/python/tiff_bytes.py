"""Small TIFF files, made byte by byte."""

from __future__ import annotations

import struct
from collections.abc import Sequence

BYTE, ASCII, SHORT, LONG, RATIONAL, DOUBLE = 1, 2, 3, 4, 5, 12
_LENGTHS = {BYTE: 1, ASCII: 1, SHORT: 2, LONG: 4, RATIONAL: 8, DOUBLE: 8}

# Number, type, and the value's bytes in little-endian order.
Entry = tuple[int, int, bytes]


def shorts(number: int, *values: int) -> Entry:
    return number, SHORT, struct.pack(f"<{len(values)}H", *values)


def longs(number: int, *values: int) -> Entry:
    return number, LONG, struct.pack(f"<{len(values)}I", *values)


def doubles(number: int, *values: float) -> Entry:
    return number, DOUBLE, struct.pack(f"<{len(values)}d", *values)


def text(number: int, value: bytes) -> Entry:
    return number, ASCII, value + b"\0"


def grey_page(width: int = 4, height: int = 3) -> list[Entry]:
    """The entries of an image without pixels."""
    return [longs(256, width), longs(257, height), shorts(258, 8), shorts(259, 1), shorts(262, 1)]


def tiff(*pages: Sequence[Entry], last_next: int = 0) -> bytes:
    """A little-endian TIFF with a directory for each list of entries, in the order of their
    numbers. Each has its values behind it. The last one names last_next as the next directory."""
    content = bytearray(b"II*\0" + struct.pack("<I", 8))
    for index, page in enumerate(pages):
        page = sorted(page)
        values = bytearray()
        behind = len(content) + 2 + 12 * len(page) + 4
        head = struct.pack("<H", len(page))
        for number, kind, value in page:
            field = value.ljust(4, b"\0")
            if len(value) > 4:
                field = struct.pack("<I", behind + len(values))
                values += value + bytes(len(value) % 2)
            head += struct.pack("<HHI", number, kind, len(value) // _LENGTHS.get(kind, 1)) + field
        is_last = index == len(pages) - 1
        following = last_next if is_last else behind + len(values)
        content += head + struct.pack("<I", following) + values
    return bytes(content)
