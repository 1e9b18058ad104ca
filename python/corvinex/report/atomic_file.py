"""Writes a file whole or not at all."""

import contextlib
import os
import pathlib
import secrets
import shutil
import stat


def refuse_same_file(source: str | os.PathLike[str], target: str | os.PathLike[str]) -> None:
    """Raises shutil.SameFileError, an OSError, where the page would take its catalogue's place."""
    try:
        is_same = os.path.samefile(source, target)
    except OSError:
        return  # One of them is not there, which is told where it is opened.
    if is_same:
        raise shutil.SameFileError(
            f"{os.fspath(target)}: the page would take the catalogue's place"
        )


def write_whole(path: str | os.PathLike[str], content: bytes) -> None:
    """Puts content in the place of a file, of which nobody sees a part.

    A link is followed. What is no regular file, such as a pipe, is written to as it is. Raises
    OSError with its name when it cannot be written; what stood there before is still there then.
    """
    # A link of the system to a pipe, such as /dev/stdout, leads to no name.
    if os.path.exists(path) and not stat.S_ISREG(os.stat(path).st_mode):
        pathlib.Path(path).write_bytes(content)
        return
    place = pathlib.Path(os.path.realpath(path))
    new = place.with_name(f".corvinex-{secrets.token_hex(8)}.new")
    try:
        with open(new, "xb") as file:
            file.write(content)
            file.flush()
            os.fsync(file.fileno())
        os.replace(new, place)
    except BaseException as error:
        with contextlib.suppress(OSError):
            new.unlink()
        if isinstance(error, OSError):
            # Nobody knows the name that was made up here. The class follows from the number.
            raise OSError(error.errno, error.strerror, os.fspath(path)) from error
        raise
    folder = os.open(place.parent, os.O_RDONLY | os.O_DIRECTORY)
    try:
        os.fsync(folder)
    finally:
        os.close(folder)
