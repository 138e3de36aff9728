"""Writing: blocks, averages, forces, commits."""

from __future__ import annotations

import pathlib

import numpy as np
import pytest

import quilon
from conftest import json_of


def state_of(path: pathlib.Path) -> dict[str, bytes]:
    return {file.name: file.read_bytes() for file in path.iterdir() if file.name != "lock"}


@pytest.mark.parametrize("name", ["new.fed", "new.onf"])
def test_what_is_written_is_read_back(name: str, tmp_path: pathlib.Path) -> None:
    rng = np.random.default_rng(2)
    blocks = {"displacement": rng.normal(size=(4, 3)), "stress": rng.normal(size=(4, 6)), "temperature": rng.normal(size=4)}
    with quilon.open(tmp_path / name, "w") as db:
        for kind, values in blocks.items():
            db.write(kind, [2, 3, 5, 7], values, lc=1, sub=2)
        db.write("time", [1, 2], [0.5, 1.0], an=1, lc=1)
        db.write("coordinates", [2, 3, 5, 7], np.eye(4, 3))
        db.write("element-nodes", [1, 2], [[2, 3, 5], [2, 3, 5, 7]])
        db.write("element-type", [1, 2], [[7, 1], [3, 2]])
        assert len(db.blocks()) == 7
    with quilon.open(tmp_path / name) as db:
        for kind, values in blocks.items():
            block = db.block(kind)
            assert block.key == {"it": 0, "lc": 1, "sub": 2} and block.ids.tolist() == [2, 3, 5, 7]
            assert np.array_equal(block.values, values.reshape(4, -1))
        assert db.block("time").values.ravel().tolist() == [0.5, 1.0]
        assert [row["nodes"] for row in db.block("element-nodes").rows()] == [[2, 3, 5], [2, 3, 5, 7]]
        mesh = db.mesh()
        assert mesh.materials["S3"].tolist() == [1]


