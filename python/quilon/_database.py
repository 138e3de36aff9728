"""Databases, their blocks, steps and meshes."""

from __future__ import annotations

import collections.abc as abc
import contextlib
import dataclasses
import logging
import os
from types import TracebackType
from typing import Any, Union, cast

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _native
from ._arrays import Ids, Values, as_array, as_ids, as_values, describe
from ._checks import checked, is_path, name_kind
from ._errors import ArgumentError, Error, MissingPackageError

PathLike = Union[str, "os.PathLike[str]"]
Progress = abc.Callable[[str, int, int], object]

_log = logging.getLogger("quilon")


def path_text(path: object, what: str) -> str:
    """The text of a path."""
    if not isinstance(path, (str, os.PathLike)):
        raise ArgumentError(f"{what}: found {type(path).__name__}, expected a path")
    text = os.fspath(path)
    if not isinstance(text, str):
        raise ArgumentError(f"{what}: found a path of bytes, expected text")
    if not text:
        raise ArgumentError(f"{what}: found '', expected a path")
    return text


def log_notes(notes: abc.Sequence[str]) -> None:
    for note in notes:
        _log.info("%s", note)


def key_text(key: abc.Mapping[str, object]) -> str:
    """Keys of a block as a selection spells them: `lc=1,sub=last`."""
    return ",".join(f"{name.replace('_', '-')}={_number_text(name, value)}" for name, value in key.items())


def _number_text(name: str, value: object) -> str:
    if isinstance(value, range):
        value = list(value)
    if isinstance(value, (list, tuple, np.ndarray)):
        return ",".join(_number_text(name, entry) for entry in value) if len(value) else "none"
    if value is None:
        return "none"
    if isinstance(value, str):
        return value
    if isinstance(value, (int, np.integer)) and not isinstance(value, bool):
        return str(int(value))
    raise ArgumentError(f"key {name}: found {value!r}, expected a number, a list of numbers or a text such as 'last'")


def steps_text(steps: str | int | abc.Sequence[int] | None) -> str:
    """Positions of steps as the program takes them: "1:9:2"."""
    if steps is None or isinstance(steps, str):
        return steps or ""
    return ",".join(str(int(step)) for step in ([steps] if isinstance(steps, (int, np.integer)) else steps)) or "none"


def key_numbers(key: abc.Mapping[str, object]) -> dict[str, int]:
    """Keys of one block, each a number; what is None is left out."""
    numbers: dict[str, int] = {}
    for name, value in key.items():
        if value is None:
            continue
        if isinstance(value, bool) or not isinstance(value, (int, np.integer)) or not -(2**31) <= int(value) < 2**31:
            raise ArgumentError(f"key {name}: found {value!r}, expected a number of 32 bits")
        numbers[name.replace("_", "-")] = int(value)
    return numbers


