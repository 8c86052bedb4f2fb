"""From and to what others have: OpenCV, shapely, scikit-image, GeoJSON-like objects, masks.

Nothing is imported before it is needed, and the first two need nothing at all.
"""
from __future__ import annotations

from collections.abc import Iterable, Mapping, Sequence
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _gxshape
from ._arrays import Points, points_array
from ._errors import ArgumentError
from ._shape import Contour, Region, RegionSet, Shape
from ._shapes import Shapes, shapes_of

__all__ = ["from_opencv", "to_opencv", "from_shapely", "to_shapely", "from_skimage", "from_geo", "from_mask", "to_mask"]


def _opencv_points(contour: ArrayLike, name: str) -> Points:
    array = np.asarray(contour)
    if array.ndim == 3 and array.shape[1] == 1:
        array = array[:, 0, :]
    return points_array(array, name)


def from_opencv(contours: Sequence[ArrayLike], hierarchy: ArrayLike | None = None) -> Shapes:
    """Return the shapes of what ``cv2.findContours`` gives: contours (n, 1, 2) of any type and their hierarchy.

    With a hierarchy, contours at even depth are outlines and those right below them their holes (as both
    RETR_CCOMP and RETR_TREE have them); without one every contour is a shape.  OpenCV traces the pixels of a
    hole's rim, so holes may touch their outlines; `gxshape.batch.repair` puts that right where it matters.

    >>> import numpy as np
    >>> square = np.array([[[0, 0]], [[9, 0]], [[9, 9]], [[0, 9]]], np.int32)
    >>> hole = np.array([[[3, 3]], [[3, 6]], [[6, 6]], [[6, 3]]], np.int32)
    >>> from_opencv([square, hole], [[[-1, -1, 1, -1], [-1, -1, -1, 0]]])[0].area
    72.0
    """
    rings = [_opencv_points(contour, f"contours[{i}]") for i, contour in enumerate(contours)]
    if hierarchy is None or len(rings) == 0:
        return _shapes_of_rings([[ring] for ring in rings])
    links = np.asarray(hierarchy)
    links = links[0] if links.ndim == 3 else links
    if links.shape != (len(rings), 4) or links.dtype.kind not in "iu":
        raise ArgumentError(f"hierarchy: want whole numbers of shape (1, {len(rings)}, 4), got "
                            f"{np.shape(hierarchy)} {links.dtype}")
    parents = links[:, 3]
    if ((parents < -1) | (parents >= len(rings))).any():
        raise ArgumentError("hierarchy: a parent is none of the contours")
    depths = _depths(parents)
    holes: dict[int, list[int]] = {i: [] for i in range(len(rings)) if depths[i] % 2 == 0}
    for i, depth in enumerate(depths):
        if depth % 2 == 1:
            holes[int(parents[i])].append(i)
    return _shapes_of_rings([[rings[i], *(rings[k] for k in inner)] for i, inner in holes.items()])


def _depths(parents: NDArray[Any]) -> list[int]:
    depths = [-1] * len(parents)
    for start in range(len(parents)):
        chain, at = [], start
        while at >= 0 and depths[at] < 0:
            chain.append(at)
            if len(chain) > len(parents):
                raise ArgumentError("hierarchy: parents go around in a ring")
            at = int(parents[at])
        depth = depths[at] if at >= 0 else -1
        for one in reversed(chain):
            depth += 1
            depths[one] = depth
    return depths


def _shapes_of_rings(shapes: Sequence[Sequence[Points]]) -> Shapes:
    rings = [ring for shape in shapes for ring in shape]
    coords = np.concatenate(rings) if rings else np.empty((0, 2))
    ring_offsets = np.cumsum([0, *map(len, rings)])
    return Shapes(coords, ring_offsets, np.cumsum([0, *map(len, shapes)]))


