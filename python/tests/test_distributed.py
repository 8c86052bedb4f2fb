"""Chunks through Dask: the same digest for every cutting, checkpoints, a worker that is killed; GNU parallel."""
import json
import os
import shutil
import signal
import subprocess
import time
from pathlib import Path

import numpy as np
import pytest

import gxshape as gx
from shapes import SQUARE, random_shapes

dask = pytest.importorskip("dask")
from gxshape import distributed  # noqa: E402

SOAK = os.environ.get("GXSHAPE_SOAK") == "1"


def slow_measure(shapes, function, only, checkpoint):
    """What a worker does, slowed down so that there is a half-way."""
    time.sleep(0.1)
    return distributed.compute(shapes, function, only, checkpoint)


def test_the_digest_does_not_depend_on_the_cutting():
    shapes = random_shapes(503)
    whole = distributed.digest(gx.batch.measure(shapes))
    for chunk in (1, 7, 100, 503, 50_000):
        with dask.config.set(scheduler="synchronous"):
            assert distributed.digest(distributed.measure(shapes, chunk=chunk)) == whole
    assert distributed.digest(gx.batch.measure(shapes[:-1])) != whole
    moved = gx.Shapes(np.nextafter(shapes.coords, np.inf), shapes.ring_offsets)
    assert distributed.digest(gx.batch.measure(moved)) != whole
    described = distributed.describe(shapes, only=["feret_max", "holes"], chunk=100)
    assert list(described) == ["id", "status", "feret_max", "holes", "error"]
    assert described["feret_max"].chunks == ((100,) * 5 + (3,),) and described["holes"].dtype == np.int64
    assert distributed.digest(described) == distributed.digest(gx.batch.describe(shapes, only=["feret_max", "holes"]))


def test_files_are_read_one_after_the_other_and_errors_keep_their_rows(tmp_path):
    paths = []
    for k in range(3):
        paths.append(tmp_path / f"{k}.wkt")
        bad = "POLYGON ((0 x))\n" if k == 1 else ""
        paths[-1].write_text("POLYGON ((0 0, 4 0, 4 4))\n" * 5 + bad)
    columns = dask.compute(distributed.measure(paths, chunk=2), scheduler="synchronous")[0]
    assert columns["status"].tolist() == [0] * 10 + [20] + [0] * 5 and columns["error"][10] == 1
    assert columns["area"][:10].tolist() == [8.0] * 10 and len(columns["id"]) == 16
    assert [len(part) for part in distributed.chunks(paths, chunk=2)] == [2, 2, 1, 2, 2, 2, 2, 2, 1]
    with pytest.raises(gx.ArgumentError, match="chunk"):
        list(distributed.chunks(paths, chunk=0))


def test_text_ids_and_delayed_sources_go_through():
    named = gx.Shapes.from_objects([SQUARE] * 5, ids=["a", "b", 3, "d", "e"])
    columns = dask.compute(distributed.measure(named, chunk=2), scheduler="synchronous")[0]
    assert columns["id"].tolist() == ["a", "b", 3, "d", "e"]
    delayed = dask.delayed(random_shapes)(20)
    assert dask.compute(distributed.measure(delayed), scheduler="synchronous")[0]["area"].tolist() == \
        gx.batch.measure(random_shapes(20))["area"].tolist()
    assert dask.sizeof.sizeof(named) == named.nbytes
    assert dask.sizeof.sizeof(gx.batch.measure(named)) > 5 * 10 * 8


def test_a_checkpoint_saves_what_was_answered(tmp_path, monkeypatch):
    shapes, calls = random_shapes(40), []
    whole = distributed.digest(gx.batch.measure(shapes))
    monkeypatch.setitem(distributed._FUNCTIONS, "measure", lambda *a, **k: calls.append(1) or gx.batch.measure(*a, **k))

    def run(source=shapes, **options):
        calls.clear()
        columns = distributed.measure(source, chunk=10, checkpoint=tmp_path, **options)
        calls.clear()  # one call is for the names of the columns
        with dask.config.set(scheduler="synchronous"):
            return distributed.digest(columns)

    assert run() == whole and len(calls) == 4 and len(list(tmp_path.glob("*.npz"))) == 4
    assert run() == whole and len(calls) == 0
    files = sorted(tmp_path.glob("*.npz"))
    files[0].write_bytes(files[0].read_bytes()[:100])
    files[1].unlink()
    assert run() == whole and len(calls) == 2
    run(only=["area"])
    assert len(calls) == 4
    changed = gx.Shapes(shapes.coords.copy(), shapes.ring_offsets)
    changed.coords[0, 0] += 1.0
    assert run(changed) != whole and len(calls) == 1
    text = gx.loads("POLYGON ((0 0, 1 0, 1 1))\nPOLYGON ((x", errors="emit")
    first, second = run(text), run(text)
    assert first == second and len(calls) == 0
    again = distributed.compute(text, "measure", None, str(tmp_path))
    assert gx.batch.messages(again)[1]