class Block:
    """Records of one kind: a displacement for each node, a stress for each element.

    A block holds none of its values: what is read of them lives as long as an array of them.
    """

    def __init__(self, native: _native.Block) -> None:
        self._native = native

    @property
    def kind(self) -> str:
        """Name of the kind in the catalogue or the database: "nodal-stress". Of scalar histories that of what they hold."""
        return self._native.kind

    @property
    def onf(self) -> int:
        """Number of the kind: 521."""
        return self._native.onf

    @property
    def key(self) -> dict[str, int]:
        """What tells the block from others of its kind: `{"it": 0, "lc": 1, "sub": 2}`, as selections name it."""
        return self._native.key

    @property
    def selection(self) -> str:
        """The block as a selection: "521@it=0,lc=1,sub=2"."""
        return self._native.text

    @property
    def time(self) -> float | None:
        """Time of the block's step, or its frequency or buckling factor; None where there is none."""
        return self._native.time

    @property
    def components(self) -> tuple[str, ...]:
        """Names of the columns of `values`: ("xx", "yy", "zz", "xy", "yz", "zx")."""
        return tuple(self._native.components)

    @property
    def all_components(self) -> tuple[str, ...]:
        """Names that `component()` takes: those that are stored, then invariants ("mises", "p1", ...)."""
        return tuple(self._native.all_components)

    @property
    def ids(self) -> Ids:
        """Ids of nodes, elements or the like, ascending; positions of histories. Integers of shape (n,), read-only.

        Blocks over the same nodes or elements share one array's memory.
        """
        return self._native.ids()

    @property
    def values(self) -> Values:
        """Values in the order of `ids`: doubles of shape (n, components), read-only, in the unit of the calculation.

        Without a copy where the column lies in one piece of memory, which is up to 4 MiB of values (65536 tensors,
        131072 vectors) of a database that is open to read; otherwise each access makes one copy. The array keeps what
        it looks at, also when the database is closed.

        Raises Error for a kind whose records are lists or texts: see `points()` and `rows()`.
        """
        return self._native.values()

    @checked
    def component(self, name: str) -> Values:
        """One component or invariant in the order of `ids`, shape (n,): "xx", "magnitude", "mises", "p1", ...

        A stored component is a view of `values`. See `all_components`.
        """
        return self._native.component(name)

    def points(self) -> tuple[Ids, Ids, Values]:
        """Values of a kind with a list a record: tensors of integration points, forces at the nodes of elements.

        Returns (ids, positions, values): the element of each row, shape (m,); the point or node in the element, from 1,
        shape (m,); the values, shape (m, 3 or 6).
        """
        return self._native.points()

    def rows(self) -> list[dict[str, Any]]:
        """The records of any kind as the program shows them, a dict of column names a row. Slow: for texts and lists."""
        return self._native.rows()

    def __len__(self) -> int:
        return self._native.num_records

    def __bool__(self) -> bool:
        return True

    def __repr__(self) -> str:
        return f"<quilon.Block {self.kind} {self.selection}>"

    def to_pandas(self) -> Any:
        """A pandas.DataFrame with the ids as index and a column a component; it shares the memory of `values`.

        `attrs` has kind, key and time. Raises MissingPackageError where pandas is not installed.
        """
        try:
            import pandas  # type: ignore[import]
        except ImportError:
            raise MissingPackageError("to_pandas: the package pandas is not installed, expected it") from None
        index = pandas.Index(self.ids, name="id", copy=False)
        frame = pandas.DataFrame(self.values, index=index, columns=list(self.components), copy=False)
        frame.attrs.update(kind=self.kind, key=self.key, time=self.time)
        return frame

    def to_xarray(self) -> Any:
        """An xarray.DataArray with the dimensions "id" and "component"; it shares the memory of `values`.

        `attrs` has the key, and the time where there is one. Raises MissingPackageError where xarray is not installed.
        """
        try:
            import xarray
        except ImportError:
            raise MissingPackageError("to_xarray: the package xarray is not installed, expected it") from None
        attributes: dict[str, Any] = {"onf": self.onf, **self.key}
        if self.time is not None:
            attributes["time"] = self.time
        return xarray.DataArray(
            self.values,
            dims=("id", "component"),
            coords={"id": self.ids, "component": list(self.components)},
            name=self.kind,
            attrs=attributes,
        )


@dataclasses.dataclass(frozen=True)
class Step:
    """A result step: the blocks of one iteration, analysis, load case, substep and increment."""

    position: int  #: from 1, over the whole database
    key: dict[str, int]  #: as of blocks
    time: float | None  #: time, frequency or buckling factor; None where none is known
    quantity: str | None  #: what `time` is: "time", "frequency" or "buckling-factor"
    _database: Database = dataclasses.field(repr=False, compare=False)

    def blocks(self, selection: str = "", **key: Any) -> list[Block]:
        """The blocks of this step that a selection chooses, see Database.blocks()."""
        return [
            block
            for block in self._database.blocks(selection, steps=self.position, **key)
            if block._native.step == self.key
        ]


