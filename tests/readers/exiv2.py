#!/usr/bin/python3 -B
"""Compares the records of the files in a folder with what exiv2 tells of them: exiv2.py TOOL FOLDER

Type, count and value of each entry are compared, by the kind and number of its directory and by its tag.
Every difference has a class below, with its reason.
"""

import collections
import math
import re
import subprocess
import sys

from other_reader import (Comparison, bytes_of, is_not_followed, is_read_again, numbers_of, records,
                          same_numbers, single, text_of)

# What exiv2 calls the directories that it tells apart; of pointers it follows those of page 0 and 1.
GROUPS = {"Image": "0", "Thumbnail": "1", "Image2": "2", "Image3": "3", "Photo": "exif", "GPSInfo": "gps",
          "Iop": "interop"}
LINE = re.compile(r"0x([0-9a-f]{4}) +(\w+) +(\w+) +(\d+)(?:  (.*))?", re.DOTALL)

# What exiv2 tells of an entry.
Told = collections.namedtuple("Told", "type count value")
# Tags with a text behind the name of its character set.
COMMENTS = (27, 28, 37510)


def place_of(group):
    """The key under which the entries of a group stand; None for groups inside a maker note."""
    sub = re.fullmatch(r"Sub(Image|Thumb)(\d+)", group)
    if sub:
        return f"{0 if sub[1] == 'Image' else 1}.sub{int(sub[2]) - 1}"
    return GROUPS.get(group)


def entries_of(record):
    """The entries of a record by the place of their directory and their number."""
    found = collections.defaultdict(list)
    for directory in record["directories"]:
        is_image = directory["kind"] in ("main", "sub")
        for entry in directory["entries"]:
            found[directory["path"] if is_image else directory["kind"], entry["number"]].append(entry)
    return found


def numbers_in(text):
    try:
        return [float(word) for word in text.split()]
    except ValueError:
        return []


def is_rationals(pair):
    value = pair.entry["value"]
    pairs = value if isinstance(value[0], list) else [value]
    return " ".join(f"{numerator}/{denominator}" for numerator, denominator in pairs) == pair.theirs.value


def is_comment(pair):
    """The name of the character set is taken off, and told as charset=..."""
    theirs = pair.theirs.value
    if theirs.startswith("charset="):
        charset, _, theirs = theirs.removeprefix("charset=").removeprefix('"').partition(" ")
        if charset.strip('"').upper() != pair.entry.get("charset"):
            return False
    text = text_of(pair.entry)
    return text is not None and text.rstrip("\0 ") == theirs.rstrip("\0 ")


def is_equal_value(pair):
    entry, theirs = pair.entry, pair.theirs
    if entry["type"] in ("RATIONAL", "SRATIONAL"):
        return is_rationals(pair)
    if entry["type"] == "ASCII" and pair.number not in COMMENTS:
        ours = bytes_of(pair).split(b"\0")[0]
        return ours == theirs.value.encode("utf-8", "surrogateescape")
    if pair.number in COMMENTS and is_comment(pair):
        return True
    ours, told = numbers_of(entry) or list(bytes_of(pair)), numbers_in(theirs.value)
    if entry["type"] == "FLOAT":
        return same_numbers([single(number) for number in ours], [single(number) for number in told])
    return same_numbers(ours, told)


def is_of_unknown_type(pair):
    """An unknown type is one of single bytes there. Here the value field is given, which holds them when
    they are few."""
    entry, theirs = pair.entry, pair.theirs
    if theirs.type != f"0X{entry['type']:04X}":
        return False
    words = theirs.value.split()
    return not words or list(bytes_of(pair)[:entry["count"]]) == [int(word) for word in words]


def is_equal(pair):
    if pair.entry["value"] is None:
        # A value that cannot be read has a count of 0 there.
        return pair.theirs.value == ""
    if isinstance(pair.entry["type"], int):
        return is_of_unknown_type(pair)
    return (pair.entry["type"] == pair.theirs.type and pair.entry["count"] == pair.theirs.count
            and is_equal_value(pair))


# What differs. Each function tells whether a pair is of the class that its row in CLASSES describes.

def is_outside(pair):
    return pair.theirs.count == 0 and pair.theirs.value == ""


def is_longer_value_of_unknown_type(pair):
    return isinstance(pair.entry["type"], int)


def is_of_big_type(pair):
    return pair.entry["type"] in ("LONG8", "SLONG8", "IFD8")


def is_comment_without_set(pair):
    return (pair.number in COMMENTS
            and (pair.theirs.value == "" or pair.theirs.value.startswith("charset=InvalidCharsetId")))


def is_comment_of_type_ascii(pair):
    return pair.number in COMMENTS and pair.theirs.type == "ASCII"


def is_number_beyond_doubles(pair):
    return any(abs(number) > 1e308 for number in numbers_of(pair.entry) if math.isfinite(number))


DIRECTORIES = [
    ("exiv2 reads a directory again where a chain or a second pointer leads to it", 55,
     is_read_again(is_equal)),
    ("exiv2 follows pointers of a directory that does not look like one", 61, is_not_followed),
]
CLASSES = [
    ("exiv2 reads no value that ends past the EXIF block, or that stands at offset 0", 13, is_outside),
    ("exiv2 reads bytes where an unknown type leads; here the value field is given", 23,
     is_longer_value_of_unknown_type),
    ("exiv2 does not know the types of BigTIFF", 1, is_of_big_type),
    ("exiv2 tells nothing, or the bytes, of a comment without a character set", 8, is_comment_without_set),
    ("exiv2 gives the name of the set as the text where a comment has the type of texts", 1,
     is_comment_of_type_ascii),
    ("exiv2 rounds to 15 digits, which makes the largest double infinite", 1, is_number_beyond_doubles),
]


def told_by_exiv2(file):
    """Group, number, and what is told, of each entry in a file."""
    command = ["exiv2", "-q", "-b", "-u", "-PExgycv", file]
    out = subprocess.run(command, capture_output=True, check=False).stdout
    lines = []
    for line in out.decode("utf-8", "surrogateescape").removesuffix("\n").split("\n"):
        if LINE.match(line) or not lines:
            lines.append(line)
        else:
            lines[-1] += "\n" + line  # a text may hold line breaks
    for match in filter(None, map(LINE.fullmatch, lines)):
        number, group, kind, count, value = match.groups(default="")
        yield group, int(number, 16), Told(kind.upper(), int(count), value)


def main():
    tool, folder = sys.argv[1:]
    comparison = Comparison(is_equal, DIRECTORIES, CLASSES)
    for record in records(tool, folder):
        ours = entries_of(record)
        for group, number, theirs in told_by_exiv2(record["file"]):
            if place_of(group):
                comparison.compare(record, group, number, ours[place_of(group), number], theirs)
    return comparison.report()


if __name__ == "__main__":
    sys.exit(main())
