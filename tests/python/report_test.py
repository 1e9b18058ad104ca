"""The report page: what it tells, and that it tells it whatever a catalogue holds."""

import contextlib
import os
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
from collections.abc import Callable
from pathlib import Path
from typing import Any

import pytest

for package in ("matplotlib", "jinja2"):
    pytest.importorskip(package)

from report_samples import ROOT, TOOL, make_hostile_tree, scan
from synthetic_catalogue import empty_catalogue, make

from corvinex.__main__ import main
from corvinex._catalogue_file import CatalogueError
from corvinex.report import write_report
from corvinex.report.display import share, shortened, size, visible
from corvinex.report.distributions import MOST_DOTS, distributions
from corvinex.report.page import report_page
from corvinex.report.summary import MOST_FILES_LISTED

Capture = pytest.CaptureFixture[str]
Change = Callable[[str], str]


@pytest.fixture(scope="module")
def catalogue(tmp_path_factory: pytest.TempPathFactory) -> Path:
    folder = tmp_path_factory.mktemp("report")
    make_hostile_tree(folder / "tree")
    return scan(folder / "tree", folder / "c.sqlite")


@pytest.fixture(scope="module")
def page(catalogue: Path) -> str:
    return report_page(catalogue)


@pytest.fixture()
def changed(catalogue: Path, tmp_path: Path) -> Change:
    """The page of the catalogue with what a statement has changed in it."""

    def change(sql: str) -> str:
        copy = shutil.copy(catalogue, tmp_path / "changed.sqlite")
        with sqlite3.connect(copy) as database:
            database.execute(sql)
        database.close()
        return report_page(copy)

    return change


def report(*arguments: str | Path, **options: Any) -> subprocess.CompletedProcess[str]:
    return subprocess.run(
        [sys.executable, "-m", "corvinex", "report", *arguments],
        capture_output=True,
        text=True,
        check=False,
        **options,
    )


def test_explanations_are_those_of_the_tool() -> None:
    subprocess.run([ROOT / "scripts/dev/explanations", "--check", TOOL], check=True)


def test_the_command_writes_the_same_page_each_time(
    catalogue: Path, page: str, tmp_path: Path
) -> None:
    result = report(
        catalogue, "-o", tmp_path / "page.html", env=os.environ | {"PYTHONHASHSEED": "7"}
    )
    assert (result.returncode, result.stdout, result.stderr) == (0, "", "")
    assert (tmp_path / "page.html").read_text("utf-8") == page
    assert [path.name for path in tmp_path.iterdir()] == ["page.html"]


def test_the_page_names_nothing_outside_of_itself(page: str) -> None:
    assert "://" not in page
    assert "@import" not in page and " src=" not in page.replace("&lt;img src=", "")


def test_no_character_of_the_catalogue_is_hidden_or_controls(page: str) -> None:
    assert not [
        character for character in page if character != "\n" and visible(character) != character
    ]


def test_the_time_of_the_scan_is_the_only_one_that_is_told(changed: Change) -> None:
    text = changed("UPDATE scans SET started = '2001-02-03T04:05:06Z', finished = NULL")
    assert (
        "begun 2001-02-03T04:05:06Z. That scan has not come to its end: files may be missing here."
        in text
    )


def test_findings_that_are_not_listed_are_counted(changed: Change) -> None:
    text = changed(
        "INSERT INTO findings SELECT file_id, 90, 'more', 'error', '0', NULL, "
        "'[\"valuePastEnd\",1000]', 'more' FROM findings WHERE id = 'valuePastEnd' LIMIT 1"
    )
    assert "1,012 findings in 12 files" in text
    assert "valuePastEnd</a> 1,001 times" in text
    assert "finding-more" not in text


def test_a_finding_that_nobody_knows_is_shown_without_an_explanation(changed: Change) -> None:
    text = changed("UPDATE findings SET id = 'laterRule' WHERE id = 'valuePastEnd'")
    assert "This version of corvinex does not know the finding." in text


