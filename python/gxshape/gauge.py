"""Gauges: one function a question, on objects or on points (n, 2) of an outline.

Lengths are in the unit of the coordinates (L), areas in L², angles in radians from x towards y.  A gauge
never raises for what a shape is like: it answers, and ``status`` says what the answer is worth.
"""
from __future__ import annotations

import dataclasses
import math
from collections.abc import Sequence
from typing import Any

import numpy as np
from numpy.typing import NDArray

from . import _gxshape
from ._answers import Answer, Place, Status, place
from ._arrays import Points
from ._errors import ArgumentError
from ._shape import Region, RegionSet, Shape, ShapeLike, area_of, points_of, shape_of
from ._transform import Transform

__all__ = [
    "describe", "moments", "feret", "enclosing_circle", "inscribed_circle", "least_area_rectangle",
    "least_width_rectangle", "smallest_wall", "convexity_defects", "convex_hull", "distance", "hausdorff",
    "frechet", "deviation", "align", "profile", "roundness", "straightness", "flat_angle", "parallelism",
    "fit_line", "fit_circle", "fit_ellipse", "simplify", "smooth", "resample", "uncertainty",
]

_REFERENCES = ("least-squares", "minimum-zone", "circumscribed", "inscribed")
_WEIGHTS = ("least-squares", "huber", "tukey", "consensus")


def choice(value: str, words: Sequence[str], name: str) -> int:
    """Return the number of a word; underscores are taken for hyphens."""
    word = str(value).replace("_", "-")
    if word not in words:
        raise ArgumentError(f"{name}: want {', '.join(map(repr, words[:-1]))} or {words[-1]!r}, got {value!r}")
    return words.index(word)


def _ready(answer: dict[str, Any]) -> dict[str, Any]:
    answer["status"] = Status(answer["status"])
    return answer


def _placed(answer: dict[str, Any], *names: str) -> dict[str, Any]:
    for name in names:
        answer[name] = place(answer[name])
    return _ready(answer)


# ---- One shape ------------------------------------------------------------------------------------------


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
    return Descriptors(**_ready(_gxshape.describe(shape_of(shape))))


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
    return Moments(**_ready(_gxshape.moments(shape_of(shape))))


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
    return Feret(**_ready(_gxshape.feret(shape_of(shape))))


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
    return Circle(**_ready(_gxshape.enclosing_circle(shape_of(shape))))


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
    return InscribedCircle(**_placed(_gxshape.inscribed_circle(area_of(shape), tolerance), "touch"))


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
    return Rectangle(**_ready(_gxshape.rectangle(shape_of(shape), False)))


def least_width_rectangle(shape: ShapeLike) -> Rectangle:
    """Return the rectangle of least width around the outlines."""
    return Rectangle(**_ready(_gxshape.rectangle(shape_of(shape), True)))


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
    return Wall(**_placed(_gxshape.smallest_wall(area_of(shape)), "wall_from", "wall_to"))


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


