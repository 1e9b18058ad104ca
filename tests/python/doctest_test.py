"""The examples in docstrings, README and the page of the package, as they stand there."""

from __future__ import annotations

import doctest
import importlib
import os
import pathlib
import pkgutil
import re
import types

import pytest

import corvinex

ROOT = pathlib.Path(os.environ["CORVINEX_SAMPLES"]).parent
FLAGS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


def modules() -> list[types.ModuleType]:
    names = [module.name for module in pkgutil.walk_packages(corvinex.__path__, "corvinex.")]
    return [corvinex, *(importlib.import_module(name) for name in names if "__main__" not in name)]


def examples() -> list[doctest.DocTest]:
    found = [
        test
        for module in modules()
        for test in doctest.DocTestFinder().find(module)
        if test.examples
    ]
    parser = doctest.DocTestParser()
    for page in ("README.md", "docs/python.md"):
        text = (ROOT / page).read_text(encoding="utf-8")
        blocks = re.findall(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
        whole = "\n".join(block for block in blocks if ">>>" in block)
        found.append(parser.get_doctest(whole, {}, page, page, 0))
    return found


def test_there_are_examples() -> None:
    names = {test.name for test in examples() if test.examples}
    assert {"README.md", "docs/python.md", "corvinex._result.read"} <= names


@pytest.mark.parametrize("example", examples(), ids=lambda test: str(test.name))
def test_an_example_prints_what_it_shows(
    example: doctest.DocTest, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(ROOT)
    told: list[str] = []
    doctest.DocTestRunner(optionflags=FLAGS).run(example, out=told.append)
    assert not told, "".join(told)
