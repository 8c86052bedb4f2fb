"""Contours, regions and region sets."""
from __future__ import annotations

from collections.abc import Callable, Iterable, Iterator, Sequence
from typing import Any, TypeVar, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _gxshape
from ._answers import Place, Problem, State, Status
from ._arrays import Points, points_array, query_points, real_array
from ._errors import ArgumentError, RegionOpenError
from ._svg import svg
from ._transform import Transform

Self = TypeVar("Self", bound="Shape")
Made = TypeVar("Made")
#: What functions take for a shape: an object of this package, or points (n, 2) of an outline.
ShapeLike = Union["Shape", ArrayLike]


def _number(value: float) -> str:
    return f"{value:.6g}"


def _counted(count: int, one: str, many: str | None = None) -> str:
    return f"{count} {one if count == 1 else many or one + 's'}"


def label_of(label: int) -> int:
    """Return the label, which has to be a whole number from 0 to 2**63 − 1."""
    if not isinstance(label, (int, np.integer)) or isinstance(label, bool):
        raise TypeError(f"label: want an int, got {type(label).__name__}")
    if not 0 <= label < 2**63:
        raise ArgumentError(f"label: want 0 to 2**63 - 1, got {label}")
    return int(label)


class Shape:
    """What contours, regions and sets have in common.  It is not made by itself.

    Every object holds a shape of the library that nothing changes; a setter replaces it.  So a view of
    its points stays good, and any number of threads may ask one object.
    """

    __slots__ = ("_shape", "_remembered")
    __hash__ = None  # type: ignore[assignment]
    _shape: _gxshape.Shape
    _remembered: dict[str, Any]

    @classmethod
    def _of(cls: type[Self], shape: _gxshape.Shape) -> Self:
        self = object.__new__(cls)
        self._set(shape)
        return self

    def _set(self, shape: _gxshape.Shape) -> None:
        self._shape = shape
        self._remembered = {}

    def _once(self, name: str, make: Callable[[_gxshape.Shape], Made]) -> Made:
        remembered = self._remembered  # that of this shape, whatever a setter on another thread does
        if name not in remembered:
            remembered[name] = make(self._shape)
        made: Made = remembered[name]
        return made

    def _measured(self) -> dict[str, Any]:
        return self._once("measure", _gxshape.measure)

    def _described(self) -> dict[str, Any]:
        return self._once("describe", _gxshape.describe)

    def _locator(self) -> _gxshape.Locator:
        return self._once("locator", _gxshape.Locator)

    # ---- Measures -------------------------------------------------------------------------------

    @property
    def status(self) -> Status:
        """What the measures are worth: ``OK``, ``EMPTY``, ``NOT_FINITE``, ``FLAT``, ``NOT_CLOSED`` …"""
        return Status(self._measured()["status"])

    @property
    def area(self) -> float:
        """The area, holes taken away, in L²; 0 of fewer than 3 points, NaN of an open contour."""
        return float(self._measured()["area"])

    @property
    def filled_area(self) -> float:
        """The area with holes filled, in L²."""
        return float(self._described()["filled_area"])

    @property
    def perimeter(self) -> float:
        """The length of the outlines alone, in L; of an open contour NaN."""
        return float(self._described()["perimeter"])

    @property
    def length(self) -> float:
        """The length of all borders, holes too, or of an open contour, in L."""
        return float(self._measured()["length"])

    @property
    def centre(self) -> NDArray[np.float64]:
        """The centre of the area, shape (2,), in L; of the border where there is no area, NaN without points."""
        return np.array(self._measured()["centre"])

    @property
    def box(self) -> tuple[float, float, float, float]:
        """The upright box (x_min, y_min, x_max, y_max) around the outlines, in L; NaN without points."""
        low_x, low_y, high_x, high_y = self._measured()["box"]
        return (low_x, low_y, high_x, high_y)

    # ---- Places ---------------------------------------------------------------------------------

    def inside(self, points: ArrayLike, *, tolerance: float = 0.0) -> Any:
        """Tell whether points lie inside or on the border (within ``tolerance``, in L).

        (2,) → bool; (…, 2) → bool array of shape (…).  Holes are outside.  Exact with tolerance 0.

        >>> import gxshape as gx
        >>> gx.Region([[0, 0], [4, 0], [4, 3]]).inside([[3, 1], [1, 3]])
        array([ True, False])
        """
        return self.locate(points, tolerance=tolerance) >= 0

    def locate(self, points: ArrayLike, *, tolerance: float = 0.0) -> Any:
        """Tell where points lie: `State` for (2,), else int8 array of shape (…): +1 inside, 0 border, −1."""
        if not tolerance >= 0.0:
            raise ArgumentError(f"tolerance: want 0 or more, got {tolerance}")
        array, shape = query_points(points)
        states = self._locator().states(array, float(tolerance))
        return State(int(states[0])) if shape == () else states.reshape(shape)

    def signed_distance(self, points: ArrayLike) -> Any:
        """Return the distance from the border in L, above 0 outside, below 0 inside; NaN without points."""
        array, shape = query_points(points)
        found = self._locator().signed_distances(array)
        return float(found[0]) if shape == () else found.reshape(shape)

    def nearest(self, points: ArrayLike) -> Any:
        """Return the nearest place of the border: `Place` (or None) for (2,); for (…, 2) a dict of arrays.

        The dict has ``distance`` (L), ``region``, ``ring``, ``edge``, ``t``, each of shape (…), ``point`` of
        shape (…, 2), and ``status``.
        """
        array, shape = query_points(points)
        found = self._locator().nearest(array)
        if shape == ():
            if found["edge"][0] < 0:
                return None
            x, y = found["point"][0]
            return Place(int(found["ring"][0]), int(found["edge"][0]), float(found["t"][0]), float(x), float(y))
        answer = {name: column.reshape(shape) for name, column in found.items() if name != "point"}
        answer["point"] = found["point"].reshape(*shape, 2)
        return answer

    # ---- Other shapes ---------------------------------------------------------------------------

    def moved(self: Self, *, transform: Transform) -> Self:
        """Return the shape mapped through a transform, holes and all; edge points are left behind."""
        if not isinstance(transform, Transform):
            raise TypeError(f"transform: want a Transform, got {type(transform).__name__}")
        moved: Self = wrapped(self._shape.mapped(transform._six))  # type: ignore[assignment]
        return moved

    def hull(self) -> Region:
        """Return the convex hull of all points."""
        return Region._of(_gxshape.convex_hull(self._shape))

    # ---- Text and files -------------------------------------------------------------------------

    def to_wkt(self) -> str:
        """Return well-known text; every number reads back as the same double."""
        return _gxshape.to_wkt(self._shape)

    def to_wkb(self) -> bytes:
        """Return well-known binary, little-endian."""
        return _gxshape.to_wkb(self._shape)

    def to_archive(self) -> bytes:
        """Return the library's archive of the shape: the same bytes on every machine."""
        return self._shape.archive()

    @classmethod
    def from_wkt(cls: type[Self], text: str) -> Self:
        """Return the shape of a well-known text.  Raises: ReadError; ArgumentError for another kind of shape."""
        return cls._cast(wrapped(_gxshape.from_wkt(text)))

    @classmethod
    def from_wkb(cls: type[Self], content: bytes) -> Self:
        """Return the shape of well-known binary.  Raises: as `from_wkt`."""
        return cls._cast(wrapped(_gxshape.from_wkb(content)))

    @classmethod
    def from_archive(cls: type[Self], content: bytes) -> Self:
        """Return the shape of an archive.  Raises: ArchiveError, ArgumentError for another kind of shape."""
        return cls._cast(wrapped(_gxshape.from_archive(content)))

    @classmethod
    def _from_archive(cls: type[Self], content: bytes) -> Self:
        return cls._cast(wrapped(_gxshape.from_archive(content)))

    @classmethod
    def _cast(cls: type[Self], shape: Shape) -> Self:
        if not isinstance(shape, cls):
            raise ArgumentError(f"want a {cls.__name__}, got a {type(shape).__name__}")
        return shape

    # ---- Python's own ---------------------------------------------------------------------------

    def __eq__(self, other: object) -> bool:
        """Compare outlines, holes and closed flags, exactly; labels take no part (the C++ ``==`` of regions
        leaves the holes out)."""
        if not isinstance(other, Shape):
            return NotImplemented
        return self._shape.same(other._shape)

    def __copy__(self: Self) -> Self:
        return self._of(self._shape)

    def __deepcopy__(self: Self, memo: dict[int, Any]) -> Self:
        return self._of(self._shape)

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self)._from_archive, (self.to_archive(),)

    def _repr_svg_(self) -> str:
        """Return a picture of about 2,000 points at most, y downwards, filled even-odd."""
        rings = [ring for part in self._shape.rings() for ring in part]
        return svg(rings, closed=not self._is_open(), words=repr(self))

    def _repr_png_(self) -> bytes | None:
        """Return a picture made by matplotlib; None where that is not installed."""
        try:
            from ._plot import png
        except ImportError:
            return None
        return png(self)

    def _is_open(self) -> bool:
        return False

    @property
    def __geo_interface__(self) -> dict[str, Any]:
        """The shape as GeoJSON has it; rings repeat their first point."""
        parts = [[_closed(ring) for ring in part] for part in self._shape.rings()]
        if self._is_open():
            return {"type": "LineString", "coordinates": tuple(map(tuple, parts[0][0][:-1])) if parts else ()}
        if len(parts) == 1 or (not parts and not isinstance(self, RegionSet)):
            return {"type": "Polygon", "coordinates": _nested(parts[0]) if parts else ()}
        return {"type": "MultiPolygon", "coordinates": tuple(_nested(part) for part in parts)}


