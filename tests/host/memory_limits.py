#!/usr/bin/env python3
"""Runs quilon under limits of its address space: it succeeds, or says why not, and leaves a whole database.

usage: memory_limits.py QUILON FIXTURES FOLDER TRIES

Every try imports a result or compacts a database. The limits are spread evenly over all at which the program starts but
memory runs out somewhere.
"""

import os
import resource
import shutil
import subprocess
import sys

MIB = 1 << 20
LOADER = "error while loading shared libraries"


def run(arguments, limit=None):
    def set_limit():
        resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
    return subprocess.run(arguments, preexec_fn=set_limit if limit else None, capture_output=True, text=True,
                          errors="replace", check=False)


def main():
    quilon, fixtures, folder, tries = sys.argv[1], sys.argv[2], sys.argv[3], int(sys.argv[4])
    job = os.path.join(fixtures, "calculix", "b_hex", "b_hex")
    source = [path for path in (job + end for end in (".inp", ".frd", ".dat")) if os.path.exists(path)]
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    base, trial = os.path.join(folder, "base.fed"), os.path.join(folder, "trial.fed")
    made = run([quilon, "import", *source, "-o", base])
    if made.returncode != 0:
        sys.exit(f"the import fails without a limit: {made.stderr}")
    for step in range(3):
        run([quilon, "derive", base])
    work = {"import": [quilon, "import", *source, "-o", trial], "compact": [quilon, "compact", trial],
            "derive": [quilon, "derive", trial]}

    def attempt(name, limit):
        shutil.rmtree(trial, ignore_errors=True)
        if name != "import":
            shutil.copytree(base, trial)
        return run(work[name], limit)

    def find_least(call):
        low, high = 4 * MIB, 4096 * MIB
        while high - low > 4096:
            middle = (low + high) // 2
            if call(middle).returncode == 0:
                high = middle
            else:
                low = middle
        return high

    failures, counts = [], {}
    starts = find_least(lambda limit: run([quilon, "--version"], limit)) - MIB // 4
    for name in work:
        suffices = find_least(lambda limit: attempt(name, limit)) + MIB // 4
        print(f"{name}: from {starts} to {suffices} bytes")
        share = tries // len(work)
        for number in range(share):
            limit = starts + (suffices - starts) * number // share
            done = attempt(name, limit)
            code = done.returncode
            counts[name, code] = counts.get((name, code), 0) + 1
            is_clear = code == 0 or (code == 2 and done.stderr.startswith("quilon: error: ")) or \
                (code == 127 and LOADER in done.stderr)
            if not is_clear:
                failures.append(f"{name} under {limit} bytes: code {code}: {done.stderr.strip()[-200:]}")
            elif os.path.exists(os.path.join(trial, "manifest")) and run([quilon, "check", trial]).returncode != 0:
                failures.append(f"{name} under {limit} bytes: the database is damaged")
    for (name, code), count in sorted(counts.items()):
        print(f"{name}: {count} times code {code}")
    print("\n".join(failures))
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    if len(sys.argv) != 5:
        print(__doc__.strip())
        sys.exit(2)
    main()
