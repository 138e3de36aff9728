"""Exports, pictures and pages: what the program writes, byte for byte."""

from __future__ import annotations

import pathlib
from typing import Any

import pytest

import quilon
from conftest import json_of, run


def test_an_export_is_that_of_the_program(results: pathlib.Path, tmp_path: pathlib.Path) -> None:
    ours, theirs = tmp_path / "ours.vtkhdf", tmp_path / "theirs.vtkhdf"
    with quilon.open(results) as db:
        report = quilon.export(db, ours, "displacement,stress.p1", components="mises")
    told = json_of("export", results, "displacement,stress.p1", "-o", theirs, "--component", "mises")
    assert ours.read_bytes() == theirs.read_bytes()
    assert report.files == (str(ours),) and list(report.arrays) == told["arrays"]
    assert (report.points, report.cells) == (told["points"], told["cells"])
    assert report.times is not None and list(report.times) == told["times"]

    table = quilon.export(results, tmp_path / "a.csv", "stress", steps="last")
    assert table.points == 0 and (tmp_path / "a.csv").read_text().startswith("id,nodal-stress-xx")
    linked = quilon.export(results, tmp_path / "link.vtkhdf", "displacement", link=True)
    assert run("export", results, "displacement", "-o", tmp_path / "linked.vtkhdf", "--link").returncode == 0
    assert linked.arrays == ("displacement",)
    assert (tmp_path / "link.vtkhdf").read_bytes() == (tmp_path / "linked.vtkhdf").read_bytes()


def test_a_picture_is_that_of_the_program(results: pathlib.Path, tmp_path: pathlib.Path) -> None:
    picture = quilon.plot(
        results, tmp_path / "a.png", "stress.p1@sub=last", size=(400, 300), view="30,20", deform="auto", undeformed=True,
        lines="outline", range=[-5, 5], map="coolwarm", unit="MPa", title="bar", background="#eeeeff", marks=False,
        axes=False, light=False,
    )  # fmt: skip
    done = run(
        "plot", results, "stress.p1@sub=last", "-o", tmp_path / "b.png", "--size", "400x300", "--view", "30,20",
        "--deform", "auto", "--undeformed", "--lines", "outline", "--range=-5,5", "--map", "coolwarm", "--unit", "MPa",
        "--title", "bar", "--background", "#eeeeff", "--no-marks", "--no-axes", "--flat",
    )  # fmt: skip
    assert done.returncode == 0, done.stderr
    assert (tmp_path / "a.png").read_bytes() == (tmp_path / "b.png").read_bytes()
    assert picture.component == "p1" and picture.range == (-5.0, 5.0) and picture.factor > 0
    worst = quilon.max(results, "stress.p1@sub=last").rows[0]
    assert picture.greatest is not None and picture.greatest[1] == worst.id
    mesh = quilon.plot(results, tmp_path / "mesh.svg")
    assert mesh.component == "" and mesh.range is None and mesh.greatest is None


def test_a_page_is_that_of_the_program(results: pathlib.Path, tmp_path: pathlib.Path) -> None:
    said: list[str] = []
    page = quilon.report(
        results, tmp_path / "a.html", max_steps=1, bits=16, progress=lambda phase, done, total: said.append(phase)
    )
    assert run("report", results, "-o", tmp_path / "b.html", "--max-steps", "1", "--bits", "16").returncode == 0
    assert (tmp_path / "a.html").read_bytes() == (tmp_path / "b.html").read_bytes()
    assert (page.bytes, page.steps, page.has_inside) == ((tmp_path / "a.html").stat().st_size, 1, True)
    assert "page" in said
    smaller = quilon.report(results, tmp_path / "c.html", max_steps=1, bits=16, inside=False)
    assert smaller.bytes < page.bytes and not smaller.has_inside


def test_a_difference_has_a_page(results: pathlib.Path, tmp_path: pathlib.Path) -> None:
    assert run("to-onf", results, tmp_path / "text").returncode == 0
    quilon.diff(results, tmp_path / "text", html=tmp_path / "a.html")
    done = run("diff", results, tmp_path / "text", "--html", tmp_path / "b.html")
    assert done.returncode in (0, 1), done.stderr
    assert (tmp_path / "a.html").read_bytes() == (tmp_path / "b.html").read_bytes()


@pytest.mark.parametrize(
    ("call", "message"),
    [
        (lambda db, out: quilon.export(db, out / "a.txt"), "expected"),
        (lambda db, out: quilon.export(db, out / "a.csv", groups="both"), "groups: found 'both', expected 'arrays' or 'points'"),
        (lambda db, out: quilon.export(db, out / "a.csv", link=True), "expected"),
        (lambda db, out: quilon.export(db, out / "a.csv", "stress.xyz"), "xyz"),
        (lambda db, out: quilon.plot(db, out / "a.gif"), "expected"),
        (lambda db, out: quilon.plot(db, out / "a.png", size=[5]), "size: found 1 numbers, expected 2: width and height"),
        (lambda db, out: quilon.plot(db, out / "a.png", deform="much"), "deform: found 'much', expected a factor or 'auto'"),
        (lambda db, out: quilon.plot(db, out / "a.png", undeformed=True), "undeformed: found True, expected it with deform"),
        (lambda db, out: quilon.plot(db, out / "a.png", steps="last"), "steps: found steps without a selection, expected both or none"),
        (lambda db, out: quilon.plot(db, out / "a.png", "stress", range=(1, 1)), r"range: found \[1.0, 1.0\], expected two numbers"),
        (lambda db, out: quilon.plot(db, out / "a.png", "stress", cut=[0] * 6), "cut: found .* expected a point and a normal that is not zero"),
        (lambda db, out: quilon.plot(db, out / "a.png", "stress", view="above"), "above"),
        (lambda db, out: quilon.plot(db, out / "no" / "a.png", "stress"), "No such file or directory"),
        (lambda db, out: quilon.report(db, out / "a.pdf"), "out: found .* expected a name that ends in .html"),
        (lambda db, out: quilon.report(db, out / "a.html", bits=8), "bits: found 8, expected 16 or 32"),
        (lambda db, out: quilon.report(db, out / "a.html", max_steps=-1), "max_steps: found -1, expected 0 or more"),
        (lambda db, out: quilon.diff(db, db, html=out / "a.pdf"), "html: found .* expected a name that ends in .html"),
    ],
)  # fmt: skip
def test_what_is_wrong_is_told_and_nothing_is_written(
    results: pathlib.Path, tmp_path: pathlib.Path, call: Any, message: str
) -> None:
    with quilon.open(results) as db, pytest.raises(quilon.Error, match=message):
        call(db, tmp_path)
    assert not any(tmp_path.iterdir())