def test_block_is_replaced_as_a_whole(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "a.fed"
    with quilon.open(path, "w") as db:
        db.write("displacement", [1, 2], np.ones((2, 3)), lc=1)
        db.write("displacement", [1], np.ones((1, 3)), lc=2)
    with quilon.open(path, "w") as db:
        db.write("displacement", [9], np.zeros((1, 3)), lc=1)
        db.write("displacement", [8], np.zeros((1, 3)), lc=1)
        assert db.block("displacement", lc=1).ids.tolist() == [8]
        assert db.block("displacement", lc=2).ids.tolist() == [1]
    with quilon.open(path) as db:
        assert [block.ids.tolist() for block in db.blocks("displacement")] == [[8], [1]]


@pytest.mark.parametrize("name", ["a.fed", "a.onf"])
def test_exception_leaves_the_database_as_it_was(name: str, tmp_path: pathlib.Path) -> None:
    path = tmp_path / name
    with pytest.raises(RuntimeError):
        with quilon.open(path, "w") as db:
            db.write("displacement", [1], [[1, 2, 3]])
            raise RuntimeError
    assert not path.exists() or list(path.iterdir()) in ([], [path / "lock"])
    with quilon.open(path, "w") as db:
        db.write("displacement", [1], [[1, 2, 3]])
    before = state_of(path)
    with pytest.raises(RuntimeError):
        with quilon.open(path, "w") as db:
            db.write("displacement", [1], [[4, 5, 6]])
            db.write("velocity", [1], [[4, 5, 6]])
            raise RuntimeError
    assert state_of(path) == before
    db = quilon.open(path, "w")
    db.write("displacement", [1], [[4, 5, 6]])
    db.close()
    assert state_of(path) == before


def test_commits_in_between_and_arrays_of_before(tmp_path: pathlib.Path) -> None:
    with quilon.open(tmp_path / "a.fed", "w") as db:
        db.write("displacement", [1], [[1, 2, 3]])
        assert db.commit() == 1
        before = db.block("displacement").values
        db.write("displacement", [1], [[4, 5, 6]])
        assert db.block("displacement").values.tolist() == [[4, 5, 6]]
        db.commit()
        assert before.tolist() == [[1, 2, 3]]
        assert db.block("displacement").values.tolist() == [[4, 5, 6]]


def test_one_writer_at_a_time(tmp_path: pathlib.Path) -> None:
    with quilon.open(tmp_path / "a.fed", "w") as db:
        db.write("displacement", [1], [[1, 2, 3]])
        with pytest.raises(quilon.Error, match="a.fed"):
            quilon.open(tmp_path / "a.fed", "w")
    quilon.open(tmp_path / "a.fed", "w").close()


def test_kinds_of_ones_own(tmp_path: pathlib.Path) -> None:
    path = tmp_path / "a.fed"
    with quilon.open(path, "w") as db:
        damage = db.user_kind("damage", 1)
        assert db.user_kind("damage", 1) == damage
        db.write(damage, [1, 2], [0.5, 0.25])
        db.write(db.user_kind("plastic strain", 6, on="elements"), [1], np.ones((1, 6)))
    assert [entry["kind"] for entry in json_of("show", path, "all")] == ["damage", "plastic strain"]
    with quilon.open(path) as db:
        assert db.block("damage").values.ravel().tolist() == [0.5, 0.25]


def test_wrong_shapes_and_types_tell_what_came(tmp_path: pathlib.Path) -> None:
    with quilon.open(tmp_path / "a.fed", "w") as db:
        for ids, values, message in [
            ([1, 2], np.ones((3, 3)), r"values: found float64 of shape \(3, 3\), expected numbers of shape \(2, components\)"),
            ([1, 2], np.ones((2, 6)), "kind displacement has 3 components, found values with 6"),
            ([1.5], np.ones((1, 3)), r"ids: found float64 of shape \(1,\), expected integers of shape \(n,\)"),
            ([[1]], np.ones((1, 3)), r"ids: found int64 of shape \(1, 1\)"),
            ([2**31], np.ones((1, 3)), "ids: found 2147483648, expected -2147483648 to 2147483647"),
            ([1, 1], np.ones((2, 3)), "id 1 is given twice, expected each id once"),
            ([1], [["a", "b", "c"]], "values: found <U1 of shape"),
        ]:
            with pytest.raises(quilon.Error, match=message):
                db.write("displacement", ids, values)
        with pytest.raises(quilon.Error, match="unknown key 'loadcase', expected it, an, lc"):
            db.write("displacement", [1], np.ones((1, 3)), loadcase=1)
        with pytest.raises(quilon.Error, match="key lc: found 'last', expected a number"):
            db.write("displacement", [1], np.ones((1, 3)), lc="last")  # type: ignore[arg-type]
        with pytest.raises(quilon.Error, match="kind element-type holds integers, found 1.5"):
            db.write("element-type", [1], [[1.5, 1]])
        with pytest.raises(quilon.Error, match="holds lists or texts"):
            db.write("material", [1], [[1.0]])
        with pytest.raises(quilon.Error, match="kind: found None"):
            db.write(None, [1], [[1.0]])  # type: ignore[arg-type]
        with pytest.raises(quilon.Error, match="expected 1, 3 or 6"):
            db.user_kind("x", 2)
        assert db.blocks() == []
    with pytest.raises(quilon.Error, match="found the extension .txt"):
        quilon.open(tmp_path / "a.txt", "w")


def welford(ids: np.ndarray, values: np.ndarray) -> dict[int, tuple[int, np.ndarray, np.ndarray]]:
    """The library's formula, one value after the other."""
    found: dict[int, tuple[int, np.ndarray, np.ndarray]] = {}
    for id_, value in zip(ids.tolist(), values):
        if id_ not in found:
            found[id_] = (1, value.copy(), np.zeros_like(value))
            continue
        count, mean, m2 = found[id_]
        delta = value - mean
        mean = mean + delta / (count + 1)
        found[id_] = (count + 1, mean, m2 + (value - mean) * delta)
    return found


@pytest.mark.parametrize("components", [1, 3, 6])
def test_averages_are_those_of_a_loop_to_the_last_bit(components: int) -> None:
    rng = np.random.default_rng(3)
    ids = rng.integers(1, 50, 1000)
    values = rng.normal(size=(1000, components)) * 1e3
    plain, statistics = quilon.AverageField(components), quilon.AverageField(components, statistics=True)
    for part in np.array_split(np.arange(1000), 7):
        plain.add(ids[part], values[part])
        statistics.add(ids[part], values[part])
    expected = welford(ids, values)
    sums = {id_: np.zeros(components) for id_ in expected}
    for id_, value in zip(ids.tolist(), values):
        sums[id_] = sums[id_] + value
    found, means = plain.average()
    assert found.tolist() == sorted(expected) and found.dtype == np.int32
    assert np.array_equal(means, [sums[id_] / expected[id_][0] for id_ in sorted(expected)])
    assert np.array_equal(statistics.average()[1], [expected[id_][1] for id_ in sorted(expected)])
    assert np.array_equal(
        statistics.variance()[1], [expected[id_][2] / expected[id_][0] for id_ in sorted(expected)]
    )
    assert plain.count()[1].tolist() == [expected[id_][0] for id_ in sorted(expected)]
    plain.reset()
    found, means = plain.average()
    assert found.tolist() == sorted(expected) and not means.any() and not plain.count()[1].any()


def test_average_of_nothing_and_wrong_arguments() -> None:
    field = quilon.AverageField(6)
    ids, values = field.average()
    assert ids.shape == (0,) and values.shape == (0, 6)
    with pytest.raises(quilon.Error, match="expected one that is made with statistics=True"):
        field.variance()
    with pytest.raises(quilon.Error, match=r"values: found float64 of shape \(2, 3\), expected numbers of shape \(2, 6\)"):
        field.add([1, 2], np.ones((2, 3)))
    with pytest.raises(quilon.Error, match="layer is 1, expected 0 to 0"):
        field.add([1], np.ones((1, 6)), layer=1)
    with pytest.raises(quilon.Error, match="components is 2, expected 1, 3 or 6"):
        quilon.AverageField(2)
    with pytest.raises(quilon.Error, match="components: found '6', expected an integer"):
        quilon.AverageField("6")  # type: ignore[arg-type]


def test_fields_are_saved(tmp_path: pathlib.Path) -> None:
    field = quilon.AverageField(6, statistics=True, layers=2)
    for layer in (0, 1):
        field.add([4, 4, 5], np.arange(18.0).reshape(3, 6) + layer, layer=layer)
    with quilon.open(tmp_path / "a.fed", "w") as db:
        field.save(db, "stress", lc=1, sub=1)
        field.save(db, "nodal-stress-variance", "variance", lc=1, sub=1)
        with pytest.raises(quilon.Error, match="what: found 'median', expected average or sum or variance"):
            field.save(db, "stress", "median")
    with quilon.open(tmp_path / "a.fed") as db:
        for layer in (1, 2):
            assert np.array_equal(db.block("stress", layer=layer).values, field.average(layer - 1)[1])
            assert np.array_equal(db.block("nodal-stress-variance", layer=layer).values, field.variance(layer - 1)[1])


def test_forces_of_elements_are_summed_and_saved(tmp_path: pathlib.Path) -> None:
    forces = quilon.ElementForces()
    elements, nodes = [7, 7, 7, 9], [1, 2, 1, 2]
    values = np.arange(12.0).reshape(4, 3)
    forces.add(elements, nodes, values)
    with quilon.open(tmp_path / "a.fed", "w") as db:
        forces.save(db, lc=1, sub=1)
        with pytest.raises(quilon.Error, match="nodes: found 1, expected 2 as of elements"):
            forces.add([1, 2], [1], np.ones((2, 3)))
    with quilon.open(tmp_path / "a.fed") as db:
        ids, positions, found = db.block("element-forces").points()
        assert ids.tolist() == [7, 7, 9] and positions.tolist() == [1, 2, 1]
        assert np.array_equal(found, [values[0] + values[2], values[1], values[3]])
        assert [row["nodes"] for row in db.block("element-nodes").rows()] == [[1, 2], [2]]
