"""Pictures with matplotlib, which is imported by whoever imports this module."""
from __future__ import annotations

import io
import math
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._shape import Shape
from ._shapes import Shapes, shapes_of


def _path(rings: list[NDArray[np.float64]], closed: bool) -> Any:
    from matplotlib.path import Path

    vertices, codes = [], []
    for ring in rings:
        if len(ring) == 0 or not np.isfinite(ring).all():
            continue
        vertices.append(np.concatenate([ring, ring[:1]]) if closed else ring)
        code = np.full(len(vertices[-1]), Path.LINETO, dtype=Path.code_type)
        code[0] = Path.MOVETO
        if closed:
            code[-1] = Path.CLOSEPOLY
        codes.append(code)
    if not vertices:
        return Path(np.empty((0, 2)))
    return Path(np.concatenate(vertices), np.concatenate(codes))


def _oriented(part: list[NDArray[np.float64]], holes: bool) -> list[NDArray[np.float64]]:
    """Return outline and holes in opposite directions: matplotlib fills by the non-zero rule."""
    def turns(ring: NDArray[np.float64]) -> float:
        x, y = ring[:, 0] - ring[0, 0], ring[:, 1] - ring[0, 1]
        return float(np.sum(x * np.roll(y, -1) - np.roll(x, -1) * y))

    made = []
    for i, ring in enumerate(part):
        if i > 0 and not holes:
            break
        backwards = len(ring) > 2 and (turns(ring) < 0) != (i > 0)
        made.append(ring[::-1] if backwards else ring)
    return made


def plot(shapes: Any, *, ax: Any = None, colour: ArrayLike | str | None = None, holes: bool = True,
         deviation: Any = None, scale_bar: bool = False, y_down: bool = True) -> Any:
    """Draw shapes with matplotlib and return the Axes.

    ``colour``: a colour, or a number a shape (with a colour bar); ``deviation``: what `gxshape.gauge.deviation`
    answered, drawn as coloured samples; ``scale_bar``: a bar of a round length in L; ``y_down``: as pictures are.
    """
    import matplotlib.pyplot as plt
    from matplotlib.collections import PathCollection

    if ax is None:
        ax = plt.subplots()[1]
    objects = [shapes] if isinstance(shapes, Shape) else list(shapes_of(shapes))
    paths = []
    for one in objects:
        closed = not one._is_open()
        rings = [ring for part in one._shape.rings() for ring in _oriented(part, holes)]
        paths.append(_path(rings, closed))
    open_ones = [one._is_open() for one in objects]
    collection = PathCollection(paths, linewidths=0.8, edgecolors="#1f4e79")
    values = None if colour is None or isinstance(colour, str) else np.asarray(colour, dtype=np.float64)
    if values is not None:
        collection.set_array(values)
        ax.figure.colorbar(collection, ax=ax)
    else:
        fill = colour if isinstance(colour, str) else "#4c78a8"
        collection.set_facecolor(["none" if is_open else fill for is_open in open_ones])
        collection.set_alpha(0.6)
    ax.add_collection(collection)
    if deviation is not None:
        most = float(np.nanmax(np.abs(deviation.sample_deviations), initial=0.0)) or 1.0
        drawn = ax.scatter(*deviation.sample_points.T, c=deviation.sample_deviations, cmap="coolwarm", s=12,
                           vmin=-most, vmax=most, zorder=3)
        ax.figure.colorbar(drawn, ax=ax, label="deviation")
    ax.set_aspect("equal")
    ax.autoscale_view()
    if y_down and not ax.yaxis_inverted():
        ax.invert_yaxis()
    if scale_bar:
        _scale_bar(ax)
    return ax


def _scale_bar(ax: Any) -> None:
    low, high = sorted(ax.get_xlim())
    wanted = (high - low) / 5
    if not (wanted > 0 and math.isfinite(wanted)):
        return
    power = 10.0 ** math.floor(math.log10(wanted))
    length = max(factor * power for factor in (1, 2, 5) if factor * power <= wanted)
    start, end = low + 0.05 * (high - low), low + 0.05 * (high - low) + length
    trans = ax.get_xaxis_transform()
    ax.plot([start, end], [0.05, 0.05], transform=trans, color="black", linewidth=3, solid_capstyle="butt")
    ax.text((start + end) / 2, 0.07, f"{length:g}", transform=trans, ha="center", va="bottom")


def png(shape: Shape | Shapes) -> bytes:
    """Return a picture of a shape as the bytes of a PNG file."""
    from matplotlib.backends.backend_agg import FigureCanvasAgg
    from matplotlib.figure import Figure

    figure = Figure(figsize=(3, 3), dpi=96)
    FigureCanvasAgg(figure)
    ax = figure.add_subplot()
    plot(shape, ax=ax)
    ax.set_axis_off()
    stream = io.BytesIO()
    figure.savefig(stream, format="png", bbox_inches="tight")
    return stream.getvalue()