@dataclasses.dataclass(frozen=True)
class Mesh:
    """Nodes and elements of one iteration of a database."""

    points: Values  #: undeformed coordinates, shape (n, 3), in the unit of the calculation
    point_ids: Ids  #: ids of the nodes, ascending, shape (n,)
    #: by shape ("C3D8"): ids of the elements, shape (m,), and node ids in the order of decks, shape (m, nodes)
    cells: dict[str, tuple[Ids, Ids]]
    materials: dict[str, Ids]  #: by shape: number of each element's material, 0 none
    sets: dict[str, Ids]  #: ids by the name of the set; a name of both nodes and elements stands for the nodes
    element_sets: dict[str, Ids]  #: the sets of elements alone
    #: by shape: what the deck calls each element's type ("C3D8R" of a C3D8), the shape where it is not known
    deck_types: dict[str, NDArray[np.str_]] = dataclasses.field(default_factory=dict)

    def indices(self, ids: ArrayLike) -> NDArray[np.intp]:
        """Rows of `points` for ids of nodes, of the same shape. Raises ArgumentError for an id that is no node."""
        array = as_array(ids, "ids")
        if array.dtype.kind not in "iu" and array.size != 0:
            raise ArgumentError(f"ids: found {describe(array)}, expected integers")
        flat = array.ravel()
        rows = np.searchsorted(self.point_ids, flat)
        found = rows < len(self.point_ids)
        found[found] = self.point_ids[rows[found]] == flat[found]
        if not found.all():
            raise ArgumentError(f"ids: found {flat[~found][0]}, expected ids of nodes of the mesh")
        return rows.astype(np.intp, copy=False).reshape(array.shape)

    def to_meshio_cells(self) -> list[tuple[str, NDArray[np.intp]]]:
        """Cells as meshio.Mesh(points, cells) takes them: (type, rows of `points`, shape (m, nodes)).

        Nodes are in the order that meshio and VTK expect. Types without a counterpart there are left out.
        """
        cells = []
        for name, (_, nodes) in self.cells.items():
            known = _MESHIO.get(name)
            if known is not None:
                cells.append((known[0], self.indices(nodes)[:, list(known[2])]))
        return cells

    def to_vtk(self) -> tuple[NDArray[np.intp], NDArray[np.uint8], Values]:
        """(cells, types, points) as pyvista.UnstructuredGrid(cells, types, points) takes them."""
        cells, types = [], []
        for name, (_, nodes) in self.cells.items():
            known = _MESHIO.get(name)
            if known is not None:
                rows = self.indices(nodes)[:, list(known[2])]
                cells.append(np.insert(rows, 0, rows.shape[1], axis=1).ravel())
                types.append(np.full(len(rows), known[1], np.uint8))
        if not cells:
            return np.zeros(0, np.intp), np.zeros(0, np.uint8), self.points
        return np.concatenate(cells), np.concatenate(types), self.points


# Type: name in meshio, number in VTK, nodes in its order as positions in the order of decks. Wedges of decks are inside
# out there.
_MESHIO: dict[str, tuple[str, int, tuple[int, ...]]] = {
    "C3D8": ("hexahedron", 12, tuple(range(8))),
    "C3D20": ("hexahedron20", 25, tuple(range(20))),
    "C3D6": ("wedge", 13, (3, 4, 5, 0, 1, 2)),
    "C3D15": ("wedge15", 26, (3, 4, 5, 0, 1, 2, 9, 10, 11, 6, 7, 8, 12, 13, 14)),
    "C3D4": ("tetra", 10, tuple(range(4))),
    "C3D10": ("tetra10", 24, tuple(range(10))),
    "S3": ("triangle", 5, tuple(range(3))),
    "S6": ("triangle6", 22, tuple(range(6))),
    "S4": ("quad", 9, tuple(range(4))),
    "S8": ("quad8", 23, tuple(range(8))),
    "B31": ("line", 3, (0, 1)),
    "B32": ("line3", 21, (0, 2, 1)),
}


