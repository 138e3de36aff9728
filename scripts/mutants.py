#!/usr/bin/env python3
"""Breaks the code on purpose, a place at a time, and tells which breaks no test sees.

usage: mutants.py [--sample N] [--seed S] [--minutes M] [--only PREFIX]... [--try PREFIX]... [--tests PREFIX]...
                  [--seconds-each S] [--jobs N] [--scratch FOLDER] [--list]

A copy of the tree under build/mutants holds all breaks that are tried at once, each behind a number: an environment
variable chooses the one that is in force, so that all of them come out of one build. Which tests reach a
break is measured first, test by test; a break is then tried by the tests that reach it, until one fails, crashes or
does not end: fast tests, and tests that reach little besides, come first. What is known is kept in build/mutants: a break
that was killed stays so while its source stays as it is, one that has survived is tried again when any test has changed.

  --sample N        so many breaks, chosen by chance among those of all sources (default 200; 0: all); a larger sample
                    holds the smaller ones, and a change of the code exchanges what it touches alone
  --seed S          of that choice (default 1)
  --minutes M       stop after so long; the next call goes on
  --only PREFIX     breaks of files whose paths begin so; others are built as they are
  --try PREFIX      of the sample only breaks of files whose paths begin so, for now
  --tests PREFIX    only test programs in folders that begin so: a build of what is asked for alone
  --seconds-each S  of tests behind which a break has survived (default 60)
  --jobs N          of the build (default: as many as the machine has processors)
  --scratch FOLDER  where tests keep their files (default: in build/mutants); one in memory is faster
  --list            print the breaks of the sample and try none

Prints a table per folder and the survivors, and writes both to build/mutants/report.txt. Exit code 1 when a break that
scripts/mutants_explained.txt does not explain has survived.
"""

import argparse
import bisect
import collections
import glob
import hashlib
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
STATE = os.path.join(ROOT, "build", "mutants")
TREE = os.path.join(STATE, "tree")
BUILD = os.path.join(TREE, "build", "quick")
EXPLAINED = os.path.join(ROOT, "scripts", "mutants_explained.txt")

SOURCES = ["include/IdRadixMap.h", "src/*.cpp", "src/*.h", "siblings/QuilonDbConnector/src/*.cpp",
           "siblings/QuilonDbConnector/src/ColumnStore.h", "siblings/QuilonOnfEngine/src/*.cpp", "host/import/*.cpp",
           "host/diff/*.cpp", "host/diff/RecordWalk.h", "host/forces/*.cpp"]
TESTS = ["tests/library/*_test", "tests/siblings/QuilonDbConnector/*_test", "tests/siblings/QuilonOnfEngine/*_test",
         "tests/host/import/*_test", "tests/host/diff/*_test", "tests/host/forces/*_test",
         "tests/host/commands/quilon_host_commands_test"]
# A test that takes longer is no help to a search of minutes.
SLOWEST_TEST = 20.0
MEMORY = 6 << 30
FILE_BYTES = 1 << 30

