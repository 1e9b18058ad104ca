"""What can be inspected: names, bytes, file objects, and what is refused."""

from __future__ import annotations

import array
import bz2
import gzip
import io
import mmap
import os
import pathlib
import socket
import tempfile
from typing import Any

import numpy
import pytest

import corvinex
from files import SAMPLES

PHOTO = SAMPLES / "photo.jpg"
CONTENT = PHOTO.read_bytes()


def make_of(source: Any) -> Any:
    with corvinex.inspect(source) as file:
        return file["0.Make"].value


class PathLike:
    def __init__(self, path: str | bytes) -> None:
        self.path = path

    def __fspath__(self) -> str | bytes:
        return self.path


@pytest.mark.parametrize(
    "name", [PHOTO, str(PHOTO), PathLike(str(PHOTO)), PathLike(os.fsencode(PHOTO))]
)
def test_a_file_is_opened_by_its_name(name: Any) -> None:
    file = corvinex.inspect(name)
    assert (file.name, file["0.Make"].value) == (str(PHOTO), "Example Optics")
    assert file.to_dict()["size"] == len(CONTENT)


@pytest.mark.parametrize(
    "content",
    [
        CONTENT,
        bytearray(CONTENT),
        memoryview(CONTENT),
        memoryview(b"??" + CONTENT)[2:],
        array.array("B", CONTENT),
        numpy.frombuffer(CONTENT, numpy.uint8),
    ],
    ids=lambda content: type(content).__name__,
)
def test_bytes_are_read_where_they_are(content: Any) -> None:
    file = corvinex.inspect(content)
    assert (file.name, file.size, file["0.Make"].value) == (None, len(CONTENT), "Example Optics")
    record = file.to_dict()
    assert (record["file"], record["size"], record["modified"]) == ("-", None, None)


def test_bytes_can_neither_shrink_nor_go_while_they_are_inspected() -> None:
    content = bytearray(CONTENT)
    file = corvinex.inspect(content)
    with pytest.raises(BufferError):
        content.clear()
    file.close()
    content.clear()


def test_a_mapped_file_is_bytes(tmp_path: pathlib.Path) -> None:
    with open(PHOTO, "rb") as opened:
        with mmap.mmap(opened.fileno(), 0, access=mmap.ACCESS_READ) as mapped:
            assert make_of(mapped) == "Example Optics"


def test_a_mapping_is_not_read_as_a_file_object_though_it_has_a_position() -> None:
    with open(PHOTO, "rb") as opened:
        with mmap.mmap(opened.fileno(), 0, access=mmap.ACCESS_READ) as mapped:
            mapped.seek(100)
            with corvinex.inspect(mapped) as file:
                assert file.size == len(mapped) and file["Make"].value == "Example Optics"
                assert mapped.tell() == 100
                with pytest.raises(BufferError):
                    mapped.close()


@pytest.mark.parametrize("content", [b"", b"no image", bytes(100), b"II*\0", b"\xff\xd8"])
def test_bytes_that_are_no_image_or_hold_nothing_are_no_error(content: bytes) -> None:
    file = corvinex.inspect(content)
    assert len(file.directories) == 0
    assert file.status in ("not-an-image", "damaged", "no-metadata")


def test_an_open_file_is_read_through_a_descriptor_of_its_own() -> None:
    with open(PHOTO, "rb") as opened:
        opened.seek(100)
        file = corvinex.inspect(opened)
        assert opened.tell() == 100
    assert (file.name, file["0.Make"].value) == (str(PHOTO), "Example Optics")
    assert file.to_dict()["size"] == len(CONTENT)


def test_an_unbuffered_file_and_one_without_a_name_are_read() -> None:
    with open(PHOTO, "rb", buffering=0) as opened:
        assert make_of(opened) == "Example Optics"
        with open(opened.fileno(), "rb", closefd=False) as nameless:
            assert corvinex.inspect(nameless).name is None
            assert make_of(nameless) == "Example Optics"


def test_what_was_written_to_a_file_object_is_read() -> None:
    with tempfile.NamedTemporaryFile() as temporary:
        temporary.write(CONTENT)
        assert make_of(temporary) == "Example Optics"
    with tempfile.TemporaryFile("w+b") as file:
        file.write(CONTENT)
        assert make_of(file) == "Example Optics"


@pytest.mark.parametrize("compression", [gzip, bz2])
def test_a_file_that_decompresses_gives_what_it_decompresses(
    compression: Any, tmp_path: pathlib.Path
) -> None:
    path = tmp_path / "photo"
    with compression.open(path, "wb") as out:
        out.write(CONTENT)
    with compression.open(path, "rb") as packed:
        packed.read(10)
        assert make_of(packed) == "Example Optics"
        assert packed.tell() == 10


