#!/usr/bin/env python3
"""Makes a large database and asks it what users ask, within a limit of memory: what each question reads and takes.

usage: large_database.py BUILD FOLDER [options]

  BUILD    build folder, with host/quilon and bench/make_large_database
  FOLDER   made anew, and removed in the end

  --steps N      result steps (default 2000)
  --nodes N      nodes (default 1000000); with 2000 steps that is 96 GB of values, nearly all zeros
  --memory MIB   address space that every command may take (default 512; 0: no limit)
  --room SIZE    of the compaction in pieces (default 2G)
  --prune EVERY  one step of so many is pruned (default 40)
  --among N      of the first N steps (default: all), so that the compaction has that part of the segments to write
  --index N      the first N steps are ordered by id (default: all)
  --kills N      the compaction is killed so often before it may finish (default 1)
  --json FILE    write the figures there as well
  --keep         leave the database
  --there        it is there, made and kept by an earlier call and not asked yet

Answers are compared with what the generator wrote. Work that can be counted is held to what the format promises: bytes
read for a history, with an order by id and without one, files, and the room that a compaction takes beside what is
there. Exit code 1 where one of these is wrong, or a command needs more memory than it may have.

The values are zeros but for some, which the generator leaves out of its files: 0.5 GB for 96 GB. What commands write has
all its zeros: --prune and --index say how much that is, unless the file system compresses.
"""

import argparse
import json
import math
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

MIB = 1 << 20
CHUNK_ROWS = 65536
TENSOR = 48
PAGE = 128 << 10


class Failure(Exception):
    pass


def told(count):
    return f"{count / 1e9:.2f} GB" if count >= 1e8 else f"{count / 1e6:.2f} MB"


class Room(threading.Thread):
    """Looks again and again how many bytes the files of a folder have together, with their holes."""

    def __init__(self, folder):
        super().__init__(daemon=True)
        self.folder, self.most, self.ends = folder, 0, threading.Event()

    def look(self):
        total = 0
        for name in os.listdir(self.folder):
            try:
                total += os.stat(os.path.join(self.folder, name)).st_size
            except FileNotFoundError:
                pass  # removed meanwhile
        self.most = max(self.most, total)
        return total

    def run(self):
        while not self.ends.wait(0.05):
            self.look()

    def stop(self):
        self.ends.set()
        self.join()


