"""What Dask's scheduling costs beside the work: a table of docs/python.md.

    PYTHONPATH=build/release/python python3 python/bench/scheduling.py [CHUNKS [SHAPES [POINTS]]]

CHUNKS (20) of SHAPES (50,000) outlines of POINTS (16) each go through a local cluster of one worker process with one
thread, so that nothing waits for a second one.  The chunks are at the worker before the clock starts, and the
answers stay there: what is left is the work, which each task tells, and what the scheduler adds.  Then the whole way,
chunks there and columns back.  The least of five rounds.
"""
from __future__ import annotations

import sys
import time
from collections.abc import Callable
from typing import Any

import numpy as np
from distributed import Client, LocalCluster, wait

import gxshape as gx
from gxshape import distributed

ROUNDS = 5


def timed(shapes: gx.Shapes, function: str, only: list[str] | None) -> tuple[float, gx.batch.Table]:
    """Answer a chunk, and tell the seconds that it took."""
    start = time.perf_counter()
    table = distributed.compute(shapes, function, only, None)
    return time.perf_counter() - start, table


def seconds(_: tuple[float, Any]) -> float:
    """Return the first of a task's answer, without the columns."""
    return _[0]


def outlines(chunks: int, shapes: int, points: int) -> list[gx.Shapes]:
    """Return chunks of wavy outlines."""
    t = np.linspace(0, 2 * np.pi, points, endpoint=False)
    random = np.random.default_rng(1)
    made = []
    for _ in range(chunks):
        radii = random.uniform(1, 5, (shapes, 1)) * (1 + 0.2 * np.cos(3 * t))
        coords = np.stack([radii * np.cos(t), radii * np.sin(t)], -1) + random.uniform(0, 1e4, (shapes, 1, 2))
        made.append(gx.Shapes(coords.reshape(-1, 2), np.arange(shapes + 1) * points))
    return made


def least(way: Callable[[], tuple[float, float]]) -> tuple[float, float]:
    """Return (wall, work) of the round with the least of what is not work."""
    rounds = [way() for _ in range(ROUNDS)]
    return min(rounds, key=lambda one: one[0] - one[1])


def main(chunks: int, shapes: int, points: int) -> None:
    """Print the table."""
    made = outlines(chunks, shapes, points)
    print(f"{chunks} chunks of {shapes:,} outlines of {points} points, {made[0].nbytes / 1e6:.1f} MB each\n")
    print("| what | work s | all s | a task beside its work, ms | share |\n|---|---|---|---|---|")
    with LocalCluster(n_workers=1, threads_per_worker=1, processes=True, dashboard_address=None) as cluster, \
            Client(cluster) as client:
        there = client.scatter(made, direct=True)
        for function, only in (("measure", None), ("describe", ["feret_max", "circularity"]), ("describe", None)):
            if function == "describe" and only is None and chunks * shapes * points > 20_000_000:
                continue

            def in_the_cluster() -> tuple[float, float]:
                start = time.perf_counter()
                tasks = client.map(timed, there, function=function, only=only, pure=False)
                wait(tasks)
                wall = time.perf_counter() - start
                return wall, sum(client.gather(client.map(seconds, tasks, pure=False)))

            def all_the_way() -> tuple[float, float]:
                start = time.perf_counter()
                tasks = [client.submit(timed, one, function, only, pure=False) for one in made]
                answers = client.gather(tasks)
                return time.perf_counter() - start, sum(one[0] for one in answers)

            for name, way in (("scheduling", in_the_cluster), ("there and back", all_the_way)):
                wall, work = least(way)
                print(f"| {function} {'of two' if only else ''}, {name} | {work:.3f} | {wall:.3f} | "
                      f"{(wall - work) / chunks * 1e3:.2f} | {(wall - work) / wall:.1%} |", flush=True)


if __name__ == "__main__":
    numbers = [int(one) for one in sys.argv[1:]]
    main(*numbers, *(20, 50_000, 16)[len(numbers):])
