"""What reading a file gives, and how it is asked for."""

from __future__ import annotations

import os
import pathlib
import pickle
from collections.abc import Mapping, Sequence
from typing import Any

import numpy
import pytest

import corvinex
from tiff_bytes import grey_page, longs, text, tiff

SAMPLES = pathlib.Path(os.environ["CORVINEX_SAMPLES"])
PAGES = SAMPLES / "pages-big-endian.tif"


def test_a_file_is_a_sequence_of_its_directories() -> None:
    directories = corvinex.read(PAGES)
    assert isinstance(directories, Sequence)
    assert [page.Width for page in directories] == [48.0, 32.0, 16.0]
    assert directories[-1].Width == 16.0
    assert [page.Width for page in directories[1:]] == [32.0, 16.0]
    assert directories[::-1][0].Width == 16.0
    with pytest.raises(IndexError):
        directories[3]


def test_an_index_that_finds_no_directory_tells_why() -> None:
    directories: Any = corvinex.read(PAGES)
    for index in (3, -4):
        with pytest.raises(IndexError, match=f"there is no directory {index}: there are 3"):
            directories[index]
    for wrong in ("a", 1.5, None):
        with pytest.raises(TypeError, match="directories are counted by whole numbers"):
            directories[wrong]


def test_a_directory_is_a_mapping_in_field_order() -> None:
    directory = corvinex.read(PAGES)[0]
    assert isinstance(directory, Mapping)
    assert list(directory)[:4] == ["Filename", "FileModDate", "FileSize", "Format"]
    assert tuple(directory) == corvinex.read(PAGES).fields
    assert list(directory.items())[0] == ("Filename", str(PAGES))
    assert list(directory.keys()) == list(directory)
    assert len(list(directory.values())) == len(directory)
    assert "Width" in directory and "Depth" not in directory
    assert directory.get("Depth", 7) == 7
    with pytest.raises(KeyError, match="Depth"):
        directory["Depth"]


def test_fields_are_attributes_and_are_completed() -> None:
    directory = corvinex.read(PAGES)[0]
    assert directory.XResolution == directory["XResolution"] == 300.0
    assert {"XResolution", "keys"} <= set(dir(directory))
    with pytest.raises(AttributeError, match="no field Xresolution; the nearest name is XResolution"):
        directory.Xresolution


def test_representations_are_short() -> None:
    directories = corvinex.read(PAGES)
    assert repr(directories) == f"<Directories: 3 with {len(directories.fields)} fields>"
    more = len(directories.fields) - 3
    assert repr(directories[0]) == (
        f"<Directory: Filename, FileModDate, FileSize and {more} more fields>"
    )


def test_directories_are_equal_where_they_are_the_same_of_one_result() -> None:
    directories = corvinex.read(PAGES)
    assert directories[0] == directories[0] != directories[1]
    assert directories[0] != directories[0].raw
    assert directories[0] != corvinex.read(PAGES)[0]
    assert len({directories[0], directories[0], directories[1]}) == 2
    assert directories.index(directories[2]) == 2


def test_a_result_is_not_pickled() -> None:
    with pytest.raises(TypeError, match="cannot pickle"):
        pickle.dumps(corvinex.read(PAGES)[0])


def test_directories_are_skipped_and_limited() -> None:
    assert [page.Width for page in corvinex.read(PAGES, skip=1)] == [32.0, 16.0]
    assert [page.Width for page in corvinex.read(PAGES, limit=2)] == [48.0, 32.0]
    assert [page.Width for page in corvinex.read(PAGES, skip=numpy.uint8(1), limit=1)] == [32.0]
    with pytest.raises(ValueError, match="the file has 3 directories; skipping 3 leaves none"):
        corvinex.read(PAGES, skip=3)


def test_the_header_is_found_or_taken_where_it_is_said_to_be(tmp_path: pathlib.Path) -> None:
    photo = SAMPLES / "photo.jpg"
    place = photo.read_bytes().index(b"Exif\0\0") + 6
    assert corvinex.read(photo)[0].Model == "EO-1"
    assert corvinex.read(photo, header_offset=place)[0].Model == "EO-1"
    with pytest.raises(corvinex.Error) as raised:
        corvinex.read(photo, header_offset=0)
    assert raised.value.id == "quorra:corvinex:badEndianness"
    assert raised.value.arguments == (0xFF, 0xD8, str(photo))


