"""Hostile archives: zip files that lie, are torn, or are made to do harm.

Each is unpacked as a packed library over an older pair, merged into a texture archive, and has textures merged into it.
"""
import hashlib
import io
import os
import shutil
import struct
import zipfile
import zlib
from collections.abc import Callable
from dataclasses import dataclass, field

import states
from bench import Point, Row

GATE = "hostile archive commands"
SHORT = 12

STORED, DEFLATED = 0, 8
LOCAL, CENTRAL, END = b"PK\x03\x04", b"PK\x01\x02", b"PK\x05\x06"

# The fields of the three records, after the signature, with their sizes in struct's letters.
LOCAL_FIELDS = dict(needed="H", flags="H", method="H", time="H", date="H", crc="I", packed="I", size="I",
                    name_length="H", extra_length="H")
CENTRAL_FIELDS = dict(maker="H", needed="H", flags="H", method="H", time="H", date="H", crc="I", packed="I", size="I",
                      name_length="H", extra_length="H", comment_length="H", disk="H", inner="H", outer="I", offset="I")
END_FIELDS = dict(disk="H", directory_disk="H", here="H", total="H", directory_size="I", directory_offset="I",
                  comment_length="H")

LARGEST = {"H": 0xFFFF, "I": 0xFFFFFFFF}


@dataclass
class Entry:
    """One entry, with fields that say something else than the truth."""

    name: bytes
    content: bytes = b"wood"
    method: int = DEFLATED
    local: dict = field(default_factory=dict)
    central: dict = field(default_factory=dict)
    extra: bytes = b""
    packed: bytes | None = None

    def packed_bytes(self):
        if self.packed is not None:
            return self.packed
        if self.method != DEFLATED:
            return self.content
        deflate = zlib.compressobj(wbits=-15)
        return deflate.compress(self.content) + deflate.flush()

    def fields(self, layout, **more):
        known = dict(maker=(3 << 8) + 20, needed=20, flags=0, method=self.method, time=0, date=0x5A21,
                     crc=zlib.crc32(self.content), packed=len(self.packed_bytes()), size=len(self.content),
                     name_length=len(self.name), extra_length=len(self.extra), comment_length=0, disk=0, inner=0,
                     outer=0o100644 << 16, offset=0)
        return {name: (known | more)[name] for name in layout}

    def local_record(self):
        fields = self.fields(LOCAL_FIELDS) | self.local
        return record(LOCAL, LOCAL_FIELDS, fields) + self.name + self.extra + self.packed_bytes()

    def central_record(self, offset):
        fields = self.fields(CENTRAL_FIELDS, offset=offset) | self.central
        return record(CENTRAL, CENTRAL_FIELDS, fields) + self.name + self.extra


def record(signature, layout, fields):
    return signature + struct.pack("<" + "".join(layout.values()), *fields.values())


def archive(*entries, end=None, before=b"", after=b"", comment=b""):
    """A zip file of entries; `end` are fields of its last record that say something else than the truth."""
    content, directory = before, b""
    for entry in entries:
        directory += entry.central_record(len(content) - len(before))
        content += entry.local_record()
    fields = dict(disk=0, directory_disk=0, here=len(entries), total=len(entries), directory_size=len(directory),
                  directory_offset=len(content) - len(before), comment_length=len(comment)) | (end or {})
    return content + directory + record(END, END_FIELDS, fields) + comment + after


@dataclass(frozen=True)
class Case:
    """An archive around a catalog. One that is `refused` cannot be a packed library, nor textures to be taken."""

    name: str
    make: Callable
    refused: bool = False


def rows(bench):
    commands = {"unpack hostile": unpack, "merge hostile": merge_from, "merge into hostile": merge_into}
    return [Row(f"{name}/archive", GATE, lambda name=name, examine=examine: points(bench, name, examine))
            for name, examine in commands.items()]


