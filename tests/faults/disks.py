"""Full disks: the whole run lies on a small file system of its own, which has so much room and no more."""
import contextlib
import os
import shutil
import subprocess

from bench import Point, Row

GATE = "full disks"
SHORT = 1
PAGE = 4096

# What the program leaves free on a disk for others; below it, it may refuse to begin.
RESERVE = 256 << 20
PLENTY = 1 << 30

PAGES = (*range(0, 12), *range(12, 40, 4), 60, 100)


def rows(bench):
    reason = "" if bench.own_mounts else "this machine lets the harness mount nothing (unshare -rm)"
    return [Row(f"{path.name}/disk", GATE, lambda path=path: points(bench, path), reason) for path in bench.paths(quick=False)]


def points(bench, path):
    sizes = [room + pages * PAGE for room in (0, RESERVE) for pages in PAGES]
    return bench.sample([Point(f"{size} bytes free", lambda size=size: examine(bench, path, size)) for size in sizes],
                        SHORT, f"{path.name}/disk", path.most)


def examine(bench, path, size):
    """Runs a path on a full disk, and again when there is room."""
    known = bench.known(path)
    with bench.folders.copy_of(known.prepared) as folder, small_disk(folder, known.prepared):
        leave_free(folder, size)
        outcome = bench.program.run(known.command, folder)
        leave_free(folder, PLENTY)
        return (bench.fault_of_outcome(outcome) or bench.fault_of_state(path, folder, outcome) or
                bench.fault_of_repetition(path, folder))


@contextlib.contextmanager
def small_disk(folder, prepared):
    subprocess.run(["mount", "-t", "tmpfs", "tmpfs", folder], check=True)
    try:
        shutil.copytree(prepared, folder, symlinks=True, dirs_exist_ok=True)
        yield
    finally:
        subprocess.run(["umount", "-l", folder], check=True)


def leave_free(folder, size):
    disk = os.statvfs(folder)
    used = (disk.f_blocks - disk.f_bfree) * disk.f_frsize
    # Without a limit to the number of files, which goes by the size otherwise.
    subprocess.run(["mount", "-o", f"remount,size={max(used + size, PAGE)},nr_inodes=0", folder], check=True)
