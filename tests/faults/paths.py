"""The write paths of the programs: every way in which a command changes files, with the state before it."""
import http.server
import pathlib
import random
import shutil
import threading
from collections.abc import Callable
from dataclasses import dataclass

from runs import HUMBLE, WINDOW

CATALOG = "name;category;keywords;files\n" + "".join(
    f"{{edition}} chair {number};Seats;oak, seat;wood-{number}.png\n" for number in range(3))


class Workshop:
    """What the paths work on, made once by the program itself: libraries in two editions, and services of both."""

    def __init__(self, program, folder):
        self.folder = pathlib.Path(folder)
        self._program = program
        self._random = random.Random(7)
        self._processes = []
        self.folder.mkdir()
        (self.folder / "tmp").mkdir()
        for edition in ("old", "new"):
            self._make_edition(edition)
        self.velk("publish", "old/content", "-o", "site-old")
        self.velk("publish", "new/content", "-o", "site-new")
        self.velk("filter", "add", "Baths", "--id", "lib-bath", "--home", "colleague")
        self.old_service = self._serve("site-old")
        self.service = self._serve("site-new")
        self.files = FileService(self.folder)

    def close(self):
        for process in self._processes:
            process.terminate()
            process.communicate()
        self.files.shutdown()
        self.files.server_close()

    def velk(self, *command, folder=None):
        """Runs the program without a fault; it must not fail."""
        outcome = self._program.run(command, folder or self.folder)
        if outcome.code != 0:
            raise RuntimeError(f"velk {' '.join(command)} ended with {outcome.code}: {' '.join(outcome.lines())}")
        return outcome

    def addresses(self):
        """What commands may name in braces."""
        return {"service": self.service, "files": self.files.address}

    def _make_edition(self, edition):
        """EDITION has the libraries in all their forms, and EDITION/content what of it is published."""
        folder = self.folder / edition
        content = folder / "content"
        (folder / "textures" / "deep").mkdir(parents=True)
        for part in ("core", "referenced", "bonus", "manufacturer", "logos"):
            (content / part).mkdir(parents=True)
        for name in ("wood-0.png", "wood-1.png", f"{edition}.png", "deep/wood-2.png"):
            (folder / "textures" / name).write_bytes(self._random.randbytes(9000))
        for name, kind in (("Kitchen", "core"), ("Garden", "bonus"), ("Acme", "manufacturer")):
            self._make_library(folder, name, kind, edition)
        shutil.copy2(folder / "Kitchen.calib", content / "core")
        shutil.copy2(folder / "Kitchen.zip", content / "referenced")
        for name, kind in (("Garden", "bonus"), ("Acme", "manufacturer")):
            shutil.copy2(folder / f"{name}.calibz", content / kind)
        self.velk("manufacturer", "edit", "7", "--new", "--name", f"Acme {edition}", "--logo", "acme.png",
                  "--home", edition)
        shutil.copy2(folder / "manufacturer-data" / "manufacturer_data.json", content)
        (content / "logos" / "acme.png").write_bytes(self._random.randbytes(3000))

    def _make_library(self, folder, name, kind, edition):
        (folder / f"{name}.csv").write_text(CATALOG.format(edition=edition))
        catalog, packed = f"{folder}/{name}.calib", f"{folder}/{name}.calibz"
        self.velk("catalog", "build", f"{folder}/{name}.csv", "-o", catalog, "--type", kind, "--id", f"lib-{name}")
        self.velk("catalog", "pack", catalog, "--files", f"{folder}/textures", "-o", packed)
        self.velk("unpack", packed, "-o", str(folder))

    def _serve(self, site):
        process = self._program.start(["serve", site, "--quiet"], self.folder)
        self._processes.append(process)
        threading.Thread(target=process.stderr.read, daemon=True).start()
        return process.stdout.readline().split()[-1]


class FileService(http.server.ThreadingHTTPServer):
    """Serves the files of a folder, as they are."""

    daemon_threads = True

    class Handler(http.server.SimpleHTTPRequestHandler):
        protocol_version = "HTTP/1.1"

        def __init__(self, *arguments):
            super().__init__(*arguments, directory=str(arguments[2].folder))

        def log_message(self, *_):
            pass

    def __init__(self, folder):
        super().__init__(("127.0.0.1", 0), self.Handler)
        self.folder = folder
        self.address = f"http://127.0.0.1:{self.server_address[1]}"
        threading.Thread(target=self.serve_forever, daemon=True).start()


def nothing(workshop, folder):
    """The preparation of a path that begins with an empty folder."""


