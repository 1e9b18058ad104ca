#!/usr/bin/python3
"""Builds the records of `corvinex json` anew from a catalogue and compares them: rebuild_records.py TOOL FOLDER

Once with the values cut as they are by default, for the files whose values were not; once with all values
whole, for every file. Numbers are compared as they are written, digit by digit.
"""

import base64
import json
import pathlib
import sqlite3
import struct
import subprocess
import sys
import tempfile

WHOLE = 2**53


def loaded(text):
    """JSON with each number as its text."""
    return json.loads(text, parse_int=lambda digits: ("number", digits),
                      parse_float=lambda digits: ("number", digits))


def number(value):
    return None if value is None else ("number", str(value))


def entry(row):
    made = {"number": number(row["number"]), "name": row["name"],
            "type": row["type"] if isinstance(row["type"], str) else number(row["type"]),
            "count": number(row["count"]), "offset": number(row["offset"]), "value": loaded(row["json"])}
    optional = {"field": row["field"], "text": row["meaning"], "charset": row["charset"],
                "rest": row["rest"] and {"base64": base64.b64encode(row["rest"]).decode()},
                "truncated": True if row["truncated"] else None}
    made |= {name: value for name, value in optional.items() if value is not None}
    if row["directories"] is not None:
        made["directories"] = loaded(row["directories"])
    return made


def record(database, file):
    made = {"schema": number(1), "file": file["file"], "size": number(file["size"]),
            "modified": file["modified"], "status": file["status"], "container": file["container"],
            "byte_order": file["byte_order"], "header_offset": number(file["header_offset"]),
            "derived": loaded(file["derived"])}
    if file["file_bytes"] is not None:
        made["file_bytes"] = base64.b64encode(file["file_bytes"]).decode()
    made["directories"] = [
        {"path": row["path"], "kind": row["kind"], "offset": number(row["offset"]),
         "derived": loaded(row["derived"]),
         "entries": [entry(tag) for tag in database.execute(
             "SELECT * FROM tags WHERE directory_id = ? ORDER BY entry", [row["id"]])]}
        for row in database.execute("SELECT * FROM directories WHERE file_id = ? ORDER BY position",
                                    [file["id"]])]
    made["findings"] = [
        {"id": row["id"], "severity": row["severity"], "directory": row["directory"],
         "tag": number(row["tag"]), "arguments": loaded(row["arguments"]), "text": row["text"]}
        for row in database.execute("SELECT * FROM findings WHERE file_id = ? ORDER BY position",
                                    [file["id"]])]
    return made


def expected_columns(row):
    """What stands in integer, real and text for the value of a row."""
    value = json.loads(row["json"])
    if isinstance(value, list) and len(value) == 1 and not row["truncated"]:
        value = value[0]
    kind = row["type"]
    if isinstance(value, int) and kind in ("FLOAT", "DOUBLE"):
        value = float(value)
    if isinstance(value, bool) or value is None:
        return None, None, None
    if isinstance(value, int):
        return (value if value < 2**63 else None), None, None
    if isinstance(value, float):
        return None, (struct.unpack("f", struct.pack("f", value))[0] if kind == "FLOAT" else value), None
    if isinstance(value, list) and kind in ("RATIONAL", "SRATIONAL") and len(value) == 2 and \
            not isinstance(value[0], list):
        return None, (value[0] / value[1] if value[1] else None), None
    if isinstance(value, str) and kind not in ("FLOAT", "DOUBLE"):
        return None, None, value
    return None, None, None


def check_columns(database):
    for row in database.execute("SELECT * FROM tags WHERE truncated = 0 OR json LIKE '\"%'"):
        found = (row["integer"], row["real"], row["text"])
        if found != expected_columns(row):
            sys.exit(f"tag {row['number']} has {found} for the {row['type']} {row['json'][:80]}")


def check(tool, folder, max_values, work):
    catalogue = work / f"{max_values}.sqlite"
    scanned = subprocess.run([tool, "scan", folder, "-q", "-o", catalogue, "--max-values", str(max_values)],
                             capture_output=True, check=False)
    if scanned.returncode not in (0, 1):
        sys.exit(f"the scan ended with {scanned.returncode}: {scanned.stderr}")
    database = sqlite3.connect(catalogue)
    database.row_factory = sqlite3.Row
    printed = subprocess.run([tool, "json", folder], capture_output=True, check=False).stdout
    lines = {}
    for line in printed.decode("utf-8").splitlines():
        name = loaded(line)
        lines[name["file"], name.get("file_bytes")] = name
    files = database.execute("SELECT * FROM files").fetchall()
    if len(files) != len(lines):
        sys.exit(f"{len(files)} rows for {len(lines)} files")
    compared = 0
    for file in files:
        cut = database.execute("SELECT count(*) FROM tags JOIN directories ON directories.id = directory_id "
                               "WHERE file_id = ? AND truncated", [file["id"]]).fetchone()[0]
        if cut and max_values != WHOLE:
            continue
        made = record(database, file)
        wanted = lines[made["file"], made.get("file_bytes")]
        if made != wanted:
            sys.exit(f"{file['file']}:\n{json.dumps(made)[:3000]}\n{json.dumps(wanted)[:3000]}")
        compared += 1
    if not compared:
        sys.exit("no file was compared")
    check_columns(database)
    print(f"{compared} of {len(files)} records are the same with values of at most {max_values}")


def main():
    tool, folder = sys.argv[1:]
    with tempfile.TemporaryDirectory() as work:
        for max_values in (64, WHOLE):
            check(tool, folder, max_values, pathlib.Path(work))


main()
