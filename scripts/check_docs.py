#!/usr/bin/env python3
"""Runs the examples of README.md and docs/ and compares what they print with what stands there.

usage: scripts/check_docs.py BUILD [--update] [PAGE...]

  BUILD     a build folder with the program and the libraries
  --update  writes what the examples print into the pages
  PAGE      pages to look at (all of README.md, docs/ and docs/guide/ that have examples)

Each page has a folder of its own with the results of a job, bracket.inp, bracket.frd and bracket.dat, and a changed copy
of them, changed.frd. Its blocks are taken in order:

  ```console          lines that begin with "$ " are run by bash, and print what stands behind them, errors too; a line
                      "..." stands for any lines. "> " goes on with a command. An exit code other than 0 is a failure
                      unless the command tells it ("; echo $?").
  ```LANGUAGE FILE    is written to the file.
  ```                 in README.md: lines that begin with "quilon " are run, with job.* and before.frd and after.fed.

In docs/quilon.md lines that begin with four blanks and "$ quilon " are run too, where the names are those of the job: as
bracket.fed, bracket.onf, before.frd, after.fed, old.onf and new.frd it is there as well. Exit codes 0 and 1 are fine.

quilon, a C++ compiler as c++, and quilon.pc for pkg-config are there.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FIXTURE = ROOT / "tests/fixtures/calculix/b_hex"
BLOCK = re.compile(r"^```(?P<info>[^\n]*)\n(?P<text>.*?)^```$", re.MULTILINE | re.DOTALL)


def pages():
    return [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md")), *sorted((ROOT / "docs/guide").glob("*.md"))]


def prepare(folder, names):
    for name in names:
        for extension in ("inp", "frd", "dat"):
            shutil.copy(FIXTURE / f"b_hex.{extension}", folder / f"{name}.{extension}")
    # One displacement of node 1 is another, in the fourth digit.
    text = (FIXTURE / "b_hex.frd").read_text()
    place = text.index(" -1", text.index(" -4  DISP"))
    line = text[place : text.index("\n", place)]
    number = re.findall(r"[ -]\d\.\d{5}E[+-]\d\d", line)[-1]
    digit = "1" if number[5] != "1" else "2"
    (folder / "changed.frd").write_text(text[:place] + line.replace(number, number[:5] + digit + number[6:]) + text[place + len(line) :])


def run(command, folder, environment):
    result = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, text=True, timeout=120,
                            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)  # fmt: skip
    return result.returncode, result.stdout


def commands_of(text):
    """Commands of a console block, each with the lines that stand behind it."""
    commands = []
    for line in text.splitlines():
        if line.startswith("$ "):
            commands.append([line[2:], [line], []])
        elif line.startswith("> ") and commands and not commands[-1][2]:
            commands[-1][0] += "\n" + line[2:]
            commands[-1][1].append(line)
        elif commands:
            commands[-1][2].append(line)
        else:
            raise ValueError(f"'{line}' stands before the first command")
    return commands


def matches(expected, printed):
    pattern = "".join("(?:.*\n)*" if line == "..." else re.escape(line) + "\n" for line in expected)
    return re.fullmatch(pattern, printed) is not None


class Page:
    def __init__(self, path, update, environment):
        self.path, self.update, self.environment = path, update, environment
        self.commands = self.failures = 0
        self.lines = []

    def fail(self, line, message):
        self.failures += 1
        print(f"{self.path.relative_to(ROOT)}:{line}: {message}", file=sys.stderr)

    def console(self, text, line, folder):
        shown = []
        for command, written, expected in commands_of(text):
            code, printed = run(command, folder, self.environment)
            self.commands += 1
            if code != 0:
                self.fail(line, f"exit code {code} of: {command}\n{printed}")
            if self.update and not matches(expected, printed):
                expected = printed.splitlines()
            if not matches(expected, printed if printed.endswith("\n") or not printed else printed + "\n"):
                self.fail(line, f"{command}\nprints\n{printed}expected\n" + "\n".join(expected))
            shown += written + expected
        return "\n".join(shown) + "\n"

    def check_lines(self, folder):
        shutil.copy(FIXTURE / "b_hex.frd", folder / "before.frd")
        shutil.copy(FIXTURE / "b_hex.frd", folder / "new.frd")
        for name in ("after.fed", "bracket.fed", "bracket.onf", "old.onf"):
            run(f"quilon import bracket.inp bracket.frd bracket.dat --average-by material -o {name}", folder, self.environment)
        text = self.path.read_text(encoding="utf-8")
        for line in re.finditer(r"^    \$ (quilon .*)$", text, re.MULTILINE):
            command = line[1]
            if "cases.txt" in command or not re.search(r"\b(bracket|before|old)\.", command):
                continue  # of another job
            code, printed = run(command, folder, self.environment)
            self.commands += 1
            if code not in (0, 1) or "quilon: error" in printed:
                self.fail(text.count("\n", 0, line.start()) + 1, f"exit code {code} of: {command}\n{printed}")

    def check(self, folder):
        text = self.path.read_text(encoding="utf-8")
        changed, last = [], 0
        for block in BLOCK.finditer(text):
            words = block["info"].split()
            line = text.count("\n", 0, block.start()) + 1
            content = block["text"]
            if words[:1] == ["console"]:
                content = self.console(content, line, folder)
            elif len(words) == 2:
                file = folder / words[1]
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(content, encoding="utf-8")
            elif not words and self.path.name == "README.md":
                for command in re.findall(r"^quilon .*$", content, re.MULTILINE):
                    code, printed = run(command, folder, self.environment)
                    self.commands += 1
                    if code != 0:
                        self.fail(line, f"exit code {code} of: {command}\n{printed}")
            changed += [text[last : block.start("text")], content]
            last = block.end("text")
        changed = "".join(changed) + text[last:]
        if self.update and changed != text:
            self.path.write_text(changed, encoding="utf-8")


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--update"]
    if not arguments or arguments[0] in ("-h", "--help"):
        print(__doc__)
        return 0 if arguments else 2
    build = Path(arguments[0]).resolve()
    chosen = [Path(page).resolve() for page in arguments[1:]] or pages()
    failures = commands = 0
    with tempfile.TemporaryDirectory() as scratch:
        prefix = Path(scratch, "prefix")
        for component in ("Runtime", "Development", "Program"):
            subprocess.run(["cmake", "--install", build, "--prefix", prefix, "--component", component],
                           check=True, stdout=subprocess.DEVNULL)  # fmt: skip
        (prefix / "bin").mkdir(exist_ok=True)
        environment = dict(os.environ, PATH=f"{prefix}/bin:{os.environ['PATH']}", LC_ALL="C.UTF-8", HOME=scratch,
                           PKG_CONFIG_PATH=f"{prefix}/lib/pkgconfig", LD_LIBRARY_PATH=f"{prefix}/lib", NO_COLOR="1",
                           QUILON_TREE=str(ROOT))  # fmt: skip
        for path in chosen:
            folder = Path(scratch, str(path.relative_to(ROOT)).replace("/", "-"))
            folder.mkdir()
            prepare(folder, ("bracket",) if path.name != "README.md" else ("bracket", "job"))
            if path.name == "README.md":
                shutil.copy(FIXTURE / "b_hex.frd", folder / "before.frd")
                run("quilon import bracket -o after.fed", folder, environment)
            page = Page(path, "--update" in sys.argv, environment)
            page.check(folder)
            if path.name == "quilon.md":
                page.check_lines(folder)
            failures += page.failures
            commands += page.commands
    print(f"{commands} commands of {len(chosen)} pages, {failures} wrong")
    return 1 if failures or not commands else 0


if __name__ == "__main__":
    sys.exit(main())