def to_opencv(shapes: Any, *, dtype: Any = np.float32) -> tuple[list[NDArray[Any]], NDArray[np.int32] | None]:
    """Return contours (n, 1, 2) and a hierarchy (1, m, 4) as RETR_CCOMP has it; int32 rounds to the nearest pixel.

    Without contours the hierarchy is None, as OpenCV has it.
    """
    objects = list(shapes_of(shapes))
    contours: list[NDArray[Any]] = []
    links: list[list[int]] = []
    last_outline = -1
    for one in objects:
        for part in one._shape.rings():
            if not part:
                continue
            outline = len(contours)
            if last_outline >= 0:
                links[last_outline][0] = outline
            for k, ring in enumerate(part):
                values = np.rint(ring) if np.dtype(dtype).kind in "iu" else ring
                contours.append(values.astype(dtype).reshape(-1, 1, 2))
                if k == 0:
                    links.append([-1, last_outline, outline + 1 if len(part) > 1 else -1, -1])
                else:
                    links.append([outline + k + 1 if k + 1 < len(part) else -1, outline + k - 1 if k > 1 else -1, -1,
                                  outline])
            last_outline = outline
    return contours, (np.array([links], dtype=np.int32) if links else None)


def from_geo(value: Any) -> Shape:
    """Return the shape of an object with ``__geo_interface__``, or of such a mapping (a geometry or a feature).

    Polygon and LinearRing give a Region, MultiPolygon a RegionSet, LineString an open Contour.  Holes are
    taken as they are, also those that touch their outline.
    """
    geo: Any = getattr(value, "__geo_interface__", value)
    if not isinstance(geo, Mapping):
        raise TypeError(f"want an object with __geo_interface__, got {type(value).__name__}")
    if geo.get("type") == "Feature":
        geo = geo["geometry"]
    kind, coordinates = geo.get("type"), geo.get("coordinates", ())
    if kind == "LineString":
        return Contour(_flat(coordinates), closed=False)
    if kind == "LinearRing":
        return Region(_flat(coordinates)[:-1])
    if kind == "Polygon":
        return _shape_of_parts([coordinates]) if len(coordinates) else Region()
    if kind == "MultiPolygon":
        made = _shape_of_parts(coordinates)
        return made if isinstance(made, RegionSet) else RegionSet([made]) if isinstance(made, Region) else made
    raise ArgumentError(f"want a polygon, multi-polygon or line, got {kind}")


def _flat(coordinates: Any) -> NDArray[np.float64]:
    array = np.asarray(coordinates, dtype=np.float64)
    return array[:, :2] if array.ndim == 2 else np.empty((0, 2))


def _shape_of_parts(parts: Sequence[Any]) -> Shape:
    rings = [_flat(ring) for part in parts for ring in part]
    coords = np.concatenate(rings) if rings else np.empty((0, 2))
    made = Shapes(coords, np.cumsum([0, *map(len, rings)]), [0, len(parts)],
                  part_offsets=np.cumsum([0, *map(len, parts)]))
    return made[0] if len(parts) else RegionSet()


def from_shapely(geometries: Any) -> Shapes:
    """Return the shapes of a geometry of shapely, or of any number of them."""
    if hasattr(geometries, "__geo_interface__") and not isinstance(geometries, (list, tuple, np.ndarray)):
        geometries = [geometries]
    return Shapes.from_objects([from_geo(geometry) for geometry in geometries])


def to_shapely(shapes: Any) -> list[Any]:
    """Return geometries of shapely: polygons, multi-polygons, lines."""
    from shapely.geometry import shape as geometry_of

    return [geometry_of(one.__geo_interface__) for one in shapes_of(shapes)]


def from_skimage(contours: Iterable[ArrayLike]) -> Shapes:
    """Return the shapes of what ``skimage.measure.find_contours`` gives: (row, column) becomes (x, y).

    Contours whose last point is their first are closed, without that repeat; the others are open.
    """
    rings, closed = [], []
    for i, contour in enumerate(contours):
        points = points_array(np.asarray(contour)[:, ::-1], f"contours[{i}]", copy=True)
        closed.append(len(points) > 1 and bool((points[0] == points[-1]).all()))
        rings.append(points[:-1] if closed[-1] else points)
    coords = np.concatenate(rings) if rings else np.empty((0, 2))
    return Shapes(coords, np.cumsum([0, *map(len, rings)]), closed=np.array(closed, dtype=bool))


