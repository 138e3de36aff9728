#!/usr/bin/env python3
"""Measures the memory of commands on results of which one step is larger than what --memory allows.

usage: step_memory_bench.py QUILON [NODES [MEMORY...]]      (default: 1,000,000 nodes; 16M 64M)

A file of two steps, displacements and stresses, becomes a database; then commands read it and write others. Files are in
the temporary folder (TMPDIR) and go with the run. A line tells the largest memory of each command under each limit.
"""

import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

FIELDS = (("DISP", ("D1", "D2", "D3")), ("STRESS", ("SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX")))


def write_results(path, nodes):
    with open(path, "w", encoding="ascii") as out:
        out.write(f"    1C\n    2C{nodes:30d}{1:38d}\n")
        for node in range(1, nodes + 1):
            out.write(f" -1{node:10d}{node:12.5E}{node / 2:12.5E}{-1:12.5E}\n")
        out.write(f" -3\n    3C{1:30d}{1:38d}\n -1         1    3    0    1\n")
        out.write(" -2         1         2         3         4\n -3\n")
        for step in (1, 2):
            for name, components in FIELDS:
                out.write(f"    1PSTEP{step:26d}{step:12d}{1:12d}\n  100CL  101{step:12.5E}{nodes:12d}{0:22d}"
                          f"{step:5d}{1:12d}\n -4  {name:8s}{len(components):5d}    1\n")
                out.write("".join(f" -5  {component:8s}    1    2    1    0\n" for component in components))
                for node in range(1, nodes + 1):
                    out.write(f" -1{node:10d}" + "".join(f"{node * 1e-3 + k:12.5E}" for k in range(len(components)))
                              + "\n")
                out.write(" -3\n")
        out.write(" 9999\n")


def measure(command):
    """MiB of the process."""
    child = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    errors = child.stderr.read()
    _, status, usage = os.wait4(child.pid, 0)
    if os.waitstatus_to_exitcode(status) not in (0, 1):  # 1: what diff finds
        sys.exit(f"{command} fails: {errors.decode()}")
    return usage.ru_maxrss / 1024


def main():
    quilon = sys.argv[1]
    nodes = int(sys.argv[2]) if len(sys.argv) > 2 else 1_000_000
    limits = sys.argv[3:] or ["16M", "64M"]
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        results, database, output = folder / "job.frd", folder / "job.fed", folder / "out"
        write_results(results, nodes)
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
                found.append(f"{measure([quilon, *words, *jobs, '--memory', limit]):6.0f} MiB of {limit}")
            print(f"{case:12s} " + "  ".join(found), flush=True)


if __name__ == "__main__":
    main()
