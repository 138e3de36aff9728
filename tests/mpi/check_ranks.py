#!/usr/bin/env python3
"""Compares quilon-mpi in several processes with quilon in one, to the byte, and breaks ranks.

usage: check_ranks.py QUILON QUILON_MPI MPIRUN FIXTURES FOLDER
"""

import hashlib
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

QUILON, QUILON_MPI, MPIRUN = sys.argv[1:4]
FIXTURES = Path(sys.argv[4]) / "calculix/a_tet"
FOLDER = Path(sys.argv[5])
RANKS = (1, 2, 3, 4, 7)  # with more ranks than blocks in some of the commands

ENVIRONMENT = dict(
    os.environ,
    OMPI_ALLOW_RUN_AS_ROOT="1",
    OMPI_ALLOW_RUN_AS_ROOT_CONFIRM="1",
    OMPI_MCA_rmaps_base_oversubscribe="1",
    OMPI_MCA_btl="self,vader",
    OMPI_MCA_btl_vader_single_copy_mechanism="none",
    OMPI_MCA_mpi_yield_when_idle="1",
    TMPDIR="/tmp",  # names of sockets are short
)
LIMIT = 120  # seconds after which a run hangs

failures = []


def expect(holds, what):
    if not holds:
        failures.append(what)
        print("FAILED:", what, flush=True)


def one(arguments):
    run = subprocess.run([QUILON, *arguments], capture_output=True, text=True, timeout=LIMIT)
    return run.returncode, run.stdout, run.stderr


def many(ranks, arguments):
    return start([MPIRUN, "-n", str(ranks), QUILON_MPI, *arguments])


def start(command):
    run = subprocess.run(command, capture_output=True, text=True, timeout=LIMIT, env=ENVIRONMENT)
    return run.returncode, run.stdout, run.stderr


def tree(folder):
    """Names and hashes of all files."""
    return {
        str(path.relative_to(folder)): hashlib.sha256(path.read_bytes()).hexdigest()
        for path in sorted(Path(folder).rglob("*"))
        if path.is_file()
    }


def fresh(name):
    folder = FOLDER / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    return folder


def errors_of(text):
    """What the program says itself; the launcher tells of exit codes in its own words."""
    return [line for line in text.splitlines() if line.startswith(("quilon", "note"))]


def compare_output(arguments, code):
    expected = one(arguments)
    expect(expected[0] == code, f"{arguments}: exit code {expected[0]}: {expected[2]}")
    for ranks in RANKS:
        found = many(ranks, arguments)
        expect(found[0] == code, f"{ranks} ranks, {arguments}: exit code {found[0]}: {found[2]}")
        expect(found[1] == expected[1], f"{ranks} ranks, {arguments}: another output")


def compare_files(arguments, name, code=0):
    """Runs a command that writes OUT."""

    def run(folder, runner):
        return runner([str(folder / name) if argument == "OUT" else argument for argument in arguments])

    place = fresh("one")
    expect(run(place, one)[0] == code, f"{arguments}: failed")
    expected = tree(place)
    for ranks in RANKS:
        place = fresh("many")
        found = run(place, lambda own: many(ranks, own))
        expect(found[0] == code, f"{ranks} ranks, {arguments}: exit code {found[0]}: {found[2]}")
        expect(tree(place) == expected, f"{ranks} ranks, {arguments}: other files")


def compare_in_place(database):
    def derive(runner):
        place = fresh("place") / "job.fed"
        shutil.copytree(database, place)
        found = runner(["derive", str(place)])
        expect(found[0] == 0, f"derive: {found[2]}")
        return tree(place)

    expected = derive(one)
    expect(expected != tree(database), "derive: nothing is derived")
    for ranks in RANKS:
        expect(derive(lambda own: many(ranks, own)) == expected, f"{ranks} ranks, derive in place: other files")


