"""The examples of python/examples."""

from __future__ import annotations

import csv
import importlib.util
import os
import pathlib
import shutil
import subprocess
import sys
import types

import numpy as np
import pytest

import quilon
from conftest import FIXTURES

EXAMPLES = pathlib.Path(__file__).parents[1] / "examples"
STEPS = FIXTURES / "compare" / "fine"


def run(*arguments: object, code: int = 0, **environment: object) -> str:
    done = subprocess.run(
        [sys.executable, *map(str, arguments)], capture_output=True, text=True, check=False,
        env={**os.environ, "MPLBACKEND": "Agg", **{name: str(value) for name, value in environment.items()}},
    )  # fmt: skip
    assert done.returncode == code, done.stdout + done.stderr
    return done.stdout


def load(name: str) -> types.ModuleType:
    specification = importlib.util.spec_from_file_location(name, EXAMPLES / f"{name}.py")
    assert specification is not None and specification.loader is not None
    module = importlib.util.module_from_spec(specification)
    specification.loader.exec_module(module)
    return module


def test_figure_is_drawn(tmp_path: pathlib.Path) -> None:
    pytest.importorskip("matplotlib")
    run(EXAMPLES / "figure.py", f"{STEPS}.frd", tmp_path / "figure.png")
    assert (tmp_path / "figure.png").read_bytes().startswith(b"\x89PNG")


def test_regression_gate_opens_and_closes(results: pathlib.Path, tmp_path: pathlib.Path) -> None:
    gate = ("-m", "pytest", "-q", "-p", "no:cacheprovider", EXAMPLES / "test_regression.py")
    run(*gate, QUILON_RUN=FIXTURES / "b_hex" / "b_hex.frd", QUILON_ACCEPTED=results)
    shutil.copytree(results, tmp_path / "worse.fed")
    with quilon.open(tmp_path / "worse.fed", "w") as db:
        block = db.block("displacement")
        db.write("displacement", block.ids, block.values * 1.001, **block.key)
    told = run(*gate, code=1, QUILON_RUN=tmp_path / "worse.fed", QUILON_ACCEPTED=results)
    assert "1 failed, 2 passed" in told and "displacement" in told


def test_cycles_are_counted_as_by_hand() -> None:
    # The example of ASTM E1049-85, figure 6: ranges 3, 4 as half cycles and a cycle of 4; 8, 9, 8 and 6 as halves.
    cycles = load("fatigue").rainflow(np.array([-2.0, 1, -3, 5, -1, 3, -4, 4, -2]))
    assert sorted((2 * amplitude, count) for amplitude, count in cycles) == [
        (3, 0.5), (4, 0.5), (4, 1.0), (6, 0.5), (8, 0.5), (8, 0.5), (9, 0.5),
    ]  # fmt: skip


def test_damage_is_summed_and_written(tmp_path: pathlib.Path) -> None:
    told = run(EXAMPLES / "fatigue.py", f"{STEPS}.frd", tmp_path / "damage.fed", 100, 5)
    with quilon.open(tmp_path / "damage.fed") as db, quilon.open(f"{STEPS}.frd") as result:
        damage, blocks = db.block("damage"), result.blocks("stress@an=1")
        assert f"over {len(blocks)} steps" in told and len(blocks) > 2
        assert np.array_equal(damage.ids, blocks[0].ids)
        # Of a history that only rises one half cycle is left, whatever is in between.
        history = np.array([block.component("signed-mises") for block in blocks])
        rising = np.flatnonzero((np.diff(history, axis=0) >= 0).all(axis=0))
        half = 0.5e-6 * ((history[-1] - history[0])[rising] / 2 / 100) ** 5
        assert np.allclose(damage.values[rising, 0], half, rtol=1e-12, atol=0)


def test_study_is_one_table(tmp_path: pathlib.Path) -> None:
    runs = [FIXTURES / name / f"{name}.frd" for name in ("b_hex", "a_tet", "hex20")]
    run(EXAMPLES / "study.py", tmp_path / "table.csv", *runs)
    with open(tmp_path / "table.csv", newline="", encoding="utf-8") as file:
        rows = list(csv.DictReader(file))
    assert [row["run"] for row in rows] == ["b_hex", "a_tet", "hex20"]
    with quilon.open(runs[1]) as db:
        assert float(rows[1]["largest mises"]) == db.blocks("stress")[-1].component("mises").max()
