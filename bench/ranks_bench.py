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
import sys
import tempfile
from pathlib import Path

from made_results import measure, write_results

NODES = 100_000
ENVIRONMENT = dict(os.environ, OMPI_ALLOW_RUN_AS_ROOT="1", OMPI_ALLOW_RUN_AS_ROOT_CONFIRM="1",
                   OMPI_MCA_rmaps_base_oversubscribe="1")


def tree(folder):
    digest = hashlib.sha256()
    for path in sorted(Path(folder).rglob("*")):
        if path.is_file():
            digest.update(path.name.encode() + path.read_bytes())
    return digest.hexdigest()


def prepare(quilon, folder, megabytes, cases):
    """The file, and databases of it where a case needs them."""
    results, database, other = folder / "job.frd", folder / "job.fed", folder / "other.fed"
    write_results(results, NODES, megabytes=megabytes)
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
                    best = min(best, measure(command, ENVIRONMENT))
                    found = tree(folder / "out")
                    expected = expected or found
                    if found != expected:
                        sys.exit(f"{case}, {run}: another output")
                print(f"{case:10s} {run:28s} {best[0]:7.2f} s {best[1]:7.0f} MiB", flush=True)


if __name__ == "__main__":
    main()