def points(bench, name, examine):
    catalog = (bench.workshop.folder / "new/Garden.calib").read_bytes()
    prepared = bench.work / f"prepared {name}"
    for folder in ("tmp", "home/temp", "out"):
        (prepared / folder).mkdir(parents=True)
    shutil.copy2(bench.workshop.folder / "old/Garden.calib", prepared / "out/hostile.calib")
    for target in ("out/hostile.zip", "House.zip"):
        shutil.copy2(bench.workshop.folder / "old/Garden.zip", prepared / target)
    result = [Point(case.name, lambda case=case: run_case(bench, prepared, case, case.make(catalog), catalog, examine))
              for case in CASES]
    return bench.sample(result, SHORT, name)


def run_case(bench, prepared, case, content, catalog, examine):
    with bench.folders.copy_of(prepared) as folder:
        shutil.copy2(bench.workshop.folder / "new/Garden.zip", folder / "Garden.zip")
        (folder / "hostile.calibz").write_bytes(content)
        (folder / "hostile.zip").write_bytes(content)
        before = everything(folder)
        outcome, results, fault = examine(bench, folder, case, catalog)
        changed = sorted(name for name, content in everything(folder).items()
                         if before.get(name) != content and name not in (results if outcome.code == 0 else ()))
        if changed:
            fault = fault or f"changed or left {', '.join(changed)} (exit code {outcome.code}: {outcome.last_line()})"
        return bench.fault_of_outcome(outcome) or fault or next(
            (f"wrote {path}" for path in OUTSIDE if os.path.exists(path)), None)


def everything(folder):
    return {path.relative_to(folder).as_posix(): hashlib.sha1(path.read_bytes()).hexdigest()
            for path in folder.rglob("*") if path.is_file() and not states.RECORDS.fullmatch(path.name)}


# ---- The commands ------------------------------------------------------------------------------------------


def unpack(bench, folder, case, catalog):
    """The catalog and all other entries come, or nothing changes."""
    outcome = bench.program.run(["unpack", "hostile.calibz", "-o", "out"], folder)
    fault = None
    if outcome.code == 0 and case.refused:
        fault = f"was unpacked: {outcome.last_line()}"
    elif outcome.code == 0 and (folder / "out/hostile.calib").read_bytes() != catalog_in(folder / "hostile.calibz", catalog):
        fault = "exit code 0 with another catalog"
    elif outcome.code == 0 and (folder / "out/hostile.zip").exists() and can_be_opened(folder / "hostile.calibz"):
        fault = damage(folder / "out/hostile.zip")
    return outcome, ("out/hostile.calib", "out/hostile.zip"), fault


def catalog_in(path, otherwise):
    """The last of an archive's catalogs, which is the one that counts; whatever it holds."""
    try:
        with zipfile.ZipFile(path) as opened:
            return opened.read([entry for entry in opened.infolist() if entry.filename.endswith(".calib")][-1])
    except Exception:  # whatever a reader may fail with
        return otherwise


def merge_from(bench, folder, case, catalog):
    """The target has all that it had, and nothing damaged."""
    had = entries_of(folder / "House.zip")
    judged = can_be_opened(folder / "hostile.zip")
    outcome = bench.program.run(["textures", "merge", "hostile.zip", "House.zip"], folder)
    fault = None
    if judged and outcome.code == 0:
        fault = damage(folder / "House.zip") or lost(folder / "House.zip", had)
    return outcome, ("House.zip",), fault


def merge_into(bench, folder, case, catalog):
    """A target that was damaged before may stay so, but has all that came."""
    judged = can_be_opened(folder / "hostile.zip")
    outcome = bench.program.run(["textures", "merge", "Garden.zip", "hostile.zip"], folder)
    fault = lost(folder / "hostile.zip", entries_of(folder / "Garden.zip")) if judged and outcome.code == 0 else None
    return outcome, ("hostile.zip",), fault


def can_be_opened(path):
    """Whether the judge of these tests takes an archive; it refuses some that others read."""
    try:
        zipfile.ZipFile(path).close()
    except (zipfile.BadZipFile, NotImplementedError):
        return False
    return True


