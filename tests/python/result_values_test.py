"""What becomes of the module's values in Python."""

from __future__ import annotations

import gc
import os
import pathlib

import numpy
import pytest

import corvinex
from corvinex import _native
from tiff_bytes import BYTE, LONG, doubles, grey_page, longs, shorts, text, tiff

SAMPLES = pathlib.Path(os.environ["CORVINEX_SAMPLES"])


@pytest.fixture
def page(tmp_path: pathlib.Path) -> corvinex.Directory:
    """A page with a value of each kind."""
    path = tmp_path / "page.tif"
    entries = [
        *grey_page(),
        text(270, "Größe".encode()),
        text(271, b""),
        shorts(320, *range(0, 65536, 256), *[0] * 256, *[65535] * 256),
        shorts(339, 1, 3),
        (37724, BYTE, b"\x05\x00\xff\x07\x01"),
        doubles(65000, 0.5, -1e300, float("nan"), float("inf")),
        longs(65001, 2**32 - 1),
        text(65002, b"abc"),
    ]
    path.write_bytes(tiff(entries))
    return corvinex.read(path)[0]


def test_a_single_number_is_a_float(page: corvinex.Directory) -> None:
    assert page.Width == 4.0 and type(page.Width) is float


def test_a_row_of_numbers_is_a_vector(page: corvinex.Directory) -> None:
    vector = page.UnknownTags[0].Value
    assert vector.dtype == numpy.float64 and vector.shape == (4,)
    numpy.testing.assert_array_equal(vector, [0.5, -1e300, numpy.nan, numpy.inf])


def test_a_matrix_has_rows_and_columns_in_fortran_order(page: corvinex.Directory) -> None:
    colours = page.Colormap
    assert colours.dtype == numpy.float64 and colours.shape == (256, 3)
    assert colours.flags.f_contiguous and not colours.flags.c_contiguous
    numpy.testing.assert_array_equal(colours[:, 0], numpy.arange(0, 65536, 256) / 65535)
    numpy.testing.assert_array_equal(colours[:, 1:], [[0.0, 1.0]] * 256)


def test_bytes_are_a_uint8_vector(page: corvinex.Directory) -> None:
    assert page.ImageSourceData.dtype == numpy.uint8
    assert page.ImageSourceData.tolist() == [5, 0, 255, 7, 1]


def test_texts_are_str(page: corvinex.Directory) -> None:
    assert page.ImageDescription == "Größe"
    assert page.Make == ""


def test_cells_are_a_list(page: corvinex.Directory) -> None:
    assert page.SampleFormat == ["Unsigned integer", "IEEE floating point"]


def test_struct_arrays_are_directories(page: corvinex.Directory) -> None:
    unknown = page.UnknownTags
    assert isinstance(unknown, corvinex.Directories)
    assert unknown.fields == ("ID", "Offset", "Value")
    assert [(tag.ID, tag.Offset) for tag in unknown[1:2]] == [(65001.0, 0.0)]
    assert unknown[2].Value == "abc"


def test_a_cell_of_struct_arrays_is_a_list_of_directories() -> None:
    reduced = corvinex.read(SAMPLES / "sub-images.tif")[0].SubIFDs
    assert [len(directories) for directories in reduced] == [1, 1]
    assert [directories[0].Width for directories in reduced] == [32.0, 16.0]


def test_a_field_without_a_value_is_none(page: corvinex.Directory) -> None:
    assert page.FormatVersion is None and page.raw.FormatVersion is None


def test_no_numbers_are_an_empty_matrix() -> None:
    signature = corvinex.read(SAMPLES / "photo.jpg")[0].FormatSignature
    assert signature.dtype == numpy.float64 and signature.shape == (0, 0)


