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
  ```cpp              is compiled: its includes, then what "compiled within" declares, then the rest in a function; <iostream>
                      and <vector> are there.
  ```python           runs in python/tests/test_docs.py.
  ```text             is no example: a drawing, a format, what an example prints.
  ```                 in README.md: lines that begin with "quilon " are run, with job.* and before.frd and after.fed.

Comments before a block say more:

  <!-- files: FIXTURE as NAME -->        tests/fixtures/FIXTURE.inp, .frd and .dat, those there are, or the folder
                                         FIXTURE, are there as NAME from here on
  <!-- printed by: COMMAND -->           the block is what the command prints
  <!-- compiled within: DECLARATIONS --> what a block of C++ finds declared
  <!-- not run: REASON -->               the block is not run; it is listed at the end

Any other block is an error, and so are commands in blocks that are told by four blanks. The messages of
docs/guide/errors.md have to be in the sources.

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
FIXTURES = ROOT / "tests/fixtures"
FIXTURE = FIXTURES / "calculix/b_hex/b_hex"
BLOCK = re.compile(r"^(?P<indent> {0,3})```(?P<info>[^\n]*)\n(?P<text>.*?)^(?P=indent)```$"
                   r"|(?<=\n\n)(?P<plain>(?:    [^\n]*\n+)+)", re.MULTILINE | re.DOTALL)  # fmt: skip
COMMENT = re.compile(r"<!-- (?P<rule>files|printed by|compiled within|not run): (?P<what>.*?) -->", re.DOTALL)
COMMAND = re.compile(r"^\s*(?:\$ |(?:quilon|cmake|ctest|cpack|pip|python3|source|make)\s|\.?/?scripts/)", re.MULTILINE)
WRITTEN_BY_OTHERS = {"docs/performance.md": "scripts/bench.sh writes the page and what its commands print"}


