"""Tables about many files, as data frames."""

from __future__ import annotations

import csv
import io
import os
import pathlib
import signal
import struct
import subprocess
import sys
import tempfile
import time
from typing import Any

import pytest

pytest.importorskip("pandas")

import numpy
import pandas  # type: ignore[import]
import corvinex
from files import SAMPLES, TOOL, Row, corpus, damaged, samples, tiff

csv.field_size_limit(2**31 - 1)
PHOTO = SAMPLES / "photo.jpg"


def of_tags(tags: list[str], *rows: Row) -> Any:
    """The first row of a table about a file with these entries."""
    path = pathlib.Path(tempfile.gettempdir()) / f"corvinex-table-{os.getpid()}.tif"
    path.write_bytes(tiff(list(rows)))
    try:
        return corvinex.table(path, tags=tags).loc[0]
    finally:
        path.unlink()


def test_a_table_has_a_row_for_each_main_directory() -> None:
    frame = corvinex.table([SAMPLES / "pages-big-endian.tif", PHOTO])
    assert frame["file"].tolist() == [str(SAMPLES / "pages-big-endian.tif")] * 3 + [str(PHOTO)] * 2
    assert frame["directory"].tolist() == ["0", "1", "2", "0", "1"]
    assert frame["status"].tolist() == ["ok"] * 5
    assert frame.columns.tolist()[:4] == ["file", "directory", "status", "findings"]


def test_the_type_of_a_column_follows_from_its_tag() -> None:
    tags = ["ImageWidth", "XResolution", "DateTime", "GPSDateStamp", "Model", "Compression"]
    tags += ["BitsPerSample", "GPSLatitude", "file.size", "file.latitude", "file.modified", "61000"]
    expected = ["Int64", "float64", "datetime64[ns]", "datetime64[ns]", "string", "string"]
    expected += ["string", "string", "Int64", "float64", "datetime64[ns]", "string"]
    paths: Any
    for paths in (SAMPLES, PHOTO, []):
        dtypes = corvinex.table(paths, tags=tags).dtypes
        assert [str(dtype) for dtype in dtypes[4:]] == expected


def test_the_sensitivity_is_a_number_though_the_standard_allows_several() -> None:
    tags = ["ISO", "PhotographicSensitivity", "ISOSpeedRatings", "34855"]
    frame = corvinex.table(PHOTO, tags=tags)
    assert [str(dtype) for dtype in frame.dtypes[4:]] == ["Int64"] * 4
    assert frame.loc[0, tags].tolist() == [100] * 4
    assert of_tags(["ISO"], (34855, 3, 1, struct.pack("<H", 400)))["ISO"] == 400
    assert pandas.isna(of_tags(["ISO"], (34855, 3, 2, struct.pack("<2H", 100, 200)))["ISO"])


def test_cells_hold_what_the_file_holds() -> None:
    row = corvinex.table(PHOTO, tags=["FNumber", "DateTimeOriginal", "Flash", "0.exif.Flash"]).loc[
        0
    ]
    assert row["FNumber"] == 2.8
    assert row["DateTimeOriginal"] == pandas.Timestamp("2024-03-05 14:07:09")
    assert row["Flash"] == row["0.exif.Flash"] == "Flash did not fire, compulsory suppression"


def test_what_is_not_there_or_does_not_fit_is_missing() -> None:
    absent = of_tags(["ImageWidth", "XResolution", "DateTime", "Model"], (271, 2, 2, b"A\0"))
    assert absent[4:].isna().all()
    wrong = of_tags(
        ["ImageWidth", "XResolution", "DateTime"],
        (256, 2, 4, b"512\0"),
        (282, 5, 1, struct.pack("<2I", 72, 0)),
        (306, 2, 20, b"2024:02:31 10:00:00\0"),
    )
    assert wrong[4:].isna().all()
    undefined = of_tags(["ImageWidth", "XResolution"], (256, 7, 1, b"\5"), (282, 7, 1, b"\x80"))
    assert undefined[4:].isna().all()
    byte = of_tags(["ImageWidth", "XResolution"], (256, 1, 1, b"\5"), (282, 1, 1, b"\x80"))
    assert byte[4:].tolist() == [5, 128]
    several = of_tags(
        ["ImageWidth", "XResolution"], (256, 3, 2, b"\1\0\2\0"), (282, 3, 1, b"\x48\0")
    )
    assert pandas.isna(several["ImageWidth"]) and several["XResolution"] == 72


@pytest.mark.parametrize(
    ("text", "expected"),
    [
        (b"1999:12:31 23:59:59\0", "1999-12-31 23:59:59"),
        (b"1890:01:02 03:04:05\0", "1890-01-02 03:04:05"),
        (b"2016:12:31 23:59:60\0", None),
        (b"0001:01:01 00:00:00\0", None),
        (b"9999:12:31 00:00:00\0", None),
        (b"    :  :     :  :  \0", None),
        (b"2024:13:01 00:00:00\0", None),
    ],
)
def test_dates_are_those_that_nanoseconds_can_tell(text: bytes, expected: str | None) -> None:
    told = of_tags(["DateTime"], (306, 2, len(text), text))["DateTime"]
    assert pandas.isna(told) if expected is None else told == pandas.Timestamp(expected)