RUNTIME = r"""#pragma once
// Breaks chosen at run time: QUILON_MUTANT is the one in force, QUILON_MUTANTS_REACHED a file with a byte for each that
// receives 1 where a program passes it.
#include <cstddef>
#include <cstdlib>
#include <type_traits>
#include <utility>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
namespace quilon_mutants {
inline int            active  = -1;
inline unsigned char* reached = nullptr;
inline int Load()
{
  if (const char* path = std::getenv("QUILON_MUTANTS_REACHED")) {
    const int   file = ::open(path, O_RDWR | O_CLOEXEC);
    struct stat status;
    if (file >= 0 && ::fstat(file, &status) == 0) {
      void* at = ::mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
      if (at != MAP_FAILED) reached = static_cast<unsigned char*>(at);
    }
    if (file >= 0) ::close(file);
  }
  const char* text = std::getenv("QUILON_MUTANT");
  return text == nullptr ? 0 : std::atoi(text);
}
inline bool On(int n)
{
  if (active < 0) active = Load();
  if (reached != nullptr) reached[n] = 1;
  return n == active;
}
#define QUILON_MUTANT_OPERATOR(Name, op, close, other)                                            \
  struct Name {                                                                                   \
    bool on;                                                                                      \
    explicit Name(int n) : on(On(n)) {}                                                           \
  };                                                                                              \
  template <typename L> struct Name##Left {                                                       \
    L&&  left;                                                                                    \
    bool on;                                                                                      \
  };                                                                                              \
  template <typename L> Name##Left<L> operator op(L&& left, Name name)                            \
  {                                                                                               \
    return {static_cast<L&&>(left), name.on};                                                     \
  }                                                                                               \
  template <typename L, typename R> auto operator close(Name##Left<L> from, R&& right)            \
      ->decltype(static_cast<L&&>(from.left) op static_cast<R&&>(right))                          \
  {                                                                                               \
    using Result = decltype(static_cast<L&&>(from.left) op static_cast<R&&>(right));              \
    if (from.on) return static_cast<Result>(static_cast<L&&>(from.left) other static_cast<R&&>(right)); \
    return static_cast<L&&>(from.left) op static_cast<R&&>(right);                                \
  }
QUILON_MUTANT_OPERATOR(Lt, <, >, <=)
QUILON_MUTANT_OPERATOR(Gt, >, <, >=)
QUILON_MUTANT_OPERATOR(Le, <=, >=, <)
QUILON_MUTANT_OPERATOR(Ge, >=, <=, >)
QUILON_MUTANT_OPERATOR(Eq, ==, ==, !=)
QUILON_MUTANT_OPERATOR(Ne, !=, !=, ==)
QUILON_MUTANT_OPERATOR(Plus, +, +, -)
QUILON_MUTANT_OPERATOR(Minus, -, -, +)
QUILON_MUTANT_OPERATOR(Times, *, *, /)
QUILON_MUTANT_OPERATOR(Over, /, /, *)
template <typename T> T Broken(const T& value)
{
  if constexpr (std::is_same_v<T, bool>) return !value;
  else if constexpr (std::is_arithmetic_v<T>) return static_cast<T>(value + 1);
  else return T{};
}
template <typename T> T& Return(int n, T& value)
{
  if (!On(n)) return value;
  thread_local std::remove_const_t<T> broken;
  broken = Broken<std::remove_const_t<T>>(value);
  return broken;
}
template <typename T, typename = std::enable_if_t<!std::is_lvalue_reference_v<T>>> T Return(int n, T&& value)
{
  if (On(n)) return Broken<T>(value);
  return std::move(value);
}
}  // namespace quilon_mutants
"""

TOKEN = re.compile(r"""
    (?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
  | (?P<string>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|(?:u8|[LuU])?"(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)+')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|(?:\d[\d']*\.?[\d']*|\.\d[\d']*)(?:[eE][+-]?\d+)?)[uUlLfFzZ]*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign><=>|<<=|>>=|->\*|\.\.\.|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|.)
""", re.S | re.M | re.X)

RELATIONS = {"<": ("Lt", ">"), ">": ("Gt", "<"), "<=": ("Le", ">="), ">=": ("Ge", "<="), "==": ("Eq", "=="),
             "!=": ("Ne", "!="), "+": ("Plus", "+"), "-": ("Minus", "-"), "*": ("Times", "*"), "/": ("Over", "/")}
OTHERS = {"<": "<=", ">": ">=", "<=": "<", ">=": ">", "==": "!=", "!=": "==", "+": "-", "-": "+", "*": "/", "/": "*"}
ASSIGNMENTS = {"=", "+=", "-=", "*=", "/=", "|=", "&=", "^=", "%=", "<<=", ">>="}
OPENING = {"(": ")", "[": "]", "{": "}"}
NO_STATEMENT = {"if", "for", "while", "do", "switch", "case", "default", "goto", "using", "typedef", "template",
                "struct", "class", "enum", "namespace", "public", "private", "protected", "const", "constexpr", "static",
                "auto", "try", "catch", "else", "return", "inline", "explicit", "friend", "virtual", "operator", "extern",
                "static_assert", "assert", "static_cast", "unsigned", "int", "double", "float", "bool", "char", "void"}


