#!/usr/bin/env python3
"""Compares quilon-mpi in several processes with quilon in one, to the byte, and breaks ranks.

usage: check_ranks.py QUILON QUILON_MPI MPIRUN FIXTURES FOLDER DEATH

DEATH is a library that kills the process that loads it at its first write into a segment.
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
FOLDER, DEATH = Path(sys.argv[5]), sys.argv[6]
RANKS = (1, 2, 3, 4, 7)  # with more ranks than blocks in some of the commands
FEW = (2, 7)  # where a command's work is divided as another's is
IN_PARTS = ["--memory", "256K"]  # an import is divided into parts of a fourth of it

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


def start(command, **environment):
    run = subprocess.run(command, capture_output=True, text=True, timeout=LIMIT, env=dict(ENVIRONMENT, **environment))
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


def compare_output(arguments, code, counts=RANKS):
    expected = one(arguments)
    expect(expected[0] == code, f"{arguments}: exit code {expected[0]}: {expected[2]}")
    for ranks in counts:
        found = many(ranks, arguments)
        expect(found[0] == code, f"{ranks} ranks, {arguments}: exit code {found[0]}: {found[2]}")
        expect(found[1] == expected[1], f"{ranks} ranks, {arguments}: another output")


def compare_files(arguments, name, code=0, counts=RANKS):
    """Runs a command that writes OUT."""

    def run(folder, runner):
        return runner([str(folder / name) if argument == "OUT" else argument for argument in arguments])

    place = fresh("one")
    expect(run(place, one)[0] == code, f"{arguments}: failed")
    expected = tree(place)
    for ranks in counts:
        place = fresh("many")
        found = run(place, lambda own: many(ranks, own))
        expect(found[0] == code, f"{ranks} ranks, {arguments}: exit code {found[0]}: {found[2]}")
        expect(tree(place) == expected, f"{ranks} ranks, {arguments}: other files")


def compare_in_place(command, database, options=(), counts=FEW):
    """Runs a command that adds to a database. Tells what it makes of it."""

    def run(runner):
        place = fresh("place") / "job.fed"
        shutil.copytree(database, place)
        found = runner([command, str(place), *options])
        expect(found[0] == 0, f"{command}: {found[2]}")
        return tree(place)

    expected = run(one)
    expect(expected != tree(database), f"{command}: nothing is added")
    for ranks in counts:
        expect(run(lambda own: many(ranks, own)) == expected, f"{ranks} ranks, {command} in place: other files")
    return expected


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
    for ranks in FEW:
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
    for words in (["ls", "x.fed"], []):
        found = many(2, words)
        expect(found[0] == 2 and len(errors_of(found[2])) == 1, f"{words}: {found}")
    found = many(2, [*here, "--jobs", "2"])
    expect(found[0] == 2 and "--jobs goes without several processes" in found[2], f"--jobs: {found[2]}")
    expect(tree(database) == before, "the database has changed")


def results_of(nodes, increments):
    """A result file with displacements and stresses at nodes."""

    def row(node, *values):
        return f" -1{node:10d}" + "".join(f"{value:12.5E}" for value in values) + "\n"

    lines = ["    1C\n", f"    2C{nodes:30d}{1:38d}\n"]
    lines += [row(7 * node, node, node / 2, -1) for node in range(1, nodes + 1)]
    lines += [" -3\n", f"    3C{1:30d}{1:38d}\n", " -1         1    3    0    1\n"]
    lines += [" -2" + "".join(f"{7 * node:10d}" for node in range(1, 5)) + "\n", " -3\n"]
    for step in range(1, increments + 1):
        for name, components in (("DISP", ("D1", "D2", "D3")), ("STRESS", ("SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"))):
            lines += [f"    1PSTEP{step:26d}{step:12d}{1:12d}\n"]
            lines += [f"  100CL  101{step:12.5E}{nodes:12d}{0:22d}{step:5d}{1:12d}\n"]
            lines += [f" -4  {name:8s}{len(components):5d}    1\n"]
            lines += [f" -5  {component:8s}    1    2    1    0\n" for component in components]
            lines += [row(7 * node, *(step * node + k for k in range(len(components)))) for node in range(1, nodes + 1)]
            lines += [" -3\n"]
    return "".join(lines) + " 9999\n"


def check_import():
    """Ranks write parts of one database."""
    place = fresh("import")
    results = place / "job.frd"
    results.write_text(results_of(300, 12), encoding="ascii")
    words = ["import", str(results), "-o", "OUT", *IN_PARTS]
    compare_files(words, "new.fed", counts=(1, 2, 3, 4, 16))
    compare_files(["import", str(results), "-o", "OUT"], "new.fed", counts=(3,))  # too small for parts

    output = place / "new.fed"
    arguments = [str(output) if word == "OUT" else word for word in words]
    expect(one(arguments)[0] == 0, "import")
    expected = tree(output)
    expect(sum(name.endswith(".h5") for name in expected) > 2, f"it is not read in parts: {list(expected)}")

    other = place / "other.fed"
    expect(one(["import", str(results), "-o", str(other)])[0] == 0, "import")
    before = tree(other)

    # A rank that comes when the others have been waiting for it.
    shutil.rmtree(output)
    launcher, pipe = start_with_late_rank(arguments)
    pipe.write_text("go\n", encoding="ascii")
    errors = end_of(launcher)
    expect(launcher.returncode == 0 and tree(output) == expected, f"a late rank: {errors}")

    for dies in (False, True):
        for target, expected_before in ((output, None), (other, before)):
            own = [str(target) if word == "OUT" else word for word in words] + ["--iteration", "1"]
            if target == output:
                shutil.rmtree(output, ignore_errors=True)
            run_with_broken_rank(own, dies)
            if expected_before is None:
                expect(not (output / "manifest").exists(), "a rank without room or life: there is a database")
                if not dies:
                    expect(not output.exists(), f"a rank without room or life: it leaves {list(tree(output))}")
                expect(one(own)[0] == 0, "a rank without room or life: the next run fails")
            else:
                expect_as_before(other, before, dies)

    # A rank that finds another file under the same name of its own folder.
    for folder, steps in (("here", 12), ("there", 13)):
        (place / folder).mkdir()
        (place / folder / "job.frd").write_text(results_of(300, steps), encoding="ascii")
    own = ["import", "job.frd", "-o", str(output), *IN_PARTS]
    shutil.rmtree(output)
    found = start([MPIRUN, "-n", "1", "-wdir", str(place / "here"), QUILON_MPI, *own, ":", "-n", "1", "-wdir",
                   str(place / "there"), QUILON_MPI, *own])
    expect(found[0] == 2 and "rank 1: finds another state" in found[2], f"another file: {found[2]}")
    expect(not output.exists(), "another file: there is a database")


def run_with_broken_rank(own, dies):
    """Rank 2 of three has no room for its first part, or is killed while it writes it."""
    script = f'LD_PRELOAD="{DEATH}"; export LD_PRELOAD' if dies else "ulimit -f 16"
    limited = ["sh", "-c", script + '; exec "$0" "$@"', QUILON_MPI, *own]
    # Messages do not go through files, which are limited, too.
    found = start([MPIRUN, "-n", "2", QUILON_MPI, *own, ":", "-n", "1", *limited], OMPI_MCA_btl="self,tcp",
                  PMIX_MCA_gds="hash")
    told = "signal 9" if dies else "error: rank 2: "
    expect(found[0] != 0 and told in found[2], f"{own[0]}, a rank without room or life: {found[0]} {found[2]}")


def expect_as_before(database, before, dies):
    expect(one(["check", str(database)])[0] == 0, "a rank without room or life: the database is not whole")
    after = tree(database)
    # Who dies leaves what the next writer takes away.
    expect(before.items() <= after.items() if dies else after == before,
           f"a rank without room or life: the database has changed: {list(after)}")


def check_difference(place, database):
    """Ranks write parts of the difference of two databases."""
    changed, other, whole = place / "changed.frd", place / "other.fed", place / "whole.fed"
    changed.write_text(results_of(600, 24).replace(" 7.00000E+00", " 7.50000E+00"), encoding="ascii")
    code, _, errors = one(["import", str(changed), "-o", str(other), "--request", "none"])
    expect(code == 0, f"import: {errors}")
    words = ["diff", str(database), str(other), "--brief", "-o"]
    compare_files([*words, "OUT", *IN_PARTS], "new.fed", 1, (1, 2, 7))
    parts = place / "parts.fed"
    expect(one([*words, str(parts), *IN_PARTS])[0] == 1 and one([*words, str(whole)])[0] == 1, "diff")
    expect(len(tree(parts)) > len(tree(whole)) + 2, f"the difference is not written in parts: {list(tree(parts))}")
    found = one(["diff", str(parts), str(whole), "--exact"])
    expect(found[0] == 0, f"the difference is another one in parts: {found[1]} {found[2]}")


def check_steps():
    """Ranks derive parts of a database, and export and integrate a step each."""
    place = fresh("steps")
    results, database = place / "job.frd", place / "job.fed"
    results.write_text(results_of(600, 24), encoding="ascii")
    code, _, errors = one(["import", str(results), "-o", str(database), "--request", "none"])
    expect(code == 0, f"import: {errors}")
    before = tree(database)
    after = compare_in_place("derive", database, IN_PARTS, (1, 2, 3, 4, 16))
    expect(sum(name.endswith(".h5") for name in after) > 2 + len(before), f"it is not derived in parts: {list(after)}")
    for dies in (False, True):
        run_with_broken_rank(["derive", str(database), *IN_PARTS], dies)
        expect_as_before(database, before, dies)
    expect(one(["derive", str(database), *IN_PARTS])[0] == 0 and tree(database) == after,
           "derive: the next run makes another database")
    check_difference(place, database)
    compare_files(["export", str(database), "displacement,stress.p1@sub=1-5", "-o", "OUT"], "new.pvd", counts=(2, 7))
    whole = fresh("whole")
    found = many(2, ["export", str(database), "displacement", "-o", str(whole / "no/such/new.pvd")])
    expect(found[0] == 2 and len(errors_of(found[2])) == 1 and not tree(whole), f"no place to export: {found[2]}")


def start_with_late_rank(arguments):
    """Two ranks at work, and one that begins when a line comes through the pipe."""
    pipe = fresh("late") / "pipe"
    os.mkfifo(pipe)
    waits = ["sh", "-c", f'read line <"{pipe}"; exec "$0" "$@"', QUILON_MPI, *arguments]
    launcher = subprocess.Popen(
        [MPIRUN, "-n", "2", QUILON_MPI, *arguments, ":", "-n", "1", *waits],
        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, env=ENVIRONMENT)
    return launcher, pipe


def end_of(launcher):
    """What the program says until its end."""
    try:
        return launcher.communicate(timeout=LIMIT)[1]
    except subprocess.TimeoutExpired:
        launcher.kill()
        return "hangs"


def check_kill(database):
    """A rank dies while the others wait for it."""
    before = tree(database)
    launcher, pipe = start_with_late_rank(["derive", str(database)])
    # Opening waits for the one that reads: by then it runs.
    with open(pipe, "w", encoding="utf-8"):
        victims = [int(path.name) for path in Path("/proc").iterdir() if path.name.isdigit() and reads(path, pipe)]
        expect(len(victims) == 1, f"ranks that wait: {victims}")
        for victim in victims:
            os.kill(victim, signal.SIGKILL)
    errors = end_of(launcher)
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
    compare_output(["max", results[0], "stress.mises"], 0, FEW)  # the launcher gives a terminal, and this is no place for it
    compare_output(["envelope", str(job), fields, "--csv"], 0, FEW)
    compare_output(["diff", str(job), str(other), "--json"], 1, FEW)
    compare_output(["diff", str(job), str(job), "--brief"], 0, FEW)
    compare_output(["check", str(job), "--json"], 0, FEW)
    compare_files(["envelope", str(job), fields, "-o", "OUT"], "new.fed", counts=FEW)
    compare_files(["diff", str(job), str(other), "-o", "OUT"], "new.onf", 1, FEW)
    compare_files(["derive", str(job), "-o", "OUT"], "new.fed", counts=FEW)
    compare_in_place("derive", job)
    # One rank does all the work of this one.
    compare_files(["export", str(job), "displacement", "-o", "OUT"], "new.csv", counts=(3,))
    forces = ["--deck", str(FIXTURES / "a_tet.inp")]
    compare_files(["forces", str(job), *forces, "-o", "OUT"], "new.fed", counts=FEW)
    compare_in_place("forces", job, forces, counts=(3,))
    compare_output(["forces", str(job), *forces, "--plane", "0.5,0,0,1,0,0", "--json"], 0, (3,))
    check_import()
    check_steps()
    check_failures(job, other)
    check_kill(job)
    print(f"{len(failures)} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
