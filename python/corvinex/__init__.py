"""Reads the tags of TIFF, BigTIFF and EXIF files."""

from corvinex import _native

__version__: str = _native.version
