"""What is in a folder, in a form in which two states can be compared.

Some files say the same in other bytes: an archive by the order of its entries, a catalog file and a table of a site
by the time at which they were written, a web server's configuration by the folder that it is for. Such a file counts
by what it says, and one that says nothing, because it is torn, equals no other.
"""
import functools
import hashlib
import io
import json
import pathlib
import re
import sqlite3
import zipfile

# Files of the program's own, by their names. They may be there or not, and hold whatever the program needs.
RECORDS = re.compile(r"(.*/)?(errors\.log|catalog_hash\.txt|installed\.record|[^/]*\.lock)")

# A folder of the installation, which is made by whoever looks for something in it.
OWN_FOLDER = "home/user"

HASH_NAME = re.compile(r"[0-9a-f]{40}")
FOLDER = "a folder"
TABLE = "table "
STILL_THERE = " (still there)"


def state_of(folder):
    """Everything below a folder: the content of each file, by its path."""
    folder = pathlib.Path(folder)
    state = {}
    for path in sorted(folder.rglob("*")):
        name = path.relative_to(folder).as_posix()
        if RECORDS.fullmatch(name):
            continue
        if path.is_symlink() or not path.is_file():
            state[name] = FOLDER if path.is_dir() else "neither a file nor a folder"
        else:
            content = path.read_bytes().replace(bytes(folder), b"HERE")
            name, meaning = _published(name, content, path.parent)
            state[name] = meaning
    return state


def content_of(path):
    """What one file says; nothing where there is none."""
    return _content(path.suffix, path.read_bytes()) if path.is_file() else None


def names_of(folder):
    """The names below a folder, for what is never made twice in the same way."""
    return {HASH_NAME.sub("HASH", name): "" for name in state_of(folder)}


def is_real(name):
    """Whether a path of a state is that of a file, and not the name that stands for a table's."""
    return not pathlib.PurePosixPath(name).name.startswith(TABLE)


def torn(now, old, new):
    """The paths of what is neither as it was nor as it is to be."""
    return [name for name in sorted({*old, *new}) if not _is(now, name, old) and not _is(now, name, new)]


def missing(now, old, new):
    """The paths of what is not as it is to be, or is to be gone and is not."""
    return [name if name in new else name + STILL_THERE
            for name in sorted({*old, *new}) if not _is(now, name, new)]


def is_only_left(missing_name):
    """Whether one of missing() is to be gone, and is not."""
    return missing_name.endswith(STILL_THERE)


def litter(now, *known):
    """The paths of what belongs to no known state."""
    return [name for name in sorted(now)
            if not any(name in state for state in known) and (name, now[name]) != (OWN_FOLDER, FOLDER)]


def _is(now, name, wanted):
    """Whether a path is as in a state. A folder may be there already, or not yet."""
    found, expected = now.get(name), wanted.get(name)
    return found == expected or (FOLDER in (found, expected) and None in (found, expected))


def _published(name, content, folder):
    """A site names each table after its bytes, which hold the time; here it is named after its edition."""
    path = pathlib.PurePosixPath(name)
    if path.suffix == ".json" and path.parent.name == "files" and (table := _table(content)):
        return str(path.with_name(f"{TABLE}{table['edition']}")), json.dumps(table, sort_keys=True)
    if path.name == "current" and (folder / "files").is_dir():
        named = folder / "files" / content.decode(errors="replace").strip()
        table = _table(named.read_bytes()) if named.is_file() else None
        return name, f"{TABLE}{table['edition']}" if table else f"no table: {content!r}"
    return name, _content(path.suffix, content)


def _table(content):
    try:
        table = json.loads(content)
    except ValueError:
        return None
    if not isinstance(table, dict) or "edition" not in table:
        return None
    return table | {"published": "", "companions": ""}


@functools.lru_cache(maxsize=4096)
def _content(suffix, content):
    """What a file says, as a text that is the same for the same meaning."""
    try:
        if suffix in (".zip", ".calibz"):
            return _archive(content)
        if suffix == ".calib":
            return _catalog(content)
    except Exception:  # whatever a reader may fail with
        return f"torn: {_digest(content)}"
    if suffix == ".json":
        content = re.sub(rb'("Last_Modified": ?)"[^"]*"', rb'\1""', content)
    return _digest(content)


def _archive(content):
    with zipfile.ZipFile(io.BytesIO(content)) as archive:
        entries = [(entry.filename, _digest(archive.read(entry))) for entry in archive.infolist()]
    return f"archive: {sorted(entries)}"


def _catalog(content):
    database = sqlite3.connect(":memory:")
    try:
        database.deserialize(content)
        lines = [line for line in database.iterdump() if not line.startswith('INSERT INTO "library"')]
        row = database.execute("SELECT id, name, kind, language, description FROM library").fetchall()
    finally:
        database.close()
    return f"catalog: {row} {_digest(''.join(lines).encode())}"


def _digest(content):
    return hashlib.sha1(content).hexdigest()
