#!/usr/bin/env python3
"""Compares values along lines with VTK's probe filter on an export of the same results.

usage: check_paths_vtk.py QUILON FIXTURES SCRATCH

Jobs of every solid are probed along two lines. VTK ends its search for a place in a quadratic cell early, so that its
values are those of a place beside the one that it was asked for; coordinates, probed like any other field, tell which.
The program is asked for the values at these places. Near a face VTK takes either element, also one that the place is a
little outside of; places are compared where both have them in the same one.
"""

import json
import subprocess
import sys
from pathlib import Path

import numpy as np
from vtkmodules.util.numpy_support import numpy_to_vtk, vtk_to_numpy
from vtkmodules.vtkCommonCore import vtkPoints
from vtkmodules.vtkCommonDataModel import vtkPolyData
from vtkmodules.vtkFiltersCore import vtkProbeFilter
from vtkmodules.vtkIOXML import vtkXMLUnstructuredGridReader

JOBS = ["hex8", "wedge6", "mixed_linear", "tet10", "wedge15", "hex20", "hex20r", "mixed_quadratic"]
COMPONENTS = ["xx", "yy", "zz", "xy", "yz", "zx"]
POINTS, LEAST, TOLERANCE = 41, 60, 1e-9
# Ends as parts of the box of a model: slanting, so that few points lie on faces.
LINES = [(np.array([0.05, 0.11, 0.17]), np.array([0.93, 0.81, 0.87])), (np.array([0.9, 0.13, 0.31]), np.array([0.1, 0.77, 0.53]))]


def run(*arguments):
    done = subprocess.run([str(a) for a in arguments], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, arguments))}: exit code {done.returncode}\n{done.stderr}")
    return done.stdout


def add(data, name, values):
    array = numpy_to_vtk(values.astype(float), deep=True)
    array.SetName(name)
    data.AddArray(array)


def probe(grid, places):
    points = vtkPoints()
    points.SetDataTypeToDouble()
    for place in places:
        points.InsertNextPoint(*place)
    line = vtkPolyData()
    line.SetPoints(points)
    prober = vtkProbeFilter()
    prober.SetInputData(line)
    prober.SetSourceData(grid)
    prober.Update()
    data = prober.GetOutput().GetPointData()
    isValid = vtk_to_numpy(data.GetArray(prober.GetValidPointMaskArrayName())).astype(bool)
    return [vtk_to_numpy(data.GetArray(name))[isValid] for name in ("place", "nodal-stress", "element")]


def main():
    quilon, fixtures, scratch = sys.argv[1], Path(sys.argv[2]) / "calculix", Path(sys.argv[3])
    scratch.mkdir(parents=True, exist_ok=True)
    for job in JOBS:
        stem, database, file = fixtures / job / job, scratch / f"{job}.fed", scratch / f"{job}.vtu"
        run(quilon, "import", f"{stem}.inp", f"{stem}.frd", f"{stem}.dat", "-o", database)
        run(quilon, "export", database, "stress@lc=1,sub=last", "-o", file)
        reader = vtkXMLUnstructuredGridReader()
        reader.SetFileName(str(file))
        reader.Update()
        grid = reader.GetOutput()
        add(grid.GetPointData(), "place", vtk_to_numpy(grid.GetPoints().GetData()))
        add(grid.GetCellData(), "element", vtk_to_numpy(grid.GetCellData().GetArray("id")))
        low, high = np.array(grid.GetBounds()).reshape(3, 2).T
        asked = [low + ((1 - part) * start + part * end) * (high - low)
                 for start, end in LINES for part in np.linspace(0, 1, POINTS)]
        places, stress, elements = probe(grid, asked)

        line = scratch / f"{job}.txt"
        line.write_text("".join(" ".join(repr(float(c)) for c in place) + "\n" for place in places))
        rows = json.loads(run(quilon, "path", database, "stress@lc=1,sub=last", "--through", line, "--json"))[0]["rows"]
        same = [row["element"] == element for row, element in zip(rows, elements)]
        ours = np.array([[row[c] for c in COMPONENTS] for row, isSame in zip(rows, same) if isSame])
        worst = np.max(np.abs(ours - stress[same])) / np.max(np.abs(stress))
        print(f"{job}: {sum(same)} of {len(asked)} points, {worst:.2g} of the largest")
        if sum(same) < LEAST or not worst <= TOLERANCE:
            sys.exit(f"{job}: expected {LEAST} points or more, and at most {TOLERANCE}")


if __name__ == "__main__":
    main()
