#!/usr/bin/env python3
"""Reads a working database on disk and prints every value in a plain form.

usage: database_reader.py NAME.fed [CATALOGUE.md]

Written from docs/database-format.md and docs/onf-catalogue.md (CATALOGUE.md) alone, with h5py and xxhash. A line per
name, block, key value and record, as onf_text_reader.py prints a text database; blocks are sorted. Every checksum is
checked, and every value is taken from the HDF5 data set that shows it.
"""

import bisect
import os
import re
import struct
import sys

import h5py
import xxhash

INDEX_NAMES = ["iteration", "onf", "index-2", "load-case", "substep", "analysis", "increment", "index-7", "index-8",
               "layer", "index-10", "index-11", "index-12", "index-13"]
FIELDS = {"I": "i", "i": "i", "F": "f", "D": "d", "d": "d", "V": "ddd", "T": "dddddd",
          "S": "s*", "Lb": "i*", "lb": "i*", "Db": "d*"}
FORMAT_VERSIONS = (1, 2)
MANIFEST_VERSIONS = (1, 2, 3)
USER_BLOCK = 512
HEADER_BYTES = {1: 80, 2: 144}
COMMIT = 1
MOST_COMMIT_BYTES = 1 << 20


class Damage(Exception):
    """What is wrong, and where."""


def checksum(data):
    return xxhash.xxh3_64_intdigest(data)


class Catalogue:
    """Entity kinds of ONF ids."""

    def __init__(self, path):
        self.kinds = {}
        self.ranges = []
        with open(path, encoding="utf-8") as file:
            for line in file:
                cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
                if len(cells) < 4 or not re.match(r"\d+(-\d+)?$", cells[0]):
                    continue
                kind = int(cells[2].split()[0])
                first, _, last = cells[0].partition("-")
                if last:
                    self.ranges.append((int(first), int(last), kind))
                else:
                    self.kinds[int(first)] = kind

    def kind(self, onf):
        if onf in self.kinds:
            return self.kinds[onf]
        return next((kind for first, last, kind in self.ranges if first <= onf <= last), 14)


class Bytes:
    """Takes numbers from bytes, least byte first."""

    def __init__(self, data, name):
        self.data = data
        self.at = 0
        self.name = name

    def take(self, layout):
        size = struct.calcsize("<" + layout)
        if self.at + size > len(self.data):
            raise Damage(f"{self.name}: ends too early")
        values = struct.unpack_from("<" + layout, self.data, self.at)
        self.at += size
        return values if len(values) > 1 else values[0]

    def text(self):
        return self.take(f"{self.take('I')}s")

    def many(self, read):
        return [read() for _ in range(self.take("Q"))]


