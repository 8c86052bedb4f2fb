"""Repair by rule, boolean operations, offsets, relations and checks."""
from __future__ import annotations

import dataclasses
from collections.abc import Iterable, Sequence

from numpy.typing import ArrayLike

from . import _gxshape
from ._answers import Problem
from ._choices import ENDS, JOINS, RULES, choice
from ._errors import ArgumentError
from ._shape import Contour, RegionSet, ShapeLike, area_of

__all__ = ["repair", "repair_with_report", "union", "union_all", "intersection", "difference",
           "symmetric_difference", "clip", "offset", "regions_of", "check", "relate", "overlap", "overlap_ratio",
           "intersects", "touches", "contains", "covers", "equal"]

_MOST_MEETINGS = 8_000_000


def _rule(rule: str) -> int:
    return choice(rule, RULES, "rule")


@dataclasses.dataclass(frozen=True)
class RepairReport:
    """How a repair went: areas (L²), regions and holes of the result, rings dropped or put on a grid."""

    area_before: float
    area_after: float
    regions: int
    holes: int
    rings_dropped: int
    rings_snapped: int
    largest_move: float


def repair_with_report(shape: ShapeLike, *, rule: str = "even-odd",
                       most_meetings: int = _MOST_MEETINGS) -> tuple[RegionSet, RepairReport]:
    """Return what `repair` returns, and how it went."""
    made, report = _gxshape.repair(area_of(shape), _rule(rule), most_meetings)
    return RegionSet._of(made), RepairReport(**report)


def repair(shape: ShapeLike, *, rule: str = "even-odd", most_meetings: int = _MOST_MEETINGS) -> RegionSet:
    """Return the valid regions that a shape encloses by rule: even-odd, non-zero, positive or outer.

    Raises: BadParamsError for a coordinate that is not finite; LimitError where edges meet too often.

    >>> repair([[0, 0], [0, 3], [6, 0], [6, 6]]).to_wkt()
    'MULTIPOLYGON (((0 0, 2 2, 0 3, 0 0)), ((2 2, 6 0, 6 6, 2 2)))'
    """
    return repair_with_report(shape, rule=rule, most_meetings=most_meetings)[0]


def _boolean(operation: str, a: ShapeLike, b: ShapeLike, rule: str) -> RegionSet:
    return RegionSet._of(_gxshape.boolean(operation, area_of(a, "a"), area_of(b, "b"), _rule(rule), _MOST_MEETINGS))


def union(a: ShapeLike, b: ShapeLike, *, rule: str = "even-odd") -> RegionSet:
    """Return the regions that either shape holds.

    >>> union([[0, 1], [3, 1], [3, 2], [0, 2]], [[1, 0], [2, 0], [2, 3], [1, 3]]).area
    5.0
    """
    return _boolean("union", a, b, rule)


def union_all(shapes: Iterable[ShapeLike], *, rule: str = "even-odd") -> RegionSet:
    """Return the union of any number of shapes, in one pass."""
    return RegionSet._of(_gxshape.union_of([area_of(shape) for shape in shapes], _rule(rule), _MOST_MEETINGS))


def intersection(a: ShapeLike, b: ShapeLike, *, rule: str = "even-odd") -> RegionSet:
    """Return the regions that both shapes hold."""
    return _boolean("intersection", a, b, rule)


def difference(a: ShapeLike, b: ShapeLike, *, rule: str = "even-odd") -> RegionSet:
    """Return the regions that ``a`` holds and ``b`` does not."""
    return _boolean("difference", a, b, rule)


def symmetric_difference(a: ShapeLike, b: ShapeLike, *, rule: str = "even-odd") -> RegionSet:
    """Return the regions that exactly one shape holds."""
    return _boolean("symmetric-difference", a, b, rule)


def clip(shape: ShapeLike, *, box: Sequence[float], rule: str = "even-odd") -> RegionSet:
    """Return the part of a shape in the box (x_min, y_min, x_max, y_max); nothing where it is the wrong way.

    >>> clip([[0, 0], [4, 0], [4, 3], [0, 3]], box=(1, 1, 9, 9)).area
    6.0
    """
    if len(box) != 4:
        raise ArgumentError(f"box: want (x_min, y_min, x_max, y_max), got {len(box)} numbers")
    numbers = [float(number) for number in box]
    return RegionSet._of(_gxshape.clip(area_of(shape), numbers, _rule(rule), _MOST_MEETINGS))


