"""Gauges of one shape."""
from __future__ import annotations

import dataclasses

import numpy as np
from numpy.typing import NDArray

from . import _gxshape
from ._answers import Answer, Place, Status, place, placed, ready
from ._arrays import Points
from ._shape import Region, RegionSet, ShapeLike, area_of, shape_of


@dataclasses.dataclass(frozen=True, eq=False)
class Descriptors(Answer):
    """One-number answers to what a shape looks like; docs/names.csv says what each is."""

    status: Status
    area: float
    filled_area: float
    perimeter: float
    length: float
    box: tuple[float, float, float, float]
    equivalent_diameter: float
    circularity: float
    compactness: float
    convexity: float
    solidity: float
    extent: float
    rectangularity: float
    aspect_ratio: float
    elongation: float
    eccentricity: float
    orientation: float
    euler_number: int
    feret_max: float
    feret_min: float
    feret_mean: float
    feret_across: float
    hull_area: float
    hull_perimeter: float


def describe(shape: ShapeLike) -> Descriptors:
    """Return the descriptors of a shape.

    >>> describe([[0, 0], [4, 0], [4, 3], [0, 3]]).rectangularity
    1.0
    """
    return Descriptors(**ready(_gxshape.describe(shape_of(shape))))


@dataclasses.dataclass(frozen=True, eq=False)
class Moments(Answer):
    """Central moments (L⁴, L⁵), normalised ones, Hu's seven invariants, the ellipse of equal moments."""

    status: Status
    area: float
    centre: NDArray[np.float64]
    moment_20: float
    moment_11: float
    moment_02: float
    moment_30: float
    moment_21: float
    moment_12: float
    moment_03: float
    eta_20: float
    eta_11: float
    eta_02: float
    eta_30: float
    eta_21: float
    eta_12: float
    eta_03: float
    hu: tuple[float, ...]
    ellipse_a: float
    ellipse_b: float
    ellipse_angle: float


def moments(shape: ShapeLike) -> Moments:
    """Return the moments of the material, holes taken away.

    >>> moments([[0, 0], [4, 0], [4, 3], [0, 3]]).moment_20
    16.0
    """
    return Moments(**ready(_gxshape.moments(shape_of(shape))))


@dataclasses.dataclass(frozen=True, eq=False)
class Feret(Answer):
    """Widths between two parallel lines (L), their directions (radians) and the points of the greatest."""

    status: Status
    feret_max: float
    feret_max_angle: float
    feret_max_points: tuple[int, int]
    feret_min: float
    feret_min_angle: float
    feret_across: float
    feret_mean: float


def feret(shape: ShapeLike) -> Feret:
    """Return the Feret diameters.

    >>> feret([[0, 0], [4, 0], [4, 3], [0, 3]]).feret_max
    5.0
    """
    return Feret(**ready(_gxshape.feret(shape_of(shape))))


@dataclasses.dataclass(frozen=True, eq=False)
class Circle(Answer):
    """The smallest circle around a shape; ``supports`` are the points that hold it."""

    status: Status
    centre: NDArray[np.float64]
    radius: float
    supports: NDArray[np.int64]


def enclosing_circle(shape: ShapeLike) -> Circle:
    """Return the smallest circle around all points of the outlines.

    >>> enclosing_circle([[0, 0], [4, 0], [4, 3], [0, 3]]).radius
    2.5
    """
    return Circle(**ready(_gxshape.enclosing_circle(shape_of(shape))))


@dataclasses.dataclass(frozen=True, eq=False)
class InscribedCircle(Answer):
    """The largest circle in the material: radius ≤ the largest ≤ radius + gap; ``touch`` is the nearest border."""

    status: Status
    centre: NDArray[np.float64]
    radius: float
    gap: float
    touch: Place | None
    region: int


def inscribed_circle(shape: ShapeLike, *, tolerance: float = 1e-9) -> InscribedCircle:
    """Return the largest circle in the material, to ``tolerance`` of its radius.

    >>> round(inscribed_circle([[0, 0], [4, 0], [4, 3], [0, 3]]).radius, 6)
    1.5
    """
    return InscribedCircle(**placed(_gxshape.inscribed_circle(area_of(shape), tolerance), "touch"))


@dataclasses.dataclass(frozen=True, eq=False)
class Rectangle(Answer):
    """A turned rectangle: centre, sides (length ≥ width), the direction of the length, corners (4, 2)."""

    status: Status
    centre: NDArray[np.float64]
    length: float
    width: float
    angle: float
    corners: Points


def least_area_rectangle(shape: ShapeLike) -> Rectangle:
    """Return the rectangle of least area around the outlines.

    >>> r = least_area_rectangle([[0, 0], [4, 0], [4, 3], [0, 3]])
    >>> r.length, r.width
    (4.0, 3.0)
    """
    return Rectangle(**ready(_gxshape.rectangle(shape_of(shape), False)))


def least_width_rectangle(shape: ShapeLike) -> Rectangle:
    """Return the rectangle of least width around the outlines."""
    return Rectangle(**ready(_gxshape.rectangle(shape_of(shape), True)))


@dataclasses.dataclass(frozen=True, eq=False)
class Wall(Answer):
    """The thinnest place of the material: how thick (+∞ where there is none), from where to where."""

    status: Status
    wall: float
    wall_from: Place | None
    wall_to: Place | None
    region: int


def smallest_wall(shape: ShapeLike) -> Wall:
    """Return the smallest wall of a region or set.

    >>> plate = Region([[0, 0], [40, 0], [40, 30], [0, 30]], holes=[[[25, 10], [35, 10], [35, 20], [25, 20]]])
    >>> smallest_wall(plate).wall
    5.0
    """
    return Wall(**placed(_gxshape.smallest_wall(area_of(shape)), "wall_from", "wall_to"))


@dataclasses.dataclass(frozen=True)
class Defect:
    """A pocket between outline and hull: indices of begin, end and deepest point, depth (L), area (L²)."""

    start: int
    end: int
    deepest: int
    depth: float
    area: float


@dataclasses.dataclass(frozen=True, eq=False)
class Defects(Answer):
    """The convexity defects in the order of the outline."""

    status: Status
    defects: tuple[Defect, ...]


def convexity_defects(shape: ShapeLike) -> Defects:
    """Return where an outline draws back from its hull.

    >>> convexity_defects([[0, 0], [4, 0], [4, 4], [2, 1], [0, 4]]).defects[0].depth
    3.0
    """
    if isinstance(shape, RegionSet):
        raise TypeError("shape: want one outline, got a RegionSet")
    found = _gxshape.convexity_defects(shape_of(shape))
    return Defects(Status(found["status"]), tuple(Defect(**one) for one in found["defects"]))


def convex_hull(shape: ShapeLike) -> Region:
    """Return the convex hull of all points."""
    return Region._of(_gxshape.convex_hull(shape_of(shape)))
