"""Import of solver results, and comparison."""

from __future__ import annotations

import collections.abc as abc
import dataclasses
from typing import Any

from . import _native
from ._checks import checked
from ._database import PathLike, Progress, Source, opened, path_text
from ._errors import ArgumentError


@dataclasses.dataclass(frozen=True)
class Deviation:
    """Our nodal averages beside the solver's own, over all nodes and times of an element type."""

    element_type: str
    quantity: str
    nodes: int  #: pairs of node and time
    largest: float  #: as a fraction of the field's largest magnitude


@dataclasses.dataclass(frozen=True)
class ImportReport:
    """What an import wrote and left out."""

    output: str
    blocks: int  #: written
    unchanged: bool  #: the iteration is of these files already: nothing was read or written
    replaced: int  #: blocks that were there and have new values
    removed: int  #: blocks that were there and that these files do not bring
    deviations: tuple[Deviation, ...]
    skipped: tuple[tuple[str, int], ...]  #: reason and number of rows
    notices: tuple[str, ...]


@checked
def import_results(
    files: PathLike | abc.Sequence[PathLike],
    out: PathLike,
    deck: PathLike | None = None,
    average_by: str | abc.Sequence[str] | None = None,
    progress: Progress | None = None,
    *,
    iteration: int = 0,
    request: str | None = None,
    groups: PathLike | None = None,
    strict: bool = False,
    allow_outside: bool = False,
    existing: str | None = None,
) -> ImportReport:
    """Takes a solver's results into a working database (.fed) or an ONF folder, as `quilon import` does.

    files: result files (.frd, .dat), stems of jobs, the deck (.inp); one or several
    out: written in one step at the end: a failure, an exception of progress or Ctrl-C leaves it as it was
    deck: the deck, where it is not among the files
    average_by: one more average for each "material" or "section", or for each of these element sets
    progress: called with (phase, done, total), bytes or items
    iteration: design iteration of the results
    request: what to derive: "all" (as None does), "none", kinds, or the path of a request file
    groups: a groups file whose groups become sets of the deck
    strict: anything that has to be skipped raises Error
    allow_outside: whether the deck may include files outside its folder
    existing: what becomes of results of the iteration that are there: None replaces those of the same mesh and raises
        Error for others, "replace" replaces any, "keep" leaves blocks that these files do not bring
    """
    if existing not in (None, "replace", "keep"):
        raise ArgumentError(f"existing: found {existing!r}, expected 'replace' or 'keep'")
    names = [files] if isinstance(files, str) or not isinstance(files, abc.Sequence) else list(files)
    paths = [path_text(name, "files") for name in names]
    if deck is not None:
        paths.append(path_text(deck, "deck"))
    if not paths:
        raise ArgumentError("files: found none, expected result files or a deck")
    output = path_text(out, "out")
    border, sets = "", []
    if isinstance(average_by, str) and average_by in ("material", "section"):
        border = average_by
    elif average_by is not None:
        border = "sets"
        sets = [name.strip() for name in (average_by.split(",") if isinstance(average_by, str) else average_by)]
        if not sets:
            raise ArgumentError("average_by: found nothing, expected 'material', 'section' or names of element sets")
    result = _native.import_results(
        paths, output, border, sets, iteration, strict, request,
        "" if groups is None else path_text(groups, "groups"), allow_outside, existing or "", progress,
    )  # fmt: skip
    return ImportReport(
        output,
        result["blocks"],
        result["unchanged"],
        result["replaced"],
        result["removed"],
        tuple(Deviation(*row) for row in result["deviations"]),
        tuple(result["skipped"]),
        tuple(result["notices"]),
    )


def page_text(path: PathLike, what: str) -> str:
    """The text of the path of a page."""
    text = path_text(path, what)
    if not text.lower().endswith((".html", ".htm")):
        raise ArgumentError(f"{what}: found {text!r}, expected a name that ends in .html")
    return text


@dataclasses.dataclass(frozen=True)
class Difference:
    """A record or a value that differs, as `quilon diff --json` tells it."""

    block: str  #: the selection of it: "521@it=0,lc=1"
    kind: str
    step: str  #: its key but for the layer; "-" without any
    layer: int | None
    id: int | None
    component: str | None  #: None for the record as a whole
    a: int | float | str | None
    b: int | float | str | None
    distance: float  #: |a - b|
    times: float  #: how many times what is allowed
    rule: str  #: the terms that fail


@dataclasses.dataclass(frozen=True)
class DiffReport:
    """The outcome of a comparison."""

    same: bool
    differences: tuple[Difference, ...]  #: the worst first, at most max_records of a block, of max_blocks blocks
    summary: str  #: one line
    blocks: dict[str, int]  #: compared, different, only_in_a, only_in_b
    records: dict[str, int]  #: likewise
    values: tuple[int, int]  #: floating-point values compared, and of these different
    norms: tuple[dict[str, Any], ...]  #: of each block: values, max, rms, relative, peak, sign
    one_sided: tuple[dict[str, Any], ...]  #: blocks that one database alone has: side "A" or "B", records

    def __bool__(self) -> bool:
        raise ArgumentError("a comparison has no truth of its own, expected .same")


@checked
def diff(
    a: Source,
    b: Source,
    rule: str | abc.Sequence[str] | None = None,
    *,
    selection: str = "",
    steps: str = "",
    rules: PathLike | None = None,
    ignore_missing: str | None = None,
    match_time: float | None = None,
    match_points: float | None = None,
    max_records: int = 10,
    max_blocks: int = 10,
    html: PathLike | None = None,
    progress: Progress | None = None,
) -> DiffReport:
    """Compares two databases, block by block, as `quilon diff` does.

    a, b: databases, or paths of what open() takes
    rule: terms for all kinds, "abs=1e-9 rel=1e-6 any", or for some, "stress: peak=1e-5"; of several the later ones
        stand above the earlier. None is the program's default, two units of the sixth digit of a block's peak
    selection, steps: what takes part, see Database.blocks()
    rules: a file of rules
    ignore_missing: "a", "b" or "both": what A lacks, what B lacks or either is no difference
    match_time: steps are the same up to this difference of their times
    match_points: nodes are the same up to this distance apart
    max_records, max_blocks: how much `differences` holds
    html: a page for a browser to write, .html: both and their difference side by side
    """
    if ignore_missing not in (None, "a", "b", "both"):
        raise ArgumentError(f"ignore_missing: found {ignore_missing!r}, expected 'a', 'b' or 'both'")
    for what, most in (("max_records", max_records), ("max_blocks", max_blocks)):
        if most < 0:
            raise ArgumentError(f"{what}: found {most}, expected 0 or more")
    options = {
        "rules": [] if rule is None else [rule] if isinstance(rule, str) else list(rule),
        "selection": selection,
        "steps": steps,
        "rule_file": "" if rules is None else path_text(rules, "rules"),
        "match_time": match_time,
        "match_points": match_points,
        "ignore_missing_in_a": ignore_missing in ("a", "both"),
        "ignore_missing_in_b": ignore_missing in ("b", "both"),
        "max_records": max_records,
        "max_blocks": max_blocks,
        "html": "" if html is None else page_text(html, "html"),
    }
    with opened(a, progress) as first, opened(b, progress) as second:
        result = _native.diff(first._native, second._native, options, progress)
    return DiffReport(
        result["same"],
        tuple(Difference(**row) for row in result["differences"]),
        result["summary"],
        result["blocks"],
        result["records"],
        result["values"],
        tuple(result["norms"]),
        tuple(result["one_sided"]),
    )
