"""From a result to a figure: how a quantity develops over the steps, and how it is spread over the nodes at the end.

usage: python3 figure.py RESULT FIGURE.png
"""

import sys

import matplotlib.pyplot as plt

import quilon


def main(result: str, figure: str) -> None:
    with quilon.open(result) as db:
        blocks = db.blocks("stress@an=1")
        times = [block.time for block in blocks]
        worst = [block.component("mises").max() for block in blocks]
        mesh, mises = db.mesh(), blocks[-1].component("mises")
        rows = mesh.indices(blocks[-1].ids)

    fig, (left, right) = plt.subplots(1, 2, figsize=(10, 4), layout="constrained")
    left.plot(times, worst, "o-")
    left.set(xlabel="time", ylabel="largest equivalent stress", ylim=(0, None))
    dots = right.scatter(mesh.points[rows, 0], mesh.points[rows, 1], c=mises, s=30)
    right.set(xlabel="x", ylabel="y", aspect="equal", title=f"time {times[-1]:g}")
    fig.colorbar(dots, label="equivalent stress")
    fig.savefig(figure, dpi=120)


if __name__ == "__main__":
    main(*sys.argv[1:])
