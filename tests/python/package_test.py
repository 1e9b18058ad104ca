"""What the package is, before anything is read."""

import os
import subprocess

import corvinex


def test_the_package_has_the_version_of_the_tool() -> None:
    told = subprocess.run(
        [os.environ["CORVINEX_TOOL"], "--version"], check=True, capture_output=True, text=True
    ).stdout
    assert f"corvinex {corvinex.__version__}" in told
