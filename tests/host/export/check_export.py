#!/usr/bin/env python3
"""Exports results and reads every number back: against what `quilon show` prints, for every type of element.

usage: check_export.py QUILON FIXTURES SCRATCH [--vtk]

Without --vtk the files are read by the few lines below and by h5py. With it they are read by VTK as well (Debian package
python3-vtk9), which also has to find the volume of every solid positive and its faces looking outwards.
"""

import json
import math
import os
import shutil
import struct
import subprocess
import sys
import xml.etree.ElementTree as xml

import h5py
import numpy as np

quilon, fixtures, scratch = (os.path.abspath(path) for path in sys.argv[1:4])
with_vtk = "--vtk" in sys.argv[4:]
if with_vtk:
    import vtk
    from vtk.util.numpy_support import vtk_to_numpy

TYPES = {"UInt8": np.uint8, "Int32": np.int32, "Int64": np.int64, "Float64": np.float64, "UInt32": np.uint32,
         "UInt64": np.uint64}
checked = 0  # numbers


def expect(condition, text):
    if not condition:
        sys.exit("check_export: " + text)


def run(*command):
    done = subprocess.run([quilon, *command], stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8")
    expect(done.returncode == 0, f"quilon {' '.join(command)}: {done.stderr}")
    return done.stdout


# --- a model with every type of element -------------------------------------------------------------------------------

BRICK = [(-1, -1, -1), (1, -1, -1), (1, 1, -1), (-1, 1, -1), (-1, -1, 1), (1, -1, 1), (1, 1, 1), (-1, 1, 1)]
WEDGE = [(0, 0, -1), (1, 0, -1), (0, 1, -1), (0, 0, 1), (1, 0, 1), (0, 1, 1)]
TETRA = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)]
TRIANGLE = [(0, 0, 0), (1, 0, 0), (0, 1, 0)]
SQUARE = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0)]
# deck type: type code of the .frd, corners, edges that have a middle node, volume
SHAPES = {
    "C3D8": (1, BRICK, "", 8.0),
    "C3D6": (2, WEDGE, "", 1.0),
    "C3D4": (3, TETRA, "", 1 / 6),
    "C3D20": (4, BRICK, "01 12 23 30 45 56 67 74 04 15 26 37", 8.0),
    "C3D15": (5, WEDGE, "01 12 20 34 45 53 03 14 25", 1.0),
    "C3D10": (6, TETRA, "01 12 20 03 13 23", 1 / 6),
    "S3": (7, TRIANGLE, "", None),
    "S6": (8, TRIANGLE, "01 12 20", None),
    "S4": (9, SQUARE, "", None),
    "S8": (10, SQUARE, "01 12 23 30", None),
    "B31": (11, [(0, 0, 0), (1, 0, 0)], "", None),
    "B32": (12, [(0, 0, 0), (0.5, 0, 0), (1, 0, 0)], "", None),
    "SPRINGA": (0, [(0, 0, 0), (1, 0, 0)], "", None),
    "MASS": (0, [(0, 0, 0)], "", None),
}


