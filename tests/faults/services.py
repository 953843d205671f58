"""Hostile services: one kind of request is answered as no service should.

A hostile service stands before the real one. It passes every request on, and twists the answers to one kind of
request. What a client cannot see through, such as a service that says that nothing is new, may end in "done"; anything
else must not, unless all that was asked for is there.
"""
import http.client
import http.server
import random
import re
import signal
import socket
import struct
import sys
import threading
import time
from collections.abc import Callable
from dataclasses import dataclass

import archives
import runs
import states
from bench import Point, Row
from paths import PATHS

GATE = "hostile services"
SHORT = 8
BY_NAME = {path.name: path for path in PATHS}

# How long a client waits for an answer that does not come, until its user loses patience, and how soon it then ends.
PATIENCE = 2
END = 5

# What a client may make of a twisted answer, unless it refuses it.
REFUSED = "refused"
BELIEVED = "believed"
TAKEN = "taken"

# The service tells no hash of these, so whatever comes is taken, and one that does not come is missing.
UNCHECKED = ("logo",)

# Which requests of which path: the method and a pattern of what is asked for.
REQUESTS = {
    "update over": {
        "endpoint": ("HEAD", r"/"),
        "start": ("HEAD", r"/catalog\?v=1"),
        "index": ("GET", r".*Index\.txt.*"),
        "check": ("HEAD", r".*library=(?!.*Index).*"),
        "catalog": ("GET", r".*library=Kitchen\.calib\b.*"),
        "textures": ("GET", r".*library=Kitchen\.zip.*"),
        "package": ("GET", r".*library=Garden\.calibz.*"),
    },
    "manufacturer update": {"cards": ("GET", r"/manufacturers"), "logo": ("GET", r"/logo.*")},
    "unpack address": {"package": ("GET", r".*\.calibz")},
}


@dataclass
class Answer:
    """What the real service says, to be twisted."""

    path: str
    status: int
    headers: list
    body: bytes

    def with_header(self, name, *values):
        self.headers = [pair for pair in self.headers if pair[0].lower() != name.lower()]
        self.headers += [(name, value) for value in values]
        return self

    def with_body(self, body, status=200):
        self.status, self.body = status, body
        return self.with_header("Content-Length", str(len(body)))

    def whole(self):
        return self.head() + self.body

    def head(self):
        lines = [f"HTTP/1.1 {self.status} Said", *(f"{name}: {value}" for name, value in self.headers)]
        return "\r\n".join([*lines, "", ""]).encode("latin-1", errors="replace")


@dataclass(frozen=True)
class Twist:
    """What becomes of an answer: what is sent instead, or a sending of its own that returns nothing.

    `meaning` is what the client may make of it. With `endless`, the client is interrupted, as by Ctrl-C. A twist is
    for some kinds of requests, and for all when it names none.
    """

    name: str
    send: Callable
    meaning: str = REFUSED
    endless: bool = False
    requests: tuple = ()


def rows(bench):
    return [Row(f"{name}/service", GATE, lambda name=name: points(bench, name)) for name in REQUESTS]


def points(bench, name):
    path = BY_NAME[name]
    result = [Point(f"{kind} {twist.name}", lambda kind=kind, twist=twist: examine(bench, path, kind, twist))
              for kind in REQUESTS[name] for twist in (*TWISTS, *twisted_packages(bench))
              if not twist.requests or kind in twist.requests]
    return bench.sample(result, SHORT, f"{name}/service")


def examine(bench, path, kind, twist):
    known = bench.known(path)
    asked = REQUESTS[path.name][kind]
    upstream = bench.workshop.files.address if "{files}" in " ".join(path.command) else bench.workshop.service
    with bench.folders.copy_of(known.prepared) as folder, HostileService(upstream, asked, twist) as service:
        command = [word.replace(upstream.rstrip("/"), service.address) for word in known.command]
        outcome = interrupted(bench, command, folder) if twist.endless else bench.program.run(command, folder)
        if (fault := bench.fault_of_outcome(outcome)) is not None:
            return fault
        if service.fault or not service.twisted:
            return service.fault or "the request was never made"
        if twist.meaning == TAKEN or kind in UNCHECKED:
            if twist.endless:  # what an interruption leaves, the next run removes
                bench.program.run(known.command, folder)
            left = states.litter(states.state_of(folder), known.old, known.new)
            return f"files of no meaning: {', '.join(left)}" if left else None
        if outcome.code == 0 and twist.meaning == BELIEVED:
            outcome.code = None
        return bench.fault_of_state(path, folder, outcome) or bench.fault_of_repetition(path, folder)


