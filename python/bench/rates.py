"""Rates of batches beside shapely's and OpenCV's loops: the tables of docs/python.md.

    PYTHONPATH=build/release/python python3 python/bench/rates.py [SCALE [ROUNDS]]

SCALE (1 by default) multiplies the numbers of shapes and points.  Everything is measured in one run, one after
the other in turns, and the least of the ROUNDS (5) is taken, of wall clock and of processor time each for itself.
Ratios are those of processor time.  On a machine that does other things too, many short rounds (0.02 150) meet a
window in which nothing else ran sooner than a few long ones.
"""
from __future__ import annotations

import sys
import time
from collections.abc import Callable
from typing import Any

import numpy as np

import gxshape as gx

Best = dict[str, tuple[float, float]]  # wall clock, processor time


def least(ways: dict[str, Callable[[], Any]], times: dict[str, float] | None = None) -> Best:
    """Return the least times of each way, all measured in turns; those of samples multiplied."""
    wall, processor = dict.fromkeys(ways, float("inf")), dict.fromkeys(ways, float("inf"))
    for _ in range(rounds):
        for name, way in ways.items():
            start, used = time.perf_counter(), time.process_time()
            way()
            processor[name] = min(processor[name], time.process_time() - used)
            wall[name] = min(wall[name], time.perf_counter() - start)
    factors = times or {}
    return {name: (wall[name] * factors.get(name, 1.0), processor[name] * factors.get(name, 1.0)) for name in ways}


def polygons(count: int, points: int) -> gx.Shapes:
    """Return regular polygons of many sizes and places."""
    t = np.linspace(0, 2 * np.pi, points, endpoint=False)
    random = np.random.default_rng(1)
    centres, radii = random.uniform(0, 1e4, (count, 1, 2)), random.uniform(1, 5, (count, 1, 1))
    coords = (centres + radii * np.stack([np.cos(t), np.sin(t)], -1)).reshape(-1, 2)
    return gx.Shapes(coords, np.arange(count + 1) * points)


def show(title: str, best: Best, count: int, unit: str) -> None:
    """Print a table: times, rate, and how many times the processor time of the first way."""
    print(f"\n{title}\n\n| way | s | processor s | {unit} a second | times the first |\n|---|---|---|---|---|")
    first = next(iter(best.values()))[1]
    for name, (wall, processor) in best.items():
        print(f"| {name} | {wall:.4f} | {processor:.4f} | {count / wall:,.0f} | {processor / first:.1f} |")


def measures(count: int) -> None:
    """Area and centre of 64-gons."""
    import cv2
    from shapely.geometry import Polygon

    shapes = polygons(count, 64)
    sample = max(1, count // 20)  # of the loops, which take long; their times are multiplied
    theirs = [Polygon(shapes.coords[i * 64:i * 64 + 64]) for i in range(sample)]
    narrow = shapes.coords.astype(np.float32).reshape(count, 64, 1, 2)

    def opencv() -> list[tuple[float, float, float]]:
        found = []
        for i in range(sample):
            m = cv2.moments(narrow[i])
            found.append((m["m00"], m["m10"] / m["m00"], m["m01"] / m["m00"]))
        return found

    best = least({
        "batch.measure, one thread": lambda: gx.batch.measure(shapes, only=["area", "centre"]),
        "batch.measure, two threads": lambda: gx.batch.measure(shapes, only=["area", "centre"], threads=2),
        "loop over shapely's area and centroid": lambda: [(p.area, p.centroid.x, p.centroid.y) for p in theirs],
        "loop over cv2.moments (float32)": opencv},
        dict.fromkeys(("loop over shapely's area and centroid", "loop over cv2.moments (float32)"), count / sample))
    show(f"Area and centre of {count:,} 64-gons (the loops: of a twentieth, times 20)", best, count, "shapes")


def containment(count: int) -> None:
    """Points in one polygon."""
    import shapely.vectorized
    from shapely.geometry import Polygon

    t = np.linspace(0, 2 * np.pi, 1000, endpoint=False)
    outline = np.column_stack([np.cos(t), np.sin(t)]) * (1 + 0.3 * np.cos(9 * t))[:, None]
    points = np.random.default_rng(2).uniform(-1.3, 1.3, (count, 2))
    theirs, ours = Polygon(outline), gx.Shapes.from_objects([outline])
    sample = max(1, count // 10)
    best = least({
        "batch.inside, one thread": lambda: gx.batch.inside(ours, points),
        "batch.inside, two threads": lambda: gx.batch.inside(ours, points, threads=2),
        "shapely.vectorized.contains": lambda: shapely.vectorized.contains(theirs, *points[:sample].T)},
        {"shapely.vectorized.contains": count / sample})
    show(f"{count:,} points in an outline of 1,000 points (shapely: a tenth, times 10)", best, count, "points")


def many_in_many(count: int) -> None:
    """Points in many shapes, and the nearest of them."""
    shapes = polygons(count, 32)
    points = np.random.default_rng(3).uniform(0, 1e4, (count * 10, 2))
    best = least({"batch.inside": lambda: gx.batch.inside(shapes, points),
                  "batch.nearest": lambda: gx.batch.nearest(shapes, points)})
    show(f"{len(points):,} points in, and nearest to, {count:,} 32-gons", best, len(points), "points")


def descriptors(count: int) -> None:
    """All descriptors, and the work of two threads."""
    shapes = polygons(count, 64)
    best = least({"batch.describe, two threads": lambda: gx.batch.describe(shapes, threads=2),
                  "batch.describe, one thread": lambda: gx.batch.describe(shapes)})
    show(f"All descriptors of {count:,} 64-gons", best, count, "shapes")


if __name__ == "__main__":
    scale = float(sys.argv[1]) if len(sys.argv) > 1 else 1.0
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    measures(int(200_000 * scale))
    containment(int(1_000_000 * scale))
    many_in_many(int(20_000 * scale))
    descriptors(int(20_000 * scale))
