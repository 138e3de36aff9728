"""Components of arrays, and questions to databases."""

from __future__ import annotations

from numpy.typing import ArrayLike, NDArray

from . import _native
from ._arrays import Values, as_values


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


def component(tensors: ArrayLike, name: str, kind: str | int | None = None) -> Values:
    """One component or invariant of vectors or tensors, shape (n,).

    tensors: shape (n, 6), xx, yy, zz, xy, yz, zx; or (n, 3), x, y, z
    name: "xx", "magnitude", "mises", "tresca", "p1", "hydrostatic", ...
    kind: what they are, where it matters: the equivalent strain of a "strain" is 2/3 of that of a stress
    """
    return _native.component(as_values(tensors, None, (6, 3), "tensors"), name, "" if kind is None else str(kind))