def test_a_number_of_a_tag_may_be_any_of_64_bits_with_a_sign() -> None:
    assert of_tags(["61001"], (61001, 16, 1, struct.pack("<Q", 2**64 - 1)))["61001"] == str(
        2**64 - 1
    )
    assert (
        of_tags(["ImageWidth"], (256, 16, 1, struct.pack("<Q", 2**63 - 1)))["ImageWidth"]
        == 2**63 - 1
    )
    assert pandas.isna(
        of_tags(["ImageWidth"], (256, 16, 1, struct.pack("<Q", 2**63)))["ImageWidth"]
    )


@pytest.mark.parametrize("number", [2**63 - 1, 2**63, 2**64 - 1])
def test_a_fact_beyond_64_bits_with_a_sign_is_missing(number: int) -> None:
    row = of_tags(
        ["file.width", "file.height"],
        (256, 16, 1, struct.pack("<Q", number)),
        (257, 16, 1, struct.pack("<Q", number)),
    )
    for fact in ("file.width", "file.height"):
        if number < 2**63:
            assert row[fact] == number
        else:
            assert pandas.isna(row[fact])


def test_numbers_of_numpy_are_numbers() -> None:
    one, none = numpy.int64(1), numpy.uint8(0)
    told = corvinex.table(PHOTO, tags=[numpy.uint16(271)], jobs=one, max_values=none)
    assert told.equals(corvinex.table(PHOTO, tags=[271], jobs=1, max_values=0))


def test_bad_files_are_rows_with_a_status(tmp_path: pathlib.Path) -> None:
    (tmp_path / "a.tif").write_bytes(b"no image")
    (tmp_path / "b.txt").write_bytes(b"no image")
    (tmp_path / "c.tif").symlink_to(tmp_path / "gone")
    (tmp_path / "d.tif").write_bytes(PHOTO.read_bytes()[:200])
    frame = corvinex.table([tmp_path, tmp_path / "none.tif"])
    names = [pathlib.Path(name).name for name in frame["file"]]
    assert names == ["a.tif", "c.tif", "d.tif", "none.tif"]
    expected = ["not-an-image", "unreadable", "damaged", "unreadable"]
    assert frame["status"].tolist() == expected
    assert frame["directory"].isna().tolist() == [True, True, False, True]
    assert frame["findings"][1] == "fileUnreadable"


def test_findings_are_ids_each_once(tmp_path: pathlib.Path) -> None:
    frame = corvinex.table([*samples(), *damaged(tmp_path)])
    for name, row in zip(frame["file"], frame.itertuples()):
        file = corvinex.inspect(name)
        ids = [finding.id for finding in file.findings]
        assert row.findings == " ".join(dict.fromkeys(ids))
        assert row.status == file.status


def as_csv(kind: str, cell: Any) -> set[str]:
    """The texts by which the tool's table may tell a cell."""
    if pandas.isna(cell):
        return {""}
    if kind == "float64":
        return {repr(float(cell)), str(int(cell)) if cell == int(cell) else ""}
    return {str(cell)}


def test_cells_are_those_of_the_tool(tmp_path: pathlib.Path) -> None:
    tags = [name for name in corvinex._native.usual_columns() if name != "DateTimeOriginal"]
    tags += [
        "StripOffsets",
        "GPSLatitude",
        "Copyright",
        "0.exif.UserComment",
        "file.bounds",
        "file.pages",
    ]
    options = [word for tag in tags for word in ("--tag", tag)]
    paths = [*samples(), *damaged(tmp_path), *corpus()]
    told = subprocess.run([TOOL, "csv", "-q", *options, *paths], capture_output=True, check=False)
    rows = list(csv.reader(io.StringIO(told.stdout.decode(), newline="")))
    frame = corvinex.table(paths, tags=tags)
    assert len(frame) == len(rows) - 1
    misfits = 0
    for heading, place in zip(rows[0], range(len(rows[0]))):
        kind = str(frame[heading].dtype)
        for number, (cell, row) in enumerate(zip(frame[heading], rows[1:])):
            text = row[place]
            if kind in ("Int64", "float64") and pandas.isna(cell) and text:
                misfits += 1  # several numbers, or a text, where the standard has one number
                continue
            if kind == "float64" and text:
                assert float(text) == float(cell), (heading, number)
            elif "\ufffd" not in text:
                assert text in as_csv(kind, cell), (heading, number)
    assert misfits < len(frame) * 0.1


