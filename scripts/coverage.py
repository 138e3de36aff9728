#!/usr/bin/env python3
"""Measures which lines and branches tests reach, per folder.

usage: coverage.py [--preset NAME] [--list PREFIX | --parsers]

Reads what the programs of a build with --coverage have left (`cmake --preset coverage`, build, run tests) and prints a
table of folders. Branches that only an exception takes are left out. --list prints the lines of the files whose paths
begin so that no test has reached. --parsers prints a table of the sources that read what strangers write, of lines
that the seeds of the fuzz targets reach where nothing else has run; exit code 1 when it is less than 80 % of one.
"""

import argparse
import collections
import fnmatch
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


def read(build):
    """Counts by file: lines, and branches by line and place."""
    lines = collections.defaultdict(lambda: collections.defaultdict(int))
    branches = collections.defaultdict(lambda: collections.defaultdict(int))
    for folder, _, names in os.walk(build):
        data = [os.path.join(folder, name) for name in names if name.endswith(".gcda")]
        if not data:
            continue
        made = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", *data], cwd=folder,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
        for text in made.stdout.splitlines():
            report = json.loads(text)
            for file in report["files"]:
                path = os.path.normpath(os.path.join(report["current_working_directory"], file["file"]))
                path = os.path.relpath(path, ROOT)
                if not path.startswith(OURS):
                    continue
                for line in file["lines"]:
                    number = line["line_number"]
                    lines[path][number] += line["count"]
                    for place, branch in enumerate(line["branches"]):
                        if not branch["throw"]:
                            branches[path][number, place] += branch["count"]
    return lines, branches


def folder_of(path):
    parts = path.split("/")
    return "/".join(parts[:2]) if parts[0] in ("siblings", "host") and len(parts) > 2 else parts[0]


def share(counts):
    reached = sum(1 for count in counts if count > 0)
    return f"{100.0 * reached / max(len(counts), 1):5.1f} % of {len(counts):5}"


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
            missed = [number for number, count in sorted(lines[path].items()) if count == 0]
            if missed:
                print(f"{path}: {' '.join(map(str, missed))}")
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
