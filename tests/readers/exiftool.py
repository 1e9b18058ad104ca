#!/usr/bin/python3 -B
"""Compares the records of the files in a folder with what exiftool tells of them: exiftool.py TOOL FOLDER

Values are told apart by the kind and number of their directory and by their tag. Those of several
directories with one name, and duplicates, are matched in any order. Every difference has a class below,
with its reason.
"""

import base64
import collections
import json
import math
import re
import subprocess
import sys

from other_reader import (Comparison, PRECISION, SINGLE_PRECISION, bytes_of, is_read_again, numbers_of,
                          records, same_numbers, text_of)

GROUPS = {"exif": "ExifIFD", "gps": "GPS", "interop": "InteropIFD", "sub": "SubIFD"}
SPECIAL_NUMBERS = {"undef": math.nan, "NaN": math.nan, "inf": math.inf, "Inf": math.inf, "-Inf": -math.inf}
# Powers of rounded numbers.
APEX_PRECISION = 1e-8

CFA_PATTERN = 41730
GEO_KEYS = 34735
COMPOSITE_EXPOSURES = 42082
OWNER_NAME = 65000
# Tags with a text behind the name of its character set.
COMMENTS = (27, 28, 37510)


def group_of(path):
    """What exiftool calls a directory. Those of a chain of sub-images count on from its first one."""
    parts = path.split(".")
    if len(parts) == 1:
        return "IFD" + path
    link = int(parts.pop()) if parts[-1].isdigit() else 0
    kind, number = re.fullmatch(r"([a-z]+)(\d*)", parts[-1]).groups()
    place = int(number or 0) + link
    return GROUPS[kind] + (str(place) if place else "")


def numbers_in(text):
    try:
        return [SPECIAL_NUMBERS[word] if word in SPECIAL_NUMBERS else float(word)
                for word in text.split()]
    except ValueError:
        return []


def power_of_two(exponent):
    return 2.0 ** exponent if exponent < 1024 else math.inf


# What exiftool converts, taken back: each function tells whether what it prints is made of the entry. They
# are asked for all values that are not equal as they stand.

def is_apex(pair):
    """The exposure time of a shutter speed, the f-number of an aperture."""
    conversions = {37377: lambda speed: power_of_two(-speed), 37378: lambda value: power_of_two(value / 2),
                   37381: lambda value: power_of_two(value / 2)}
    convert = conversions.get(pair.number)
    ours = [convert(number) for number in numbers_of(pair.entry)] if convert else []
    return same_numbers(ours, numbers_in(pair.theirs), APEX_PRECISION)


def is_degrees(pair):
    """Degrees, minutes and seconds as degrees."""
    numbers = numbers_of(pair.entry) if pair.group == "GPS" and pair.number in (2, 4, 20, 22) else []
    degrees = sum(number / 60 ** place for place, number in enumerate(numbers))
    return bool(numbers) and same_numbers([degrees], numbers_in(pair.theirs))


def is_time(pair):
    """Hours, minutes and seconds between colons."""
    return (pair.group == "GPS" and pair.number == 7
            and same_numbers(numbers_of(pair.entry), numbers_in(pair.theirs.replace(":", " "))))


def is_position(pair):
    """Positions in a JPEG, counted from its start instead of from the header."""
    header = pair.record["header_offset"]
    ours = [number + header for number in numbers_of(pair.entry)] if pair.number in (273, 513) else []
    return same_numbers(ours, numbers_in(pair.theirs))


def is_bytes_as_numbers(pair):
    """Bytes printed as numbers, as whatever they are used."""
    return (pair.entry["type"] in ("BYTE", "UNDEFINED")
            and list(bytes_of(pair)) == numbers_in(pair.theirs))


def is_bytes_in_hexadecimal(pair):
    return pair.entry["type"] == "BYTE" and bytes_of(pair).hex().upper() == pair.theirs


def is_filter_pattern(pair):
    """Two 16-bit numbers and bytes, all printed as numbers."""
    content = bytes_of(pair) if pair.number == CFA_PATTERN else b""
    theirs = numbers_in(pair.theirs)
    return any([int.from_bytes(content[:2], order), int.from_bytes(content[2:4], order),
                *content[4:]] == theirs for order in ("big", "little"))


def is_raw_bytes(pair):
    """Bytes that are no text in UTF-8, of a text up to its first zero."""
    if not pair.theirs.startswith("base64:"):
        return False
    theirs = base64.b64decode(pair.theirs[len("base64:"):])
    ours = bytes_of(pair)
    return theirs.rstrip(b" \0") in (ours.rstrip(b" \0"), ours.split(b"\0")[0].rstrip(b" "))


TAKEN_BACK = (is_apex, is_degrees, is_time, is_position, is_bytes_as_numbers, is_bytes_in_hexadecimal,
              is_filter_pattern, is_raw_bytes)


