#!/usr/bin/env python3
"""Measures the memory of commands on results of which one step is larger than what --memory allows.

usage: step_memory_bench.py QUILON [NODES [MEMORY...]]      (default: 1,000,000 nodes; 16M 64M)

A file of two steps, displacements and stresses, becomes a database; then commands read it and write others. Files are in
the temporary folder (TMPDIR) and go with the run. A line tells the largest memory of each command under each limit.
"""

import shutil
import sys
import tempfile
from pathlib import Path

from made_results import measure, write_results


def main():
    quilon = sys.argv[1]
    nodes = int(sys.argv[2]) if len(sys.argv) > 2 else 1_000_000
    limits = sys.argv[3:] or ["16M", "64M"]
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        results, database, output = folder / "job.frd", folder / "job.fed", folder / "out"
        write_results(results, nodes, steps=2)
        commands = {
            "import": ["import", str(results), "-o", str(output / "job.fed")],
            "derive": ["derive", str(output / "job.fed")],
            "max": ["max", str(database), "stress.mises"],
            "envelope": ["envelope", str(database), "stress.mises", "-o", str(output / "new.fed")],
            "diff": ["diff", str(database), str(database), "--brief", "-o", str(output / "new.fed")],
            "export .pvd": ["export", str(database), "stress", "-o", str(output / "new.pvd")],
            "export .csv": ["export", str(database), "stress", "-o", str(output / "new.csv")],
        }
        measure([quilon, "import", str(results), "-o", str(database), "--request", "none"])
        for case, words in commands.items():
            found = []
            for limit in limits:
                shutil.rmtree(output, ignore_errors=True)
                output.mkdir()
                if case == "derive":
                    shutil.copytree(database, output / "job.fed")
                jobs = [] if words[0] == "export" else ["--jobs", "1"]
                _, peak = measure([quilon, *words, *jobs, "--memory", limit], codes=(0, 1))  # 1: what diff finds
                found.append(f"{peak:6.0f} MiB of {limit}")
            print(f"{case:12s} " + "  ".join(found), flush=True)


if __name__ == "__main__":
    main()
