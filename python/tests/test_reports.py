"""Import, comparison, components: what the program says, to the last digit."""

from __future__ import annotations

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import threading
import time

import numpy as np
import pytest

import quilon
from conftest import FIXTURES, json_of, run


def job(name: str) -> list[str]:
    return [str(FIXTURES / name / f"{name}.{extension}") for extension in ("inp", "frd", "dat")]


def output_of(script: str) -> list[str]:
    """The words that a Python script of its own prints. It heeds interrupts, also where whoever runs the tests does not."""
    heeding = "import signal\nsignal.signal(signal.SIGINT, signal.default_int_handler)\n"
    done = subprocess.run([sys.executable, "-c", heeding + script], capture_output=True, text=True, check=True, timeout=120)
    return done.stdout.split()


def test_import_is_that_of_the_program(tmp_path: pathlib.Path) -> None:
    said: list[tuple[str, int, int]] = []
    report = quilon.import_results(
        job("mixed_linear")[1:], tmp_path / "a.fed", deck=job("mixed_linear")[0], average_by="material",
        progress=lambda *state: said.append(state),
    )  # fmt: skip
    told = json_of("import", *job("mixed_linear"), "-o", tmp_path / "b.fed", "--average-by", "material")
    assert report.blocks == told["blocks"] and list(report.notices) == told["notices"]
    assert [(row.element_type, row.quantity, row.nodes, row.largest) for row in report.deviations] == [
        (row["element-type"], row["quantity"], row["nodes"], row["largest"]) for row in told["deviations"]
    ]
    assert quilon.diff(tmp_path / "a.fed", tmp_path / "b.fed", rule="exact").same
    assert said and all(isinstance(phase, str) and 0 <= done <= total for phase, done, total in said)


def test_import_averages_over_sets(tmp_path: pathlib.Path) -> None:
    quilon.import_results(job("b_hex"), tmp_path / "a.fed", average_by=["ELEFT", "ERIGHT"])
    assert run("import", *job("b_hex"), "-o", tmp_path / "b.fed", "--average-by", "ELEFT,ERIGHT").returncode == 0
    assert quilon.diff(tmp_path / "a.fed", tmp_path / "b.fed", "exact").same


def test_import_that_fails_writes_nothing_and_names_the_line(tmp_path: pathlib.Path) -> None:
    deck = tmp_path / "bad.inp"
    deck.write_text("*NODE\n1, 0., 0., zero\n")
    with pytest.raises(quilon.Error) as wrong:
        quilon.import_results(deck, tmp_path / "a.fed")
    assert (wrong.value.file, wrong.value.line) == (str(deck), 2)
    with pytest.raises(quilon.Error, match="files: found none"):
        quilon.import_results([], tmp_path / "a.fed")
    with pytest.raises(quilon.Error, match="average_by: found nothing"):
        quilon.import_results(job("b_hex"), tmp_path / "a.fed", average_by=[])
    assert not (tmp_path / "a.fed").exists() or not any((tmp_path / "a.fed").glob("manifest"))


def test_what_progress_raises_stops_the_import(tmp_path: pathlib.Path) -> None:
    class Enough(Exception):
        pass

    def stop(phase: str, done: int, total: int) -> None:
        raise Enough

    with pytest.raises(Enough):
        quilon.import_results(job("b_hex"), tmp_path / "a.fed", progress=stop)
    assert not list(tmp_path.glob("a.fed/manifest"))
    quilon.import_results(job("b_hex"), tmp_path / "a.fed")


def test_interrupt_stops_the_import(tmp_path: pathlib.Path) -> None:
    script = f"""
import os, signal, quilon
def progress(phase, done, total):
    os.kill(os.getpid(), signal.SIGINT)
try:
    quilon.import_results({job("b_hex")!r}, {str(tmp_path / "a.fed")!r}, progress=progress)
except KeyboardInterrupt:
    print("interrupted")
try:
    quilon.import_results({job("b_hex")!r}, {str(tmp_path / "b.fed")!r})
    print("again")
except KeyboardInterrupt:
    print("twice")
"""
    assert output_of(script) == ["interrupted", "again"]
    assert not list(tmp_path.glob("a.fed/manifest"))


def test_interrupt_from_elsewhere_stops_a_call_without_progress(tmp_path: pathlib.Path) -> None:
    # The field is large enough for the signal to come while it is filled; where it comes too early or too late, the
    # interpreter itself raises the same.
    script = """
import os, signal, threading, numpy as np, quilon
field = quilon.AverageField(6)
ids, values = np.arange(2_000_000, dtype=np.int32), np.zeros((2_000_000, 6))
threading.Timer(0.05, lambda: os.kill(os.getpid(), signal.SIGINT)).start()
try:
    while True:
        field.add(ids, values)
except KeyboardInterrupt:
    print("interrupted")
"""
    assert output_of(script) == ["interrupted"]


def test_other_threads_run_during_an_import(tmp_path: pathlib.Path) -> None:
    running = threading.Event()
    seen: list[bool] = []

    def work() -> None:
        running.wait()
        seen.append(True)

    thread = threading.Thread(target=work)
    thread.start()

    def progress(phase: str, done: int, total: int) -> None:
        running.set()
        thread.join(60)

    quilon.import_results(job("b_hex"), tmp_path / "a.fed", progress=progress)
    assert seen == [True]


