#!/usr/bin/env python3
"""Measures which lines and branches tests reach, per folder.

usage: coverage.py [--preset NAME] [--list PREFIX]

Reads what the programs of a build with --coverage have left (`cmake --preset coverage`, build, run tests) and prints a
table of folders. Branches that only an exception takes are left out. --list prints the lines of the files whose paths
begin so that no test has reached.
"""

import argparse
import collections
import json
import os
import subprocess

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OURS = ("src/", "include/", "siblings/", "host/")


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


def main():
    lines, branches = read(os.path.join(ROOT, "build", ARGUMENTS.preset))
    if ARGUMENTS.list:
        for path in sorted(path for path in lines if path.startswith(ARGUMENTS.list)):
            missed = [number for number, count in sorted(lines[path].items()) if count == 0]
            if missed:
                print(f"{path}: {' '.join(map(str, missed))}")
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
    ARGUMENTS = parser.parse_args()
    main()
