"""Questions to databases, beside the same computed with NumPy."""

from __future__ import annotations

import pathlib

import numpy as np
import pytest

import quilon
from conftest import FIXTURES, json_of, run

STEPS = FIXTURES / "compare" / "fine.frd"  # four steps of a load case


@pytest.fixture
def cases(tmp_path: pathlib.Path) -> pathlib.Path:
    """Three load cases of a model with a step each."""
    path = tmp_path / "cases.fed"
    rng = np.random.default_rng(5)
    with quilon.open(path, "w") as db:
        db.write("coordinates", [1, 2, 3, 4], np.eye(4, 3))
        for case in (1, 2, 3):
            db.write("displacement", [1, 2, 3, 4], rng.normal(size=(4, 3)), an=1, lc=case, sub=1)
            db.write("stress", [1, 2, 3, 4], rng.normal(size=(4, 6)) * 100, an=1, lc=case, sub=1)
    return path


def test_envelope_has_the_extremes_and_their_steps() -> None:
    with quilon.open(STEPS) as db:
        (envelope,) = quilon.envelope(db, "stress.mises,stress.xx@an=1")
        blocks = db.blocks("stress@an=1")
        every = np.array([[block.component("mises"), block.component("xx")] for block in blocks]).transpose(0, 2, 1)
        assert envelope.components == ("mises", "xx") and envelope.kind == "nodal-stress"
        assert np.array_equal(envelope.ids, blocks[0].ids) and len(envelope.steps) == len(blocks) > 1
        assert np.array_equal(envelope.least, every.min(axis=0))
        assert np.array_equal(envelope.greatest, every.max(axis=0))
        assert np.array_equal(envelope.least_step, every.argmin(axis=0))
        assert np.array_equal(envelope.greatest_step, every.argmax(axis=0))
        assert np.array_equal(np.abs(envelope.largest), np.abs(every).max(axis=0))
        assert [step["sub"] for step in envelope.steps] == [block.key["sub"] for block in blocks]


def test_selected_components_are_the_columns() -> None:
    with quilon.open(STEPS) as db:
        block = db.blocks("stress.mises,stress.yy@an=1")[-1]
        assert block.components == ("mises", "yy")
        whole = db.block(block.selection)
        assert np.array_equal(block.values[:, 0], whole.component("mises"))
        assert np.array_equal(block.values[:, 1], whole.values[:, 1])


def test_combination_is_the_sum(cases: pathlib.Path, tmp_path: pathlib.Path) -> None:
    report = quilon.combine(
        cases, {"DEAD": {1: 1.1, "lc2": 1.0}, "ULS": {"DEAD": 1.35, 3: -1.5}}, tmp_path / "out.fed"
    )
    with quilon.open(cases) as db, quilon.open(tmp_path / "out.fed") as out:
        assert report.blocks == len(out.blocks())
        one, two, three = (db.block("stress", lc=case).values for case in (1, 2, 3))
        dead = 1.1 * one + 1.0 * two
        assert np.allclose(out.block("stress", lc=10001).values, dead, rtol=1e-15, atol=1e-12)
        assert np.allclose(out.block("stress", lc=10002).values, 1.35 * dead - 1.5 * three, rtol=1e-14, atol=1e-12)
        assert out.block("stress", lc=10001).key["an"] == 3
    (tmp_path / "cases.txt").write_text("DEAD = 1.1*lc1 + lc2\nULS = 1.35*DEAD - 1.5*lc3\n")
    quilon.combine(cases, tmp_path / "cases.txt", tmp_path / "again.fed")
    assert quilon.diff(tmp_path / "out.fed", tmp_path / "again.fed", "exact").same


def test_wrong_combinations_tell_file_and_line(cases: pathlib.Path, tmp_path: pathlib.Path) -> None:
    (tmp_path / "cases.txt").write_text("A = lc1\nB = lc9\n")
    with pytest.raises(quilon.Error) as wrong:
        quilon.combine(cases, tmp_path / "cases.txt", tmp_path / "out.fed")
    assert (wrong.value.file, wrong.value.line) == (str(tmp_path / "cases.txt"), 2)
    with pytest.raises(quilon.Error, match="expected a file of combinations"):
        quilon.combine(cases, tmp_path / "none.txt", tmp_path / "out.fed")
    with pytest.raises(quilon.Error, match="the factor of 1 in A is 'x', expected a number"):
        quilon.combine(cases, {"A": {1: "x"}}, tmp_path / "out.fed")  # type: ignore[dict-item]
    assert not list(tmp_path.glob("out.fed/manifest"))


def test_path_meets_the_values_of_nodes(results: pathlib.Path) -> None:
    with quilon.open(results) as db:
        mesh, stress = db.mesh(), db.block("stress")
        ids = stress.ids[:5]
        places = mesh.points[mesh.indices(ids)]
        path = quilon.path(db, "stress", places=places)
        (step,) = path.steps
        assert step.columns == stress.components and step.time == 1.0
        assert (path.elements > 0).all()
        assert np.allclose(step.values, stress.values[:5], rtol=0, atol=1e-9 * np.abs(stress.values).max())
        low, high = mesh.points.min(axis=0), mesh.points.max(axis=0)
        line = quilon.path(db, "stress.mises", low, high, points=11)
        assert line.places.shape == (11, 3) and np.array_equal(line.places[[0, -1]], [low, high])
        assert np.allclose(line.s, np.linspace(0, np.linalg.norm(high - low), 11), rtol=1e-12)
        outside = quilon.path(db, "stress", places=[high + 1.0])
        assert outside.elements.tolist() == [0] and np.isnan(outside.steps[0].values).all()
        with pytest.raises(quilon.Error, match="expected either both start and end or places"):
            quilon.path(db, "stress", low)


