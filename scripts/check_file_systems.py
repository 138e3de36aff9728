#!/usr/bin/env python3
"""Tries databases and ONF folders on other file systems, and on full ones, in files that are mounted for it.

usage: check_file_systems.py [--preset NAME] [--folder FOLDER] [--seconds N] [FILE SYSTEM...]

Wants root, and of each file system what makes one (packages xfsprogs, btrfs-progs, exfatprogs and exfat-fuse, ntfs-3g).
What this machine cannot make or mount is told and left out; that nothing could be mounted is a failure. On each:

  tests       the test programs of databases on disk and of ONF folders, with their temporary folders there; on file
              systems without names for one file twice, permissions or links only what follows
  full        imports, compactions and ONF folders while the file system has room for none, some or most of it: exit
              code 2 and a message, and the database is whole and as before; with room enough the same command passes
  soak        writers, readers, compactions and kills for N seconds (default 10)
"""

import argparse
import os
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
MIB = 1 << 20
# How each is made, mounted, whether files have links and permissions there, and MiB: some are no smaller.
SYSTEMS = {
    "ext2": (["mkfs.ext2", "-q", "-F", "-m", "0"], ["mount"], True, 96),
    "ext4": (["mkfs.ext4", "-q", "-F", "-m", "0"], ["mount"], True, 96),
    "xfs": (["mkfs.xfs", "-q", "-f"], ["mount"], True, 320),
    "btrfs": (["mkfs.btrfs", "-q", "-f"], ["mount"], True, 128),
    "vfat": (["mkfs.vfat"], ["mount"], False, 96),
    "exfat": (["mkfs.exfat"], ["mount.exfat-fuse"], False, 64),
    "ntfs": (["mkfs.ntfs", "-F", "-q"], ["ntfs-3g"], False, 64),
    "tmpfs": (None, ["mount", "-t", "tmpfs", "-o", "size=96m"], True, 96),
    "overlay": (None, None, True, 0),
}
PROGRAMS = ["tests/siblings/QuilonDbConnector/quilon_store_test", "tests/siblings/QuilonDbConnector/quilon_store_faults_test",
            "tests/siblings/QuilonOnfEngine/quilon_onf_text_test", "tests/siblings/QuilonOnfEngine/quilon_onf_engine_test"]
# What needs no disk of its own, and lasts.
FILTER = "-Many*:UsualMemory*:WritingInTurn*"


def run(command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          check=False, **options)


