"""What the package is, before anything is read."""

import os
import subprocess
import sys

import pytest

import corvinex
from corvinex import _native


def test_the_package_has_the_version_of_the_tool() -> None:
    told = subprocess.run(
        [os.environ["CORVINEX_TOOL"], "--version"], check=True, capture_output=True, text=True
    ).stdout
    assert f"corvinex {corvinex.__version__}" in told


def printed(code: str) -> str:
    """What a fresh interpreter prints for which there is no pandas."""
    hidden = f"import sys; sys.modules['pandas'] = None\n{code}"
    told = subprocess.run([sys.executable, "-c", hidden], capture_output=True, text=True)
    assert told.returncode == 0, told.stderr
    return told.stdout.strip()


def test_the_names_of_the_package_are_those_for_its_users() -> None:
    names = dir(corvinex)
    assert set(corvinex.__all__) < set(names)
    lazy = {"Catalogue", "CatalogueError", "catalogue", "cluster", "report", "__version__"}
    assert set(names) - set(corvinex.__all__) == lazy


def test_a_name_that_the_package_has_not_is_refused() -> None:
    # mypy tells where it no longer needs to be told that this is one.
    with pytest.raises(AttributeError, match="no attribute 'raed'"):
        corvinex.raed  # type: ignore[attr-defined]


@pytest.mark.parametrize("name", ["Inspection", "Listing", "Merge", "StructArray"])
def test_no_class_is_derived_from_those_of_the_extension(name: str) -> None:
    with pytest.raises(TypeError, match="not an acceptable base type"):
        type("Derived", (getattr(_native, name),), {})


def test_a_struct_array_that_no_read_has_made_has_no_values() -> None:
    empty = _native.StructArray.__new__(_native.StructArray)
    with pytest.raises(TypeError, match="comes from a read"):
        empty.values(0, repr)


def test_a_star_imports_the_package_without_pandas() -> None:
    assert printed("from corvinex import *; print(inspect(b'').status)") == "not-an-image"


def test_a_table_without_pandas_names_the_package_that_has_it() -> None:
    code = "import corvinex\ntry: corvinex.table([])\nexcept ImportError as error: print(error)"
    assert printed(code) == "corvinex.table() needs pandas; Debian has it as python3-pandas"
