"""Files for people and other programs to look at: exports, pictures, pages."""

from __future__ import annotations

import collections.abc as abc
import dataclasses
import math

from . import _native
from ._arrays import as_values
from ._checks import checked
from ._database import PathLike, Progress, Source, log_notes, opened, path_text, steps_text
from ._errors import ArgumentError
from ._reports import page_text


def _names(names: str | abc.Sequence[str]) -> list[str]:
    return [names] if isinstance(names, str) else list(names)


@dataclasses.dataclass(frozen=True)
class ExportReport:
    """What an export wrote."""

    files: tuple[str, ...]  #: the one asked for first
    points: int  #: 0 of a table, as cells
    cells: int
    arrays: tuple[str, ...]  #: names, without ids, materials and sets
    times: tuple[float, ...] | None  #: of the steps; None where the results tell no times
    left_out: tuple[str, ...]  #: selected kinds that have no values of nodes or elements
    notes: tuple[str, ...]


@checked
def export(
    database: Source,
    out: PathLike,
    selection: str = "",
    *,
    steps: str | int | abc.Sequence[int] | None = None,
    components: str | abc.Sequence[str] = (),
    groups: str = "arrays",
    link: bool = False,
    progress: Progress | None = None,
) -> ExportReport:
    """Writes results and their mesh for other tools, as `quilon export` does.

    out: .vtkhdf (all steps in one file), .pvd (and a .vtu a step), .vtu (one step) or .csv
    selection, steps: what is written, see Database.blocks(); all that has values of nodes or elements without any.
        "stress.mises" is a component, an array of its own
    components: components and invariants of all kinds, each an array of its own: ("mises", "p1")
    groups: averages of groups as "arrays", one each, or as "points" of their own where groups meet
    link: a .vtkhdf that points at the values in a working database in place of having them
    """
    if groups not in ("arrays", "points"):
        raise ArgumentError(f"groups: found {groups!r}, expected 'arrays' or 'points'")
    output = path_text(out, "out")
    with opened(database, progress) as db:
        result = _native.export(
            db._native, output, selection, steps_text(steps), _names(components), groups == "points", link, progress
        )
    log_notes(result["notes"])
    return ExportReport(**result)


@dataclasses.dataclass(frozen=True)
class Picture:
    """What a picture shows."""

    component: str  #: "" of the mesh alone
    range: tuple[float, float] | None  #: of the colours
    least: tuple[float, int] | None  #: value, and the id of its node or element
    greatest: tuple[float, int] | None
    factor: float  #: of the displacements; 0 of an undeformed model
    notes: tuple[str, ...]


@checked
def plot(
    database: Source,
    out: PathLike,
    selection: str = "",
    *,
    steps: str | int | abc.Sequence[int] | None = None,
    component: str = "",
    view: str = "iso",
    size: abc.Sequence[int] = (1200, 900),
    deform: float | str | None = None,
    undeformed: bool = False,
    lines: str = "auto",
    range: abc.Sequence[float] | None = None,
    map: str = "auto",
    unit: str = "",
    title: str = "",
    background: str = "white",
    marks: bool = True,
    axes: bool = True,
    light: bool = True,
    cut: abc.Sequence[float] | None = None,
    sets: str | abc.Sequence[str] = (),
    materials: str | abc.Sequence[str] = (),
    progress: Progress | None = None,
) -> Picture:
    """Draws the model's surface with a result on it, without a display, as `quilon plot` does.

    out: .png, .svg or .pdf
    selection, steps: which result, "stress.mises@sub=last"; the last of several steps; without any the mesh alone
    component: what is shown; mises of tensors, the magnitude of vectors
    view: "top", "bottom", "front", "back", "left", "right", "iso", or azimuth and elevation in degrees: "30,20"
    size: width and height in pixels, or points of a .pdf or .svg
    deform: displacements times this, or "auto"; undeformed: the outline of the undeformed model too
    lines: "auto", "mesh", "outline" or "none"
    range: least and greatest value of the colours
    map: "viridis", "coolwarm", "grey" or "auto"
    background: "white", "black", "transparent" or "#rrggbb"
    marks, axes, light: the greatest and the least value marked; the model's axes; shades beside the colours of the bar
    cut: a point and a normal, six numbers: what the normal points to is taken away
    sets, materials: the part of the model that is shown, by names
    """
    output = path_text(out, "out")
    if len(size) != 2:
        raise ArgumentError(f"size: found {len(size)} numbers, expected 2: width and height")
    if deform != "auto" and deform is not None and (isinstance(deform, str) or not math.isfinite(deform)):
        raise ArgumentError(f"deform: found {deform!r}, expected a factor or 'auto'")
    if undeformed and deform is None:
        raise ArgumentError("undeformed: found True, expected it with deform")
    if selection == "" and steps is not None:
        raise ArgumentError("steps: found steps without a selection, expected both or none")
    ends = None if range is None else as_values(range, 1, (2,), "range")[0].tolist()
    if ends is not None and not -math.inf < ends[0] < ends[1] < math.inf:
        raise ArgumentError(f"range: found {ends}, expected two numbers, the lesser one first")
    plane = None if cut is None else as_values(cut, 1, (6,), "cut")[0].tolist()
    if plane is not None and (not all(math.isfinite(number) for number in plane) or plane[3:] == [0, 0, 0]):
        raise ArgumentError(f"cut: found {plane}, expected a point and a normal that is not zero")
    options = {
        "component": component,
        "view": view,
        "size": f"{size[0]}x{size[1]}",
        "is_deformed": deform is not None,
        "factor": None if deform is None or isinstance(deform, str) else float(deform),
        "undeformed": undeformed,
        "lines": lines,
        "range": ends,
        "map": map,
        "unit": unit,
        "title": title,
        "background": background,
        "marks": marks,
        "axes": axes,
        "light": light,
        "cut": plane,
        "sets": _names(sets),
        "materials": _names(materials),
    }
    with opened(database, progress) as db:
        result = _native.plot(db._native, output, selection, steps_text(steps), options)
    log_notes(result["notes"])
    return Picture(**result)


@dataclasses.dataclass(frozen=True)
class PageReport:
    """What a page holds."""

    bytes: int
    steps: int
    points: int  #: that are drawn
    triangles: int
    has_inside: bool  #: whether cuts show sections: the inside of solids is in the page where it has room


@checked
def report(
    database: Source,
    out: PathLike,
    selection: str = "",
    *,
    steps: str | int | abc.Sequence[int] | None = None,
    max_steps: int = 0,
    bits: int = 32,
    inside: bool = True,
    progress: Progress | None = None,
) -> PageReport:
    """Writes results as a page for a browser, one file, as `quilon report` does.

    out: .html, of at most 25 MB: Error tells what would make a larger one fit
    selection, steps: what is in it, see Database.blocks(); all that has values of nodes or elements without any
    max_steps: as many steps at most, evenly chosen, the first and the last among them; 0: all
    bits: of a value, 32 or 16
    inside: whether the inside of solids, of which cuts show sections, is in it where it has room
    """
    if bits not in (16, 32):
        raise ArgumentError(f"bits: found {bits!r}, expected 16 or 32")
    if max_steps < 0:
        raise ArgumentError(f"max_steps: found {max_steps}, expected 0 or more")
    output = page_text(out, "out")
    with opened(database, progress) as db:
        result = _native.report(
            db._native, output, selection, steps_text(steps), max_steps, bits == 16, not inside, progress
        )
    return PageReport(**result)
