#!/usr/bin/env python3
"""Compares values along lines with a program of its own, and stresses through a wall with their closed form.

usage: check_paths.py QUILON FIXTURES SCRATCH

The shape functions here are the inverse of a matrix of monomials at the nodes, the place of a point within its element
comes from differences, and integrals from Gauss points between the borders of the elements: nothing of it is what the
program does. The closed form is that of a thick cylinder under inner pressure (G. Lame, B. Clapeyron, 1833).
"""

import json
import subprocess
import sys
from pathlib import Path

import numpy as np

COMPONENTS = ["xx", "yy", "zz", "xy", "yz", "zx"]
INNER, OUTER, PRESSURE = 100.0, 150.0, 10.0


def run(*arguments):
    done = subprocess.run([str(a) for a in arguments], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, arguments))}: exit code {done.returncode}\n{done.stderr}")
    return done.stdout


CORNERS = np.array([[-1, -1, -1], [1, -1, -1], [1, 1, -1], [-1, 1, -1], [-1, -1, 1], [1, -1, 1], [1, 1, 1], [-1, 1, 1]], float)
EDGES = [(0, 1), (1, 2), (2, 3), (3, 0), (4, 5), (5, 6), (6, 7), (7, 4), (0, 4), (1, 5), (2, 6), (3, 7)]


class Brick20:
    """A brick of twenty nodes in the order of decks."""

    PLACES = np.vstack([CORNERS, [(CORNERS[a] + CORNERS[b]) / 2 for a, b in EDGES]])
    POWERS = [(i, j, k) for i in range(3) for j in range(3) for k in range(3) if sum(p for p in (i, j, k) if p > 1) <= 2]

    @classmethod
    def monomials(cls, local):
        return np.array([local[0] ** i * local[1] ** j * local[2] ** k for i, j, k in cls.POWERS])

    @classmethod
    def weights(cls, local):
        matrix = np.array([cls.monomials(place) for place in cls.PLACES])
        return cls.monomials(local) @ np.linalg.inv(matrix)

    @classmethod
    def find(cls, nodes, point):
        """The place of a point, or None when it is not in the element."""
        local = np.zeros(3)
        for _ in range(50):
            rest = point - cls.weights(local) @ nodes
            if np.linalg.norm(rest) < 1e-11:
                return local if np.all(np.abs(local) <= 1 + 1e-7) else None
            step = 1e-6
            jacobian = np.column_stack(
                [(cls.weights(local + step * axis) - cls.weights(local - step * axis)) @ nodes / (2 * step) for axis in np.eye(3)])
            local = local + np.linalg.solve(jacobian, rest)
            if np.max(np.abs(local)) > 10:
                return None
        return None


class Model:
    def __init__(self, quilon, database):
        blocks = {block["kind"]: block["rows"] for block in json.loads(run(quilon, "show", database, "516,595,521", "--json"))}
        self.points = {row["id"]: np.array([row["x"], row["y"], row["z"]]) for row in blocks["coordinates"]}
        self.elements = {row["id"]: row["nodes"] for row in blocks["element-nodes"]}
        self.stress = {row["id"]: np.array([row[c] for c in COMPONENTS]) for row in blocks["nodal-stress"]}

    def stress_at(self, point):
        for element in sorted(self.elements):
            nodes = self.elements[element]
            places = np.array([self.points[n] for n in nodes])
            if np.any(point < places.min(0) - 5) or np.any(point > places.max(0) + 5):
                continue
            local = Brick20.find(places, point)
            if local is not None:
                return element, Brick20.weights(local) @ np.array([self.stress[n] for n in nodes])
        return None, None


def turned(tensor, point):
    """Into radial, tangential and axial components about z."""
    full = np.array([[tensor[0], tensor[3], tensor[5]], [tensor[3], tensor[1], tensor[4]], [tensor[5], tensor[4], tensor[2]]])
    radius = np.hypot(point[0], point[1])
    axes = np.array([[point[0] / radius, point[1] / radius, 0], [-point[1] / radius, point[0] / radius, 0], [0, 0, 1]])
    local = axes @ full @ axes.T
    return np.array([local[0, 0], local[1, 1], local[2, 2], local[0, 1], local[1, 2], local[2, 0]])


def mises(t):
    return np.sqrt(((t[0] - t[1]) ** 2 + (t[1] - t[2]) ** 2 + (t[2] - t[0]) ** 2) / 2 + 3 * (t[3] ** 2 + t[4] ** 2 + t[5] ** 2))


