"""The package as pip builds and installs it, into an environment of its own and without a network."""

from __future__ import annotations

import os
import pathlib
import subprocess
import sys
import zipfile

import pytest

ROOT = pathlib.Path(os.environ["CORVINEX_SAMPLES"]).parent


def run(*words: str | pathlib.Path) -> str:
    environment = {
        name: value
        for name, value in os.environ.items()
        if not name.startswith(("PIP_", "PYTHON"))
    }
    # A folder of no project: nothing is found beside what is installed.
    result = subprocess.run(
        words, cwd="/", env=environment, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT
    )
    assert result.returncode == 0, result.stdout
    return result.stdout


@pytest.fixture(scope="module")
def python(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """The interpreter of a new environment, which takes NumPy and pip from the system."""
    folder = tmp_path_factory.mktemp("environment")
    run(sys.executable, "-m", "venv", "--system-site-packages", "--without-pip", folder)
    return folder / "bin" / "python"


@pytest.fixture(scope="module")
def wheel(python: pathlib.Path, tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    folder = tmp_path_factory.mktemp("wheel")
    build = os.environ["CORVINEX_WHEEL_FOLDER"]
    setting = f"--config-settings=build-folder={build}"
    options = ("--no-index", "--no-deps", setting, "--wheel-dir")
    run(python, "-m", "pip", "wheel", *options, folder, ROOT / "python")
    (made,) = folder.iterdir()
    return made


def test_a_wheel_holds_the_package_with_its_libraries(wheel: pathlib.Path) -> None:
    tag = f"cp{sys.version_info.major}{sys.version_info.minor}"
    assert f"-{tag}-{tag}-linux_" in wheel.name
    names = zipfile.ZipFile(wheel).namelist()
    libraries = {name for name in names if ".so" in name and "_native" not in name}
    assert libraries == {"corvinex/lib/libcorvinex-host.so.0", "corvinex/lib/corvinex/corvinex.so"}
    sources = (ROOT / "python" / "corvinex").rglob("*.py")
    assert {f"corvinex/{path.relative_to(ROOT / 'python/corvinex')}" for path in sources} <= {*names}
    assert "corvinex/py.typed" in names and "corvinex/_native.pyi" in names
    assert not [name for name in names if "pycache" in name]


def test_a_wheel_tells_nothing_of_the_machine_that_made_it(wheel: pathlib.Path) -> None:
    archive = zipfile.ZipFile(wheel)
    places = [os.fsencode(ROOT), os.fsencode(os.environ["CORVINEX_WHEEL_FOLDER"])]
    for name in archive.namelist():
        content = archive.read(name)
        assert not [place for place in places if place in content], name


def test_an_installed_wheel_reads_files_and_goes_without_a_trace(
    python: pathlib.Path, wheel: pathlib.Path
) -> None:
    run(python, "-m", "pip", "install", "--no-index", "--no-deps", wheel)
    code = f"""
import corvinex
print(corvinex.__file__)
print(corvinex.read({str(ROOT / 'samples/palette.tif')!r})[0].Colormap.shape)
print([line.split()[-1] for line in open("/proc/self/maps") if "libcorvinex-host" in line][0])
"""
    package, shape, library = run(python, "-c", code).splitlines()
    packages = pathlib.Path(package).parents[1]
    assert packages.is_relative_to(python.parents[1])
    assert shape == "(256, 3)"
    assert pathlib.Path(library).is_relative_to(packages / "corvinex" / "lib")
    run(python, "-m", "pip", "uninstall", "--yes", "corvinex")
    assert not list(packages.glob("corvinex*"))