def _closed(ring: NDArray[np.float64]) -> list[list[float]]:
    points: list[list[float]] = ring.tolist()
    return points + points[:1]


def _nested(rings: list[list[list[float]]]) -> tuple[tuple[tuple[float, ...], ...], ...]:
    return tuple(tuple(map(tuple, ring)) for ring in rings)


class Contour(Shape):
    """An ordered list of points, closed (an outline) or open (a poly-line), with a label.

    ``points``: shape (n, 2), any real type and stride, copied; in L.  The first point is not repeated.

    >>> line = Contour([[0, 0], [3, 0], [3, 4]], closed=False)
    >>> line
    Contour(3 points, open, length=7)
    >>> line.points.flags.writeable
    False
    """

    __slots__ = ()

    def __init__(self, points: ArrayLike = (), *, closed: bool = True, label: int = 0) -> None:
        self._set(_gxshape.make_contour(points_array(points), bool(closed), label_of(label)))

    def _remade(self, points: Points, closed: bool, label: int) -> _gxshape.Shape:
        return _gxshape.make_contour(points, closed, label)

    @property
    def points(self) -> Points:
        """The points, shape (n, 2): a read-only view of the library's memory, without a copy.

        Assigning replaces them; a view that was taken before keeps the old ones.
        """
        return self._shape.points

    @points.setter
    def points(self, points: ArrayLike) -> None:
        self._set(self._remade(points_array(points), self.closed, self.label))

    @property
    def closed(self) -> bool:
        """Whether the last point leads back to the first; assignable, but not of regions."""
        return self._shape.closed

    @closed.setter
    def closed(self, closed: bool) -> None:
        self._set(self._remade(self.points, bool(closed), self.label))

    @property
    def label(self) -> int:
        """A number that is the caller's, 0 to 2**63 − 1; takes no part in ``==``."""
        return self._shape.label

    @label.setter
    def label(self, label: int) -> None:
        self._set(self._remade(self.points, self.closed, label_of(label)))

    def __len__(self) -> int:
        return len(self.points)

    def _is_open(self) -> bool:
        return not self.closed

    def __repr__(self) -> str:
        state = "closed" if self.closed else "open"
        return f"{type(self).__name__}({_counted(len(self), 'point')}, {state}, length={_number(self.length)})"


