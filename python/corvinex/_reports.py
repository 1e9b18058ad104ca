"""What goes wrong with a file, as Python's exceptions and warnings."""

from __future__ import annotations

import errno
import os
import warnings
from collections.abc import Iterable
from typing import Optional, Union

Argument = Union[int, str]

# A report as the extension module hands it over: ID, arguments, text.
Report = tuple[Optional[str], tuple[Argument, ...], str]


class TagWarning(UserWarning):
    """Something in a file is damaged or odd, and reading it went on.

    ``id`` names the report, such as ``quorra:corvinex:badSubIfdSeek``. It is None for a warning
    that a chain of directories comes back on itself. ``arguments`` are the numbers and texts of the
    report in its documented order.
    """

    id: str | None = None
    arguments: tuple[Argument, ...] = ()


class Error(Exception):
    """A file cannot be read.

    ``id`` names the report, or is None where the reason has no report. ``arguments`` are the
    numbers and texts of the report in its documented order. Each error is one of Python's own kinds
    too: FileNotFoundError, PermissionError or another OSError where the system refuses the file,
    MemoryError where memory runs out, ValueError where the file is not what it should be.
    """

    id: str | None = None
    arguments: tuple[Argument, ...] = ()


class FormatError(Error, ValueError):
    """A file is none that can be read, or too damaged for it."""


class SystemRefusal(Error, OSError):
    """The system refuses a file; ``errno`` and ``filename`` tell more."""


class FileMissing(Error, FileNotFoundError):
    """There is no file of that name."""


class AccessDenied(Error, PermissionError):
    """A file may not be read."""


class FolderRefused(Error, IsADirectoryError):
    """A folder was named where a file is read."""


class OutOfMemory(Error, MemoryError):
    """There is not enough memory for what a file holds."""


_OF_SYSTEM_ERROR: dict[int, type[Error]] = {
    errno.ENOENT: FileMissing,
    errno.EACCES: AccessDenied,
    errno.EPERM: AccessDenied,
    errno.EISDIR: FolderRefused,
}

_MISSING = "quorra:corvinex:statFailure"


def _shown(path: str | bytes) -> str:
    """A name in a message, escaped where a terminal would do something other than print it."""
    name = os.fsdecode(path)
    return name if name.isprintable() else repr(name)


def error_from(report: Report, system_error: int, path: str | bytes) -> Error:
    """The exception for a file of that name: what the report or the system says of it."""
    report_id, arguments, text = report
    # The module is not asked for a name that is no UTF-8, of which the system tells the same.
    if report_id == _MISSING or system_error in (errno.ENOENT, errno.ENOTDIR):
        report_id, system_error = _MISSING, errno.ENOENT
    error: Error
    if system_error != 0:
        kind = _OF_SYSTEM_ERROR.get(system_error, SystemRefusal)
        error = kind(system_error, text, path)
    else:
        error = FormatError(f"{_shown(path)}: {text}")
    error.id = report_id
    error.arguments = arguments
    return error


def out_of_memory(path: str | bytes) -> OutOfMemory:
    return OutOfMemory(f"{_shown(path)}: not enough memory for what the file holds")


def warn(reports: Iterable[Report], path: str | bytes, stacklevel: int) -> None:
    """Issues warnings in their order. A stack level of 1 is the function that calls this one."""
    for report_id, arguments, text in reports:
        bracket = f" [{report_id}]" if report_id else ""
        warning = TagWarning(f"{_shown(path)}: {text}{bracket}")
        warning.id = report_id
        warning.arguments = arguments
        warnings.warn(warning, stacklevel=stacklevel + 1)
