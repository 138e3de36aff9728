"""Many runs of a parameter study in one table: a row a run, as CSV.

usage: python3 study.py TABLE.csv RUN...
"""

import csv
import pathlib
import sys

import quilon


def row_of(run: str) -> dict[str, object]:
    with quilon.open(run) as db:
        stress, displacement = db.blocks("stress")[-1], db.blocks("displacement")[-1]
        mises = stress.component("mises")
        return {
            "run": pathlib.Path(run).stem,
            "nodes": len(db.mesh().point_ids),
            "time": stress.time,
            "largest mises": mises.max(),
            "at node": stress.ids[mises.argmax()],
            "largest displacement": displacement.component("magnitude").max(),
        }


def main(table: str, *runs: str) -> None:
    rows = [row_of(run) for run in runs]
    with open(table, "w", newline="", encoding="utf-8") as file:
        writer = csv.DictWriter(file, rows[0])
        writer.writeheader()
        writer.writerows(rows)


if __name__ == "__main__":
    main(*sys.argv[1:])
