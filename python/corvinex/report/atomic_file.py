"""Writes a file whole or not at all."""

import os
import pathlib
import secrets
import stat


def write_whole(path: str | os.PathLike[str], content: bytes) -> None:
    """Puts content in the place of a file, of which nobody sees a part.

    A link is followed. What is no regular file, such as a pipe, is written to as it is. Raises
    OSError when it cannot be written; what stood there before is still there then.
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
    except BaseException:
        new.unlink(missing_ok=True)
        raise
    folder = os.open(place.parent, os.O_RDONLY | os.O_DIRECTORY)
    try:
        os.fsync(folder)
    finally:
        os.close(folder)
