"""The report page as a browser shows it: on narrow and wide screens, light and dark."""

import shutil
from collections.abc import Callable
from typing import Any

import pytest

for package in ("matplotlib", "jinja2", "selenium"):
    pytest.importorskip(package)
if not shutil.which("chromium") or not shutil.which("chromedriver"):
    pytest.skip("there is no chromium", allow_module_level=True)

from browser import Browser, browser  # noqa: F401
from report_samples import ROOT, make_hostile_tree, scan
from selenium.webdriver.common.by import By

from corvinex.report import write_report

Show = Callable[..., Browser]
Colour = list[float]

WIDTHS = (400, 1600)

# Each text of the page, and each bar and dot of a chart: the least contrast that it needs, its
# colour, that of the ground below it, and its opacity.
COLOURS = """
const numbers = text => text.match(/[\\d.]+/g).map(Number);
function ground(element) {
    for (; element; element = element.parentElement) {
        const colour = numbers(getComputedStyle(element).backgroundColor);
        if (colour.length < 4 || colour[3] > 0) return colour;
    }
    return [255, 255, 255];
}
const found = [];
for (const element of document.querySelectorAll('body *')) {
    const inChart = element.ownerSVGElement;
    if (inChart && element.matches('text')) {
        const style = getComputedStyle(element);
        found.push([element.textContent, 4.5, numbers(style.fill), ground(inChart), 1]);
    } else if (inChart && (element.getAttribute('style') || '').includes('--bar')) {
        const style = getComputedStyle(element);
        const opacity = Number(style.fillOpacity);
        found.push(['a bar or a dot', 3, numbers(style.fill), ground(inChart), opacity]);
    } else if (!inChart && [...element.childNodes].some(
            node => node.nodeType === Node.TEXT_NODE && node.data.trim())) {
        const colour = numbers(getComputedStyle(element).color);
        found.push([element.textContent.slice(0, 40), 4.5, colour, ground(element), 1]);
    }
}
return found;
"""
# The height of the letters of each text in pixels of the screen.
LETTERS = """
return [...document.querySelectorAll('figure svg text')].map(text => {
    const toScreen = text.getScreenCTM();
    const size = parseFloat(getComputedStyle(text).fontSize);
    return [text.textContent, size * Math.hypot(toScreen.a, toScreen.b)];
});
"""


@pytest.fixture(scope="module")
def address(tmp_path_factory: pytest.TempPathFactory) -> str:
    folder = tmp_path_factory.mktemp("browser")
    make_hostile_tree(folder / "tree")
    write_report(scan(folder / "tree", folder / "c.sqlite"), folder / "page.html")
    return (folder / "page.html").as_uri()