class Region(Contour):
    """A closed outline with holes.

    ``points``: the outline, shape (n, 2), copied; ``holes``: regions (which may have islands as holes) or
    arrays (m, 2).  Raises: BadParamsError where a hole's outline crosses or touches the outline; give such
    to `gxshape.overlay.regions_of`, or to ``repaired``.

    >>> import gxshape as gx
    >>> plate = gx.Region([[0, 0], [40, 0], [40, 30], [0, 30]],
    ...                   holes=[[[25, 10], [35, 10], [35, 20], [25, 20]]])
    >>> plate
    Region(4 points, 1 hole, area=1100)
    >>> plate.area, plate.centre
    (1100.0, array([19.09090909, 15.        ]))
    >>> plate.inside([[30, 15], [5, 5]])
    array([False,  True])
    """

    __slots__ = ()

    def __init__(self, points: ArrayLike = (), *, holes: Sequence[Region | ArrayLike] = (),
                 label: int = 0) -> None:
        self._set(_gxshape.make_region(points_array(points), hole_shapes(holes), label_of(label)))

    def _remade(self, points: Points, closed: bool, label: int) -> _gxshape.Shape:
        if not closed:
            raise RegionOpenError("a region cannot be open")
        return _gxshape.make_region(points, self._shape.parts, label)

    @property
    def holes(self) -> tuple[Region, ...]:
        """The holes in order, as regions; changing one does not change this region.  Assignable."""
        return tuple(Region._of(part) for part in self._shape.parts)

    @holes.setter
    def holes(self, holes: Sequence[Region | ArrayLike]) -> None:
        self._set(_gxshape.make_region(self.points, hole_shapes(holes), self.label))

    def repaired(self, *, rule: str = "even-odd") -> RegionSet:
        """Return the valid regions that the outline encloses by rule, less its holes: see `gxshape.overlay.repair`.

        >>> Region([[0, 0], [0, 3], [6, 0], [6, 6]]).repaired()
        RegionSet(2 regions, 0 holes, area=15)
        """
        from .overlay import repair

        return repair(self, rule=rule)

    def check(self, *, max: int = 100) -> list[Problem]:
        """Return what is wrong, at most ``max`` problems; none where the region is valid.

        >>> Region([[0, 0], [0, 3], [6, 0], [6, 6]]).check()[0].sentence
        'edges 0 and 2 of the outline cross at (2, 2)'
        """
        from .overlay import check

        return check(self, max=max)

    def __repr__(self) -> str:
        holes = len(self._shape.parts)
        return (f"{type(self).__name__}({_counted(len(self), 'point')}, {_counted(holes, 'hole')}, "
                f"area={_number(self.area)})")


