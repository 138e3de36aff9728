"""Reading: blocks, arrays, steps, meshes."""

from __future__ import annotations

import gc
import pathlib
import resource
import threading

import numpy as np
import pytest

import quilon
from conftest import FIXTURES, json_of


def values_of_rows(rows: list[dict[str, float]], components: tuple[str, ...]) -> np.ndarray:
    return np.array([[float(row[name]) for name in components] for row in rows])


@pytest.mark.parametrize("source", ["results", "mixed"])
def test_every_block_has_the_ids_and_digits_of_the_program(source: str, request: pytest.FixtureRequest) -> None:
    path = request.getfixturevalue(source)
    with quilon.open(path) as db:
        shown = json_of("show", path, "all")
        blocks = db.blocks()
        assert [block.selection for block in blocks] == [entry["block"] for entry in shown]
        for block, entry in zip(blocks, shown):
            key = {name: entry[name] for name in block.key}
            assert (block.kind, block.onf, block.key) == (entry["kind"], entry["onf"], key)
            assert block.time == entry.get("time")
            assert block.rows() == entry["rows"]
            assert len(block) == len(block.ids)
            try:
                values = block.values
            except quilon.Error as error:
                assert "holds lists or texts" in str(error)
                continue
            if block.kind in ("element-type", "element-section"):
                continue  # shown by names
            first = "index" if "index" in entry["rows"][0] else "id"
            assert block.ids.tolist() == [row[first] for row in entry["rows"]]
            assert values.shape == (len(entry["rows"]), len(block.components))
            assert np.array_equal(values, values_of_rows(entry["rows"], block.components))


def test_reads_result_files_and_text_folders_as_databases(results: pathlib.Path, tmp_path: pathlib.Path) -> None:
    from conftest import run

    assert run("to-onf", results, tmp_path / "text").returncode == 0
    with quilon.open(tmp_path / "text") as text, quilon.open(results) as stored:
        for a, b in zip(text.blocks("stress"), stored.blocks("stress")):
            assert np.array_equal(a.values, b.values) and np.array_equal(a.ids, b.ids)
    with quilon.open(FIXTURES / "b_hex" / "b_hex.frd") as db:
        assert db.block("displacement").values.shape == (45, 3)


def test_values_are_views_that_stay_alive_and_cannot_be_written(results: pathlib.Path) -> None:
    db = quilon.open(results)
    block = db.block("stress")
    values = block.values
    assert not values.flags.owndata and not values.flags.writeable
    assert np.shares_memory(values, block.values)
    assert np.shares_memory(values[3:5], block.component("xy")) and block.component("xy").shape == (45,)
    with pytest.raises(ValueError):
        values[0, 0] = 1.0
    with pytest.raises(ValueError):
        values.setflags(write=True)
    copy, part = values.copy(), values[10:, 2]
    db.close()
    del db, block
    gc.collect()
    assert np.array_equal(values, copy)
    del values
    gc.collect()
    assert np.array_equal(part, copy[10:, 2])


def test_blocks_over_the_same_nodes_share_their_ids(results: pathlib.Path) -> None:
    with quilon.open(results) as db:
        assert np.shares_memory(db.block("stress").ids, db.block("strain").ids)


def test_block_of_several_chunks_is_one_copy_in_the_order_of_ids(tmp_path: pathlib.Path) -> None:
    ids = np.random.default_rng(1).permutation(150_000).astype(np.int32) + 1
    values = ids[:, None] * np.array([[1.0, 0.5, 0.25]])
    with quilon.open(tmp_path / "a.fed", "w") as db:
        db.write("displacement", ids, values, lc=1, sub=1)
    with quilon.open(tmp_path / "a.fed") as db:
        block = db.block("displacement")
        assert np.array_equal(block.ids, np.arange(1, 150_001))
        assert np.array_equal(block.values, block.ids[:, None] * np.array([[1.0, 0.5, 0.25]]))
        assert not block.values.flags.writeable
        assert np.array_equal(block.component("magnitude"), quilon.component(block.values, "magnitude"))


def resident_bytes() -> int:
    return int(pathlib.Path("/proc/self/statm").read_text().split()[1]) * resource.getpagesize()


