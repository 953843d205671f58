#!/usr/bin/env python3
"""Checks what Windows asks of sources, so that it shows wherever they are written.

windows.h makes macros of many plain words. They replace what our sources call by these words, and what the headers behind
windows.h do, wherever somebody includes it first: an embedding application, a library's header, or another source that
is compiled as one with ours. Each finding is a line on standard error; any makes the exit code 1.

- No source has one of the words in `words` as a name.
- Installed headers have no call of min() or max() that a macro of two arguments would take: they stand in parentheses, as in
  (std::max)(a, b), because an application need not define NOMINMAX as we do.
- Only `system_files` include a header of Windows.
- What the standard library says of an error is asked for by VelkCommon/Platform alone: on Windows it is no UTF-8.
- A class that is exported as a whole has no class template of the standard library for its base: with Microsoft's
  compiler it would take the base's code along, and programs that use the base would have it twice.
- A source that includes a header of Windows, itself or through headers of ours, is never compiled as one with others:
  its CMakeLists.txt sets SKIP_UNITY_BUILD_INCLUSION for it. The same holds for headers of others that bring windows.h.

    check_portability.py              checks the sources
    check_portability.py --self-test  checks that the checks find what they are to find
"""

import re
import sys
import tempfile
from pathlib import Path

folders = ("VelkCommon", "VelkLibrary", "host", "tests", "benchmarks", "fuzz")
suffixes = (".h", ".cpp")

# What our own names might well be. Others, such as those in capitals with underscores, are nothing that we would choose,
# or begin a function's name with a capital, which ours do not.
words = frozenset("""
    near far small hyper interface pascal cdecl
    ABSOLUTE ALTERNATE BOOLEAN BYTE CALLBACK CHAR CONST DELETE DIFFERENCE DOMAIN ERROR FAILED FALSE FAR IGNORE IN INFINITE
    INTERFACE NEAR OPAQUE OPTIONAL OUT OVERFLOW PASSTHROUGH PLANES PURE RELATIVE STRICT SUCCEEDED TECHNOLOGY TEXT THIS
    TRANSPARENT TRUE UNDERFLOW VOID WINDING NO_ERROR
    AddJob CopyFile CreateDirectory CreateEvent CreateFile CreateFont CreateMutex CreateProcess CreateWindow DeleteFile
    DrawText EnumFonts FindText FindWindow GetClassInfo GetClassName GetCommandLine GetCurrentDirectory GetCurrentTime
    GetFileAttributes GetFreeSpace GetJob GetMessage GetObject GetProp GetTempPath GetUserName InsertMenu LoadImage
    LoadLibrary LoadString MessageBox MoveFile PlaySound PostMessage RegisterClass RemoveDirectory RemoveProp ReplaceText
    ReportEvent SendMessage SetPort SetProp StartDoc Yield
""".split())

# Who may speak with Windows.
system_files = re.compile(r"VelkCommon/Platform/(\w+Windows\.cpp|detail/Windows\.h)$|host/support/System(Channel)?Windows\.cpp$"
                          r"|tests/support/Imports\.cpp$")
system_header = re.compile(r"(windows|winsock2|winhttp|wininet|winbase|winnt|shellapi|shlobj|aclapi|bcrypt|wincrypt"
                           r"|ws2tcpip|tlhelp32|psapi|objbase|shobjidl|knownfolders)\.h$", re.IGNORECASE)
# Headers of others that include windows.h.
bringing_header = re.compile(r"curl/curl\.h$|httplib\.h$|boost/(asio|beast)(/|\.hpp$)")

include_line = re.compile(r'^[ \t]*#[ \t]*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)
not_code = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\'',
                      re.DOTALL)
error_text = re.compile(r"\.message\(\)|\bstrerror(_\w+)?\s*\(|\bperror\s*\(")
# The streams that the standard library's own module exports are no harm.
taking_base = re.compile(r"(?:class|struct)\s+VELK\w*_EXPORT\s+\w+[^;{]*:[^;{]*\bstd::"
                         r"(?:basic_\w+|[iow]*stringstream|[iow]*fstream|string|wstring|vector|map|set|\w*buf)\b")
open_limit = re.compile(r"\b(min|max)\s*\(")


