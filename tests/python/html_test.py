"""What notebooks show of files and directories, as a browser shows it."""

from __future__ import annotations

import pathlib
import shutil
from collections.abc import Callable
from typing import Any

import pytest

pytest.importorskip("selenium")
if not shutil.which("chromium") or not shutil.which("chromedriver"):
    pytest.skip("there is no chromium", allow_module_level=True)

from browser import Browser, browser  # noqa: F401
from files import SAMPLES, Row, big_tiff, many_pages, tiff

import corvinex

Show = Callable[..., Browser]

HOSTILE = b"<script>document.title='run'</script>&amp;<b title=\"'\">"


@pytest.fixture()
def show(browser: Browser, tmp_path: pathlib.Path) -> Show:
    """Shows what an object gives a notebook, in a page of its own."""

    def open_page(shown: Any, style: str = "") -> Browser:
        page = tmp_path / "page.html"
        head = f"<meta charset=utf-8><title>still</title><body style='{style}'>"
        page.write_text(f"<!doctype html>{head}{shown._repr_html_()}", encoding="utf-8")
        browser.get(page.as_uri())
        return browser

    return open_page


def texts(page: Browser, selector: str) -> Any:
    """The texts of elements that stand on the page, without regard to blanks around them."""
    return page.execute_script(
        "return [...document.querySelectorAll(arguments[0])]"
        ".filter(one => one.checkVisibility()).map(one => one.innerText.trim())",
        selector,
    )


def test_a_page_tells_what_a_file_is_and_folds_all_but_its_first_directory(show: Show) -> None:
    page = show(corvinex.inspect(SAMPLES / "photo.jpg"))
    size = (SAMPLES / "photo.jpg").stat().st_size
    assert texts(page, ".corvinex > div") == [f"{SAMPLES}/photo.jpg JPEG, ok, {size:,} bytes"]
    assert texts(page, "summary") == [
        "facts",
        "0 13 entries",
        "1 6 entries, JPEG (old-style)",
        "0.exif 28 entries",
        "0.exif.interop 2 entries",
        "0.gps 12 entries",
    ]
    rows = texts(page, "tbody tr")
    assert len(rows) == 13
    assert rows[1].split("\t") == ["271", "Make", "ASCII", "15", "Example Optics"]


def test_a_directory_folds_out_and_in_again(show: Show) -> None:
    page = show(corvinex.inspect(SAMPLES / "photo.jpg"))
    page.execute_script("document.querySelectorAll('summary')[3].click()")
    assert "33437\tFNumber\tRATIONAL\t1\tf/2.8" in texts(page, "tbody tr")
    page.execute_script("document.querySelectorAll('summary')[3].click()")
    assert len(texts(page, "tbody tr")) == 13


def test_a_directory_is_a_page_of_its_own(show: Show) -> None:
    page = show(corvinex.inspect(SAMPLES / "photo.jpg").directory("0.gps"))
    assert texts(page, "summary") == ["0.gps 12 entries"]
    assert "7\tGPSTimeStamp\tRATIONAL\t3\t13:07:09 UTC" in texts(page, "tbody tr")


def test_findings_are_told_with_their_sentences(show: Show) -> None:
    file = corvinex.inspect(SAMPLES / "damaged.tif")
    page = show(file)
    page.execute_script("for (const one of document.querySelectorAll('details')) one.open = true")
    shown = texts(page, "tbody tr")
    for finding in file.findings:
        cells = (finding.severity, finding.directory, finding.id, finding.text)
        assert "\t".join(cells).strip() in shown


def test_findings_that_the_list_is_too_short_for_are_counted(show: Show) -> None:
    rows: list[Row] = [(60000 + number, 99, 1, b"") for number in range(9)]
    assert "9 findings" in texts(show(corvinex.inspect(tiff(rows))), "summary")


def test_one_of_a_kind_is_counted_in_the_singular(show: Show) -> None:
    page = show(corvinex.inspect(tiff([(60000, 99, 1, b"")])))
    assert texts(page, "summary")[-2:] == ["1 finding", "0 1 entry"]


def test_what_a_file_holds_is_text_and_never_a_part_of_the_page(
    show: Show, tmp_path: pathlib.Path
) -> None:
    content = tiff([(271, 2, len(HOSTILE) + 1, HOSTILE + b"\0")])
    name = tmp_path / "<i onload=1>'&.tif"
    name.write_bytes(content)
    page = show(corvinex.inspect(name))
    assert page.title == "still"
    assert texts(page, "tbody td:last-child") == [HOSTILE.decode()]
    assert page.execute_script("return document.querySelectorAll('script, i').length") == 0
    assert "<i onload=1>'&.tif" in texts(page, ".corvinex > div")[0]
    assert page.get_log("browser") == []


def test_control_characters_do_not_reach_the_page(show: Show) -> None:
    text = "a\x1bb\x9fc\u202ed".encode() + b"\0"
    page = show(corvinex.inspect(tiff([(271, 2, len(text), text)])))
    assert texts(page, "tbody td:last-child") == ["a\ufffdb\ufffdc\ufffdd"]


