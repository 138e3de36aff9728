#!/usr/bin/env python3
"""Peers that are reached from Python, on the jobs of the programs beside this one. Writes rows as those do; a module that
is not installed is named and left out."""

import argparse
import importlib
import json
import pathlib
import sys
import tempfile
import time


def load(name):
    try:
        return importlib.import_module(name)
    except ImportError:
        print(f"python_peers.py: {name} is not installed, left out", file=sys.stderr)
        return None


def time_rounds(rounds, contestants):
    """Seconds of each contestant, rounds in turn behind one that is not counted."""
    seconds = {name: [] for name in contestants}
    for number in range(rounds + 1):
        for name, run in contestants.items():
            start = time.perf_counter()
            run()
            if number:
                seconds[name].append(time.perf_counter() - start)
    return seconds


def write_rows(path, family, case, items, seconds):
    with open(path, "a", encoding="utf-8") as out:
        for name, times in seconds.items():
            times.sort()
            nanoseconds = [1e9 * each / items for each in times]
            row = {"family": family, "case": case, "contestant": name, "unit": "ns", "min": nanoseconds[0],
                   "median": nanoseconds[len(nanoseconds) // 2], "rounds": len(nanoseconds)}
            out.write(json.dumps(row) + "\n")


def average(size, rounds, rows):
    """Averages of tensors at the nodes of a regular mesh of hexahedra, from arrays to an array."""
    numpy = load("numpy")
    if numpy is None:
        return
    sparse = load("scipy.sparse")
    edge = 2
    while (edge + 1) ** 3 <= size:
        edge += 1
    k, j, i = numpy.meshgrid(*[numpy.arange(edge - 1)] * 3, indexing="ij")
    first = ((k * edge + j) * edge + i).ravel()
    corners = numpy.array([c + up for c in (0, 1, edge + 1, edge) for up in (0, edge * edge)])
    nodes = (first[:, None] + corners).ravel()
    values = numpy.full((nodes.size, 6), 0.5)

    def by_numpy():
        counts = numpy.bincount(nodes, minlength=edge**3)
        return numpy.stack([numpy.bincount(nodes, values[:, c], edge**3) / counts for c in range(6)], axis=1)

    def by_scipy():
        ones = numpy.ones(nodes.size)
        matrix = sparse.csr_matrix((ones, (nodes, numpy.arange(nodes.size))), shape=(edge**3, nodes.size))
        return (matrix @ values) / (matrix @ ones)[:, None]

    contestants = {"numpy": by_numpy}
    if sparse is not None:
        contestants["scipy"] = by_scipy
        assert numpy.array_equal(by_numpy(), by_scipy())
    write_rows(rows, "averaging", f"job/sums6/dense/{size}", nodes.size, time_rounds(rounds, contestants))


def mmread(size, rounds, rows):
    """The matrix of yale_text_bench from Matrix Market text."""
    numpy = load("numpy")
    io = load("scipy.io")
    if numpy is None or io is None:
        return
    per_row = 20
    num_rows = (size + per_row - 1) // per_row
    index = numpy.arange(size)
    row = index // per_row
    column = (row + 37 * (index % per_row)) % (num_rows + 740)
    value = numpy.random.default_rng(20250109).uniform(-1000.0, 1000.0, size)
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "matrix.mtx"
        with open(path, "w", encoding="ascii") as out:
            out.write(f"%%MatrixMarket matrix coordinate real general\n{num_rows} {num_rows + 740} {size}\n")
            out.writelines(f"{r} {c} {v:.17g}\n" for r, c, v in zip(row + 1, column + 1, value))
        write_rows(rows, "yale-text", f"read/{size}", size, time_rounds(rounds, {"mmread": lambda: io.mmread(path).tocsr()}))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("job", choices=("average", "mmread"))
    parser.add_argument("size", type=int)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--rows", required=True)
    given = parser.parse_args()
    {"average": average, "mmread": mmread}[given.job](given.size, given.rounds, given.rows)


if __name__ == "__main__":
    main()