@dataclass(frozen=True)
class WritePath:
    """One way to change files: the state before it, and the command, which runs in the folder of that state.

    `done_codes` are the exit codes that a repetition may end with where the work has been done already. The tour
    begins by removing what an earlier one left, so there is no old state that it could keep, and its libraries carry
    the time, so that only their names can be compared (`keeps_old`). A logo is removed before a new one is asked for,
    and may be `missing` for a while. Where a command does several things, it may have done some of them when it fails
    (`whole`). Of a slow path, `most` points of each class are enough.

    A command that begins with WINDOW is done by a hand in the window. The window also keeps its settings when it is
    closed, which have paths of their own: in the others they are `aside`. As a window takes its time to open, most of
    its paths are not `in_short`.

    A file that may be written, but not replaced, is written `in_place`: who cuts that short may leave it torn, until
    the next command puts back what was in it.
    """

    name: str
    command: tuple
    prepare: Callable = nothing
    done_codes: tuple = (0,)
    keeps_old: bool = True
    whole: bool = True
    missing: tuple = ()
    most: int | None = None
    aside: tuple = ()
    in_short: bool = True
    in_place: bool = False

    @property
    def is_window(self):
        return self.command[0] == WINDOW


def window_path(name, command, prepare, **traits):
    """A path of the window."""
    traits = {"most": 12, "aside": (SETTINGS,), "in_short": False} | traits
    return WritePath(f"window {name}", (WINDOW, *command), prepare, **traits)


def take(*names, edition="new"):
    """Copies files and folders of an edition into the folder of a run."""
    def prepare(workshop, folder):
        for name in names:
            source, target = workshop.folder / edition / name, folder / pathlib.Path(name).name
            (shutil.copytree if source.is_dir() else shutil.copy2)(source, target)
    return prepare


def after(*commands, prepare=None):
    """Runs commands in the folder of a run, after other preparations."""
    def prepared(workshop, folder):
        if prepare is not None:
            prepare(workshop, folder)
        for command in commands:
            words = [word.format(old=workshop.old_service, **workshop.addresses()) for word in command.split()]
            workshop.velk(*words, folder=folder)
    return prepared


def older_pair(workshop, folder):
    take("Garden.calibz")(workshop, folder)
    (folder / "out").mkdir()
    for name in ("Garden.calib", "Garden.zip"):
        shutil.copy2(workshop.folder / "old" / name, folder / "out" / name)


def merged_textures(workshop, folder):
    take("Garden.zip")(workshop, folder)
    (folder / "textures").mkdir()
    shutil.copy2(workshop.folder / "old" / "Garden.zip", folder / "textures" / "House.zip")


def two_editions(workshop, folder):
    """A site that was published twice, so that the third edition makes files of the first one superfluous."""
    content = folder / "content"
    shutil.copytree(workshop.folder / "old/content", content)
    workshop.velk("publish", "content", "-o", "site", folder=folder)
    (content / "logos" / "acme.png").write_bytes(b"a logo of the second edition")
    workshop.velk("publish", "content", "-o", "site", folder=folder)
    shutil.rmtree(content)
    shutil.copytree(workshop.folder / "new/content", content)


def content_folder(workshop, folder):
    shutil.copytree(workshop.folder / "new/content", folder / "content")


def installed(*libraries, prepare=None):
    """Libraries that a window shows, after other preparations."""
    def prepared(workshop, folder):
        if prepare is not None:
            prepare(workshop, folder)
        core = folder / "home/core"
        core.mkdir(parents=True, exist_ok=True)
        for library in libraries:
            shutil.copy2(workshop.folder / "new" / f"{library}.calib", core)
    return prepared


def imported_before(workshop, folder):
    """An older edition of the library that is imported, with its textures, and the packed library to import."""
    take("Garden.calibz")(workshop, folder)
    for kind, name in (("user", "Garden.calib"), ("textures", "Garden.zip")):
        (folder / "home" / kind).mkdir(parents=True)
        shutil.copy2(workshop.folder / "old" / name, folder / "home" / kind)


def settings_before(workshop, folder):
    """What a window kept when it was closed, and something of another version's."""
    workshop.velk(WINDOW, "look", folder=folder)
    with (folder / SETTINGS).open("a") as settings:
        settings.write("\n[later]\nkept=something\n")


def two_filters(workshop, folder):
    after("filter add Kitchens --id lib-Kitchen", "filter add Gardens --id lib-Garden --id lib-Acme")(workshop, folder)
    shutil.copy2(workshop.folder / "colleague/core/catalog_filters.json", folder / "colleague.json")


def older_cards(workshop, folder):
    """As they were published: an update would set the time of the data to now, after which nothing is newer."""
    data = folder / "home" / "manufacturer-data"
    data.mkdir(parents=True)
    for name in ("manufacturer_data.json", "logos/acme.png"):
        shutil.copy2(workshop.folder / "old/content" / name, data)


def closed_folder(file, prepare):
    """A file that everybody may write in a folder that nobody may change."""
    def prepared(workshop, folder):
        prepare(workshop, folder)
        (folder / file).chmod(0o666)
        (folder / file).parent.chmod(0o555)
    return prepared


UPDATE_ALL = ("update", "--service", "{service}", "--bonus", "Garden", "--manufacturer", "Acme")
OLDER_UPDATE = "update --service {old} --bonus Garden --manufacturer Acme"
REFRESH = ("manufacturer", "update", "--data-url", "{service}manufacturers", "--logo-url", "{service}logo?v=1")
NO_SUCH = 9
SETTINGS = "home/user/browser.ini"