def test_blanks_and_joiners_of_all_scripts_stay_what_they_are(show: Show) -> None:
    text = "東京\u3000太郎, 18\xa0mm, می\u200cخواهم, 👨\u200d👧"
    content = text.encode() + b"\0"
    page = show(corvinex.inspect(tiff([(271, 2, len(content), content)])))
    assert texts(page, "tbody td:last-child") == [text]


def test_findings_that_are_not_shown_are_counted(
    show: Show, monkeypatch: pytest.MonkeyPatch
) -> None:
    # The list has three findings of the rule and a row for the others.
    monkeypatch.setattr("corvinex._html.MOST_FINDINGS", 2)
    rows: list[Row] = [(256 + number, 99, 1, b"\1\0") for number in range(100)]
    page = show(corvinex.inspect(tiff(rows)))
    assert "100 findings" in texts(page, "summary")
    page.execute_script("for (const fold of document.querySelectorAll('details')) fold.open = true")
    assert "… and 98 more findings" in texts(page, ".more")


def test_a_page_is_bounded_whatever_the_file_holds(show: Show) -> None:
    page = show(corvinex.inspect(many_pages(300)))
    assert texts(page, ".more") == ["… and 250 more directories"]
    assert len(texts(page, "summary")) <= 53
    rows: list[Row] = [(60000 + number, 3, 1, b"\1\0") for number in range(500)]
    page = show(corvinex.inspect(tiff(rows)))
    assert len(texts(page, "details[open] tbody tr")) == 200
    assert "… and 300 more entries" in texts(page, "details[open] .more")


def test_long_values_are_cut_and_very_long_ones_are_told_by_their_size(show: Show) -> None:
    rows: list[Row] = [(271, 2, 1001, b"x" * 1000 + b"\0"), (60001, 3, 20_000, bytes(40_000))]
    page = show(corvinex.inspect(big_tiff(rows)))
    assert texts(page, "tbody td:last-child") == ["x" * 200 + " …", "20,000 of type SHORT"]


@pytest.mark.parametrize(
    "style", ["color: rgb(20, 20, 20)", "background: rgb(17, 17, 17); color: rgb(230, 230, 230)"]
)
def test_a_page_has_the_colours_of_the_notebook(show: Show, style: str) -> None:
    page = show(corvinex.inspect(SAMPLES / "photo.jpg"), style)
    looks = page.execute_script(
        "const own = getComputedStyle(document.body).color;"
        "return [...document.querySelectorAll('.corvinex *')].map(one => getComputedStyle(one))"
        ".every(look => look.color === own && look.backgroundColor === 'rgba(0, 0, 0, 0)')"
    )
    assert looks is True


def test_a_narrow_page_is_not_wider_than_its_window(show: Show, browser: Browser) -> None:
    metrics = {"width": 400, "height": 900, "deviceScaleFactor": 1, "mobile": False}
    browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)
    page = show(corvinex.inspect(SAMPLES / "photo.jpg"))
    width = page.execute_script("return document.documentElement.scrollWidth")
    browser.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})
    assert width <= 400


def test_no_word_but_those_of_values_is_broken(show: Show) -> None:
    page = show(corvinex.inspect(SAMPLES / "damaged.tif"))
    page.execute_script("for (const one of document.querySelectorAll('details')) one.open = true")
    lines = page.execute_script(
        "const lines = one => { const range = document.createRange(); range.selectNodeContents(one);"
        "return new Set([...range.getClientRects()].map(box => box.top)).size };"
        "return [...document.querySelectorAll('.corvinex :is(th, td):not(:last-child)')].map(lines)"
    )
    assert max(lines) == 1


def test_a_closed_file_and_one_that_is_no_image_are_shown(show: Show) -> None:
    file = corvinex.inspect(b"no image")
    assert texts(show(file), ".corvinex > div") == ["bytes no image, not-an-image, 8 bytes"]
    file.close()
    assert texts(show(file), ".corvinex > div") == ["bytes closed"]
    with corvinex.inspect(tiff([])) as other:
        directory = other.directories[0]
    assert texts(show(directory), ".corvinex > div") == ["bytes closed"]


def test_a_result_is_shown_with_its_first_directory_open(show: Show) -> None:
    page = show(corvinex.read(SAMPLES / "pages-big-endian.tif"))
    assert texts(page, ".corvinex > div") == ["3 directories"]
    assert texts(page, "summary") == ["0 39 fields", "1 39 fields", "2 39 fields"]
    assert "Width\t48.0" in texts(page, "tbody tr")
    one = show(corvinex.read(SAMPLES / "pages-big-endian.tif")[1])
    assert texts(one, "summary") == ["Directory 39 fields"]
    assert "Width\t32.0" in texts(one, "tbody tr")


def test_a_result_is_bounded_and_runs_nothing_of_the_file(
    show: Show, tmp_path: pathlib.Path
) -> None:
    path = tmp_path / "hostile.tif"
    text = HOSTILE + b"x" * 100_000 + b"\0"
    path.write_bytes(tiff([(271, 2, len(text), text)]))
    result = corvinex.read(path)
    page = show(result)
    assert page.title == "still"
    assert any("<script>" in row for row in texts(page, "tbody tr"))
    assert len(result._repr_html_()) < 20_000
    path.write_bytes(many_pages(1000))
    assert len(corvinex.read(path)._repr_html_()) < 500_000