def test_going_through_steps_keeps_no_memory(tmp_path: pathlib.Path) -> None:
    ids = np.arange(1, 60_001)
    with quilon.open(tmp_path / "many.fed", "w") as db:
        for step in range(1, 61):
            db.write("stress", ids, np.full((len(ids), 6), float(step)), lc=1, sub=step)
    before = 0
    kept: list[np.ndarray] = []
    with quilon.open(tmp_path / "many.fed") as db:
        for step in db.steps():
            (block,) = step.blocks("stress")
            values = block.values
            assert values[-1, 5] == step.key["sub"]
            if step.position == 20:
                before = resident_bytes()
            if step.position > 40:
                kept.append(values)
            if step.position == 40:
                # 20 steps of 2.7 MiB each went by; the cache of a reader holds 32 MiB, a few chunks more are in use.
                assert resident_bytes() - before < 30 << 20
    # 20 steps were kept, which is seen.
    assert resident_bytes() - before > 20 << 20 and len(kept) == 20


def test_selections_attributes_and_steps_choose_blocks(results: pathlib.Path) -> None:
    with quilon.open(results) as db:
        (by_text,) = db.blocks("stress@lc=1,sub=last")
        (by_keys,) = db.blocks("stress", lc=1, sub="last")
        (by_kind,) = db.blocks(kind=521, lc=[1, 2])
        assert by_text.selection == by_keys.selection == by_kind.selection
        assert [block.kind for block in db.blocks("stress,displacement", steps="last")] == [
            "displacement", "nodal-stress",
        ]  # fmt: skip
        assert db.blocks("stress", lc=7) == []
        (step,) = db.steps()
        assert (step.position, step.time, step.quantity) == (1, 1.0, "time")
        assert step.key == {"it": 0, "an": 1, "lc": 1, "sub": 1}
        assert [block.kind for block in step.blocks("coordinates,stress")] == ["nodal-stress"]
        assert len(list(db)) == len(db.blocks())


def test_modes_have_frequencies_as_times() -> None:
    job = FIXTURES / "modal_steps" / "modal_steps"
    with quilon.open(f"{job}.frd") as db:
        modes = [step for step in db.steps() if step.quantity == "frequency"]
        listed = [value for block in db.blocks("frequency") for value in block.values.ravel().tolist()]
        assert modes and all(step.time in listed for step in modes)
        assert all(step.blocks("displacement")[0].time == step.time for step in modes)


def test_points_of_elements_are_arrays(results: pathlib.Path) -> None:
    with quilon.open(results) as db:
        block = db.block("integration-point-stress")
        ids, positions, values = block.points()
        rows = json_of("show", results, "integration-point-stress")[0]["rows"]
        assert ids.tolist() == [row["id"] for row in rows]
        assert positions.tolist() == [row["point"] for row in rows]
        assert np.array_equal(values, values_of_rows(rows, block.components))
        with pytest.raises(quilon.Error, match="has no points"):
            db.block("stress").points()


def test_mesh_is_arrays(mixed: pathlib.Path) -> None:
    with quilon.open(mixed) as db:
        mesh = db.mesh()
        coordinates = db.block("coordinates")
        assert np.array_equal(mesh.points, coordinates.values) and np.array_equal(mesh.point_ids, coordinates.ids)
        lists = {row["id"]: row["nodes"] for row in db.block("element-nodes").rows()}
        seen = 0
        for name, (ids, nodes) in mesh.cells.items():
            assert nodes.shape == (len(ids), {"C3D20": 20, "C3D15": 15, "C3D10": 10}[name])
            assert all(lists[element] == list(of) for element, of in zip(ids.tolist(), nodes.tolist()))
            seen += len(ids)
        assert seen == len(lists)
        for row in db.block("element-set", i11=None).rows() if db.blocks("element-set", i11=None) else []:
            assert mesh.element_sets[row["name"]].tolist() == row["elements"]
        with pytest.raises(quilon.Error, match="ids: found .*, expected ids of nodes of the mesh"):
            mesh.indices([10**6])


def test_mesh_tells_what_decks_call_the_types(results: pathlib.Path, mixed: pathlib.Path) -> None:
    for path in (results, mixed):
        with quilon.open(path) as db:
            mesh = db.mesh()
        found = {}
        for shape, (ids, _) in mesh.cells.items():
            assert mesh.deck_types[shape].shape == ids.shape
            found.update(zip(ids.tolist(), mesh.deck_types[shape].tolist()))
        assert found == {row["id"]: row["type"] for row in json_of("show", path, "element-type")[0]["rows"]}