def interrupted(bench, command, folder):
    """The outcome of a client whose user loses patience. One that knows no Ctrl-C ends by it."""
    process = bench.program.start(command, folder)
    time.sleep(PATIENCE)
    process.send_signal(signal.SIGINT)
    outcome = runs.finished(process, END)
    if outcome.code == -signal.SIGINT:
        return runs.Outcome(1, outcome.said, outcome.reported or "interrupted")
    return outcome


class HostileService(http.server.ThreadingHTTPServer):
    """Passes requests on to another service and twists the answers to some of them."""

    daemon_threads = True
    block_on_close = False

    class Handler(http.server.BaseHTTPRequestHandler):
        protocol_version = "HTTP/1.1"

        def do_GET(self):
            answer = self.server.ask(self.command, self.path, self.headers)
            method, pattern = self.server.asked
            twisted = self.command == method and re.fullmatch(pattern, self.path)
            try:
                self.reply(answer, self.server.twist if twisted else None)
            except OSError:
                self.close_connection = True

        do_HEAD = do_GET

        def reply(self, answer, twist):
            sent = answer
            if twist is not None:
                self.server.twisted = True
                self.close_connection = True
                sent = twist.send(answer, self.connection)
            if isinstance(sent, Answer):
                sent = sent.head() if self.command == "HEAD" else sent.whole()
            self.connection.sendall(sent or b"")

        def log_message(self, *_):
            pass

    def __init__(self, upstream, asked, twist):
        super().__init__(("127.0.0.1", 0), self.Handler)
        self.upstream = upstream.removeprefix("http://").rstrip("/")
        self.asked = asked
        self.twist = twist
        self.twisted = False
        self.fault = None
        self.address = f"http://127.0.0.1:{self.server_address[1]}"

    def __enter__(self):
        threading.Thread(target=self.serve_forever, args=(0.02,), daemon=True).start()
        return self

    def __exit__(self, *_):
        self.shutdown()
        self.server_close()

    def handle_error(self, *_):
        """A client may go away at any time; anything else is a fault of this service."""
        if not isinstance(sys.exc_info()[1], OSError):
            self.fault = repr(sys.exc_info()[1])

    def ask(self, method, path, headers):
        upstream = http.client.HTTPConnection(self.upstream, timeout=20)
        wanted = {name: value for name, value in headers.items() if name.lower() == "if-none-match"}
        upstream.request(method, path, headers=wanted)
        said = upstream.getresponse()
        answer = Answer(path, said.status, [pair for pair in said.getheaders() if pair[0].lower() != "connection"],
                        said.read())
        upstream.close()
        return answer.with_header("Location", *(location.replace(self.upstream, self.address[7:])
                                                for name, location in answer.headers if name == "Location"))


# ---- The twists --------------------------------------------------------------------------------------------

PAGE = b"<!DOCTYPE html><html><body><h1>Welcome to the hotel's network</h1></body></html>\n"
BYTES = ("catalog", "textures", "package", "logo")
TAGGED = ("check",)
NOT_INDEX = ("endpoint", "start", "check", *BYTES, "cards")


def status(code, body=b"no\n"):
    return lambda answer, _: answer.with_body(body, code)


def instead(change):
    return lambda answer, _: answer.with_body(change(answer.body))


def header(name, *values):
    return lambda answer, _: answer.with_header(name, *values)


def raw(content):
    return lambda answer, _: content


def redirected(answer, location):
    return answer.with_body(b"", 302).with_header("Location", location)


def redirect(location):
    return lambda answer, _: redirected(answer, location)


def cut(part):
    """The length is that of the whole."""
    def send(answer, _):
        return answer.whole()[: len(answer.head()) + int(len(answer.body) * part)]
    return send


def reset(answer, connection):
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    connection.close()


def chunks(*parts):
    def send(answer, _):
        answer.with_header("Content-Length").with_header("Transfer-Encoding", "chunked")
        return answer.head() + b"".join(parts)
    return send


def silence(answer, connection):
    connection.settimeout(runs.SECONDS)
    connection.recv(1)


