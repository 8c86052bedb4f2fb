"""Form errors and fits of points; curves made of curves."""
from __future__ import annotations

import dataclasses

import numpy as np
from numpy.typing import NDArray

from . import _gxshape
from ._answers import Answer, Status, ready
from ._arrays import Points
from ._choices import REFERENCES, WEIGHTS, choice
from ._shape import ShapeLike, points_of


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
    return Roundness(**ready(_gxshape.roundness(points_of(points)[0], choice(reference, REFERENCES, "reference"))))


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
        **ready(_gxshape.straightness(points_of(points)[0], choice(reference, REFERENCES, "reference"))))


@dataclasses.dataclass(frozen=True, eq=False)
class FlatAngle(Answer):
    """The angle of two straight features, in [0, π/2]."""

    status: Status
    flat_angle: float
    first_angle: float
    second_angle: float


def flat_angle(first: ShapeLike, second: ShapeLike, *, reference: str = "least-squares") -> FlatAngle:
    """Return the angle between the reference lines of two features."""
    return FlatAngle(**ready(_gxshape.flat_angle(points_of(first)[0], points_of(second)[0],
                                                  choice(reference, REFERENCES, "reference"))))


@dataclasses.dataclass(frozen=True, eq=False)
class Parallelism(Answer):
    """The width of points across a datum (L), and the angle between both."""

    status: Status
    parallelism: float
    flat_angle: float


def parallelism(points: ShapeLike, datum: ShapeLike, *, reference: str = "minimum-zone") -> Parallelism:
    """Return the width of the points perpendicular to the datum's line (ISO 1101)."""
    return Parallelism(**ready(_gxshape.parallelism(points_of(points)[0], points_of(datum)[0],
                                                     choice(reference, REFERENCES, "reference"))))


@dataclasses.dataclass(frozen=True, eq=False)
class Fit(Answer):
    """What every fit tells: its status, residuals (L) and the indices of the inliers."""

    status: Status
    deviation: float
    residual_rms: float
    residual_max: float
    inliers: NDArray[np.int64]


@dataclasses.dataclass(frozen=True, eq=False)
class LineFit(Fit):
    """A fitted line: a point, an angle, standard errors, residuals (L) and the indices of the inliers."""

    point: NDArray[np.float64]
    angle: float
    offset_error: float
    angle_error: float


@dataclasses.dataclass(frozen=True, eq=False)
class CircleFit(Fit):
    """A fitted circle: centre, radius, standard errors, residuals (L) and the indices of the inliers."""

    centre: NDArray[np.float64]
    radius: float
    centre_error: tuple[float, float]
    radius_error: float


@dataclasses.dataclass(frozen=True, eq=False)
class EllipseFit(Fit):
    """A fitted ellipse: centre, semi-axes, angle, standard errors, residuals and inliers."""

    centre: NDArray[np.float64]
    ellipse_a: float
    ellipse_b: float
    ellipse_angle: float
    centre_error: tuple[float, float]
    axes_error: tuple[float, float]
    angle_error: float


def fit_line(points: ShapeLike, *, weights: str = "tukey", inlier_limit: float = 0.0, seed: int = 1) -> LineFit:
    """Fit a line by orthogonal distance; ``weights``: least-squares, huber, tukey or consensus."""
    return LineFit(**ready(_gxshape.fit_line(points_of(points)[0], choice(weights, WEIGHTS, "weights"),
                                              inlier_limit, seed)))


def fit_circle(points: ShapeLike, *, weights: str = "tukey", inlier_limit: float = 0.0,
               seed: int = 1) -> CircleFit:
    """Fit a circle by orthogonal distance; less than half of the points may belong to something else.

    >>> fit = fit_circle([[5, 0], [0, 5], [-5, 0], [0, -5], [3, 4]])
    >>> round(fit.radius, 9)
    5.0
    """
    return CircleFit(**ready(_gxshape.fit_circle(points_of(points)[0], choice(weights, WEIGHTS, "weights"),
                                                  inlier_limit, seed)))


def fit_ellipse(points: ShapeLike, *, weights: str = "tukey", inlier_limit: float = 0.0,
                seed: int = 1) -> EllipseFit:
    """Fit an ellipse by orthogonal distance."""
    return EllipseFit(**ready(_gxshape.fit_ellipse(points_of(points)[0], choice(weights, WEIGHTS, "weights"),
                                                    inlier_limit, seed)))


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
    return Uncertainty(**ready(_gxshape.uncertainty(points, closed, sigma, correlation_length)))