def code_of(text):
    """The text without comments and literals, with as many lines as before."""
    return not_code.sub(lambda match: '""' + "\n" * match[0].count("\n"), text)


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def listing(path):
    """A CMakeLists.txt without comments, and with each loop written out."""
    text = re.sub(r"#.*", "", path.read_text("utf-8"))
    loop = re.compile(r"foreach\(\s*(\w+)\s+([^)]*)\)((?:(?!foreach\().)*?)endforeach\([^)]*\)", re.DOTALL)
    while match := loop.search(text):
        turns = (match[3].replace("${%s}" % match[1], value) for value in match[2].split())
        text = text[: match.start()] + "".join(turns) + text[match.end() :]
    return text


class Check:
    def __init__(self, root):
        self.root = root
        self.findings = []
        self.texts = {}
        for folder in folders:
            for path in sorted((root / folder).rglob("*")):
                if path.suffix in suffixes:
                    self.texts[path.relative_to(root).as_posix()] = path.read_text("utf-8")
        self.alone = self.sources_alone()
        self.closures = {}

    def report(self, path, line, text):
        self.findings.append(f"{path}:{line}: {text}")

    def run(self):
        installed = self.installed_headers()
        for path, text in self.texts.items():
            code = code_of(text)
            self.check_includes(path, text)
            if not system_files.match(path):
                self.check_words(path, code)
            if path.startswith(folders[:3]) and not path.startswith("VelkCommon/Platform/"):
                self.check_pattern(path, code, error_text, "on Windows this text is no UTF-8: Velk::errorText() is")
            self.check_pattern(path, code, taking_base, "exports a class template of the standard library with the class")
            if path in installed:
                self.check_limits(path, code)
        return self.findings

    def check_words(self, path, code):
        code = re.sub(r"^[ \t]*#.*", "", code, flags=re.MULTILINE)
        for match in re.finditer(r"\b[A-Za-z_]\w*\b", code):
            if match[0] in words:
                self.report(path, line_of(code, match.start()), f"'{match[0]}' is a macro of Windows' headers")

    def check_pattern(self, path, code, pattern, text):
        for match in pattern.finditer(code):
            self.report(path, line_of(code, match.start()), text)

    def check_limits(self, path, code):
        for match in open_limit.finditer(code):
            self.report(path, line_of(code, match.start()),
                        f"an application's macro may take {match[1]}(): write (std::{match[1]})(...)")

    def check_includes(self, path, text):
        for match in include_line.finditer(text):
            if system_header.match(match[1]) and not system_files.match(path):
                self.report(path, line_of(text, match.start()), f"{match[1]} is for the layer that knows the system")
        # A test may be compiled as one with others: its words are those of any other source.
        if path.endswith(".cpp") and (not path.startswith(("tests/", "benchmarks/", "fuzz/")) or system_files.match(path)):
            if (header := self.brought_by(path)) and path not in self.alone:
                self.report(path, 1, f"includes {header}, and may be compiled as one with others "
                                     "(SKIP_UNITY_BUILD_INCLUSION)")

    def brought_by(self, path):
        """The header of Windows that the file includes, or one that brings it; None where it includes neither."""
        if path not in self.closures:
            self.closures[path] = None  # headers that include each other end here
            for text in include_line.findall(self.texts[path]):
                places = (str(Path(path).parent / text), f"tests/{text}", text)
                own = next((place for place in places if place in self.texts), None)
                known = system_header.match(text) or bringing_header.match(text)
                if found := text if known and not own else own and self.brought_by(own):
                    self.closures[path] = found
                    break
        return self.closures[path]

    def sources_alone(self):
        alone = set()
        for path in self.root.rglob("CMakeLists.txt"):
            folder = path.parent.relative_to(self.root)
            if folder.parts and folder.parts[0] in folders:
                for arguments in re.findall(r"set_source_files_properties\(([^)]*)\)", listing(path)):
                    files, _, properties = arguments.partition("PROPERTIES")
                    if re.search(r"SKIP_UNITY_BUILD_INCLUSION\s+ON", properties):
                        alone.update((folder / name).as_posix() for name in files.split())
        return alone

    def installed_headers(self):
        headers = set()
        for library in ("VelkCommon", "VelkLibrary"):
            path = self.root / library / "CMakeLists.txt"
            text = re.sub(r"#.*", "", path.read_text("utf-8")) if path.exists() else ""
            for variable in re.findall(r"FILE_SET HEADERS[^)]*\bFILES \$\{(\w+)\}", text):
                names = re.search(rf"set\({variable}\s([^)]*)\)", text)[1].split()
                headers.update(f"{library}/{name}" for name in names)
        return headers


