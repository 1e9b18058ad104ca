#!/usr/bin/python3
"""Asks a catalogue of samples/ the queries of docs/catalogue.md and compares what they give with what the page
shows: queries.py TOOL PAGE [--write]. With --write the page gets the answers that there are.
"""

import difflib
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile

SQL = re.compile(r"```sql\n(.*?)```\n(?:\n```\n(.*?)```\n)?", re.S)


def cell(value):
    if value is None:
        return ""
    return f"{value:.15g}" if isinstance(value, float) else str(value)


def answer(database, sql):
    """The rows as `sqlite3 -header` prints them."""
    cursor = database.execute(sql)
    rows = [[column[0] for column in cursor.description], *cursor]
    return "".join("|".join(cell(value) for value in row) + "\n" for row in rows)


def main():
    tool, page = sys.argv[1], pathlib.Path(sys.argv[2]).resolve()
    text = page.read_text("utf-8")
    with tempfile.TemporaryDirectory() as folder:
        catalogue = pathlib.Path(folder) / "c.sqlite"
        subprocess.run([tool, "scan", "samples", "-q", "-o", catalogue], cwd=page.parents[1], check=True)
        database = sqlite3.connect(catalogue)
        if "--write" in sys.argv:
            page.write_text(SQL.sub(lambda match: f"```sql\n{match[1]}```\n\n```\n"
                                    f"{answer(database, match[1])}```\n", text), "utf-8")
            return
        queries = SQL.findall(text)
        if len(queries) < 12:
            sys.exit(f"{page} has {len(queries)} queries")
        for sql, shown in queries:
            found = answer(database, sql)
            if found.count("\n") < 2:
                sys.exit(f"a query gives nothing of the samples:\n{sql}")
            if found != shown:
                sys.exit(sql + "\n".join(difflib.unified_diff(shown.splitlines(), found.splitlines(),
                                                              "shown", "found", lineterm="")))
        print(f"{len(queries)} queries give what the page shows")


main()
