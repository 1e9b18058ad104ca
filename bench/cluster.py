#!/usr/bin/env python3
"""Measures scans on a local cluster of one and of two workers beside `corvinex scan` and `corvinex json`.

The files are hard links to those of small-tiff. What is compared runs in turn, round after round; figures are
medians. The scheduler lives in the process of the client, so that the client's processor time is that of the
engine but for what workers spend on it.
"""

import argparse
import os
import pathlib
import resource
import statistics
import sys
import tempfile
import time
from dataclasses import dataclass

from compare import MIB, Bench, Programs, print_table
from trees import make_tree

MERGE = "import sys; from corvinex import cluster; cluster.merge(sys.argv[1], sys.argv[2])"


@dataclass
class Figures:
    """What one run took, in seconds."""

    wall: float
    work: float  # CPU of the tool or the workers
    engine: float = 0.0  # CPU of client and scheduler
    peak: float = 0.0  # MiB of the tool, or of the largest worker


class ClusterBench:
    def __init__(self, build, inputs):
        self.bench = Bench(Programs(build, inputs))
        self.tool = str(build / "bin" / "corvinex")
        self.inputs = inputs
        self.rows = {}  # name: its runs

    def note(self, name, figures):
        self.rows.setdefault(name, []).append(figures)

    def run_tool(self, name, *command):
        self.run_program(name, self.tool, *command)

    def run_program(self, name, *command):
        run = self.bench.run([str(word) for word in command], counts=False)
        self.note(name, Figures(run.wall, run.cpu, peak=run.peak / MIB))

    def run_client(self, name, call, client):
        def usage_of_workers():
            usages = client.run(resource.getrusage, resource.RUSAGE_SELF).values()
            return sum(usage.ru_utime + usage.ru_stime for usage in usages), max(usage.ru_maxrss for usage in usages)

        before, _ = usage_of_workers()
        engine, wall = time.process_time(), time.perf_counter()
        result = call()
        wall, engine = time.perf_counter() - wall, time.process_time() - engine
        after, peak = usage_of_workers()
        self.note(name, Figures(wall, after - before, engine, peak / 1024))
        return result

    def scan_on_cluster(self, tree, folder, workers):
        from distributed import Client, LocalCluster

        from corvinex import cluster

        name = f"cluster, {workers} worker{'s' if workers > 1 else ''}"
        out = folder / f"out-{workers}"
        machines = LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                                dashboard_address="127.0.0.1:0", local_directory=str(folder / "workers"))
        with machines, Client(machines) as client:
            cluster.scan(self.inputs / "small-tiff", client, folder / f"warm-{workers}")  # imports and caches
            manifest = self.run_client(name, lambda: cluster.scan(tree, client, out), client)
            self.run_client(f"{name}, again", lambda: cluster.scan(tree, client, out), client)
            self.run_client(f"{name}, again, lengths only",
                            lambda: cluster.scan(tree, client, out, verify=False), client)
        if workers == 1:
            self.run_program("merge", sys.executable, "-c", MERGE, out, folder / "merged.sqlite")
        return manifest

    def measure(self, tree, rounds):
        manifest = None
        for _ in range(rounds):
            with tempfile.TemporaryDirectory(dir=self.inputs) as name:
                folder = pathlib.Path(name)
                for jobs in (1, 2):
                    self.run_tool(f"scan -j {jobs}", "scan", "-q", "-j", jobs, tree, "-o", folder / f"{jobs}.sqlite")
                self.run_tool("json --max-values 64 -j 1", "json", "-q", "-j", 1, "--max-values", 64, tree)
                for workers in (1, 2):
                    manifest = self.scan_on_cluster(tree, folder, workers)
                sizes = [path.stat().st_size for path in (folder / "out-2" / "parts").iterdir()]
        return manifest, sum(sizes)

    def table(self, records):
        for name, runs in self.rows.items():
            wall, work, engine, peak = (statistics.median(getattr(run, figure) for run in runs)
                                        for figure in ("wall", "work", "engine", "peak"))
            yield [name, f"{wall:.2f}", f"{records / wall:,.0f}", f"{work:.2f}", f"{engine:.2f}", f"{peak:.0f}"]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, required=True, help="the build folder")
    parser.add_argument("--inputs", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--copies", type=int, default=4, help="of the 5,000 files of small-tiff")
    arguments = parser.parse_args()
    if not (arguments.inputs / "small-tiff.list").exists():
        sys.exit("scripts/bench makes the inputs")
    package = str(arguments.build.resolve() / "python")
    sys.path.insert(0, package)
    os.environ["PYTHONPATH"] = package  # of the workers
    inputs = arguments.inputs.resolve()
    measured = ClusterBench(arguments.build.resolve(), inputs)
    tree = make_tree(inputs, f"tree-{arguments.copies * 5}k", arguments.copies)
    manifest, size = measured.measure(tree, arguments.rounds)
    counts = manifest.counts
    print(f"{counts.records:,} files, {counts.tags:,} tags, {len(manifest.parts)} parts of {size:,} bytes in all\n")
    print_table(["run", "wall s", "records/s", "CPU s of the work", "CPU s of the engine", "peak MiB"],
                list(measured.table(counts.records)))


if __name__ == "__main__":
    main()
