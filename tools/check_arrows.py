#!/usr/bin/env python3
"""Checks that includes follow the arrows of docs/architecture.md.

The arrows stand in that document and nowhere else. Each finding is a line on standard error; any makes the exit code 1.

- A room is a folder of VelkCommon, VelkLibrary or host. A file at a library's root belongs to the room of its name, to
  the room that names it in the table of rooms, or, a public header, to the room with the source of its name. What is
  left, with detail/ there, is the room "root" of that library.
- A room may include itself, the root of its own library and the rooms in its row of the table. Each of these arrows
  must be used, and point to a row further down; one that has to point up is marked with an arrow in the table, too.
- Headers in a detail/ folder are for their own room, and for the rooms in the table of detail headers.
- The host includes installed headers only, and so do installed headers.
- Qt's widgets are for `widget_rooms`, and the question for which system the compiler works is for `system_files`.
- The tests of a room may include what the room may include, rooms of VelkLibrary and VelkCommon in rows further down,
  their own folder, and what all tests share. That stands on VelkCommon alone, and the host's fixtures on no program.
"""

import re
import sys
from pathlib import Path

document = "docs/architecture.md"
libraries = ("host", "VelkLibrary", "VelkCommon")
widget_rooms = ("VelkLibrary/UI", "host/browser")
system_files = re.compile(r"VelkCommon/Platform/|\w+/Export\.h$|host/support/System\w*\.(h|cpp)$")

include_line = re.compile(r'\s*#\s*include\s*[<"]([^>"]+)[>"]')
system_line = re.compile(r"\s*#.*\b(_WIN32|_WIN64|__linux__|__unix__|__APPLE__|Q_OS_\w+)\b")
widget_header = re.compile(
    r"QtWidgets|(?!QStringView|QStyleHints|QTextLayout|\w+Event$)Q(Application|\w*(Action|Bar|Box|Browser|Button"
    r"|Completer|Delegate|Dial|Edit|Frame|Gesture|Graphics|Label|Layout|LCD|Main|Mdi|Menu|Message|Rubber|Scroll|Shortcut"
    r"|SizeGrip|SizePolicy|Slider|Spacer|Splash|Splitter|Style|Tip|Tray|Undo|View|WhatsThis|Widget|Wizard)\w*)$")

findings = []


def report(path, line, text):
    findings.append(f"{path}:{line}: {text}")


# ---- The document --------------------------------------------------------------------------------


def quoted(text):
    return re.findall(r"`([^`]+)`", text)


def table(*titles):
    """The rows of the table whose columns begin with these titles: line number and cells. The titles come first."""
    rows = []
    for number, line in enumerate(Path(document).read_text("utf-8").splitlines(), 1):
        cells = [cell.strip() for cell in line.strip("| ").split("|")]
        if not rows and cells[: len(titles)] != list(titles):
            continue
        if not line.startswith("|"):
            break
        if not cells[0].startswith("---"):
            rows.append((number, cells))
    if not rows:
        sys.exit(f"{document}: the table \"| {' | '.join(titles)} |\" is missing")
    return rows


class Picture:
    """What the document says."""

    def __init__(self):
        self.rooms = {}  # line numbers by name, from the top floor to the bottom
        self.named = {}  # rooms of files at a library's root
        self.arrows = {}  # line numbers by the room that includes and the one that is included
        self.details = {}  # line numbers and rooms by header
        for number, cells in table("detail header", "also for")[1:]:
            self.details[quoted(cells[0])[0]] = number, quoted(cells[1])
        (_, titles), *rows = table("room", "`host/`")
        for number, cells in rows:
            room, *files = quoted(cells[0])
            self.rooms[room] = number
            self.named.update((f"{room.split('/')[0]}/{name}", room) for name in files)
        for number, cells in rows:
            room = quoted(cells[0])[0]
            for title, cell in zip(titles[1:], cells[1:]):
                for name in filter(None, (name.strip() for name in cell.split(","))):
                    self.add(number, room, quoted(title)[0] + name.rstrip("↑ "), name.endswith("↑"))

    def add(self, number, room, target, up):
        self.arrows[room, target] = number
        if target not in self.rooms:
            report(document, number, f"there is no room {target}")
        elif up != (self.rooms[target] <= number):
            report(document, number, f"the arrow from {room} to {target} points {'down' if up else 'up'}")


# ---- The sources ---------------------------------------------------------------------------------


class Sources:
    """The files of the libraries and the tests by path, with the lines that matter here."""

    def __init__(self, picture):
        self.lines = {}
        for folder in (*libraries, "tests"):
            for path in sorted(Path(folder).rglob("*")):
                if path.suffix in (".h", ".cpp"):
                    lines = enumerate(path.read_text("utf-8").splitlines(), 1)
                    self.lines[path.as_posix()] = [(n, line) for n, line in lines if line.lstrip().startswith("#")]
        self.picture = picture
        self.rooms_of_sources = {}
        for path in self.lines:
            library, room, *rest = path.split("/")
            if library in libraries and rest and path.endswith(".cpp"):
                self.rooms_of_sources[f"{library}/{Path(path).stem}"] = f"{library}/{room}"

    def room(self, path):
        """The room of a library's file."""
        library, second, *rest = path.split("/")
        if rest and second != "detail":
            return f"{library}/{second}"
        own = f"{library}/{Path(path).stem}"
        if rest:
            return f"{library}/root"
        if own in self.picture.rooms:
            return own
        return self.picture.named.get(path) or self.rooms_of_sources.get(own) or f"{library}/root"

    def includes(self, path):
        """What the file includes: line number and text, and the path when it is one of ours."""
        for number, line in self.lines[path]:
            if match := include_line.match(line):
                text = match[1]
                places = (str(Path(path).parent / text), f"tests/{text}", text)
                yield number, text, next((place for place in places if place in self.lines), None)


