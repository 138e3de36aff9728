#!/usr/bin/env python3
"""Checks that the conformance kit runs every function that the contract declares.

The public functions are read from the headers in contract/. A function counts as run when
  - an object of the kit refers to it: its tests call it, and CTest runs every test. The kit is compiled without
    optimisation, so that inline functions leave a symbol too. Of overloads that differ in their parameter types alone
    every one that a library exports is looked for;
  - or, for the virtual functions of databases, id maps, blocks and records, which leave no symbol where they are called:
    a program of the kit on a recording database, run here, told that it was called.
A function that no library exports is reported as well: the siblings do not supply the contract. Destructors are left
out (every object that a test makes runs one), and so is what is protected, private or deleted.

Example:
  check_conformance_coverage.py --contract contract --library libQuilonUtilities.so ... \\
      --object kit/block_conformance.cpp.o ... --run conformance_recording_result
"""

import argparse
import os
import re
import subprocess
import sys
import tempfile
from collections import namedtuple
from pathlib import Path

# What the recording database calls the classes whose virtual functions it tells of.
RECORDED = {
    "FED_Database": "db",
    "FED_IdMapsPool": "pool",
    "FED_DataBlock": "block",
    "FED_ConstDataRecord": "record",
    "FED_DataRecord": "record",
}

Function = namedtuple("Function", "name parameters is_const is_inline is_virtual text")


def count_parameters(text):
    """The number of parameters in the text between the parentheses."""
    text = text.strip()
    if text in ("", "void"):
        return 0
    depth = 0
    count = 1
    for character in text:
        depth += character in "<([{"
        depth -= character in ">)]}"
        count += character == "," and depth == 0
    return count


def closing(text, start):
    """The position of the bracket that closes the one at `start`."""
    pairs = {"(": ")", "{": "}"}
    depth = 0
    for position in range(start, len(text)):
        depth += text[position] == text[start]
        depth -= text[position] == pairs[text[start]]
        if depth == 0:
            return position
    raise ValueError(f"unbalanced {text[start]!r} in {text[start:start + 60]!r}")


def strip_header(text):
    text = re.sub(r"//[^\n]*|/\*.*?\*/", " ", text, flags=re.S)
    text = re.sub(r'"(\\.|[^"\\])*"', '""', text)
    return re.sub(r"^[ \t]*#(\\\n|[^\n])*", " ", text, flags=re.M)


def parse_function(statement, scope, is_body):
    """A function declaration, or None for anything else."""
    match = re.search(r"(operator\s*[^\s\w(]+|~?\w+)\s*\(", statement)
    if match is None or re.search(r"=(?!=)", statement[: match.start()]):
        return None  # a variable, perhaps with an initialiser
    name = re.sub(r"\s", "", match.group(1))
    opening = match.end() - 1
    end = closing(statement, opening)
    tail = statement[end + 1 :]
    if name.startswith("~") or name in ("static_assert", "alignas") or re.search(r"=\s*delete", tail):
        return None
    is_virtual = re.search(r"\bvirtual\b", statement[: match.start()]) or "override" in tail
    return Function(
        "::".join(scope + [name]),
        count_parameters(statement[opening + 1 : end]),
        re.match(r"\s*const\b", tail) is not None,
        is_body or re.search(r"=\s*default", tail) is not None,
        is_virtual is not None and is_virtual is not False,
        " ".join(statement.split()),
    )


def parse_scope(text, scope, access, functions):
    """Collects the public functions of a namespace (access None) or a class."""
    position = 0
    statement_start = 0
    while position < len(text):
        character = text[position]
        statement = text[statement_start:position].strip()
        if character == "(":
            position = closing(text, position)
        elif character == ":" and statement in ("public", "protected", "private"):
            access = statement
            statement_start = position + 1
        elif character in ";{":
            is_body = character == "{"
            end = closing(text, position) if is_body else position
            head = re.sub(r"^template\s*<[^>]*>\s*", "", statement)
            inner = re.match(r"(namespace|class|struct|enum)\b(?:\s+QUILON_\w+)?\s*([\w:]*)", head)
            if inner and is_body:
                if inner.group(1) != "enum":
                    first = {"namespace": None, "class": "private", "struct": "public"}[inner.group(1)]
                    if access in (None, "public"):
                        names = [inner.group(2)] if inner.group(2) else []
                        parse_scope(text[position + 1 : end], scope + names, first, functions)
            elif not re.match(r"(using|friend|typedef|static_assert|enum|class|struct)\b", head):
                function = parse_function(head, scope, is_body)
                if function is not None and access in (None, "public"):
                    functions.append(function)
            position = end
            statement_start = position + 1
        position += 1


