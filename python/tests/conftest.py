"""What the tests of the package share: results of a solver, and the program beside the package."""

from __future__ import annotations

import json
import os
import pathlib
import subprocess

import pytest

import quilon

FIXTURES = pathlib.Path(__file__).parents[2] / "tests" / "fixtures" / "calculix"
PROGRAM = os.environ.get("QUILON_PROGRAM", "quilon")


def run(*arguments: object) -> subprocess.CompletedProcess[str]:
    """Runs the program."""
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, check=False)


def json_of(*arguments: object) -> object:
    """What the program prints with --json, whatever it finds."""
    done = run(*arguments, "--json")
    assert done.returncode in (0, 1), done.stderr
    return json.loads(done.stdout)


@pytest.fixture(scope="session")
def results(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """A working database of solids with several steps."""
    path = tmp_path_factory.mktemp("results") / "hex.fed"
    job = FIXTURES / "b_hex" / "b_hex"
    quilon.import_results([f"{job}.inp", f"{job}.frd", f"{job}.dat"], path)
    return path


@pytest.fixture(scope="session")
def mixed(tmp_path_factory: pytest.TempPathFactory) -> pathlib.Path:
    """A working database with elements of several types and sets."""
    path = tmp_path_factory.mktemp("results") / "mixed.fed"
    job = FIXTURES / "mixed_quadratic" / "mixed_quadratic"
    quilon.import_results([f"{job}.inp", f"{job}.frd", f"{job}.dat"], path)
    return path