def test_cells_for_other_packages_are_right_side_out(mixed: pathlib.Path) -> None:
    with quilon.open(mixed) as db:
        mesh = db.mesh()
    cells, types, points = mesh.to_vtk()
    at = 0
    for kind in types:
        count = cells[at]
        corners = points[cells[at + 1 : at + 1 + count]]
        if kind in (25, 12):
            volume = np.dot(np.cross(corners[1] - corners[0], corners[3] - corners[0]), corners[4] - corners[0])
        elif kind in (24, 10):
            volume = np.dot(np.cross(corners[1] - corners[0], corners[2] - corners[0]), corners[3] - corners[0])
        else:
            # The first triangle of a wedge looks away from the second one.
            volume = -np.dot(np.cross(corners[1] - corners[0], corners[2] - corners[0]), corners[3] - corners[0])
        assert volume > 0
        at += count + 1
    assert at == len(cells)
    assert {name for name, _ in mesh.to_meshio_cells()} <= {"hexahedron20", "wedge15", "tetra10"}
    assert sum(len(nodes) for _, nodes in mesh.to_meshio_cells()) == len(types)


def test_pandas_and_xarray_share_the_memory(results: pathlib.Path) -> None:
    pytest.importorskip("pandas")
    pytest.importorskip("xarray")
    with quilon.open(results) as db:
        block = db.block("stress")
        frame = block.to_pandas()
        assert list(frame.columns) == list(block.components) and frame.index.name == "id"
        assert np.shares_memory(frame.to_numpy(), block.values) and frame.attrs["time"] == 1.0
        array = block.to_xarray()
        assert np.shares_memory(array.values, block.values) and array.dims == ("id", "component")
        assert float(array.sel(id=3, component="xy")) == frame.loc[3, "xy"]


def test_missing_package_is_told(results: pathlib.Path, monkeypatch: pytest.MonkeyPatch) -> None:
    import sys

    with quilon.open(results) as db:
        for name, call in (("pandas", db.block("stress").to_pandas), ("xarray", db.block("stress").to_xarray)):
            monkeypatch.setitem(sys.modules, name, None)
            with pytest.raises(quilon.MissingPackageError, match=f"package {name} is not installed"):
                call()


def test_threads_take_turns(results: pathlib.Path) -> None:
    with quilon.open(results) as db:
        expected = {block.selection: block.component("mises") for block in db.blocks("stress,strain")}
        wrong: list[str] = []

        def read() -> None:
            for _ in range(50):
                for block in db.blocks("stress,strain"):
                    if not np.array_equal(block.component("mises"), expected[block.selection]):
                        wrong.append(block.selection)

        threads = [threading.Thread(target=read) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        assert wrong == []


def test_bad_input_tells_what_was_expected(results: pathlib.Path, tmp_path: pathlib.Path) -> None:
    with pytest.raises(quilon.Error, match="no such file or folder, expected a working database") as missing:
        quilon.open(tmp_path / "none.fed")
    assert missing.value.file == str(tmp_path / "none.fed") and missing.value.line is None
    (tmp_path / "bad.frd").write_text("    1C\n -1 nonsense\n")
    with pytest.raises(quilon.Error) as bad:
        quilon.open(tmp_path / "bad.frd")
    assert bad.value.file == str(tmp_path / "bad.frd")
    with pytest.raises(quilon.Error, match="mode: found 'a', expected 'r' or 'w'"):
        quilon.open(results, "a")
    with pytest.raises(quilon.Error, match="path: found 3, expected a path"):
        quilon.open(3)  # type: ignore[arg-type]
    db = quilon.open(results)
    block = db.block("stress")
    with pytest.raises(quilon.Error, match="displacment"):
        db.blocks("displacment")
    with pytest.raises(quilon.Error, match="key lc: found 1.5, expected a number"):
        db.blocks("stress", lc=1.5)
    with pytest.raises(quilon.Error, match="names kinds, expected one of the two"):
        db.blocks("stress", kind="strain")
    with pytest.raises(quilon.Error, match="chooses 0 blocks, expected one"):
        db.block("stress", lc=9)
    with pytest.raises(quilon.Error):
        block.component("nonsense")
    with pytest.raises(quilon.Error, match="holds lists or texts"):
        db.block("element-nodes").values
    with pytest.raises(quilon.Error, match="open to read"):
        db.write("displacement", [1], [[1, 2, 3]])
    db.close()
    db.close()
    for call in (db.blocks, db.steps, db.mesh, lambda: block.values, lambda: block.ids, lambda: block.kind):
        with pytest.raises(quilon.Error, match="the database is closed, expected an open one"):
            call()
