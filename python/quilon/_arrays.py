"""Arrays as callers give them, checked and in the form that the native functions take."""

from __future__ import annotations

from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._errors import ArgumentError

Ids = NDArray[np.int32]
Values = NDArray[np.float64]

_LEAST, _MOST = -(2**31), 2**31 - 1


def describe(array: NDArray[Any]) -> str:
    """`float64 of shape (3, 6)`, for messages."""
    return f"{array.dtype} of shape {array.shape}"


def as_array(value: ArrayLike, what: str) -> NDArray[Any]:
    try:
        return np.asarray(value)
    except (TypeError, ValueError) as error:
        raise ArgumentError(f"{what}: {error}, expected an array") from None


def as_ids(value: ArrayLike, what: str = "ids") -> Ids:
    """Integers of 32 bits, shape (n,). A single one is an array of one."""
    array = np.atleast_1d(as_array(value, what))
    if array.size == 0 and array.ndim == 1:
        return np.zeros(0, np.int32)
    if array.ndim != 1 or array.dtype.kind not in "iu":
        raise ArgumentError(f"{what}: found {describe(array)}, expected integers of shape (n,)")
    if array.dtype != np.int32:
        least, most = int(array.min()), int(array.max())
        if least < _LEAST or most > _MOST:
            raise ArgumentError(f"{what}: found {least if least < _LEAST else most}, expected {_LEAST} to {_MOST}")
    return np.ascontiguousarray(array, np.int32)


def as_values(value: ArrayLike, rows: int | None, widths: tuple[int, ...], what: str = "values") -> Values:
    """Doubles of shape (rows, width), one of the widths. Width 1 may come as shape (rows,), one row as (width,).

    rows of None is any number, widths of () any width.
    """
    array = as_array(value, what)
    kind, shape = array.dtype.kind, array.shape
    if array.ndim == 0 and 1 in widths:
        array = array.reshape(1, 1)
    elif array.ndim == 1 and (not widths or 1 in widths) and rows in (None, array.size):
        array = array.reshape(-1, 1)
    elif array.ndim == 1 and rows in (None, 1) and array.size in widths:
        array = array.reshape(1, -1)
    elif array.size == 0 and widths and rows in (None, 0):
        array = array.reshape(0, widths[-1])
    right = array.ndim == 2 and rows in (None, array.shape[0]) and (not widths or array.shape[1] in widths)
    if kind not in "fiub" or not right:
        columns = " or ".join(str(width) for width in widths) or "components"
        raise ArgumentError(
            f"{what}: found {array.dtype} of shape {shape}, expected numbers of shape ({'n' if rows is None else rows}, {columns})"
        )
    return np.ascontiguousarray(array, np.float64)
