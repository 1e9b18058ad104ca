#!/usr/bin/python3
"""Checks that the records of files obey the schema: validate_records.py TOOL SCHEMA FILE...

Files are also cut off and changed byte by byte, the same way in every run.
"""

import json
import pathlib
import random
import subprocess
import sys
import tempfile

import jsonschema

LARGEST_CHANGED = 100_000
CHANGES_OF_A_FILE = 4


def damaged(files, folder):
    """Names of damaged copies of the files."""
    generator = random.Random(1)
    for number, file in enumerate(files):
        whole = file.read_bytes()
        if not whole or len(whole) > LARGEST_CHANGED:
            continue
        for change in range(CHANGES_OF_A_FILE):
            content = bytearray(whole)
            for _ in range(generator.choice([1, 3, 10])):
                content[generator.randrange(min(len(content), 2000))] = generator.randrange(256)
            if change == 0:
                del content[generator.randrange(len(content)):]
            copy = folder / f"{number}-{change}"
            copy.write_bytes(content)
            yield copy


def records(tool, files):
    """The records of files as text, one a line."""
    result = subprocess.run([tool, "json", *files], capture_output=True, check=False)
    if result.returncode not in (0, 1):
        sys.exit(f"the tool ended with {result.returncode}: {result.stderr.decode()}")
    lines = result.stdout.decode("utf-8").split("\n")
    if lines.pop() != "" or len(lines) != len(files):
        sys.exit(f"{len(lines)} lines for {len(files)} files")
    return lines


def main():
    tool, schema, *names = sys.argv[1:]
    validator = jsonschema.Draft202012Validator(json.loads(pathlib.Path(schema).read_text("utf-8")))
    jsonschema.Draft202012Validator.check_schema(validator.schema)
    files = [path for name in names for path in sorted(pathlib.Path(name).rglob("*"))
             if path.is_file()]
    faults = 0
    with tempfile.TemporaryDirectory() as folder:
        files += list(damaged(files, pathlib.Path(folder)))
        for file, line in zip(files, records(tool, files)):
            for error in validator.iter_errors(json.loads(line)):
                faults += 1
                print(f"{file}: {error.json_path}: {error.message[:200]}", file=sys.stderr)
    print(f"{len(files)} records, {faults} faults")
    return 1 if faults or not files else 0


sys.exit(main())
