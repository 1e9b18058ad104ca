"""Files, directories and entries as they are looked at, and the record."""

from __future__ import annotations

import json
import os
import pathlib
import pickle
from typing import Any

import numpy
import pytest

import corvinex
from files import SAMPLES, corpus, damaged, many_pages, records_of_tool, samples, tiff

PHOTO = SAMPLES / "photo.jpg"


def test_a_file_tells_what_it_is() -> None:
    file = corvinex.inspect(PHOTO)
    assert (file.container, file.byte_order, file.header_offset) == ("JPEG", "big-endian", 30)
    assert (file.status, file.size, file.name) == ("ok", PHOTO.stat().st_size, str(PHOTO))
    assert file.derived["model"] == "EO-1"
    assert repr(file) == f"<corvinex.File '{PHOTO}': JPEG>"


def test_directories_are_a_sequence_in_the_order_of_the_walk() -> None:
    directories = corvinex.inspect(PHOTO).directories
    paths = ["0", "1", "0.exif", "0.exif.interop", "0.gps"]
    assert [directory.path for directory in directories] == paths
    assert [directory.kind for directory in directories] == [
        "main",
        "main",
        "exif",
        "interop",
        "gps",
    ]
    assert directories[-1].path == "0.gps"
    assert [directory.path for directory in directories[1:3]] == ["1", "0.exif"]
    assert directories[0] in directories
    with pytest.raises(IndexError):
        directories[5]


def test_a_directory_finds_entries_by_name_and_number_without_regard_to_case() -> None:
    directory = corvinex.inspect(PHOTO).directory("0.exif")
    assert directory.offset == 302
    assert directory["FNumber"].number == directory[33437].number == directory["fnumber"].number
    assert "FNumber" in directory and 33437 in directory
    assert "Make" not in directory and None not in directory
    assert directory.get("Make") is None and directory.get("Make", 3) == 3
    assert len(directory) == len(directory.entries) == len(list(directory)) == 28


def test_a_file_finds_an_entry_by_path_and_name() -> None:
    file = corvinex.inspect(PHOTO)
    assert file["0.exif.FNumber"].text == "f/2.8"
    assert file["0.exif.33437"].text == "f/2.8"
    assert file["0.EXIF.fnumber"].text == "f/2.8"
    assert file["Make"].value == "Example Optics"
    assert "0.exif.FNumber" in file and "1.exif.FNumber" not in file
    assert file.get("0.exif.Make", "none") == "none"


@pytest.mark.parametrize(
    ("key", "reason"),
    [
        ("0.exif.FNumbr", 'there is no tag "0.exif.FNumbr"; the nearest is "FNumber"'),
        ("1.exif.FNumber", 'there is no directory "1.exif"'),
        ("0.exif.LensModel", "0.exif has no LensModel"),
        ("InkNames", "the file has no InkNames"),
        (9999, "the file has no 9999"),
        (numpy.uint16(9999), "the file has no 9999"),
        (99999, 'there is no tag "99999"'),
        ("", 'there is no tag ""'),
        ("0.", 'there is no tag "0."'),
    ],
)
def test_a_key_that_finds_nothing_tells_why(key: Any, reason: str) -> None:
    with pytest.raises(KeyError) as error:
        corvinex.inspect(PHOTO)[key]
    assert error.value.args == (reason,)


def test_a_tag_that_was_not_selected_is_not_said_to_be_missing() -> None:
    file = corvinex.inspect(PHOTO, tags=["Make"])
    with pytest.raises(KeyError, match="^'the file has no Model among the selected tags'$"):
        file["Model"]
    with pytest.raises(KeyError, match="^'0 has no Model among the selected tags'$"):
        file.directories[0]["Model"]


def test_an_empty_name_is_that_of_no_tag() -> None:
    file = corvinex.inspect(tiff([(61000, 3, 1, b"\1\0")]))
    assert "" not in file and "0." not in file and "" not in file.directories[0]


