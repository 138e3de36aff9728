#!/usr/bin/env python3
"""Breaks the decks of a folder, one thing in each copy.

usage: break_decks.py DECKS OUT [--count N] [--largest BYTES]

DECKS holds decks that the solver runs (*.inp). OUT receives NAME-KIND.inp with one break each, and breaks.tsv that says
what was broken: file, kind, line from 1. The same decks give the same breaks each time.
"""

import argparse
import pathlib
import random
import re
import sys

NUMBER = re.compile(r"[+-]?(\d+\.?\d*|\.\d+)([eEdD][+-]?\d+)?$")
SOLIDS = {"C3D4": 4, "C3D6": 6, "C3D8": 8, "C3D8I": 8, "C3D10": 10, "C3D20": 20, "C3D20R": 20}
BEFORE_STEPS = ("SOLIDSECTION", "SHELLSECTION", "BEAMSECTION", "EQUATION", "MPC", "RIGIDBODY", "SPRING", "TIMEPOINTS",
                "NODALTHICKNESS", "NORMAL")
IN_STEPS = ("CLOAD", "DLOAD", "STATIC", "NODEPRINT", "ELPRINT", "NODEFILE", "TEMPERATURE", "FREQUENCY", "DFLUX", "FILM")
NEEDING_DATA = ("ELASTIC", "PLASTIC", "FREQUENCY", "BUCKLE", "MODALDYNAMIC", "STEADYSTATEDYNAMICS", "TRANSFORM", "SPRING",
                "ORIENTATION", "DEPVAR", "GAP", "DASHPOT", "MASS")


class Deck:
    def __init__(self, path):
        self.name = path.stem
        self.lines = path.read_text(encoding="latin-1").splitlines()
        self.cards = []  # keyword, parameters, line of the card, lines of its data; lines from 0
        for number, line in enumerate(self.lines):
            text = re.sub(r"\s", "", line).upper()
            if not text or text.startswith("**"):
                continue
            if text.startswith("*"):
                keyword, *parameters = text[1:].split(",")
                self.cards.append((keyword, parameters, number, []))
            elif self.cards:
                self.cards[-1][3].append(number)

    def of(self, *keywords):
        return [card for card in self.cards if card[0] in keywords and card[3]]

    def block(self, card):
        """Lines of a card and its data: first, last."""
        return card[2], (card[3] or [card[2]])[-1]

    def step(self):
        return next((card for card in self.cards if card[0] == "STEP"), None)

    def before_step(self, card):
        return self.step() is not None and card[2] < self.step()[2]


def with_field(deck, line, field, text):
    lines = list(deck.lines)
    fields = lines[line].split(",")
    if len(fields) <= field:
        return None
    fields[field] = text
    lines[line] = ",".join(fields)
    return lines, line


def fields_of(deck, line):
    return [field.strip() for field in deck.lines[line].split(",")]


def moved(deck, card, before):
    first, last = deck.block(card)
    block = deck.lines[first:last + 1]
    if first < before <= last:
        return None
    lines = deck.lines[:before] + block + deck.lines[before:]
    shift = len(block) if before <= first else 0
    del lines[first + shift:last + shift + 1]
    return lines, min(before, len(lines) - 1)


def word(deck, pick):
    """A word where a number belongs."""
    cards = [card for card in deck.cards if card[3] and card[0] not in ("HEADING", "EQUATION", "MPC", "EQUATIONF")]
    card = pick.choice(cards)
    line = pick.choice(card[3])
    places = [i for i, field in enumerate(fields_of(deck, line)[:4]) if NUMBER.match(field)]
    return with_field(deck, line, pick.choice(places), "abc") if places else None


def degree(deck, pick):
    """A degree of freedom that there is none."""
    card = pick.choice(deck.of("BOUNDARY", "CLOAD"))
    line = pick.choice(card[3])
    fields = fields_of(deck, line)
    fields[1:3] = ["7", "7" if card[0] == "BOUNDARY" else fields[2]]
    return deck.lines[:line] + [",".join(fields)] + deck.lines[line + 1:], line


def isotropic(deck, pick):
    cards = [card for card in deck.of("ELASTIC") if not any(p.startswith("TYPE=") for p in card[1])]
    return pick.choice(pick.choice(cards)[3])


def ratio_missing(deck, pick):
    """Young's modulus alone."""
    line = isotropic(deck, pick)
    return deck.lines[:line] + [deck.lines[line].split(",")[0]] + deck.lines[line + 1:], line


def modulus(deck, pick):
    """Young's modulus that is not positive."""
    return with_field(deck, isotropic(deck, pick), 0, pick.choice(("0.", "-210000.")))


def ratio(deck, pick):
    """Poisson's ratio of one half or more."""
    return with_field(deck, isotropic(deck, pick), 1, pick.choice(("0.5", "0.7")))


# Where the nodes of an element turned inside out stand, from 0.
MIRRORED = {
    4: (1, 0, 2, 3),
    6: (3, 4, 5, 0, 1, 2),
    8: (4, 5, 6, 7, 0, 1, 2, 3),
    10: (1, 0, 2, 3, 4, 6, 5, 8, 7, 9),
    20: (4, 5, 6, 7, 0, 1, 2, 3, 12, 13, 14, 15, 8, 9, 10, 11, 16, 17, 18, 19),
}