class Site:
    """One break: what is put into the text at which offsets."""

    def __init__(self, path, line, column, what, kind, edits):
        self.path, self.line, self.column, self.what, self.kind, self.edits = path, line, column, what, kind, edits
        self.number = 0
        self.text = ""  # of its line
        self.twin = 0   # how many like it the file has before it
        self.dropped = False  # does not compile
        self.chosen = True

    def is_built(self):
        return self.chosen and not self.dropped

    def key(self):
        """Stays while the code around it changes."""
        return f"{self.path}: {self.what}: {self.text} #{self.twin}"


class Source:
    def __init__(self, path):
        self.path = path
        with open(os.path.join(ROOT, path), encoding="utf-8") as file:
            self.text = file.read()
        self.lines = self.text.split("\n")
        self.starts = [0]
        for line in self.lines:
            self.starts.append(self.starts[-1] + len(line) + 1)
        self.tokens = [match for match in TOKEN.finditer(self.text)
                       if match.lastgroup != "skip" and not match.group().isspace()]
        self.words = [token.group() for token in self.tokens]
        self.partner = self.match_brackets()
        self.sites = []
        self.twins = collections.Counter()
        self.find()

    def match_brackets(self):
        partner, open_at = {}, []
        for i, word in enumerate(self.words):
            if self.tokens[i].lastgroup == "string":
                continue
            if word in OPENING:
                open_at.append(i)
            elif word in (")", "]", "}") and open_at:
                j = open_at.pop()
                partner[i], partner[j] = j, i
        return partner

    def add(self, i, what, kind, edits):
        offset = self.tokens[i].start()
        line = bisect.bisect_right(self.starts, offset)
        site = Site(self.path, line, offset - self.starts[line - 1] + 1, what, kind, edits)
        site.text = self.lines[line - 1].strip()
        site.twin = self.twins[what, site.text]
        self.twins[what, site.text] += 1
        self.sites.append(site)

    def spaced(self, i):
        begin, end = self.tokens[i].span()
        return self.text[begin - 1].isspace() and end < len(self.text) and self.text[end].isspace()

    def operand_end(self, i):
        """The token behind the operand that begins at i: of && or ||."""
        while i < len(self.words):
            word = self.words[i]
            if self.tokens[i].lastgroup != "string":
                if word in OPENING:
                    i = self.partner.get(i, len(self.words) - 1)
                elif word in (")", "]", "}", "&&", "||", "?", ":", ",", ";") or word in ASSIGNMENTS:
                    return i
            i += 1
        return None

    def statement_end(self, i):
        """The semicolon of a statement that is an assignment, a call or a step; nothing for others."""
        first = self.words[i]
        if first in ("throw", "break", "continue"):
            while self.words[i] != ";":
                i = self.partner[i] if self.words[i] in OPENING else i
                i += 1
                if i >= len(self.words) or self.words[i] == "}":
                    return None
            return i
        if self.tokens[i].lastgroup != "name" and first not in ("++", "--", "*", "("):
            return None
        if first in NO_STATEMENT:
            return None
        start, assigned = i, False
        while i < len(self.words):
            word = self.words[i]
            if word == ";" and self.tokens[i].lastgroup == "sign":
                last = self.words[i - 1]
                return i if assigned or last in (")", "++", "--") or first in ("++", "--") else None
            if word == "{" and not assigned or word in (")", "]", "}", ":", "?") and not assigned:
                return None
            if word in ASSIGNMENTS:
                assigned = True
            if not assigned and i > start and self.tokens[i].lastgroup == "name":
                before = self.words[i - 1]
                if self.tokens[i - 1].lastgroup == "name" or before in (">", "&", "*", "&&"):
                    return None
            if word in OPENING:
                if i not in self.partner:
                    return None
                i = self.partner[i]
            i += 1
        return None

    def find(self):
        on = "quilon_mutants::On(@)"
        statements = set()
        for i, word in enumerate(self.words):
            token = self.tokens[i]
            begin, end = token.span()
            if token.lastgroup == "string":
                continue
            if i + 1 < len(self.words) and (word in (";", "{", "}") or word == "else"):
                statements.add(i + 1)
            if word in ("if", "for", "while") and i + 1 < len(self.words) and self.words[i + 1] == "(":
                close = self.partner[i + 1]
                statements.add(close + 1)
                inner = self.words[i + 2:close]
                if word == "if" and ";" not in inner:
                    self.add(i, "negate the condition", "condition",
                             [(self.tokens[i + 1].end(), f"{on} != static_cast<bool>("),
                              (self.tokens[close].start(), ")")])
            if word in RELATIONS and i > 0 and self.spaced(i):
                before = self.tokens[i - 1]
                # Texts are put together and never taken apart.
                is_text = word == "+" and ("string" in (before.lastgroup, self.tokens[i + 1].lastgroup) or
                                          "to_string" in self.words[i + 1:i + 4] or "DisplayPath" in self.words[i + 1:i + 4])
                if not is_text and (before.lastgroup in ("name", "number") or before.group() in (")", "]", "}")):
                    name, closing = RELATIONS[word]
                    if before.group() not in ("return", "case", "operator", "template"):
                        self.add(i, f"{word} to {OTHERS[word]}", "operator",
                                 [(end, f" quilon_mutants::{name}(@) {closing}")])
            if word in ("&&", "||") and self.spaced(i):
                stop = self.operand_end(i + 1)
                if stop is not None:
                    guard = f"({on} || (" if word == "&&" else f"(!{on} && ("
                    self.add(i, f"without what is right of {word}", "logic",
                             [(self.tokens[i + 1].start(), guard), (self.tokens[stop - 1].end(), "))")])
            if token.lastgroup == "number" and self.words[i - 1] not in ("case", "[", "<", "{") \
                    and self.words[i + 1] not in (">", "]"):
                is_real = re.search(r"[.]|^\d+[eE]", word) and not word.startswith("0x")
                change = f" * (1 + {on}))" if is_real else f" + {on})"
                if not (is_real and float(word.rstrip("fF").replace("'", "")) == 0.0):
                    self.add(i, f"{word} twice" if is_real else f"{word} plus 1", "constant", [(begin, "("), (end, change)])
            if word == "return" and self.words[i + 1] not in (";", "{"):
                stop = i + 1
                while self.words[stop] != ";":
                    stop = self.partner[stop] if self.words[stop] in OPENING else stop
                    stop += 1
                self.add(i, "return another value", "return",
                         [(end, " quilon_mutants::Return(@, "), (self.tokens[stop].start(), ")")])
        for i in sorted(statements):
            stop = self.statement_end(i) if i < len(self.words) else None
            if stop is not None:
                self.add(i, "leave the statement out", "statement", [(self.tokens[i].start(), f"if ({on}) {{}} else ")])

    def rewritten(self):
        """The text with all breaks; lines keep their numbers."""
        edits = []
        for order, site in enumerate(self.sites):
            if not site.is_built():
                continue
            for part, (offset, text) in enumerate(site.edits):
                edits.append((offset, part, order if part == 0 else -order, text.replace("@", str(site.number))))
        # What ends at an offset comes before what begins there.
        out, at = [], 0
        for offset, part, _, text in sorted(edits, key=lambda edit: (edit[0], -edit[1], edit[2])):
            out += [self.text[at:offset], text]
            at = offset
        out.append(self.text[at:])
        up = "../" * self.path.count("/")
        head = (f'#include "{up}quilon_mutants.h"\n#pragma clang diagnostic ignored "-Weverything"\n'
                f'#line 1 "{os.path.basename(self.path)}"\n')
        return head + "".join(out) if edits else self.text


