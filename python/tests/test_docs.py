"""The examples of docs/python.md and README.md, run one after the other in one folder, print what stands behind them."""

from __future__ import annotations

import contextlib
import io
import os
import pathlib
import re
import shutil

import pytest

from conftest import FIXTURES

ROOT = pathlib.Path(__file__).parents[2]
EXAMPLE = re.compile(r"^```python\n(?P<code>.*?)^```\n(?:```text\n(?P<output>.*?)^```\n)?", re.MULTILINE | re.DOTALL)


@pytest.mark.parametrize("name", ["docs/python.md", "README.md"])
def test_examples_print_what_the_page_says(
    name: str, results: pathlib.Path, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    for extension in ("inp", "frd", "dat"):
        shutil.copy(FIXTURES / "b_hex" / f"b_hex.{extension}", tmp_path / f"bracket.{extension}")
    shutil.copytree(results, tmp_path / "job.fed")
    monkeypatch.chdir(tmp_path)
    page = (ROOT / name).read_text(encoding="utf-8")
    examples = list(EXAMPLE.finditer(page))
    assert len(examples) == page.count("```python") > 0
    names: dict[str, object] = {"__name__": "docs"}
    for example in examples:
        line = page.count("\n", 0, example.start()) + 2
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            exec(compile("\n" * (line - 1) + example["code"], os.fspath(ROOT / name), "exec"), names)
        if name != "README.md":  # which shows no output
            assert printed.getvalue() == (example["output"] or ""), f"{name}:{line}"
