#!/usr/bin/env python3
"""Compares manual pages and completions with the help of the tool that they are of.

  manual_test.py FOLDER TOOL      the folder that make-manual has written
"""

import gzip
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

FOLDER, TOOL = pathlib.Path(sys.argv[1]), sys.argv[2]

# Prints what the words given are completed with, then the ends of it that the function has ruled out.
BASH = """
source "$1"; shift
compopt() { printf '%s\\n' "$*"; }
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_corvinex
printf '%s\\n' "${COMPREPLY[@]}"
"""


def run(command, text=None):
    return subprocess.run(command, input=text, text=True, check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT).stdout


def commands():
    listed = run([TOOL, "--help"]).split("Commands:\n")[1].split("\n\n")[0]
    return re.findall(r"^  (\w+)  ", listed, re.MULTILINE)


def options(command):
    return re.findall(r"^  (?:-\w, )?(--[\w-]+)", run([TOOL, command, "--help"]), re.MULTILINE)


def page(name):
    return gzip.decompress((FOLDER / "man" / f"{name}.1.gz").read_bytes()).decode()


def completed(*words):
    return run(["bash", "-c", BASH, "bash", FOLDER / "bash/corvinex", *words]).split()


class Manual(unittest.TestCase):
    def test_every_command_has_a_page_and_nothing_else_has_one(self):
        pages = {path.name for path in (FOLDER / "man").iterdir()}
        self.assertGreater(len(pages), 5)
        self.assertEqual(pages, {"corvinex.1.gz"} | {f"corvinex-{name}.1.gz" for name in commands()})

    def test_pages_tell_every_option_in_their_plain_text(self):
        for command in commands():
            text = run(["mandoc", "-Tascii", "-Owidth=200"], page(f"corvinex-{command}"))
            text = re.sub(".\b", "", text)
            for option in options(command):
                self.assertRegex(text, rf"(?m)^ {{7}}(-\w, )?{option}\b")

    def test_pages_tell_what_each_exit_status_means(self):
        for name in ["corvinex", *(f"corvinex-{command}" for command in commands())]:
            text = page(name).split(".SH EXIT STATUS\n")[1].split(".SH")[0]
            self.assertEqual(re.findall(r"(?m)^\.B (\d)$", text), ["0", "1", "2", "3"], name)
        self.assertIn(".B 1\nThe files differ.\n", page("corvinex-diff"))

    def test_pages_are_without_fault_for_a_formatter(self):
        with tempfile.NamedTemporaryFile("w", suffix=".1") as file:
            for name in ["corvinex", *(f"corvinex-{command}" for command in commands())]:
                file.seek(0)
                file.truncate()
                file.write(page(name))
                file.flush()
                self.assertEqual(run(["mandoc", "-Tlint", "-Wwarning", file.name]), "")


class BashCompletion(unittest.TestCase):
    def test_offers_all_commands_first(self):
        self.assertEqual(completed("corvinex", ""), [*commands(), "--help", "-h", "--version"])
        self.assertEqual(completed("corvinex", "ins"), ["inspect"])

    def test_offers_the_options_of_the_command(self):
        for command in commands():
            offered = [word for word in completed("corvinex", command, "--") if word.startswith("--")]
            self.assertEqual(sorted(offered), sorted(options(command)))

    def test_takes_a_file_for_the_command_that_inspects(self):
        self.assertEqual(completed("corvinex", "a.tif", "--wi"), ["--width"])

    def test_offers_the_words_of_a_value_behind_a_blank_and_an_equals_sign(self):
        words = ["always", "never", "auto"]
        self.assertEqual(completed("corvinex", "inspect", "--color", ""), words)
        self.assertEqual(completed("corvinex", "inspect", "--color", "=", ""), words)
        self.assertEqual(completed("corvinex", "inspect", "--color", "=", "n"), ["never"])

    def test_leaves_names_of_files_to_the_shell_and_refuses_them_for_numbers(self):
        self.assertEqual(completed("corvinex", "extract", "-o", ""), [])
        self.assertEqual(completed("corvinex", "show", ""), [])
        self.assertEqual(completed("corvinex", "show", "--skip", ""), ["+o", "default", "+o", "bashdefault"])


class OtherShells(unittest.TestCase):
    def check(self, shell, path):
        if not shutil.which(shell):
            self.skipTest(f"{shell} is not installed")
        self.assertEqual(run([shell, "-n", path]), "")

    def test_zsh_reads_its_completion(self):
        self.check("zsh", FOLDER / "zsh/_corvinex")

    def test_fish_reads_its_completion(self):
        self.check("fish", FOLDER / "fish/corvinex.fish")

    def test_zsh_and_fish_are_told_every_option_of_every_command(self):
        zsh = (FOLDER / "zsh/_corvinex").read_text(encoding="utf-8")
        fish = (FOLDER / "fish/corvinex.fish").read_text(encoding="utf-8")
        for command in commands():
            branch = zsh.split(f"\n        {command})\n")[1].split(";;")[0]
            for option in set(options(command)) - {"--help"}:
                self.assertRegex(branch, rf"'\*?{option}[=\[]")
                self.assertRegex(fish, rf"_runs {command}' -l {option[2:]} ")

    def test_fish_offers_the_options_of_the_command_that_runs(self):
        if not shutil.which("fish"):
            self.skipTest("fish is not installed")

        def offered(line):
            told = run(["fish", "--no-config", "-c", 'source $argv[1]; complete -C $argv[2]',
                        FOLDER / "fish/corvinex.fish", line])
            return [word.split("\t")[0] for word in told.splitlines()]

        for command in commands():
            self.assertIn(command, offered("corvinex "))
            self.assertEqual(sorted(offered(f"corvinex {command} json --")), sorted(options(command)))
        self.assertEqual(offered("corvinex a.tif --wi"), ["--width"])
        self.assertEqual(offered("corvinex diff --color n"), ["never"])


os.environ["LC_ALL"] = "C.UTF-8"
unittest.main(argv=sys.argv[:1])
