"""Values of entries in Python's own types."""

from __future__ import annotations

import base64
import math
import pathlib
import pickle
import struct
from typing import Any

import numpy
import pytest

import corvinex
from files import big_tiff, corpus, damaged, samples, tiff

UNKNOWN_TAG = 60001


def value_of(code: int, count: int, stored: bytes, number: int = UNKNOWN_TAG) -> Any:
    return corvinex.inspect(big_tiff([(number, code, count, stored)])).directories[0][number].value


def test_a_tag_that_holds_exactly_one_number_gives_a_number() -> None:
    assert value_of(3, 1, struct.pack("<H", 65535), 259) == 65535
    assert type(value_of(3, 1, struct.pack("<H", 1), 259)) is int


@pytest.mark.parametrize("letter", ["<", ">"])
@pytest.mark.parametrize(
    ("code", "form", "numbers"),
    [
        (3, "H", [0, 2**16 - 1]),
        (4, "I", [0, 2**32 - 1]),
        (6, "b", [-128, 127]),
        (8, "h", [-(2**15), 2**15 - 1]),
        (9, "i", [-(2**31), 2**31 - 1]),
        (13, "I", [0, 2**32 - 1]),
    ],
)
def test_a_single_integer_is_exact_in_either_byte_order(
    letter: str, code: int, form: str, numbers: list[int]
) -> None:
    for number in numbers:
        stored = struct.pack(letter + form, number)
        file = corvinex.inspect(tiff([(259, code, 1, stored)], order=letter))
        assert file["Compression"].value == number


@pytest.mark.parametrize(
    ("code", "letter", "numbers"),
    [(16, "Q", [0, 2**64 - 1]), (17, "q", [-(2**63), 2**63 - 1]), (18, "Q", [0, 2**64 - 1])],
)
def test_a_single_integer_is_exact_with_64_bits(
    code: int, letter: str, numbers: list[int]
) -> None:
    for number in numbers:
        assert value_of(code, 1, struct.pack("<" + letter, number), 259) == number


def test_a_tag_that_may_hold_several_numbers_gives_an_array_of_one_too() -> None:
    value = value_of(3, 1, struct.pack("<H", 8), 258)
    assert isinstance(value, numpy.ndarray)
    assert (value.shape, value.dtype, value.tolist()) == ((1,), numpy.uint16, [8])


@pytest.mark.parametrize(
    ("code", "letter", "dtype", "numbers"),
    [
        (1, "B", "uint8", [0, 255]),
        (3, "H", "uint16", [0, 2**16 - 1]),
        (4, "I", "uint32", [0, 2**32 - 1]),
        (6, "b", "int8", [-128, 127]),
        (8, "h", "int16", [-(2**15), 2**15 - 1]),
        (9, "i", "int32", [-(2**31), 2**31 - 1]),
        (11, "f", "float32", [-0.5, 3.5]),
        (12, "d", "float64", [-0.1, 1e300]),
        (13, "I", "uint32", [1, 2**32 - 1]),
        (16, "Q", "uint64", [2**53 + 1, 2**64 - 1]),
        (17, "q", "int64", [-(2**63), 2**63 - 1]),
        (18, "Q", "uint64", [0, 2**64 - 1]),
    ],
)
def test_numbers_are_exact_and_have_the_type_of_the_file(
    code: int, letter: str, dtype: str, numbers: list[float]
) -> None:
    value = value_of(code, len(numbers), struct.pack(f"<{len(numbers)}{letter}", *numbers))
    assert value.dtype == numpy.dtype(dtype)
    assert value.tolist() == numbers


def test_what_is_no_finite_number_stays_what_it_is() -> None:
    value = value_of(12, 4, struct.pack("<4d", math.nan, math.inf, -math.inf, -0.0))
    assert math.isnan(value[0])
    assert value[1:3].tolist() == [math.inf, -math.inf]
    assert math.copysign(1, value[3]) == -1


def test_a_rational_keeps_its_two_numbers() -> None:
    value = value_of(5, 1, struct.pack("<2I", 2, 4), 282)
    assert value == corvinex.Rational(2, 4)
    assert value != corvinex.Rational(1, 2)
    assert (value.numerator, value.denominator, float(value)) == (2, 4, 0.5)
    assert (str(value), repr(value)) == ("2/4", "Rational(2, 4)")


def test_a_rational_with_a_denominator_of_zero_divides_to_no_finite_number() -> None:
    assert float(corvinex.Rational(1, 0)) == math.inf
    assert float(corvinex.Rational(-1, 0)) == -math.inf
    assert math.isnan(float(corvinex.Rational(0, 0)))


def test_a_rational_can_be_hashed_and_pickled_but_not_ordered() -> None:
    rational = corvinex.Rational(-(2**31), 2**32 - 1)
    assert len({rational, corvinex.Rational(-(2**31), 2**32 - 1)}) == 1
    assert pickle.loads(pickle.dumps(rational)) == rational
    pair: object = (-(2**31), 2**32 - 1)
    assert rational != pair
    with pytest.raises(TypeError):
        rational < corvinex.Rational(1, 2)  # type: ignore[operator]


@pytest.mark.parametrize("wrong", [(), (1,), (1, 2, 3), ("1", 2), (2**63, 1), (1.5, 1)])
def test_a_rational_is_made_of_two_integers(wrong: tuple[Any, ...]) -> None:
    with pytest.raises((TypeError, OverflowError)):
        corvinex.Rational(*wrong)


