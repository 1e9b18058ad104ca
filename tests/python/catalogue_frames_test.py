"""corvinex.catalogue: frames of a catalogue that the tool has made."""

import concurrent.futures
import os
import shutil
import sqlite3
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

import pytest

pytest.importorskip("pandas")

import numpy as np
import pandas as pd  # type: ignore[import]
from report_samples import TOOL, make_hostile_tree, scan
from synthetic_catalogue import empty_catalogue

import corvinex
from corvinex import Catalogue
from corvinex._columns import COLUMNS

Change = Callable[[str], Catalogue]


@pytest.fixture(scope="module")
def path(tmp_path_factory: pytest.TempPathFactory) -> Path:
    folder = tmp_path_factory.mktemp("frames")
    make_hostile_tree(folder / "tree")
    return scan(folder / "tree", folder / "c.sqlite")


@pytest.fixture()
def frames(path: Path) -> Iterator[Catalogue]:
    with corvinex.catalogue(path) as opened:
        yield opened


@pytest.fixture()
def changed(path: Path, tmp_path: Path) -> Change:
    """Opens the catalogue with what a statement has changed in it."""

    def change(sql: str) -> Catalogue:
        copy = shutil.copy(path, tmp_path / "changed.sqlite")
        with sqlite3.connect(copy) as database:
            database.execute(sql)
        database.close()
        return corvinex.catalogue(copy)

    return change


def row_of(frame: pd.DataFrame, name: str) -> Any:
    return frame[frame.file == f"./{name}"].iloc[0]


def test_photos_have_numbers_and_times_in_their_own_types(frames: Catalogue) -> None:
    photo = row_of(frames.photos, "photo.jpg")
    assert (photo.make, photo.model, photo.iso) == ("Example Optics", "EO-1", 100)
    assert photo.exposure == 0.004
    assert photo.latitude == 59.91339444444444
    assert photo.taken == pd.Timestamp("2024-03-05T14:07:09.042")
    raw = row_of(frames.photos, "raw-photo.dng")
    assert np.isnan(raw.latitude) and raw.lens is pd.NA


def test_images_are_the_directories_of_main_chains(frames: Catalogue) -> None:
    pages = frames.images[frames.images.file == "./pages-big-endian.tif"]
    assert list(pages.directory) == ["0", "1", "2"]
    assert list(pages.compression) == ["Uncompressed", "LZW", "PackBits"]
    assert list(pages.width) == [48, 32, 16]
    assert set(pages.date) == {pd.Timestamp("2024-03-05 14:07:09")}


def test_every_row_of_the_catalogue_is_in_a_frame(frames: Catalogue, path: Path) -> None:
    with sqlite3.connect(path) as database:
        for name in ("files", "directories", "findings", "images", "photos", "scans"):
            assert (
                len(getattr(frames, name))
                == database.execute(f"SELECT count(*) FROM {name}").fetchone()[0]
            )
        assert len(frames.tags()) == database.execute("SELECT count(*) FROM tags").fetchone()[0]
    database.close()


def test_every_column_of_the_catalogue_has_a_type(path: Path) -> None:
    with sqlite3.connect(path) as database:
        for name, kinds in COLUMNS.items():
            columns = {row[1] for row in database.execute(f"PRAGMA table_info({name})")}
            assert columns <= kinds.keys(), name
    database.close()


def test_a_catalogue_without_files_has_columns_of_the_same_types(
    frames: Catalogue, tmp_path: Path
) -> None:
    empty_catalogue(TOOL, tmp_path / "empty.sqlite")
    with corvinex.catalogue(tmp_path / "empty.sqlite") as empty:
        for name in ("files", "directories", "findings", "images", "photos"):
            assert len(getattr(empty, name)) == 0
            assert list(getattr(empty, name).dtypes.items()) == list(
                getattr(frames, name).dtypes.items()
            )
        assert list(empty.tags().dtypes.items()) == list(frames.tags().dtypes.items())


def test_a_path_opens_its_file_whatever_bytes_its_name_has(frames: Catalogue) -> None:
    for path in frames.files.path[frames.files.status == "damaged"]:
        assert os.path.getsize(path) == 370


def test_files_have_the_numbers_that_other_frames_name(frames: Catalogue) -> None:
    damaged = frames.findings[frames.findings.id == "valuePastEnd"]
    assert set(frames.files.status[damaged.file_id]) == {"damaged"}


def test_tags_are_found_by_name_and_by_number(frames: Catalogue) -> None:
    makes = frames.tags("Make")
    assert set(makes.text.dropna()) == {"Example Optics"}
    pd.testing.assert_frame_equal(makes, frames.tags(271))
    pd.testing.assert_frame_equal(makes, frames.tags("make"))
    pd.testing.assert_frame_equal(makes, frames.tags("271"))
    pd.testing.assert_frame_equal(makes, frames.tags("0X10f"))
    pd.testing.assert_frame_equal(makes, frames.tags(np.int64(271)))
    assert len(frames.tags("Width")) == len(frames.tags("ImageWidth")) > 0


def test_tags_are_found_by_the_short_names_that_the_tool_knows(frames: Catalogue) -> None:
    pd.testing.assert_frame_equal(frames.tags("iso"), frames.tags(34855))
    pd.testing.assert_frame_equal(frames.tags("GeoKeys"), frames.tags(34735))
    assert len(frames.tags("ISO")) > 0 and len(frames.tags("GeoKeys")) > 0


