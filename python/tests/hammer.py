"""Threads on one region, for the thread sanitizer: `make hammer` runs this against a library built with it.

    python3 python/tests/hammer.py [ROUNDS]

First eight threads ask a region that has just been made the same question at once, so that what it remembers is made
by one while the others look for it; every question that lets go of the interpreter's lock, for which the region has
enough points.  Then they ask one region all of them in turns, and batches with threads of their own the same
`Shapes`, while another thread assigns points and holes to the region.  Every answer must be that of one of the two
states that the region is ever in.  Ends with 0 where it is so; what the
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
FAILING = gx.Shapes.from_objects([gx.Contour([[0, 0], [4, 0], [4, 4]], closed=False)] * 2000)
THREADS = 8
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
WANTED = [[question(gx.Region(state.points)) for state in STATES] for question in QUESTIONS]
BATCHES: tuple[Callable[[], Any], ...] = (
    lambda: batch.measure(MANY, threads=2)["area"].sum(),
    lambda: batch.describe(MANY, only=["feret_max", "wall"], threads=2)["feret_max"].sum(),
    lambda: batch.inside(MANY, POINTS, threads=2)["region"].sum(),
    lambda: batch.nearest(MANY, POINTS, threads=2)["distance"].sum(),
    lambda: len(batch.messages(batch.repair(FAILING, threads=2)[1])),
)


def at_once(rounds: int) -> list[str]:
    """Let all threads ask a new region one question; return the wrong answers."""
    wrong: list[str] = []
    start = threading.Barrier(THREADS)
    regions = [[gx.Region(state.points) for _ in QUESTIONS] for state in STATES * rounds]

    def ask() -> None:
        for k, made in enumerate(regions):
            for i, question in enumerate(QUESTIONS):
                start.wait()
                answer = question(made[i])
                if answer != WANTED[i][k % 2]:
                    wrong.append(f"question {i} at once: {answer}, not {WANTED[i][k % 2]}")

    threads = [threading.Thread(target=ask) for _ in range(THREADS)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    return wrong


def main(rounds: int) -> int:
    """Hammer; return the number of wrong answers."""
    sys.setswitchinterval(1e-5)
    wrong = at_once(rounds)
    region = gx.Region(STATES[0].points)
    wanted = [ask() for ask in BATCHES]
    asked = [0] * THREADS
    done = threading.Event()

    def ask(thread: int) -> None:
        for k in range(rounds * len(QUESTIONS)):
            i = (k + 5 * thread) % len(QUESTIONS)
            answer = QUESTIONS[i](region)
            if answer not in WANTED[i]:
                wrong.append(f"question {i}: {answer} is none of {WANTED[i]}")
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
    print(f"{len(QUESTIONS) * 2 * rounds * THREADS} answers at once, {sum(asked)} answers in turns by {len(asked)} threads, {len(wrong)} wrong")
    print("\n".join(wrong[:10]))
    return len(wrong)


if __name__ == "__main__":
    sys.exit(1 if main(int(sys.argv[1]) if len(sys.argv) > 1 else 3) else 0)
