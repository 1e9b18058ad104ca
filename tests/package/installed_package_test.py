#!/usr/bin/env python3
"""Installs a build, moves the prefix to another place, and uses what lies there as other projects do.

  installed_package_test.py BUILD-FOLDER COMPILER
"""

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD, COMPILER = pathlib.Path(sys.argv[1]), sys.argv[2]
PLAIN = {name: value for name, value in os.environ.items() if name not in ("DESTDIR", "LD_LIBRARY_PATH")}


def run(command, **variables):
    result = subprocess.run([str(word) for word in command], cwd=ROOT, text=True, check=False,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=PLAIN | variables)
    if result.returncode != 0:
        raise AssertionError(f"{command} ends with {result.returncode}:\n{result.stdout}")
    return result.stdout


def dynamic_texts(path, tag):
    return re.findall(rf"\({tag}\).*\[(.*)\]", run(["readelf", "-d", path]))


class InstalledPackage(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.work = pathlib.Path(cls.folder.name)
        run(["cmake", "--install", BUILD, "--prefix", cls.work / "first"])
        cls.prefix = (cls.work / "first").rename(cls.work / "moved")
        cls.include = cls.prefix / "include"
        cls.library = cls.prefix / "lib"
        cls.module = cls.library / "corvinex" / "corvinex.so"

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def headers(self):
        return sorted(self.include.rglob("*.h"))

    def check_examples(self, folder, **variables):
        """The examples run, and print what they are made to tell."""
        def printed(name, *words):
            return run([folder / name, *words], **variables)

        self.assertIn("0.Model: EO-1\n", printed("read_tags", "samples/photo.jpg"))
        self.assertIn('"samples/photo.jpg",ok,16,16,2,"EO-1","2024-03-05T14:07:09.042"\n',
                      printed("catalogue", "samples"))
        pages = "samples/pages-big-endian.tif"
        self.assertEqual(printed("call_module", self.module, pages), "48\n32\n16\n")
        self.assertTrue(printed("other-host", self.module, pages).startswith(
            '{"output":{"class":"struct","size":[3,1],'))

    def test_the_tool_finds_its_module_after_the_prefix_has_moved(self):
        self.assertIn("Directory 1 of 3", run([self.prefix / "bin/corvinex", "show",
                                               "samples/pages-big-endian.tif"]))

    def test_only_the_tool_names_a_search_path_and_only_that_of_the_libraries(self):
        paths = {}
        for path in [*self.library.glob("*.so"), self.module, self.prefix / "bin/corvinex"]:
            paths[path.name] = dynamic_texts(path, "RUNPATH") + dynamic_texts(path, "RPATH")
        self.assertEqual(paths, {"corvinex": ["$ORIGIN/../lib"], "corvinex.so": [],
                                 "libcorvinex-host.so": [], "libcorvinex-inspect.so": []})

    def test_each_library_has_a_name_with_its_binary_version(self):
        for name in ("host", "inspect"):
            library = f"libcorvinex-{name}.so"
            self.assertEqual(dynamic_texts(self.library / library, "SONAME"), [f"{library}.0"])
            self.assertTrue((self.library / f"{library}.0").exists())

    def test_a_program_of_both_libraries_has_one_memory_for_icu(self):
        program = self.work / "both"
        source = self.work / "both.cpp"
        source.write_text("int main() {}\n", encoding="utf-8")
        run([COMPILER, source, "-o", program, "-Wl,--no-as-needed",
             *(self.library / f"libcorvinex-{name}.so" for name in ("inspect", "host"))])
        told = run([program], LD_DEBUG="bindings", LD_LIBRARY_PATH=str(self.library))
        bound = re.findall(r"binding file (\S+) \[0\] to (\S+) \[0\]: normal symbol `_ZN8corvinex9IcuMemory", told)
        self.assertEqual(len({user for user, _ in bound}), 2, told[-2000:])
        self.assertEqual(len({giver for _, giver in bound}), 1)

    def test_installed_headers_include_installed_headers_only(self):
        for header in self.headers():
            for name in re.findall(r'^#include "(.*)"', header.read_text(encoding="utf-8"), re.MULTILINE):
                self.assertTrue((self.include / name).is_file(), f"{header} includes {name}")

    def test_each_installed_header_compiles_by_itself(self):
        command = [COMPILER, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror",
                   "-I", self.include, "-x", "c++", "-include"]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            list(pool.map(lambda header: run([*command, header, os.devnull]), self.headers()))

    def test_the_examples_are_built_by_cmake_and_run(self):
        build = self.work / "examples"
        run(["cmake", "-S", ROOT / "examples", "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}",
             f"-DCMAKE_CXX_COMPILER={COMPILER}"])
        run(["cmake", "--build", build, "--parallel"])
        self.check_examples(build)

    def test_a_project_that_asks_for_the_inspection_alone_needs_no_boost(self):
        project = self.work / "inspection"
        project.mkdir()
        (project / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\nproject(inspection LANGUAGES CXX)\n"
            "find_package(corvinex REQUIRED COMPONENTS inspect)\n"
            f"add_executable(read_tags {ROOT}/examples/read_tags.cpp)\n"
            "target_link_libraries(read_tags PRIVATE corvinex::inspect)\n", encoding="utf-8")
        run(["cmake", "-S", project, "-B", project / "build", f"-DCMAKE_PREFIX_PATH={self.prefix}",
             f"-DCMAKE_CXX_COMPILER={COMPILER}", "-DCMAKE_DISABLE_FIND_PACKAGE_Boost=ON"])
        run(["cmake", "--build", project / "build"])
        self.assertIn("0.Model: EO-1\n", run([project / "build/read_tags", "samples/photo.jpg"]))

    def test_the_license_and_the_pages_for_users_are_installed(self):
        pages = {path.name for path in (self.prefix / "share/doc/corvinex").iterdir()}
        self.assertLessEqual({"LICENSE", "hosts.md", "schema.json", "tool.md"}, pages)

    def test_the_examples_are_built_by_pkg_config_and_run(self):
        paths = {"PKG_CONFIG_PATH": str(self.library / "pkgconfig")}
        build = self.work / "programs"
        build.mkdir()
        sources = {"read_tags": "inspect", "catalogue": "inspect", "call_module": "host"}
        for name, library in sources.items():
            flags = run(["pkg-config", "--cflags", "--libs", f"corvinex-{library}"], **paths).split()
            run([COMPILER, "-std=c++20", "-o", build / name, ROOT / f"examples/{name}.cpp", *flags])
        flags = run(["pkg-config", "--cflags", "corvinex-host"], **paths).split()
        run([COMPILER, "-std=c++20", "-rdynamic", "-I", ROOT, "-o", build / "other-host",
             *(ROOT / "examples/other-host").glob("*.cpp"), *flags, "-ldl"])
        module = run(["pkg-config", "--variable=module", "corvinex-host"], **paths).strip()
        self.assertTrue(self.module.samefile(module))
        self.check_examples(build, LD_LIBRARY_PATH=str(self.library))


unittest.main(argv=sys.argv[:1])