PATHS = (
    WritePath("unpack", ("unpack", "Garden.calibz", "-o", "out"), take("Garden.calibz")),
    WritePath("unpack over", ("unpack", "Garden.calibz", "-o", "out"), older_pair),
    WritePath("unpack address", ("unpack", "{files}/new/Garden.calibz", "-o", "out")),
    WritePath("update core", ("update", "--service", "{service}", "--kinds", "core"), whole=False),
    WritePath("update bonus", ("update", "--service", "{service}", "--kinds", "bonus", "--bonus", "Garden"),
              whole=False),
    WritePath("update manufacturer",
              ("update", "--service", "{service}", "--kinds", "manufacturer", "--manufacturer", "Acme"),
              whole=False),
    WritePath("update all", UPDATE_ALL, whole=False),
    WritePath("update over", UPDATE_ALL, after(OLDER_UPDATE), whole=False),
    WritePath("merge new", ("textures", "merge", "Garden.zip", "textures/House.zip"), take("Garden.zip")),
    WritePath("merge", ("textures", "merge", "Garden.zip", "textures/House.zip"), merged_textures),
    WritePath("filter new", ("filter", "add", "Kitchens", "--id", "lib-Kitchen")),
    WritePath("filter add", ("filter", "add", "Kitchens", "--id", "lib-Garden"), two_filters),
    WritePath("filter remove", ("filter", "remove", "Kitchens"), two_filters, done_codes=(0, NO_SUCH)),
    WritePath("filter remove last", ("filter", "remove", "Kitchens"), after("filter add Kitchens --id lib-Kitchen"),
              done_codes=(0, NO_SUCH)),
    WritePath("filter merge", ("filter", "merge", "colleague.json"), two_filters),
    WritePath("filter use", ("filter", "current", "Gardens"), two_filters),
    WritePath("filter in place", (HUMBLE, "filter", "add", "Kitchens", "--id", "lib-Garden"),
              closed_folder("home/core/catalog_filters.json", two_filters), in_place=True),
    WritePath("manufacturer in place", (HUMBLE, "manufacturer", "edit", "7", "--phone", "555 0123"),
              closed_folder("home/manufacturer-data/manufacturer_data.json",
                            after("manufacturer edit 7 --new --name Acme")), in_place=True),
    WritePath("manufacturer set", ("manufacturer", "edit", "7", "--phone", "555 0123"),
              after("manufacturer edit 7 --new --name Acme")),
    WritePath("manufacturer text", ("manufacturer", "edit", "--default-text", "Ask the shop"),
              after("manufacturer edit 7 --new --name Acme")),
    WritePath("manufacturer update", REFRESH, older_cards, whole=False,
              missing=("home/manufacturer-data/acme.png",)),
    WritePath("catalog build", ("catalog", "build", "Kitchen.csv", "-o", "Kitchen.calib"), take("Kitchen.csv")),
    WritePath("catalog sample", ("catalog", "sample", "-o", "sample.calib"),
              after("catalog sample --language de -o sample.calib")),
    WritePath("catalog pack", ("catalog", "pack", "Garden.calib", "--files", "textures", "-o", "Garden.calibz"),
              take("Garden.calib", "textures")),
    WritePath("catalog pack over", ("catalog", "pack", "Garden.calib", "--files", "textures", "-o", "Garden.calibz"),
              lambda workshop, folder: (take("Garden.calib", "textures")(workshop, folder),
                                        take("Garden.calibz", edition="old")(workshop, folder))),
    WritePath("publish", ("publish", "content", "-o", "site", "--nginx", "nginx"), content_folder,
              whole=False),
    WritePath("publish over", ("publish", "content", "-o", "site", "--nginx", "nginx"), two_editions,
              whole=False),
    WritePath("tour", ("tour", "--sample", "-o", "tour"), keeps_old=False, whole=False, most=50),
    window_path("import", ("import", "Garden.calibz"), take("Garden.calibz")),
    window_path("import over", ("import", "Garden.calibz"), imported_before, in_short=True),
    window_path("update", ("update", "--service", "{service}"), nothing, whole=False),
    window_path("update over", ("update", "--service", "{service}"), after(OLDER_UPDATE), whole=False, in_short=True),
    window_path("filter new", ("add filter", "Kitchens", "lib-Kitchen"), installed("Kitchen")),
    window_path("filter add", ("add filter", "Kitchens", "lib-Garden"), installed("Garden", prepare=two_filters),
                in_short=True),
    window_path("filter remove", ("remove filter", "Kitchens"), installed("Garden", prepare=two_filters),
                done_codes=(0, NO_SUCH)),
    window_path("filter use", ("use filter", "Gardens"), installed("Garden", prepare=two_filters)),
    window_path("filter merge", ("merge filters", "colleague.json"), installed("Garden", prepare=two_filters)),
    window_path("card", ("edit card", "seat", "cardPhone", "555 0123"),
                installed("Garden", prepare=after("manufacturer edit 7 --new --name seat")), in_short=True),
    window_path("cards update", ("update cards", "--service", "{service}"), older_cards, whole=False,
                missing=("home/manufacturer-data/acme.png",)),
    window_path("settings", ("settings",), nothing, aside=()),
    window_path("settings over", ("settings",), settings_before, aside=(), in_short=True),
)
