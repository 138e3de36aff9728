#!/usr/bin/env python3
"""Compares what the shared library exports with the list of what it promises, or looks for what is not ours.

usage: scripts/check_exports.py LIBRARY LIST [--update]
       scripts/check_exports.py --foreign LIBRARY...

The second form expects that libraries export nothing of the standard library and of other projects, weak or not.

LIST holds one demangled symbol a line, sorted. Instantiations of standard templates are nobody's promise and left out.
The library may need nothing at run time but the C++ and C libraries; that is checked too. --update writes the list.
"""

import re
import subprocess
import sys
from pathlib import Path

MAY_NEED = re.compile(r"^(libstdc\+\+|libm|libc|libgcc_s|ld-linux[^.]*|libasan|libubsan|libtsan)\.so")
# Mangled names of the standard's own symbols: functions, then virtual tables and type information; what sanitizers add,
# the type information of function types (_ZTIF, _ZTSF) among it.
STANDARD = re.compile(r"^_Z(?:N[KVRO]*)?(?:S[tabsiod]|9__gnu_cxx)|^_ZT[VTIS]N?K?S[tabsiod]|^_ZGVZN?S|^_Zn[wa]|^_Zd[la]"
                      r"|^_ZT[IS]D?[ox]?F|^__(?:asan|odr)|^_(?:init|fini)$")


OTHERS = re.compile(r"\b(?:std|__gnu_cxx|nanoflann|nlohmann|CLI|pybind11|H5|httplib)::")


def symbols_of(library):
    lines = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    return [line.split()[-1] for line in lines.splitlines() if line.split()[-2] in "TWVBDRu"]


def demangled(symbols):
    names = subprocess.run(["c++filt"], input="\n".join(symbols), check=True, capture_output=True, text=True).stdout
    return names.split("\n")


def foreign_symbols(library):
    for symbol, name in zip(symbols := symbols_of(library), demangled(symbols)):
        # Of ours the name says so before any argument.
        if STANDARD.match(symbol) and not symbol.startswith(("_init", "_fini")):
            yield name
        elif OTHERS.match(re.sub(r"^(?:typeinfo|vtable|guard variable)(?: name)?(?: for)? ", "", name)):
            yield name


def exported(library):
    ours = [symbol for symbol in symbols_of(library) if not STANDARD.match(symbol)]
    return sorted(set(demangled(ours)) - {""})


def needed(library):
    lines = subprocess.run(["readelf", "-dW", library], check=True, capture_output=True, text=True).stdout
    return re.findall(r"\(NEEDED\).*\[(.+)\]", lines)


def main():
    if sys.argv[1:2] == ["--foreign"] and len(sys.argv) > 2:
        found = [f"{library} exports {name}" for library in sys.argv[2:] for name in foreign_symbols(library)]
        print("\n".join(found) or f"nothing foreign in {len(sys.argv) - 2} libraries")
        return 1 if found else 0
    arguments = [a for a in sys.argv[1:] if a != "--update"]
    if len(arguments) != 2:
        print(__doc__)
        return 0 if "--help" in arguments or "-h" in arguments else 2
    library, listing = arguments[0], Path(arguments[1])
    found = exported(library)
    if "--update" in sys.argv:
        listing.write_text("\n".join(found) + "\n")
        return 0
    promised = [line for line in listing.read_text().splitlines() if line]
    extra, lost = sorted(set(found) - set(promised)), sorted(set(promised) - set(found))
    foreign = [name for name in needed(library) if not MAY_NEED.match(name)]
    for name in lost:
        print(f"promised, but not exported: {name}")
    for name in extra:
        print(f"exported, but not promised: {name}")
    for name in foreign:
        print(f"needed at run time, but not the standard library: {name}")
    if not (lost or extra or foreign):
        print(f"{len(found)} symbols, as promised")
    return 1 if lost or extra or foreign else 0


if __name__ == "__main__":
    sys.exit(main())
