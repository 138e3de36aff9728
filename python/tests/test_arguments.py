"""Wrong arguments: each is told by its name, with what was found and what is expected."""

from __future__ import annotations

import inspect
import pathlib
from typing import Any, Callable

import numpy as np
import pytest

import quilon

from conftest import FIXTURES

WRONG: list[Any] = [
    5, -1, 2**70, 3.5, float("nan"), True, None, "x", "", b"x", [], ["x", 5], (1, 2, 3), {"a": 1}, {"a": {"b": None}}, object(),
    np.zeros(3), np.array("x"), lambda *_: 0,
]  # fmt: skip


def callables(db: quilon.Database, field: quilon.AverageField) -> dict[str, Callable[..., Any]]:
    found = {name: getattr(quilon, name) for name in quilon.__all__ if inspect.isfunction(getattr(quilon, name))}
    block = db.block("stress")
    forces = quilon.ElementForces()
    for owner in (db, block, field, forces, db.mesh(), db.steps()[0]):
        for name, method in inspect.getmembers(owner, inspect.ismethod):
            if not name.startswith("_") and name != "close":
                found[f"{type(owner).__name__}.{name}"] = method
    return {**found, "AverageField": quilon.AverageField}


def test_no_wrong_argument_raises_anything_but_our_error(
    results: pathlib.Path, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(tmp_path)
    with quilon.open(results) as db:
        right: dict[str, Any] = {
            "database": db, "a": db, "b": db, "path": results, "selection": "stress", "tensors": np.ones((2, 6)), "name": "mises",
            "files": FIXTURES / "b_hex" / "b_hex.inp", "out": "out.fed", "kind": "stress", "ids": [1, 2], "values": np.ones((2, 6)), "components": 1,
            "elements": [1, 2], "nodes": [1, 2], "forces": np.ones((2, 3)), "combinations": {},
        }  # fmt: skip
        field = quilon.AverageField(6, statistics=True)
        tried = 0
        for label, function in callables(db, field).items():
            parameters = inspect.signature(function).parameters.values()
            named = [each for each in parameters if each.kind not in (each.VAR_KEYWORD, each.VAR_POSITIONAL)]
            arguments = {each.name: right[each.name] for each in named if each.default is each.empty}
            for parameter in named:
                for value in WRONG:
                    tried += 1
                    try:
                        function(**{**arguments, parameter.name: value})
                    except quilon.ArgumentError as error:
                        assert "expected" in str(error), f"{label}: {parameter.name} of {value!r}"
                    except quilon.Error:  # what the program says
                        pass
                    except Exception as error:  # noqa: BLE001
                        pytest.fail(f"{label}: {parameter.name} of {value!r} raises {type(error).__name__}: {error}")
        assert tried > 1000


@pytest.mark.parametrize(
    ("call", "message"),
    [
        (lambda db: quilon.diff(db, db, rule="nonsense=1"), "rule: 'nonsense=1' is no rule, expected KIND: TERMS such as 'stress: peak=1e-6'"),
        (lambda db: quilon.max(db, "stress", box=[1, 0, 0, 0, 0, 0]), "box is 1,0,0,0,0,0, expected X0,Y0,Z0,X1,Y1,Z1 with each first number no greater than its second"),
        (lambda db: quilon.path(db, "stress", [0, 0, 0], [0, 0, 0]), "start and end are both 0,0,0, expected two places"),
        (lambda db: quilon.path(db, "displacement", [0, 0, 0], [1, 0, 0], linearize=True), "linearize is of one kind of stress, expected one in the selection, such as stress@lc=1,sub=last"),
    ],
)  # fmt: skip
def test_what_the_program_calls_an_option_is_an_argument(
    call: Callable[[quilon.Database], object], message: str, results: pathlib.Path
) -> None:
    with quilon.open(results) as db, pytest.raises(quilon.Error) as caught:
        call(db)
    assert str(caught.value) == message


def test_a_file_that_is_named_like_an_option_keeps_its_name(tmp_path: pathlib.Path) -> None:
    with pytest.raises(quilon.Error, match="--box/--set.frd"):
        quilon.open(tmp_path / "--box" / "--set.frd")


@pytest.mark.parametrize(
    ("call", "message"),
    [
        (lambda db: quilon.component(np.ones((1, 6)), 5), "name: found 5, expected text"),
        (lambda db: quilon.max(5, "stress"), "database: found 5, expected a database or a path"),
        (lambda db: quilon.max(db, "stress", steps=[1, "x"]), "steps: found list [1, 'x'], expected text or an integer of 32 bits or a list of integers"),
        (lambda db: quilon.diff(db, db, selection=["stress"]), "selection: found list ['stress'], expected text"),
        (lambda db: quilon.diff(db, db, match_time="1"), "match_time: found '1', expected a number"),
        (lambda db: quilon.diff(db, db, max_records=-1), "max_records: found -1, expected 0 or more"),
        (lambda db: quilon.diff(db, db, rule=5), "rule: found 5, expected text or a list of texts"),
        (lambda db: quilon.combine(db, 5, "o.fed"), "combinations: found 5, expected a path or a dict of dicts"),
        (lambda db: quilon.combine(db, {"A": 5}, "o.fed"), "combinations: found 5 for 'A', expected a dict of factors by load case"),
        (lambda db: quilon.import_results("a.frd", "o.fed", strict="yes"), "strict: found 'yes', expected True or False"),
        (lambda db: quilon.import_results("a.frd", "o.fed", progress=5), "progress: found 5, expected a function of (phase, done, total)"),
        (lambda db: db.mesh("1"), "iteration: found '1', expected an integer of 32 bits"),
        (lambda db: quilon.AverageField(1).save(5, "stress"), "database: found 5, expected a database"),
        (lambda db: quilon.AverageField(1).average(layer=1.5), "layer: found 1.5, expected an integer of 32 bits"),
        (lambda db: quilon.path(db, "stress", [0, 0, 0], [1, 0, 0], points=1), "points: found 1, expected 2 or more"),
    ],
)  # fmt: skip
def test_wrong_arguments_are_told_by_name(
    call: Callable[[quilon.Database], object], message: str, results: pathlib.Path, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(tmp_path)
    with quilon.open(results) as db:
        with pytest.raises(quilon.ArgumentError) as caught:
            call(db)
    assert str(caught.value) == message


def test_closed_database_cannot_be_entered(results: pathlib.Path) -> None:
    db = quilon.open(results)
    db.close()
    with pytest.raises(quilon.Error, match="the database is closed, expected an open one"):
        with db:
            pass