def write_all_types(folder):
    """Elements side by side, turned and sheared so that no direction is special; ids with gaps that do not ascend with
    the deck. Results of two steps at some of the nodes and elements, one NaN among them."""
    nodes, elements = [], []
    for number, (name, (code, corners, edges, _)) in enumerate(SHAPES.items()):
        points = [np.array(corner, float) for corner in corners]
        points += [0.5 * (points[int(a)] + points[int(b)]) for a, b in edges.split()]
        ids = []
        for x, y, z in points:
            ids.append(10 + 37 * len(nodes) % 211)
            nodes.append((ids[-1], (x + 0.3 * y + 5 * number, y - 0.2 * z, z + 0.1 * x)))
        elements.append((40 - 2 * number if number % 2 else 3 + number, code, 1 + number % 3, ids))

    blocks = {}

    def block(name, onf, step, form, records):
        lines = ["onf-text-block: 1", "iteration: 0", f"onf: {onf} {name}"]
        if step:
            lines += ["load-case: 1", f"substep: {step}", "analysis: 1"]
        lines += [f"record-format: {form}", "records-by: id", f"records: {len(records)}"]
        lines += [f"{i} " + " ".join(values) for i, values in sorted(records)]
        blocks[f"{name}_{step}.onf"] = "\n".join(lines) + "\n"

    def words(*values):
        return ["nan" if math.isnan(v) else format(v + 0.0, ".17g") for v in values]

    block("coordinates", 516, 0, "V", [(i, words(*p)) for i, p in nodes])
    block("element-nodes", 595, 0, "lb", [(i, [f"[{len(n)}]", *map(str, n)]) for i, _, _, n in elements])
    block("element-type", 596, 0, "Ii", [(i, [str(code), str(material)]) for i, code, material, _ in elements])
    for step in (1, 2):
        block("displacement", 510, step, "V",
              [(i, words(step * x / 3, math.nan if i == nodes[5][0] else -y, z)) for i, (x, y, z) in nodes[step:]])
        block("nodal-stress", 521, step, "T",
              [(i, words(x, y, z, step, x * y, y * z)) for i, (x, y, z) in nodes[: 40 + step]])
        block("element-energy", 540, step, "D", [(i, words(i / 7 + step)) for i, _, _, _ in elements[step:]])
    block("temperature", 514, 2, "D", [(i, words(x + 300)) for i, (x, _, _) in nodes])  # of one step alone
    block("user-node-vector-1100", 1100, 0, "V", [(i, words(z, y, x)) for i, (x, y, z) in nodes])  # of all steps
    block("element-stress", 561, 2, "T", [(i, words(*range(i, i + 6))) for i, _, _, _ in elements])

    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    for name, text in blocks.items():
        with open(os.path.join(folder, name), "w", encoding="ascii") as file:
            file.write(text)
    with open(os.path.join(folder, "index"), "w", encoding="ascii") as file:
        file.write("onf-text-index: 1\nnames: 0\nblocks: %d\n" % len(blocks))
        file.writelines(f"block: {name}\n" for name in sorted(blocks))


# --- what the database holds, as another command prints it ------------------------------------------------------------


class Expected:
    """Blocks by kind and step, from `quilon show --json`."""

    def __init__(self, database):
        self.fields, self.steps = {}, []
        for block in json.loads(run("show", database, "all", "--json")):
            key = tuple(block.get(k) for k in ("it", "an", "lc", "sub", "inc"))
            step = key if "lc" in block else None
            if step and block["onf"] != 500 and step not in self.steps:
                self.steps.append(step)
            name = block["kind"] + (f"-group-{block['i11']}" if "i11" in block else "")
            self.fields[name, step] = block["rows"]
        self.steps.sort(key=lambda s: tuple(-1 if v is None else v for v in s))
        none = None
        self.points = {r["id"]: [r["x"], r["y"], r["z"]] for r in self.fields["coordinates", none]}
        self.cells = {r["id"]: r["nodes"] for r in self.fields["element-nodes", none]}
        # Shown by name there, by number in text.
        text = os.path.join(scratch, "types.onf")
        shutil.rmtree(text, ignore_errors=True)
        run("to-onf", database, text, "--select", "element-type")
        with open(os.path.join(text, "element-type_it0.onf"), encoding="utf-8") as file:
            rows = [list(map(int, line.split())) for line in file.read().partition("records: ")[2].splitlines()[1:]]
        self.types = {i: code for i, code, _ in rows}
        self.materials = {i: material for i, _, material in rows}
        self.sets = {}
        for kind, of_cells in (("node-set", False), ("element-set", True)):
            for row in self.fields.get((kind, none), []):
                self.sets[of_cells, "set-" + row["name"]] = next(v for v in row.values() if isinstance(v, list))

    def values(self, name, step, ids, count):
        """shape [ids, components], NaN where there is no record; None where there is no such block"""
        rows = self.fields.get((name, step), self.fields.get((name, None)))
        if rows is None:
            return None
        values = np.full((len(ids), count), math.nan)
        at = {i: n for n, i in enumerate(ids)}
        for row in rows:
            if row["id"] in at:
                values[at[row["id"]]] = [float(v) for v in list(row.values())[1:]]
        return values


# --- readers: a grid is points, cells as lists of points, cell types and arrays by (of cells, name) -------------------


class Grid:
    def __init__(self, points, cells, types, arrays, time):
        self.points, self.cells, self.types, self.arrays, self.time = points, cells, types, arrays, time


def split(connectivity, offsets):
    return [list(connectivity[a:b]) for a, b in zip(offsets[:-1], offsets[1:])]


