#!/usr/bin/env python3
"""Compares two readers of databases that know nothing of each other but the documents of their formats.

usage: compare_database_readers.py QUILON ONF_TEXT_DUMP DATABASE_DUMP SCRIPTS FIXTURES SCRATCH
"""

import gzip
import os
import shutil
import subprocess
import sys

quilon, onf_text_dump, database_dump, scripts, fixtures, scratch = sys.argv[1:]


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout


def blocks(listing):
    """Names, then the blocks in an order that does not depend on who lists them."""
    names, *rest = (listing.rstrip("\n") + "\n").split("block\n")
    return [names] + sorted(rest)


def read_text(folder):
    return blocks(run(sys.executable, os.path.join(scripts, "onf_text_reader.py"), folder))


def read_database(folder):
    return blocks(run(sys.executable, os.path.join(scripts, "database_reader.py"), folder))


def expect_equal(what, found, expected):
    if found != expected:
        differing = next((pair for pair in zip(found, expected) if pair[0] != pair[1]), ("", ""))
        sys.exit(f"{what} differ: {len(found)} and {len(expected)} parts; the first that differs:\n"
                 f"{differing[0][:500]}\n--\n{differing[1][:500]}")
    print(f"{what}: {sum(part.count(chr(10)) for part in found)} lines are equal")


def path(name):
    return os.path.join(scratch, name)


shutil.rmtree(scratch, ignore_errors=True)
os.makedirs(scratch)

run(onf_text_dump, path("hard.onf"), path("hard.txt"))
run(database_dump, path("hard.onf"), path("hard.fed"))
expect_equal("hard values", read_database(path("hard.fed")), read_text(path("hard.onf")))

job = os.path.join(fixtures, "calculix", "a_tet", "a_tet")
for iteration in ("0", "1", "0"):
    run(quilon, "import", job + ".frd", job + ".dat", "-o", path("job.fed"), "--iteration", iteration)
run(quilon, "to-onf", path("job.fed"), path("job.onf"))
expect_equal("results of a job", read_database(path("job.fed")), read_text(path("job.onf")))

# Databases of each format version as they were written when the version was made, and what was in them.
for version in ("version-1", "version-2"):
    golden = os.path.join(fixtures, "databases", version + ".fed")
    with gzip.open(os.path.join(fixtures, "databases", version + ".txt.gz"), "rt", encoding="utf-8") as file:
        listing = blocks(file.read())
    expect_equal(version + ", read here", read_database(golden), listing)
    run(quilon, "check", golden)
    run(quilon, "to-onf", golden, path(version + ".onf"))
    expect_equal(version + ", read by the program", read_text(path(version + ".onf")),
                 [part for part in listing if part.count("\n") > 5 or part.startswith("name ")])
    # Written to, and written anew.
    shutil.copytree(golden, path(version + ".fed"))
    run(quilon, "compact", path(version + ".fed"))
    expect_equal(version + ", compacted", read_database(path(version + ".fed")), listing)