def write_if_other(path, text):
    """Keeps the time of a file that stays as it is: what is built of it is still good."""
    data = text if isinstance(text, bytes) else text.encode()
    try:
        with open(path, "rb") as file:
            if file.read() == data:
                return
    except OSError:
        pass
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(data)


def make_tree(sources):
    tracked = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT,
                             check=True, stdout=subprocess.PIPE).stdout
    changed = {source.path for source in sources}
    for name in tracked.decode().split("\0"):
        path = os.path.join(ROOT, name)
        if not name or name in changed or not os.path.isfile(path):
            continue
        with open(path, "rb") as file:
            write_if_other(os.path.join(TREE, name), file.read())
        shutil.copymode(path, os.path.join(TREE, name))
    write_if_other(os.path.join(TREE, "quilon_mutants.h"), RUNTIME)


def load_json(name, default):
    try:
        with open(os.path.join(STATE, name), encoding="utf-8") as file:
            return json.load(file)
    except (OSError, ValueError):
        return default


def save_json(name, value):
    path = os.path.join(STATE, name)
    with open(path + ".new", "w", encoding="utf-8") as file:
        json.dump(value, file)
    os.replace(path + ".new", path)


def run_quietly(command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8", errors="replace",
                          check=False, **options)


def test_targets():
    """The test programs of TESTS by their names in the build."""
    listing = run_quietly(["ninja", "-C", BUILD, "-t", "targets", "all"]).stdout
    paths = re.findall(r"^(tests/\S+): CXX_EXECUTABLE_LINKER", listing, re.M)
    chosen = [path for path in paths if any(re.fullmatch(pattern.replace("*", r"[^/]*"), path) for pattern in TESTS) and
              (not ARGUMENTS.tests or any(path.startswith(prefix) for prefix in ARGUMENTS.tests))]
    if not chosen:
        sys.exit("mutants.py: no test programs found in the build:\n" + listing[-2000:])
    return sorted(chosen)


