"""A large result file, made for a measurement, and the measuring of a command."""

import os
import random
import subprocess
import sys
import time


def write_results(path, nodes, steps=None, megabytes=None):
    """A .frd file of tetrahedra, with displacements and stresses of so many steps, or until it has so many megabytes.

    Rows of a step are made once: their digits say nothing about speed.
    """
    numbers = random.Random(1)
    rows = {
        count: "".join(
            " -1%10d" % node + "".join("%12.5E" % numbers.uniform(-10, 10) for _ in range(count)) + "\n"
            for node in range(1, nodes + 1)
        )
        for count in (3, 6)
    }
    with open(path, "w", encoding="ascii") as out:
        out.write("    1C\n    2C                  %12d                                     1\n" % nodes)
        for node in range(1, nodes + 1):
            out.write(" -1%10d%12.5E%12.5E%12.5E\n" % (node, node % 40, node // 40 % 40, node // 1600))
        out.write(" -3\n    3C                  %12d                                     1\n" % (nodes - 3))
        for node in range(1, nodes - 2):
            out.write(" -1%10d%5d%5d%5d\n -2%10d%10d%10d%10d\n" % (node, 3, 0, 1, node, node + 1, node + 2, node + 3))
        out.write(" -3\n")
        step = results = 0
        while step < steps if steps is not None else out.tell() < megabytes * 1e6:
            step += 1
            for name, count in (("DISP", 3), ("STRESS", 6)):
                results += 1
                out.write("    1PSTEP              %12d%12d%12d\n" % (results, step, 1))
                out.write("  100CL%5d%12.5E%12d                     0%5d           1\n" % (100 + step % 900, step, nodes, step))
                out.write(" -4  %-8s%5d%5d\n" % (name, count, 1))
                for i in range(count):
                    out.write(" -5  C%-7d%5d%5d%5d%5d\n" % (i + 1, 1, 2, i + 1, 0))
                out.write(rows[count] + " -3\n")
        out.write(" 9999\n")


def measure(command, environment=None, codes=(0,)):
    """@return seconds, and the most memory of a process in MiB; ends this program where the command ends with another code

    A small process starts it: the memory of a process counts from the most of who starts it.
    """
    starter = subprocess.run([sys.executable, __file__, *map(str, command)], env=environment, stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE)
    seconds, mebibytes, code = starter.stdout.split()
    if int(code) not in codes:
        sys.exit(f"{' '.join(map(str, command))}: {starter.stderr.decode()}")
    return float(seconds), float(mebibytes)


def start(command):
    """Prints seconds, MiB and exit code of a command."""
    begin = time.perf_counter()
    with subprocess.Popen(command, stdout=subprocess.DEVNULL) as process:
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - begin
        process.returncode = os.waitstatus_to_exitcode(status)
    print(seconds, usage.ru_maxrss / 1024, process.returncode)


if __name__ == "__main__":
    start(sys.argv[1:])