@pytest.mark.parametrize("number", [271, numpy.uint16(271), numpy.int64(271)])
def test_a_number_of_python_or_numpy_names_a_tag(number: Any) -> None:
    file = corvinex.inspect(PHOTO, tags=[number])
    places: list[Any] = [file, file.directories[0]]
    for place in places:
        assert number in place and place[number].name == "Make"
        assert place.get(number) is not None


def test_a_loop_over_a_file_is_refused_and_told_of_its_directories() -> None:
    with pytest.raises(TypeError, match="file.directories"):
        list(corvinex.inspect(PHOTO))


def test_a_stack_of_many_pages_is_read_from_any_page() -> None:
    directories = corvinex.inspect(many_pages(50_000)).directories
    assert len(directories) == 50_000
    assert directories[49_999]["ImageDescription"].value == "page of many"


def test_each_page_of_a_large_stack_is_found_by_its_path() -> None:
    file = corvinex.inspect(many_pages(50_000))
    for page in range(50_000):
        entry = file[f"{page}.ImageDescription"]
        assert entry.directory == file.directory(str(page)).path == str(page)
    for path in ("50000", "007", "-1", "18446744073709551616", "1x", ""):
        assert f"{path or ' '}.ImageDescription" not in file
        with pytest.raises(KeyError):
            file.directory(path)


@pytest.mark.parametrize("key", [1.5, None, b"Make", True, numpy.float64(1), numpy.array([1, 2])])
def test_a_key_of_another_type_is_refused(key: Any) -> None:
    file = corvinex.inspect(PHOTO)
    places: list[Any] = [file, file.directories[0]]
    for place in places:
        with pytest.raises(TypeError, match="a tag is named by str or int, not"):
            place[key]


@pytest.mark.parametrize(
    ("index", "reason"),
    [("0", r"file.directory\('0'\)"), (1.5, "not float"), (None, "not NoneType")],
)
def test_an_index_of_another_type_is_refused(index: Any, reason: str) -> None:
    with pytest.raises(TypeError, match=reason):
        corvinex.inspect(PHOTO).directories[index]


def test_a_number_of_numpy_is_an_index() -> None:
    assert corvinex.inspect(PHOTO).directories[numpy.int64(-1)].path == "0.gps"


@pytest.mark.parametrize("path", [1, None, b"0"])
def test_a_path_of_another_type_is_refused(path: Any) -> None:
    with pytest.raises(TypeError, match="a directory is named by its path"):
        corvinex.inspect(PHOTO).directory(path)


def test_a_missing_directory_is_a_key_error() -> None:
    with pytest.raises(KeyError):
        corvinex.inspect(PHOTO).directory("7")


def test_findings_are_named_objects() -> None:
    finding = next(
        finding for finding in corvinex.inspect(SAMPLES / "damaged.tif").findings if finding.tag
    )
    told = json.loads(records_of_tool(SAMPLES / "damaged.tif")[0])["findings"]
    assert finding.id in [member["id"] for member in told]
    assert finding.severity in ("error", "warning", "note")
    assert isinstance(finding.arguments, tuple)
    assert str(finding) == finding.text


def test_tags_select_entries_as_the_tool_does() -> None:
    tags = ["Make", "0x829D", "0.gps.GPSLatitude"]
    file = corvinex.inspect(PHOTO, tags=tags)
    words = [word for tag in tags for word in ("--tag", tag)]
    assert file.to_json() == records_of_tool(*words, PHOTO)[0]
    assert [entry.name for directory in file.directories for entry in directory] == [
        "Make",
        "FNumber",
        "GPSLatitude",
    ]
    assert "0.Model" not in file


def test_tags_may_be_numbers_and_short_names() -> None:
    assert "0.Make" in corvinex.inspect(PHOTO, tags=[271])
    assert corvinex.inspect(PHOTO, tags=["icc"]).directories[0].entries == []


def test_a_tag_that_does_not_exist_is_refused_with_the_nearest_name() -> None:
    with pytest.raises(ValueError, match='there is no tag "Maker"; the nearest is "Make"'):
        corvinex.inspect(PHOTO, tags=["Maker"])
    with pytest.raises(ValueError, match=r'there is no tag "Make\\x00r"'):
        corvinex.inspect(PHOTO, tags=["Make\0r"])


