"""Obstacles: where a file is to be made, there is a folder with something in it."""
import shutil

import states
from bench import Point, Row

GATE = "obstacles"
SHORT = 1


def rows(bench):
    return [Row(f"{path.name}/obstacle", GATE, lambda path=path: points(bench, path))
            for path in bench.paths(quick=False) if path.keeps_old]


def points(bench, path):
    known = bench.known(path)
    changed = [name for name, content in sorted(known.new.items())
               if content not in (states.FOLDER, known.old.get(name)) and states.is_real(name)]
    return bench.sample([Point(name, lambda name=name: examine(bench, path, name)) for name in changed],
                        SHORT, f"{path.name}/obstacle", path.most)


def examine(bench, path, name):
    """The command fails, the folder stays, and when it is away, the command does its work."""
    known = bench.known(path)
    with bench.folders.copy_of(known.prepared) as folder:
        (folder / name).unlink(missing_ok=True)
        (folder / name).mkdir(parents=True)
        (folder / name / "kept.txt").write_text("kept")
        outcome = bench.program.run(known.command, folder)
        if (fault := bench.fault_of_outcome(outcome)) is not None:
            return fault
        if outcome.code == 0:
            return f"exit code 0: {outcome.last_line()}"
        if not (folder / name / "kept.txt").is_file():
            return "the folder was removed"
        shutil.rmtree(folder / name)
        # What may be missing is gone with the folder that stood in its place.
        if name in known.old and name not in path.missing:
            shutil.copy2(known.prepared / name, folder / name)
        return bench.fault_of_state(path, folder, outcome) or bench.fault_of_repetition(path, folder)