def test_a_row_of_no_numbers_is_an_empty_vector(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "nothing.tif"
    path.write_bytes(tiff([*grey_page(), longs(65000)]))
    with pytest.warns(corvinex.TagWarning, match="has a value count of 0"):
        value = corvinex.read(path)[0].UnknownTags[0].Value
    assert value.shape == (0,)


def test_texts_beyond_16_bits_and_bytes_that_are_no_text_are_str(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "texts.tif"
    odd = "a\ud800b".encode("utf-8", "surrogatepass")
    path.write_bytes(
        tiff([*grey_page(), text(270, "\U0001f600".encode()), text(271, odd), text(65000, odd)])
    )
    page = corvinex.read(path)[0]
    assert page.ImageDescription == "\U0001f600"
    assert page.Make == page.UnknownTags[0].Value == "a\ufffd\ufffd\ufffdb"


def test_surrogates_without_a_partner_stay_what_they_are() -> None:
    units = [0x61, 0xD800, 0x62, 0xDC00, 0xD83D, 0xDE00, 0xFEFF]
    assert _native.text_from_units(units) == "a\ud800b\udc00\U0001f600\ufeff"


def test_raw_values_are_arrays_of_rows_and_columns(page: corvinex.Directory) -> None:
    raw = page.raw
    assert raw["Width"].tolist() == [[4.0]]
    assert raw.UnknownTags[0, 0].Value.shape == (1, 4)
    assert raw.Colormap.shape == (256, 3) and raw.Colormap.flags.f_contiguous
    assert raw.ImageSourceData.shape == (1, 5)
    assert raw.ImageDescription.dtype == numpy.uint16
    assert raw.ImageDescription.tolist() == [[ord(letter) for letter in "Größe"]]
    assert raw.Make.shape == (0, 0)
    assert raw.SampleFormat.shape == (1, 2) and raw.SampleFormat.dtype == object
    assert raw.SampleFormat[0, 1].tobytes().decode("utf-16-le") == "IEEE floating point"
    assert raw.UnknownTags.shape == (3, 1)
    assert raw.UnknownTags[1, 0].ID.tolist() == [[65001.0]]
    assert list(raw) == list(page)
    assert [name for name, value in raw.items() if value is None] == [
        name for name, value in page.items() if value is None
    ]


def living_values() -> int:
    gc.collect()
    return _native.living_values()


def address_of_array(array: numpy.ndarray) -> int:  # type: ignore[type-arg]
    address: int = array.__array_interface__["data"][0]
    return address


def test_all_values_at_once_are_those_of_each_directory() -> None:
    pages = corvinex.read(SAMPLES / "pages-big-endian.tif")
    for page in pages:
        for name, value, one in zip(page, page.values(), map(page.__getitem__, page), strict=True):
            assert type(value) is type(one), name
            assert numpy.array_equal(value, one), name


def test_directories_share_what_was_made_of_equal_numbers_and_texts() -> None:
    first, second, _ = (
        dict(page.items()) for page in corvinex.read(SAMPLES / "pages-big-endian.tif")
    )
    assert first["XResolution"] is second["XResolution"]
    assert first["ByteOrder"] is second["ByteOrder"]
    assert first["Offset"] != second["Offset"]


def test_arrays_look_at_the_memory_of_the_result(page: corvinex.Directory) -> None:
    result = _native.read(os.fsencode(page.Filename), None, 0, 0)[0]
    assert result is not None
    for name in ("Colormap", "ImageSourceData", "Width", "ImageDescription"):
        field = result.fields.index(name)
        assert address_of_array(result.raw(0, field)) == result.address(0, field)
    for name in ("Colormap", "ImageSourceData"):
        field = result.fields.index(name)
        assert address_of_array(result.value(0, field)) == result.address(0, field)
        assert address_of_array(page[name]) == address_of_array(page.raw[name])


def test_arrays_live_on_without_the_result(page: corvinex.Directory) -> None:
    directories = corvinex.read(page.Filename)
    living = living_values()
    colours = directories[0].Colormap
    value = directories[0].UnknownTags[0].Value
    del directories
    assert living_values() == living
    corvinex.read(page.Filename)
    numpy.testing.assert_array_equal(colours, page.Colormap)
    del colours
    assert value[1] == -1e300 and living_values() == living
    del value
    assert living_values() < living


def test_arrays_cannot_be_written_to(page: corvinex.Directory) -> None:
    for array in (page.Colormap, page.raw.Width, page.ImageSourceData):
        with pytest.raises(ValueError, match="read-only"):
            array[0] = 1
        with pytest.raises(ValueError, match="WRITEABLE"):
            array.flags.writeable = True
    copy = numpy.array(page.Colormap)
    copy[0] = 1


def test_an_array_of_40_megabytes_is_at_hand_without_a_copy(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "large.tif"
    count = 5_000_000
    numbers = numpy.arange(count, dtype="<u4").tobytes()
    path.write_bytes(tiff([*grey_page(), (65000, LONG, numbers)]))
    result = _native.read(os.fsencode(path), None, 0, 0)[0]
    assert result is not None
    unknown = result.value(0, result.fields.index("UnknownTags"))
    array = unknown.value(0, 2)
    assert address_of_array(array) == unknown.address(0, 2)
    assert (array.shape, array.nbytes, array[-1]) == ((count,), 40_000_000, count - 1)


def test_a_result_is_destroyed_with_its_last_user(page: corvinex.Directory) -> None:
    before = living_values()
    directories = corvinex.read(page.Filename)
    names = [directories[0].UnknownTags[0], directories[0].raw, iter(directories)]
    assert living_values() > before
    del directories, names
    assert living_values() == before