def declared_functions(contract):
    functions = []
    for header in sorted(contract.rglob("*.h")):
        parse_scope(strip_header(header.read_text(encoding="utf-8")), [], None, functions)
    return functions


def key_of_symbol(symbol):
    """(qualified name, number of parameters, is const) of a demangled function; None for other symbols."""
    symbol = re.sub(r"\[abi:\w+\]", "", symbol).replace("operator<", "operator\x01").replace("operator>", "operator\x02")
    depth = 0
    name = ""
    for position, character in enumerate(symbol):
        if character == "(" and depth == 0:
            end = closing(symbol, position)
            name = name.replace("\x01", "<").replace("\x02", ">")
            is_const = symbol[end + 1 :].strip().startswith("const")
            return name, count_parameters(symbol[position + 1 : end]), is_const
        depth += character == "<"
        if depth == 0:
            name += character
        depth -= character == ">"
    return None


def symbols_of(files, options):
    """Demangled symbols by key."""
    by_key = {}
    for file in files:
        output = subprocess.run(["nm", "-C", *options, str(file)], check=True, capture_output=True, text=True).stdout
        for line in output.splitlines():
            symbol = re.sub(r"^[0-9a-fA-F ]*[A-Za-z] ", "", line)
            try:
                key = key_of_symbol(symbol)
            except ValueError:
                continue  # a name that is no function of the contract's
            if key is not None:
                by_key.setdefault(key, set()).add(symbol)
    return by_key


def recorded_calls(programs):
    """What the programs tell of virtual calls, such as "block.HasRecord"."""
    calls = set()
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder) / "calls"
        for program in programs:
            environment = dict(os.environ, QUILON_CONFORMANCE_CALLS=str(path))
            run = subprocess.run([program, "--gtest_brief=1"], env=environment, capture_output=True, text=True)
            if run.returncode != 0:
                sys.exit(f"{program} failed:\n{run.stdout}{run.stderr}")
        if path.exists():
            calls.update(path.read_text(encoding="utf-8").splitlines())
    return calls


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--contract", type=Path, required=True, help="the folder of the contract's headers")
    parser.add_argument("--library", nargs="+", default=[], help="shared libraries that define the contract")
    parser.add_argument("--object", nargs="+", default=[], help="objects of the kit")
    parser.add_argument("--run", nargs="+", default=[], help="programs of the kit on recording databases")
    arguments = parser.parse_args()

    functions = declared_functions(arguments.contract)
    exported = symbols_of(arguments.library, ["-D", "--defined-only"])
    referenced = symbols_of(arguments.object, [])
    calls = recorded_calls(arguments.run)

    problems = []
    for function in functions:
        key = (function.name, function.parameters, function.is_const)
        owner, _, member = function.name.rpartition("::")
        if function.is_virtual and owner in RECORDED and f"{RECORDED[owner]}.{member}" in calls:
            continue
        is_pure = re.search(r"=\s*0$", function.text) is not None
        wanted = exported.get(key, set())
        if function.is_inline:
            is_run = key in referenced
        elif is_pure:
            is_run = False
        elif not wanted:
            problems.append(f"no library defines: {function.name}: {function.text}")
            continue
        else:
            is_run = wanted <= referenced.get(key, set())
        if not is_run:
            problems.append(f"the kit does not run: {function.name}: {function.text}")

    for problem in problems:
        print(problem)
    if not functions:
        sys.exit("no functions found in the contract")
    if problems:
        sys.exit(f"{len(problems)} of {len(functions)} contract functions")
    print(f"the kit runs all {len(functions)} functions of the contract")


if __name__ == "__main__":
    main()
