#!/usr/bin/env python3
"""Measures which lines and branches tests reach, per folder.

usage: coverage.py [--preset NAME] [--list PREFIX | --parsers]

Reads what the programs of a build with -fprofile-instr-generate -fcoverage-mapping have left in the build's folder
`profiles` (`cmake --preset coverage`, build, `ctest --preset coverage`) and prints a table of folders. A branch is one
side of a condition; of conditions in templates and in sources that several programs compile, what any of them has
reached. Those of assertions are left out. Wants llvm-14.

--list prints what no test has reached of the files whose paths begin so, a file a line, then the conditions that were
never true or never false. --parsers prints a table of the sources that read what strangers write, of lines that the
seeds of the fuzz targets reach where nothing else has run; exit code 1 when it is less than 80 % of one.
"""

import argparse
import collections
import fnmatch
import glob
import json
import os
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OURS = ("src/", "include/", "siblings/", "host/")
PARSERS = ("src/FED_YaleMatrixText.cpp", "siblings/QuilonDbConnector/src/FED_DatabaseInspection.cpp",
           "siblings/QuilonDbConnector/src/Manifest.cpp", "siblings/QuilonDbConnector/src/SegmentCheck.cpp",
           "siblings/QuilonDbConnector/src/SegmentIndex.cpp", "siblings/QuilonOnfEngine/src/OnfResultRequestFile.cpp",
           "siblings/QuilonOnfEngine/src/block_file.cpp", "siblings/QuilonOnfEngine/src/groups_text.cpp",
           "siblings/QuilonOnfEngine/src/text_cursor.cpp", "siblings/QuilonOnfEngine/src/text_syntax.cpp",
           "host/answers/CombinationFile.cpp", "host/calculix/*Reader.cpp", "host/calculix/deck/DeckConstraintReader.cpp",
           "host/calculix/deck/DeckConverter.cpp", "host/calculix/deck/DeckLineConverter.cpp",
           "host/calculix/deck/DeckLint.cpp", "host/calculix/deck/DeckModelReader.cpp",
           "host/calculix/deck/DeckReader.cpp", "host/calculix/deck/DeckReferences.cpp",
           "host/calculix/deck/DeckText.cpp", "host/diff/ComparisonRule.cpp", "host/diff/RuleSet.cpp",
           "host/elements/IntegrationRule.cpp", "host/matrix/MatrixMarket.cpp", "host/matrix/SolverMatrix.cpp",
           "host/matrix/YaleText.cpp", "host/selection/LoadCaseMap.cpp", "host/selection/Selection.cpp",
           "host/shards/BorderRule.cpp", "host/text/ColumnText.cpp", "host/text/LineFile.cpp",
           "host/text/NumberList.cpp")
LEAST_OF_PARSERS = 0.8
PROGRAMS = ("**/lib*.so.*", "host/quilon", "mpi/quilon-mpi", "tests/**/*_test", "tests/**/*_fuzz")


def has_code(path):
    """Whether it is a program or a shared library."""
    if os.path.islink(path) or not os.access(path, os.X_OK):
        return False
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


