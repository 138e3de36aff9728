#!/usr/bin/env python3
"""Peers that are reached from Python, on the jobs of the programs beside this one. Writes rows as those do; a module that
is not installed is named and left out."""

import argparse
import importlib
import json
import os
import pathlib
import shutil
import subprocess
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
    vtk, to_vtk = load("vtkmodules.all"), load("vtkmodules.util.numpy_support")
    if vtk is not None:
        # One value an element: this filter knows no others.
        cells = vtk.vtkCellArray()
        offsets = 8 * numpy.arange(first.size + 1)
        cells.SetData(to_vtk.numpy_to_vtkIdTypeArray(offsets), to_vtk.numpy_to_vtkIdTypeArray(nodes))
        points = vtk.vtkPoints()
        points.SetData(to_vtk.numpy_to_vtk(numpy.indices((edge,) * 3).reshape(3, -1).T.astype(float)))
        grid = vtk.vtkUnstructuredGrid()
        grid.SetPoints(points)
        grid.SetCells(vtk.VTK_HEXAHEDRON, cells)
        grid.BuildLinks()
        tensors = to_vtk.numpy_to_vtk(values[::8].copy())
        tensors.SetName("stress")
        grid.GetCellData().AddArray(tensors)
        filtered = vtk.vtkCellDataToPointData()
        filtered.SetInputData(grid)

        def by_vtk():
            filtered.Modified()
            filtered.Update()
            return to_vtk.vtk_to_numpy(filtered.GetOutput().GetPointData().GetArray("stress"))

        contestants["vtk"] = by_vtk
        assert numpy.allclose(by_numpy(), by_vtk())
    write_rows(rows, "averaging", f"job/sums6/dense/{size}", nodes.size, time_rounds(rounds, contestants))


def mmread(size, rounds, rows, quilon):
    """The matrix of yale_text_bench from Matrix Market text, into memory and, by the program, into a database."""
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
        contestants = {"mmread": lambda: io.mmread(path).tocsr()}
        if quilon is not None:
            database = pathlib.Path(folder) / "matrix.fed"

            def run_import():
                shutil.rmtree(database, ignore_errors=True)
                subprocess.run([quilon, "matrix", "import", path, "-o", database, "--as", "stiffness"], check=True, stdout=subprocess.DEVNULL)

            contestants["import"] = run_import
        write_rows(rows, "yale-text", f"read/{size}", size, time_rounds(rounds, contestants))


def exodus(size, rounds, _):
    """A step of nodal tensors that becomes part of a file in the layout of Exodus, until it is on the disk."""
    numpy = load("numpy")
    netcdf = load("netCDF4")
    if numpy is None or netcdf is None:
        return
    values = numpy.arange(6.0 * size).reshape(6, size)
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "results.exo"
        with netcdf.Dataset(path, "w", format="NETCDF3_64BIT_OFFSET") as file:
            file.createDimension("time_step", None)
            file.createDimension("num_nodes", size)
            file.createVariable("time_whole", "f8", ("time_step",))
            for component in range(6):
                file.createVariable(f"vals_nod_var{component + 1}", "f8", ("time_step", "num_nodes"))

        def write():
            with netcdf.Dataset(path, "a") as file:
                step = file.dimensions["time_step"].size
                file["time_whole"][step] = 0.5 * step
                for component in range(6):
                    file[f"vals_nod_var{component + 1}"][step] = values[component]
            with open(path, "rb+") as file:
                os.fsync(file.fileno())

        times = sorted(time_rounds(rounds, {"exodus": write})["exodus"])
        print(f"Exodus     best {1e3 * times[0]:9.3f} ms, median {1e3 * times[len(times) // 2]:9.3f} ms, by netCDF")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("job", choices=("average", "mmread", "exodus"))
    parser.add_argument("size", type=int)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--rows", help="a file of rows; exodus prints a line instead")
    parser.add_argument("--quilon", help="the program, which mmread measures as well")
    given = parser.parse_args()
    if given.job == "mmread":
        mmread(given.size, given.rounds, given.rows, given.quilon)
    else:
        {"average": average, "exodus": exodus}[given.job](given.size, given.rounds, given.rows)


if __name__ == "__main__":
    main()
