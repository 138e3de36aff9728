#!/usr/bin/env python3
"""Lets writers, readers, compactions and kills loose on one working database and one ONF folder.

usage: soak.py QUILON FIXTURES FOLDER [--seconds N] [--seed S]

Writers import iterations, take them out, compact and publish ONF text, two at a time; every third of them is killed at
some moment. Readers list meanwhile. Whatever they see, every iteration is there as a whole, with the values of an
undisturbed import, or not at all; a reader of the folder may be refused what has changed since it began. In the end the database is checked byte by byte. FOLDER is made anew, and stays when
something was wrong. Exit code 1 then.
"""

import argparse
import json
import os
import random
import shutil
import subprocess
import sys
import threading
import time

ITERATIONS = (1, 2, 3)


class Soak:
    def __init__(self, arguments):
        self.quilon = os.path.abspath(arguments.quilon)
        job = os.path.join(os.path.abspath(arguments.fixtures), "calculix", "a_tet", "a_tet")
        self.files = [job + ".frd", job + ".dat"]
        self.folder = os.path.abspath(arguments.folder)
        self.database = os.path.join(self.folder, "soak.fed")
        self.text = os.path.join(self.folder, "soak.onf")
        self.seconds = arguments.seconds
        self.end = 0.0
        self.seed = arguments.seed
        self.counts = {}
        self.wrong = []
        self.lock = threading.Lock()

    def run(self, *words, kill_after=None):
        """@return exit code (None: killed), output, errors"""
        process = subprocess.Popen([self.quilon, *words], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   errors="replace", cwd=self.folder)
        try:
            output, errors = process.communicate(timeout=kill_after)
        except subprocess.TimeoutExpired:
            process.kill()
            process.communicate()
            return None, "", ""
        return process.returncode, output, errors

    def count(self, what):
        with self.lock:
            self.counts[what] = self.counts.get(what, 0) + 1

    def fail(self, text):
        with self.lock:
            self.wrong.append(text)
        self.end = 0.0

    def blocks_of(self, listing):
        """What each iteration holds, without its number."""
        found = {}
        for block in json.loads(listing):
            iteration = block.pop("it")
            block["block"] = block["block"].replace(f"it={iteration}", "it=")
            found.setdefault(iteration, []).append(json.dumps(block, sort_keys=True))
        return {iteration: sorted(blocks) for iteration, blocks in found.items()}

    def list(self, path):
        code, output, errors = self.run("ls", path, "--json")
        # Blocks of a folder are read as they are asked for; one that is another by then is refused.
        if code == 2 and path == self.text and "has changed since the database was opened" in errors:
            self.count("refusals")
            return
        if code != 0:
            self.fail(f"ls {path} ends with {code}: {errors}")
            return
        for iteration, blocks in self.blocks_of(output).items():
            if blocks != self.expected:
                self.fail(f"{path}: iteration {iteration} is not whole: {len(blocks)} blocks of {len(self.expected)}")
        self.count("readings")

    def read(self):
        while time.monotonic() < self.end:
            self.list(self.database)
            self.list(self.text)

    def write(self, chance):
        wait = ["--wait", "120"]
        while time.monotonic() < self.end:
            iteration = str(chance.choice(ITERATIONS))
            name, words = chance.choice([
                ("imports", ["import", *self.files, "-o", self.database, "--iteration", iteration, "-q", *wait]),
                ("imports", ["import", *self.files, "-o", self.database, "--iteration", iteration, "-q", *wait]),
                ("removals", ["prune", self.database, "@it=" + iteration, *wait]),
                ("compactions", ["compact", self.database, *wait]),
                ("publications", ["to-onf", self.database, self.text, "-q", *wait])])
            kill_after = chance.random() * 0.4 if chance.random() < 1 / 3 else None
            code, _, errors = self.run(*words, kill_after=kill_after)
            nothing = name in ("removals", "publications") and code == 2 and "no block" in errors
            if code not in (None, 0) and not nothing:
                self.fail(f"{' '.join(words)} ends with {code}: {errors}")
            self.count(name if code is not None else "kills")

    def work(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        os.makedirs(self.folder)
        for iteration in ITERATIONS:
            code, _, errors = self.run("import", *self.files, "-o", self.database, "--iteration", str(iteration), "-q")
            if code != 0:
                sys.exit(f"soak.py: the import fails: {errors}")
        self.run("to-onf", self.database, self.text, "-q")
        listed = self.blocks_of(self.run("ls", self.database, "--json")[1])
        self.expected = listed[ITERATIONS[0]]
        self.end = time.monotonic() + self.seconds
        threads = [threading.Thread(target=self.read)]
        threads += [threading.Thread(target=self.write, args=(random.Random(f"{self.seed} {i}"),)) for i in range(2)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        code, output, errors = self.run("check", self.database)
        if code != 0:
            self.wrong.append(f"check ends with {code}: {output} {errors}")
        print("soak: " + ", ".join(f"{count} {name}" for name, count in sorted(self.counts.items())) + f", seed {self.seed}")
        for text in self.wrong:
            print("soak: WRONG: " + text)
        if not self.wrong:
            shutil.rmtree(self.folder)
        return 1 if self.wrong else 0


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("quilon")
    parser.add_argument("fixtures")
    parser.add_argument("folder")
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--seed", type=int, default=1)
    sys.exit(Soak(parser.parse_args()).work())
