"""Values as other readers of Python tell them, over the samples and the corpus.

Where another reader reads a file, what it tells is compared with the entry of the same directory
and number. Whatever differs is of a class that is listed with its reason and the number of values.
"""

from __future__ import annotations

import itertools
import logging
import pathlib
import warnings
from collections.abc import Iterator
from typing import Any

import pytest

for package in ("exifread", "tifffile", "PIL"):
    pytest.importorskip(package)

import exifread  # type: ignore[import]
import tifffile  # type: ignore[import]
from comparison import Comparison, Pair, Told, flattened, numbers_of, quotient
from files import corpus, samples
from PIL import ExifTags, Image, TiffImagePlugin  # type: ignore[import]

import corvinex

IPTC = 33723
# The directories by exifread's names of them.
GROUPS = {
    "Image": "0",
    "Thumbnail": "1",
    "EXIF": "0.exif",
    "GPS": "0.gps",
    "Interoperability": "0.exif.interop",
}


@pytest.fixture(autouse=True)
def _quiet() -> Iterator[None]:
    """What the other readers have to say of damaged files."""
    logging.disable(logging.CRITICAL)
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        yield
    logging.disable(logging.NOTSET)


def is_first_of_several(pair: Pair) -> bool:
    return any((numbers_of(entry.value) or [])[:1] == pair.theirs for entry in pair.entries)


def is_not_here(pair: Pair) -> bool:
    return not pair.entries


# tifffile


def told_by_tifffile(path: pathlib.Path) -> Iterator[Told]:
    pages = sum(directory.kind == "main" for directory in corvinex.inspect(path).directories)
    with tifffile.TiffFile(path) as file:
        for place, page in enumerate(itertools.islice(file.pages, pages)):
            for tag in page.tags:
                yield str(place), tag.code, of_tifffile(tag)


def of_tifffile(tag: Any) -> Any:
    """Rationals are their numerators and denominators, one behind the other."""
    value = tag.value
    if tag.dtype in (5, 10) and isinstance(value, tuple):
        return [quotient(*pair) for pair in zip(value[::2], value[1::2])]
    return flattened(value)


def is_read_further(pair: Pair) -> bool:
    return isinstance(pair.theirs, list) and any(isinstance(part, dict) for part in pair.theirs)


def is_bytes_of_integers(pair: Pair) -> bool:
    return pair.number == IPTC and any(
        value.tobytes().startswith(pair.theirs.rstrip(b"\0"))
        for entry in pair.entries
        if entry.type == "LONG"
        for value in (entry.value, entry.value.byteswap())
    )


def is_text_behind_a_zero(pair: Pair) -> bool:
    return any(
        entry.rest is not None and str(pair.theirs).startswith(str(entry.value).strip())
        for entry in pair.entries
    )


TIFFFILE = [
    ("tifffile gives the directory that a pointer leads to", 26, is_read_further),
    ("tifffile gives the bytes of IPTC data that has a type of integers", 4, is_bytes_of_integers),
    ("tifffile leaves zeros out of a text, and reads on behind them", 1, is_text_behind_a_zero),
]


def test_values_are_those_of_tifffile() -> None:
    comparison = Comparison(TIFFFILE)
    for path in [*samples(), *corpus()]:
        comparison.add(path, told_by_tifffile)
    comparison.check(least=3500 if corpus() else 200)


# Pillow

PILLOW_POINTERS = (
    (ExifTags.IFD.Exif, "0.exif"),
    (ExifTags.IFD.GPSInfo, "0.gps"),
    (ExifTags.IFD.Interop, "0.exif.interop"),
)


def told_by_pillow(path: pathlib.Path) -> Iterator[Told]:
    with Image.open(path) as image:
        exif = image.getexif()
        for number, value in exif.items():
            yield "0", number, of_pillow(value)
        for pointer, place in PILLOW_POINTERS:
            for number, value in inner_of(exif, pointer).items():
                yield place, number, of_pillow(value)


def inner_of(exif: Any, pointer: int) -> Any:
    try:
        return exif.get_ifd(pointer)
    except KeyError:
        return {}  # it looks for the pointer where there is none


def of_pillow(value: Any) -> Any:
    if isinstance(value, TiffImagePlugin.IFDRational):
        return [quotient(value.numerator, value.denominator)]
    if isinstance(value, tuple):
        return [number for part in value for number in of_pillow(part)]
    return flattened(value)


PILLOW = [
    ("Pillow gives the first number of a tag that it takes to hold one", 4, is_first_of_several),
    ("Pillow reads a directory of which the file holds a part", 2, is_not_here),
]


def test_values_are_those_of_pillow() -> None:
    comparison = Comparison(PILLOW)
    for path in [*samples(), *corpus()]:
        comparison.add(path, told_by_pillow)
    comparison.check(least=5000 if corpus() else 180)


# exifread


def told_by_exifread(path: pathlib.Path) -> Iterator[Told]:
    with open(path, "rb") as file:
        told = exifread.process_file(file, details=False)
    for key, tag in told.items():
        if hasattr(tag, "tag"):
            words = key.split(" ")
            place = words[1] if words[0] == "IFD" else GROUPS[words[0]]
            yield place, tag.tag, flattened(tag.values)


def is_long(pair: Pair) -> bool:
    return len(pair.theirs) == 0 and any(entry.count >= 1000 for entry in pair.entries)


def is_name_of_a_set(pair: Pair) -> bool:
    return any(entry.type == "ASCII" and entry.charset == pair.theirs for entry in pair.entries)


EXIFREAD = [
    ("exifread reads no value of 1,000 elements or more", 13, is_long),
    ("exifread gives the name of the set as the text of an ASCII comment", 1, is_name_of_a_set),
]


def test_values_are_those_of_exifread() -> None:
    comparison = Comparison(EXIFREAD)
    for path in [*samples(), *corpus()]:
        # It passes over damage without a word, and takes what is none for TIFF.
        file = corvinex.inspect(path)
        if file.status != "damaged" and file.container in ("JPEG", "TIFF"):
            comparison.add(path, told_by_exifread)
    comparison.check(least=6000 if corpus() else 250)