def build(sources):
    """Builds the test programs; breaks that do not compile are dropped."""
    for source in sources:
        if not os.path.exists(os.path.join(TREE, source.path)):
            write_if_other(os.path.join(TREE, source.path), source.text)
    configured = run_quietly(["cmake", "--preset", "quick", "-D", "QUILON_PRECOMPILE=OFF"], cwd=TREE)
    if configured.returncode != 0:
        sys.exit(configured.stdout[-4000:])
    targets = test_targets()
    by_name = {}
    for source in sources:
        by_name.setdefault(os.path.basename(source.path), []).append(source)
    dropped = set(load_json("dropped.json", []))
    for attempt in range(40):
        for source in sources:
            for site in source.sites:
                site.dropped = site.key() in dropped
            write_if_other(os.path.join(TREE, source.path), source.rewritten())
        names = [os.path.basename(target) for target in targets]
        made = run_quietly(["cmake", "--build", BUILD, "-j", str(ARGUMENTS.jobs), "--target", *names, "--", "-k", "0"])
        if made.returncode == 0:
            save_json("dropped.json", sorted(dropped))
            return targets
        before = len(dropped)
        for name, line, column in set(re.findall(r"^(?:\S*/)?(\w+\.(?:cpp|h)):(\d+):(\d+): (?:fatal )?(?:error|note):",
                                                 made.stdout, re.M)):
            for source in by_name.get(name, []):
                here = [site for site in source.sites
                        if site.line == int(line) and site.chosen and site.key() not in dropped]
                # The most doubtful first; all of the line when that was not it.
                doubtful = [site for site in here if site.kind in ("constant", "return")] or here
                dropped.update(site.key() for site in doubtful)
        print(f"mutants.py: build {attempt + 1}: {len(dropped) - before} breaks do not compile", flush=True)
        save_json("dropped.json", sorted(dropped))
        if len(dropped) == before:
            sys.exit("mutants.py: the build fails:\n" + made.stdout[-6000:])
    sys.exit("mutants.py: the build still fails")


def limit():
    os.setsid()
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_BYTES, FILE_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run_test(program, names, seconds, **environment):
    """@return exit code, or None when it did not end"""
    shutil.rmtree(ARGUMENTS.scratch, ignore_errors=True)
    os.makedirs(ARGUMENTS.scratch)
    settings = dict(os.environ, TMPDIR=ARGUMENTS.scratch, **environment)
    process = subprocess.Popen([program, "--gtest_filter=" + ":".join(names), "--gtest_fail_fast", "--gtest_brief=1"],
                               cwd=ARGUMENTS.scratch, env=settings, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, preexec_fn=limit)
    try:
        return process.wait(timeout=seconds)
    except subprocess.TimeoutExpired:
        return None
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()


