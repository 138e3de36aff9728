"""Checks of arguments by what their annotations promise, so that each wrong one is told by name."""

from __future__ import annotations

import collections.abc as abc
import functools
import inspect
import os
from typing import Any, Callable, TypeVar, cast

import numpy as np

from ._errors import ArgumentError

_Function = TypeVar("_Function", bound=Callable[..., Any])


def _is_integer(value: object) -> bool:
    return isinstance(value, (int, np.integer)) and not isinstance(value, bool) and -(2**31) <= int(value) < 2**31


def _is_number(value: object) -> bool:
    return isinstance(value, (int, float, np.integer, np.floating)) and not isinstance(value, bool)


def is_path(value: object) -> bool:
    return isinstance(value, (str, os.PathLike))


def _are(check: Callable[[object], bool]) -> Callable[[object], bool]:
    def are(value: object) -> bool:
        if isinstance(value, np.ndarray):
            return value.ndim == 1 and all(map(check, value))
        return isinstance(value, (list, tuple, range)) and all(map(check, value))

    return are


# By part of an annotation: what is expected, and whether a value is that. Annotations of arrays are not here: those of
# _arrays tell what is wrong with them.
_KINDS: dict[str, tuple[str, Callable[[object], bool]]] = {
    "str": ("text", lambda value: isinstance(value, str)),
    "bool": ("True or False", lambda value: isinstance(value, (bool, np.bool_))),
    "int": ("an integer of 32 bits", _is_integer),
    "float": ("a number", _is_number),
    "None": ("None", lambda value: value is None),
    "PathLike": ("a path", is_path),
    "Progress": ("a function of (phase, done, total)", callable),
    "abc.Sequence[str]": ("a list of texts", _are(lambda value: isinstance(value, str))),
    "abc.Sequence[int]": ("a list of integers", _are(_is_integer)),
    "abc.Sequence[PathLike]": ("a list of paths", _are(is_path)),
    "abc.Mapping[str, abc.Mapping[int | str, float]]": ("a dict of dicts", lambda value: isinstance(value, abc.Mapping)),
}


def name_kind(annotation: str, expected: str, check: Callable[[object], bool]) -> None:
    """Lets a module say what an annotation of a type of its own promises, before the first function that has it."""
    _KINDS[annotation] = (expected, check)


def _parts(annotation: str) -> list[str]:
    """The alternatives of an annotation, "str | None"."""
    parts, depth = [""], 0
    for sign in annotation:
        depth += {"[": 1, "]": -1}.get(sign, 0)
        if sign == "|" and depth == 0:
            parts.append("")
        else:
            parts[-1] += sign
    return [part.strip() for part in parts]


def _describe(value: object) -> str:
    if isinstance(value, np.ndarray):
        return f"{value.dtype} of shape {value.shape}"
    if isinstance(value, (int, float, str)):
        return f"{value!r:.60}"
    if isinstance(value, (list, tuple)):
        return f"{type(value).__name__} {value!r:.60}"
    return type(value).__name__


def checked(function: _Function) -> _Function:
    """The function, which raises ArgumentError for an argument that is not what its annotation says."""
    rules: dict[str, list[tuple[str, Callable[[object], bool]]]] = {}
    names = []
    for name, parameter in inspect.signature(function).parameters.items():
        if parameter.kind not in (parameter.VAR_KEYWORD, parameter.VAR_POSITIONAL):
            names.append(name)
            parts = _parts(str(parameter.annotation))
            if all(part in _KINDS for part in parts):
                rules[name] = [_KINDS[part] for part in parts]

    @functools.wraps(function)
    def wrapper(*arguments: Any, **keywords: Any) -> Any:
        for given in (zip(names, arguments), keywords.items()):
            for name, value in given:
                kinds = rules.get(name)
                if kinds is not None and not any(check(value) for _, check in kinds):
                    expected = " or ".join(text for text, _ in kinds if text != "None")
                    raise ArgumentError(f"{name}: found {_describe(value)}, expected {expected}")
        return function(*arguments, **keywords)

    return cast(_Function, wrapper)