def offset(shape: ShapeLike, distance: float, *, join: str = "round", ends: str = "round",
           mitre_limit: float = 5.0, arc_tolerance: float = 0.0) -> RegionSet:
    """Return a shape grown (``distance`` above 0) or shrunk; of an open contour what lies within the distance.

    >>> offset([[0, 0], [2, 0], [2, 2], [0, 2]], 1, join="mitre").area
    16.0
    """
    is_line = isinstance(shape, Contour) and not shape.closed
    taken = shape._shape if isinstance(shape, Contour) and is_line else area_of(shape)
    return RegionSet._of(_gxshape.offset(taken, float(distance), choice(join, JOINS, "join"),
                                         choice(ends, ENDS, "ends"), mitre_limit, arc_tolerance))


def regions_of(outline: ArrayLike, holes: Iterable[ArrayLike] = (), *, rule: str = "even-odd") -> RegionSet:
    """Return what an outline encloses less what holes do, which may touch, cross or overlap it and each other."""
    solid = repair(outline, rule=rule)
    taken = [area_of(hole, "holes") for hole in holes]
    if not taken:
        return solid
    return difference(solid, RegionSet._of(_gxshape.union_of(taken, _rule(rule), _MOST_MEETINGS)))


def check(shape: ShapeLike, *, max: int = 100, any_direction: bool = True,
          rings_may_touch: bool = True) -> list[Problem]:
    """Return everything that is wrong with a shape, at most ``max`` problems; exact, without tolerance."""
    if max < 0:
        raise ArgumentError(f"max: want 0 or more, got {max}")
    found = _gxshape.check(area_of(shape), max, any_direction, rings_may_touch)
    return [Problem(one["kind"], (float(one["point"][0]), float(one["point"][1])), one["edges"], one["rings"],
                    one["regions"], one["sentence"]) for one in found]


@dataclasses.dataclass(frozen=True)
class Relation:
    """How two shapes lie to each other, exactly."""

    intersects: bool
    touches: bool
    contains: bool
    covers: bool
    overlaps: bool
    equal: bool


def relate(a: ShapeLike, b: ShapeLike) -> Relation:
    """Return how two shapes lie to each other, exactly on their coordinates.

    >>> relate([[0, 0], [4, 0], [4, 4], [0, 4]], [[1, 1], [2, 1], [2, 2]]).contains
    True
    """
    return Relation(**_gxshape.relate(area_of(a, "a"), area_of(b, "b")))


def intersects(a: ShapeLike, b: ShapeLike) -> bool:
    """Tell whether the shapes have a point in common."""
    return relate(a, b).intersects


def touches(a: ShapeLike, b: ShapeLike) -> bool:
    """Tell whether the borders have points in common, and the interiors none."""
    return relate(a, b).touches


def contains(a: ShapeLike, b: ShapeLike) -> bool:
    """Tell whether all of ``b`` is in ``a``; False where ``b`` has no area."""
    return relate(a, b).contains


def covers(a: ShapeLike, b: ShapeLike) -> bool:
    """Tell whether all of ``b`` is in ``a``; True where ``b`` has no area."""
    return relate(a, b).covers


def equal(a: ShapeLike, b: ShapeLike) -> bool:
    """Tell whether both are the same points of the plane, whatever rings say so."""
    return relate(a, b).equal


@dataclasses.dataclass(frozen=True)
class Overlap:
    """Areas (L²) of two shapes, of what is in both and in either; ``ratio`` is both / either, NaN without area."""

    first: float
    second: float
    both: float
    either: float
    ratio: float


def overlap(a: ShapeLike, b: ShapeLike) -> Overlap:
    """Return the areas of two shapes and of what they have in common."""
    return Overlap(*_gxshape.overlap(area_of(a, "a"), area_of(b, "b")))


def overlap_ratio(a: ShapeLike, b: ShapeLike) -> float:
    """Return intersection over union.

    >>> overlap_ratio([[0, 0], [2, 0], [2, 2], [0, 2]], [[1, 0], [3, 0], [3, 2], [1, 2]])
    0.3333333333333333
    """
    return overlap(a, b).ratio