def list_tests(program):
    names, suite = [], ""
    for line in run_quietly([program, "--gtest_list_tests"]).stdout.split("\n"):
        line = line.split("#")[0].rstrip()
        if line.endswith(".") and not line.startswith(" "):
            suite = line
        elif line.startswith("  "):
            names.append(suite + line.strip())
    return names


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def measure(targets, count, deadline):
    """Seconds of each test, and the breaks that it passes; also how many tests are too slow."""
    libraries = sorted(glob.glob(os.path.join(BUILD, "**", "lib*.so.*"), recursive=True)) + [os.path.join(BUILD, "host", "quilon")]
    shared = "".join(digest(path) for path in libraries if os.path.isfile(path))
    known = load_json("reach.json", {})
    kept = {}
    path = os.path.join(STATE, "reached")
    for target in targets:
        program = os.path.join(BUILD, target)
        mark = hashlib.sha256((digest(program) + shared).encode()).hexdigest()
        entry = known.get(target)
        if entry is None or entry["mark"] != mark:
            entry = {"mark": mark, "tests": {}}
        kept[target] = entry
        for name in list_tests(program):
            if name in entry["tests"]:
                continue
            if time.monotonic() > deadline:
                break
            with open(path, "wb") as file:
                file.write(bytes(count + 1))
            begin = time.monotonic()
            code = run_test(program, [name], SLOWEST_TEST, QUILON_MUTANTS_REACHED=path)
            seconds = time.monotonic() - begin
            with open(path, "rb") as file:
                reached = [n for n, byte in enumerate(file.read()) if byte] if code == 0 else []
            entry["tests"][name] = [seconds, reached]
            if code is not None and code != 0:
                print(f"mutants.py: {target} {name} fails without a break; left out", flush=True)
        save_json("reach.json", {**known, **kept})
    return {(target, name): test for target, entry in kept.items() for name, test in entry["tests"].items()}


def try_site(site, tests):
    """@return "killed: ...", or how it survived"""
    reaching = [(seconds, target, name) for _, seconds, target, name in sorted(
        (seconds * len(reached), seconds, target, name) for (target, name), (seconds, reached) in tests.items()
        if site.number in reached)]
    if not reaching:
        return "not reached"
    spent, at = 0.0, 0
    while at < len(reaching) and spent < ARGUMENTS.seconds_each:
        target = reaching[at][1]
        # A handful by one program, so that a process is not started for each.
        end, expected = at, 0.0
        while end < len(reaching) and end - at < 40 and expected < 2.0 and reaching[end][1] == target:
            expected += reaching[end][0]
            end += 1
        names = [name for _, _, name in reaching[at:end]]
        begin = time.monotonic()
        code = run_test(os.path.join(BUILD, target), names, 10.0 + 5.0 * expected, QUILON_MUTANT=str(site.number))
        spent += time.monotonic() - begin
        if code is None:
            return f"killed: no end, {target}"
        if code != 0:
            return f"killed: {'failure' if code > 0 else 'crash'}, {target}"
        at = end
    return f"survived {at} of {len(reaching)} tests"


def explanations():
    """Breaks that change nothing that anybody could see: file, what is broken, the line's text."""
    found = {}
    if os.path.exists(EXPLAINED):
        with open(EXPLAINED, encoding="utf-8") as file:
            for line in file:
                if line.strip() and not line.startswith("#"):
                    path, what, text, why = line.rstrip("\n").split(" | ")
                    found[path, what, text.strip()] = why
    return found


