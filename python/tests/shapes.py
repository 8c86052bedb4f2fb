"""Shapes for the tests: by name, and drawn by hypothesis."""
from __future__ import annotations

import numpy as np
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp

import gxshape as gx

SQUARE = [[0, 0], [4, 0], [4, 4], [0, 4]]
BOW = [[0, 0], [0, 3], [6, 0], [6, 6]]
PLATE = [[0, 0], [40, 0], [40, 30], [0, 30]]
HOLE = [[25, 10], [35, 10], [35, 20], [25, 20]]


def plate() -> gx.Region:
    return gx.Region(PLATE, holes=[HOLE])


def polygon(n: int = 64, radius: float = 1.0, centre: tuple[float, float] = (0.0, 0.0)) -> np.ndarray:
    t = np.linspace(0, 2 * np.pi, n, endpoint=False)
    return np.column_stack([np.cos(t), np.sin(t)]) * radius + centre


def random_shapes(count: int, seed: int = 1, points: int = 12) -> gx.Shapes:
    rng = np.random.default_rng(seed)
    coords = [polygon(points, rng.uniform(0.5, 3), tuple(rng.uniform(0, 40, 2))) * 1.0 for _ in range(count)]
    return gx.Shapes(np.concatenate(coords), np.arange(count + 1) * points)


finite = st.floats(-1e6, 1e6, allow_nan=False, width=64)
anything = st.floats(allow_nan=True, allow_infinity=True, width=64)


def rings(elements: st.SearchStrategy[float] = finite, least: int = 0, most: int = 12):
    return st.integers(least, most).flatmap(lambda n: hnp.arrays(np.float64, (n, 2), elements=elements))


def ragged(elements: st.SearchStrategy[float] = anything):
    """Shapes with holes and islands of every kind, empty ones too."""
    def build(draw_shapes):
        rings_, shapes_ = [0], [0]
        coords = []
        for shape in draw_shapes:
            for ring in shape:
                coords.append(ring)
                rings_.append(rings_[-1] + len(ring))
            shapes_.append(shapes_[-1] + len(shape))
        return gx.Shapes(np.concatenate(coords) if coords else np.empty((0, 2)), rings_, shapes_)
    return st.lists(st.lists(rings(elements, most=8), max_size=3), max_size=6).map(build)