def test_lists_have_an_end_and_tell_how_many_rows_there_are(tmp_path: Path) -> None:
    make(TOOL, 10000, tmp_path / "large.sqlite")
    text = report_page(tmp_path / "large.sqlite")
    with sqlite3.connect(tmp_path / "large.sqlite") as database:
        damaged = database.execute(
            "SELECT count(*) FROM files WHERE status = 'damaged'"
        ).fetchone()[0]
        findings = database.execute(
            "SELECT sum(CASE id WHEN 'more' THEN 7 ELSE 1 END) FROM findings "
            "WHERE severity = 'error'"
        ).fetchone()[0]
        positions = distributions(database).positions
    database.close()
    assert damaged > MOST_FILES_LISTED
    assert f"{damaged} files" in text and f"the first {MOST_FILES_LISTED} are listed" in text
    assert text.count('<li><span class="name">') < 2 * MOST_FILES_LISTED
    assert f"{findings:,} findings in {damaged} files" in text
    assert len(positions.dots) <= MOST_DOTS < positions.count
    assert len(text) < 1_000_000


def test_an_empty_catalogue_makes_a_page(tmp_path: Path) -> None:
    empty_catalogue(TOOL, tmp_path / "empty.sqlite")
    text = report_page(tmp_path / "empty.sqlite")
    assert "The catalogue has no files." in text and "There are no findings." in text
    assert "No file tells a position." in text
    assert "<svg" not in text


def test_a_catalogue_without_photos_says_that_nothing_tells(changed: Change) -> None:
    text = changed("UPDATE files SET latitude = NULL, make = NULL, model = NULL, taken = NULL")
    assert "None of 25 files tells." in text
    assert "No file tells a position." in text


def test_a_year_far_from_all_others_is_counted_beside_the_chart(changed: Change) -> None:
    text = changed("UPDATE files SET taken = '9998-01-01T00:00:00' WHERE model = 'EO-1'")
    assert "1 more in 1 other year." in text
    assert ">2024</text>" in text


def test_few_months_are_shown_one_by_one_and_without_a_gap(changed: Change) -> None:
    text = changed("UPDATE files SET taken = '2023-12-31' WHERE file = './camera.tif'")
    chart = text[text.index('id="chart-dates"') :]
    assert "Number of files. 2023-12: 1; 2024-01: 0; 2024-02: 0; 2024-03: 4." in chart


def test_what_is_no_month_is_not_told_as_one(changed: Change) -> None:
    text = changed("UPDATE files SET taken = '2024-13-01' WHERE model = 'EO-1'")
    chart = text[text.index('id="chart-dates"') :]
    assert "2024: 3." in chart and "21 do not tell." in chart


def test_a_resolution_is_told_in_dots_per_inch_whatever_its_unit(page: str) -> None:
    chart = page[page.index('id="chart-resolution"') :]
    assert "300: 8; 72: 3." in chart[: chart.index("</desc>")]


def test_many_kinds_of_a_thing_become_the_most_frequent_ones_and_a_number(changed: Change) -> None:
    text = changed("UPDATE files SET make = 'M', model = 'M ' || id")
    assert "13 more with 13 other values." in text


def test_sizes_whose_sum_is_beyond_64_bits_are_added(changed: Change) -> None:
    text = changed("UPDATE files SET size = 9223372036854775807 WHERE status = 'ok'")
    assert '<td class="count">92.2 EB</td>' in text


def test_a_catalogue_is_read_while_a_scan_writes_it(catalogue: Path, tmp_path: Path) -> None:
    copy = shutil.copy(catalogue, tmp_path / "c.sqlite")
    with sqlite3.connect(copy, isolation_level=None) as writer:
        writer.execute("PRAGMA journal_mode = WAL")
        writer.execute("UPDATE files SET model = 'Written'")
        writer.execute("BEGIN IMMEDIATE")
        writer.execute("UPDATE files SET model = 'Not yet written'")
        text = report_page(copy)
    writer.close()
    assert "Written" in text and "Not yet written" not in text


def test_a_catalogue_may_have_any_name(catalogue: Path, tmp_path: Path, capsys: Capture) -> None:
    name = os.fsdecode(b"<b>?#\xff\n.sqlite")
    shutil.copy(catalogue, tmp_path / name)
    text = report_page(tmp_path / name)
    assert "<title>Catalogue &lt;b&gt;?#\\xff\\n.sqlite</title>" in text
    assert main(["report", f"{tmp_path}/{name}", "-o", f"{tmp_path}/none/{name}"]) == 3
    assert capsys.readouterr().err.endswith("\\xff\\n.sqlite: No such file or directory\n")


