"""From a picture to a table: outlines with holes of a mask, their measures, a comparison, a picture.

    python3 inspect_mask.py [FILE.png]        draws to FILE.png, where one is named
"""
from __future__ import annotations

import sys

import numpy as np
from numpy.typing import NDArray

import gxshape as gx
from gxshape import batch, interop


def picture() -> NDArray[np.bool_]:
    """Return a mask of washers, of which one has a burr and one no hole."""
    rows, columns = np.mgrid[0:120, 0:240] + 0.5
    mask = np.zeros((120, 240), dtype=bool)
    for k in range(4):
        r = np.hypot(columns - 35 - 57 * k, rows - 60)
        mask |= (r < 25) & ((r > 10) | (k == 2))
    mask[57:63, 59:66] = True
    return mask


def main(arguments: list[str]) -> None:
    """Print the table and say which parts are out of tolerance."""
    shapes = interop.from_mask(picture())
    shapes = batch.simplify(shapes, tolerance=0.75)
    table = gx.describe(shapes, only=["area", "holes", "centre", "circularity", "feret_max"])
    order = np.argsort(table["centre_x"])
    for i in order:
        print(f"part at {table['centre_x'][i]:6.1f}: area {table['area'][i]:7.1f}, {table['holes'][i]} hole(s), "
              f"circularity {table['circularity'][i]:.2f}, width {table['feret_max'][i]:.1f}")
    golden = shapes[int(order[1])]
    compared = batch.compare(shapes, golden, align="rigid")
    for i in order:
        verdict = "good" if compared["hausdorff"][i] < 2.0 else "BAD"
        print(f"part at {table['centre_x'][i]:6.1f}: {compared['hausdorff'][i]:5.1f} from the golden one: {verdict}")
    if arguments:
        import matplotlib

        matplotlib.use("Agg")
        gx.plot(shapes, colour=compared["hausdorff"], scale_bar=True).figure.savefig(arguments[0])


if __name__ == "__main__":
    main(sys.argv[1:])
