"""Accumulators of the library: averages at nodes, forces at the nodes of elements."""

from __future__ import annotations

import numpy as np
from numpy.typing import ArrayLike

from . import _native
from ._arrays import Ids, Values, as_ids, as_values
from ._checks import checked
from ._database import Database, key_numbers, kind_text
from ._errors import ArgumentError

_OPERATIONS = {"average": 0, "sum": 1, "variance": 2}
_FORCE_OPERATIONS = {"sum": 0, "average": 1}


class AverageField:
    """Averages, per id, of the values that several elements contribute. Fill it with add(), then read or save it.

    A tensor has the components xx, yy, zz, xy, yz, zx. Memory: 32 to 110 bytes an id and layer.
    """

    @checked
    def __init__(self, components: int, statistics: bool = False, layers: int = 1) -> None:
        """
        components: of a value: 1, 3 or 6
        statistics: whether mean and variance are kept (Welford's formula) in place of sum and count
        layers: of shells; each is averaged by itself
        """
        self._native = _native.AverageField(int(components), bool(statistics), int(layers))
        self._components = int(components)

    @checked
    def add(self, ids: ArrayLike, values: ArrayLike, layer: int = 0) -> None:
        """Adds values, in their order: the sums are those of a loop over them, to the last bit.

        ids: integers of shape (n,), any number of times each
        values: shape (n, components), or (n,) of one component
        layer: from 0
        """
        id_array = as_ids(ids)
        self._native.add(id_array, as_values(values, len(id_array), (self._components,)), layer)

    @checked
    def average(self, layer: int = 0) -> tuple[Ids, Values]:
        """(ids, averages): shapes (m,) and (m, components), by ascending id; 0 where nothing was added since reset()."""
        return self._native.average(layer)

    @checked
    def variance(self, layer: int = 0) -> tuple[Ids, Values]:
        """(ids, variances): population variance, in the square of the values' unit; nan where nothing was added since
        reset(). Raises Error for a field without statistics."""
        return self._native.variance(layer)

    @checked
    def count(self, layer: int = 0) -> tuple[Ids, Ids]:
        """(ids, counts): how many values each id got since reset(), shapes (m,) and (m,)."""
        ids, counts = self._native.count(layer)
        return ids, counts.ravel().astype(np.int32)

    def reset(self) -> None:
        """Sets all to zero for the next result step. Ids stay, with a count of 0."""
        self._native.reset()

    @checked
    def save(self, database: Database, kind: str | int, what: str = "average", **key: int | None) -> None:
        """Writes the field as a block, in place of one with the same key. With layers a block for each, from layer=1.

        what: "average", "sum" or "variance"
        key: see Database.write()
        """
        operation = _choose(what, _OPERATIONS)
        self._native.save(database._native, kind_text(kind), key_numbers(key), operation)


class ElementForces:
    """Forces and moments at the nodes of elements, summed over what is added."""

    def __init__(self) -> None:
        self._native = _native.ElementForces()

    def add(
        self, elements: ArrayLike, nodes: ArrayLike, forces: ArrayLike, moments: ArrayLike | None = None
    ) -> None:
        """Adds a force, and a moment where they are given, to a node of an element.

        elements, nodes: ids, shape (n,). Nodes of an element keep the order in which they came first.
        forces, moments: shape (n, 3)
        """
        element_ids = as_ids(elements, "elements")
        node_ids = as_ids(nodes, "nodes")
        if len(node_ids) != len(element_ids):
            raise ArgumentError(f"nodes: found {len(node_ids)}, expected {len(element_ids)} as of elements")
        count = len(element_ids)
        turning = np.zeros((0, 3)) if moments is None else as_values(moments, count, (3,), "moments")
        self._native.add(element_ids, node_ids, as_values(forces, count, (3,), "forces"), turning)

    def reset(self) -> None:
        """Sets all to zero for the next step of the same elements. Elements and nodes stay."""
        self._native.reset()

    def clear(self) -> None:
        """Forgets all elements."""
        self._native.clear()

    @checked
    def save(self, database: Database, what: str = "sum", **key: int | None) -> None:
        """Writes element-forces, element-moments where there are any, and element-nodes where the database has none.

        what: "sum" or "average" of what was added to a component
        """
        self._native.save(database._native, key_numbers(key), _choose(what, _FORCE_OPERATIONS))


def _choose(what: str, choices: dict[str, int]) -> int:
    if what not in choices:
        raise ArgumentError(f"what: found {what!r}, expected {' or '.join(choices)}")
    return choices[what]