class RegionSet(Shape):
    """Several regions as one shape.

    ``regions``: regions, or arrays (n, 2) of outlines.

    >>> RegionSet([[[0, 0], [2, 0], [2, 2]], [[5, 0], [6, 0], [6, 1], [5, 1]]])
    RegionSet(2 regions, 0 holes, area=3)
    """

    __slots__ = ()

    def __init__(self, regions: Iterable[Region | ArrayLike] = ()) -> None:
        self._set(_gxshape.make_set([_region_shape(region, "regions") for region in regions]))

    @property
    def regions(self) -> tuple[Region, ...]:
        """The regions in order; changing one does not change the set.  Assignable."""
        return tuple(wrapped(part) for part in self._shape.parts)  # type: ignore[misc]

    @regions.setter
    def regions(self, regions: Iterable[Region | ArrayLike]) -> None:
        self._set(_gxshape.make_set([_region_shape(region, "regions") for region in regions]))

    def __len__(self) -> int:
        return len(self._shape.parts)

    def __getitem__(self, index: int) -> Region:
        return self.regions[index]

    def __iter__(self) -> Iterator[Region]:
        return iter(self.regions)

    def which(self, points: ArrayLike) -> Any:
        """Return the index of the first region that holds each point or has it on its border, −1 for none."""
        array, shape = query_points(points)
        found = self._locator().which(array)
        return int(found[0]) if shape == () else found.reshape(shape)

    def repaired(self, *, rule: str = "even-odd") -> RegionSet:
        """Return the valid regions that the regions together enclose: see `gxshape.overlay.repair`."""
        from .overlay import repair

        return repair(self, rule=rule)

    def check(self, *, max: int = 100) -> list[Problem]:
        """Return what is wrong, at most ``max`` problems; none where the set is valid."""
        from .overlay import check

        return check(self, max=max)

    def __repr__(self) -> str:
        holes = sum(len(part.parts) for part in self._shape.parts)
        return (f"{type(self).__name__}({_counted(len(self), 'region')}, {_counted(holes, 'hole')}, "
                f"area={_number(self.area)})")


# ---- From the binding, and to it ------------------------------------------------------------------------

#: By the kind that the binding tells; those of edge points come to them in their own file.
CLASSES: list[type[Shape]] = [Contour, Region, RegionSet]


def wrapped(shape: _gxshape.Shape) -> Shape:
    """Return the object of Python for a shape of the binding."""
    return CLASSES[shape.kind]._of(shape)


def _region_shape(region: Region | ArrayLike, name: str) -> _gxshape.Shape:
    if isinstance(region, Region):
        return region._shape
    if isinstance(region, Shape):
        raise TypeError(f"{name}: want regions or arrays of points, got {type(region).__name__}")
    return _gxshape.make_region(points_array(region, name), [], 0)


def hole_shapes(holes: Sequence[Region | ArrayLike]) -> list[_gxshape.Shape]:
    """Return the binding's shapes of a list of holes."""
    if isinstance(holes, Shape) or (isinstance(holes, np.ndarray) and holes.ndim == 2):
        raise ArgumentError("holes: want a sequence of regions or of arrays (m, 2), got one of them")
    return [_region_shape(hole, "holes") for hole in holes]


def shape_of(value: ShapeLike, name: str = "shape") -> _gxshape.Shape:
    """Return the binding's shape of an object, or of an outline's points (n, 2)."""
    if isinstance(value, Shape):
        return value._shape
    return _gxshape.make_region(points_array(value, name), [], 0)


def area_of(value: ShapeLike, name: str = "shape") -> _gxshape.Shape:
    """Return the binding's shape of a region or set; a closed contour as a region without holes."""
    if isinstance(value, (Region, RegionSet)):
        return value._shape
    if isinstance(value, Contour):
        if not value.closed:
            raise ArgumentError(f"{name}: want a shape with an area, got an open contour")
        return _gxshape.make_region(value.points, [], value.label)
    return shape_of(value, name)


def points_of(value: ShapeLike, name: str = "points") -> tuple[Points, bool]:
    """Return the points of an object's outline or of an array, and whether they are closed."""
    if isinstance(value, Contour):
        return value.points, value.closed
    if isinstance(value, RegionSet):
        raise TypeError(f"{name}: want points or one outline, got a {type(value).__name__}")
    return points_array(value, name), True  # type: ignore[arg-type]