class Database:
    """A database of result blocks, open to read or to write. Made by quilon.open(); a context manager.

    Calls of several threads take turns.
    """

    def __init__(self, native: _native.Store) -> None:
        self._native = native

    @property
    def path(self) -> str:
        """The path that was opened."""
        return self._native.name

    @property
    def mode(self) -> str:
        """ "r" or "w". """
        return "w" if self._native.is_writable else "r"

    @property
    def closed(self) -> bool:
        """Whether the database is closed: everything but its arrays then raises Error."""
        return self._native.is_closed

    def __enter__(self) -> Database:
        if self.closed:
            raise Error(f"{self.path}: the database is closed, expected an open one", self.path)
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        try:
            if error is None and self._native.is_writable and not self.closed:
                self._native.commit()
        finally:
            self.close()

    def __repr__(self) -> str:
        return f"<quilon.Database {self.path!r} mode {self.mode!r}{' closed' if self.closed else ''}>"

    def close(self) -> None:
        """Closes the database. What was written since the last commit is dropped; arrays stay as they are."""
        self._native.close()

    def commit(self) -> int:
        """Makes what was written part of the database, in one step. Returns how many blocks it were."""
        return self._native.commit()

    @checked
    def blocks(
        self,
        selection: str = "",
        *,
        kind: str | int | None = None,
        steps: str | int | abc.Sequence[int] | None = None,
        **key: object,
    ) -> list[Block]:
        """The blocks that a selection chooses, in the order of the database.

        selection: as the program takes it, "stress@lc=1,sub=last"; "" chooses all
        kind: in place of the selection's kinds, a name or number
        steps: result steps by position from 1, "1:9:2", "last", or a number or several
        key: further keys, `lc=1`, `sub="last"`, `layer=[1, 2]`; None chooses blocks without the key
        """
        text = selection
        if kind is not None:
            if selection and not selection.startswith("@"):
                raise ArgumentError(f"kind: the selection '{selection}' names kinds, expected one of the two")
            text = f"{kind}{selection}"
        if key:
            text += ("," if "@" in text else "@") + key_text(key)
        return [Block(native) for native in self._native.select(text, steps_text(steps))]

    def block(self, selection: str = "", **key: Any) -> Block:
        """The one block that a selection chooses. Raises Error when it is none or several; see blocks()."""
        found = self.blocks(selection, **key)
        if len(found) != 1:
            what = " ".join(filter(None, [selection, key_text(key) if key else ""])) or "all"
            names = ", ".join(block.selection for block in found[:3]) + (", ..." if len(found) > 3 else "")
            raise ArgumentError(
                f"{self.path}: '{what}' chooses {len(found)} blocks{': ' + names if found else ''}, expected one"
            )
        return found[0]

    def __iter__(self) -> abc.Iterator[Block]:
        return iter(self.blocks())

    def steps(self) -> list[Step]:
        """The result steps in the order in which they are counted. Going through them and their blocks takes the memory
        of the arrays that are kept, and no more."""
        return [Step(position, key, time, quantity or None, self) for position, key, time, quantity in self._native.steps()]

    @checked
    def mesh(self, iteration: int = 0) -> Mesh:
        """Nodes, elements and sets of one iteration, as it was last committed. Raises Error without coordinates."""
        parts = self._native.mesh(iteration)
        cells: dict[str, tuple[Ids, Ids]] = {}
        materials: dict[str, Ids] = {}
        deck_types: dict[str, NDArray[np.str_]] = {}
        type_names = np.array(parts["types"], np.str_)
        for name, ids, nodes, of_material, of_type in parts["cells"]:
            # Elements without a shape differ in their number of nodes.
            key = name if name not in cells else f"{name}{nodes.shape[1]}"
            cells[key] = (ids, nodes)
            materials[key] = of_material
            deck_types[key] = type_names[of_type]
        sets: dict[str, Ids] = {}
        element_sets: dict[str, Ids] = {}
        for name, of_elements, ids in parts["sets"]:
            if of_elements:
                element_sets[name] = ids
                sets.setdefault(name, ids)
            else:
                sets[name] = ids
        return Mesh(parts["points"], parts["point_ids"], cells, materials, sets, element_sets, deck_types)

    @checked
    def write(self, kind: str | int, ids: ArrayLike, values: ArrayLike | abc.Sequence[ArrayLike], **key: int | None) -> None:
        """Writes a block, in place of one with the same key. It is stored by the next commit.

        kind: name or number of the kind; names of user kinds are made by user_kind()
        ids: of nodes, elements or the like, or positions of histories; integers of shape (n,), each once
        values: shape (n, components of the kind) or (n,) for one component; for a kind of lists (element-nodes,
            element-forces) n arrays, each of one dimension
        key: `lc=1, sub=2, ...`; `it` is 0 unless it is given
        """
        name = kind_text(kind)
        id_array = as_ids(ids)
        numbers = key_numbers(key)
        if name.lower() in _LIST_KINDS or _is_ragged(values):
            entries: Any = values
            lists = [as_values(entry, None, (1,), "values").ravel() for entry in entries]
            if len(lists) != len(id_array):
                raise ArgumentError(f"values: found {len(lists)} lists, expected {len(id_array)}")
            lengths = np.array([len(entry) for entry in lists], np.int32)
            self._native.write_lists(name, numbers, id_array, lengths, np.concatenate([np.zeros(0), *lists]))
        else:
            self._native.write(name, numbers, id_array, as_values(cast(ArrayLike, values), len(id_array), ()))

    @checked
    def user_kind(self, name: str, components: int, on: str = "nodes") -> int:
        """The number of a kind of the database's own, which is made when it is new.

        components: 1, 3 or 6 of each node or element
        on: "nodes" or "elements"
        """
        if on not in ("nodes", "elements"):
            raise ArgumentError(f"on: found {on!r}, expected 'nodes' or 'elements'")
        if components not in (1, 3, 6):
            raise ArgumentError(f"components: found {components}, expected 1, 3 or 6")
        return self._native.user_kind(name, on == "elements", components)


