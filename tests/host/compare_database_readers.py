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
for version in ("version-1", "version-2", "version-3"):
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


def expect_alike(what, change):
    """Both readers see the same in a database that something happened to, or refuse it both."""
    folder = path(what.replace(" ", "-") + ".fed")
    shutil.copytree(os.path.join(fixtures, "databases", "version-2.fed"), folder)
    change(folder)
    text = folder[:-4] + ".onf"
    program = subprocess.run([quilon, "to-onf", folder, text], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
    reader = subprocess.run([sys.executable, os.path.join(scripts, "database_reader.py"), folder], stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, encoding="utf-8", check=False)
    if (program.returncode, reader.returncode) == (2, 1):
        print(f"{what}: refused by both: {reader.stderr.strip()}")
        return
    if program.returncode or reader.returncode:
        sys.exit(f"{what}: {program.returncode} {program.stderr} but {reader.returncode} {reader.stderr}")
    listed = [part for part in blocks(reader.stdout) if part.count("\n") > 5 or part.startswith("name ")]
    expect_equal(what, listed, read_text(text))


def edit(name, change):
    def apply(folder):
        with open(os.path.join(folder, name), "rb") as file:
            data = bytearray(file.read())
        with open(os.path.join(folder, name), "wb") as file:
            file.write(change(data))
    return apply


def flip(at):
    def change(data):
        data[at] ^= 1
        return data
    return change


def both(first, second):
    return lambda folder: (first(folder), second(folder))


# Commits whose lines were cut or damaged still count: segment 6, whose line this is, and 7, which never had one.
without_line = edit("manifest", lambda data: data[:data.rindex(b"commit")])
expect_alike("no line of a commit", without_line)
expect_alike("a line without its end", edit("manifest", lambda data: data[:-1]))
expect_alike("half a line", edit("manifest", lambda data: data[:-30]))
expect_alike("a damaged line", edit("manifest", flip(-5)))
expect_alike("bytes that are no line", edit("manifest", lambda data: data + b"\xff\xfe\n"))
# A commit that nothing but its segment tells of did not happen when a byte of that is wrong: in its header, its
# structure, its index, between them or at its end.
size = os.path.getsize(os.path.join(fixtures, "databases", "version-2.fed", "segment-000007.h5"))
for at in sorted({20, 600, size // 2, 3 * size // 4, size - 1}):
    expect_alike(f"a commit with a wrong byte {at}", edit("segment-000007.h5", flip(at)))
expect_alike("a commit that was cut", edit("segment-000007.h5", lambda data: data[:-8]))
expect_alike("a damaged commit with another behind it", both(without_line, edit("segment-000006.h5", flip(600))))