def installed_headers():
    """The headers of the libraries' FILE_SETs."""
    headers = set()
    for library in libraries[1:]:
        text = re.sub(r"#.*", "", Path(library, "CMakeLists.txt").read_text("utf-8"))
        for variable in re.findall(r"FILE_SET HEADERS[^)]*\bFILES \$\{(\w+)\}", text):
            names = re.search(rf"set\({variable}\s([^)]*)\)", text)[1].split()
            headers.update(f"{library}/{name}" for name in names)
    return headers


# ---- The checks ----------------------------------------------------------------------------------


class Check:
    def __init__(self):
        self.picture = Picture()
        self.sources = Sources(self.picture)
        self.installed = installed_headers()
        self.used = set()  # arrows, and detail headers with the rooms that include them

    def run(self):
        for path in self.sources.lines:
            if path.startswith("tests/"):
                self.check_test(path)
            else:
                self.check_file(path)
        self.check_unused()

    def may_include_detail(self, room, header):
        if "/detail/" not in header or self.sources.room(header) in (room, f"{room.split('/')[0]}/root"):
            return True
        _, rooms = self.picture.details.get(header, (0, ()))
        self.used.add((header, room))
        return room in rooms

    def check_file(self, path):
        room = self.sources.room(path)
        if room not in self.picture.rooms:
            report(path, 1, f"{document} has no room {room}")
        for number, text, target in self.sources.includes(path):
            if target is None:
                if text.startswith((".", *libraries)):
                    report(path, number, f"{text} is no path of a header from the top folder on")
                if widget_header.match(text) and room not in widget_rooms:
                    report(path, number, f"{room} has nothing to do with widgets ({text})")
            elif target.startswith("tests/"):
                report(path, number, f"{room} includes a test ({text})")
            else:
                self.check_include(path, number, room, target)
        for number, line in self.sources.lines[path]:
            if system_line.match(line) and not system_files.match(path):
                report(path, number, f"{room} must not know the system: {line.strip()}")

    def check_include(self, path, number, room, target):
        other = self.sources.room(target)
        self.used.add((room, other))
        if other not in (room, f"{room.split('/')[0]}/root") and (room, other) not in self.picture.arrows:
            report(path, number, f"{room} must not include {other} ({target})")
        if not self.may_include_detail(room, target):
            report(path, number, f"{room} must not include what is {other}'s own ({target})")
        if path.startswith("host/") and not target.startswith("host/") and target not in self.installed:
            report(path, number, f"{room} must not include what is not installed ({target} of {other})")
        if path in self.installed and target not in self.installed:
            report(path, number, f"is installed, but {target} is not ({room} includes {other})")

    def check_test(self, path):
        library, *rest = path.split("/")[1:-1]
        room = "/".join([library, *rest[:1]])
        if library in libraries and rest and room != "host/fixtures" and room not in self.picture.rooms:
            report(path, 1, f"{document} has no room {room}")
        elif library in (*libraries, "support"):
            shared = ("tests/support/", f"tests/{room}/") + (("tests/host/fixtures/",) if library == "host" else ())
            for number, _, target in self.sources.includes(path):
                if target is not None and not target.startswith(shared):
                    self.check_include_in_test(path, number, room, target)

    def check_include_in_test(self, path, number, room, target):
        is_test = target.startswith("tests/")
        other = "/".join(target.split("/")[1:3]) if is_test else self.sources.room(target)
        if not self.may_include_in_test(room, other):
            report(path, number, f"a test in {room} must not include {other} ({target})")
        elif room in self.picture.rooms and not self.may_include_detail(room, target):
            report(path, number, f"a test of {room} must not include what is {other}'s own ({target})")

    def may_include_in_test(self, room, other):
        if room == "support":
            return other.startswith("VelkCommon/")
        if room in libraries:  # what stands at a library's root serves all its rooms
            return other.startswith(f"{room}/")
        if room == "host/fixtures":
            return other not in ("host/command", "host/browser")
        below = self.picture.rooms.get(other, 0) > self.picture.rooms[room] and not other.startswith("host/")
        return other == room or below or (room, other) in self.picture.arrows

    def check_unused(self):
        for (room, other), number in self.picture.arrows.items():
            if (room, other) not in self.used:
                report(document, number, f"nothing uses the arrow from {room} to {other}")
        for header, (number, rooms) in self.picture.details.items():
            for room in rooms:
                if (header, room) not in self.used:
                    report(document, number, f"nothing in {room} uses {header}")
        for room, number in self.picture.rooms.items():
            if not any(self.sources.room(path) == room for path in self.sources.lines if not path.startswith("tests/")):
                report(document, number, f"there is nothing in {room}")


Check().run()
for finding in findings:
    print(finding, file=sys.stderr)
sys.exit(1 if findings else 0)