def damage(path):
    """What cannot be read of an archive, or None."""
    try:
        with zipfile.ZipFile(path) as opened:
            damaged = opened.testzip()
    except Exception as error:  # whatever a reader may fail with
        return f"exit code 0, but {path.name} cannot be read: {error}"
    return f"exit code 0, but {damaged} in {path.name} is damaged" if damaged else None


def lost(path, wanted):
    """Which entries are not in an archive any more, or with other bytes."""
    gone = sorted(set(wanted.items()) - set(entries_of(path, wanted).items()))
    return f"exit code 0, but {path.name} lacks {', '.join(name for name, _ in gone)}" if gone else None


def entries_of(path, names=None):
    found = {}
    try:
        with zipfile.ZipFile(path) as opened:
            for name in opened.namelist():
                if names is None or name in names:
                    found[name] = zlib.crc32(opened.read(name))
    except (zipfile.BadZipFile, OSError, RuntimeError, NotImplementedError, zlib.error):
        return found
    return found


# ---- The cases ---------------------------------------------------------------------------------------------

# Where entries with paths in their names would land.
OUTSIDE = ("/velk-evil.png", "/tmp/velk-evil.png", "/etc/velk-evil.png")

ODD_NAMES = (
    b"../velk-evil.png", b"../../../../../../tmp/velk-evil.png", b"/velk-evil.png", b"/etc/velk-evil.png",
    b"deep/../../velk-evil.png", b"..\\velk-evil.png", b"C:\\velk-evil.png", b"C:velk-evil.png", b"\\\\host\\evil.png",
    b"file:///velk-evil.png", b"./wood.png", b"deep//wood.png", b"..", b".", b"/", b"", b" ", b"wood.png ",
    b"wood.png.", b"CON", b"nul.png", b"com1.png", b"wood.png:stream", b"wood\x00.png", b"\x1b[31mwood.png",
    b"wood\n.png",
    b"\xff\xfe.png", b"\xe2\x80\xaegnp.doow", b"~/velk-evil.png", b"$HOME/evil.png", b"`id`.png", b"a" * 5000 + b".png",
    b"a/" * 2000 + b"wood.png", b"*.png", b"wood?.png", b"hostile.zip", b"hostile.calibz", b"errors.log",
)

def library(catalog, *others, name=b"Garden.calib", **fields):
    """A packed library with something else in it."""
    return archive(Entry(name, catalog, **fields), *(others or (Entry(b"wood.png"),)))


def odd_names():
    for number, name in enumerate(ODD_NAMES, 1):
        yield Case(f"has odd name {number} ({name[:24]!r})", lambda catalog, name=name: library(catalog, Entry(name)))


def odd_values():
    """Each field of each record of the catalog's entry, too large, too small, and a little wrong."""
    for record_name, layout in (("local", LOCAL_FIELDS), ("central", CENTRAL_FIELDS)):
        for name, size in layout.items():
            for value in (0, 1, LARGEST[size]):
                yield Case(f"has {value} for {name} in the {record_name} record",
                           lambda catalog, part=record_name, field={name: value}: library(catalog, **{part: field}))
    for name, size in END_FIELDS.items():
        for value in (0, 1, LARGEST[size]):
            yield Case(f"has {value} for {name} at its end", lambda catalog, field={name: value}: archive(
                Entry(b"Garden.calib", catalog), Entry(b"wood.png"), end=field))


def torn():
    """Pieces of an archive. Without its directory it is none."""
    for percent in (0, 1, 10, 25, 50, 75, 90, 99):
        yield Case(f"ends after {percent} percent",
                   lambda catalog, percent=percent: piece(catalog, 0, percent), refused=True)
    yield Case("begins in the middle", lambda catalog: piece(catalog, 50, 100), refused=True)
    yield Case("lacks its last byte", lambda catalog: library(catalog)[:-1])
    yield Case("has zeros in the middle", lambda catalog: piece(catalog, 0, 30) + bytes(len(piece(catalog, 30, 60))) +
               piece(catalog, 60, 100), refused=True)