def half_then_silence(answer, connection):
    whole = answer.whole()
    connection.sendall(whole[: len(whole) // 2])
    silence(answer, connection)


def drip(answer, connection):
    """A byte at a time, and after a while the rest."""
    whole = answer.whole()
    for index in range(60):
        connection.sendall(whole[index : index + 1])
        time.sleep(0.01)
    return whole[60:]


def endless_headers(answer, connection):
    connection.sendall(b"HTTP/1.1 200 Said\r\n")
    while True:
        connection.sendall(b"X-More: and more\r\n" * 1000)


def endless_body(answer, connection):
    connection.sendall(b"HTTP/1.1 200 Said\r\n\r\n")
    while True:
        connection.sendall(bytes(100000))


def flipped(body):
    middle = len(body) // 2
    return body[:middle] + bytes([body[middle] ^ 1]) + body[middle + 1 :] if body else body


def noise(size):
    return random.Random(size).randbytes(size)


def index(text, name, meaning=BELIEVED, endless=False):
    """The service's word is all that a client knows of what there is."""
    return Twist(name, lambda answer, _: answer.with_body(text), meaning, endless, ("index",))


def cards(text, name, meaning=REFUSED):
    return Twist(name, lambda answer, _: answer.with_body(text), meaning, False, ("cards",))


def changed_cards(old, new, name):
    """Data that can be read, and are taken as the service has them."""
    return Twist(name, lambda answer, _: answer.with_body(answer.body.replace(old, new)), TAKEN, False, ("cards",))


ANYTHING = (
    *(Twist(f"answers {code}", status(code)) for code in (400, 401, 404, 410, 416, 429, 500, 502, 503)),
    Twist("answers 403 with a megabyte", status(403, b"You may not. " * 80000)),
    Twist("answers 200 with a page", status(200, PAGE)),
    Twist("answers 204", status(204, b""), requests=NOT_INDEX),
    Twist("answers 304 unasked", status(304, b""), BELIEVED),
    Twist("answers 999", status(999)),
    Twist("redirects to itself", lambda answer, _: redirected(answer, answer.path)),
    Twist("redirects without end", lambda answer, _: redirected(answer, answer.path + "0")),
    Twist("redirects to another page", redirect("/catalog?v=1&page=login")),
    Twist("redirects to a file", redirect("file:///etc/passwd")),
    Twist("redirects to where nobody is", redirect("http://127.0.0.1:9/")),
    Twist("redirects to no address", redirect("")),
    Twist("redirects without an address", status(302, b"")),
    Twist("closes at once", raw(b"")),
    Twist("resets the connection", reset),
    Twist("answers noise", raw(noise(3000))),
    Twist("answers in an old way", raw(b"hello\r\n")),
    Twist("stops in the status line", raw(b"HTTP/1.1 20")),
    Twist("stops in the headers", raw(b"HTTP/1.1 200 OK\r\nContent-Le")),
    Twist("claims another protocol", raw(b"SPDY/9.9 200 OK\r\n\r\n")),
    Twist("has a header of a megabyte", header("X-Long", "a" * 1000000)),
    Twist("has ten thousand headers", header("X-Many", *map(str, range(10000)))),
    Twist("has control characters in a header", header("X-Bell", "\x1b[31m\x07\x08red")),
    Twist("has headers without names", header("", "a", "b", "c")),
    Twist("drips", drip),
    Twist("is silent", silence, endless=True),
    Twist("is silent in the middle", half_then_silence, endless=True),
    Twist("sends headers for ever", endless_headers, endless=True),
)

WITH_BODY = ("index", *BYTES, "cards")

BODIES = tuple(Twist(name, send, REFUSED, endless, WITH_BODY) for name, send, endless in (
    ("stops at once", cut(0), False),
    ("stops in the middle", cut(0.5), False),
    ("stops before the end", cut(0.99), False),
    ("announces more than it sends", header("Content-Length", "99999999"), False),
    ("announces more than there can be", header("Content-Length", "99999999999999999999"), False),
    ("announces less than nothing", header("Content-Length", "-1"), False),
    ("announces two lengths", header("Content-Length", "5", "500000"), False),
    ("announces no number", header("Content-Length", "some"), False),
    ("announces nothing", header("Content-Length"), False),
    ("announces gzip", header("Content-Encoding", "gzip"), False),
    ("announces an unknown encoding", header("Content-Encoding", "velvet"), False),
    ("sends chunks without an end", chunks(b"5\r\nhello\r\n"), False),
    ("sends chunks of no size", chunks(b"zz\r\nhello\r\n0\r\n\r\n"), False),
    ("sends chunks of any size", chunks(b"FFFFFFFFFFFFFFFFF\r\nhello\r\n"), False),
    ("sends for ever", endless_body, True),
))

OTHER_BYTES = tuple(Twist(name, send, REFUSED, False, BYTES) for name, send in (
    ("announces less than it sends",
     lambda answer, _: answer.with_header("Content-Length", str(len(answer.body) // 2))),
    ("sends nothing", instead(lambda body: b"")),
    ("sends zeros", instead(lambda body: bytes(len(body)))),
    ("sends noise", instead(lambda body: noise(len(body)))),
    ("sends another byte", instead(flipped)),
    ("sends more", instead(lambda body: body + b"more")),
    ("sends less", instead(lambda body: body[:-9])),
    ("sends a part", lambda answer, _: answer.with_body(answer.body[:100], 206)),
))

TAGS = tuple(Twist(name, send, REFUSED, False, TAGGED) for name, send in (
    ("has a tag of other bytes", header("ETag", '"' + "a" * 40 + '"')),
    ("has a tag that is no hash", header("ETag", '"yesterday"')),
    ("has a tag with a path", header("ETag", '"../../../evil"')),
    ("has a tag with a line's end", header("ETag", '"a\x0bb:c"')),
    ("has a tag of a megabyte", header("ETag", '"' + "b" * 200000 + '"')),
    ("has an empty tag", header("ETag", '""')),
    ("has two tags", header("ETag", '"' + "c" * 40 + '"', '"' + "d" * 40 + '"')),
    ("has no tag", header("ETag")),
    ("has a weak tag", lambda answer, _: answer.with_header("ETag", *("W/" + value for name, value in answer.headers
                                                                     if name == "ETag"))),
    ("has no length", header("Content-Length")),
    ("has a length of nothing", header("Content-Length", "0")),
    ("has a length below nothing", header("Content-Length", "-5")),
    ("has any length", header("Content-Length", "99999999999999999999999")),
))

INDEXES = (
    Twist("answers 204", status(204, b""), BELIEVED, False, ("index",)),
    index(b"", "is empty"),
    index(b"\n" * 100000, "is blank"),
    index(b"".join(b"no library %d\n" % number for number in range(500000)), "has 500,000 lines"),
    index(b"".join(b"lib%d.calib\n" % number for number in range(500000)), "has 500,000 libraries", endless=True),
    index(b"Kitchen.calib\nKitchen.zip\n" * 1000, "repeats itself", REFUSED),
    index(b"Kitchen.calib\r\nKitchen.zip\r\n", "ends its lines as Windows does", REFUSED),
    index(b"Kitchen.calib\nKitchen.zip", "has no end of line", REFUSED),
    index(b"../evil.calib\n..\\evil.calib\n/evil.calib\nC:\\evil.calib\nC:evil.calib\na/b.calib\n", "has paths"),
    index(b".calib\n..calib\n.\n..\nCON.calib\nnul.zip\nx.calib:stream\n", "has odd names"),
    index(b"\x1b[31mred.calib\nbell\x07.calib\nnul\x00.calib\n\xe2\x80\xaereversed.calib\n", "has control characters"),
    index(b"\xff\xfe\xfa.calib\n\xc3\x28.zip\n", "is not UTF-8"),
    index(b"a" * 5000000 + b".calib\n", "has one long line"),
    index(b"a" * 300 + b".calib\n", "has a name that no disk can store"),
    index(b"catalog_hash.txt\ncatalog_filters.json\nerrors.log\n", "has the client's own files"),
    index(b"Missing.calib\nMissing.zip\nMissing.calibz\n", "has libraries that are not there"),
    index(b"Other.calib&product=more\nOther.calib#\nOther%2ecalib\n", "has queries"),
    index(noise(100000), "is noise"),
)

CARDS = (
    cards(b"", "are empty"),
    cards(b"{}", "have nothing", TAKEN),
    cards(b"[]", "are a list"),
    cards(b"{" * 100000, "are deep"),
    cards(b'{"Version": "42", "Last_Modified": "20990101T000000.000000", "Manufacturer_1": 5}', "have no cards"),
    cards(b'{"Version": "42", "Last_Modified": "soon"}', "have no time"),
    cards(b'{"Version": "42", "Last_Modified": "20990101T000000.000000", "Default_Text": 7}', "have numbers for texts"),
    cards(b'{"Version": "42", "Last_Modified": "19990101T000000.000000"}', "are old", BELIEVED),
    cards(noise(100000), "are noise"),
    cards(b'{"Version": "42", "Default_Text": "' + b"x" * (9 << 20) + b'"}', "have a text of nine megabytes", TAKEN),
    changed_cards(b"acme.png", b"../acme.png", "have a logo in another folder"),
    changed_cards(b"acme.png", b"/evil.png", "have a logo at a path"),
    changed_cards(b"acme.png", b"manufacturer_data.json", "have the data for a logo"),
    changed_cards(b"acme.png", b"missing.png", "have a logo that is not there"),
    changed_cards(b"Acme", b"\\u001b[31mAcme\\u0007", "have control characters"),
    changed_cards(b"Acme", b"A" * 1000000, "have a name of a megabyte"),
)

TWISTS = (*ANYTHING, *BODIES, *OTHER_BYTES, *TAGS, *INDEXES, *CARDS)


def twisted_packages(bench):
    """Every hostile archive that cannot be taken, in the place of a packed library."""
    catalog = (bench.workshop.folder / "new/Garden.calib").read_bytes()
    return [Twist(f"sends an archive that {case.name}", instead(lambda _, case=case: case.make(catalog)), REFUSED,
                  False, ("package",)) for case in archives.CASES if case.refused]