def test_several_rationals_are_rows_of_two_integers() -> None:
    signed = value_of(10, 2, struct.pack("<4i", -1, 3, 5, 0))
    assert (signed.dtype, signed.tolist()) == (numpy.int32, [[-1, 3], [5, 0]])
    unsigned = value_of(5, 3, struct.pack("<6I", 1, 2, 3, 4, 2**32 - 1, 0))
    assert (unsigned.dtype, unsigned.shape) == (numpy.uint32, (3, 2))
    assert unsigned[2].tolist() == [2**32 - 1, 0]


def test_texts_end_at_their_first_zero_and_tell_what_stands_behind_it() -> None:
    file = corvinex.inspect(tiff([(271, 2, 8, b"EO\0rest\0"), (33432, 2, 4, b"a\0b\0")]))
    assert (file["Make"].value, file["Make"].rest) == ("EO", b"rest\0")
    assert (file["Copyright"].value, file["Copyright"].rest) == (["a", "b"], None)


def test_bytes_and_unknown_types_are_bytes() -> None:
    assert value_of(7, 3, b"\0\1\2") == b"\0\1\2"
    assert value_of(99, 1, b"\1\2\3\4\5\6\7\0") == b"\1\2\3\4\5\6\7\0"


def test_what_the_file_does_not_hold_is_none() -> None:
    file = corvinex.inspect(tiff([(UNKNOWN_TAG, 4, 1000, bytes(8)), (258, 3, 0, b"")]))
    assert file[str(UNKNOWN_TAG)].value is None
    assert file["BitsPerSample"].value is None
    assert str(file["BitsPerSample"]) == "None"


def test_an_array_lives_longer_than_its_file() -> None:
    numbers = list(range(100_000))
    stored = struct.pack(f"<{len(numbers)}Q", *numbers)
    with corvinex.inspect(big_tiff([(UNKNOWN_TAG, 16, len(numbers), stored)])) as file:
        value = file[str(UNKNOWN_TAG)].value
    assert value.tolist() == numbers
    assert not value.flags.owndata


def test_each_value_has_memory_of_its_own() -> None:
    entry = corvinex.inspect(tiff([(UNKNOWN_TAG, 3, 2, b"\1\0\2\0")]))[str(UNKNOWN_TAG)]
    entry.value[:] = 7
    assert entry.value.tolist() == [1, 2]


def test_an_entry_tells_what_stands_in_the_directory() -> None:
    file = corvinex.inspect(tiff([(259, 3, 1, struct.pack("<H", 50000)), (700, 1, 5, b"<a/>\n")]))
    code, packet = file.directories[0].entries
    assert (code.number, code.name, code.field, code.type) == (
        259,
        "Compression",
        "Compression",
        "SHORT",
    )
    assert (code.count, code.offset, code.directory) == (1, None, "0")
    assert (code.text, code.words, str(code)) == ("ZSTD", ["ZSTD"], "ZSTD")
    assert (packet.offset, packet.words, packet.charset) == (38, None, None)
    assert repr(packet) == "<corvinex.Entry 0.XMP: BYTE, count 5>"


def test_a_pointer_tells_the_paths_of_its_directories() -> None:
    file = corvinex.inspect(samples()[0].parent / "photo.jpg")
    assert file["0.ExifIFDPointer"].directories == ("0.exif",)
    assert file["0.Make"].directories == ()


def test_a_comment_tells_its_character_set() -> None:
    comment = corvinex.inspect(samples()[0].parent / "photo.jpg")["0.exif.UserComment"]
    assert (comment.value, comment.charset) == ("Harbour in the morning", "ASCII")


def as_json(entry: corvinex.Entry) -> Any:
    """A value as its record has it."""
    value = entry.value
    if isinstance(value, bytes):
        return {"base64": base64.b64encode(value).decode()}
    if isinstance(value, corvinex.Rational):
        return [value.numerator, value.denominator]
    return value.tolist() if isinstance(value, numpy.ndarray) else value


SPECIAL_NUMBERS = {"NaN": "nan", "Infinity": "inf", "-Infinity": "-inf"}


def is_same(entry: corvinex.Entry, value: Any, told: Any) -> bool:
    """Whether a value is that of the record, whose decimals are the shortest of their precision."""
    if entry.type not in ("FLOAT", "DOUBLE") or told is None:
        return bool(value == told)
    dtype = numpy.float32 if entry.type == "FLOAT" else numpy.float64
    numbers = [SPECIAL_NUMBERS.get(number, number) for number in numpy.atleast_1d(told).tolist()]
    return numpy.array_equal(
        numpy.atleast_1d(value), numpy.array(numbers, dtype), equal_nan=True
    ) and isinstance(value, list) == isinstance(told, list)


def rest_as_json(entry: corvinex.Entry) -> Any:
    return entry.rest and {"base64": base64.b64encode(entry.rest).decode()}


def test_every_value_is_that_of_the_record(tmp_path: pathlib.Path) -> None:
    compared = 0
    for path in [*samples(), *damaged(tmp_path), *corpus()]:
        file = corvinex.inspect(path)
        for directory, told in zip(file.directories, file.to_dict()["directories"]):
            for entry, member in zip(directory, told["entries"]):
                where = (path.name, entry)
                assert entry.number == member["number"], where
                assert entry.text == member.get("text"), where
                assert entry.charset == member.get("charset"), where
                assert rest_as_json(entry) == member.get("rest"), where
                assert list(entry.directories) == (member.get("directories") or []), where
                if not member.get("truncated"):
                    assert is_same(entry, as_json(entry), member["value"]), where
                    compared += 1
    assert compared > 1000