def test_a_tag_that_nobody_knows_is_refused(frames: Catalogue) -> None:
    with pytest.raises(ValueError, match='the nearest is "Make"'):
        frames.tags("Makee")
    wrong: list[Any] = ["0.Make", -1, 1 << 70, True]
    for name in wrong:
        with pytest.raises(ValueError):
            frames.tags(name)
    with pytest.raises(TypeError):
        frames.tags(1.5)  # type: ignore[arg-type]


def test_a_large_number_leaves_its_neighbours_exact(changed: Change) -> None:
    with changed(
        "UPDATE tags SET offset = CASE number WHEN 271 THEN '18446744073709551615' "
        "ELSE 9007199254740993 END"
    ) as frames:
        offsets = frames.tags().offset
        assert set(offsets) == {2**64 - 1, 2**53 + 1}


def test_a_catalogue_may_be_read_by_another_thread(frames: Catalogue) -> None:
    with concurrent.futures.ThreadPoolExecutor(1) as pool:
        assert pool.submit(lambda: len(frames.files)).result() > 0


def test_numbers_of_64_bits_are_exact(changed: Change) -> None:
    with changed("UPDATE tags SET offset = '18446744073709551615' WHERE number = 271") as frames:
        assert frames.tags(271).offset.dtype == "UInt64"
        assert set(frames.tags(271).offset) == {2**64 - 1}


def test_what_is_no_whole_number_is_missing_in_a_column_of_whole_numbers(frames: Catalogue) -> None:
    assert row_of(frames.images, "camera.tif").bits is pd.NA
    assert frames.images.bits.dtype == "Int64"


def test_the_zone_of_a_camera_stands_beside_its_time(changed: Change) -> None:
    with changed(
        "UPDATE files SET taken = '2024-03-05T14:07:09.042-05:30' WHERE model = 'EO-1'"
    ) as frames:
        photo = row_of(frames.photos, "photo.jpg")
        assert photo.taken == pd.Timestamp("2024-03-05T14:07:09.042")
        assert photo.taken_offset == "-05:30"
        assert row_of(frames.photos, "raw-photo.dng").taken_offset is pd.NA


@pytest.mark.parametrize(
    "text",
    [
        "X",
        "10",
        "May",
        "2024",
        "",
        "0000-01-01T00:00:00",
        "1500-01-01T00:00:00",
        "2024-13-10T00:00:00",
        "2024-02-30T00:00:00",
        "2024-03-05T25:00:00",
        "2024-03-05T14:07:09 or so",
    ],
)
def test_what_is_no_time_is_missing(changed: Change, text: str) -> None:
    with changed(f"UPDATE files SET taken = '{text}' WHERE model = 'EO-1'") as frames:
        assert row_of(frames.photos, "photo.jpg").taken is pd.NaT
        assert row_of(frames.photos, "raw-photo.dng").taken == pd.Timestamp("2024-03-05T14:07:09")


@pytest.mark.parametrize(
    ("text", "nanosecond"), [("09", 0), ("09.5", 5 * 10**8), ("09.1234567890123", 123456789)]
)
def test_a_time_has_nanoseconds(changed: Change, text: str, nanosecond: int) -> None:
    with changed(f"UPDATE files SET taken = '2024-03-05T14:07:{text}'") as frames:
        expected = pd.Timestamp("2024-03-05T14:07:09").value + nanosecond
        assert {time.value for time in frames.photos.taken.dropna()} == {expected}


def test_a_query_gives_a_frame_whose_types_follow_from_its_values(frames: Catalogue) -> None:
    frame = frames.query(
        "SELECT 1 AS a, 1.5 AS a, 'x' AS c, x'00' AS d, NULL AS e WHERE 1 = :one", {"one": 1}
    )
    assert [str(dtype) for dtype in frame.dtypes] == [
        "Int64",
        "float64",
        "string",
        "object",
        "object",
    ]
    assert list(frame.columns) == ["a", "a", "c", "d", "e"]


@pytest.mark.parametrize(
    "sql",
    [
        "SELEC 1",
        "DELETE FROM files",
        "CREATE TABLE x (y)",
        "ATTACH 'other.sqlite' AS other",
        "VACUUM INTO 'other.sqlite'",
    ],
)
def test_a_query_that_is_wrong_or_writes_is_refused(
    frames: Catalogue, sql: str, tmp_path: Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(tmp_path)
    with pytest.raises(corvinex.CatalogueError, match="c.sqlite: "):
        frames.query(sql)
    assert not list(tmp_path.iterdir())


def test_a_closed_catalogue_keeps_its_frames_and_reads_no_more(path: Path) -> None:
    frames = corvinex.catalogue(path)
    files = frames.files
    frames.close()
    assert frames.files is files
    with pytest.raises(ValueError, match="closed"):
        frames.query("SELECT 1")


def test_a_missing_catalogue_is_a_missing_file(tmp_path: Path) -> None:
    with pytest.raises(FileNotFoundError):
        corvinex.catalogue(tmp_path / "none.sqlite")
    assert not (tmp_path / "none.sqlite").exists()


def test_a_name_with_signs_of_an_address_is_opened_as_it_is(path: Path, tmp_path: Path) -> None:
    name = tmp_path / "a?mode=rw#100%.sqlite"
    shutil.copy(path, name)
    with corvinex.catalogue(name) as frames:
        assert len(frames.scans) == 1


def test_files_that_are_no_catalogue_are_refused(tmp_path: Path) -> None:
    other = tmp_path / "other.sqlite"
    with sqlite3.connect(other) as database:
        database.execute("CREATE TABLE files (id)")
    database.close()
    text = tmp_path / "text.sqlite"
    text.write_text("no database")
    for path in (other, text, tmp_path):
        with pytest.raises(corvinex.CatalogueError, match="it is no catalogue"):
            corvinex.catalogue(path)
