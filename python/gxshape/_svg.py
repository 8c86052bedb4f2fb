"""The small picture of a shape that a notebook shows."""
from __future__ import annotations

import html
from collections.abc import Sequence

import numpy as np
from numpy.typing import NDArray

_MOST_DRAWN = 2000
_SIDE = 280.0
_RIM = 10.0


def svg(rings: Sequence[NDArray[np.float64]], *, closed: bool, words: str) -> str:
    """Return an SVG of the rings, every so many points of long ones; of nothing finite, the words instead."""
    drawn = [ring for ring in rings if len(ring) and np.isfinite(ring).all()]
    if not drawn:
        return ('<svg xmlns="http://www.w3.org/2000/svg" width="240" height="20"><text x="2" y="14" '
                f'font-size="12">{html.escape(words)}</text></svg>')
    every = max(1, -(-sum(len(ring) for ring in drawn) // _MOST_DRAWN))
    # In halves, so that the difference of the largest doubles is one.
    low = np.min([ring.min(axis=0) for ring in drawn], axis=0) / 2
    high = np.max([ring.max(axis=0) for ring in drawn], axis=0) / 2
    size = max(float((high - low).max()), 1e-300)
    width, height = (high - low) / size * _SIDE + 2 * _RIM
    end = " Z" if closed else ""
    path = " ".join(
        "M " + " L ".join(f"{x:.2f} {y:.2f}" for x, y in (ring[::every] / 2 - low) / size * _SIDE + _RIM) + end
        for ring in drawn)
    fill = "#4c78a8" if closed else "none"
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width:.0f}" height="{height:.0f}">'
            f'<path d="{path}" fill="{fill}" fill-opacity="0.35" fill-rule="evenodd" stroke="#1f4e79"/></svg>')