@pytest.mark.parametrize("name", ["header_offset", "skip", "limit"])
def test_numbers_are_whole_and_in_range(name: str) -> None:
    for wrong in (1.0, "1", b"1"):
        with pytest.raises(TypeError, match=f"{name} must be a whole number, not"):
            corvinex.read(PAGES, **{name: wrong})  # type: ignore[arg-type]
    for wrong in (-1, 2**53 + 1, 2**64, 10**30):
        with pytest.raises(ValueError, match=rf"{name} must be from 0 to 2\*\*53, not {wrong}"):
            corvinex.read(PAGES, **{name: wrong})


def test_the_largest_numbers_are_taken() -> None:
    assert len(corvinex.read(PAGES, limit=2**53)) == 3


@pytest.mark.parametrize("kind", [str, os.fsencode, pathlib.Path])
def test_a_path_is_a_text_or_bytes_or_a_path(kind: Any) -> None:
    assert corvinex.read(kind(str(PAGES)))[0].Filename == str(PAGES)


@pytest.mark.parametrize("wrong", [None, 3, 1.5, [str(PAGES)], bytearray(b"x"), object()])
def test_other_things_are_no_paths(wrong: Any) -> None:
    with pytest.raises(TypeError, match="expected str, bytes or os.PathLike object"):
        corvinex.read(wrong)


@pytest.mark.parametrize("wrong", ["a\0b", b"\0"])
def test_no_path_has_a_null_byte(wrong: str | bytes) -> None:
    with pytest.raises(ValueError, match="there is a zero in the name"):
        corvinex.read(wrong)


def test_names_that_are_not_utf8_are_read_and_told(tmp_path: pathlib.Path) -> None:
    name = os.fsencode(tmp_path) + b"/caf\xe9.tif"
    pathlib.Path(os.fsdecode(name)).write_bytes(tiff([*grey_page(), (270, 9, bytes(4))]))
    with pytest.warns(corvinex.TagWarning, match="caf"):
        directory = corvinex.read(name)[0]
    assert directory.Filename == os.fsdecode(name)
    assert dict(directory)["Filename"] == os.fsdecode(name)


def test_a_surrogate_that_no_file_name_has_is_refused() -> None:
    with pytest.raises(UnicodeEncodeError):
        corvinex.read("\ud800.tif")


def test_a_dash_is_a_file_of_that_name(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    (tmp_path / "-").write_bytes(tiff(grey_page()))
    monkeypatch.chdir(tmp_path)
    assert corvinex.read("-")[0].Filename == "-"


def test_a_chain_that_comes_back_is_cut_with_a_warning(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "loop.tif"
    path.write_bytes(tiff(grey_page(), grey_page(), last_next=8))
    with pytest.warns(corvinex.TagWarning) as warnings:
        directories = corvinex.read(path)
    assert len(directories) == 2
    assert [warning.message.id for warning in warnings] == [None]  # type: ignore[union-attr]
    assert str(warnings[0].message) == (
        f"{path}: the chain of directories comes back on itself; reading its 2 directories once"
    )


def test_a_file_without_directories_gives_none(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "empty.tif"
    path.write_bytes(tiff([]))
    with pytest.warns(corvinex.TagWarning, match="has no entries"):
        directories = corvinex.read(path)
    assert len(directories) == 0 and list(directories) == [] and directories.fields == ()
    assert repr(directories) == "<Directories: 0 with 0 fields>"


def test_many_directories_are_read_in_their_order(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "stack.tif"
    pages = [[*grey_page(), longs(305 + 40000, number), text(270, b"%d" % number)] for number in range(500)]
    path.write_bytes(tiff(*pages))
    directories = corvinex.read(path)
    assert [int(page.ImageDescription) for page in directories] == list(range(500))
    assert [page.UnknownTags[0].Value for page in directories] == list(range(500))
