"""Builds the wheel of corvinex for the interpreter that runs this, as PEP 517 asks of a backend.

CMake makes the files, the standard library packs them: nothing has to be fetched, and what the
sources need is found as for any other build of theirs. The same sources give the same bytes.
"""

from __future__ import annotations

import base64
import hashlib
import os
import pathlib
import re
import subprocess
import sys
import sysconfig
import tempfile
import time
import zipfile
from typing import Any

_HERE = pathlib.Path(__file__).resolve().parent
_SOURCES = _HERE.parents[1]

Settings = dict[str, Any]


def get_requires_for_build_wheel(config_settings: Settings | None = None) -> list[str]:
    return []


def build_wheel(
    wheel_directory: str,
    config_settings: Settings | None = None,
    metadata_directory: str | None = None,
) -> str:
    version = _version()
    tag = _tag()
    name = f"corvinex-{version}-{tag}.whl"
    with tempfile.TemporaryDirectory(prefix="corvinex-") as folder:
        files = pathlib.Path(folder) / "files"
        _install(pathlib.Path(folder) / "build", files)
        about = files / f"corvinex-{version}.dist-info"
        about.mkdir()
        text = (_HERE / "metadata.txt").read_text(encoding="utf-8")
        (about / "METADATA").write_text(text.replace("@VERSION@", version), encoding="utf-8")
        (about / "LICENSE").write_bytes((_SOURCES / "LICENSE").read_bytes())
        (about / "WHEEL").write_text(
            f"Wheel-Version: 1.0\nGenerator: corvinex\nRoot-Is-Purelib: false\nTag: {tag}\n"
        )
        _pack(files, about / "RECORD", pathlib.Path(wheel_directory) / name)
    return name


def build_sdist(sdist_directory: str, config_settings: Settings | None = None) -> str:
    raise NotImplementedError("the sources are those of the whole project, not of this folder")


def _version() -> str:
    """That of the project, which is told in one place."""
    text = (_SOURCES / "CMakeLists.txt").read_text(encoding="utf-8")
    found = re.search(r"project\(corvinex VERSION (\S+)", text)
    if found is None:
        raise RuntimeError("CMakeLists.txt tells no version")
    return found[1]


def _tag() -> str:
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    platform = re.sub(r"[-.]", "_", sysconfig.get_platform())
    return f"{python}-{python}-{platform}"


def _install(build: pathlib.Path, files: pathlib.Path) -> None:
    def cmake(*words: str | pathlib.Path) -> None:
        subprocess.run(["cmake", *words], check=True)

    cmake(
        *("-S", _SOURCES, "-B", build, "-DCMAKE_BUILD_TYPE=Release", "-DCORVINEX_PYTHON=ON"),
        *("-DCORVINEX_WHEEL=ON", f"-DPython_EXECUTABLE={sys.executable}"),
        # Without the names of what stays inside, as packages have it.
        *("-DCMAKE_SHARED_LINKER_FLAGS=-s", "-DCMAKE_MODULE_LINKER_FLAGS=-s"),
    )
    jobs = str(os.cpu_count() or 1)
    cmake("--build", build, "--parallel", jobs, "--target", "corvinex-python")
    cmake("--install", build, "--component", "wheel", "--prefix", files)


def _pack(files: pathlib.Path, record: pathlib.Path, wheel: pathlib.Path) -> None:
    """Writes all files into the wheel, with a list of them and their checksums as the last one."""
    lines = []
    with zipfile.ZipFile(wheel, "w", zipfile.ZIP_DEFLATED) as archive:
        for path in sorted(files.rglob("*")):
            if path.is_file():
                content = path.read_bytes()
                name = path.relative_to(files).as_posix()
                digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest())
                lines.append(f"{name},sha256={digest.decode().rstrip('=')},{len(content)}\n")
                _add(archive, name, content, path.stat().st_mode)
        name = record.relative_to(files).as_posix()
        lines.append(f"{name},,\n")
        _add(archive, name, "".join(lines).encode(), 0o100644)


def _add(archive: zipfile.ZipFile, name: str, content: bytes, mode: int) -> None:
    # An archive knows no time before 1980.
    seconds = max(int(os.environ.get("SOURCE_DATE_EPOCH", "0")), 315532800)
    entry = zipfile.ZipInfo(name, time.gmtime(seconds)[:6])
    entry.external_attr = (mode & 0o777 | 0o100000) << 16
    entry.compress_type = zipfile.ZIP_DEFLATED
    archive.writestr(entry, content)
