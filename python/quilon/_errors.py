"""The exceptions of the package."""

from __future__ import annotations

import os
import re

_PLACE = re.compile(r"(?s)(?P<file>[^\n]+?):(?P<line>\d+): ")
# What the package calls an option of the program where the name alone does not say it.
_ARGUMENTS = {
    "--from": "start",
    "--keep-others": "existing='keep'",
    "--material": "materials",
    "--replace": "existing='replace'",
    "--set": "sets",
    "--through": "places",
    "--to": "end",
}
_SAME = ("axes", "box", "deck", "groups", "head", "ids", "iteration", "linearize", "near", "per", "points", "request",
         "rule", "steps", "strict")  # fmt: skip
_ARGUMENTS |= {f"--{name}": name for name in _SAME}
_OPTION = re.compile(r"(?<![\w/.-])--[a-z]+(?:-[a-z]+)*(?![\w/.-])")
_EXTENSIONS = (".fed", ".onf", ".frd", ".dat", ".inp", ".sta", ".sti", ".mas", ".dof")


class Error(Exception):
    """Something is wrong with the data or with what was asked.

    The text says what was found and what was expected, as the program does.

    Attributes:
        file: path of the file or database that is meant, None where none is
        line: line in the file, from 1; None where none is
    """

    file: str | None
    line: int | None

    def __init__(self, message: str = "", file: str | None = None, line: int | None = None) -> None:
        super().__init__(message)
        self.file = file
        self.line = line


class ArgumentError(Error, ValueError, TypeError):
    """An argument has another shape, type or value than expected."""


class MissingPackageError(Error, ImportError):
    """What was asked needs a package that is not installed."""


def from_message(message: str) -> Error:
    """The exception of a message of the program: options become arguments, its place file and line.

    A place stands at the begin: `FILE:LINE: ` or `FILE: `.
    """
    message = _OPTION.sub(lambda option: _ARGUMENTS.get(option[0], option[0]), message)
    match = _PLACE.match(message)
    if match is not None:
        return Error(message, match["file"], int(match["line"]))
    head, colon, rest = message.partition(": ")
    is_path = head.lower().rstrip("/").endswith(_EXTENSIONS) or rest.startswith("no such file") or os.path.lexists(head)
    return Error(message, head if colon and is_path else None)
