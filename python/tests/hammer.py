"""Threads on one region, for the thread sanitizer: `make hammer` runs this against a library built with it.

    python3 python/tests/hammer.py [ROUNDS]

Eight threads ask one region everything that lets go of the interpreter's lock (it has enough points for that), and
batches with threads of their own the same `Shapes`, while another thread assigns points and holes to the region.
Every answer must be that of one of the two states that the region is ever in.  Ends with 0 where it is so; what the
sanitizer finds ends it with 66.
"""
from __future__ import annotations

import sys
import threading
from collections.abc import Callable
from typing import Any

import numpy as np

import gxshape as gx
from gxshape import batch, gauge, overlay


def wavy(count: int, waves: int) -> np.ndarray[Any, np.dtype[np.float64]]:
    """Return an outline with as many waves."""
    t = np.linspace(0, 2 * np.pi, count, endpoint=False)
    return np.column_stack([np.cos(t), np.sin(t)]) * (10 + 2 * np.cos(waves * t))[:, None]


STATES = (gx.Region(wavy(3000, 9)), gx.Region(wavy(2500, 14)))
POINTS = np.random.default_rng(1).uniform(-14, 14, (500, 2))
MANY = gx.Shapes.from_objects([wavy(64, k % 7) + k for k in range(300)])

QUESTIONS: tuple[Callable[[gx.Region], Any], ...] = (
    lambda region: region.area,
    lambda region: region.length,
    lambda region: region.inside(POINTS).sum(),
    lambda region: region.signed_distance(POINTS).sum(),
    lambda region: region.nearest(POINTS[0]).edge,
    lambda region: gauge.describe(region).feret_max,
    lambda region: gauge.enclosing_circle(region).radius,
    lambda region: gauge.smallest_wall(region).wall,
    lambda region: gauge.hausdorff(region, STATES[0]).hausdorff,
    lambda region: len(overlay.check(region)),
    lambda region: overlay.intersection(region, [[0, 0], [20, 0], [20, 20]]).area,
    lambda region: float(region.points.sum()),
    lambda region: len(region.to_wkt()),
)
BATCHES: tuple[Callable[[], Any], ...] = (
    lambda: batch.measure(MANY, threads=2)["area"].sum(),
    lambda: batch.describe(MANY, only=["feret_max", "wall"], threads=2)["feret_max"].sum(),
    lambda: batch.inside(MANY, POINTS, threads=2)["region"].sum(),
    lambda: batch.nearest(MANY, POINTS, threads=2)["distance"].sum(),
)


def main(rounds: int) -> int:
    """Hammer; return the number of wrong answers."""
    region = gx.Region(STATES[0].points)
    allowed = [{question(state) for state in STATES} for question in QUESTIONS]
    wanted = [ask() for ask in BATCHES]
    wrong: list[str] = []
    asked = [0] * 8
    done = threading.Event()

    def ask(thread: int) -> None:
        for k in range(rounds * len(QUESTIONS)):
            i = (k + 5 * thread) % len(QUESTIONS)
            answer = QUESTIONS[i](region)
            if answer not in allowed[i]:
                wrong.append(f"question {i}: {answer} is none of {allowed[i]}")
            if k % 8 == 0:
                j = (k // 8 + thread) % len(BATCHES)
                if BATCHES[j]() != wanted[j]:
                    wrong.append(f"batch {j}")
            asked[thread] += 1

    def assign() -> None:
        k = 0
        while not done.wait(0.001):
            k += 1
            region.points = STATES[k % 2].points
            region.holes = []

    threads = [threading.Thread(target=ask, args=(k,)) for k in range(len(asked))]
    writer = threading.Thread(target=assign)
    for thread in [*threads, writer]:
        thread.start()
    for thread in threads:
        thread.join()
    done.set()
    writer.join()
    print(f"{sum(asked)} answers by {len(asked)} threads, {len(wrong)} wrong")
    print("\n".join(wrong[:10]))
    return len(wrong)


if __name__ == "__main__":
    sys.exit(1 if main(int(sys.argv[1]) if len(sys.argv) > 1 else 3) else 0)
