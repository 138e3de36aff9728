#!/usr/bin/env python3
"""Reads a folder in the ONF text format and prints every value in a plain form.

usage: onf_text_reader.py FOLDER

Written from docs/onf-text-format.md alone, with the standard library of Python 3. A line per name, block, key value and
record; doubles as hexadecimal floats, so that two listings are equal when all bits are.
"""

import os
import re
import struct
import sys

INDEX_NAMES = ["iteration", "onf", "index-2", "load-case", "substep", "analysis", "increment", "index-7", "index-8",
               "layer", "index-10", "index-11", "index-12", "index-13"]
BLANKS = b" \t\r"
ESCAPES = {b'"': b'"', b"\\": b"\\", b"n": b"\n", b"r": b"\r", b"t": b"\t"}
TOKEN = re.compile(rb'"(?:[^"\\]|\\.)*"|[^ \t\r]+')
NUMBER = re.compile(rb"-?[0-9][0-9.eE+-]*\Z")


class Lines:
    """The lines of one file, as lists of words."""

    def __init__(self, path):
        with open(path, "rb") as file:
            text = file.read()
        if not text.endswith(b"\n"):
            sys.exit(f"{path}: does not end with a line feed")
        self.path = path
        self.lines = text[:-1].split(b"\n")
        self.next = 0

    def fail(self, message):
        sys.exit(f"{self.path}:{self.next}: {message}")

    def words(self):
        if self.next == len(self.lines):
            self.fail("ends too early")
        self.next += 1
        return TOKEN.findall(self.lines[self.next - 1])

    def peek_key(self):
        return self.lines[self.next].partition(b":")[0].strip(BLANKS).decode() if self.next < len(self.lines) else ""

    def value(self, key):
        """The words behind `key:`."""
        if self.peek_key() != key:
            self.next += 1
            self.fail(f"expected {key}:")
        self.next += 1
        return TOKEN.findall(self.lines[self.next - 1].partition(b":")[2])

    def end(self):
        if self.next != len(self.lines):
            self.fail("has lines behind its end")


def string(word):
    return re.sub(rb"\\(x[0-9a-f]{2}|.)", lambda m: bytes([int(m[1][1:], 16)]) if len(m[1]) == 3 else ESCAPES[m[1]],
                  word[1:-1])


def plain_float(word, is_double):
    """A number as a hexadecimal float; not-a-numbers as their bits."""
    word = b"nan(0x" + (b"7ff8000000000000" if is_double else b"7fc00000") + b")" if word == b"nan" else word
    if word.startswith(b"nan(0x"):
        return word.decode()
    if word not in (b"inf", b"-inf") and not NUMBER.match(word):
        raise ValueError(f"no number: {word!r}")
    value = float(word)
    # Rounded to a double first and then to a float: the shortest text of a float lies too near to it for the two
    # roundings to end elsewhere.
    return (value if is_double else struct.unpack("f", struct.pack("f", value))[0]).hex()


def plain_integer(word):
    return str(int(word))


def double(word):
    return plain_float(word, True)


FIELDS = {"I": (1, plain_integer), "i": (1, plain_integer), "F": (1, lambda word: plain_float(word, False)),
          "D": (1, double), "d": (1, double), "V": (3, double), "T": (6, double),
          "S": (1, lambda word: "string:" + string(word).hex()),
          "Lb": (None, plain_integer), "lb": (None, plain_integer), "Db": (None, double)}


def plain_record(fields, words):
    plain = [plain_integer(words[0])]
    at = 1
    for field in fields:
        count, convert = FIELDS[field]
        if count is None:
            count = int(words[at].strip(b"[]"))
            plain.append(f"[{count}]")
            at += 1
        plain += [convert(word) for word in words[at:at + count]]
        at += count
    if at != len(words):
        raise ValueError(f"{len(words)} words, expected {at}")
    return " ".join(plain)


def read_block(path, out):
    lines = Lines(path)
    if lines.value("onf-text-block") != [b"1"]:
        lines.fail("version is not 1")
    for name in INDEX_NAMES:
        for key in (name, "unset " + name):
            if lines.peek_key() == key:
                out.append(f"{key} {int(lines.value(key)[0])}")
    word = lines.value("record-format")[0].decode()
    fields = [] if word == "-" else [f for f in re.findall("Lb|lb|Db|[IiFDdSVTb]", word) if f != "b"]
    out.append("fields " + " ".join(fields))
    out.append("by " + lines.value("records-by")[0].decode())
    for _ in range(int(lines.value("records")[0])):
        words = lines.words()
        try:
            out.append(plain_record(fields, words))
        except (ValueError, IndexError) as error:
            lines.fail(str(error))
    lines.end()


def read_folder(folder):
    lines = Lines(os.path.join(folder, "index"))
    out = []
    if lines.value("onf-text-index") != [b"1"]:
        lines.fail("version is not 1")
    for _ in range(int(lines.value("names")[0])):
        onf, name = lines.value("name")
        out.append(f"name {int(onf)} {string(name).hex()}")
    for _ in range(int(lines.value("blocks")[0])):
        name = lines.value("block")[0].decode()
        path = os.path.join(folder, name)
        if name.endswith(".onf.new") and not os.path.exists(path):
            path = path[:-len(".new")]
        out.append("block")
        read_block(path, out)
    lines.end()
    return out


if __name__ == "__main__":
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        print(__doc__.strip())
        sys.exit(0 if sys.argv[1:] in (["-h"], ["--help"]) else 2)
    print("\n".join(read_folder(sys.argv[1])))