class Mounted:
    """A file system in a file; a tree of one that lies over another for overlay."""

    def __init__(self, name, folder):
        self.name, self.folder = name, folder
        self.image = os.path.join(folder, name + ".img")
        self.point = os.path.join(folder, name)
        self.loop = None
        self.why_not = None

    def __enter__(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        os.makedirs(self.point)
        make, mount, _, size = SYSTEMS[self.name]
        made = None
        if self.name == "overlay":
            parts = [os.path.join(self.folder, part) for part in ("lower", "upper", "work")]
            for part in parts:
                os.makedirs(part)
            made = run(["mount", "-t", "overlay", "overlay", "-o",
                        f"lowerdir={parts[0]},upperdir={parts[1]},workdir={parts[2]}", self.point])
        elif make is None:
            made = run([*mount, "none", self.point])
        elif shutil.which(make[0]) is None or shutil.which(mount[0]) is None:
            self.why_not = f"no {make[0] if shutil.which(make[0]) is None else mount[0]} on this machine"
        else:
            with open(self.image, "wb") as file:
                file.truncate(size * MIB)
            made = run([*make, self.image])
            if made.returncode == 0:
                looped = run(["losetup", "-f", "--show", self.image])
                self.loop = looped.stdout.strip() if looped.returncode == 0 else None
                made = run([*mount, self.loop, self.point]) if self.loop else looped
        if made is not None and made.returncode != 0:
            self.why_not = made.stdout.strip().split("\n")[0]
        return self

    def __exit__(self, *_):
        if self.why_not is None and run(["umount", self.point]).returncode != 0:
            sys.exit(f"check_file_systems.py: {self.point} cannot be unmounted")
        if self.loop:
            run(["losetup", "-d", self.loop])
        shutil.rmtree(self.folder, ignore_errors=True)


class Trial:
    def __init__(self, name, point, build, seconds):
        self.name, self.point, self.build, self.seconds = name, point, build, seconds
        self.quilon = os.path.join(build, "host", "quilon")
        self.wrong = []

    def expect(self, holds, text):
        if not holds:
            self.wrong.append(f"{self.name}: {text}")
        return holds

    def run_tests(self):
        """@return how many tests passed"""
        folder = os.path.join(self.point, "tmp")
        os.makedirs(folder)
        passed = 0
        for program in PROGRAMS:
            result = run([os.path.join(self.build, program), "--gtest_filter=" + FILTER, "--gtest_brief=1"], cwd=folder,
                         env=dict(os.environ, TMPDIR=folder))
            self.expect(result.returncode == 0, f"{program}: {result.stdout[-3000:]}")
            passed += sum(int(line.split()[3]) for line in result.stdout.split("\n") if line.startswith("[  PASSED  ]"))
        shutil.rmtree(folder)
        return passed

    def call(self, *words):
        return run([self.quilon, *words], cwd=self.point, env=dict(os.environ, TMPDIR=self.point))

    def listing(self, path):
        result = self.call("ls", path, "--json")
        self.expect(result.returncode == 0, f"ls {path}: {result.stdout}")
        return result.stdout

    def leave_room(self, size):
        """Fills the file system but for about so many bytes."""
        ballast = os.path.join(self.point, "ballast")
        written = 0
        with open(ballast, "wb", buffering=0) as file:
            for piece in (MIB, 4096, 1):
                block = os.urandom(piece)  # so that no compression makes room
                try:
                    while True:
                        written += file.write(block)
                except OSError:
                    pass
            try:
                os.fsync(file.fileno())
            except OSError:
                pass
            file.truncate(max(written - size, 0))
        os.sync()

    def fill_up(self):
        """@return how often a command found no room"""
        job = os.path.join(ROOT, "tests", "fixtures", "calculix", "a_tet", "a_tet")
        files = [job + ".frd", job + ".dat"]
        self.expect(self.call("import", *files, "-o", "a.fed", "-q").returncode == 0, "the first import fails")
        refused = 0
        commands = {"import": ["import", *files, "-o", "a.fed", "--iteration", "1", "-q"],
                    "first import": ["import", *files, "-o", "b.fed", "-q"], "compact": ["compact", "a.fed"],
                    "to-onf": ["to-onf", "a.fed", "text", "-q"]}
        for what, words in commands.items():
            before = self.listing("a.fed")
            for kib in (0, 8, 32, 128, 512, 2048):
                self.leave_room(kib << 10)
                result = self.call(*words)
                if result.returncode == 0:
                    break
                refused += 1
                self.expect(result.returncode == 2 and "No space left" in result.stdout,
                            f"{what} with {kib} KiB ends with {result.returncode}: {result.stdout}")
                self.expect(self.listing("a.fed") == before, f"{what} with {kib} KiB: the database has changed")
                check = self.call("check", "a.fed")
                self.expect(check.returncode == 0, f"{what} with {kib} KiB: {check.stdout}")
                if what == "first import":
                    self.expect(not os.path.exists(os.path.join(self.point, "b.fed", "manifest")),
                                f"{what} with {kib} KiB: half a database is there")
            os.remove(os.path.join(self.point, "ballast"))
            result = self.call(*words)
            self.expect(result.returncode == 0, f"{what} with room enough: {result.stdout}")
        for path in ("a.fed", "b.fed", "text"):
            check = self.call("check", path)
            self.expect(check.returncode == 0, f"check {path}: {check.stdout}")
        return refused

    def soak(self):
        result = run([os.path.join(ROOT, "scripts", "soak.py"), self.quilon, os.path.join(ROOT, "tests", "fixtures"),
                      os.path.join(self.point, "soak"), "--seconds", str(self.seconds)])
        self.expect(result.returncode == 0, result.stdout)
        return result.stdout.strip().split("\n")[0]


def main():
    build = os.path.join(ROOT, "build", ARGUMENTS.preset)
    wrong, mounted = [], 0
    for name in ARGUMENTS.systems or SYSTEMS:
        with Mounted(name, os.path.abspath(ARGUMENTS.folder)) as place:
            if place.why_not is not None:
                print(f"{name}: left out: {place.why_not}", flush=True)
                continue
            mounted += 1
            trial = Trial(name, place.point, build, ARGUMENTS.seconds)
            tests = trial.run_tests() if SYSTEMS[name][2] else 0
            # The file system below an overlay is the machine's own, which nobody fills.
            refused = 0 if name == "overlay" else trial.fill_up()
            print(f"{name}: {tests} tests, no room {refused} times, {trial.soak()}", flush=True)
            wrong += trial.wrong
    for text in wrong:
        print("WRONG: " + text)
    return 0 if mounted and not wrong else 1


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("systems", nargs="*", choices=[[], *SYSTEMS], metavar="FILE SYSTEM")
    parser.add_argument("--preset", default="release")
    parser.add_argument("--folder", default=os.path.join(ROOT, "build", "file_systems"))
    parser.add_argument("--seconds", type=float, default=10)
    ARGUMENTS = parser.parse_args()
    if os.geteuid() != 0:
        sys.exit("check_file_systems.py: wants root, to mount what it makes")
    sys.exit(main())
