"""From a photograph to a table: outlines with holes, their measures, pandas, a picture.

Written in cells, as notebooks have them; run as a whole it prints and draws the same:

    python3 python/examples/coins.py [FILE.png]        draws to FILE.png, where one is named
"""
from __future__ import annotations

import sys
from pathlib import Path

import matplotlib

matplotlib.use("Agg")
import matplotlib.figure
import matplotlib.image
import numpy as np
import pandas
from numpy.typing import NDArray

import gxshape as gx
from gxshape import batch, interop

# %% A photograph: grey levels from 0 to 1, rows and columns.
source = Path(__file__).resolve().parents[2] / "examples" / "data" / "coins" / "coins.png"
grey = np.asarray(matplotlib.image.imread(source), dtype=np.float64)
print(f"{source.name}: {grey.shape[1]} by {grey.shape[0]} pixels")

# %% Material is what is brighter than its surroundings; a mean over a square, by sums of sums.
def mean(values: NDArray[np.float64], half: int) -> NDArray[np.float64]:
    """Return the means of squares of 2 half + 1 pixels, mirrored at the border."""
    side = 2 * half + 1
    sums = np.pad(np.pad(values, half, mode="reflect").cumsum(axis=0).cumsum(axis=1), ((1, 0), (1, 0)))
    return np.asarray((sums[side:, side:] - sums[:-side, side:] - sums[side:, :-side] + sums[:-side, :-side]) / side**2)


mask = mean(grey, 1) > mean(grey, 40) + 0.05

# %% Outlines with holes, along the edges of the pixels; specks go, and so do the steps of the pixels.
found = interop.from_mask(mask)
size = batch.measure(found, only=["area"])["area"]
parts = batch.simplify(found[size > 400], tolerance=0.8)
print(f"{len(found)} regions, {len(parts)} of them larger than 400 pixels: {parts}")

# %% Measures as a data frame; what is not round is no single coin.
table = pandas.DataFrame(gx.describe(parts, only=["area", "holes", "centre", "convexity", "enclosing_circle_radius",
                                                  "inscribed_circle_radius"]))
table["round"] = table["inscribed_circle_radius"] / table["enclosing_circle_radius"]
table = table.sort_values("enclosing_circle_radius", ascending=False).drop(columns=["id", "status", "error"])
print(table.head(8).to_string(index=False, float_format=lambda value: f"{value:.2f}"))
print(f"{(table['round'] > 0.75).sum()} of {len(table)} are round within a quarter")

# %% A picture over the photograph.
if len(sys.argv) > 1:
    figure = matplotlib.figure.Figure(figsize=(9, 7))
    ax = figure.add_subplot()
    ax.imshow(grey, cmap="gray", extent=(0, grey.shape[1], grey.shape[0], 0))
    gx.plot(parts, ax=ax, colour="#d95f02", scale_bar=True)
    figure.savefig(sys.argv[1])
