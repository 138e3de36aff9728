#!/usr/bin/env python3
"""Measures imports of one large result file by threads and by ranks: time, and memory of the largest process.

usage: ranks_bench.py QUILON QUILON_MPI MPIRUN [MEGABYTES]      (default: 500)

The file and the databases are in the temporary folder (TMPDIR) and go with the run. Each line is the best of three; all
databases have to be the same, byte for byte.
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
FIELDS = (("DISP", 3), ("STRESS", 6))
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
        rows = {size: "".join(f" -1{node:10d}" + "".join(f"{(node * 0.37 + k) * 1e-3:12.5E}" for k in range(size)) + "\n"
                              for node in range(1, NODES + 1)) for _, size in FIELDS}
        step = 0
        while out.tell() < megabytes * 1_000_000:
            step += 1
            for name, size in FIELDS:
                out.write(f"    1PSTEP{step:26d}{step:12d}{1:12d}\n")
                out.write(f"  100CL  101{step:12.5E}{NODES:12d}{0:22d}{step:5d}{1:12d}\n -4  {name:8s}{size:5d}    1\n")
                out.write("".join(f" -5  {name[0]}{k:<7d}    1    2    1    0\n" for k in range(size)))
                out.write(rows[size] + " -3\n")
        out.write(" 9999\n")


def tree(folder):
    digest = hashlib.sha256()
    for path in sorted(Path(folder).iterdir()):
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


def main():
    quilon, quilon_mpi, mpirun = sys.argv[1:4]
    megabytes = int(sys.argv[4]) if len(sys.argv) > 4 else 500
    with tempfile.TemporaryDirectory() as folder:
        results, output = Path(folder) / "job.frd", Path(folder) / "job.fed"
        write_results(results, megabytes)
        words = ["import", str(results), "-o", str(output)]
        runs = [(f"quilon --jobs {jobs}", [quilon, *words, "--jobs", str(jobs)]) for jobs in (1, 2, 4)]
        runs += [(f"mpirun -n {ranks} quilon-mpi", [mpirun, "-n", str(ranks), quilon_mpi, *words])
                 for ranks in (1, 2, 4)]
        expected = None
        for name, command in runs:
            best = (float("inf"), 0)
            for _ in range(3):
                shutil.rmtree(output, ignore_errors=True)
                best = min(best, measure(command))
                found = tree(output)
                expected = expected or found
                if found != expected:
                    sys.exit(f"{name}: another database")
            print(f"{name:28s} {best[0]:7.2f} s {best[1]:7.0f} MiB", flush=True)


if __name__ == "__main__":
    main()