def key_text(key: dict[str, int]) -> str:
    """A key of a step as the program shows it."""
    return ",".join(f"{name}={value}" for name, value in key.items())


def test_envelope_is_that_of_the_program() -> None:
    selection = "stress.mises,displacement@an=1"
    mine = quilon.envelope(STEPS, selection)
    its = json_of("envelope", STEPS, selection)
    assert [envelope.kind for envelope in mine] == [kind["kind"] for kind in its]
    for envelope, kind in zip(mine, its):
        steps = [key_text(step) for step in envelope.steps]
        rows = [
            {
                "id": id_, "component": component, "least": envelope.least[i, c], "greatest": envelope.greatest[i, c],
                "magnitude": envelope.largest[i, c], "least-step": steps[envelope.least_step[i, c]],
                "greatest-step": steps[envelope.greatest_step[i, c]],
            }
            for i, id_ in enumerate(envelope.ids.tolist())
            for c, component in enumerate(envelope.components)
        ]  # fmt: skip
        for row in kind["rows"]:
            row.pop("magnitude-step")
        assert rows == kind["rows"]


def test_path_is_that_of_the_program(results: pathlib.Path) -> None:
    mine = quilon.path(results, "stress", [1, 1, 1], [30, 10, 10], points=7, linearize=True, axes="cylindrical:0,0,0,0,0,1")
    its = json_of(
        "path", results, "stress", "--from", "1,1,1", "--to", "30,10,10", "--points", "7", "--linearize", "--axes", "cylindrical:0,0,0,0,0,1"
    )
    (step,), (told,) = mine.steps, its
    for i, row in enumerate(told["rows"]):
        assert [mine.s[i], *mine.places[i], mine.elements[i]] == [row[name] for name in ("s", "x", "y", "z", "element")]
        assert step.values[i].tolist() == [row[name] for name in step.columns]
    assert len(told["rows"]) == len(mine.places) == 7
    assert step.linearization is not None and len(step.linearization) == 7
    for name, (tensor, mises) in step.linearization.items():
        assert [*tensor.tolist(), mises] == [told[name][n] for n in ("xx", "yy", "zz", "xy", "yz", "zx", "mises")]


def test_combination_is_that_of_the_program(cases: pathlib.Path, tmp_path: pathlib.Path) -> None:
    (tmp_path / "cases.txt").write_text("DEAD = 1.1*lc1 + lc2\nULS = 1.35*DEAD - 1.5*lc3\n")
    quilon.combine(cases, tmp_path / "cases.txt", tmp_path / "mine.fed")
    assert run("combine", cases, "--cases", tmp_path / "cases.txt", "-o", tmp_path / "its.fed").returncode == 0
    report = quilon.diff(tmp_path / "mine.fed", tmp_path / "its.fed", "exact")
    assert report.same and report.values[0] > 50


@pytest.mark.parametrize(
    ("options", "arguments"),
    [
        ({}, []),
        ({"head": 3}, ["--head", "3"]),
        ({"measure": "least", "per": "step"}, ["--min", "--per", "step"]),
        ({"measure": "magnitude", "sets": ["NX0"]}, ["--abs", "--set", "NX0"]),
        ({"box": [0, 0, 0, 1, 1, 1]}, ["--box", "0,0,0,1,1,1"]),
    ],
)
def test_worst_values_are_those_of_the_program(
    options: dict[str, object], arguments: list[str], results: pathlib.Path
) -> None:
    selection = "stress.mises,displacement.magnitude,element-stress"
    report = quilon.max(results, selection, **options)  # type: ignore[arg-type]
    told = json_of("max", results, selection, *arguments)
    assert len(report.rows) == len(told) > 0
    for mine, its in zip(report.rows, told):
        assert (mine.block, mine.kind, mine.component, mine.value, mine.id, mine.time, mine.ties) == (
            its["block"], its["kind"], its["component"], its["value"], its["id"], its["time"], its["ties"],
        )  # fmt: skip
        assert mine.place == (its["x"], its["y"], its["z"])


def test_wrong_questions_for_worst_values(results: pathlib.Path) -> None:
    with pytest.raises(quilon.Error, match="measure: found 'largest', expected greatest, least or magnitude"):
        quilon.max(results, "stress", measure="largest")
    with pytest.raises(quilon.Error, match="head: found 0, expected a number, 1 or more"):
        quilon.max(results, "stress", head=0)
    with pytest.raises(quilon.Error, match=r"box: found int64 of shape \(2,\)"):
        quilon.max(results, "stress", box=[1, 2])
    with pytest.raises(quilon.Error, match="no block matches 'velocity'"):
        quilon.max(results, "velocity")