def test_what_is_no_number_comes_back_from_a_checkpoint_as_it_was(tmp_path):
    shapes = gx.Shapes.from_objects([SQUARE, [[0, 0], [4, 0], [4, 4], [2, 1], [0, 4]], [[0, 0], [1, 1]]],
                                    ids=["007", 3, "b"])
    whole = gx.batch.describe(shapes, only=["defects", "wall_from", "area"])
    for _ in range(2):
        columns = distributed.describe(shapes, only=["defects", "wall_from", "area"], chunk=2, checkpoint=tmp_path)
        computed = dask.compute(columns, scheduler="synchronous")[0]
        assert computed["id"].tolist() == ["007", 3, "b"] and computed["defects"].tolist() == whole["defects"].tolist()
        assert [list(map(type, computed[name])) for name in ("id", "defects")] == [[str, int, str], [list] * 3]
        assert distributed.digest(computed) == distributed.digest(whole)
    assert len(list(tmp_path.glob("*.npz"))) == 2


def test_one_worker_is_killed_half_way_and_the_job_ends(tmp_path):
    cluster_module = pytest.importorskip("distributed")
    count, chunk = (1_000_000, 50_000) if SOAK else (2000, 100)
    shapes = random_shapes(count)
    whole = distributed.digest(gx.batch.measure(shapes))
    here = str(Path(__file__).parent)
    os.environ["PYTHONPATH"] = here + os.pathsep + os.environ.get("PYTHONPATH", "")
    with cluster_module.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None,
                                     local_directory=str(tmp_path)) as cluster, cluster_module.Client(cluster) as client:
        parts = list(distributed.chunks(shapes, chunk=chunk))
        assert len(parts) == 20
        futures = [client.submit(slow_measure, part, "measure", None, str(tmp_path / "done"), pure=False)
                   for part in parts]
        before = client.run(os.getpid)
        while sum(future.done() for future in futures) < 5:
            time.sleep(0.02)
        os.kill(next(iter(before.values())), signal.SIGKILL)
        tables = client.gather(futures)
        assert set(client.run(os.getpid).values()) != set(before.values())
    columns = {name: np.concatenate([table[name] for table in tables]) for name in tables[0]}
    assert distributed.digest(columns) == whole
    # What was answered is there: the same job again, without a cluster, computes nothing.
    assert len(list((tmp_path / "done").glob("*.npz"))) == 20
    columns = distributed.measure(shapes, chunk=chunk, checkpoint=tmp_path / "done")
    assert distributed.digest(columns) == whole


def test_gnu_parallel_over_lines_gives_the_lines_of_one_run():
    tool = os.environ.get("GXSHAPE_TOOL", "")
    if not (tool and shutil.which("parallel")):
        pytest.skip("needs the tool (GXSHAPE_TOOL) and GNU parallel")
    lines = gx.dumps(random_shapes(400), format="jsonl") + b"\n{broken\n" + gx.dumps([SQUARE], format="jsonl")
    command = [tool, "measure", "--lines"]
    serial = subprocess.run(command, input=lines, capture_output=True, check=True).stdout
    for block in ("20k", "1M"):
        piped = subprocess.run(["parallel", "--will-cite", "--pipe", "--block", block, "-j", "2", "-k", *command],
                               input=lines, capture_output=True, check=True).stdout
        assert piped == serial
    answers = [json.loads(line) for line in serial.splitlines()]
    assert len(answers) == 403 and "error" in answers[401] and answers[402]["area"] == 16
    table = gx.batch.measure(random_shapes(400))
    assert [answer["area"] for answer in answers[:400]] == table["area"].tolist()