def pages():
    return [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md")), *sorted((ROOT / "docs/guide").glob("*.md"))]


def copy_fixture(source, target):
    if source.is_dir():
        shutil.copytree(source, target)
        return
    files = [source.with_name(f"{source.name}.{extension}") for extension in ("inp", "frd", "dat")]
    if not any(file.exists() for file in files):
        raise ValueError(f"there is no {source}")
    for file in filter(Path.exists, files):
        shutil.copy(file, target.with_name(target.name + file.suffix))


def prepare(folder, names):
    for name in names:
        copy_fixture(FIXTURE, folder / name)
    # One displacement of node 1 is another, in the fourth digit.
    text = FIXTURE.with_suffix(".frd").read_text()
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
        self.name = str(path.relative_to(ROOT))
        self.commands = self.failures = self.run = 0
        self.left = []  # places and reasons of what is not run

    def fail(self, line, message):
        self.failures += 1
        print(f"{self.name}:{line}: {message}", file=sys.stderr)

    def compare(self, command, expected, line, folder):
        """Runs a command and returns the lines that stand behind it, or are to."""
        code, printed = run(command, folder, self.environment)
        self.commands += 1
        if code != 0:
            self.fail(line, f"exit code {code} of: {command}\n{printed}")
        if self.update and not matches(expected, printed):
            expected = printed.splitlines()
        if not matches(expected, printed if printed.endswith("\n") or not printed else printed + "\n"):
            self.fail(line, f"{command}\nprints\n{printed}expected\n" + "\n".join(expected))
        return expected

    def console(self, text, line, folder):
        shown = []
        for command, written, expected in commands_of(text):
            shown += written + self.compare(command, expected, line, folder)
        return "\n".join(shown) + "\n"

    def compile(self, text, line, folder, within):
        includes = "".join(re.findall(r"^#include.*\n", text, re.MULTILINE))
        rest = re.sub(r"^#include.*\n", "", text, flags=re.MULTILINE)
        (folder / "fragment.cpp").write_text(f"#include <iostream>\n#include <vector>\n{includes}{within}\nvoid Example()\n{{\n{rest}}}\n", encoding="utf-8")
        code, printed = run("c++ -std=c++20 -fsyntax-only fragment.cpp $(pkg-config --cflags quilon)", folder, self.environment)
        if code != 0:
            self.fail(line, f"the fragment does not compile\n{printed}")

    def block(self, block, line, folder, rules):
        """Takes one block, and returns its text, or what it is to be."""
        text, words = block["text"], block["info"].split()
        self.run += 1
        if "not run" in rules:
            self.run -= 1
            self.left.append(f"{self.name}:{line}: {' '.join(rules['not run'].split())}")
        elif "printed by" in rules:
            text = "\n".join(self.compare(rules["printed by"], text.splitlines(), line, folder)) + "\n"
        elif words == ["console"]:
            text = self.console(text, line, folder)
        elif len(words) == 2:
            file = folder / words[1]
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        elif words == ["cpp"]:
            self.compile(text, line, folder, rules.get("compiled within", ""))
        elif not words and self.name == "README.md":
            listed = re.findall(r"^quilon .*$", text, re.MULTILINE)
            if not listed:
                self.fail(line, "no command of this list is run, expected lines that begin with 'quilon '")
            for command in listed:
                code, printed = run(command, folder, self.environment)
                self.commands += 1
                if code != 0:
                    self.fail(line, f"exit code {code} of: {command}\n{printed}")
        elif words == ["text"] and not COMMAND.search(text):
            self.run -= 1  # no example
        elif words != ["python"]:
            self.fail(line, "this block is neither run nor marked 'not run', see --help")
        return text

    def check(self, folder):
        text = self.path.read_text(encoding="utf-8")
        changed, last = [], 0
        for block in BLOCK.finditer(text):
            line = text.count("\n", 0, block.start()) + 1
            before = text[last : block.start()]
            rules = {comment["rule"]: comment["what"] for comment in COMMENT.finditer(before)}
            for comment in COMMENT.finditer(before):
                if comment["rule"] == "files":
                    source, target = comment["what"].split(" as ")
                    copy_fixture(FIXTURES / source, folder / target)
            if block["plain"] is None:
                changed += [text[last : block.start("text")], self.block(block, line, folder, rules)]
                last = block.end("text")
            elif "not run" in rules:
                self.left.append(f"{self.name}:{line}: {' '.join(rules['not run'].split())}")
                changed.append(text[last : block.end()])
                last = block.end()
            elif COMMAND.search(block["plain"]):
                self.fail(line, "commands that are not run; expected a block of ```console, see --help")
        changed = "".join(changed) + text[last:]
        if self.update and changed != text:
            self.path.write_text(changed, encoding="utf-8")


def lost_messages():
    """Texts of docs/guide/errors.md that no source has."""
    folders = ("contract", "include", "src", "siblings", "host", "python/quilon")
    sources = "".join(path.read_text(encoding="utf-8") for folder in folders for path in sorted((ROOT / folder).rglob("*"))
                      if path.suffix in (".cpp", ".h", ".py"))  # fmt: skip
    rows = re.findall(r"^\| (`.*?`) \| ", (ROOT / "docs/guide/errors.md").read_text(encoding="utf-8"), re.MULTILINE)
    return [text for row in rows for text in re.findall("`(.*?)`", row) if text not in sources]


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--update"]
    if not arguments or arguments[0] in ("-h", "--help"):
        print(__doc__)
        return 0 if arguments else 2
    build = Path(arguments[0]).resolve()
    chosen = [Path(page).resolve() for page in arguments[1:]] or pages()
    failures = commands = examples = 0
    left = []
    with tempfile.TemporaryDirectory() as scratch:
        prefix = Path(scratch, "prefix")
        for component in ("Runtime", "Development", "Program"):
            subprocess.run(["cmake", "--install", build, "--prefix", prefix, "--component", component],
                           check=True, stdout=subprocess.DEVNULL)  # fmt: skip
        (prefix / "bin").mkdir(exist_ok=True)
        environment = dict(os.environ, PATH=f"{prefix}/bin:{os.environ['PATH']}", LC_ALL="C.UTF-8", HOME=scratch,
                           PKG_CONFIG_PATH=f"{prefix}/lib/pkgconfig", LD_LIBRARY_PATH=f"{prefix}/lib", NO_COLOR="1")  # fmt: skip
        for path in chosen:
            folder = Path(scratch, str(path.relative_to(ROOT)).replace("/", "-"))
            folder.mkdir()
            prepare(folder, ("bracket",) if path.name != "README.md" else ("bracket", "job"))
            if path.name == "README.md":
                shutil.copy(FIXTURE.with_suffix(".frd"), folder / "before.frd")
                run("quilon import bracket -o after.fed", folder, environment)
            page = Page(path, "--update" in sys.argv, environment)
            if page.name in WRITTEN_BY_OTHERS:
                left.append(f"{page.name}: {WRITTEN_BY_OTHERS[page.name]}")
                continue
            page.check(folder)
            failures += page.failures
            commands += page.commands
            examples += page.run
            left += page.left
    for text in lost_messages():
        failures += 1
        print(f"docs/guide/errors.md: no source says '{text}'", file=sys.stderr)
    for place in left:
        print("not run:", place)
    print(f"{examples} of {examples + len(left)} examples run, {commands} commands of {len(chosen)} pages, {failures} wrong")
    return 1 if failures or not commands else 0


if __name__ == "__main__":
    sys.exit(main())
