"""Components of arrays, and questions to databases."""

from __future__ import annotations

import collections.abc as abc
import dataclasses
import os
import pathlib
from typing import Any

import numpy as np
from numpy.typing import ArrayLike

from . import _native
from ._arrays import Ids, Values, as_values
from ._checks import checked
from ._database import PathLike, Progress, Source, opened, path_text, steps_text
from ._errors import ArgumentError


def principal_values(tensors: ArrayLike) -> Values:
    """Principal values of symmetric tensors, descending.

    tensors: shape (n, 6) or (6,): xx, yy, zz, xy, yz, zx, shears of tensors
    Returns shape (n, 3) in the tensors' unit, right to 1e-12 of a tensor's largest component at any size; nan for a
    tensor with a component that is no finite number.
    """
    values, _ = _native.principal_values(as_values(tensors, None, (6,), "tensors"), False)
    return values


def principal_axes(tensors: ArrayLike) -> tuple[Values, Values]:
    """(values, directions): see principal_values(), and unit vectors of shape (n, 3, 3), a row a principal value."""
    return _native.principal_values(as_values(tensors, None, (6,), "tensors"), True)


@checked
def component(tensors: ArrayLike, name: str, kind: str | int | None = None) -> Values:
    """One component or invariant of vectors or tensors, shape (n,).

    tensors: shape (n, 6), xx, yy, zz, xy, yz, zx; or (n, 3), x, y, z
    name: "xx", "magnitude", "mises", "tresca", "p1", "hydrostatic", ...
    kind: what they are, where it matters: the equivalent strain of a "strain" is 2/3 of that of a stress
    """
    return _native.component(as_values(tensors, None, (6, 3), "tensors"), name, "" if kind is None else str(kind))


@dataclasses.dataclass(frozen=True)
class Extreme:
    """A worst value and where it is."""

    block: str  #: the selection of it
    kind: str
    component: str
    value: float
    id: int  #: of the node or element; position of a history
    point: int | None  #: of a kind with several vectors or tensors a record, from 1
    place: tuple[float, float, float] | None  #: of the node, or the mean of the element's nodes; undeformed
    type: str  #: "node" or the name of the element's type
    material: str  #: of an element
    sets: tuple[str, ...]  #: those that the node or element is in
    time: float | None
    key: dict[str, int]  #: of the step
    part: str  #: of `per`
    ties: int  #: other values of the part that are as bad


@dataclasses.dataclass(frozen=True)
class MaxReport:
    """The worst values, the worst first."""

    rows: tuple[Extreme, ...]
    values: int  #: that were looked at
    nans: int  #: of these, those that are no numbers and count for nothing


@checked
def max(
    database: Source,
    selection: str,
    *,
    measure: str = "greatest",
    head: int = 1,
    per: str = "whole",
    steps: str | int | abc.Sequence[int] | None = None,
    ids: str = "",
    sets: str | abc.Sequence[str] = (),
    materials: str | abc.Sequence[str] = (),
    box: abc.Sequence[float] | None = None,
    near: abc.Sequence[float] | None = None,
    progress: Progress | None = None,
) -> MaxReport:
    """The worst values of results, as `quilon max`: how large, where and when.

    selection: kinds, components and steps, "stress.mises,displacement.magnitude@lc=1"
    measure: what is worst: "greatest", "least" or "magnitude"
    head: how many of each kind, component and part
    per: parts that are asked one by one: "whole", "step", "material", "set" or "group"
    ids, sets, materials, box, near: a part of the model: "1,5-9"; names; names or numbers; x0, y0, z0, x1, y1, z1;
        the nearest node of x, y, z
    """
    for what, value, choices in (
        ("measure", measure, ("greatest", "least", "magnitude")),
        ("per", per, ("whole", "step", "material", "set", "group")),
    ):
        if value not in choices:
            raise ArgumentError(f"{what}: found {value!r}, expected {', '.join(choices[:-1])} or {choices[-1]}")
    if head < 1:
        raise ArgumentError(f"head: found {head!r}, expected a number, 1 or more")
    region = {
        "ids": ids,
        "sets": _names(sets),
        "materials": _names(materials),
        "box": None if box is None else as_values(box, 1, (6,), "box")[0].tolist(),
        "near": None if near is None else as_values(near, 1, (3,), "near")[0].tolist(),
    }
    with opened(database, progress) as db:
        rows, values, nans = _native.max(
            db._native, selection, steps_text(steps), measure, int(head), per, region, progress
        )
    return MaxReport(tuple(Extreme(**row) for row in rows), values, nans)


def _names(names: str | abc.Sequence[str]) -> list[str]:
    return [names] if isinstance(names, str) else list(names)


@dataclasses.dataclass(frozen=True)
class Envelope:
    """Least and greatest values over result steps, at each node or element."""

    kind: str
    onf: int
    key: dict[str, int]  #: of the blocks, without what tells their step
    components: tuple[str, ...]
    steps: tuple[dict[str, int], ...]  #: keys of the steps
    ids: Ids  #: ascending, shape (n,)
    least: Values  #: shape (n, components); nan where no value was a number
    greatest: Values  #: likewise
    largest: Values  #: the values of largest magnitude, with their sign
    least_step: Ids  #: positions in `steps` of the steps that govern, the first of equal ones; -1 where none does
    greatest_step: Ids