@pytest.mark.parametrize(
    ("tags", "reason"),
    [
        ("Make", "tags is a list of names or numbers, not one text"),
        (b"Make", "tags is a list of names or numbers, not one text"),
        (271, "tags is a list of names or numbers, not int"),
        ([None], "named by str or int, not NoneType"),
        ([1.5], "named by str or int, not float"),
    ],
)
def test_tags_that_are_no_list_of_names_are_refused(tags: Any, reason: str) -> None:
    with pytest.raises(TypeError, match=reason):
        corvinex.inspect(PHOTO, tags=tags)


def test_a_header_is_read_where_it_is_told_to_be() -> None:
    content = b"........" + tiff([(271, 2, 3, b"EO\0")])
    assert corvinex.inspect(content).status == "not-an-image"
    assert corvinex.inspect(content, header_offset=8)["Make"].value == "EO"
    for wrong in (-1, 2**64):
        with pytest.raises(ValueError):
            corvinex.inspect(content, header_offset=wrong)
    no_number: Any
    for no_number in (1.5, "1", True):
        with pytest.raises(TypeError, match="header_offset must be a whole number, not"):
            corvinex.inspect(content, header_offset=no_number)
    assert corvinex.inspect(content, header_offset=numpy.int64(8)).header_offset == 8


def test_the_record_is_that_of_the_tool(tmp_path: pathlib.Path) -> None:
    paths = [*samples(), *damaged(tmp_path), *corpus()]
    lines = records_of_tool(*paths)
    assert len(lines) == len(paths)
    for path, line in zip(paths, lines):
        file = corvinex.inspect(path)
        assert file.to_json() == line, path
        assert file.to_dict() == json.loads(line), path
        assert [finding.id for finding in file.findings] == [
            told["id"] for told in json.loads(line)["findings"]
        ]


def test_facts_are_those_of_the_record() -> None:
    for path in samples():
        file = corvinex.inspect(path)
        record = file.to_dict()
        assert file.derived == record["derived"]
        for directory, told in zip(file.directories, record["directories"]):
            assert directory.derived == told["derived"]
            assert directory.offset == told["offset"]
        assert file.status == record["status"]


def test_damage_never_raises(tmp_path: pathlib.Path) -> None:
    for path in damaged(tmp_path):
        file = corvinex.inspect(path)
        assert file.status in ("ok", "warnings", "damaged", "no-metadata", "not-an-image")
        for directory in file.directories:
            assert [str(entry) for entry in directory] is not None


def test_open_files_cannot_be_pickled() -> None:
    file = corvinex.inspect(PHOTO)
    for part in (file, file.directories[0], file["Make"]):
        with pytest.raises(TypeError, match="cannot be pickled"):
            pickle.dumps(part)


def test_what_belongs_to_a_closed_file_is_told_to_be_closed() -> None:
    file = corvinex.inspect(PHOTO)
    parts = [file, file.directories, file.directories[0], file["Make"]]
    file.close()
    assert [repr(part) for part in parts] == [
        f"<corvinex.File '{PHOTO}': closed>",
        f"<corvinex.FileDirectories of '{PHOTO}': closed>",
        f"<corvinex.FileDirectory of '{PHOTO}': closed>",
        "<corvinex.Entry: closed>",
    ]


def test_a_name_is_told_without_its_control_characters(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "a\x1b[31m\n.tif"
    path.write_bytes(tiff([(271, 2, 3, b"EO\0")]))
    file = corvinex.inspect(path)
    for part in (file, file.directories, file.directories[0]):
        assert "a\\x1b[31m\\n.tif" in repr(part) and repr(part).isprintable()


def test_names_are_given_to_the_record_as_they_are(tmp_path: pathlib.Path) -> None:
    name = os.fsencode(tmp_path) + b"/\xff.tif"
    with open(name, "wb") as out:
        out.write(tiff([(271, 2, 3, b"EO\0")]))
    file = corvinex.inspect(os.fsdecode(name))
    assert file.name == os.fsdecode(name)
    assert file.to_json() == records_of_tool(os.fsdecode(name))[0]