class Segment:
    def __init__(self, folder, entry, path=None):
        number, self.first, self.last, self.bytes, index_offset, index_bytes, index_checksum = entry
        self.path = path or os.path.join(folder, f"segment-{number:06d}.h5")
        if os.path.getsize(self.path) != self.bytes:
            self.fail("has not the size that the manifest says")
        header = read_header(self.path)
        if header is None or header["entry"] != tuple(entry):
            self.fail("its header is damaged, or another than the manifest says")
        self.version = header["version"]
        self.sets = []
        try:
            self.file = h5py.File(self.path, "r")
            self.file.visititems(self.note)
        except OSError as error:
            self.fail(f"HDF5 cannot read it: {error}")
        self.sets.sort(key=lambda data_set: data_set[0])
        self.offsets = [data_set[0] for data_set in self.sets]
        self.read_index(self.read((index_offset, index_bytes, index_checksum)))
        if self.version >= 2:
            self.check_parts(header, (index_offset, index_bytes, index_checksum))

    def fail(self, message):
        raise Damage(f"{self.path}: {message}")

    def note(self, name, item):
        if isinstance(item, h5py.Dataset) and item.id.get_storage_size() > 0:
            self.sets.append((item.id.get_offset(), item.id.get_storage_size(), name, None))

    def read(self, place):
        """The bytes of a place, from the data set that holds them."""
        offset, size, expected = place
        if size == 0:
            return b""
        at = bisect.bisect_right(self.offsets, offset) - 1
        begin, stored, name, data = self.sets[at]
        if data is None:
            try:
                data = self.file[name][()].tobytes()
            except OSError as error:
                self.fail(f"HDF5 cannot read it: {error}")
            self.sets[at] = (begin, stored, name, data)
        if at < 0 or len(data) != stored or offset + size > begin + stored:
            self.fail(f"no data set has the {size} bytes from {offset}")
        found = data[offset - begin:offset - begin + size]
        if checksum(found) != expected:
            self.fail(f"the checksum of {size} bytes from {offset} in /{name} is wrong")
        return found

    def check_places(self):
        """Every checksum that the index has."""
        for place in [place for _, _, place in self.pieces] + [extent["keys"] for extent in self.extents] + \
                [column["place"] for column in self.columns]:
            self.read(place)

    def check_parts(self, header, index):
        """The copies, HDF5's structure, and what lies between all parts."""
        with open(self.path, "rb") as file:
            data = file.read()
        places = [(0, USER_BLOCK), index[:2], (header["copy"], index[1]), header["structure"][:2],
                  (self.bytes - HEADER_BYTES[2], HEADER_BYTES[2])]
        places += [place[:2] for _, _, place in self.pieces] + [extent["keys"][:2] for extent in self.extents]
        places += [column["place"][:2] for column in self.columns]
        end = 0
        for offset, size in sorted(place for place in places if place[1] > 0):
            if offset < end:
                self.fail(f"places overlap at byte {offset}")
            if any(data[end:offset]):
                self.fail(f"bytes {end} to {offset - 1} lie between its parts and are not zero")
            end = offset + size
        if data[header["copy"]:][:index[1]] != data[index[0]:][:index[1]]:
            self.fail("the copies of its index differ")
        if data[-HEADER_BYTES[2]:] != data[:HEADER_BYTES[2]] or end != len(data):
            self.fail("the copies of its header differ")
        offset, size, expected = header["structure"]
        if checksum(data[offset:offset + size]) != expected:
            self.fail("the checksum of its HDF5 structure is wrong")

    def read_index(self, data):
        index = Bytes(data, self.path)
        if index.take("8sI") != (b"QUILIDX\n", self.version):
            self.fail("its index is none of this version")
        self.blocks = index.many(lambda: {"uid": index.take("Q"), "values": index.take("14i"), "mask": index.take("I"),
                                          "shift": index.take("I"), "format": index.text().decode()})
        self.deleted = index.many(lambda: index.take("Q"))
        self.pieces = index.many(lambda: (index.take("I"), index.take("I"), index.take("3Q")))
        has_names = index.take("I")
        names = index.many(lambda: (index.take("I"), index.text()))
        self.names = names if has_names else None
        self.extents = index.many(lambda: {"head": index.take("QIIIIIIII"), "keys": index.take("3Q")})
        self.columns = index.many(lambda: {"place": index.take("3Q"), "statistics": index.take("QQdd")})
        if index.at != len(data):
            self.fail("its index has bytes behind its end")


class LinkedSegment(Segment):
    """Rows of another database's segment; a file beside it has the index, and record indices that are others there."""

    def __init__(self, folder, entry):
        number, self.first, self.last, size, index_offset, index_bytes, index_checksum, self.linked = entry
        shared = os.path.join(folder, f"segment-{number:06d}.h5")
        header = read_header(shared)
        if header is None:
            raise Damage(f"{shared}: its header is damaged")
        self.path = os.path.join(folder, f"segment-{number:06d}.index")
        self.base = Segment(folder, header["entry"], shared)
        self.base.check_places()
        own = read_header(self.path)
        with open(self.path, "rb") as file:
            self.own = file.read()
        if own is None or own["entry"] != tuple(entry[:7]) or own["structure"][1] != self.linked:
            self.fail("its header is damaged, or another than the manifest says")
        if self.base.bytes != self.linked or len(self.own) != size - self.linked:
            self.fail("it or the file that it is about has not the size that the manifest says")
        self.version = 2
        self.read_index(self.read((index_offset, index_bytes, index_checksum)))

    def read(self, place):
        offset, size, expected = place
        if size == 0 or offset < self.linked:
            return self.base.read(place)
        found = self.own[offset - self.linked:offset - self.linked + size]
        if checksum(found) != expected:
            self.fail(f"the checksum of {size} bytes from {offset - self.linked} is wrong")
        return found


def open_segment(folder, entry):
    return Segment(folder, entry) if len(entry) == 7 else LinkedSegment(folder, entry)