def check_failures(database, other):
    before = tree(database)
    place = fresh("failures")

    # The last bytes of a segment's values: every rank may be the one that meets them.
    broken = place / "broken.fed"
    shutil.copytree(database, broken)
    segment = next(path for path in sorted(broken.iterdir()) if path.suffix == ".h5")
    values = bytearray(segment.read_bytes())
    for at in range(len(values) // 3, len(values) // 2):
        values[at] ^= 1
    segment.write_bytes(values)
    damaged = tree(broken)
    cause = one(["derive", str(broken)])
    expect(cause[0] == 2, f"derive of a damaged database: exit code {cause[0]}")
    words = cause[2].split("error: ", 1)[-1].strip()
    for ranks in RANKS:
        found = many(ranks, ["derive", str(broken)])
        expect(found[0] == 2, f"{ranks} ranks, damaged database: exit code {found[0]}")
        expect(words in found[2], f"{ranks} ranks, damaged database: {found[2]}, expected {words}")
        expect(tree(broken) == damaged, f"{ranks} ranks, damaged database: changed")

    # One rank alone fails before the work begins, the one that leads or another.
    here, nowhere = ["max", str(database), "stress"], ["max", str(place / "none.fed"), "stress"]
    found = start([MPIRUN, "-n", "2", QUILON_MPI, *here, ":", "-n", "1", QUILON_MPI, *nowhere])
    expect(found[0] == 2, f"a rank without a database: exit code {found[0]}")
    expect(len(errors_of(found[2])) == 1 and "rank 2: " in found[2] and "none.fed: no such file" in found[2],
           f"a rank without a database: {found[2]}")
    found = start([MPIRUN, "-n", "1", QUILON_MPI, *nowhere, ":", "-n", "2", QUILON_MPI, *here])
    expect(found[0] == 2 and len(errors_of(found[2])) == 1 and "none.fed: no such file" in found[2],
           f"the first rank without a database: {found[0]} {found[2]}")

    # All of them fail in the same way: it is told once.
    found = many(3, nowhere)
    expect(found[0] == 2 and len(errors_of(found[2])) == 1 and "error: rank" not in found[2],
           f"no database: {found[2]}")

    # A rank that finds another state of the database.
    found = start([MPIRUN, "-n", "1", QUILON_MPI, *here, ":", "-n", "1", QUILON_MPI, "max", str(other), "stress"])
    expect(found[0] == 2 and "rank 1: finds another state" in found[2], f"another state: {found[2]}")

    found = many(2, ["derive", str(database), "-o", str(place / "no/such/new.fed")])
    expect(found[0] == 2 and len(errors_of(found[2])) == 1, f"no place to write: {found[2]}")
    for words in (["import", "x.frd"], []):
        found = many(2, words)
        expect(found[0] == 2 and len(errors_of(found[2])) == 1, f"{words}: {found}")
    found = many(2, [*here, "--jobs", "2"])
    expect(found[0] == 2 and "--jobs goes without several processes" in found[2], f"--jobs: {found[2]}")
    expect(tree(database) == before, "the database has changed")


def check_kill(database):
    """A rank dies while the others wait for it."""
    before = tree(database)
    pipe = fresh("kill") / "pipe"
    os.mkfifo(pipe)
    waits = ["sh", "-c", f'read line <"{pipe}"; exec "$0" "$@"', QUILON_MPI, "derive", str(database)]
    launcher = subprocess.Popen(
        [MPIRUN, "-n", "2", QUILON_MPI, "derive", str(database), ":", "-n", "1", *waits],
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=ENVIRONMENT)
    # Opening waits for the one that reads: by then it runs.
    with open(pipe, "w", encoding="utf-8"):
        victims = [int(path.name) for path in Path("/proc").iterdir() if path.name.isdigit() and reads(path, pipe)]
        expect(len(victims) == 1, f"ranks that wait: {victims}")
        for victim in victims:
            os.kill(victim, signal.SIGKILL)
    try:
        errors = launcher.communicate(timeout=LIMIT)[1]
    except subprocess.TimeoutExpired:
        launcher.kill()
        errors = "hangs"
    expect(launcher.returncode != 0, "a killed rank: exit code 0")
    expect("rank 2" in errors and "signal 9" in errors, f"a killed rank: {errors}")
    expect(tree(database) == before, "a killed rank: the database has changed")
    expect(one(["check", str(database)])[0] == 0, "a killed rank: the database is not whole")


def reads(process, pipe):
    try:
        words = (process / "cmdline").read_bytes().split(b"\0")
    except OSError:
        return False  # it has ended
    return words[0] == b"sh" and any(str(pipe).encode() in word for word in words)


def main():
    place = fresh("base")
    job, other = place / "job.fed", place / "other.fed"
    results = [str(FIXTURES / "a_tet.frd"), str(FIXTURES / "a_tet.dat")]
    for files, database in ((results, job), (results[:1], other)):
        code, _, errors = one(["import", *files, "-o", str(database), "--request", "none"])
        expect(code == 0, f"import: {errors}")
    code, _, errors = one(["derive", str(other), "--request", "stress-principal"])
    expect(code == 0, f"derive: {errors}")

    fields = "stress,displacement.magnitude,element-stress.mises"
    compare_output(["max", str(job), fields, "--json", "--per", "step", "--head", "3"], 0)
    compare_output(["max", results[0], "stress.mises"], 0)  # the launcher gives a terminal, and this is no place for it
    compare_output(["envelope", str(job), fields, "--csv"], 0)
    compare_output(["diff", str(job), str(other), "--json"], 1)
    compare_output(["diff", str(job), str(job), "--brief"], 0)
    compare_output(["check", str(job), "--json"], 0)
    compare_files(["envelope", str(job), fields, "-o", "OUT"], "new.fed")
    compare_files(["diff", str(job), str(other), "-o", "OUT"], "new.onf", 1)
    compare_files(["derive", str(job), "-o", "OUT"], "new.fed")
    compare_in_place(job)
    check_failures(job, other)
    check_kill(job)
    print(f"{len(failures)} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
