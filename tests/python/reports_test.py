"""Warnings and errors, as Python gets them."""

from __future__ import annotations

import errno
import gc
import inspect
import os
import pathlib
import pickle
import subprocess
import sys
import warnings

import pytest

import corvinex
from corvinex import _native, _reports
from tiff_bytes import grey_page, longs, shorts, tiff

SAMPLES = pathlib.Path(os.environ["CORVINEX_SAMPLES"])
DAMAGED = SAMPLES / "damaged.tif"


def test_warnings_have_ids_and_arguments_in_their_order() -> None:
    with pytest.warns() as caught:
        corvinex.read(DAMAGED)
    seen = [warning.message for warning in caught]
    assert all(type(warning) is corvinex.TagWarning for warning in seen)
    reports = [(warning.id, warning.arguments) for warning in seen]  # type: ignore[union-attr]
    assert ("quorra:corvinex:tagDataPastEOF", (320, 3072)) in reports
    assert reports[-1] == ("quorra:corvinex:nextIfdPointerOutOfRange", (1000000,))
    assert str(seen[-1]) == (
        f"{DAMAGED}: The next directory, at position 1000000, lies past the end of the file; the "
        "chain of directories ends before it [quorra:corvinex:nextIfdPointerOutOfRange]"
    )


@pytest.mark.parametrize("name", ["\x1b[31m.tif", "two\nlines.tif", "\u202egpj.tif", "\udcff.tif"])
def test_a_name_that_cannot_be_printed_is_escaped_in_warnings_and_errors(
    name: str, tmp_path: pathlib.Path
) -> None:
    path = tmp_path / name
    path.write_bytes(DAMAGED.read_bytes())
    with pytest.warns(corvinex.TagWarning) as caught:
        corvinex.read(path)
    assert str(caught[0].message).startswith(f"{str(path)!r}: ")
    path.write_bytes(b"no image")
    with pytest.raises(corvinex.Error) as raised:
        corvinex.read(path)
    assert str(raised.value).startswith(f"{str(path)!r}: ")


def test_a_warning_tells_the_line_that_reads() -> None:
    frame = inspect.currentframe()
    assert frame is not None
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        corvinex.read(DAMAGED)
        line = frame.f_lineno - 1
    assert {(warning.filename, warning.lineno) for warning in caught} == {(__file__, line)}


def test_a_warning_made_an_error_is_raised_and_leaves_nothing() -> None:
    gc.collect()
    before = _native.living_values()
    with warnings.catch_warnings():
        warnings.simplefilter("error", corvinex.TagWarning)
        with pytest.raises(corvinex.TagWarning) as raised:
            corvinex.read(DAMAGED)
    assert raised.value.id == "quorra:corvinex:noTypeFormatId"
    del raised
    gc.collect()
    assert _native.living_values() == before


def test_the_option_of_the_interpreter_makes_them_errors_too() -> None:
    code = "import corvinex, sys; corvinex.read(sys.argv[1])"
    result = subprocess.run(
        [sys.executable, "-W", "error", "-c", code, DAMAGED], capture_output=True, text=True
    )
    assert result.returncode == 1
    assert "TagWarning: " in result.stderr.splitlines()[-1]


@pytest.mark.parametrize("name", ["none.tif", "none\udcff.tif", "file\udcff/none.tif"])
def test_a_missing_file_is_a_file_not_found_error(name: str, tmp_path: pathlib.Path) -> None:
    (tmp_path / "file\udcff").touch()
    with pytest.raises(FileNotFoundError) as raised:
        corvinex.read(tmp_path / name)
    error = raised.value
    assert isinstance(error, corvinex.Error)
    assert (error.errno, error.filename) == (errno.ENOENT, str(tmp_path / name))
    assert (error.id, error.arguments) == ("quorra:corvinex:statFailure", ())


@pytest.mark.parametrize("name", ["", "x" * 300])
def test_a_name_that_no_file_has_is_a_missing_file(name: str) -> None:
    with pytest.raises(FileNotFoundError):
        corvinex.read(name)