@pytest.mark.parametrize(
    ("make_input", "message"),
    [
        (lambda path: None, "No such file or directory"),
        (lambda path: path.mkdir(), "it is no catalogue"),
        (lambda path: path.write_bytes(b""), "it is no catalogue"),
        (lambda path: path.write_text("text"), "it is no catalogue"),
        (
            lambda path: sqlite3.connect(path).executescript("CREATE TABLE t (c)").close(),
            "it is no catalogue",
        ),
        (lambda path: os.mkfifo(path), "it is no catalogue"),
        (lambda path: path.symlink_to(path), "Too many levels of symbolic links"),
    ],
)
def test_what_is_no_catalogue_is_told(
    tmp_path: Path, capsys: Capture, make_input: Callable[[Path], object], message: str
) -> None:
    make_input(tmp_path / "c.sqlite")
    assert main(["report", f"{tmp_path}/c.sqlite", "-o", f"{tmp_path}/page.html"]) == 1
    assert capsys.readouterr() == ("", f"corvinex: {tmp_path}/c.sqlite: {message}\n")
    assert not (tmp_path / "page.html").exists()


@pytest.mark.parametrize(
    ("sql", "message"),
    [
        ("PRAGMA user_version = 2", "a later version of corvinex has made it"),
        ("UPDATE findings SET arguments = '[', id = 'more'", "malformed JSON"),
        ("DROP TABLE findings", "no such table: findings"),
    ],
)
def test_a_catalogue_that_cannot_be_read_is_told(
    catalogue: Path, tmp_path: Path, capsys: Capture, sql: str, message: str
) -> None:
    copy = shutil.copy(catalogue, tmp_path / "c.sqlite")
    with sqlite3.connect(copy) as database:
        database.execute(sql)
    database.close()
    assert main(["report", str(copy), "-o", f"{tmp_path}/page.html"]) == 1
    assert capsys.readouterr() == ("", f"corvinex: {copy}: {message}\n")
    assert not (tmp_path / "page.html").exists()


def test_a_catalogue_that_is_cut_off_is_told(
    catalogue: Path, tmp_path: Path, capsys: Capture
) -> None:
    copy = tmp_path / "c.sqlite"
    copy.write_bytes(catalogue.read_bytes()[:40000])
    assert main(["report", str(copy), "-o", f"{tmp_path}/page.html"]) == 1
    assert capsys.readouterr().err == f"corvinex: {copy}: database disk image is malformed\n"


def test_a_catalogue_whose_index_tells_of_rows_that_are_not_there_is_told(
    catalogue: Path, tmp_path: Path
) -> None:
    copy = shutil.copy(catalogue, tmp_path / "c.sqlite")
    of_index = "FROM sqlite_master WHERE name = 'findings_by_id'"
    with contextlib.closing(sqlite3.connect(copy)) as database:
        index = database.execute(f"SELECT * {of_index}").fetchone()
    for sql, values in (
        (f"DELETE {of_index}", ()),
        ("DELETE FROM findings", ()),
        ("INSERT INTO sqlite_master VALUES (?, ?, ?, ?, ?)", index),
    ):
        with contextlib.closing(sqlite3.connect(copy)) as database, database:
            database.execute("PRAGMA writable_schema = ON")
            database.execute(sql, values)
    with pytest.raises(CatalogueError, match="malformed"):
        report_page(copy)


def test_a_catalogue_whose_texts_are_no_texts_is_told(changed: Change, catalogue: Path) -> None:
    with pytest.raises(CatalogueError, match="surrogates"):
        changed("UPDATE findings SET id = CAST(x'ff' AS TEXT) WHERE position = 0")
    # SQLite repeats the bytes that it does not understand.
    content = catalogue.read_bytes().replace(b"CREATE TABLE scans", b"CREATE \xffABLE scans")
    copy = catalogue.with_name("no-text.sqlite")
    copy.write_bytes(content)
    with pytest.raises(CatalogueError, match="no-text.sqlite"):
        report_page(copy)


@pytest.mark.parametrize(
    ("output", "message"),
    [
        ("none/page.html", "No such file or directory"),
        (".", "Is a directory"),
        ("/dev/full", "No space left on device"),
    ],
)
def test_a_page_that_cannot_be_written_is_told(
    catalogue: Path, tmp_path: Path, capsys: Capture, output: str, message: str
) -> None:
    place = tmp_path / output
    assert main(["report", str(catalogue), "-o", str(place)]) == 3
    assert capsys.readouterr() == ("", f"corvinex: {place}: {message}\n")
    assert list(tmp_path.iterdir()) == []