class Trial:
    def __init__(self, options):
        self.options = options
        self.quilon = os.path.join(options.build, "host", "quilon")
        self.fed = os.path.join(options.folder, "large.fed")
        self.steps = list(range(1, options.steps + 1))
        self.rows = []
        self.wrong = []
        self.base = {"bytes": 0, "reads": 0}
        self.base = self.measure("start", [self.quilon, "--version"], tells=False)

    def limit(self):
        if self.options.memory:
            resource.setrlimit(resource.RLIMIT_AS, (self.options.memory * MIB, self.options.memory * MIB))

    def measure(self, name, command, tells=True, limited=True):
        """Runs a command; what it reads is what it asks the system for beyond what any command does to start."""
        out = open(os.path.join(self.options.folder, "output"), "w+")
        err = open(os.path.join(self.options.folder, "errors"), "w+")
        start = time.monotonic()
        process = subprocess.Popen(command, stdout=out, stderr=err, preexec_fn=self.limit if limited else None)
        os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)  # it stays, to be asked
        seconds = time.monotonic() - start
        with open(f"/proc/{process.pid}/io") as file:
            counts = dict(line.split(": ") for line in file.read().splitlines())
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        out.seek(0)
        err.seek(0)
        row = {"question": name, "seconds": round(seconds, 2), "processor": round(usage.ru_utime + usage.ru_stime, 2),
               "memory": usage.ru_maxrss * 1024, "reads": int(counts["syscr"]) - self.base["reads"],
               "bytes": int(counts["rchar"]) - self.base["bytes"], "written": int(counts["wchar"]), "out": out.read()}
        if process.returncode != 0:
            raise Failure(f"{name}: {' '.join(command)}: exit code {process.returncode}: {err.read()[-500:]}")
        if tells:
            self.rows.append(row)
            print(f"{name:34} {row['seconds']:9.2f} s, {row['processor']:.2f} s of a processor {row['memory'] / MIB:7.0f} MiB {row['reads']:8} reads "
                  f"{row['bytes'] / 1e6:12.2f} MB", flush=True)
        return row

    def ask(self, name, *arguments):
        return self.measure(name, [self.quilon, *arguments])

    def expect(self, is_true, what):
        if not is_true:
            self.wrong.append(what)
            print("WRONG: " + what, flush=True)

    def files(self, ending):
        return [name for name in os.listdir(self.fed) if name.endswith(ending)]

    def size(self):
        return Room(self.fed).look()

    def generate(self):
        if self.options.there:
            return
        self.measure("make", [os.path.join(self.options.build, "bench", "make_large_database"), self.fed,
                                    str(self.options.steps), str(self.options.nodes)], limited=False)

    def tell_size(self):
        taken = sum(os.stat(os.path.join(self.fed, name)).st_blocks * 512 for name in os.listdir(self.fed))
        print(f"  {told(self.size())}, of which {told(taken)} on the disk, in {len(self.files('.h5'))} "
              f"segments", flush=True)
        # Merges keep segments few: eight of the smallest sorts, or 32 of large ones, and then those that are merged.
        self.expect(len(self.files(".h5")) <= 192, f"{len(self.files('.h5'))} segments, expected at most 192")

    def history(self, name, most):
        """@param most: bytes that it may read"""
        row = self.ask(name, "history", self.fed, "stress.xx", "--ids", "7", "--json")
        values = [point["xx"] for point in json.loads(row["out"])]
        expected = [step + 7e-6 for step in self.steps]
        self.expect(len(values) == len(expected) and all(abs(a - b) < 1e-9 for a, b in zip(values, expected)),
                    f"{name}: {len(values)} values, expected {len(expected)} of {expected[:3]} ...: {values[:3]}")
        self.expect(row["bytes"] <= most, f"{name}: {row['bytes']} bytes read, expected at most {most}")
        return row

    def greatest(self, name, step):
        row = self.ask(name, "max", self.fed, f"stress.mises@sub={step}", "--json")
        # xx is greatest at the last of those nodes that have it; node 7 has yy = -1 beside it.
        last = max(node for node in range(max(1, self.options.nodes - CHUNK_ROWS), self.options.nodes + 1)
                   if 1 <= node % CHUNK_ROWS <= 64)
        x = step + 7e-6
        expected, place = max((math.sqrt(x * x + x + 1), 7), (step + 1e-6 * last, last))
        found = json.loads(row["out"])[0]
        self.expect(found["id"] == place and abs(found["value"] - expected) < 1e-9 * expected,
                    f"{name}: {found['value']} at {found['id']}, expected {expected} at {place}")
        bound = self.open_bytes + 2 * self.options.nodes * (TENSOR + 4) + 4 * MIB
        self.expect(row["bytes"] <= bound, f"{name}: {row['bytes']} bytes read, expected at most {bound}")

    def prune(self):
        gone = self.steps[self.options.prune // 2:self.options.among or None:self.options.prune]
        self.ask("prune", "prune", self.fed, "stress@sub=" + ",".join(map(str, gone)))
        self.steps = [step for step in self.steps if step not in set(gone)]

    def compact(self):
        before, room = self.size(), Room(self.fed)
        room.start()
        command = [self.quilon, "compact", self.fed, "--incremental", "--room", self.options.room]
        for kill in range(self.options.kills):
            generation = self.generation()
            process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                       preexec_fn=self.limit)
            # In the middle: one piece more is done, and the next is being written.
            while process.poll() is None and not (self.generation() > generation and self.is_writing()):
                time.sleep(0.001)
            process.send_signal(signal.SIGKILL)
            process.wait()
            print(f"  killed, {'behind' if process.returncode == 0 else 'in'} its work, at "
                  f"{told(self.size())} of {told(before)}", flush=True)
        row = self.ask("compact --incremental", *command[1:], "--json")
        room.stop()
        report = json.loads(row["out"])
        extra = room.most - before
        row["room"] = extra
        print(f"  {report['pieces']} pieces, {told(before)} before, {told(self.size())} after, at most "
              f"{told(extra)} in addition", flush=True)
        allowed = parse_size(self.options.room) + MIB  # manifests stand beside each other
        self.expect(extra <= allowed, f"the compaction took {extra} bytes in addition, expected at most {allowed}")
        self.expect(report["kept-files"] == 0, f"{report['kept-files']} files were kept")
        again = json.loads(self.ask("compact again", *command[1:], "--json")["out"])
        self.expect(again["pieces"] == 0, f"{again['pieces']} pieces in a second compaction")

    def generation(self):
        try:
            with open(os.path.join(self.fed, "manifest")) as file:
                return int(re.search(r"^generation (\d+)", file.read(), re.M).group(1))
        except (FileNotFoundError, AttributeError):
            return -1

    def is_writing(self):
        with open(os.path.join(self.fed, "manifest")) as file:
            named = set(re.findall(r"^segment (\d+)", file.read(), re.M))
        return any(name.endswith(".h5") and str(int(name[8:-3])) not in named for name in os.listdir(self.fed))

    def index(self):
        count = self.options.index or self.options.steps
        selection = "stress" if count >= self.options.steps else f"stress@sub=1-{count}"
        before, room = self.size(), Room(self.fed)
        room.start()
        row = self.ask(f"index --by id {selection}", "index", self.fed, selection, "--by", "id", "--json")
        room.stop()
        report = json.loads(row["out"])
        order = report["orders"][0]
        print(f"  {order['blocks']} blocks of {order['records']} records, {told(order['size'])}, "
              f"{told(report['most-in-addition'])} in addition while it was written", flush=True)
        row["order-bytes"] = order["size"]
        row["room"] = room.most - before
        blocks = sum(step <= count for step in self.steps)
        self.expect(order["blocks"] == blocks, f"{order['blocks']} blocks in the order, expected {blocks}")
        return blocks

    def run(self):
        options = self.options
        self.generate()
        self.tell_size()
        chunk = min(CHUNK_ROWS, options.nodes) * TENSOR
        ids = 4 * options.nodes
        opened = self.ask("open, list the times", "ls", self.fed, "time", "--json")
        self.open_bytes = opened["bytes"]
        # 200 bytes a chunk and as much a block, in at most twice as many extents.
        chunks = options.steps * -(-options.nodes // CHUNK_ROWS)
        self.expect(opened["bytes"] <= 1000 * chunks + 400 * options.steps + MIB // 4,
                    f"opening reads {opened['bytes']} bytes")
        self.ask("ls", "ls", self.fed)
        self.ask("info", "info", self.fed)
        reach = self.open_bytes + ids + MIB // 4
        self.history("history of a node", reach + options.steps * (chunk + 4096))
        self.greatest("max of a step", options.steps // 2)
        self.prune()
        self.compact()
        self.greatest("max of a step again", options.steps // 2)
        self.history("history, compacted", reach + options.steps * (chunk + 4096))
        ordered = self.index()
        left = len(self.steps) - ordered
        page = max(PAGE, ordered * (TENSOR + 1)) + 4096
        self.history("history, ordered by id", reach + 200 * ordered + page + left * (chunk + 4096))
        if options.json:
            for row in self.rows:
                del row["out"]
            with open(options.json, "w") as file:
                json.dump({"steps": options.steps, "nodes": options.nodes, "memory": options.memory,
                           "rows": self.rows}, file, indent=1)


def parse_size(text):
    return int(text[:-1]) << {"K": 10, "M": 20, "G": 30}[text[-1]]


def main():
    parser = argparse.ArgumentParser(add_help=False)
    parser.add_argument("build")
    parser.add_argument("folder")
    for name, usual in (("steps", 2000), ("nodes", 1000000), ("memory", 512), ("prune", 40), ("among", 0),
                        ("index", 0), ("kills", 1)):
        parser.add_argument("--" + name, type=int, default=usual)
    parser.add_argument("--room", default="2G")
    parser.add_argument("--json")
    parser.add_argument("--keep", action="store_true")
    parser.add_argument("--there", action="store_true")
    if len(sys.argv) < 3 or "--help" in sys.argv:
        print(__doc__.strip())
        sys.exit(0 if "--help" in sys.argv else 2)
    options = parser.parse_args()
    if not options.there:
        shutil.rmtree(options.folder, ignore_errors=True)
        os.makedirs(options.folder)
    trial = None
    try:
        trial = Trial(options)
        trial.run()
    except Failure as failure:
        print(failure)
        sys.exit(1)
    finally:
        if not options.keep:
            shutil.rmtree(options.folder, ignore_errors=True)
    sys.exit(1 if trial.wrong else 0)


if __name__ == "__main__":
    main()