def inverted(deck, pick):
    """An element turned inside out."""
    card, solid = pick.choice([(card, p[5:]) for card in deck.of("ELEMENT") for p in card[1]
                               if p.startswith("TYPE=") and p[5:] in SOLIDS])
    ids = []
    lines = []
    for line in card[3]:
        ids += [int(field) for field in fields_of(deck, line) if field]
        lines.append(line)
        if len(ids) > SOLIDS[solid]:
            break
    if len(ids) != SOLIDS[solid] + 1:
        return None
    turned = [ids[0]] + [ids[1 + place] for place in MIRRORED[SOLIDS[solid]]]
    text = [",".join(map(str, turned[i:i + 10])) + ("," if i + 10 < len(turned) else "") for i in range(0, len(turned), 10)]
    return deck.lines[:lines[0]] + text + deck.lines[lines[-1] + 1:], lines[0]


def output_label(deck, pick):
    """An output label that the solver does not know."""
    return with_field(deck, pick.choice(deck.of("ELPRINT"))[3][0], 0, "STRS")


def load_label(deck, pick):
    """A load that the solver does not know."""
    return with_field(deck, pick.choice(pick.choice(deck.of("DLOAD"))[3]), 1, "Q3")


def into_step(deck, pick):
    """A card of the model behind *STEP."""
    cards = [card for card in deck.cards if card[0] in BEFORE_STEPS and deck.before_step(card)]
    end = next(card for card in deck.cards if card[0] == "ENDSTEP")
    return moved(deck, pick.choice(cards), end[2])


def before_step(deck, pick):
    """A card of a step before it."""
    cards = [card for card in deck.cards if card[0] in IN_STEPS and not deck.before_step(card)]
    return moved(deck, pick.choice(cards), deck.step()[2])


def missing_node(deck, pick):
    """A node that is not there."""
    line = pick.choice(pick.choice(deck.of("ELEMENT"))[3])
    return with_field(deck, line, 1, "987654")


def missing_set(deck, pick):
    """A set that is not there."""
    card = pick.choice([card for card in deck.cards
                        if card[0] in ("SOLIDSECTION", "SHELLSECTION", "BEAMSECTION") and card[1]])
    line = card[2]
    text, count = re.subn(r"(?i)elset\s*=\s*[^,\s]+", "ELSET=NOSUCHSET", deck.lines[line])
    return (deck.lines[:line] + [text] + deck.lines[line + 1:], line) if count else None


def missing_material(deck, pick):
    """A material that is not there."""
    card = pick.choice([card for card in deck.cards if card[0].endswith("SECTION") and card[1]])
    line = card[2]
    text, count = re.subn(r"(?i)material\s*=\s*[^,\s]+", "MATERIAL=NOSUCHMAT", deck.lines[line])
    return (deck.lines[:line] + [text] + deck.lines[line + 1:], line) if count else None


def loaded_set(deck, pick):
    """A load on a set that is not there."""
    card = pick.choice(deck.of("BOUNDARY", "CLOAD", "DLOAD", "TEMPERATURE"))
    return with_field(deck, pick.choice(card[3]), 0, "NOSUCHSET")


def element_type(deck, pick):
    """An element type that there is none."""
    card = pick.choice(deck.of("ELEMENT"))
    text, count = re.subn(r"(?i)type\s*=\s*[^,\s]+", "TYPE=C3D9", deck.lines[card[2]])
    return (deck.lines[:card[2]] + [text] + deck.lines[card[2] + 1:], card[2]) if count else None


def no_data(deck, pick):
    """A card without the data that it needs."""
    card = pick.choice(deck.of(*NEEDING_DATA))
    if any(parameter.startswith("SOLVER=") for parameter in card[1]):
        return None
    return [line for i, line in enumerate(deck.lines) if i not in card[3]], card[2]


def no_end(deck, pick):
    """A step that begins inside of a step."""
    end = pick.choice([card for card in deck.cards if card[0] == "ENDSTEP"][:-1])
    return deck.lines[:end[2]] + deck.lines[end[2] + 1:], end[2]


def no_step(deck, pick):
    """A step without *STEP."""
    line = deck.step()[2]
    return deck.lines[:line] + deck.lines[line + 1:], line


KINDS = (word, degree, ratio_missing, modulus, ratio, inverted, output_label, load_label, into_step, before_step,
         missing_node, missing_set, missing_material, loaded_set, element_type, no_data, no_end, no_step, word, word)


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n\n")[1][len("usage: "):])
    parser.add_argument("decks", type=pathlib.Path)
    parser.add_argument("out", type=pathlib.Path)
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--largest", type=int, default=40000)
    options = parser.parse_args()
    decks = [Deck(path) for path in sorted(options.decks.glob("*.inp")) if path.stat().st_size <= options.largest]
    if not decks:
        sys.exit(f"break_decks: no decks in {options.decks}")
    options.out.mkdir(parents=True, exist_ok=True)
    pick = random.Random(20)
    rows = []
    for attempt in range(100 * options.count):
        if len(rows) == options.count:
            break
        kind = KINDS[len(rows) % len(KINDS)]
        deck = pick.choice(decks)
        name = f"{deck.name}-{kind.__name__}.inp"
        try:
            broken = kind(deck, pick)
        except (IndexError, StopIteration, ValueError, AttributeError, TypeError):
            broken = None  # the deck has nothing of that kind to break
        if broken is None or (options.out / name).exists():
            continue
        lines, line = broken
        (options.out / name).write_text("\n".join(lines) + "\n", encoding="latin-1")
        rows.append((name, kind.__name__, line + 1))
    with open(options.out / "breaks.tsv", "w", encoding="ascii") as out:
        for row in rows:
            print(*row, sep="\t", file=out)


if __name__ == "__main__":
    main()