def is_equal_as_it_stands(pair):
    """The same numbers, or the same text but for blanks and zeros at its end."""
    precision = SINGLE_PRECISION if pair.entry["type"] == "FLOAT" else PRECISION
    numbers = numbers_of(pair.entry)
    if numbers:
        return same_numbers(numbers, numbers_in(pair.theirs), precision)
    text = text_of(pair.entry)
    if text is not None:
        return text.rstrip() == pair.theirs.rstrip()
    return bytes_of(pair).rstrip(b"\0") == pair.theirs.encode().rstrip(b"\0")


def is_equal(pair):
    if pair.entry["value"] is None:
        return pair.theirs == ""
    return is_equal_as_it_stands(pair) or any(is_made_of(pair) for is_made_of in TAKEN_BACK)


# What differs. Each function tells whether a pair is of the class that its row in CLASSES describes.

def goes_on_in_next_block(pair):
    return any(finding["id"] == "exifBlockRepeated" for finding in pair.record["findings"])


def is_text_behind_zero(pair):
    text = text_of(pair.entry)
    return text is not None and pair.theirs.startswith(text) and "rest" in pair.entry


def is_comment(pair):
    return pair.number in COMMENTS


def has_part_without_value(pair):
    return pair.group == "GPS" and math.isnan(sum(numbers_of(pair.entry)))


def is_time_beyond_a_day(pair):
    return pair.group == "GPS" and pair.number == 7 and max(numbers_of(pair.entry), default=0) > 60


def is_number_beyond_doubles(pair):
    return any(abs(number) > 1e308 for number in numbers_of(pair.entry) if math.isfinite(number))


def is_geo_keys_with_order(pair):
    return pair.number == GEO_KEYS and pair.theirs.endswith(("II", "MM"))


def is_exposure_list(pair):
    return pair.number == COMPOSITE_EXPOSURES


def is_unknown_bytes(pair):
    return pair.entry["type"] == "UNDEFINED" and not pair.entry["name"]


def is_behind_colon(pair):
    text = text_of(pair.entry)
    return text is not None and pair.number == OWNER_NAME and ": " in text


DIRECTORIES = [
    ("exiftool reads a directory again where a chain or a second pointer leads to it", 56,
     is_read_again(is_equal)),
]
CLASSES = [
    ("exiftool puts the EXIF blocks of two segments together", 1, goes_on_in_next_block),
    ("exiftool prints what stands behind the zero that ends a text without the zero; here it is apart", 2,
     is_text_behind_zero),
    ("exiftool tells nothing of a comment with no character set, and of one in ASCII the set only", 4,
     is_comment),
    ("exiftool tells nothing of a position or a time with a part of 0/0, or takes that for 0", 5,
     has_part_without_value),
    ("exiftool carries minutes over into hours", 1, is_time_beyond_a_day),
    ("exiftool rounds to 15 digits, which makes the largest double infinite", 1,
     is_number_beyond_doubles),
    ("exiftool adds the byte order to the GeoKeys", 1, is_geo_keys_with_order),
    ("exiftool takes exposure times apart, which these bytes do not hold", 1, is_exposure_list),
    ("exiftool guesses that unknown bytes are a text, and leaves zeros out", 1, is_unknown_bytes),
    ("exiftool takes what stands before a colon for a name", 1, is_behind_colon),
]


def told_by_exiftool(files):
    """What exiftool tells of each file, by its name. Numbers stay as they are printed."""
    command = ["exiftool", "-q", "-q", "-n", "-j", "-b", "-a", "-U", "-D", "-G1:3:4", "-EXIF:all", "-@", "-"]
    result = subprocess.run(command, input="\n".join(files), capture_output=True, text=True, check=False)
    return {told["SourceFile"]: told for told in json.loads(result.stdout, parse_float=str, parse_int=str)}


def main():
    tool, folder = sys.argv[1:]
    found = records(tool, folder)
    theirs = told_by_exiftool([record["file"] for record in found])
    comparison = Comparison(is_equal, DIRECTORIES, CLASSES)
    for record in found:
        ours = collections.defaultdict(list)
        for directory in record["directories"]:
            for entry in directory["entries"]:
                ours[group_of(directory["path"]), entry["number"]].append(entry)
        for name, told in theirs.get(record["file"], {}).items():
            # Values with a name for a number are made of others, and documents of their own are files
            # inside the file.
            if name == "SourceFile" or not told["id"].isdigit() or ":Main:" not in name:
                continue
            group, number = name.split(":")[0], int(told["id"])
            comparison.compare(record, group, number, ours[group, number], told["val"])
    return comparison.report()


if __name__ == "__main__":
    sys.exit(main())