def read_header(path):
    """What the first bytes of a segment say; nothing when they are not whole."""
    with open(path, "rb") as file:
        data = file.read(USER_BLOCK)
    if len(data) < USER_BLOCK or data[:8] != b"QUILSEG\n":
        return None
    version, flags = struct.unpack_from("<II", data, 8)
    if version not in FORMAT_VERSIONS:
        raise Damage(f"{path}: of format version {version}")
    used = HEADER_BYTES[version]
    if checksum(data[:used - 8]) != struct.unpack_from("<Q", data, used - 8)[0] or any(data[used:]):
        return None
    header = {"version": version, "entry": struct.unpack_from("<7Q", data, 16), "commit": None}
    if version >= 2:
        copy, *structure = struct.unpack_from("<4Q", data, 72)
        header.update(copy=copy, structure=tuple(structure))
        if flags & COMMIT:
            header["commit"] = struct.unpack_from("<3Q", data, 104)
    return header


def commit_line(link, generation, next_block, entry):
    """The line of a commit in the manifest, and its link."""
    number, _, _, size, index_offset, index_bytes, index_checksum = entry
    line = b"commit %d %d %d %d %d %d %016x " % (generation, next_block, number, size, index_offset, index_bytes,
                                               index_checksum)
    link = checksum(b"%016x" % link + line)
    return line + b"%016x\n" % link, link


def take_line(line, link, generation, number):
    """A commit that was appended to the manifest, and its link; nothing when the line is not whole or no commit."""
    try:
        words = line.decode("ascii").split(" ")
        next_block = int(words[2])
        entry = (number, number, number) + tuple(int(word) for word in words[4:7]) + (int(words[7], 16),)
    except (ValueError, IndexError):
        return None
    same, next_link = commit_line(link, generation, next_block, entry)
    return (entry, next_link) if same == line else None


def find_commit(folder, number):
    """The header of the segment if it is a commit by itself and whole, every byte of it; nothing otherwise."""
    path = os.path.join(folder, f"segment-{number:06d}.h5")
    if not os.path.exists(path) or os.path.getsize(path) > MOST_COMMIT_BYTES:
        return None
    try:
        header = read_header(path)
        if header is None or header["commit"] is None or header["entry"][:3] != (number, number, number):
            return None
        Segment(folder, header["entry"]).check_places()
    except Damage:
        return None
    return header


def has_later_commit(folder, number, generation):
    """Each commit is on the disk before the next begins: behind one that did not happen there is none."""
    for name in os.listdir(folder):
        match = re.fullmatch(r"segment-(\d{6,})\.h5", name)
        is_linked = os.path.exists(os.path.join(folder, name.replace(".h5", ".index")))
        header = find_commit(folder, int(match[1])) if match and not is_linked and int(match[1]) > number else None
        if header is not None and header["commit"][0] > generation:
            return True
    return False


def take_segment(folder, link, generation, number):
    """A commit of which only its segment tells, and its link; nothing when there is none."""
    header = find_commit(folder, number)
    if header is not None and (header["commit"][0], header["commit"][2]) == (generation, link):
        _, next_link = commit_line(link, generation, header["commit"][1], header["entry"])
        return header["entry"], next_link
    if os.path.exists(os.path.join(folder, f"segment-{number:06d}.h5")) and has_later_commit(folder, number, generation):
        raise Damage(f"{folder}: the commit of segment {number} is damaged, as those behind it tell")
    return None


def read_manifest(folder):
    path = os.path.join(folder, "manifest")
    with open(path, "rb") as file:
        text = file.read()
    version = re.match(rb"quilon-database (\d+)\n", text)
    if not version or int(version[1]) not in MANIFEST_VERSIONS:
        raise Damage(f"{path}: of none of the format versions {MANIFEST_VERSIONS}")
    body, _, rest = text.partition(b"\nchecksum ")
    link = checksum(body + b"\n")
    if rest[:17] != b"%016x\n" % link:
        raise Damage(f"{path}: its checksum is wrong")
    words = [line.split(" ") for line in body.decode().split("\n")]
    said = {line[0]: int(line[1]) for line in words}
    entries = [tuple(int(word) for word in line[1:7]) + (int(line[-1], 16),) + tuple(int(word) for word in line[7:-1])
               for line in words if line[0] in ("segment", "linked")]
    if int(version[1]) == 1:
        return entries
    generation, number = said["generation"], said["next-segment"]
    lines = rest[17:].splitlines(keepends=True)
    while True:
        generation += 1
        taken = take_line(lines.pop(0), link, generation, number) if lines else None
        if taken is None:
            lines = []
            taken = take_segment(folder, link, generation, number)
        if taken is None:
            return entries
        entry, link = taken
        entries.append(entry)
        number += 1


def plain_double(data):
    bits, = struct.unpack("<Q", data)
    value, = struct.unpack("<d", data)
    return f"nan(0x{bits:016x})" if value != value else value.hex()


