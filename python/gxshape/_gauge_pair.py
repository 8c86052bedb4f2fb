"""Gauges of two shapes."""
from __future__ import annotations

import dataclasses
import math

import numpy as np
from numpy.typing import NDArray

from . import _gxshape
from ._answers import Answer, Place, Status, place, placed, ready
from ._arrays import Points
from ._shape import RegionSet, Shape, ShapeLike, shape_of
from ._transform import Transform


@dataclasses.dataclass(frozen=True, eq=False)
class Distance(Answer):
    """The least distance of two shapes, material included (L), and the places where it is taken."""

    status: Status
    distance: float
    from_place: Place | None
    to_place: Place | None


def _locator(shape: ShapeLike) -> _gxshape.Locator:
    return shape._locator() if isinstance(shape, Shape) else _gxshape.Locator(shape_of(shape))


def distance(first: ShapeLike, second: ShapeLike) -> Distance:
    """Return the least distance of two shapes: 0 where they touch, cross or hold each other.

    >>> distance([[0, 0], [1, 0], [1, 1]], [[3, 0], [4, 0], [4, 1]]).distance
    2.0
    """
    return Distance(**placed(_gxshape.distance(_locator(first), _locator(second)), "from_place", "to_place"))


@dataclasses.dataclass(frozen=True, eq=False)
class Hausdorff(Answer):
    """Both directed Hausdorff distances and the larger (L), over all points of the edges, with places."""

    status: Status
    hausdorff: float
    hausdorff_forward: float
    hausdorff_back: float
    forward_from: Place | None
    forward_to: Place | None
    back_from: Place | None
    back_to: Place | None


def hausdorff(shape: ShapeLike, golden: ShapeLike) -> Hausdorff:
    """Return the Hausdorff distances of the borders.

    >>> hausdorff([[0, 0], [4, 0], [4, 3]], [[0, 0], [4, 0], [4, 4]]).hausdorff
    1.0
    """
    found = _gxshape.hausdorff(shape_of(shape), shape_of(golden))
    return Hausdorff(**placed(found, "forward_from", "forward_to", "back_from", "back_to"))


@dataclasses.dataclass(frozen=True, eq=False)
class Frechet(Answer):
    """The Fréchet distance (L), and what it is not less than."""

    status: Status
    frechet: float
    lower: float


def frechet(a: ShapeLike, b: ShapeLike) -> Frechet:
    """Return the Fréchet distance of two outlines or poly-lines, each walked from point 0."""
    for value in (a, b):
        if isinstance(value, RegionSet):
            raise TypeError("want outlines or poly-lines, got a RegionSet")
    return Frechet(**ready(_gxshape.frechet(shape_of(a), shape_of(b))))


@dataclasses.dataclass(frozen=True)
class Stretch:
    """A stretch of border out of tolerance: from, to, the worst place, its deviation and the length (L)."""

    from_place: Place
    to_place: Place
    worst: Place
    deviation: float
    length: float


@dataclasses.dataclass(frozen=True, eq=False)
class Deviation(Answer):
    """Signed deviation from a golden shape (L, above 0 outside), with the samples it was taken at."""

    status: Status
    deviation_max: float
    deviation_min: float
    deviation_rms: float
    out_of_tolerance: float
    max_place: Place | None
    min_place: Place | None
    stretches: tuple[Stretch, ...]
    sample_points: Points
    sample_deviations: NDArray[np.float64]


def deviation(shape: ShapeLike, golden: ShapeLike, *, lower: float = -math.inf, upper: float = math.inf,
              step: float = 0.0) -> Deviation:
    """Return how far a border deviates from a golden one, and where it is out of [lower, upper].

    ``step``: the arc length between samples, 0 for the vertices.

    >>> deviation([[0, 0], [4, 0], [4, 3], [2, 5], [0, 3]], [[0, 0], [4, 0], [4, 3], [0, 3]]).deviation_max
    2.0
    """
    found = placed(_gxshape.deviation(shape_of(shape), shape_of(golden), lower, upper, step),
                    "max_place", "min_place")
    found["stretches"] = tuple(
        Stretch(Place(*a), Place(*b), Place(*worst), d, length) for a, b, worst, d, length in found["stretches"])
    return Deviation(**found)


@dataclasses.dataclass(frozen=True, eq=False)
class Alignment(Answer):
    """The motion that lays a shape upon a golden one; ``free`` names what the shapes leave open."""

    status: Status
    angle: float
    scale: float
    shift: NDArray[np.float64]
    rounds: int
    residual: float
    converged: bool
    free: tuple[str, ...]
    transform: Transform


def align(shape: ShapeLike, golden: ShapeLike, *, scales: bool = False, robust: bool = True,
          in_place: bool = False, rounds: int = 100, samples: int = 1000) -> Alignment:
    """Return the motion for which the distances of the shape's border from the golden one's are least."""
    found = ready(_gxshape.align(shape_of(shape), shape_of(golden), scales, robust, in_place, rounds, samples))
    found["transform"] = Transform.from_numbers(*found.pop("numbers"))
    return Alignment(**found)


@dataclasses.dataclass(frozen=True, eq=False)
class Profile(Answer):
    """The width of the zone around the nominal border that holds the shape's (L), peak, valley, worst place."""

    status: Status
    profile: float
    peak: float
    valley: float
    worst: Place | None


def profile(shape: ShapeLike, nominal: ShapeLike, *, best_fit: bool = False) -> Profile:
    """Return the profile deviation of a line (ISO 1101), after a best fit if asked."""
    return Profile(**placed(_gxshape.profile(shape_of(shape), shape_of(nominal), best_fit), "worst"))
