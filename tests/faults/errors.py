"""Injected errors: each call on a file fails, once and from then on, with each error that such a call may have."""
import runs
from bench import Row

GATE = "injected errors"
SHORT = 4

# What may happen to which kind of call. A call that is interrupted, or that takes half of the bytes, is not a failure.
ERRORS = {
    "open": ("EACCES", "EIO", "EMFILE"),
    "read": ("EIO", "half"),
    "create": ("ENOSPC", "EIO", "EACCES"),
    "write": ("ENOSPC", "EIO", "half"),
    "copy": ("ENOSPC", "EIO", "EXDEV", "half"),
    "truncate": ("EIO",),
    "sync": ("ENOSPC", "EIO"),
    "rename": ("ENOSPC", "EIO", "EACCES", "EXDEV"),
    "remove": ("EIO", "EACCES"),
    "folder": ("ENOSPC", "EIO", "EACCES"),
    "mode": ("EACCES", "EIO"),
    "lock": ("EIO",),
}

# Only once: a program that is interrupted for ever may try for ever.
INTERRUPTED = ("open", "read", "create", "write", "copy", "truncate", "sync", "lock")


def rows(bench):
    return [Row(f"{path.name}/error", GATE, lambda path=path: points(bench, path)) for path in bench.paths()]


def points(bench, path):
    counts = bench.known(path).counts
    faults = [runs.Fault(kind, number, error, times)
              for kind, errors in ERRORS.items() for number in range(1, counts[kind] + 1)
              for error in errors for times in ("once", "on")]
    faults += [runs.Fault(kind, number, "EINTR") for kind in INTERRUPTED for number in range(1, counts[kind] + 1)]
    return bench.points_of(path, faults, SHORT, "error")
