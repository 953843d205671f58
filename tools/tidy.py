#!/usr/bin/env python3
"""Runs clang-tidy over what changed since it last found nothing.

    tidy.py BUILD_FOLDER STAMPS [--again] [--jobs N]

A unit is one command of BUILD_FOLDER/compile_commands.json. Its stamp in the folder STAMPS is a hash of all
that its findings follow from: the command, clang-tidy and its configuration, this script, and the content of
each file that the compiler reads for it. The compiler is asked anew each time which files these are, so a
header that appears, goes, or hides another one counts, and so do comments. Status 1 when a unit has findings.
"""
import argparse
import concurrent.futures
import functools
import hashlib
import json
import pathlib
import re
import shlex
import subprocess
import sys

# Tests, and what is generated, are compiled with warnings as errors, and not looked at here.
SKIPPED = re.compile(r"/tests/|_autogen/|_verify_interface_header_sets/|/qrc_")

# Counts of findings, nearly all in system headers that are not shown, are no findings.
COUNTS = re.compile(r"^\d+ warnings? (generated\.|treated as error)")

# The analyzer follows paths through functions of the main file only. Where that is made of included sources, it has
# to be told to look into what is included, which takes it through all system headers, too.
INTO_INCLUDED = ["--extra-arg-before=-Xclang", "--extra-arg-before=-analyzer-opt-analyze-headers"]


def output_of(command, folder=None):
    return subprocess.run(command, cwd=folder, check=True, capture_output=True).stdout


@functools.lru_cache(maxsize=None)
def content_hash(path):
    return hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()


def files_read(unit):
    """Every file that the compiler reads for the unit, by its path."""
    command = shlex.split(unit["command"])
    output = command.index("-o")
    del command[output : output + 2]
    command.remove("-c")
    rule = output_of(command + ["-M"], unit["directory"]).decode()
    names = rule.split(":", 1)[1].replace("\\\n", " ")
    paths = re.findall(r"(?:\\.|[^\s\\])+", names)
    return sorted(str(pathlib.Path(unit["directory"], re.sub(r"\\(.)", r"\1", path))) for path in paths)


def tidy_command(unit, build_folder):
    included = INTO_INCLUDED if "/Unity/unity_" in unit["file"] else []
    return ["clang-tidy", "-p", build_folder, "--quiet", "--warnings-as-errors=*", *included, unit["file"]]


def fingerprint(unit, command):
    whole = hashlib.sha256()
    for part in (unit["command"], unit["directory"], *command, content_hash(__file__)):
        whole.update(part.encode() + b"\0")
    whole.update(output_of(["clang-tidy", "--version"]))
    whole.update(output_of(["clang-tidy", "--dump-config", unit["file"]]))
    for path in files_read(unit):
        whole.update(f"{path}\0{content_hash(path)}\0".encode())
    return whole.hexdigest()


def examine(unit, arguments):
    """"unchanged", "passed" or "failed", and what clang-tidy says."""
    command = tidy_command(unit, arguments.build_folder)
    try:
        current = fingerprint(unit, command)
    except subprocess.CalledProcessError as error:
        return "failed", error.stderr.decode(errors="replace")
    stamp = arguments.stamps / hashlib.sha256(unit["file"].encode()).hexdigest()
    if not arguments.again and stamp.exists() and stamp.read_text() == current:
        return "unchanged", ""
    stamp.unlink(missing_ok=True)
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
    findings = "".join(line for line in run.stdout.splitlines(keepends=True) if not COUNTS.match(line))
    if run.returncode != 0:
        return "failed", findings
    stamp.write_text(current)
    return "passed", findings


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build_folder")
    parser.add_argument("stamps", type=pathlib.Path)
    parser.add_argument("--again", action="store_true", help="also what has not changed")
    parser.add_argument("--jobs", type=int, default=1)
    arguments = parser.parse_args()
    arguments.stamps.mkdir(parents=True, exist_ok=True)

    database = json.loads(pathlib.Path(arguments.build_folder, "compile_commands.json").read_text())
    units = [unit for unit in database if not SKIPPED.search(unit["file"])]
    if not units:
        sys.exit("There is nothing to look at in " + arguments.build_folder)
    counts = {"unchanged": 0, "passed": 0, "failed": 0}
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for result, findings in pool.map(lambda unit: examine(unit, arguments), units):
            counts[result] += 1
            print(findings, end="", flush=True)
    print(f"clang-tidy: {counts['passed'] + counts['failed']} of {len(units)} units looked at, "
          f"{counts['failed']} with findings")
    sys.exit(1 if counts["failed"] else 0)


if __name__ == "__main__":
    main()