@pytest.fixture()
def show(browser: Browser, address: str) -> Show:
    """Opens the page anew on a screen of a width, with everything folded out or not."""

    def open_page(width: int = 1600, scheme: str = "light", unfolded: bool = False) -> Browser:
        browser.execute_cdp_cmd(
            "Emulation.setDeviceMetricsOverride",
            {"width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False},
        )
        browser.execute_cdp_cmd(
            "Emulation.setEmulatedMedia",
            {"features": [{"name": "prefers-color-scheme", "value": scheme}]},
        )
        browser.get(address)
        if unfolded:
            browser.execute_script(
                "for (const one of document.querySelectorAll('details')) one.open = true"
            )
        return browser

    return open_page


def text_of(browser: Browser, selector: str) -> Any:
    return browser.find_element(By.CSS_SELECTOR, selector).text


def test_the_page_tells_what_the_catalogue_holds(show: Show) -> None:
    page = show(unfolded=True)
    assert page.title == "Catalogue c.sqlite"
    assert text_of(page, "h1") == "Catalogue c.sqlite"
    assert (
        text_of(page, ".head").split()
        == "Files 25 Size 50.7 kB Images 29 Photos 3 Positions 1".split()
    )
    statuses = [
        row.text.split("\n")[0].split() for row in page.find_elements(By.CSS_SELECTOR, "tbody tr")
    ]
    assert [row[0] for row in statuses] == [
        "ok",
        "warnings",
        "damaged",
        "not-an-image",
        "unreadable",
    ]
    finding = text_of(page, "#findings details:has(#finding-valuePastEnd)")
    for told in (
        "error",
        "12 findings in 12 files",
        "Count and type of the entry make a value that ends past",
        "Copy the file anew",
        "ColorMap (320), 3072 bytes at 1000000",
        "directory 0",
    ):
        assert told in finding
    assert "Too many levels of symbolic links" in text_of(page, "#unreadable")
    assert "empty.tif" in text_of(page, "#not-an-image")
    assert len(page.find_elements(By.CSS_SELECTOR, "#damaged li")) == 12


def test_charts_have_titles_and_tell_their_numbers(show: Show) -> None:
    page = show()
    charts = page.find_elements(By.CSS_SELECTOR, "figure svg")
    assert len(charts) == 9
    names = [chart.accessible_name for chart in charts]
    assert all(names) and len(set(names)) == 9
    assert {chart.aria_role for chart in charts} <= {"img", "image"}
    assert any(
        "Uncompressed: 22; LZW: 2; PackBits: 2; JPEG (old-style): 1." in name for name in names
    )
    assert page.execute_script(
        """
        const all = [...document.querySelectorAll('[id]')].map(one => one.id);
        const used = [...document.querySelectorAll('use')].map(
            one => one.getAttribute('href').slice(1));
        return all.length === new Set(all).size && used.every(one => all.includes(one));"""
    )


def test_names_of_files_stay_text(show: Show) -> None:
    page = show(unfolded=True)
    assert page.find_elements(By.CSS_SELECTOR, "script, img, [onerror], [onmouseover]") == []
    names = [name.text for name in page.find_elements(By.CSS_SELECTOR, "#damaged .name")]
    for name in (
        "./<script>document.title='taken'<.tif",
        "./<img src=x onerror=alert(1)>.tif",
        "./{{ 7 * 7 }}.tif",
        "./\"' onmouseover='alert(1)&amp;.tif",
        "./two\\nlines.tif",
        "./escape\\x1b[31m.tif",
        "./no-utf-8-\\xff\\xfe.tif",
        "./surrogate-\\xed\\xa0\\x80.tif",
        "./turned-\\u202egpj.tif",
        "./\u6771\u4eac.tif",
    ):
        assert name in names
    assert "$\\frac$</" in text_of(page, "#chart-cameras svg")


def test_the_page_shows_without_a_word_in_the_console(show: Show) -> None:
    page = show()
    page.get_log("browser")
    show(unfolded=True)
    assert page.get_log("browser") == []


@pytest.mark.parametrize("width", WIDTHS)
def test_the_page_does_not_scroll_sideways(show: Show, width: int) -> None:
    page = show(width, unfolded=True)
    assert page.execute_script("return innerWidth") == width
    assert (
        page.execute_script(
            "return document.documentElement.scrollWidth - document.documentElement.clientWidth"
        )
        == 0
    )
    beyond = page.execute_script(
        "return [...document.querySelectorAll('body *')].filter(one => !one.closest('defs') && "
        "one.getBoundingClientRect().right > innerWidth).map(one => one.outerHTML.slice(0, 80))"
    )
    assert beyond == []


@pytest.mark.parametrize("width", WIDTHS)
def test_letters_of_charts_can_be_read(show: Show, width: int) -> None:
    letters = show(width).execute_script(LETTERS)
    assert len(letters) > 40
    assert [one for one in letters if not 9.5 <= one[1] <= 20] == []


def luminance(colour: Colour) -> float:
    parts = [part / 255 for part in colour[:3]]
    parts = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2]


def blended(colour: Colour, ground: Colour, opacity: float) -> Colour:
    return [
        part * opacity + below * (1 - opacity) for part, below in zip(colour, ground, strict=False)
    ]


def contrast(one: Colour, other: Colour) -> float:
    darker, lighter = sorted((luminance(one), luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


@pytest.mark.parametrize("scheme", ["light", "dark"])
def test_texts_and_bars_stand_out_from_their_ground(show: Show, scheme: str) -> None:
    found = show(scheme=scheme, unfolded=True).execute_script(COLOURS)
    assert {luminance(ground) > 0.5 for _, _, _, ground, _ in found} == {scheme == "light"}
    assert sum(text == "a bar or a dot" for text, *_ in found) > 20
    assert [
        (text, colour, ground)
        for text, least, colour, ground, opacity in found
        if contrast(blended(colour, ground, opacity), ground) < least
    ] == []


def test_a_finding_unfolds_by_a_click_and_by_the_link_of_a_damaged_file(show: Show) -> None:
    page = show()
    explanation = page.find_element(By.ID, "finding-chainComesBack")
    summary = explanation.find_element(By.XPATH, "preceding-sibling::summary")
    assert not explanation.is_displayed()
    summary.click()
    assert explanation.is_displayed()
    summary.click()
    assert not explanation.is_displayed()
    page.find_element(By.CSS_SELECTOR, "#damaged a[href='#finding-chainComesBack']").click()
    assert explanation.is_displayed()
    places = [
        link.get_attribute("href").partition("#")[2]
        for link in page.find_elements(By.TAG_NAME, "a")
    ]
    assert places and all(page.find_elements(By.ID, place) for place in set(places))


def test_the_picture_of_the_page_is_small() -> None:
    assert 10_000 < (ROOT / "docs/report.png").stat().st_size < 300_000