def read_vtu(path):
    with open(path, "rb") as file:
        data = file.read()
    head, _, appended = data.partition(b"_")
    while not head.rstrip().endswith(b'encoding="raw">'):  # an underscore in a name
        more, _, appended = appended.partition(b"_")
        head += b"_" + more
    root = xml.fromstring(head + b"</AppendedData></VTKFile>")
    size = "<Q" if root.get("header_type") == "UInt64" else "<I"
    end = 0

    def numbers(array):
        nonlocal end
        at = int(array.get("offset"))
        expect(at == end, f"{path}: {array.get('Name')} starts at {at}, expected {end}: arrays follow each other")
        count = struct.unpack_from(size, appended, at)[0]
        at += struct.calcsize(size)
        end = at + count
        values = np.frombuffer(appended[at:at + count], TYPES[array.get("type")])
        width = int(array.get("NumberOfComponents", 1))
        return values.reshape(-1, width) if width > 1 else values

    piece = root.find("UnstructuredGrid/Piece")
    points = numbers(piece.find("Points/DataArray"))
    cells = {a.get("Name"): numbers(a) for a in piece.find("Cells")}
    arrays = {}
    for of_cells, tag in ((False, "PointData"), (True, "CellData")):
        for array in piece.find(tag):
            arrays[of_cells, array.get("Name")] = numbers(array)
    expect(appended[end:].lstrip().startswith(b"</AppendedData>"), f"{path}: more bytes than its arrays have")
    time = root.find("UnstructuredGrid/FieldData/DataArray")
    return Grid(points, split(cells["connectivity"], [0, *cells["offsets"]]), list(cells["types"]), arrays,
                None if time is None else float(time.text))


def read_pvd(path):
    grids = []
    for item in xml.parse(path).getroot().iter("DataSet"):
        grid = read_vtu(os.path.join(os.path.dirname(path), item.get("file")))
        time = float(item.get("timestep"))
        expect(grid.time in (time, None), f"{path}: time {time}, {grid.time} in the file")
        grid.time = time
        grids.append(grid)
    return grids


def read_vtkhdf(path):
    """All steps, by the published layout; only what the offsets name is read."""
    with h5py.File(path, "r") as file:
        root = file["VTKHDF"]
        expect(root.attrs["Type"] == b"UnstructuredGrid", f"{path}: Type is {root.attrs['Type']}")
        steps = root.get("Steps")
        version = [2, 0] if steps else [1, 0]
        expect(list(root.attrs["Version"]) == version, f"{path}: Version is {root.attrs['Version']}")
        num_points, num_cells, num_ids = (int(root[n][0]) for n in ("NumberOfPoints", "NumberOfCells",
                                                                   "NumberOfConnectivityIds"))
        for name, shape in (("Points", (num_points, 3)), ("Offsets", (num_cells + 1,)), ("Types", (num_cells,)),
                            ("Connectivity", (num_ids,))):
            expect(root[name].shape == shape, f"{path}: {name} has shape {root[name].shape}, expected {shape}")
        count = 1
        if steps:
            count = int(steps.attrs["NSteps"])
            expect(steps["Values"].shape == (count,), f"{path}: Values {steps['Values'].shape}")
            for name, shape, value in (("PartOffsets", (count,), 0), ("NumberOfParts", (count,), 1),
                                       ("PointOffsets", (count,), 0), ("CellOffsets", (count, 1), 0),
                                       ("ConnectivityIdOffsets", (count, 1), 0)):
                expect(steps[name].shape == shape and np.all(steps[name][()] == value), f"{path}: {name}")
        grids = []
        for step in range(count):
            arrays = {}
            for of_cells, tag, rows in ((False, "PointData", num_points), (True, "CellData", num_cells)):
                for name, dataset in root[tag].items():
                    first = int(steps[tag + "Offsets"][name][step]) if steps else 0
                    if steps:
                        expect(steps[tag + "Offsets"][name].shape == (count,), f"{path}: offsets of {name}")
                    expect(first % rows == 0 and first + rows <= dataset.shape[0], f"{path}: {name} at {first}")
                    arrays[of_cells, name] = dataset[first:first + rows]
            time = float(steps["Values"][step]) if steps else None
            if not steps and "FieldData/TimeValue" in root:
                time = float(root["FieldData/TimeValue"][0])
            grids.append(Grid(root["Points"][()], split(root["Connectivity"][()], root["Offsets"][()]),
                              list(root["Types"][()]), arrays, time))
        return grids


def read_with_vtk(path):
    reader = vtk.vtkXMLUnstructuredGridReader() if path.endswith(".vtu") else vtk.vtkHDFReader()
    reader.SetFileName(path)
    reader.Update()
    grid = reader.GetOutput()
    arrays = {}
    for of_cells, data in ((False, grid.GetPointData()), (True, grid.GetCellData())):
        for i in range(data.GetNumberOfArrays()):
            arrays[of_cells, data.GetArray(i).GetName()] = vtk_to_numpy(data.GetArray(i))
    time = grid.GetFieldData().GetArray("TimeValue")
    cells = [[grid.GetCell(c).GetPointId(i) for i in range(grid.GetCell(c).GetNumberOfPoints())]
             for c in range(grid.GetNumberOfCells())]
    types = [grid.GetCellType(c) for c in range(grid.GetNumberOfCells())]
    check_solids(grid, path)
    return Grid(vtk_to_numpy(grid.GetPoints().GetData()), cells, types, arrays,
                None if time is None else time.GetValue(0))


