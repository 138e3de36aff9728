"""Bulk calls of the package beside the same loops in C++, in turns: seconds of the best, and the ratio.

usage: PYTHONPATH=BUILD/python python3 bulk_bench.py BUILD/python/quilon_python_loop [NUM_VALUES] [RUNS] [TURNS]

Fails when a ratio is above 1.2.
"""

import subprocess
import sys
import time

import numpy as np

import quilon


def best(runs, function):
    seconds = []
    for _ in range(runs):
        start = time.perf_counter()
        function()
        seconds.append(time.perf_counter() - start)
    return min(seconds)


def main(loop, count="1000000", runs="5", turns="3"):
    rng = np.random.default_rng(1)
    ids = rng.permutation(np.arange(int(count), dtype=np.int32) // 8 + 1)
    values = rng.normal(size=(int(count), 6))
    cases = {
        "average": lambda: quilon.AverageField(6).add(ids, values),
        "statistics": lambda: quilon.AverageField(6, statistics=True).add(ids, values),
        "mises": lambda: quilon.component(values, "mises"),
    }
    python, native = {}, {}
    for _ in range(int(turns)):
        told = subprocess.run([loop, count, runs], capture_output=True, text=True, check=True).stdout
        for name, seconds in (line.split() for line in told.splitlines()):
            native[name] = min(native.get(name, np.inf), float(seconds))
        for name, function in cases.items():
            python[name] = min(python.get(name, np.inf), best(int(runs), function))
    print(f"{'case':12} {'C++ s':>9} {'Python s':>9} {'ratio':>6}")
    for name in cases:
        print(f"{name:12} {native[name]:9.4f} {python[name]:9.4f} {python[name] / native[name]:6.2f}")
    return 0 if all(python[name] <= 1.2 * native[name] for name in cases) else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