def follow(quilon, database, start, end, points, *options):
    text = lambda place: ",".join(repr(float(c)) for c in place)
    return json.loads(run(quilon, "path", database, "stress", "--from", text(start), "--to", text(end), "--points", points,
                          "--json", *options))[0]


def check(what, found, expected, tolerance):
    error = np.max(np.abs(np.asarray(found) - np.asarray(expected)))
    if not error <= tolerance:
        sys.exit(f"{what}: off by {error:.3g}, expected at most {tolerance:.3g}\n{found}\n{expected}")
    print(f"{what}: {error:.2g} (at most {tolerance:.2g})")


def check_lines(quilon, database, model):
    """Radial, through an edge, slanting through many elements, and beyond the model."""
    lines = [([100, 0, 5], [150, 0, 5]), ([100 * np.sqrt(0.5)] * 2 + [3], [150 * np.sqrt(0.5)] * 2 + [3]),
             ([149, 5, 1], [8, 120, 9]), ([90, 10, 5], [160, 20, 5])]
    for number, (start, end) in enumerate(lines):
        step = follow(quilon, database, start, end, 23)
        outside, error = 0, 0.0
        for row in step["rows"]:
            point = np.array([row["x"], row["y"], row["z"]])
            element, stress = model.stress_at(point)
            if row["element"] != element:
                sys.exit(f"line {number}: element {row['element']} at {point}, expected {element}")
            if element is None:
                outside += 1
                if row["xx"] is not None:
                    sys.exit(f"line {number}: a value outside at {point}")
                continue
            error = max(error, np.max(np.abs(stress - [row[c] for c in COMPONENTS])))
        check(f"line {number}, {outside} of 23 points outside", error, 0.0, 1e-9)


def check_wall(quilon, database, model):
    start, end, numPoints = np.array([100, 0, 5.0]), np.array([150, 0, 5.0]), 201
    step = follow(quilon, database, start, end, numPoints, "--linearize", "--axes", "cylindrical:0,0,0,0,0,1")
    length = np.linalg.norm(end - start)

    # The borders of the five elements lie at equal distances; in each the stress is a parabola along the line.
    abscissae, weights = np.polynomial.legendre.leggauss(6)
    membrane, bending = np.zeros(6), np.zeros(6)
    for piece in range(5):
        for x, weight in zip(abscissae, weights):
            part = (piece + (1 + x) / 2) / 5
            point = start + part * (end - start)
            stress = turned(model.stress_at(point)[1], point)
            membrane += weight / 10 * stress
            bending += 6 * weight / 10 * stress * (0.5 - part)
    ends = [turned(model.stress_at(place)[1], place) for place in (start, end)]
    expected = {"membrane": membrane, "bending-start": bending, "bending-end": -bending, "membrane-bending-start": membrane + bending,
                "membrane-bending-end": membrane - bending, "peak-start": ends[0] - membrane - bending,
                "peak-end": ends[1] - membrane + bending}
    for name, tensor in expected.items():
        check(f"wall, {name}", [step[name][c] for c in COMPONENTS], tensor, 1e-10)
        check(f"wall, mises of {name}", step[name]["mises"], mises(tensor), 1e-10)

    # The closed form, within what nodal averages of five elements through the wall are off.
    a = PRESSURE * INNER**2 / (OUTER**2 - INNER**2)
    b = a * OUTER**2
    factor = 6 * b / length**2 * ((INNER + OUTER) / 2 * (1 / INNER - 1 / OUTER) - np.log(OUTER / INNER))
    hoop = {"membrane": a + b / (INNER * OUTER), "bending-start": factor, "peak-start": a + b / INNER**2 - (a + b / (INNER * OUTER)) - factor}
    for name, tolerance in (("membrane", 1e-3), ("bending-start", 5e-4), ("peak-start", 3e-3)):
        check(f"closed form, hoop stress, {name}", step[name]["yy"] / (a + b / INNER**2), hoop[name] / (a + b / INNER**2), tolerance)


def main():
    quilon, fixtures, scratch = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3])
    scratch.mkdir(parents=True, exist_ok=True)
    database = scratch / "cylinder.fed"
    job = fixtures / "calculix" / "cylinder" / "cylinder"
    run(quilon, "import", f"{job}.inp", f"{job}.frd", "-o", database)
    model = Model(quilon, database)
    check_lines(quilon, database, model)
    check_wall(quilon, database, model)


if __name__ == "__main__":
    main()