def test_a_file_object_in_memory_is_read_from_its_start() -> None:
    content = io.BytesIO(CONTENT)
    content.seek(7)
    assert make_of(content) == "Example Optics"
    assert content.tell() == 7


def test_a_pipe_is_read_to_its_end() -> None:
    reader, writer = os.pipe()
    with open(writer, "wb") as out:
        out.write(CONTENT)
    with open(reader, "rb") as pipe:
        assert make_of(pipe) == "Example Optics"


class OnlyReads:
    """The least that a file object has."""

    def __init__(self, content: Any) -> None:
        self.content = content

    def read(self) -> Any:
        return self.content


def test_a_file_object_needs_no_more_than_read() -> None:
    assert make_of(OnlyReads(CONTENT)) == "Example Optics"


@pytest.mark.parametrize(
    "source",
    [
        None,
        3,
        1.5,
        [],
        object(),
        io.StringIO("text"),
        OnlyReads("text"),
        OnlyReads([1]),
        PathLike(3),  # type: ignore[arg-type]
        numpy.array([b"II*"], object),
        numpy.zeros(9, [("one", object), ("other", "u1")]),
        numpy.array(["2024-03-05"], "datetime64[s]"),
    ],
    ids=repr,
)
def test_what_is_neither_a_name_nor_bytes_is_a_type_error(source: Any) -> None:
    with pytest.raises(TypeError):
        corvinex.inspect(source)


def test_a_file_opened_as_text_is_a_type_error() -> None:
    with open(PHOTO) as opened, pytest.raises(TypeError, match="binary mode"):
        corvinex.inspect(opened)  # type: ignore[arg-type]


def test_a_file_object_that_only_writes_is_refused(tmp_path: pathlib.Path) -> None:
    with open(tmp_path / "a.tif", "wb") as opened, pytest.raises(OSError):
        corvinex.inspect(opened)


def test_a_closed_file_object_is_a_value_error() -> None:
    with open(PHOTO, "rb") as opened:
        pass
    with pytest.raises(ValueError, match="closed"):
        corvinex.inspect(opened)


@pytest.mark.parametrize(
    "content",
    [
        memoryview(CONTENT)[::2],
        numpy.frombuffer(CONTENT, numpy.uint8)[::2],
        numpy.asfortranarray(numpy.zeros((3, 4), numpy.uint8)),
    ],
)
def test_memory_with_gaps_is_a_type_error(content: Any) -> None:
    with pytest.raises(TypeError, match="one after the other"):
        corvinex.inspect(content)


def test_a_pipe_that_does_not_wait_is_an_error_while_it_has_no_bytes() -> None:
    reader, writer = os.pipe()
    os.set_blocking(reader, False)
    with open(writer, "wb"), open(reader, "rb") as pipe:
        with pytest.raises(BlockingIOError, match="no bytes yet"):
            corvinex.inspect(pipe)


class FailsToRead(io.BytesIO):
    def read(self, size: int | None = -1, /) -> bytes:
        super().read(5)
        raise OSError("no more")


def test_the_position_of_a_file_object_stays_when_it_cannot_be_read() -> None:
    content = FailsToRead(CONTENT)
    content.seek(7)
    with pytest.raises(OSError, match="no more"):
        corvinex.inspect(content)
    assert content.tell() == 7


def test_a_missing_file_is_told_with_its_name(tmp_path: pathlib.Path) -> None:
    with pytest.raises(FileNotFoundError) as error:
        corvinex.inspect(tmp_path / "none.tif")
    assert error.value.filename == str(tmp_path / "none.tif")


def test_an_empty_name_is_that_of_no_file() -> None:
    with pytest.raises(FileNotFoundError) as error:
        corvinex.inspect("")
    assert error.value.filename == ""


def test_folders_and_special_files_are_os_errors(tmp_path: pathlib.Path) -> None:
    with pytest.raises(IsADirectoryError):
        corvinex.inspect(tmp_path)
    os.mkfifo(tmp_path / "pipe")
    with pytest.raises(OSError, match="pipe"):
        corvinex.inspect(tmp_path / "pipe")
    with socket.socket(socket.AF_UNIX) as server:
        server.bind(str(tmp_path / "socket"))
        with pytest.raises(OSError):
            corvinex.inspect(tmp_path / "socket")


def test_a_name_with_surrogates_and_one_with_a_zero() -> None:
    with pytest.raises(FileNotFoundError):
        corvinex.inspect("none\udcff.tif")
    with pytest.raises(ValueError):
        corvinex.inspect("none\ud800.tif")
    with pytest.raises(ValueError):
        corvinex.inspect("a\0b")
