"""Kills: the program dies before and after each call that changes a file, and in the middle of what it writes."""
import runs
from bench import Row

GATE = "kill points"
SHORT = 4


def rows(bench):
    return [Row(f"{path.name}/kill", GATE, lambda path=path: points(bench, path)) for path in bench.paths()]


def points(bench, path):
    counts = bench.known(path).counts
    faults = [runs.Fault("change", number, effect)
              for number in range(1, counts["change"] + 1) for effect in ("kill-before", "kill-after")]
    faults += [runs.Fault(kind, number, "kill-half")
               for kind in ("write", "copy") for number in range(1, counts[kind] + 1)]
    return bench.points_of(path, faults, SHORT, "kill")
