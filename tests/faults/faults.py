#!/usr/bin/env python3
"""Lets everything go wrong that can, and looks what is left.

    faults.py --program velk --window velk_driven_window --shim libvelk_fault_shim.so
              [--short] [--only PATTERN] [--point N]

Each row of the report is a write path of the program (paths.py) under a class of faults (kills.py, errors.py and so
on). A path first runs without a fault, which shows its old state, its new state, and its calls. Then it runs once
with each fault. Whatever happens, each file is as it was or as it is to be; exit code 0 means that all of it is
done; the same command without a fault then does the rest, and leaves nothing behind; and no fault makes the
program crash. Status 1 when a row has failures, or when the long form has fewer points than it is to have.
"""
import argparse
import concurrent.futures
import contextlib
import fnmatch
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import traceback

import allocations
import archives
import bench
import crowds
import disks
import errors
import kills
import obstacles
import paths
import runs
import services

CLASSES = (kills, errors, allocations, disks, obstacles, crowds, services, archives)

# How many points of each sort there are to be in the long form.
GATES = {kills.GATE: 1140, errors.GATE: 4140, allocations.GATE: 4140, services.GATE: 170, archives.GATE: 390,
         crowds.GATE: 50}
PATHS_GATE = 31

# Set in the process that may mount.
OWN_MOUNTS = "VELK_FAULTS_OWN_MOUNTS"


def main():
    arguments = parse_arguments()
    if OWN_MOUNTS not in os.environ and may_mount():
        os.environ[OWN_MOUNTS] = "1"
        os.execvp("unshare", ["unshare", "-rm", sys.executable, *sys.argv])
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # not without ending what was started
    # A shell ignores it for what runs in the background, and what is started here would, too.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    with work_folder(arguments.work) as work:
        program = runs.Program(arguments.program, arguments.window, arguments.shim, work)
        workshop = paths.Workshop(program, work / "workshop")
        try:
            the_bench = bench.Bench(program, workshop, work, arguments, OWN_MOUNTS in os.environ)
            failed = run_rows(the_bench, arguments)
        finally:
            workshop.close()
    sys.exit(1 if failed else 0)


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", required=True, help="the program under test")
    parser.add_argument("--window", required=True, help="the window with a hand in it")
    parser.add_argument("--shim", required=True, help="the library to preload")
    parser.add_argument("--short", action="store_true", help="some points of each row, the same each time")
    parser.add_argument("--only", default="*", metavar="PATTERN", help="rows of these names, such as 'unpack/*'")
    parser.add_argument("--point", type=int, metavar="N", help="only the point of this number")
    parser.add_argument("--thorough", action="store_true", help="all points of the slow paths, too")
    parser.add_argument("--all", action="store_true", help="show each failure instead of the first three of a row")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="runs at a time")
    parser.add_argument("--work", help="the folder to work in")
    return parser.parse_args()


def may_mount():
    try:
        return subprocess.run(["unshare", "-rm", "mount", "-t", "tmpfs", "tmpfs", tempfile.gettempdir()],
                              capture_output=True).returncode == 0
    except FileNotFoundError:
        return False


@contextlib.contextmanager
def work_folder(parent):
    """A folder in memory where that can be had, as the paths sync what they write."""
    folder = pathlib.Path(tempfile.mkdtemp(prefix="velk-faults-", dir=parent))
    if OWN_MOUNTS in os.environ:
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=4g", "tmpfs", folder], check=True)
    try:
        yield folder
    finally:
        if OWN_MOUNTS in os.environ:
            subprocess.run(["umount", "-l", folder], check=True)
        shutil.rmtree(folder, ignore_errors=True)


def run_rows(the_bench, arguments):
    """Whether anything failed. All points of all rows wait for one pool, so that no processor waits for a row's end."""
    report = Report(arguments)
    rows = [row for faults in CLASSES for row in faults.rows(the_bench)
            if fnmatch.fnmatchcase(row.name, arguments.only)]
    pool = concurrent.futures.ThreadPoolExecutor(arguments.jobs)
    try:
        points = [pool.submit(points_of, row, arguments.point) for row in rows]
        results = [[(number, point.label, pool.submit(run_point, point)) for number, point in numbered.result()]
                   for numbered in points]
        for row, result in zip(rows, results):
            report.add(row, [(number, label, run.result()) for number, label, run in result])
    finally:
        pool.shutdown(cancel_futures=True)
    return report.finish(complete=the_bench.long and arguments.only == "*" and arguments.point is None)


def points_of(row, only):
    """The points of a row with their numbers. A path that fails without a fault is a point that fails."""
    if row.left_out:
        return []
    try:
        return [(number, point) for number, point in enumerate(row.points(), 1) if only in (None, number)]
    except RuntimeError as error:
        return [(1, bench.Point("before any fault", lambda reason=str(error): reason))]


def run_point(point):
    try:
        return point.run()
    except Exception:
        return f"the harness failed: {traceback.format_exc().strip().splitlines()[-1]}"


class Report:
    """Prints each row when it is done, and the totals at the end."""

    def __init__(self, arguments):
        self._short = arguments.short
        self._shown = sys.maxsize if arguments.all else 3
        self._started = time.monotonic()
        self._points = {}
        self._paths = set()
        self._failures = 0
        self._left_out = 0

    def add(self, row, results):
        if row.left_out:
            self._left_out += 1
            print(f"{row.name:36} LEFT OUT: {row.left_out}", flush=True)
            return
        met = [result for result in results if result[2] != bench.NOT_MET]
        failures = [result for result in met if result[2] is not None]
        self._points[row.gate] = self._points.get(row.gate, 0) + len(met)
        self._paths.add(row.name.split("/")[0])
        self._failures += len(failures)
        print(f"{row.name:36} {len(met):5} points {len(met) - len(failures):5} passed {len(failures):5} failed"
              f"{f' {len(results) - len(met):5} not met' if len(met) < len(results) else ''}", flush=True)
        for number, label, failure in failures[: self._shown]:
            print(f"    {number:5}  {label}: {failure}")
            print(f"           ./dev faults {'--short ' * self._short}--only '{row.name}' --point {number}", flush=True)

    def finish(self, complete):
        """Whether anything failed. The gates count where all rows of the long form ran."""
        print()
        for gate, points in self._points.items():
            wanted = f" of at least {GATES[gate]}" if complete and gate in GATES else ""
            print(f"{points:6} {gate}{wanted}")
        few = complete and (len(self._paths) < PATHS_GATE or
                            any(self._points.get(gate, 0) < wanted for gate, wanted in GATES.items()))
        print(f"{self._failures:6} failures, {self._left_out} rows left out"
              f"{', and fewer points than there are to be' * few}; {time.monotonic() - self._started:.0f} s")
        return self._failures > 0 or few


if __name__ == "__main__":
    main()
