"""A sum of damage over histories: cycles of the signed equivalent stress at each node, an S-N line, Miner's rule.

usage: python3 fatigue.py RESULT OUT.fed STRESS_AT_1E6 SLOPE

N = 1e6 (STRESS_AT_1E6 / S) ** SLOPE cycles of amplitude S; damage is the sum of 1 / N (M. A. Miner, J. Appl. Mech. 12
(1945) A159-A164). Cycles by the rainflow method (ASTM E1049-85): what is left over counts as half cycles.
"""

import sys

import numpy as np

import quilon


def rainflow(history: np.ndarray) -> list[tuple[float, float]]:
    """(amplitude, count) of the cycles of a history; a count is 1 or 0.5."""
    turns = [value for value in history[np.r_[True, np.diff(history) != 0]]]
    points = [turn for i, turn in enumerate(turns)
              if i in (0, len(turns) - 1) or (turn - turns[i - 1]) * (turns[i + 1] - turn) < 0]  # fmt: skip
    cycles, stack = [], []
    for point in points:
        stack.append(point)
        while len(stack) >= 3 and abs(stack[-1] - stack[-2]) >= abs(stack[-2] - stack[-3]):
            amplitude = abs(stack[-2] - stack[-3]) / 2
            if len(stack) == 3:
                cycles.append((amplitude, 0.5))
                del stack[0]
            else:
                cycles.append((amplitude, 1.0))
                del stack[-3:-1]
    return cycles + [(abs(b - a) / 2, 0.5) for a, b in zip(stack, stack[1:])]


def main(result: str, out: str, stress_at_1e6: float, slope: float) -> None:
    with quilon.open(result) as db:
        blocks = db.blocks("stress@an=1")
        ids = blocks[0].ids
        history = np.array([block.component("signed-mises") for block in blocks])  # shape (steps, nodes)
    damage = [
        sum(count / 1e6 * (amplitude / stress_at_1e6) ** slope for amplitude, count in rainflow(node))
        for node in history.T
    ]
    with quilon.open(out, "w") as db:
        db.write(db.user_kind("damage", 1), ids, damage)
    print(f"node {ids[np.argmax(damage)]}: damage {max(damage):.3e} over {len(blocks)} steps")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2], float(sys.argv[3]), float(sys.argv[4]))
