#!/usr/bin/env python3
"""Measures commands that threads and ranks share: time, and memory of the largest process.

usage: ranks_bench.py QUILON QUILON_MPI MPIRUN [MEGABYTES [COMMAND...]]

cases: import      one large result file of so many megabytes (default: 500) becomes a database
       derive      principal values of its stresses are added to a database of the file
       export      displacements and stresses become files for a viewer, one a step
       envelope    largest and smallest stresses of all steps become a database
       diff        the difference of two databases becomes one

The file and the databases are in the temporary folder (TMPDIR) and go with the run. Each line is the best of three; what
is written has to be the same, byte for byte.
"""

import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

NODES = 100_000
FIELDS = (("DISP", ("D1", "D2", "D3")), ("STRESS", ("SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX")))
ENVIRONMENT = dict(os.environ, OMPI_ALLOW_RUN_AS_ROOT="1", OMPI_ALLOW_RUN_AS_ROOT_CONFIRM="1",
                   OMPI_MCA_rmaps_base_oversubscribe="1")


def write_results(path, megabytes):
    """One step of displacements and stresses after the other, until the file is large enough."""
    with open(path, "w", encoding="ascii") as out:
        out.write(f"    1C\n    2C{NODES:30d}{1:38d}\n")
        for node in range(1, NODES + 1):
            out.write(f" -1{node:10d}{node:12.5E}{node / 2:12.5E}{-1:12.5E}\n")
        out.write(f" -3\n    3C{1:30d}{1:38d}\n -1         1    3    0    1\n")
        out.write(" -2         1         2         3         4\n -3\n")
        rows = {name: "".join(f" -1{node:10d}" + "".join(f"{(node * 0.37 + k) * 1e-3:12.5E}"
                                                         for k in range(len(components))) + "\n"
                              for node in range(1, NODES + 1)) for name, components in FIELDS}
        step = 0
        while out.tell() < megabytes * 1_000_000:
            step += 1
            for name, components in FIELDS:
                out.write(f"    1PSTEP{step:26d}{step:12d}{1:12d}\n")
                out.write(f"  100CL  101{step:12.5E}{NODES:12d}{0:22d}{step:5d}{1:12d}\n -4  {name:8s}"
                          f"{len(components):5d}    1\n")
                out.write("".join(f" -5  {component:8s}    1    2    1    0\n" for component in components))
                out.write(rows[name] + " -3\n")
        out.write(" 9999\n")


def tree(folder):
    digest = hashlib.sha256()
    for path in sorted(Path(folder).rglob("*")):
        if path.is_file():
            digest.update(path.name.encode() + path.read_bytes())
    return digest.hexdigest()


def measure(command):
    """Seconds, and MiB of the largest process."""
    begin = time.monotonic()
    child = subprocess.Popen(command, env=ENVIRONMENT, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(child.pid, 0)
    if status != 0:
        sys.exit(f"{command} fails")
    return time.monotonic() - begin, usage.ru_maxrss / 1024


def prepare(quilon, folder, megabytes, cases):
    """The file, and databases of it where a case needs them."""
    results, database, other = folder / "job.frd", folder / "job.fed", folder / "other.fed"
    write_results(results, megabytes)
    if set(cases) - {"import"}:
        measure([quilon, "import", str(results), "-o", str(database), "--request", "none"])
    if "diff" in cases:
        shutil.copytree(database, other)
    return results, database, other


def words_of(case, folder, files):
    """The command line, and what it writes."""
    results, database, other = map(str, files)
    if case == "import":
        return ["import", results, "-o", str(folder / "out/job.fed")]
    if case == "derive":
        return ["derive", str(folder / "out/job.fed"), "--request", "stress-principal"]
    if case == "export":
        return ["export", database, "-o", str(folder / "out/job.pvd")]
    if case == "envelope":
        return ["envelope", database, "stress.mises,stress", "-o", str(folder / "out/job.fed")]
    return ["diff", database, other, "--brief", "-o", str(folder / "out/job.fed")]


def main():
    quilon, quilon_mpi, mpirun = sys.argv[1:4]
    megabytes = int(sys.argv[4]) if len(sys.argv) > 4 else 500
    cases = sys.argv[5:] or ["import", "derive", "export", "envelope", "diff"]
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        files = prepare(quilon, folder, megabytes, cases)
        for case in cases:
            words = words_of(case, folder, files)
            runs = []
            if case not in ("export",):  # which threads do not share
                runs += [(f"quilon --jobs {jobs}", [quilon, *words, "--jobs", str(jobs)]) for jobs in (1, 2, 4)]
            runs += [(f"mpirun -n {ranks} quilon-mpi", [mpirun, "-n", str(ranks), quilon_mpi, *words])
                     for ranks in (1, 2, 4)]
            expected = None
            for run, command in runs:
                best = (float("inf"), 0)
                for _ in range(3):
                    shutil.rmtree(folder / "out", ignore_errors=True)
                    (folder / "out").mkdir()
                    if case == "derive":
                        shutil.copytree(files[1], folder / "out/job.fed")
                    best = min(best, measure(command))
                    found = tree(folder / "out")
                    expected = expected or found
                    if found != expected:
                        sys.exit(f"{case}, {run}: another output")
                print(f"{case:10s} {run:28s} {best[0]:7.2f} s {best[1]:7.0f} MiB", flush=True)


if __name__ == "__main__":
    main()