def report(sample, results, total, dropped):
    explained = explanations()
    folders, survivors = {}, []
    for site in sample:
        result = results.get(site.key())
        if result is None:
            continue
        folder = os.path.dirname(site.path)
        row = folders.setdefault(folder, [0, 0, 0, 0])
        row[0] += 1
        if result["end"].startswith("killed"):
            row[1] += 1
        elif (site.path, site.what, site.text) in explained:
            row[2] += 1
        else:
            row[3] += 1
            survivors.append(f"{site.path}:{site.line}:{site.column}: {site.what} ({result['end']})\n    {site.text}")
    out = [f"{total} breaks compile, {dropped} do not", "",
           f"{'folder':36} {'tried':>6} {'killed':>7} {'explained':>10} {'survived':>9}"]
    for folder, row in sorted(folders.items()):
        out.append(f"{folder:36} {row[0]:6} {row[1]:7} {row[2]:10} {row[3]:9}")
    tried = [sum(row[i] for row in folders.values()) for i in range(4)]
    out.append(f"{'all':36} {tried[0]:6} {tried[1]:7} {tried[2]:10} {tried[3]:9}")
    if tried[0]:
        out.append(f"killed or explained: {100.0 * (tried[1] + tried[2]) / tried[0]:.1f} %")
    out += [""] + survivors
    text = "\n".join(out) + "\n"
    print(text)
    with open(os.path.join(STATE, "report.txt"), "w", encoding="utf-8") as file:
        file.write(text)
    return tried[3]


def main():
    deadline = time.monotonic() + 60.0 * ARGUMENTS.minutes
    os.makedirs(STATE, exist_ok=True)
    paths = sorted({os.path.relpath(path, ROOT) for pattern in SOURCES for path in glob.glob(os.path.join(ROOT, pattern))})
    if ARGUMENTS.only:
        paths = [path for path in paths if any(path.startswith(prefix) for prefix in ARGUMENTS.only)]
    sources = [Source(path) for path in paths]
    number = 0
    for source in sources:
        for site in source.sites:
            number += 1
            site.number = number
    sites = [site for source in sources for site in source.sites]
    sites.sort(key=lambda site: hashlib.sha256(f"{ARGUMENTS.seed} {site.key()}".encode()).digest())
    # Of ten one or two do not compile. Programs with all breaks of all sources would be slow to build and to run.
    for site in sites[ARGUMENTS.sample * 5 // 4:] if ARGUMENTS.sample else []:
        site.chosen = False
    make_tree(sources)
    targets = build(sources)
    compiled = [site for site in sites if site.is_built()]
    sample = compiled[:ARGUMENTS.sample] if ARGUMENTS.sample else compiled
    if ARGUMENTS.list:
        for site in sample:
            print(f"{site.number} {site.path}:{site.line}:{site.column}: {site.what}: {site.text}")
        return 0
    tests = measure(targets, number, deadline)
    mark = hashlib.sha256(json.dumps(sorted((target, entry["mark"]) for target, entry in load_json("reach.json", {}).items()))
                          .encode()).hexdigest()
    files = {source.path: hashlib.sha256(source.text.encode()).hexdigest() for source in sources}
    results = {key: result for key, result in load_json("results.json", {}).items()
               if result["file"] == files.get(key.split(": ")[0], result["file"]) and
               (result["tests"] == mark or result["end"].startswith("killed"))}
    for at, site in enumerate(sample):
        if site.key() in results or not site.path.startswith(tuple(ARGUMENTS.tried or [""])):
            continue
        if time.monotonic() > deadline:
            print(f"mutants.py: out of time after {at} of {len(sample)} breaks; call again to go on")
            break
        end = try_site(site, tests)
        results[site.key()] = {"end": end, "file": files[site.path], "tests": mark}
        save_json("results.json", results)
        print(f"{at + 1}/{len(sample)} {site.path}:{site.line} {site.what}: {end}", flush=True)
    dropped = sum(site.chosen and site.dropped for site in sites)
    return 1 if report(sample, results, len(compiled), dropped) else 0


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--sample", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--minutes", type=float, default=60 * 24)
    parser.add_argument("--only", action="append")
    parser.add_argument("--try", dest="tried", action="append")
    parser.add_argument("--tests", action="append")
    parser.add_argument("--seconds-each", type=float, default=60)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--scratch", default=os.path.join(STATE, "scratch"))
    parser.add_argument("--list", action="store_true")
    ARGUMENTS = parser.parse_args()
    sys.exit(main())