def from_mask(mask: ArrayLike) -> Shapes:
    """Return the regions of a mask (rows, columns), true where there is material, along the edges of the pixels.

    The pixel in row r and column c is the square from (c, r) to (c + 1, r + 1), so areas are numbers of pixels.
    Pixels that meet in a corner alone are apart.  Pure numpy and Python; for large pictures take OpenCV's
    contours and `from_opencv`.

    >>> from_mask([[1, 1, 1], [1, 0, 1], [1, 1, 1]])[0].area
    8.0
    """
    array = np.asarray(mask)
    if array.ndim != 2:
        raise ArgumentError(f"mask: want an array of shape (rows, columns), got {array.shape} {array.dtype}")
    rings = _traced(array.astype(bool))
    turns = [_doubled_area(ring) for ring in rings]
    outlines = [ring for ring, turn in zip(rings, turns) if turn > 0]
    inner = [ring for ring, turn in zip(rings, turns) if turn < 0]
    holes: list[list[Points]] = [[] for _ in outlines]
    if inner:
        # A hole lies in the smallest outline around the material beside its first edge.
        order = np.argsort([_doubled_area(ring) for ring in outlines], kind="stable")
        sorted_outlines = _shapes_of_rings([[outlines[int(i)]] for i in order])
        probes = np.array([_beside(ring) for ring in inner])
        found = _gxshape.batch_inside(sorted_outlines._ragged, probes, 0.0, 1, None)["region"]
        for ring, at in zip(inner, found):
            holes[int(order[int(at)])].append(ring)
    return _shapes_of_rings([[outline, *own] for outline, own in zip(outlines, holes)])


def _doubled_area(ring: Points) -> float:
    x, y = ring[:, 0], ring[:, 1]
    return float(np.sum(x * np.roll(y, -1) - np.roll(x, -1) * y))


def _beside(ring: Points) -> tuple[float, float]:
    """Return a point of the material, which lies on the left of every edge (x towards y)."""
    (x0, y0), (x1, y1) = ring[0], ring[1]
    length = abs(x1 - x0) + abs(y1 - y0)
    dx, dy = (x1 - x0) / length, (y1 - y0) / length
    return (x0 + 0.5 * dx - 0.25 * dy, y0 + 0.5 * dy + 0.25 * dx)


def _traced(mask: NDArray[np.bool_]) -> list[Points]:
    """Return the borders of the material, which lies on the left of the walk (x towards y)."""
    padded = np.pad(mask, 1)
    steps: dict[tuple[int, int], list[tuple[int, int]]] = {}

    def add(border: NDArray[np.bool_], start: tuple[int, int], step: tuple[int, int]) -> None:
        for r, c in np.argwhere(border).tolist():
            steps.setdefault((c + start[0], r + start[1]), []).append(step)

    inner = padded[1:-1, 1:-1]
    add(inner & ~padded[:-2, 1:-1], (0, 0), (1, 0))   # nothing above: to the right
    add(inner & ~padded[1:-1, 2:], (1, 0), (0, 1))    # nothing on the right: down
    add(inner & ~padded[2:, 1:-1], (1, 1), (-1, 0))   # nothing below: to the left
    add(inner & ~padded[1:-1, :-2], (0, 1), (0, -1))  # nothing on the left: up
    rings: list[Points] = []
    for start in sorted(steps):
        while steps.get(start):
            rings.append(_walked(steps, start))
    return rings


def _walked(steps: dict[tuple[int, int], list[tuple[int, int]]], start: tuple[int, int]) -> Points:
    at, step = start, steps[start].pop()
    first = step
    corners: list[tuple[int, int]] = [start]
    while True:
        at = (at[0] + step[0], at[1] + step[1])
        if at == start and not (steps.get(at) and (-step[1], step[0]) in steps[at]):
            break
        choices = steps[at]
        # Where two ways lead on, the one that turns towards the material keeps pixels apart that meet in a corner.
        turn = (-step[1], step[0])
        onward = turn if turn in choices else choices[0]
        choices.remove(onward)
        if onward != step:
            corners.append(at)
        step = onward
    if step == first:
        corners.pop(0)
    return np.array(corners, dtype=np.float64)


def to_mask(shape: Shape | Shapes, shape_of_mask: tuple[int, int]) -> NDArray[np.bool_]:
    """Return a mask (rows, columns), true where the centre of a pixel, (c + 0.5, r + 0.5), lies in a shape."""
    rows, columns = shape_of_mask
    x, y = np.meshgrid(np.arange(columns) + 0.5, np.arange(rows) + 0.5)
    points = np.column_stack([x.ravel(), y.ravel()])
    taken = shapes_of(shape) if not isinstance(shape, RegionSet) else Shapes.from_objects([shape])
    found = _gxshape.batch_inside(taken.ready(), points, 0.0, 1, None)["state"]
    mask: NDArray[np.bool_] = (found >= 0).reshape(rows, columns)
    return mask
