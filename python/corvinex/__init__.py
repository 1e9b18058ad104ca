"""Reads the tags of TIFF, BigTIFF and EXIF files."""

from __future__ import annotations

from corvinex import _native

_native.require_main_interpreter()

from corvinex._inspection import File, FileDirectories, FileDirectory, Finding, inspect
from corvinex._native import Entry, Rational
from corvinex._reports import Error, TagWarning
from corvinex._result import Directories, Directory, RawDirectory, read
from corvinex._table import table

__all__ = [
    "Directories",
    "Directory",
    "Entry",
    "Error",
    "File",
    "FileDirectories",
    "FileDirectory",
    "Finding",
    "RawDirectory",
    "Rational",
    "TagWarning",
    "inspect",
    "read",
    "table",
]
__version__: str = _native.version