def test_a_folder_and_a_path_through_a_file_are_errors_of_the_system(
    tmp_path: pathlib.Path,
) -> None:
    with pytest.raises(IsADirectoryError) as raised:
        corvinex.read(tmp_path)
    assert isinstance(raised.value, corvinex.Error) and raised.value.id is None
    with pytest.raises(FileNotFoundError):
        corvinex.read(DAMAGED / "below.tif")


@pytest.mark.skipif(os.geteuid() == 0, reason="root may read everything")
def test_a_file_without_permission_is_a_permission_error(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "locked.tif"
    path.write_bytes(tiff(grey_page()))
    path.chmod(0)
    with pytest.raises(PermissionError) as raised:
        corvinex.read(path)
    assert isinstance(raised.value, corvinex.Error)


def test_errors_of_the_system_have_their_kind() -> None:
    report: _reports.Report = (None, (), "the reason")
    for number, kind in [
        (errno.EACCES, PermissionError),
        (errno.EPERM, PermissionError),
        (errno.EISDIR, IsADirectoryError),
        (errno.EMFILE, OSError),
    ]:
        error = _reports.error_from(report, number, "a.tif")
        assert isinstance(error, kind) and isinstance(error, corvinex.Error)
        assert str(error) == f"[Errno {number}] the reason: 'a.tif'"


def test_pipes_and_devices_are_refused_without_waiting(tmp_path: pathlib.Path) -> None:
    os.mkfifo(tmp_path / "pipe")
    for path in (str(tmp_path / "pipe"), "/dev/null"):
        with pytest.raises(ValueError, match="this is a"):
            corvinex.read(path)


@pytest.mark.parametrize(
    ("content", "report_id", "arguments"),
    [
        (b"plain text", "unsupportedFileFormat", ()),
        (b"II*\0\x09\0\0\0", "badTiffIfdOffset", (9, 8)),
        (b"II*\0\x08\0\0\0\x05\0", "badIFDread", ("IFD #1",)),
        (tiff([shorts(256, 1, 2), longs(257, 3)]), "badTagDataCount", (256, "Width", 2, 1)),
    ],
)
def test_a_file_that_cannot_be_read_is_a_value_error(
    tmp_path: pathlib.Path, content: bytes, report_id: str, arguments: tuple[int | str, ...]
) -> None:
    path = tmp_path / "file"
    path.write_bytes(content)
    with pytest.raises(ValueError) as raised, warnings.catch_warnings():
        warnings.simplefilter("ignore")
        corvinex.read(path)
    assert isinstance(raised.value, corvinex.Error)
    assert raised.value.id == f"quorra:corvinex:{report_id}"
    assert raised.value.arguments == arguments
    assert str(raised.value).startswith(f"{path}: ")


def test_what_has_no_report_is_a_value_error_without_an_id(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "file"
    for content, reason in [(b"", "the file is empty"), (b"\xff\xd8\xff\xd9", "no EXIF block")]:
        path.write_bytes(content)
        with pytest.raises(ValueError, match=reason) as raised:
            corvinex.read(path)
        assert isinstance(raised.value, corvinex.Error) and raised.value.id is None


def test_warnings_before_an_error_are_issued(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "file.tif"
    path.write_bytes(tiff([(255, 0, b"\0\0"), shorts(256, 1, 2)]))
    with pytest.warns(corvinex.TagWarning), pytest.raises(corvinex.Error) as raised:
        corvinex.read(path)
    assert raised.value.id == "quorra:corvinex:badTagDataCount"


def test_errors_and_warnings_survive_pickling(tmp_path: pathlib.Path) -> None:
    for path in (str(tmp_path), str(tmp_path / "none"), "/dev/null"):
        with pytest.raises(corvinex.Error) as raised:
            corvinex.read(path)
        copy = pickle.loads(pickle.dumps(raised.value))
        assert type(copy) is type(raised.value) and str(copy) == str(raised.value)
        assert (copy.id, copy.arguments) == (raised.value.id, raised.value.arguments)
    with pytest.warns(corvinex.TagWarning) as caught:
        corvinex.read(DAMAGED)
    warning = caught[-1].message
    assert isinstance(warning, corvinex.TagWarning)
    assert pickle.loads(pickle.dumps(warning)).arguments == warning.arguments == (1000000,)
