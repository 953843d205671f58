"""Processes side by side: sixteen at once do the same kind of work in one place, and no work gets lost."""
import json
import shutil
import zipfile
from collections.abc import Callable
from dataclasses import dataclass

import states
from bench import Point, Row
from paths import PATHS, SETTINGS, after, installed
from runs import WINDOW

GATE = "rounds of processes side by side"
CROWD = range(16)
ROUNDS = 50
SHORT = 1

BY_NAME = {path.name: path for path in PATHS}


@dataclass(frozen=True)
class Crowd:
    """What sixteen processes do at once. `lost` says what of their work is not there afterwards.

    `refusals` are exit codes of those who came too late and say so; one at least does the work.
    """

    name: str
    command: Callable
    lost: Callable
    prepare: Callable = lambda workshop, folder: None
    results: tuple = ()
    refusals: tuple = ()


def rows(bench):
    return [Row(f"{crowd.name}/crowd", GATE, lambda crowd=crowd: points(bench, crowd)) for crowd in CROWDS]


def points(bench, crowd):
    prepared = bench.work / f"prepared crowd {crowd.name}"
    prepared.mkdir()
    (prepared / "tmp").mkdir()
    crowd.prepare(bench.workshop, prepared)
    rounds = range(1, (ROUNDS if bench.long else SHORT) + 1)
    return [Point(f"round {number}", lambda: examine(bench, crowd, prepared)) for number in rounds]


def examine(bench, crowd, prepared):
    with bench.folders.copy_of(prepared) as folder:
        commands = [[word.format(**bench.workshop.addresses()) for word in crowd.command(number)] for number in CROWD]
        outcomes = bench.program.run_together(commands, folder)
        return (fault_of_outcomes(bench, crowd, outcomes) or crowd.lost(bench, folder) or
                fault_of_repetition(bench, crowd, commands[0], prepared, folder))


def fault_of_outcomes(bench, crowd, outcomes):
    for outcome in outcomes:
        if (fault := bench.fault_of_outcome(outcome)) is not None:
            return fault
        if outcome.code not in (0, *crowd.refusals):
            return f"one of them ended with {outcome.code}: {outcome.last_line()}"
    return None if any(outcome.code == 0 for outcome in outcomes) else "all of them were refused"


def fault_of_repetition(bench, crowd, command, prepared, folder):
    outcome = bench.program.run(command, folder)
    if outcome.code != 0:
        return f"another run ended with {outcome.code}: {outcome.last_line()}"
    if (lost := crowd.lost(bench, folder)) is not None:
        return f"after another run: {lost}"
    known = {*crowd.results, *states.state_of(prepared), "home/temp/"}
    if crowd.name in BY_NAME:
        known |= {*bench.known(BY_NAME[crowd.name]).new}
    left = states.litter(states.state_of(folder), known, {parent for name in known for parent in parents(name)})
    return f"litter: {', '.join(left)}" if left else None


def parents(name):
    parts = name.split("/")
    return ["/".join(parts[:count]) for count in range(1, len(parts))]


# ---- What may get lost -------------------------------------------------------------------------------------


def lost_state(name):
    """The path ends as if one process had done it alone."""
    def lost(bench, folder):
        known = bench.known(BY_NAME[name])
        missing = states.missing(states.state_of(folder), known.old, known.new)
        return f"not complete: {', '.join(missing)}" if missing else None
    return lost


def listed(bench, folder, *command):
    outcome = bench.program.run([*command, "--format", "json"], folder)
    return json.loads(outcome.said) if outcome.code == 0 else None


def difference(there, wanted):
    lost = sorted(set(wanted) - set(there))
    return f"{len(lost)} of {len(wanted)} are lost: {', '.join(lost)}" if lost else None


def lost_filters(bench, folder):
    found = listed(bench, folder, "filter", "list") or {"filters": []}
    return difference([one["name"] for one in found["filters"]], [f"Filter {number}" for number in CROWD])


def lost_libraries(bench, folder):
    found = listed(bench, folder, "filter", "show", "Kitchens") or {"libraries": []}
    return difference([one["id"] for one in found["libraries"]], [f"lib-{number}" for number in CROWD])


def lost_cards(bench, folder):
    found = listed(bench, folder, "manufacturer", "list") or {"manufacturers": []}
    return difference([one["name"] for one in found["manufacturers"]], [f"Maker {number}" for number in CROWD])


def lost_numbers(bench, folder):
    found = listed(bench, folder, "manufacturer", "list") or {"manufacturers": []}
    return difference([one["phone"] for one in found["manufacturers"]], [f"555 {number}" for number in CROWD])


