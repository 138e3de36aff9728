"""A regression gate: the results of today's run are those that were accepted.

usage: QUILON_RUN=today.frd QUILON_ACCEPTED=accepted.fed python3 -m pytest test_regression.py
"""

import os

import pytest

import quilon

RUN, ACCEPTED = os.environ["QUILON_RUN"], os.environ["QUILON_ACCEPTED"]


@pytest.mark.parametrize("kind", ["displacement", "stress"])
def test_results_are_those_that_were_accepted(kind: str) -> None:
    report = quilon.diff(ACCEPTED, RUN, rule="peak=1e-4", selection=kind, ignore_missing="both")
    assert report.same, "\n".join([report.summary, *map(str, report.differences)])


def test_stress_stays_below_its_limit() -> None:
    with quilon.open(RUN) as db:
        worst = max(block.component("mises").max() for block in db.blocks("stress"))
    assert worst < 500.0