# ---- Two shapes -----------------------------------------------------------------------------------------


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
    return Distance(**_placed(_gxshape.distance(_locator(first), _locator(second)), "from_place", "to_place"))


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
    return Hausdorff(**_placed(found, "forward_from", "forward_to", "back_from", "back_to"))


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
    return Frechet(**_ready(_gxshape.frechet(shape_of(a), shape_of(b))))


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
    found = _placed(_gxshape.deviation(shape_of(shape), shape_of(golden), lower, upper, step),
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
    found = _ready(_gxshape.align(shape_of(shape), shape_of(golden), scales, robust, in_place, rounds, samples))
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
    return Profile(**_placed(_gxshape.profile(shape_of(shape), shape_of(nominal), best_fit), "worst"))


# ---- Points -----------------------------------------------------------------------------------------------


@dataclasses.dataclass(frozen=True, eq=False)
class Roundness(Answer):
    """A roundness deviation (L) with its two circles and the points that determine them."""

    status: Status
    roundness: float
    centre: NDArray[np.float64]
    outer_radius: float
    inner_radius: float
    radius: float
    peak: float
    valley: float
    rms: float
    outer_supports: NDArray[np.int64]
    inner_supports: NDArray[np.int64]


def roundness(points: ShapeLike, *, reference: str = "minimum-zone") -> Roundness:
    """Return the roundness deviation of points (ISO 12181-1); ``reference``: least-squares, minimum-zone,
    circumscribed or inscribed.

    >>> roundness([[10, 0], [-10, 0], [0, 9], [0, -9]]).roundness
    1.0
    """
    return Roundness(**_ready(_gxshape.roundness(points_of(points)[0], choice(reference, _REFERENCES, "reference"))))


@dataclasses.dataclass(frozen=True, eq=False)
class Straightness(Answer):
    """A straightness deviation (L) with its line: a point and an angle in (−π/2, π/2]."""

    status: Status
    straightness: float
    point: NDArray[np.float64]
    angle: float
    peak: float
    valley: float
    rms: float
    supports: NDArray[np.int64]


def straightness(points: ShapeLike, *, reference: str = "minimum-zone") -> Straightness:
    """Return the straightness deviation of points; ``reference``: least-squares or minimum-zone.

    >>> straightness([[0, 0], [1, 1], [2, 0]]).straightness
    1.0
    """
    return Straightness(
        **_ready(_gxshape.straightness(points_of(points)[0], choice(reference, _REFERENCES, "reference"))))


@dataclasses.dataclass(frozen=True, eq=False)
class FlatAngle(Answer):
    """The angle of two straight features, in [0, π/2]."""

    status: Status
    flat_angle: float
    first_angle: float
    second_angle: float


def flat_angle(first: ShapeLike, second: ShapeLike, *, reference: str = "least-squares") -> FlatAngle:
    """Return the angle between the reference lines of two features."""
    return FlatAngle(**_ready(_gxshape.flat_angle(points_of(first)[0], points_of(second)[0],
                                                  choice(reference, _REFERENCES, "reference"))))


@dataclasses.dataclass(frozen=True, eq=False)
class Parallelism(Answer):
    """The width of points across a datum (L), and the angle between both."""

    status: Status
    parallelism: float
    flat_angle: float


def parallelism(points: ShapeLike, datum: ShapeLike, *, reference: str = "minimum-zone") -> Parallelism:
    """Return the width of the points perpendicular to the datum's line (ISO 1101)."""
    return Parallelism(**_ready(_gxshape.parallelism(points_of(points)[0], points_of(datum)[0],
                                                     choice(reference, _REFERENCES, "reference"))))


@dataclasses.dataclass(frozen=True, eq=False)
class LineFit(Answer):
    """A fitted line: a point, an angle, standard errors, residuals (L) and the indices of the inliers."""

    status: Status
    deviation: float
    residual_rms: float
    residual_max: float
    inliers: NDArray[np.int64]
    point: NDArray[np.float64]
    angle: float
    offset_error: float
    angle_error: float


@dataclasses.dataclass(frozen=True, eq=False)
class CircleFit(Answer):
    """A fitted circle: centre, radius, standard errors, residuals (L) and the indices of the inliers."""

    status: Status
    deviation: float
    residual_rms: float
    residual_max: float
    inliers: NDArray[np.int64]
    centre: NDArray[np.float64]
    radius: float
    centre_error: tuple[float, float]
    radius_error: float


@dataclasses.dataclass(frozen=True, eq=False)
class EllipseFit(Answer):
    """A fitted ellipse: centre, semi-axes, angle, standard errors, residuals and inliers."""

    status: Status
    deviation: float
    residual_rms: float
    residual_max: float
    inliers: NDArray[np.int64]
    centre: NDArray[np.float64]
    ellipse_a: float
    ellipse_b: float
    ellipse_angle: float
    centre_error: tuple[float, float]
    axes_error: tuple[float, float]
    angle_error: float


def fit_line(points: ShapeLike, *, weights: str = "tukey", inlier_limit: float = 0.0, seed: int = 1) -> LineFit:
    """Fit a line by orthogonal distance; ``weights``: least-squares, huber, tukey or consensus."""
    return LineFit(**_ready(_gxshape.fit_line(points_of(points)[0], choice(weights, _WEIGHTS, "weights"),
                                              inlier_limit, seed)))


def fit_circle(points: ShapeLike, *, weights: str = "tukey", inlier_limit: float = 0.0,
               seed: int = 1) -> CircleFit:
    """Fit a circle by orthogonal distance; less than half of the points may belong to something else.

    >>> fit = fit_circle([[5, 0], [0, 5], [-5, 0], [0, -5], [3, 4]])
    >>> round(fit.radius, 9)
    5.0
    """
    return CircleFit(**_ready(_gxshape.fit_circle(points_of(points)[0], choice(weights, _WEIGHTS, "weights"),
                                                  inlier_limit, seed)))


def fit_ellipse(points: ShapeLike, *, weights: str = "tukey", inlier_limit: float = 0.0,
                seed: int = 1) -> EllipseFit:
    """Fit an ellipse by orthogonal distance."""
    return EllipseFit(**_ready(_gxshape.fit_ellipse(points_of(points)[0], choice(weights, _WEIGHTS, "weights"),
                                                    inlier_limit, seed)))


# ---- Curves made of curves ----------------------------------------------------------------------------------


def simplify(shape: ShapeLike, *, tolerance: float, keeps_crossings_out: bool = False,
             closed: bool | None = None) -> tuple[Status, NDArray[np.int64]]:
    """Return the status and the indices of the points that stay; each left out is within ``tolerance`` (L).

    >>> simplify([[0, 0], [2, 0.1], [4, 0], [4, 3]], tolerance=0.5)[1]
    array([0, 2, 3])
    """
    points, is_closed = points_of(shape)
    status, kept = _gxshape.simplify(points, is_closed if closed is None else closed, tolerance,
                                     keeps_crossings_out)
    return Status(status), kept


def smooth(shape: ShapeLike, *, sigma: float, closed: bool | None = None) -> tuple[Status, Points]:
    """Return the status and the points, each the mean of the curve around it with a Gaussian of ``sigma`` (L)."""
    points, is_closed = points_of(shape)
    status, smoothed = _gxshape.smooth(points, is_closed if closed is None else closed, sigma)
    return Status(status), smoothed


def resample(shape: ShapeLike, *, step: float, closed: bool | None = None) -> tuple[Status, Points]:
    """Return the status and points at equal arc lengths of at most ``step`` (L)."""
    points, is_closed = points_of(shape)
    status, sampled = _gxshape.resample(points, is_closed if closed is None else closed, step)
    return Status(status), sampled


@dataclasses.dataclass(frozen=True, eq=False)
class Uncertainty(Answer):
    """Standard deviations of measures from the noise of the points."""

    status: Status
    length: float
    length_bias: float
    area: float
    equivalent_diameter: float
    centre: tuple[float, float]
    centre_covariance: float


def uncertainty(shape: ShapeLike, *, sigma: float, correlation_length: float = 0.0) -> Uncertainty:
    """Return how uncertain length, area and centre are where each coordinate has the noise ``sigma`` (L)."""
    points, closed = points_of(shape)
    return Uncertainty(**_ready(_gxshape.uncertainty(points, closed, sigma, correlation_length)))
