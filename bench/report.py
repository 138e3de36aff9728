#!/usr/bin/env python3
"""Takes the measurements of one family into performance.json and renders performance.md anew. Called by scripts/bench.sh."""

import argparse
import collections
import json
import os
import pathlib
import platform


def read_rows(path):
    return [json.loads(line) for line in path.read_text().splitlines() if line]


def cpu_name():
    try:
        lines = pathlib.Path("/proc/cpuinfo").read_text().splitlines()
    except OSError:
        lines = []
    names = [line.split(":", 1)[1].strip() for line in lines if line.startswith("model name")]
    busy = f", load average {os.getloadavg()[1]:.0f}" if hasattr(os, "getloadavg") else ""
    return f"{names[0] if names else platform.machine()}, {os.cpu_count()} cores{busy}"


def natural(case):
    """Sizes count as numbers: cases come in the order of their names, whatever order their rounds had."""
    return [(int(part), "") if part.isdigit() else (0, part) for part in case.split("/")]


def digits(value):
    return f"{value:.3g}" if value < 100 else f"{value:.0f}"


def table(rows):
    """A line per case: our least and median time, then how many times as long each peer takes."""
    cases = collections.OrderedDict()
    names = []
    for row in rows:
        cases.setdefault(row["case"], {})[row["contestant"]] = row
        if row["contestant"] not in names:
            names.append(row["contestant"])
    ours = names[0]
    lines = [f"| case | {ours}: least, median ns | " + " | ".join(names[1:]) + " |", "|---" * (len(names) + 1) + "|"]
    for case in sorted(cases, key=natural):
        contestants = cases[case]
        own = contestants.get(ours)
        cells = [f"{digits(own['min'])}, {digits(own['median'])}" if own else "-"]
        for name in names[1:]:
            peer = contestants.get(name)
            if peer is None or own is None:
                cells.append(digits(peer["min"]) + " ns" if peer else "-")
            else:
                cells.append(f"{peer['min'] / own['min']:.2f}, {peer['median'] / own['median']:.2f}")
        lines.append(f"| {case} | " + " | ".join(cells) + " |")
    memory = [f"{row['contestant']} {row['bytes']:.0f}" for row in rows if "bytes" in row and row["case"] == min((r["case"] for r in rows if "bytes" in r), key=natural)]
    if memory:
        lines += ["", "Bytes an element: " + ", ".join(memory) + "."]
    return lines


def render(results):
    lines = [
        "# Performance",
        "",
        "Written by `./scripts/bench.sh [FAMILY] [--quick]`, which measures a family anew; the numbers are in",
        "[performance.json](performance.json), too. Rounds of all contestants are taken in turn. A table gives our least and",
        "median time of the rounds, then how many times as long each peer takes, least beside least and median beside median:",
        "above 1 we are faster. A load average above the number of cores means that others worked on the machine. Each family",
        "stands in a file of `bench/families/`.",
    ]
    for name, family in sorted(results.items()):
        lines += ["", f"## {family['title']}", ""]
        if family["note"]:
            lines += [family["note"], ""]
        if family["rows"]:
            lines += table(family["rows"]) + [""]
        if family["text"]:
            lines += ["```", *family["text"], "```", ""]
        if family["missing"]:
            lines += ["Not installed, so not measured: " + ", ".join(family["missing"]) + ".", ""]
        rounds = sorted({row["rounds"] for row in family["rows"]})
        lines.append(
            f"`{name}`: {family['machine']}; {family['compiler']}"
            + (f"; rounds: {', '.join(str(r) for r in rounds)}" if rounds else "")
            + ". Commands: "
            + "; ".join(f"`{command}`" for command in family["commands"])
            + "."
        )
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    for name in ("family", "title", "note", "peers", "compiler"):
        parser.add_argument(f"--{name}", required=True)
    for name in ("commands", "rows", "text"):
        parser.add_argument(f"--{name}", type=pathlib.Path, required=True)
    given = parser.parse_args()

    given.out.mkdir(parents=True, exist_ok=True)
    store = given.out / "performance.json"
    results = json.loads(store.read_text()) if store.exists() else {}
    rows = read_rows(given.rows)
    measured = {row["contestant"] for row in rows}
    results[given.family] = {
        "title": given.title,
        "note": given.note,
        "machine": cpu_name(),
        "compiler": given.compiler,
        "commands": given.commands.read_text().splitlines(),
        "missing": [peer for peer in given.peers.split() if peer not in measured],
        "rows": rows,
        "text": given.text.read_text().splitlines(),
    }
    store.write_text(json.dumps(results, indent=1, sort_keys=True) + "\n")
    (given.out / "performance.md").write_text(render(results))


if __name__ == "__main__":
    main()