def lost_textures(bench, folder):
    try:
        with zipfile.ZipFile(folder / "textures/House.zip") as archive:
            damaged, names = archive.testzip(), archive.namelist()
    except (zipfile.BadZipFile, OSError) as error:
        return f"the archive is damaged: {error}"
    return f"{damaged} is damaged" if damaged else difference(names, [f"wood-{number}.png" for number in CROWD])


def mixed_pair(bench, folder):
    """The catalog file and the archive of one library come from one edition."""
    for edition in ("old", "new"):
        if all(same_file(folder / "out" / name, bench.workshop.folder / edition / name)
               for name in ("Garden.calib", "Garden.zip")):
            return None
    return "the catalog file and the texture archive are of two editions"


def same_file(one, other):
    return states.content_of(one) == states.content_of(other)


# ---- The crowds --------------------------------------------------------------------------------------------


def sources(workshop, folder):
    for number in CROWD:
        with zipfile.ZipFile(folder / f"source-{number}.zip", "w") as archive:
            archive.writestr(f"wood-{number}.png", bytes([number]) * 3000)


def sources_and_target(workshop, folder):
    sources(workshop, folder)
    (folder / "textures").mkdir()
    shutil.copy2(workshop.folder / "old/Garden.zip", folder / "textures/House.zip")


def both_editions(workshop, folder):
    for edition in ("old", "new"):
        (folder / edition).mkdir()
        shutil.copy2(workshop.folder / edition / "Garden.calibz", folder / edition)


def of_path(name, refusals=()):
    """Sixteen processes on a write path, with the state before it."""
    path = BY_NAME[name]
    return Crowd(name, lambda number: path.command, lost_state(name), path.prepare, (), refusals)


def merging(number):
    return ("textures", "merge", f"source-{number}.zip", "textures/House.zip")


def shown_makers(workshop, folder):
    """Cards of makers, and a library with an item of each, by which a window shows them."""
    core = folder / "home/core"
    core.mkdir(parents=True)
    (folder / "Makers.csv").write_text("name;category;keywords\n" + "".join(
        f"chair {number};Seats;Maker-{number}\n" for number in CROWD))
    workshop.velk("catalog", "build", "Makers.csv", "-o", "home/core/Makers.calib", "--type", "core", "--id", "makers",
                  folder=folder)
    after(*(f"manufacturer edit {number + 1} --new --name Maker-{number}" for number in CROWD))(workshop, folder)


def mixed(window, command):
    """Four windows among twelve commands, all of the same work."""
    return lambda number: (WINDOW, *window(number)) if number % 4 == 0 else command(number)


FAILED_UPDATE = 6
NOT_PUBLISHED = 8

CROWDS = (
    Crowd("filters of one home", lambda number: ("filter", "add", f"Filter {number}", "--id", "lib-Kitchen"),
          lost_filters, results=("home/core/catalog_filters.json",)),
    Crowd("libraries of one filter", lambda number: ("filter", "add", "Kitchens", "--id", f"lib-{number}"),
          lost_libraries, results=("home/core/catalog_filters.json",)),
    Crowd("cards of one home", lambda number: ("manufacturer", "edit", str(number + 1), "--name", f"Maker {number}"),
          lost_cards, after(*(f"manufacturer edit {number + 1} --new --name New" for number in CROWD))),
    Crowd("window and command: filters",
          mixed(lambda number: ("add filter", f"Filter {number}", "lib-Kitchen"),
                lambda number: ("filter", "add", f"Filter {number}", "--id", "lib-Kitchen")),
          lost_filters, installed("Kitchen"), ("home/core/catalog_filters.json", SETTINGS)),
    Crowd("window and command: cards",
          mixed(lambda number: ("edit card", f"Maker-{number}", "cardPhone", f"555 {number}"),
                lambda number: ("manufacturer", "edit", str(number + 1), "--phone", f"555 {number}")),
          lost_numbers, shown_makers, (SETTINGS,)),
    Crowd("textures of one archive", merging, lost_textures, sources_and_target),
    Crowd("textures of a new archive", merging, lost_textures, sources, ("textures/House.zip",)),
    Crowd("editions of one library",
          lambda number: ("unpack", f"{('old', 'new')[number % 2]}/Garden.calibz", "-o", "out"),
          mixed_pair, both_editions, ("out/Garden.calib", "out/Garden.zip")),
    of_path("unpack"),
    of_path("update over", refusals=(FAILED_UPDATE,)),
    of_path("manufacturer update"),
    of_path("publish", refusals=(NOT_PUBLISHED,)),
)
