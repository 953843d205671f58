"""What every class of faults needs: prepared folders, known states, and the examination of one run with a fault."""
import collections
import random
import shutil
import threading
from collections.abc import Callable
from dataclasses import dataclass, field

import runs
import states
from paths import PATHS


# What the run of a point returns when there was no such call this time. Threads make that differ.
NOT_MET = "not met"


@dataclass(frozen=True)
class Point:
    """One place at which something goes wrong. `run` returns what was wrong afterwards, or None, or NOT_MET."""

    label: str
    run: Callable


@dataclass
class Row:
    """All points of one class of faults on one write path. A row that cannot run here says why in `left_out`."""

    name: str
    gate: str
    points: Callable = list
    left_out: str = ""


@dataclass
class Known:
    """What a path does when nothing goes wrong."""

    old: dict
    new: dict
    counts: dict
    command: list
    prepared: object = field(repr=False)


class Bench:
    """The program, the workshop and the folders, shared by all rows."""

    def __init__(self, program, workshop, work, arguments, own_mounts):
        self.program = program
        self.workshop = workshop
        self.work = work
        self.folders = runs.Folders(work)
        self.long = not arguments.short
        self.thorough = arguments.thorough
        self.own_mounts = own_mounts
        self._known = {}
        self._locks = collections.defaultdict(threading.Lock)

    def command_of(self, path):
        return [word.format(**self.workshop.addresses()) for word in path.command]

    def paths(self, quick=True):
        """The paths of a class of faults. The short form has the quick ones, and of the slow ones those that stand for
        the others, but not under each class (`quick`)."""
        return [path for path in PATHS if self.long or not path.is_window or (quick and path.in_short)]

    def known(self, path):
        """The states before and after a path, and its calls; measured once."""
        with self._locks[path.name]:
            if path.name not in self._known:
                self._known[path.name] = self._measure(path)
            return self._known[path.name]

    def state(self, path, folder):
        state = states.state_of(folder) if path.keeps_old else states.names_of(folder)
        return {name: content for name, content in state.items() if name not in path.aside}

    def sample(self, points, short, seed, most=None):
        """All points in the long form, or the `most` of a slow path; in the short form some, the same each time."""
        count = short if not self.long else len(points) if most is None or self.thorough else most
        if len(points) <= count:
            return points
        chosen = random.Random(seed).sample(range(len(points)), count)
        return [points[index] for index in sorted(chosen)]

    def points_of(self, path, faults, short, sort):
        """Points that examine a path with each of these faults."""
        points = [Point(str(fault), lambda fault=fault: self.examine(path, fault)) for fault in faults]
        return self.sample(points, short if path.most is None else 1, f"{path.name}/{sort}", path.most)

    def examine(self, path, fault):
        """Runs a path with a fault and again without one; says what was wrong."""
        known = self.known(path)
        with self.folders.copy_of(known.prepared) as folder:
            outcome = self.program.run_counted(known.command, folder, fault)
            killed = fault.effect.startswith("kill")
            wrong = (self.fault_of_outcome(outcome, killed) or
                     self.fault_of_state(path, folder, outcome, told_late=fault.kind == "allocate",
                                         may_be_torn=path.in_place and (killed or fault.times == "on")) or
                     self.fault_of_repetition(path, folder))
            return wrong or (None if outcome.counts[fault.kind] >= fault.number else NOT_MET)

    def fault_of_outcome(self, outcome, killed=False):
        """A program ends by itself, and says why when it fails."""
        if killed and outcome.code == runs.KILLED:
            return None
        if (crash := outcome.crash()) is not None:
            return crash
        if outcome.code != 0 and not outcome.lines():
            return f"ended with {outcome.code} without a word"
        return None

    def fault_of_state(self, path, folder, outcome, told_late=False, may_be_torn=False):
        """Each file is as it was or as it is to be, and all of them are as they are to be when the program says so.

        Files that are to go may stay where the program says that it could not remove them.
        With `told_late` a failure may come after the deed, when only its report is missing. With `may_be_torn`, what
        is left of a failure says nothing: the repetition tells whether all of it was kept.
        """
        known = self.known(path)
        now = self.state(path, folder)
        torn = [name for name in states.torn(now, known.old, known.new) if name in now or name not in path.missing]
        if may_be_torn and outcome.code != 0:
            return None
        if path.keeps_old and torn:
            return f"neither old nor new: {', '.join(torn)} ({outcome.last_line()})"
        done = told_late and not states.missing(now, known.old, known.new)
        if path.whole and not done and outcome.code not in (0, runs.KILLED) and \
                (new := states.missing(now, known.new, known.old)):
            return f"exit code {outcome.code}, but not all is as it was: {', '.join(new)} ({outcome.last_line()})"
        if outcome.code == 0 and (missing := states.missing(now, known.old, known.new)) and \
                not (outcome.says("could not be removed") and all(map(states.is_only_left, missing))):
            return f"exit code 0, but not done: {', '.join(missing)} ({outcome.last_line()})"
        return None

    def fault_of_repetition(self, path, folder):
        """The same command without a fault does the whole work and leaves no litter."""
        known = self.known(path)
        had_all = not states.missing(self.state(path, folder), known.old, known.new)
        outcome = self.program.run(known.command, folder)
        if outcome.code not in (path.done_codes if had_all else (0,)):
            return f"a repetition ended with {outcome.code}: {outcome.last_line()}"
        now = self.state(path, folder)
        if missing := states.missing(now, known.old, known.new):
            return f"not complete after a repetition: {', '.join(missing)}"
        if left := states.litter(now, known.old, known.new):
            return f"litter after a repetition: {', '.join(left)}"
        return None

    def _measure(self, path):
        prepared = self.work / f"prepared {path.name}"
        shutil.rmtree(prepared, ignore_errors=True)
        (prepared / "tmp").mkdir(parents=True)
        path.prepare(self.workshop, prepared)
        command = self.command_of(path)
        old = self.state(path, prepared)
        new, outcome = self._without_fault(path, prepared, command)
        again, _ = self._without_fault(path, prepared, command)
        if new != again:
            changing = sorted(name for name in {*new, *again} if new.get(name) != again.get(name))
            raise RuntimeError(f"{path.name}: two runs without a fault differ in {', '.join(changing)}")
        if outcome.counts["change"] == 0:
            raise RuntimeError(f"{path.name}: the shim saw no call")
        if old == new:
            raise RuntimeError(f"{path.name}: changes nothing")
        return Known(old, new, outcome.counts, command, prepared)

    def _without_fault(self, path, prepared, command):
        with self.folders.copy_of(prepared) as folder:
            outcome = self.program.run_counted(command, folder)
            if outcome.code != 0:
                raise RuntimeError(f"{path.name}: ended with {outcome.code} without a fault: {outcome.last_line()}")
            return self.state(path, folder), outcome
