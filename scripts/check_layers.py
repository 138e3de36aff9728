#!/usr/bin/env python3
"""Checks that includes point one way, and that a type of the host is defined once.

usage: scripts/check_layers.py [ROOT]

    src, include  see  include, contract, src (src only)
    a sibling     sees contract, its own folder, include/ of lower siblings
    host          sees include, contract, the siblings' include/, and of host the rooms below (ROOMS)
    mpi           sees what host sees, and its commands
    python        sees what host sees, without its commands and its terminal
    contract      sees contract

Inside the library, a sibling, a room of the host, mpi and python no circle of files: a header and its source count as one.

No type of host and python is defined in two files under one name, unless in unnamed namespaces: they are linked into one
program, which may then use the one where the other is meant, and no compiler or linker tells.

A name with a folder between quotes is that of a file of ours.

Nothing outside tests, bench and examples includes a test framework; the library includes the standard library alone.
Prints each wrong place as FILE:LINE and exits with 1 when there is one.
"""

import re
import sys
from pathlib import Path

SIBLINGS = ["QuilonUtilities", "QuilonOnfSpecification", "QuilonDbConnector", "QuilonOnfEngine"]  # lowest first
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
SOURCES = {".h", ".hpp", ".cpp"}

# The rooms of host/ and what each may see beside itself.
BOTTOM = {"progress", "text"}
FACTS = BOTTOM | {"kinds", "elements", "selection"}
WORK = FACTS | {"results", "calculix", "database"}
ROOMS = {
    "progress": set(),
    "text": {"progress"},
    "terminal": BOTTOM,
    "kinds": BOTTOM,
    "elements": BOTTOM,
    "selection": BOTTOM | {"kinds"},
    "results": BOTTOM | {"elements"},
    "calculix": BOTTOM | {"elements", "results"},
    "readers": BOTTOM | {"elements", "results", "calculix"},
    "database": BOTTOM | {"kinds", "selection"},
    "mesh": FACTS | {"database"},
    "import": FACTS | {"results", "readers", "database", "mesh"},
    "forces": WORK | {"mesh"},
    "matrix": WORK,
    "diff": WORK,
    "answers": WORK | {"mesh"},
    "plot": WORK | {"mesh", "matrix", "answers"},
    "export": WORK | {"mesh", "answers"},
    "report": WORK | {"mesh", "forces", "diff", "answers", "plot", "export"},
    "shards": WORK | {"mesh", "import"},
    "commands": WORK | {"terminal", "mesh", "import", "forces", "matrix", "diff", "answers", "plot", "export", "report", "shards"},
}

# What the library and the contract may take from outside: headers of the C++20 standard library.
STANDARD = re.compile(r"^[a-z_0-9]+$")
FORBIDDEN_STANDARD = {"thread", "mutex", "shared_mutex", "condition_variable", "future", "format", "source_location"}


def allowed_folders(root, layer, sibling):
    contract = root / "contract"
    if layer == "contract":
        return [contract]
    if layer == "include":
        return [root / "include", contract]
    if layer == "src":
        return [root / "src", root / "include", contract]
    if layer == "siblings":
        own = root / "siblings" / sibling
        lower = SIBLINGS[: SIBLINGS.index(sibling)]
        return [own / "src", own / "include", own / "tools", contract] + [root / "siblings" / s / "include" for s in lower]
    if layer == "host" and sibling in ROOMS:
        seen = [root / "host" / room for room in ROOMS[sibling] | {sibling}]
        return seen + [root / "include", contract] + [root / "siblings" / s / "include" for s in SIBLINGS]
    if layer == "python":
        rooms = [root / "host" / room for room in ROOMS if room not in ("commands", "terminal")]
        return rooms + [root / "python" / "src", root / "include", contract] + [root / "siblings" / s / "include" for s in SIBLINGS]
    if layer == "mpi":
        return [root / "mpi", root / "host", root / "include", contract] + [root / "siblings" / s / "include" for s in SIBLINGS]
    if layer == "host":
        return [root / "host", root / "include", contract] + [root / "siblings" / s / "include" for s in SIBLINGS]
    raise ValueError(layer)


def layer_name(layer, part):
    return f"{layer}/{part}" if layer == "host" else layer


def check_file(root, path, layer, sibling):
    folders = allowed_folders(root, layer, sibling)
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        name = match.group(2)
        where = f"{path.relative_to(root)}:{number}"
        candidates = [path.parent / name] + [folder / name for folder in folders]
        if layer in ("host", "mpi", "python"):
            candidates.append(root / "host" / name)
        inside = [c.resolve() for c in candidates if c.is_file()]
        if inside:
            if not any(str(c).startswith(str(f.resolve()) + "/") for c in inside for f in folders):
                yield f"{where}: {layer_name(layer, sibling)} may not include {name}"
            continue
        ours = [p for top in ("contract", "include", "src", "siblings", "host", "tests") for p in (root / top).rglob(name.split("/")[-1])]
        if any(str(p).endswith("/" + name) and p.is_file() for p in ours):
            yield f"{where}: {layer_name(layer, sibling)} may not include {name}"
        elif "/" in name and match.group(1) == '"':
            yield f"{where}: there is no {name}"
        elif re.match(r"(gtest|gmock|benchmark)/", name):
            yield f"{where}: {layer} includes a test framework, {name}"
        elif layer in ("contract", "include", "src") and (not STANDARD.match(name) or name in FORBIDDEN_STANDARD):
            yield f"{where}: the library depends on the standard library alone and starts no threads; found {name}"


