"""What the comparisons with other readers share: the records of the tool, values in a form that can be
compared, and the count of what is equal and what differs."""

import base64
import collections
import json
import math
import pathlib
import struct
import subprocess
import sys

LEAST_EQUAL = 0.99
# Readers print rationals with ten digits, and single numbers with seven.
PRECISION = 1e-9
SINGLE_PRECISION = 1e-6
WIDTHS = {"SHORT": 2, "SSHORT": 2, "LONG": 4, "SLONG": 4, "RATIONAL": 8, "SRATIONAL": 8, "DOUBLE": 8}
SPECIAL_NUMBERS = {"NaN": math.nan, "Infinity": math.inf, "-Infinity": -math.inf}

# One value that another reader tells: the record of its file, the directory's name there, the tag's number,
# its entry in the record or None, and the text that the reader gives.
Pair = collections.namedtuple("Pair", "record group number entry theirs")


def records(tool, folder):
    """The records of all images in a folder."""
    result = subprocess.run([tool, "json", folder], capture_output=True, check=False)
    if result.returncode not in (0, 1):
        sys.exit(f"the tool ended with {result.returncode}: {result.stderr.decode()}")
    found = [json.loads(line) for line in result.stdout.decode("utf-8").splitlines()]
    return [record for record in found if record["container"]]


def quotient(numerator, denominator):
    if denominator:
        return numerator / denominator
    return math.copysign(math.inf, numerator) if numerator else math.nan


def numbers_of(entry):
    """The numbers of an entry, and a list of none where it holds something else or is none."""
    value = entry and entry["value"]
    if value is None or isinstance(value, dict):
        return []
    elements = value if isinstance(value, list) else [value]
    if entry["type"] in ("RATIONAL", "SRATIONAL"):
        pairs = elements if isinstance(elements[0], list) else [elements]
        return [quotient(*pair) for pair in pairs]
    numbers = [SPECIAL_NUMBERS.get(number, number) if isinstance(number, str) else number
               for number in elements]
    return [] if any(isinstance(number, str) for number in numbers) else numbers


def text_of(entry):
    """The text of an entry, several ones joined by line breaks; None where it has none."""
    value = entry and entry["value"]
    if isinstance(value, list) and value and all(isinstance(part, str) for part in value):
        return "\n".join(value)
    return value if isinstance(value, str) else None


def bytes_of(pair):
    """The bytes of an entry as they stand in the file."""
    entry = pair.entry
    if entry["offset"] is None:
        value = entry["value"]
        if isinstance(value, dict):
            return base64.b64decode(value["base64"])
        return (text_of(entry) or "").encode("cp1252", "replace")
    end = entry["offset"] + entry["count"] * WIDTHS.get(entry["type"], 1)
    return pathlib.Path(pair.record["file"]).read_bytes()[entry["offset"]:end]


def is_read_again(is_equal):
    """Whether a value without an entry of its own is that of an entry whose directory is reached a second
    time, by a chain or a pointer."""
    def holds(pair):
        return pair.entry is None and any(
            is_equal(pair._replace(entry=entry)) for directory in pair.record["directories"]
            for entry in directory["entries"] if entry["number"] == pair.number)
    return holds


def is_not_followed(pair):
    """Whether a value without an entry is of a directory to which the record says that no pointer was
    followed."""
    return pair.entry is None and any(
        entry.get("directories") == [] for directory in pair.record["directories"]
        for entry in directory["entries"])


def single(number):
    """The single number next to a number."""
    try:
        return struct.unpack("f", struct.pack("f", number))[0]
    except OverflowError:
        return number


def same_numbers(ours, theirs, precision=PRECISION):
    return bool(ours) and len(ours) == len(theirs) and all(
        one == other or (math.isnan(one) and math.isnan(other))
        or math.isclose(one, other, rel_tol=precision) for one, other in zip(ours, theirs))


class Comparison:
    """Counts pairs that are equal, and the others by the class of their difference.

    A class is a row of its reason, the number of values of the samples and the corpus that fall under it,
    and a function that tells whether a pair does. Values of directories that the other reader alone
    reads are set aside: the share of equal ones is taken of the rest.
    """

    def __init__(self, is_equal, directories, classes):
        self.is_equal = is_equal
        self.directories = directories
        self.classes = classes
        self.equal = 0
        self.counts = collections.Counter()
        self.unexplained = []

    def compare(self, record, group, number, candidates, theirs):
        """Takes the first candidate that is equal out of the list, or else the first one."""
        pairs = [Pair(record, group, number, entry, theirs) for entry in candidates]
        found = next((pair for pair in pairs if self.is_equal(pair)), None)
        if found:
            self.equal += 1
            candidates.remove(found.entry)
            return
        pair = pairs[0] if pairs else Pair(record, group, number, None, theirs)
        if pair.entry:
            candidates.remove(pair.entry)
        rows = self.classes if pair.entry else self.directories
        reason = next((reason for reason, _, holds in rows if holds(pair)), None)
        self.counts[reason] += 1
        if reason is None:
            self.unexplained.append(pair)

    def report(self):
        """Prints what there is to tell; returns the exit status."""
        compared = self.equal + self.counts[None] + sum(self.counts[row[0]] for row in self.classes)
        share = self.equal / max(compared, 1)
        print(f"{self.equal} of {compared} values are equal, {100 * share:.2f} %")
        for reason, listed, _ in self.directories + self.classes:
            print(f"{self.counts[reason]:5} of at most {listed}: {reason}")
        for pair in self.unexplained:
            ours = pair.entry and (pair.entry["type"], str(pair.entry["value"])[:60])
            theirs = str(pair.theirs)[:100]
            print(f"{pair.record['file']}: {pair.group}, {pair.number}: {theirs}, here {ours}",
                  file=sys.stderr)
        are_too_many = any(self.counts[reason] > listed
                           for reason, listed, _ in self.directories + self.classes)
        return 1 if share < LEAST_EQUAL or are_too_many or self.unexplained else 0