def piece(catalog, begin, end):
    whole = library(catalog)
    return whole[len(whole) * begin // 100 : len(whole) * end // 100]


def bad_content():
    """Entries whose bytes are not what their records say."""
    for what, names in (("the catalog", (b"Garden.calib",)), ("a texture", (b"wood.png",))):
        for fault, fields in BAD_CONTENT.items():
            yield Case(f"has {fault} of {what}", lambda catalog, names=names, fields=fields: archive(
                *(Entry(name, content, **(fields(content) if name in names else {}))
                  for name, content in ((b"Garden.calib", catalog), (b"wood.png", b"wood" * 500)))), refused=True)


def both(**fields):
    """Fields of both records of an entry."""
    return dict(local=fields, central=fields)


def first_half(content):
    return content[: len(content) // 2]


BAD_CONTENT = {
    "another checksum": lambda content: both(crc=zlib.crc32(content) ^ 1),
    "no checksum": lambda content: both(crc=0),
    "one byte too many": lambda content: both(size=len(content) + 1),
    "one byte too few": lambda content: both(size=len(content) - 1),
    "four gigabytes by its word": lambda content: both(size=0xFFFFFFF0),
    "a gigabyte by its word": lambda content: both(size=1 << 30),
    "more packed bytes than there are": lambda content: both(packed=0x7FFFFFFF),
    "noise for packed bytes": lambda content: dict(packed=bytes(range(256)) * 4),
    "half of the packed bytes": lambda content: dict(packed=first_half(Entry(b"", content).packed_bytes())),
    "encrypted bytes": lambda content: both(flags=1),
    "strongly encrypted bytes": lambda content: both(flags=0x41),
    "an unknown method": lambda content: both(method=77),
    "a method that is not meant": lambda content: both(method=STORED),
}


def other_shapes():
    """Archives that are sound as such, or nearly."""
    wood = Entry(b"wood.png", b"wood" * 500)
    yield Case("is empty", lambda catalog: archive(), refused=True)
    yield Case("is a file of no bytes", lambda catalog: b"", refused=True)
    yield Case("is a page", lambda catalog: b"<!DOCTYPE html><p>Not here." * 50, refused=True)
    yield Case("is the catalog itself", lambda catalog: catalog, refused=True)
    yield Case("is of another kind", lambda catalog: b"7z\xbc\xaf\x27\x1c" + catalog, refused=True)
    yield Case("has noise before it", lambda catalog: archive(
        Entry(b"Garden.calib", catalog), wood, before=b"noise" * 99))
    yield Case("has noise after it", lambda catalog: library(catalog) + b"noise" * 99)
    yield Case("has much noise after it", lambda catalog: library(catalog) + bytes(200000), refused=True)
    yield Case("has a comment", lambda catalog: archive(Entry(b"Garden.calib", catalog), wood, comment=b"about" * 1000))
    yield Case("has an end in its comment", lambda catalog: archive(
        Entry(b"Garden.calib", catalog), wood, comment=archive()))
    yield Case("has two ends", lambda catalog: archive(Entry(b"Garden.calib", catalog), wood, after=archive()))
    yield from odd_catalogs(wood)
    yield from odd_entries(wood)


def odd_catalogs(wood):
    """Libraries whose catalog is missing, is several, or is something else. Textures may still be taken from them."""
    yield Case("has no catalog", lambda catalog: archive(wood))
    yield Case("has a folder named like a catalog", lambda catalog: archive(Entry(b"Garden.calib/", b"", STORED), wood))
    yield Case("has a catalog in such a folder", lambda catalog: archive(
        Entry(b"Garden.calib/", b"", STORED), Entry(b"Garden.calib/Garden.calib", catalog), wood))
    yield Case("has a catalog of no bytes", lambda catalog: archive(Entry(b"Garden.calib", b""), wood))
    yield Case("has a catalog that is a page", lambda catalog: archive(Entry(b"Garden.calib", b"<p>Not here."), wood))
    yield Case("has the same catalog twice", lambda catalog: archive(*[Entry(b"Garden.calib", catalog)] * 2, wood))
    yield Case("has two catalogs", lambda catalog: library(catalog, Entry(b"Other.calib", b"other"), wood))
    yield Case("has two catalogs by other letters", lambda catalog: library(
        catalog, Entry(b"GARDEN.CALIB", b"other"), wood))
    yield Case("has only the catalog", lambda catalog: archive(Entry(b"Garden.calib", catalog)))
    yield Case("has a stored catalog", lambda catalog: library(catalog, wood, method=STORED))
    for name in (b"../Garden.calib", b"/Garden.calib", b"deep/Garden.calib", b".calib", b"..calib", b"GARDEN.CALIB"):
        yield Case(f"has a catalog named {name.decode()}", lambda catalog, name=name: library(catalog, wood, name=name))


def odd_entries(wood):
    yield Case("has a texture twice", lambda catalog: library(catalog, wood, wood))
    yield Case("has two textures of one name", lambda catalog: library(catalog, wood, Entry(b"wood.png", b"other")))
    yield Case("has a file and a folder of one name", lambda catalog: library(
        catalog, wood, Entry(b"wood.png/", b"", STORED)))
    yield Case("has a link", lambda catalog: library(catalog, Entry(b"wood.png", b"/etc/passwd", STORED,
                                                                    central=dict(outer=0o120777 << 16))))
    yield Case("has a device", lambda catalog: library(catalog, Entry(b"wood.png", b"", STORED,
                                                                      central=dict(outer=0o060666 << 16))))
    yield Case("has entries that overlap", lambda catalog: library(
        catalog, wood, Entry(b"again.png", wood.content, central=dict(offset=0))))
    yield Case("has an entry in its directory", lambda catalog: library(catalog, Entry(b"wood.png", central=dict(
        offset=len(library(catalog)) - 50))))
    yield Case("has ten thousand entries", lambda catalog: library(
        catalog, *(Entry(b"leaf-%d.png" % number, b"w", STORED) for number in range(10000))))
    yield Case("has a bomb", lambda catalog: library(catalog, Entry(b"wood.png", bytes(64 << 20))))
    yield Case("has a catalog that is a bomb", lambda catalog: archive(Entry(b"Garden.calib", bytes(64 << 20)), wood))
    yield Case("has archives in archives", lambda catalog: library(catalog, Entry(b"wood.zip", archive(wood, Entry(
        b"more.zip", archive(wood))))))
    yield Case("has 64-bit sizes", lambda catalog: zip64(catalog))
    yield Case("has 64-bit sizes without end", lambda catalog: library(catalog, Entry(
        b"wood.png", extra=struct.pack("<HHQQ", 1, 16, 1 << 62, 1 << 62),
        **both(size=LARGEST["I"], packed=LARGEST["I"]))),
        refused=True)
    yield Case("has 64-bit sizes that are missing", lambda catalog: library(catalog, Entry(
        b"wood.png", **both(size=LARGEST["I"], packed=LARGEST["I"]))), refused=True)
    yield Case("has an extra field that is too long", lambda catalog: library(catalog, Entry(
        b"wood.png", extra=struct.pack("<HH", 1, 60000))))
    yield Case("has much in an extra field", lambda catalog: library(catalog, Entry(
        b"wood.png", extra=struct.pack("<HH", 0x7777, 60000) + bytes(60000))))


def zip64(catalog):
    """As a writer makes it that knows no sizes beforehand."""
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, "w", zipfile.ZIP_DEFLATED) as opened:
        for name, content in (("Garden.calib", catalog), ("wood.png", b"wood")):
            with opened.open(name, "w", force_zip64=True) as entry:
                entry.write(content)
    return buffer.getvalue()


CASES = (*odd_names(), *odd_values(), *torn(), *bad_content(), *other_shapes())
