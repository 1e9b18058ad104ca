"""A browser without a window, for tests that look at pages."""

from __future__ import annotations

import shutil
from collections.abc import Iterator
from typing import Any

import pytest
from selenium import webdriver
from selenium.webdriver.chrome.service import Service

Browser = Any  # selenium tells few of its types


@pytest.fixture(scope="module")
def browser() -> Iterator[Browser]:
    """Keeps what pages write to the console."""
    options: Any = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu"):
        options.add_argument(argument)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    driver = webdriver.Chrome(service=Service(shutil.which("chromedriver") or ""), options=options)
    yield driver
    driver.quit()