def lines_of(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read().split("\n")


def count_lines(segments):
    """Counts by line, from places in the order of the text where counts begin to hold."""
    counts, at, held = {}, 0, None
    while at < len(segments):
        line, here = segments[at][0], []
        while at < len(segments) and segments[at][0] == line:
            here.append(segments[at])
            at += 1
        entries = [count for _, _, count, has_count, is_entry, is_gap in here if has_count and is_entry and not is_gap]
        is_left_out = here[0][4] and not here[0][3]
        if not is_left_out and (entries or (held is not None and held[3])):
            counts[line] = max(entries + [held[2] if held is not None else 0])
        held = here[-1]
        # Lines without a place of their own have what held at the end of the one above.
        if held[3]:
            end = segments[at][0] if at < len(segments) else line
            counts.update((between, held[2]) for between in range(line + 1, end))
    return counts


def read(build):
    """Counts by file: lines, and sides of conditions by their places and whether they are true."""
    profiles = os.path.join(build, "profiles")
    merged = os.path.join(build, "coverage.profdata")
    left = glob.glob(os.path.join(profiles, "*.profraw"))
    subprocess.run(["llvm-profdata-14", "merge", "-sparse", "-o", merged, *left], check=True)
    programs = sorted(path for pattern in PROGRAMS for path in glob.glob(os.path.join(build, pattern), recursive=True)
                      if has_code(path))
    objects = [word for path in programs[1:] for word in ("-object", path)]
    made = subprocess.run(["llvm-cov-14", "export", "-instr-profile", merged, "-skip-functions", "-skip-expansions",
                           programs[0], *objects], stdout=subprocess.PIPE, check=True)
    lines = collections.defaultdict(dict)
    branches = collections.defaultdict(lambda: collections.defaultdict(int))
    for file in json.loads(made.stdout)["data"][0]["files"]:
        path = os.path.relpath(os.path.join(build, file["filename"]), ROOT)
        if not path.startswith(OURS):
            continue
        lines[path] = count_lines(file["segments"])
        text = lines_of(path)
        for line, column, _, _, when_true, when_false, *_ in file["branches"]:
            if text[line - 1].lstrip().startswith("assert("):
                continue
            branches[path][line, column, True] += when_true
            branches[path][line, column, False] += when_false
    return lines, branches


def folder_of(path):
    parts = path.split("/")
    return "/".join(parts[:2]) if parts[0] in ("siblings", "host") and len(parts) > 2 else parts[0]


def share(counts):
    reached = sum(1 for count in counts if count > 0)
    return f"{100.0 * reached / max(len(counts), 1):5.1f} % of {len(counts):5}"


def list_missed(path, lines, branches):
    missed = [number for number, count in sorted(lines.items()) if count == 0]
    if missed:
        print(f"{path}: {' '.join(map(str, missed))}")
    text = lines_of(path)
    for line, column, side in sorted(place for place, count in branches.items() if count == 0):
        if lines.get(line, 0) > 0:
            print(f"{path}:{line}:{column}: never {str(side).lower()}: {text[line - 1].strip()}")


def list_parsers(lines, branches):
    found = [path for path in sorted(lines) if any(fnmatch.fnmatch(path, pattern) for pattern in PARSERS)]
    print(f"{'parser':62} {'lines':>16} {'branches':>17}")
    less = 0
    for path in found:
        counts = lines[path].values()
        less += sum(count > 0 for count in counts) < LEAST_OF_PARSERS * len(counts)
        print(f"{path:62} {share(counts)} {share(branches[path].values())}")
    if less or not found:
        sys.exit(f"coverage.py: {less} of {len(found)} parsers have less than {LEAST_OF_PARSERS:.0%} of their lines reached")


def main():
    lines, branches = read(os.path.join(ROOT, "build", ARGUMENTS.preset))
    if ARGUMENTS.list:
        for path in sorted(path for path in lines if path.startswith(ARGUMENTS.list)):
            list_missed(path, lines[path], branches[path])
        return
    if ARGUMENTS.parsers:
        list_parsers(lines, branches)
        return
    of_folder = collections.defaultdict(lambda: ([], []))
    for path in lines:
        of_folder[folder_of(path)][0].extend(lines[path].values())
        of_folder[folder_of(path)][1].extend(branches[path].values())
    print(f"{'folder':32} {'lines':>16} {'branches':>17}")
    for folder, (line_counts, branch_counts) in sorted(of_folder.items()):
        print(f"{folder:32} {share(line_counts)} {share(branch_counts)}")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--preset", default="coverage")
    parser.add_argument("--list")
    parser.add_argument("--parsers", action="store_true")
    ARGUMENTS = parser.parse_args()
    main()