def plain_float(data):
    bits, = struct.unpack("<I", data)
    value, = struct.unpack("<f", data)
    return f"nan(0x{bits:08x})" if value != value else value.hex()


PLAIN = {"d": (8, plain_double), "f": (4, plain_float), "i": (4, lambda data: str(struct.unpack("<i", data)[0]))}


def plain_values(letter, data):
    size, convert = PLAIN[letter]
    return [convert(data[at:at + size]) for at in range(0, len(data), size)]


def read_rows(segment, extent, fields, columns):
    """Keys and plain values of an extent's rows."""
    _, _, first, count, flags, first_key, _, _, _ = extent["head"]
    keys = range(first_key, first_key + count) if flags & 1 else struct.unpack(f"<{count}I", segment.read(extent["keys"]))
    rows = [[] for _ in range(count)]
    at = 0
    for field in fields:
        layout = FIELDS[field]
        data = segment.read(columns[at]["place"])
        at += 1
        if not layout.endswith("*"):
            width = len(data) // count
            for row in range(count):
                rows[row] += plain_values(layout[0], data[row * width:(row + 1) * width])
            continue
        lengths = struct.unpack(f"<{count}I", data)
        data = segment.read(columns[at]["place"])
        at += 1
        size = 1 if layout[0] == "s" else PLAIN[layout[0]][0]
        begin = 0
        for row, length in enumerate(lengths):
            part = data[begin:begin + length * size]
            begin += length * size
            rows[row] += (["string:" + part.hex()] if layout[0] == "s"
                          else [f"[{length}]"] + plain_values(layout[0], part))
        if begin != len(data):
            segment.fail("lengths of lists and their elements disagree")
    if at != len(columns):
        segment.fail("a block has another number of columns than its record format")
    return first, list(keys), rows


def read_database(folder, catalogue):
    segments = [open_segment(folder, entry) for entry in read_manifest(folder)]
    deleted = {uid for segment in segments for uid in segment.deleted}
    blocks, rows, ids, names = {}, {}, {}, []
    for segment in segments:
        for block in segment.blocks:
            blocks[block["uid"]] = block
    for segment in segments:
        names = segment.names if segment.names is not None else names
        for kind, first, place in segment.pieces:
            known = ids.setdefault(kind, [])
            if first != len(known) + 1:
                segment.fail(f"pieces of the id map of kind {kind} do not follow each other")
            data = segment.read(place)
            known += struct.unpack(f"<{len(data) // 4}i", data)
        at = 0
        for extent in segment.extents:
            uid, columns = extent["head"][0], segment.columns[at:at + extent["head"][7]]
            at += extent["head"][7]
            if uid in deleted:
                continue
            first, keys, values = read_rows(segment, extent, fields_of(blocks[uid]), columns)
            for number, key, row in zip(range(first, first + len(keys)), keys, values):
                rows.setdefault(uid, {})[number] = (key, row)
    out = [f"name {onf} {name.hex()}" for onf, name in names]
    listed = []
    for uid, block in blocks.items():
        if uid not in deleted:
            listed.append(plain_block(block, rows.get(uid, {}), ids, catalogue))
    for block in sorted(listed):
        out += block
    return out


def fields_of(block):
    return [field for field in re.findall("Lb|lb|Db|[IiFDdSVTb]", block["format"]) if field != "b"]


def plain_block(block, rows, ids, catalogue):
    lines = ["block"]
    for index, (name, value) in enumerate(zip(INDEX_NAMES, block["values"])):
        if block["mask"] >> index & 1:
            lines.append(f"{name} {value}")
        elif value != 0:
            lines.append(f"unset {name} {value}")
    lines.append("fields " + " ".join(fields_of(block)))
    kind = catalogue.kind(block["values"][1])
    lines.append("by " + ("id" if kind < 15 else "index"))
    known = ids.get(kind, [])
    records = []
    for key, values in rows.values():
        number = known[key - 1] if kind < 15 and 1 <= key <= len(known) else key
        records.append((number, " ".join([str(number)] + values)))
    return lines + [line for _, line in sorted(records)]


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3) or sys.argv[1].startswith("-"):
        print(__doc__.strip())
        sys.exit(0 if sys.argv[1:] in (["-h"], ["--help"]) else 2)
    beside = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs", "onf-catalogue.md")
    try:
        lines = read_database(sys.argv[1], Catalogue(sys.argv[2] if len(sys.argv) == 3 else beside))
    except Damage as damage:
        sys.exit(str(damage))
    print("\n".join(lines))