# ---- The check of the checks ----------------------------------------------------------------------

# Files of a small project, and the lines that must be found in each.
cases = {
    "VelkCommon/CMakeLists.txt": ("""
        set(headers Public.h)
        target_sources(Common PUBLIC FILE_SET HEADERS FILES ${headers})
        foreach(source File Path)
            set_source_files_properties(Platform/${source}Windows.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
        endforeach()
        # set_source_files_properties(Network/Late.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
        """, []),
    "VelkCommon/Public.h": ("inline int most(int a) { return std::max(a, 1); }\n"
                            "inline int least(int a) { return (std::min)(a, 1); }\n"
                            "inline int end() { return std::numeric_limits<int>::max(); }\n", [1, 3]),
    "VelkCommon/Hidden.h": ("inline int most(int a) { return std::max(a, 1); }\n", []),
    "VelkCommon/Words.cpp": ("// near\n/* far\n small */ int far = 1;\nconst char* text = \"near\";\nint near_ = '\\'';\n"
                             "int many = 1'000'000; char small = 'x';\nconst char* raw = R\"(far\nnear)\"; int near;\n"
                             "enum class Level { ERROR };\n", [3, 6, 8, 9]),
    "VelkCommon/Asking.cpp": ("\n#include <windows.h>\n", [1, 2]),
    "host/Saying.cpp": ("auto one = error.message();\nauto two = std::strerror(errno);\nauto three = zip_strerror(zip);\n"
                        "// error.message()\nauto four = \"error.message()\";\n", [1, 2]),
    "VelkCommon/Platform/Saying.cpp": ("auto one = error.message();\n", []),
    "VelkLibrary/Log.h": ("class VELKLIBRARY_EXPORT Log : public std::ostringstream\n{};\n"
                          "class VELKLIBRARY_VISIBLE Log2 : public std::ostringstream\n{};\n"
                          "class VELKLIBRARY_EXPORT Fault : public std::exception\n{ std::string text_; };\n"
                          "class VELKLIBRARY_EXPORT File\n  : public std::iostream\n{};\n"
                          "struct VELKLIBRARY_EXPORT Names\n  : private std::vector<int>\n{};\n", [1, 10]),
    "VelkCommon/Platform/detail/Windows.h": ("#include <windows.h>\n", []),
    "VelkCommon/Platform/FileWindows.cpp": ("#include <VelkCommon/Platform/detail/Windows.h>\nBOOL yes = TRUE;\n", []),
    "VelkCommon/Platform/PathWindows.cpp": ('#include "detail/Windows.h"\n', []),
    "VelkCommon/Platform/LateWindows.cpp": ("#include <winhttp.h>\n", [1]),
    "VelkCommon/Network/Late.cpp": ("#include <VelkCommon/Network/Session.h>\n", [1]),
    "VelkCommon/Network/Session.h": ("#include <curl/curl.h>\n", []),
    "tests/SessionTest.cpp": ("#include <VelkCommon/Network/Session.h>\nbool small;\n", [2]),
}


def self_test():
    with tempfile.TemporaryDirectory() as folder:
        for path, (text, _) in cases.items():
            file = Path(folder, path)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, "utf-8")
        found = {(path, int(line)) for path, line, _ in (finding.split(":", 2) for finding in Check(Path(folder)).run())}
    wanted = {(path, line) for path, (_, lines) in cases.items() for line in lines}
    return [f"found, but not wrong: {path}:{line}" for path, line in sorted(found - wanted)] + [
        f"wrong, but not found: {path}:{line}" for path, line in sorted(wanted - found)]


findings = self_test() if sys.argv[1:] == ["--self-test"] else Check(Path(".")).run()
for finding in findings:
    print(finding, file=sys.stderr)
sys.exit(1 if findings else 0)