SOLIDS = {10, 12, 13, 24, 25, 26}
solids_checked = set()


def check_solids(grid, path):
    """Volumes are positive, and a face looks away from the middle of its cell."""
    sizes = vtk.vtkCellSizeFilter()
    sizes.SetInputData(grid)
    sizes.Update()
    volumes = vtk_to_numpy(sizes.GetOutput().GetCellData().GetArray("Volume"))
    for c in range(grid.GetNumberOfCells()):
        cell = grid.GetCell(c)
        if cell.GetCellType() not in SOLIDS:
            continue
        expect(volumes[c] > 0, f"{path}: cell {c} has the volume {volumes[c]}")
        points = vtk_to_numpy(cell.GetPoints().GetData())
        middle = points.mean(axis=0)
        for f in range(cell.GetNumberOfFaces()):
            corners = vtk_to_numpy(cell.GetFace(f).GetPoints().GetData())[:3]
            normal = np.cross(corners[1] - corners[0], corners[2] - corners[0])
            expect(normal @ (corners.mean(axis=0) - middle) > 0, f"{path}: face {f} of cell {c} looks inwards")
        solids_checked.add(cell.GetCellType())


# --- comparison -------------------------------------------------------------------------------------------------------

VTK_TYPES = {1: 12, 2: 13, 3: 10, 4: 25, 5: 26, 6: 24, 7: 5, 8: 22, 9: 9, 10: 23, 11: 3, 12: 21}
ORDERS = {2: [3, 4, 5, 0, 1, 2], 5: [3, 4, 5, 0, 1, 2, 9, 10, 11, 6, 7, 8, 12, 13, 14], 12: [0, 2, 1]}


def same(found, expected):
    """Equal bits, but for NaNs."""
    global checked
    checked += np.size(expected)
    return np.shape(found) == np.shape(expected) and np.array_equal(found, expected, equal_nan=True)


def check_mesh(what, grid, expected):
    point_ids, cell_ids = grid.arrays[False, "id"], grid.arrays[True, "id"]
    expect(list(point_ids) == sorted(expected.points), f"{what}: ids of points")
    expect(list(cell_ids) == sorted(expected.cells), f"{what}: ids of cells")
    expect(same(grid.points, [expected.points[i] for i in point_ids]), f"{what}: points")
    expect(same(grid.arrays[True, "material"], [expected.materials[i] for i in cell_ids]), f"{what}: materials")
    for i, cell, cell_type in zip(cell_ids, grid.cells, grid.types):
        nodes, code = expected.cells[i], expected.types[i]
        ours = [nodes[n] for n in ORDERS.get(code, range(len(nodes)))]
        expect([point_ids[p] for p in cell] == ours, f"{what}: nodes of element {i}")
        wanted = VTK_TYPES.get(code, {1: 1, 2: 3}.get(len(nodes), 2))
        expect(cell_type == wanted, f"{what}: element {i} is of type {cell_type}, expected {wanted}")
    for (of_cells, name), members in expected.sets.items():
        ids = cell_ids if of_cells else point_ids
        flags = [1 if i in set(members) else 0 for i in ids]
        expect(same(grid.arrays[of_cells, name], flags), f"{what}: {name}")


def check_fields(what, grid, expected, step, names):
    found = {key for key in grid.arrays if key[1] not in ("id", "material") and not key[1].startswith("set-")}
    expect({name for _, name in found} == names, f"{what}: arrays {sorted(found)}, expected {sorted(names)}")
    for of_cells, name in found:
        values = grid.arrays[of_cells, name]
        ids = grid.arrays[of_cells, "id"]
        width = values.shape[1] if values.ndim > 1 else 1
        wanted = expected.values(name, step, ids, width)
        if wanted is None:
            wanted = np.full((len(ids), width), math.nan)
        expect(same(values.reshape(-1, width), wanted), f"{what}: {name}")