@checked
def envelope(
    database: Source,
    selection: str = "",
    *,
    steps: str | int | abc.Sequence[int] | None = None,
    axes: str = "",
    progress: Progress | None = None,
) -> list[Envelope]:
    """Envelopes over result steps, as `quilon envelope`: one for each kind and layer.

    selection: kinds, components and steps, "stress.mises,displacement.magnitude@sub=last"
    steps: see Database.blocks()
    axes: axes to take components in, as the program has them: "cylindrical:0,0,0,0,0,1"
    """
    with opened(database, progress) as db:
        return [
            Envelope(**entry)
            for entry in _native.envelope(db._native, selection, steps_text(steps), axes, progress)
        ]


@dataclasses.dataclass(frozen=True)
class CombineReport:
    """What combine() wrote."""

    output: str
    blocks: int
    notes: tuple[str, ...]


@checked
def combine(
    database: Source,
    combinations: PathLike | abc.Mapping[str, abc.Mapping[int | str, float]],
    out: PathLike,
    selection: str = "",
    *,
    allow_nonlinear: bool = False,
    progress: Progress | None = None,
) -> CombineReport:
    """Writes linear combinations of load cases to a database, as `quilon combine`, in one step.

    combinations: a file, or factors by load case for each name: {"ULS1": {1: 1.35, "lc2/3": 1.5}}. A load case is its
        number, "lc2", "lc2/3" for its substep 3, or the name of another combination
    out: a working database (.fed) or an ONF folder. Results have analysis 3 and the load cases 10001, 10002, ... in the
        order of the combinations
    selection: kinds; "" combines all that are linear in the loads
    allow_nonlinear: whether results of steps with large displacements may be added up
    """
    if isinstance(combinations, (str, os.PathLike)):
        name = path_text(combinations, "combinations")
        try:
            text = pathlib.Path(name).read_text(encoding="utf-8")
        except OSError as error:
            raise ArgumentError(f"{name}: {error.strerror}, expected a file of combinations", name) from None
    else:
        name, text = "combinations", "".join(_combination(*entry) for entry in combinations.items())
    output = path_text(out, "out")
    with opened(database, progress) as db:
        blocks, notes = _native.combine(db._native, text, name, output, selection, allow_nonlinear, progress)
    return CombineReport(output, blocks, tuple(notes))


def _combination(name: str, factors: abc.Mapping[int | str, float]) -> str:
    """A line of a file of combinations."""
    if not isinstance(factors, abc.Mapping):
        raise ArgumentError(f"combinations: found {factors!r} for {name!r}, expected a dict of factors by load case")
    terms = []
    for case, factor in factors.items():
        if isinstance(case, bool) or not isinstance(case, (str, int, np.integer)):
            raise ArgumentError(f"combinations: found {case!r} in {name!r}, expected a load case or the name of a combination")
        if isinstance(factor, bool) or not isinstance(factor, (int, float, np.integer, np.floating)):
            raise ArgumentError(f"combinations: the factor of {case!r} in {name} is {factor!r}, expected a number")
        terms.append(f"{float(factor)!r}*{case if isinstance(case, str) else f'lc{int(case)}'}")
    return f"{name} = {' + '.join(terms)}\n"


@dataclasses.dataclass(frozen=True)
class PathStep:
    """Values of one result step along a line."""

    key: dict[str, int]
    time: float | None
    columns: tuple[str, ...]
    values: Values  #: shape (places, columns); nan where there is no value
    #: linearized stress by part ("membrane", ...): the tensor, shape (6,), and its equivalent stress
    linearization: dict[str, tuple[Values, float]] | None


@dataclasses.dataclass(frozen=True)
class Path:
    """Values along a line through the elements."""

    places: Values  #: shape (n, 3)
    s: Values  #: length of the way from the first place, shape (n,)
    elements: Ids  #: ids of those that hold the places, 0 outside; shape (n,)
    steps: tuple[PathStep, ...]


@checked
def path(
    database: Source,
    selection: str,
    start: ArrayLike | None = None,
    end: ArrayLike | None = None,
    points: int = 51,
    *,
    places: ArrayLike | None = None,
    steps: str | int | abc.Sequence[int] | None = None,
    axes: str = "",
    linearize: bool = False,
) -> Path:
    """Values at places within solid elements, undeformed, as `quilon path`.

    start, end: ends of a straight line, three coordinates each; points: how many places it has, both ends included
    places: in place of a line, shape (n, 3)
    axes: axes to take components in
    linearize: whether stresses on a straight line are split into membrane, bending and peak
    """
    if (places is None) != (start is not None and end is not None):
        raise ArgumentError("path: expected either both start and end or places")
    if points < 2:
        raise ArgumentError(f"points: found {points}, expected 2 or more")
    if places is None:
        first, last = (as_values(value, 1, (3,), what) for value, what in ((start, "start"), (end, "end")))  # type: ignore[arg-type]
        where: Any = _native.line(first[0].tolist(), last[0].tolist(), points)
    else:
        where = as_values(places, None, (3,), "places")
        if linearize:
            raise ArgumentError("linearize: is of a straight line, expected start and end")
    with opened(database) as db:
        result = _native.path(db._native, selection, steps_text(steps), where, axes, linearize)
    return Path(where, result["s"], result["elements"], tuple(PathStep(*step) for step in result["steps"]))
