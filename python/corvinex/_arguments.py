"""What arguments must be, checked in one place so that all functions refuse them alike."""

from __future__ import annotations

import operator
import os
from collections.abc import Iterable
from typing import TYPE_CHECKING, SupportsIndex, Union

if TYPE_CHECKING:
    from typing import TypeGuard

# What names a tag: its name, its number, or either behind the path of a directory.
Key = Union[str, SupportsIndex]

# What names a file or a folder.
Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]

# Numbers are handed to the module as doubles.
LARGEST_DOUBLE = 2**53


def whole(name: str, number: SupportsIndex) -> int:
    """A whole number, NumPy's as well. Raises TypeError for anything else, and for bool."""
    if not isinstance(number, bool):
        try:
            return operator.index(number)
        except TypeError:
            pass
    raise TypeError(f"{name} must be a whole number, not {type(number).__name__}")


def whole_double(name: str, number: SupportsIndex) -> int:
    """A whole number that a double holds exactly, not negative."""
    checked = whole(name, number)
    if not 0 <= checked <= LARGEST_DOUBLE:
        raise ValueError(f"{name} must be from 0 to 2**53, not {checked}")
    return checked


def element_index(index: SupportsIndex) -> int:
    """The index of one directory of a sequence. Raises TypeError for what is no whole number."""
    try:
        return operator.index(index)
    except TypeError:
        kind = type(index).__name__
        raise TypeError(f"directories are counted by whole numbers or slices, not {kind}") from None


def is_key(key: object) -> TypeGuard[Key]:
    """Whether an object is of a type that names tags."""
    return isinstance(key, (str, SupportsIndex)) and not isinstance(key, bool)


def tag_word(key: Key) -> str:
    """A tag as the command line would name it."""
    if isinstance(key, str):
        return str(key)
    if not isinstance(key, bool) and isinstance(key, SupportsIndex):
        try:
            return str(operator.index(key))
        except TypeError:
            # An array of NumPy has the method, whatever it holds.
            pass
    raise TypeError(f"a tag is named by str or int, not {type(key).__name__}")


def tag_words(tags: Iterable[Key]) -> list[str]:
    """Tags as the command line would name them. Raises TypeError for what is no list of them."""
    if isinstance(tags, (str, bytes)):
        raise TypeError("tags is a list of names or numbers, not one text")
    if not isinstance(tags, Iterable):
        raise TypeError(f"tags is a list of names or numbers, not {type(tags).__name__}")
    return [tag_word(tag) for tag in tags]


def several_paths(paths: Path | Iterable[Path]) -> Iterable[Path]:
    """Names of files and folders where there may be one alone. Raises TypeError for what is none.

    A file object would give its lines for names.
    """
    if isinstance(paths, (str, bytes, os.PathLike)):
        return [paths]
    if not isinstance(paths, Iterable) or hasattr(paths, "read"):
        kind = type(paths).__name__
        raise TypeError(f"files and folders are named by str, bytes or os.PathLike, not by {kind}")
    # To mypy a bytearray is bytes.
    return paths  # type: ignore[return-value]


def system_name(name: str | bytes) -> bytes:
    """A name as the system has it. Raises ValueError for one that no file can have."""
    encoded = os.fsencode(name)
    if b"\0" in encoded:
        raise ValueError("there is a zero in the name of the file")
    return encoded
