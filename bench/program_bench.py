#!/usr/bin/env python3
"""Times whole commands of quilon on one result: what a user sees, from the start of the program to its end.

usage: program_bench.py QUILON [--megabytes N] [--repeats N] [--growth N]

Writes a .frd file of N megabytes (default 500: 40,000 nodes, displacements and stresses, step after step) into the
temporary folder, imports it, and runs every command on what came out. Prints for each the best and the median time of
the repeats, megabytes of its input a second by the best, and the most memory that the process took. Then the time a
megabyte at 1, 2, 4 ... times the least size, up to --growth megabytes (default 64), as a multiple of the first.
Files come from memory: each command is run once before it is measured.
"""

import argparse
import os
import pathlib
import shutil
import sys
import tempfile

from made_results import measure, write_results

NODES = 40000


def size_of(path):
    if path.is_file():
        return path.stat().st_size
    return sum(file.stat().st_size for file in path.rglob("*") if file.is_file())


def measure_often(command, repeats, prepare=lambda: None):
    prepare()
    measure(command)
    rounds = []
    for _ in range(repeats):
        prepare()
        rounds.append(measure(command))
    seconds = sorted(took for took, _ in rounds)
    return seconds[0], seconds[len(seconds) // 2], max(memory for _, memory in rounds)


def commands_on(quilon, folder):
    """@return name, command, its input, and what comes before each run"""
    frd, fed, onf, new = folder / "job.frd", folder / "job.fed", folder / "job.onf", folder / "new.fed"

    def gone(*paths):
        for path in paths:
            shutil.rmtree(path, ignore_errors=True)

    def copied():
        gone(new)
        shutil.copytree(fed, new)

    return [
        ("import", [quilon, "import", frd, "-o", fed], frd, lambda: gone(fed)),
        ("ls", [quilon, "ls", fed], fed, gone),
        ("ls, of the .frd", [quilon, "ls", frd], frd, gone),
        ("show a step", [quilon, "show", fed, "stress@sub=last", "--csv"], None, gone),
        ("max", [quilon, "max", fed, "stress.mises"], fed, gone),
        ("diff with itself", [quilon, "diff", fed, fed, "--brief"], fed, gone),
        ("derive", [quilon, "derive", new], fed, copied),
        ("to-onf", [quilon, "to-onf", fed, onf], fed, lambda: gone(onf)),
        ("from-onf", [quilon, "from-onf", onf, "-o", new], onf, lambda: gone(new)),
        ("check", [quilon, "check", fed], fed, gone),
        ("compact", [quilon, "compact", new], fed, copied),
        ("salvage", [quilon, "salvage", fed, "-o", new], fed, lambda: gone(new)),
    ]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("quilon", type=pathlib.Path)
    parser.add_argument("--megabytes", type=int, default=500)
    parser.add_argument("--repeats", type=int, default=5)
    parser.add_argument("--growth", type=int, default=64)
    given = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        write_results(folder / "job.frd", NODES if given.megabytes > 20 else 100, megabytes=given.megabytes)
        print(f"{'command':<18} {'input MB':>8} {'best s':>8} {'median s':>8} {'MB/s':>7} {'peak MiB':>8}")
        for name, command, source, prepare in commands_on(given.quilon, folder):
            best, median, memory = measure_often(command, given.repeats, prepare)
            size = size_of(source) / 1e6 if source else 0.0
            sizes = f"{size:8.1f}", f"{size / best:7.0f}"
            if not source:
                sizes = f"{'-':>8}", f"{'-':>7}"
            print(f"{name:<18} {sizes[0]} {best:8.2f} {median:8.2f} {sizes[1]} {memory:8.0f}", flush=True)

        names = ["import", "ls", "diff with itself", "to-onf", "check"]
        print("\ntime a MB of the .frd, as a multiple of the first\n" + f"{'MB':>4} " + " ".join(f"{name:>17}" for name in names))
        first = {}
        # Of the least size the start of the program would be most.
        size = max(1, given.growth // 16)
        while size <= given.growth:
            write_results(folder / "job.frd", NODES // 10 if size > 2 else 100, megabytes=size)
            cells = []
            for name, command, _, prepare in commands_on(given.quilon, folder):
                if name not in names:
                    continue
                best = measure_often(command, given.repeats, prepare)[0] / size_of(folder / "job.frd") * 1e6
                cells.append(f"{best / first.setdefault(name, best):17.2f}")
            print(f"{size:4d} " + " ".join(cells), flush=True)
            size *= 2


if __name__ == "__main__":
    main()