def check(database, selection):
    expected = Expected(database)
    name = os.path.join(scratch, os.path.basename(database).rsplit(".", 1)[0])
    report = json.loads(run("export", database, selection, "-o", name + ".vtkhdf", "--json"))
    run("export", database, selection, "-o", name + ".pvd")
    names = set(report["arrays"])
    own = {"vtkhdf": read_vtkhdf(name + ".vtkhdf"), "pvd": read_pvd(name + ".pvd")}
    steps = expected.steps if report["steps"] else [None]
    expect(len(steps) == max(1, report["steps"]), f"{name}: {report['steps']} steps, expected {steps}")
    times = report.get("times", list(range(1, report["steps"] + 1)))  # positions where no time is known
    for form, grids in own.items():
        expect(len(grids) == len(steps), f"{name}.{form}: {len(grids)} steps, expected {len(steps)}")
        for number, (grid, step) in enumerate(zip(grids, steps)):
            what = f"{name}.{form} step {number + 1}"
            expect(not times or grid.time == times[number], f"{what}: time {grid.time}, expected {times}")
            check_mesh(what, grid, expected)
            check_fields(what, grid, expected, step, names)
    if database.endswith(".fed"):
        check_link(database, selection, expected, steps, times, names)
    if with_vtk:
        for number, step in enumerate(steps):
            single = f"{name}-single.vtkhdf"
            run("export", database, selection, "--steps", str(number + 1), "-o", single)
            for path in (report_file(name, number, len(steps)), single):
                grid = read_with_vtk(path)
                check_mesh(path, grid, expected)
                of_step = {n for n in names if (n, step) in expected.fields or (n, None) in expected.fields}
                check_fields(path, grid, expected, step, names if path.endswith(".vtu") else of_step)
                expect(grid.time == (times[number] if "times" in report and times else None), f"{path}: time {grid.time}")
    print(f"{os.path.basename(database)}: {len(steps)} steps, {len(names)} arrays, types "
          f"{sorted(set(expected.types.values()))}")


def check_link(database, selection, expected, steps, times, names):
    """A link shows the same, moves with its database, and shows no number when that has gone."""
    folder = os.path.join(scratch, "link")
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    copy = os.path.join(folder, "job.fed")
    shutil.copytree(database, copy)
    run("export", copy, selection, "--link", "-o", os.path.join(folder, "job.vtkhdf"))
    moved = os.path.join(scratch, "moved")
    shutil.rmtree(moved, ignore_errors=True)
    os.rename(folder, moved)
    link = os.path.join(moved, "job.vtkhdf")
    for number, (grid, step) in enumerate(zip(read_vtkhdf(link), steps)):
        what = f"link to {database} step {number + 1}"
        expect(not times or grid.time == times[number], f"{what}: time {grid.time}")
        check_mesh(what, grid, expected)
        check_fields(what, grid, expected, step, names)
    if with_vtk and len(steps) == 1:
        check_fields(link + " by VTK", read_with_vtk(link), expected, steps[0], names)
    shutil.rmtree(os.path.join(moved, "job.fed"))
    for grid in read_vtkhdf(link):
        for (_, name), values in grid.arrays.items():
            expect(name not in names or np.all(np.isnan(values)), f"{link}: {name} has numbers of nowhere")


def report_file(name, number, count):
    return f"{name}-{number + 1:0{len(str(count))}d}.vtu"


shutil.rmtree(scratch, ignore_errors=True)
os.makedirs(scratch)
write_all_types(os.path.join(scratch, "all_types"))
check(os.path.join(scratch, "all_types"), "displacement,nodal-stress,element-energy,temperature,1100,element-stress")

KINDS = "displacement,nodal-stress,reaction,element-stress,element-energy"
for folder in ("a_tet", "b_hex", "hex20", "hex20r", "tet10", "wedge6", "wedge15", "c_shell_iso", "d_beam",
               "mixed_quadratic"):
    for job in sorted(os.listdir(os.path.join(fixtures, folder))):
        if not job.endswith(".frd"):
            continue
        stem = os.path.join(fixtures, folder, job[:-4])
        database = os.path.join(scratch, job[:-4] + ".fed")
        files = [stem + end for end in (".inp", ".frd", ".dat") if os.path.exists(stem + end)]
        run("import", *files, "-o", database)
        kinds = {b["kind"] for b in json.loads(run("ls", database, "--json"))}
        check(database, ",".join(k for k in KINDS.split(",") if k in kinds))

if with_vtk:
    expect(solids_checked == SOLIDS, f"VTK saw solids of types {sorted(solids_checked)}, expected {sorted(SOLIDS)}")
print(f"{checked} numbers are equal" + (", volumes are positive and faces look outwards" if with_vtk else ""))
