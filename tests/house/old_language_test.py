#!/usr/bin/env python3
"""Compiles every public header alone as C++17 and expects to be told that it is too old, before anything else.

usage: old_language_test.py COMPILER ROOT

The headers of the standard library are out of reach, as those of C++20 are for a compiler that has none.
"""

import subprocess
import sys
from pathlib import Path

EXPECTED = "QuilonDbDataTools needs C++20: ask for it by -std=c++20 or /std:c++20, with GCC 12, Clang 14 or later"

compiler, root = sys.argv[1], Path(sys.argv[2])
folders = [root / "contract", root / "include", *sorted(root.glob("siblings/*/include"))]
headers = [header for folder in folders for header in sorted(folder.rglob("*.h"))]
wrong = 0
for header in headers:
    command = [compiler, "-std=c++17", "-nostdinc++", "-fsyntax-only", "-Wfatal-errors", "-x", "c++", str(header)]
    result = subprocess.run([*command, *(f"-I{folder}" for folder in folders)], text=True, stderr=subprocess.PIPE)
    first = next((line for line in result.stderr.splitlines() if "error:" in line), "nothing")
    if result.returncode == 0 or not first.endswith(EXPECTED):
        wrong += 1
        print(f"{header.relative_to(root)}: the compiler tells {first}\nexpected {EXPECTED}", file=sys.stderr)
print(f"{len(headers)} headers, {wrong} wrong")
sys.exit(1 if wrong or not headers else 0)