def areas_of(root):
    """Yields the name of each part whose files may not include each other in a circle, with its folders."""
    for sibling in SIBLINGS:
        yield f"siblings/{sibling}", [root / "siblings" / sibling]
    yield "src", [root / "include", root / "src"]
    for folder in (*sorted(path for path in (root / "host").glob("*") if path.is_dir()), root / "mpi", root / "python" / "src"):
        yield str(folder.relative_to(root)), [folder]


def find_circle(root, name, folders):
    """Yields one circle of the files in the folders, where there is one, as a line."""
    files = {}
    for path in sorted(path for folder in folders for path in folder.rglob("*")):
        if path.suffix in SOURCES and path.is_file():
            files.setdefault(path.stem, []).append(path)
    places = [root / "host", *(place for folder in folders for place in (folder, folder / "include", folder / "src"))]
    includes = {
        stem: {Path(m.group(2)).stem for p in paths for m in map(INCLUDE.match, p.read_text(encoding="utf-8").splitlines())
               if m and any(place / m.group(2) in files.get(Path(m.group(2)).stem, ()) for place in (p.parent, *places))}
        for stem, paths in files.items()
    }
    # What includes nothing that is left can be on no circle.
    left = {stem: names - {stem} for stem, names in includes.items()}
    while done := [stem for stem, names in left.items() if not names & left.keys()]:
        for stem in done:
            del left[stem]
    if not left:
        return
    walk = [min(left)]
    while walk[-1] not in walk[:-1]:
        walk.append(min(left[walk[-1]] & left.keys()))
    yield f"{name}: files include each other: " + " -> ".join(walk[walk.index(walk[-1]):])


# What matters of C++ to find definitions of types: the first of these that matches stands.
TOKEN = re.compile(r"""
    //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:\\\n|[^\n])*
  | R"(?P<raw>[^(\s]*)\(.*?\)(?P=raw)" | "(?:\\.|[^"\\\n])*" | \b\d[\w.']* | '(?:\\.|[^'\\\n])+'
  | \bnamespace\s*(?P<namespace>[\w:\s]*?)\s*(?P<open>\{)
  | \b(?:class|struct|union|enum(?:\s+(?:class|struct))?)\s+(?:[A-Z][A-Z_]+\s+)?
    (?P<type>\w+(?:::\w+)*(?:<[^;{}()]*>)?)(?:\s+final)?\s*(?::(?!:)[^;{}()]*)?\{
  | (?P<brace>[{}])""", re.X | re.S | re.M)


def types_of(text):
    """Yields line and name, with its namespaces, of each type with external linkage that the text defines."""
    scopes = []  # names of namespaces; None for everything else in braces, of which nothing is looked at
    for match in TOKEN.finditer(text):
        if match["open"]:
            scopes.append(match["namespace"] or None)
        elif match["type"]:
            if None not in scopes:
                yield text.count("\n", 0, match.start()) + 1, "::".join([*scopes, match["type"]])
            scopes.append(None)
        elif match["brace"] == "{":
            scopes.append(None)
        elif match["brace"] and scopes:
            scopes.pop()


def find_namesakes(root, files):
    """Yields a line for each type that two of the files define."""
    places = {}
    for path in files:
        for line, name in types_of(path.read_text(encoding="utf-8")):
            if (first := places.setdefault(name, (path, line)))[0] != path:
                yield f"{path.relative_to(root)}:{line}: {name} is defined in {first[0].relative_to(root)}:{first[1]} as well"


def main():
    if len(sys.argv) > 1 and sys.argv[1] in ("-h", "--help"):
        print(__doc__)
        return 0
    root = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).parent.parent).resolve()
    wrong, files = [], 0
    for layer in ("contract", "include", "src", "siblings", "host", "mpi", "python"):
        for path in sorted((root / layer).rglob("*")):
            if path.suffix in SOURCES and path.is_file():
                sibling = path.relative_to(root / layer).parts[0] if layer in ("siblings", "host") else None
                wrong += check_file(root, path, layer, sibling)
                files += 1
    for name, folders in areas_of(root):
        wrong += find_circle(root, name, folders)
    program = [path for layer in ("host", "mpi", "python") for path in sorted((root / layer).rglob("*"))]
    wrong += find_namesakes(root, [path for path in program if path.suffix in SOURCES and path.is_file()])
    print("\n".join(wrong) if wrong else f"{files} files keep their layer")
    return 1 if wrong or files == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