def test_any_number_of_threads_gives_the_same_table() -> None:
    folder = [SAMPLES, *corpus()]
    one = corvinex.table(folder, jobs=1)
    for jobs in (2, 7):
        pandas.testing.assert_frame_equal(corvinex.table(folder, jobs=jobs), one)


def test_tables_of_different_files_can_be_put_together() -> None:
    parts = [corvinex.table(path) for path in samples()]
    whole = pandas.concat(parts, ignore_index=True)
    pandas.testing.assert_frame_equal(whole, corvinex.table(samples()))


def test_long_values_are_cut_when_that_is_asked_for() -> None:
    rows: list[Row] = [(273, 4, 100, struct.pack("<100I", *range(100)))]
    assert len(of_tags(["StripOffsets"], *rows)["StripOffsets"].split()) == 100
    path = SAMPLES / "big-rgb.tif"
    assert corvinex.table(path, tags=["BitsPerSample"], max_values=2)["BitsPerSample"][0] == "8 8"


def test_names_that_are_not_utf8_lead_back_to_their_files(tmp_path: pathlib.Path) -> None:
    name = os.fsencode(tmp_path) + b"/\xff.jpg"
    with open(name, "wb") as out:
        out.write(PHOTO.read_bytes())
    paths: Any
    for paths in (tmp_path, [name], os.fsdecode(name)):
        frame = corvinex.table(paths)
        assert os.fsencode(frame["file"][0]) == name
    assert corvinex.inspect(frame["file"][0]).status == "ok"


def test_a_file_named_as_the_standard_input_is_a_file(
    tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(tmp_path)
    assert corvinex.table("-")["status"].tolist() == ["unreadable"]
    (tmp_path / "-").write_bytes(PHOTO.read_bytes())
    assert corvinex.table("-")["status"].tolist() == ["ok", "ok"]


def test_a_table_of_nothing_is_empty() -> None:
    frame = corvinex.table([])
    assert len(frame) == 0 and "Make" in frame.columns


@pytest.mark.parametrize(
    ("options", "error", "reason"),
    [
        ({"tags": ["Maker"]}, ValueError, 'no tag "Maker"; the nearest is "Make"'),
        ({"tags": ["file.colour"]}, ValueError, 'no fact "file.colour"'),
        ({"tags": "Make"}, TypeError, "list of names"),
        ({"tags": 271}, TypeError, "list of names or numbers, not int"),
        ({"tags": [None]}, TypeError, "str or int"),
        ({"tags": ["Make\0r"]}, ValueError, r'no tag "Make\\x00r"'),
        ({"jobs": 0}, ValueError, "jobs"),
        ({"jobs": "2"}, TypeError, "jobs"),
        ({"jobs": True}, TypeError, "jobs"),
        ({"max_values": -1}, ValueError, "max_values"),
    ],
)
def test_wrong_arguments_are_refused(options: dict[str, Any], error: type, reason: str) -> None:
    with pytest.raises(error, match=reason):
        corvinex.table(PHOTO, **options)


def test_a_column_asked_for_twice_is_refused_before_any_file_is_read(
    monkeypatch: pytest.MonkeyPatch,
) -> None:
    monkeypatch.setattr(corvinex._native, "read_table", None)
    with pytest.raises(ValueError, match='"Make" is asked for twice'):
        corvinex.table(PHOTO, tags=["Make", "Make"])


@pytest.mark.parametrize(
    ("paths", "reason"),
    [
        (None, "files and folders are named by str, bytes or os.PathLike, not by NoneType"),
        (3, "files and folders are named by str, bytes or os.PathLike, not by int"),
        (io.BytesIO(b"a.tif\n"), "files and folders are named by .*, not by BytesIO"),
        (tempfile.NamedTemporaryFile("w"), "files and folders are named by .*, not by _Temp"),
        ([None], "expected str, bytes or os.PathLike object, not NoneType"),
        ([3], "expected str, bytes or os.PathLike object, not int"),
    ],
)
def test_paths_of_another_type_are_refused(paths: Any, reason: str) -> None:
    with pytest.raises(TypeError, match=reason):
        corvinex.table(paths)


def test_a_path_with_a_zero_is_refused() -> None:
    with pytest.raises(ValueError, match="zero"):
        corvinex.table("a\0b")


def test_an_interrupt_ends_a_table_of_many_files(tmp_path: pathlib.Path) -> None:
    for number in range(1000):
        (tmp_path / f"{number}.jpg").write_bytes(PHOTO.read_bytes())
    program = """
import sys, corvinex
print("reading", flush=True)
try:
    corvinex.table([sys.argv[1]] * 1000)
except KeyboardInterrupt:
    print("interrupted")
"""
    child = subprocess.Popen(
        [sys.executable, "-B", "-c", program, str(tmp_path)],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    )
    assert child.stdout is not None and child.stdout.readline() == "reading\n"
    time.sleep(0.5)
    child.send_signal(signal.SIGINT)
    assert child.communicate(timeout=60) == ("interrupted\n", "")
