"""Running the program: once, in a folder of its own, with or without a fault."""
import contextlib
import itertools
import os
import pathlib
import shutil
import struct
import subprocess
from dataclasses import dataclass, field

# The kinds of calls in the order of the shim's counters. From "create" to "lock" they change files.
KINDS = ("open", "read", "create", "write", "copy", "truncate", "sync", "rename", "remove", "folder", "mode", "lock",
         "allocate", "change")
CHANGES = KINDS[KINDS.index("create") : KINDS.index("allocate")]

KILLED = -9

# The window said neither that it was done nor what went wrong.
SILENT = 14

# Begins a command for the window.
WINDOW = "velk-browser"

# Begins a command for velk that even root runs with no more than a user's right to write.
HUMBLE = "humble"
USERS_RIGHTS = ("setpriv", "--bounding-set=-dac_override,-dac_read_search")
SECONDS = 40

# What Qt's platform without a screen always says.
NOISE = "This plugin does not support propagateSizeHints()"

# What a program must never say.
CRASHES = ("terminate called", "what():", "Sanitizer", "runtime error:", "Assertion", "core dumped", "corrupted")


@dataclass(frozen=True)
class Fault:
    """What is to happen at one call; see shim/Plan.h."""

    kind: str
    number: int
    effect: str
    times: str = "once"

    def __str__(self):
        return f"{self.kind}:{self.number}:{self.effect}:{self.times}"


@dataclass
class Outcome:
    """How a run ended. `code` is negative for a signal and None when it did not end in time."""

    code: int | None
    said: str
    reported: str
    counts: dict = field(default_factory=dict)
    seconds: int = SECONDS

    def crash(self):
        """What shows that the program did not end by itself, or None."""
        if self.code is None:
            return f"did not end within {self.seconds} seconds"
        if self.code < 0:
            return f"ended by signal {-self.code}: {self.last_line()}"
        if self.code == SILENT:
            return f"the window said neither that it was done nor what failed: {self.last_line()}"
        return next((f"said: {line}" for line in self.lines() if any(word in line for word in CRASHES)), None)

    def lines(self):
        return [line for line in (self.said + self.reported).splitlines() if line.strip() and line != NOISE]

    def says(self, words):
        return any(words in line for line in self.lines())

    def last_line(self):
        return (self.lines() or ["(nothing was said)"])[-1]


class Program:
    """The programs under test with the shim that goes before them.

    A command's first word may be WINDOW: then the rest is for the window with a hand in it. Otherwise it is for velk,
    without the first word if that is HUMBLE.
    """

    def __init__(self, path, window, shim, work):
        self.path = str(pathlib.Path(path).resolve())
        self.window = str(pathlib.Path(window).resolve())
        self.shim = str(pathlib.Path(shim).resolve())
        self.work = pathlib.Path(work)
        self._desktop = self.work / "desktop"
        self._desktop.mkdir(mode=0o700)
        self._numbers = itertools.count()

    def environment(self, folder):
        """Everything that a run may write lies below `folder`, but for what the desktop's own libraries keep. Qt does
        without GLib, which ends the program by itself where it gets no memory.
        """
        kept = {name: os.environ[name] for name in ("PATH", "LD_LIBRARY_PATH") if name in os.environ}
        desktop = {f"XDG_{name}": str(self._desktop)
                   for name in ("CACHE_HOME", "CONFIG_HOME", "DATA_HOME", "RUNTIME_DIR")}
        desktop |= {"QT_QPA_PLATFORM": "offscreen", "QT_NO_GLIB": "1"}
        return kept | desktop | {"TMPDIR": f"{folder}/tmp", "HOME": f"{folder}/user", "VELK_HOME": f"{folder}/home",
                                 "LANG": "C.UTF-8", "LC_ALL": "C.UTF-8"}

    def words(self, command):
        """What starts the command's program."""
        first, *words = command
        if first == WINDOW:
            return [self.window, *words]
        if first == HUMBLE:
            return [*(USERS_RIGHTS if os.geteuid() == 0 else ()), self.path, *words]
        return [self.path, *command]

    def run(self, command, folder):
        """Runs `command` in `folder`, with nothing in between."""
        return self._run(command, folder, {})

    def run_counted(self, command, folder, fault=None):
        """Runs it with the shim and perhaps a fault. The outcome has the number of calls of each kind."""
        counts = self.work / f"counts-{next(self._numbers)}"
        counts.write_bytes(bytes(4 * len(KINDS)))
        variables = {"VELK_FAULT_COUNTS": str(counts)} | ({} if fault is None else {"VELK_FAULT": str(fault)})
        # Qt's painting does not survive a lack of memory; see allocations.py.
        variables |= {"VELK_FAULT_MEMORY": "workers"} if command[0] == WINDOW else {}
        outcome = self._run(command, folder, variables)
        outcome.counts = dict(zip(KINDS, struct.unpack(f"={len(KINDS)}I", counts.read_bytes())))
        counts.unlink()
        return outcome

    def start(self, command, folder, before=()):
        """A process that is not waited for; `before` are words that start another one."""
        return subprocess.Popen([*before, *self.words(command)], cwd=folder, env=self.environment(folder),
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                errors="replace")

    def run_together(self, commands, folder):
        """The outcomes of runs that begin at the same moment."""
        waiting = ("sh", "-c", 'read -r line; exec "$@"', "sh")
        processes = [self.start(command, folder, waiting) for command in commands]
        for process in processes:
            process.stdin.write("go\n")
            process.stdin.flush()
        return [finished(process) for process in processes]

    def _run(self, command, folder, variables):
        environment = self.environment(folder) | variables
        if variables:
            environment |= {"LD_PRELOAD": self.shim, "VELK_FAULT_BELOW": str(folder)}
        try:
            run = subprocess.run(self.words(command), cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                                 capture_output=True, text=True, errors="replace", timeout=SECONDS)
        except subprocess.TimeoutExpired as late:
            return Outcome(None, _text(late.stdout), _text(late.stderr))
        return Outcome(run.returncode, run.stdout, run.stderr)


def finished(process, seconds=SECONDS):
    """The outcome of a process from Program.start()."""
    try:
        said, reported = process.communicate(timeout=seconds)
    except subprocess.TimeoutExpired:
        process.kill()
        said, reported = process.communicate()
        return Outcome(None, said, reported, seconds=seconds)
    return Outcome(process.returncode, said, reported)


class Folders:
    """Folders for runs, each a copy of a prepared one, gone after the run."""

    def __init__(self, work):
        self._work = pathlib.Path(work)
        self._numbers = itertools.count()

    @contextlib.contextmanager
    def copy_of(self, prepared):
        folder = self._work / f"run-{next(self._numbers)}"
        shutil.copytree(prepared, folder, symlinks=True)
        try:
            yield folder
        finally:
            shutil.rmtree(folder, ignore_errors=True)


def _text(output):
    return (output or b"").decode(errors="replace")