def test_a_page_that_cannot_be_written_whole_leaves_the_one_before_it(
    catalogue: Path, tmp_path: Path
) -> None:
    def limit() -> None:
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))

    (tmp_path / "page.html").write_text("before")
    result = report(catalogue, "-o", tmp_path / "page.html", preexec_fn=limit)
    assert (result.returncode, result.stderr) == (
        3,
        f"corvinex: {tmp_path}/page.html: File too large\n",
    )
    assert {path.name: path.read_text() for path in tmp_path.iterdir()} == {"page.html": "before"}


def test_a_link_to_a_page_stays_a_link(catalogue: Path, page: str, tmp_path: Path) -> None:
    (tmp_path / "real").mkdir()
    (tmp_path / "page.html").symlink_to("real/page.html")
    assert main(["report", str(catalogue), "-o", f"{tmp_path}/page.html"]) == 0
    assert (tmp_path / "page.html").is_symlink()
    assert (tmp_path / "real/page.html").read_text("utf-8") == page


@pytest.mark.parametrize(
    ("folder", "kind"), [("nowhere", FileNotFoundError), ("a_file", NotADirectoryError)]
)
def test_an_error_names_the_page_that_could_not_be_written(
    catalogue: Path, tmp_path: Path, folder: str, kind: type[OSError]
) -> None:
    (tmp_path / "a_file").touch()
    with pytest.raises(kind) as caught:
        write_report(catalogue, tmp_path / folder / "page.html")
    assert caught.value.filename == f"{tmp_path}/{folder}/page.html"
    assert str(caught.value).endswith(f"/{folder}/page.html'")


def test_a_page_is_written_to_a_pipe(catalogue: Path, page: str) -> None:
    result = report(catalogue, "-o", "/dev/stdout")
    assert (result.returncode, result.stderr) == (0, "")
    assert result.stdout == page


def test_the_page_never_takes_the_place_of_its_catalogue(
    catalogue: Path, tmp_path: Path, capsys: Capture
) -> None:
    (tmp_path / "page.html").hardlink_to(catalogue)
    assert main(["report", str(catalogue), "-o", f"{tmp_path}/page.html"]) == 2
    assert (
        capsys.readouterr().err
        == f"corvinex: {tmp_path}/page.html: the page would take the catalogue's place\n"
    )
    with pytest.raises(shutil.SameFileError, match="page.html: the page would take"):
        write_report(catalogue, tmp_path / "page.html")
    assert catalogue.read_bytes().startswith(b"SQLite")


@pytest.mark.parametrize(
    "arguments", [[], ["report"], ["report", "c.sqlite"], ["report", "c.sqlite", "-o"], ["map"]]
)
def test_a_command_that_is_not_understood_has_status_2(
    arguments: list[str], capsys: Capture
) -> None:
    with pytest.raises(SystemExit) as ended:
        main(arguments)
    assert ended.value.code == 2
    assert "usage: python3 -m corvinex" in capsys.readouterr().err


def test_texts_are_shown_with_escapes_for_what_is_not_seen() -> None:
    shown = visible(
        os.fsdecode(b"a\n\t\x1b\x7f\xff") + "\u202e\u2028\ud800\ufffe\U000e0001 \u00e9\u6771"
    )
    assert shown == "a\\n\\t\\x1b\\x7f\\xff\\u202e\\u2028\\ud800\\ufffe\\U000e0001 \u00e9\u6771"


def test_numbers_are_rounded_without_becoming_wrong() -> None:
    assert [size(count) for count in (0, 1, 999, 1000, 999499, 999500, 1234567, 5 * 10**18)] == [
        "0 bytes",
        "1 byte",
        "999 bytes",
        "1 kB",
        "999 kB",
        "1 MB",
        "1.23 MB",
        "5 EB",
    ]
    assert [share(part, 100000) for part in (0, 1, 10000, 33333, 99999, 100000)] == [
        "0 %",
        "under 0.1 %",
        "10 %",
        "33.3 %",
        "over 99.9 %",
        "100 %",
    ]
    assert [shortened(text, 5) for text in ("12345", "123456", "\u6771\u4eac\u6771")] == [
        "12345",
        "1234\u2026",
        "\u6771\u4eac\u2026",
    ]
