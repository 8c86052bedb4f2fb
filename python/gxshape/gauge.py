"""Gauges: one function a question, on objects or on points (n, 2) of an outline.

Lengths are in the unit of the coordinates (L), areas in L², angles in radians from x towards y.  A gauge
never raises for what a shape is like: it answers, and ``status`` says what the answer is worth.
"""
from __future__ import annotations

from ._gauge_pair import (
    Alignment, Deviation, Distance, Frechet, Hausdorff, Profile, Stretch, align, deviation, distance, frechet,
    hausdorff, profile,
)
from ._gauge_points import (
    CircleFit, EllipseFit, FlatAngle, LineFit, Parallelism, Roundness, Straightness, Uncertainty, fit_circle,
    fit_ellipse, fit_line, flat_angle, parallelism, resample, roundness, simplify, smooth, straightness,
    uncertainty,
)
from ._gauge_shape import (
    Circle, Defect, Defects, Descriptors, Feret, InscribedCircle, Moments, Rectangle, Wall, convex_hull,
    convexity_defects, describe, enclosing_circle, feret, inscribed_circle, least_area_rectangle,
    least_width_rectangle, moments, smallest_wall,
)

__all__ = [
    "describe", "moments", "feret", "enclosing_circle", "inscribed_circle", "least_area_rectangle",
    "least_width_rectangle", "smallest_wall", "convexity_defects", "convex_hull", "distance", "hausdorff",
    "frechet", "deviation", "align", "profile", "roundness", "straightness", "flat_angle", "parallelism",
    "fit_line", "fit_circle", "fit_ellipse", "simplify", "smooth", "resample", "uncertainty", "Alignment",
    "Circle", "CircleFit", "Defect", "Defects", "Descriptors", "Deviation", "Distance", "EllipseFit", "Feret",
    "FlatAngle", "Frechet", "Hausdorff", "InscribedCircle", "LineFit", "Moments", "Parallelism", "Profile",
    "Rectangle", "Roundness", "Straightness", "Stretch", "Uncertainty", "Wall",
]
