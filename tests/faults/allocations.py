"""Failed allocations, once and from then on.

Most of a program's allocations happen before it does anything, so those are tried here and there, and those of the
work itself more closely.

Of the window, only what its workers allocate fails. Its first thread opens, lays out and paints widgets, and there the
libraries below Qt end by a signal where they get no memory: fontconfig while it reads its configuration, and the font
engines whenever a text is drawn that needs another one. One allocation of Qt's is spared everywhere, by the library
that is preloaded: that for the list of an object's connections, which Qt takes for granted.
"""
import runs
from bench import Row

GATE = "failed allocations"
SHORT = 3
BEFORE_THE_WORK = 20
OF_THE_WORK = 80

# Paths whose memory is used by a library that does not survive its lack.
DRAWS = "it draws the sample's pictures, and Qt's painter and writer of PNG files crash without memory"
LEFT_OUT = {"catalog sample": DRAWS, "tour": DRAWS}


def rows(bench):
    return [Row(f"{path.name}/allocation", GATE, lambda path=path: points(bench, path), LEFT_OUT.get(path.name, ""))
            for path in bench.paths(quick=False)]


def points(bench, path):
    known = bench.known(path)
    with bench.folders.copy_of(known.prepared) as folder:
        stopped = bench.program.run_counted(known.command, folder, runs.Fault("change", 1, "kill-before"))
    begin, end = stopped.counts["allocate"], known.counts["allocate"]
    numbers = spread(1, begin, BEFORE_THE_WORK) + spread(begin + 1, end, OF_THE_WORK)
    faults = [runs.Fault("allocate", number, "ENOMEM", times) for number in numbers for times in ("once", "on")]
    return bench.points_of(path, faults, SHORT, "allocation")


def spread(first, last, count):
    """At most `count` numbers from first to last, evenly spread."""
    step = max(1.0, (last - first + 1) / count)
    return [first + int(index * step) for index in range(count) if first + int(index * step) <= last]