_LIST_KINDS = {"element-nodes", "595", "element-forces", "580", "element-moments", "581"}


def _is_ragged(values: object) -> bool:
    """Whether these are arrays of different lengths."""
    if not isinstance(values, (list, tuple)) or not values or not all(np.ndim(entry) == 1 for entry in values):
        return False
    return len({len(entry) for entry in values}) > 1


def kind_text(kind: object) -> str:
    if isinstance(kind, (str, int, np.integer)) and not isinstance(kind, bool):
        return str(kind)
    raise ArgumentError(f"kind: found {kind!r}, expected a name or number")


@checked
def open(
    path: PathLike, mode: str = "r", *, deck: PathLike | None = None, progress: Progress | None = None
) -> Database:
    """Opens whatever the program takes: a working database (.fed), an ONF folder, a solver result file (.frd, .dat).

    mode: "r" reads what was committed last. "w" opens a working database or an ONF folder to write, or makes one, and
        commits at the end of a `with` block; an exception in the block leaves the database as it was
    deck: a deck to read a result file with
    progress: called with (phase, done, total) while a result file is read; what it raises stops the reading

    Notes on what a result file holds go to the logger "quilon".
    Raises Error for what is no database, naming what is accepted.
    """
    if mode not in ("r", "w"):
        raise ArgumentError(f"mode: found {mode!r}, expected 'r' or 'w'")
    store, notes = _native.open(
        path_text(path, "path"), mode == "w", "" if deck is None else path_text(deck, "deck"), progress
    )
    log_notes(notes)
    return Database(store)


Source = Union[Database, PathLike]
name_kind("Database", "a database", lambda value: isinstance(value, Database))
name_kind("Source", "a database or a path", lambda value: isinstance(value, Database) or is_path(value))


@contextlib.contextmanager
def opened(source: Source, progress: Progress | None = None) -> abc.Iterator[Database]:
    """A database as it is, or what a path holds for the time of a question."""
    if isinstance(source, Database):
        yield source
        return
    with open(source, progress=progress) as database:
        yield database