@pytest.fixture
def changed(results: pathlib.Path, tmp_path: pathlib.Path) -> pathlib.Path:
    """The results with some displacements and stresses changed."""
    path = tmp_path / "changed.fed"
    shutil.copytree(results, path)
    with quilon.open(path, "w") as db:
        for kind in ("displacement", "stress"):
            block = db.block(kind)
            values = block.values.copy()
            values[3:7, 1] *= 1.01
            db.write(kind, block.ids, values, **block.key)
    return path


@pytest.mark.parametrize("rule", [None, "abs=1e-9", "stress: ignore", "exact"])
def test_comparison_is_that_of_the_program(rule: str | None, results: pathlib.Path, changed: pathlib.Path) -> None:
    report = quilon.diff(results, changed, rule)
    told = json_of("diff", results, changed, *([] if rule is None else ["--rule", rule]))
    assert report.same == (told["verdict"] == "same") and report.summary == told["summary"]
    assert not report.same
    assert len(report.differences) == len(told["differences"]) > 0
    for mine, its in zip(report.differences, told["differences"]):
        # JSON knows no infinity.
        assert {**vars(mine), "times": mine.times if np.isfinite(mine.times) else str(mine.times)} == its
    assert [{**row} for row in report.norms] == told["norms"]
    assert report.records == {name.replace("-", "_"): count for name, count in told["records"].items()}


def test_comparison_takes_open_databases(results: pathlib.Path, changed: pathlib.Path) -> None:
    with quilon.open(results) as a, quilon.open(changed) as b:
        assert quilon.diff(a, a).same and quilon.diff(a, a).differences == ()
        assert not quilon.diff(a, b).same
        assert quilon.diff(a, b).differences == quilon.diff(results, changed).differences
        assert quilon.diff(a, b, rule=["stress: ignore", "displacement: ignore"]).same
        assert quilon.diff(a, b, selection="coordinates").same
        with pytest.raises(quilon.Error, match="expected .same"):
            bool(quilon.diff(a, b))
        with pytest.raises(quilon.Error, match="nonsense"):
            quilon.diff(a, b, rule="nonsense=1")
        with pytest.raises(quilon.Error, match="ignore_missing: found 'c'"):
            quilon.diff(a, b, ignore_missing="c")
    with pytest.raises(quilon.Error, match="closed"):
        quilon.diff(a, b)


def test_missing_blocks_are_told(results: pathlib.Path) -> None:
    report = quilon.diff(results, FIXTURES / "b_hex" / "b_hex.frd")
    assert not report.same and report.one_sided and report.blocks["only_in_a"] == len(report.one_sided)
    assert quilon.diff(results, FIXTURES / "b_hex" / "b_hex.frd", ignore_missing="both").blocks == report.blocks


def test_components_are_those_of_closed_forms() -> None:
    tensors = np.array([[100.0, 0, 0, 0, 0, 0], [0, 0, 0, 0, 0, 50], [-3, -3, -3, 0, 0, 0], [1, 2, 3, 0, 0, 0]])
    assert np.allclose(quilon.component(tensors, "mises"), [100, 50 * 3**0.5, 0, 3**0.5], rtol=1e-15, atol=1e-15)
    assert np.array_equal(quilon.component(tensors, "yy"), tensors[:, 1])
    assert np.allclose(
        quilon.principal_values(tensors), [[100, 0, 0], [50, 0, -50], [-3, -3, -3], [3, 2, 1]], rtol=1e-12, atol=1e-12
    )
    rng = np.random.default_rng(4)
    many = rng.normal(size=(500, 6)) * 10.0 ** rng.integers(-8, 8, (500, 1))
    matrices = many[:, [0, 3, 5, 3, 1, 4, 5, 4, 2]].reshape(-1, 3, 3)
    values, directions = quilon.principal_axes(many)
    expected = np.linalg.eigvalsh(matrices)[:, ::-1]
    scale = np.abs(many).max(axis=1)[:, None]
    assert (np.abs(values - expected) <= 1e-12 * scale).all()
    rebuilt = np.einsum("nk,nki,nkj->nij", values, directions, directions)
    assert (np.abs(rebuilt - matrices).reshape(-1, 9) <= 1e-12 * scale).all()
    assert np.array_equal(quilon.component([3.0, 4.0, 0.0], "magnitude"), [5.0])


def test_wrong_tensors_tell_what_came() -> None:
    with pytest.raises(quilon.Error, match=r"tensors: found float64 of shape \(2, 5\), expected numbers of shape \(n, 6\)"):
        quilon.principal_values(np.ones((2, 5)))
    with pytest.raises(quilon.Error, match="tensors: found <U1 of shape"):
        quilon.principal_values("x")
    with pytest.raises(quilon.Error):
        quilon.component(np.ones((2, 6)), "magnitde")
    assert quilon.principal_values(np.zeros((0, 6))).shape == (0, 3)
