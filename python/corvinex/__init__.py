"""Reads the tags of TIFF, BigTIFF and EXIF files."""

from corvinex import _native
from corvinex._inspection import Directories, Directory, File, Finding, inspect
from corvinex._native import Entry, Rational

__version__: str = _native.version

__all__ = ["Directories", "Directory", "Entry", "File", "Finding", "Rational", "inspect"]
