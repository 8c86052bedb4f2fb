"""Contours, regions, region sets, and the same of edge points."""
from __future__ import annotations

import html
from collections.abc import Iterable, Iterator, Sequence
from typing import Any, TypeVar, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _gxshape
from ._answers import Place, Problem, State, Status
from ._arrays import Points, points_array, query_points, real_array
from ._errors import ArgumentError, RegionOpenError
from ._transform import Transform

Self = TypeVar("Self", bound="Shape")
_IDENTITY = (1.0, 0.0, 0.0, 1.0, 0.0, 0.0)
_MOST_DRAWN = 2000
#: What functions take for a shape: an object of this package, or points (n, 2) of an outline.
ShapeLike = Union["Shape", ArrayLike]


def _number(value: float) -> str:
    return f"{value:.6g}"


def _counted(count: int, one: str, many: str | None = None) -> str:
    return f"{count} {one if count == 1 else many or one + 's'}"


def _label(label: int) -> int:
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
        self._remembered = {}
        self._shape = shape

    def _measured(self) -> dict[str, Any]:
        remembered = self._remembered
        if "measure" not in remembered:
            remembered["measure"] = _gxshape.measure(self._shape)
        measured: dict[str, Any] = remembered["measure"]
        return measured

    def _described(self) -> dict[str, Any]:
        remembered = self._remembered
        if "describe" not in remembered:
            remembered["describe"] = _gxshape.describe(self._shape)
        described: dict[str, Any] = remembered["describe"]
        return described

    def _locator(self) -> _gxshape.Locator:
        remembered = self._remembered
        if "locator" not in remembered:
            remembered["locator"] = _gxshape.Locator(self._shape)
        locator: _gxshape.Locator = remembered["locator"]
        return locator

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
        """Return a picture of at most 2,000 points, y downwards, filled even-odd."""
        rings = [ring for part in self._shape.rings() for ring in part]
        drawn = [ring for ring in rings if len(ring) and np.isfinite(ring).all()]
        if not drawn:
            return '<svg xmlns="http://www.w3.org/2000/svg" width="240" height="20"><text x="2" y="14" ' \
                   f'font-size="12">{html.escape(repr(self))}</text></svg>'
        every = max(1, -(-sum(len(r) for r in drawn) // _MOST_DRAWN))
        low = np.min([r.min(axis=0) for r in drawn], axis=0)
        high = np.max([r.max(axis=0) for r in drawn], axis=0)
        size = max(float((high - low).max()), 1e-300)
        scale = 280.0 / size
        width, height = (high - low) * scale + 20.0
        end = "" if self._is_open() else " Z"
        path = " ".join(
            "M " + " L ".join(f"{x:.2f} {y:.2f}" for x, y in (ring[::every] - low) * scale + 10.0) + end
            for ring in drawn)
        fill = "none" if self._is_open() else "#4c78a8"
        return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width:.0f}" height="{height:.0f}">'
                f'<path d="{path}" fill="{fill}" fill-opacity="0.35" fill-rule="evenodd" stroke="#1f4e79"/></svg>')

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
        self._set(_gxshape.make_contour(points_array(points), bool(closed), _label(label)))

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
        self._set(self._remade(self.points, self.closed, _label(label)))

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
        self._set(_gxshape.make_region(points_array(points), _hole_shapes(holes), _label(label)))

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
        self._set(_gxshape.make_region(self.points, _hole_shapes(holes), self.label))

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


# ---- Edge points --------------------------------------------------------------------------------------


def _column(values: ArrayLike | None, count: int, most: int, name: str, kind: type) -> NDArray[Any]:
    if values is None:
        return np.zeros(count, dtype=kind)
    array = real_array(values, name)
    if array.shape != (count,):
        raise ArgumentError(f"{name}: want an array of shape ({count},), got {array.shape} {array.dtype}")
    if array.dtype.kind == "f" and not np.array_equal(array, np.floor(array)):
        raise ArgumentError(f"{name}: want whole numbers, got {array.dtype} with a fraction or NaN")
    if array.size and (array.min() < 0 or array.max() > most):
        raise ArgumentError(f"{name}: want 0 to {most}, got {array.min()} to {array.max()}")
    return np.ascontiguousarray(array, dtype=kind)


def _edges(positions: ArrayLike, magnitudes: ArrayLike | None,
           angles: ArrayLike | None) -> tuple[Points, NDArray[np.uint16], NDArray[np.uint8]]:
    places = points_array(positions, "positions")
    return (places, _column(magnitudes, len(places), 65535, "magnitudes", np.uint16),
            _column(angles, len(places), 255, "angles", np.uint8))


class EdgeContour(Contour):
    """A contour with an edge point for every vertex: position, magnitude, direction of the gradient.

    ``positions``: shape (n, 2), in the space of the picture; ``magnitudes``: (n,), 0 to 65535; ``angles``:
    (n,), 0 to 255, 256 to the turn; ``transform`` leads from points to positions (the identity).

    >>> edge = EdgeContour([[0, 0], [2, 0], [2, 2]], magnitudes=[9, 8, 7],
    ...                    transform=Transform.scaling(2))
    >>> edge.points
    array([[0., 0.],
           [1., 0.],
           [1., 1.]])
    """

    __slots__ = ()

    def __init__(self, positions: ArrayLike = (), *, magnitudes: ArrayLike | None = None,
                 angles: ArrayLike | None = None, transform: Transform | None = None, closed: bool = True,
                 label: int = 0) -> None:
        six = _IDENTITY if transform is None else transform._six
        self._set(_gxshape.make_edge_contour(*_edges(positions, magnitudes, angles), bool(closed),
                                             _label(label), six))

    def _remade(self, points: Points, closed: bool, label: int) -> _gxshape.Shape:
        # Points that are as they were keep their magnitudes and angles.
        if points is self.points or np.array_equal(points, self.points):
            positions, magnitudes, angles = self._shape.edges
        else:
            positions = self.transform.apply(points)
            magnitudes, angles = np.zeros(len(points), np.uint16), np.zeros(len(points), np.uint8)
        return _gxshape.make_edge_contour(positions, magnitudes, angles, closed, label, self._shape.transform)

    @property
    def positions(self) -> Points:
        """The positions of the edge points, shape (n, 2), in the unit of the picture; a copy."""
        positions: Points = self._shape.edges[0]
        return positions

    @property
    def magnitudes(self) -> NDArray[np.uint16]:
        """The magnitudes, shape (n,); a copy."""
        magnitudes: NDArray[np.uint16] = self._shape.edges[1]
        return magnitudes

    @property
    def angles(self) -> NDArray[np.uint8]:
        """The directions, shape (n,), 256 to the turn; a copy."""
        angles: NDArray[np.uint8] = self._shape.edges[2]
        return angles

    @property
    def transform(self) -> Transform:
        """The transform from points to positions."""
        return Transform.from_numbers(*self._shape.transform)

    def __reduce__(self) -> tuple[Any, ...]:
        return _edge_contour, (*self._shape.edges, self.closed, self.label, self._shape.transform)


class EdgeRegion(Region):
    """A region whose outline is made of edge points; see `EdgeContour`.  Holes are plain regions."""

    __slots__ = ()

    def __init__(self, positions: ArrayLike = (), *, magnitudes: ArrayLike | None = None,
                 angles: ArrayLike | None = None, transform: Transform | None = None,
                 holes: Sequence[Region | ArrayLike] = (), label: int = 0) -> None:
        six = _IDENTITY if transform is None else transform._six
        self._set(_gxshape.make_edge_region(*_edges(positions, magnitudes, angles), _hole_shapes(holes),
                                            _label(label), six))

    def _remade(self, points: Points, closed: bool, label: int) -> _gxshape.Shape:
        if not closed:
            raise RegionOpenError("a region cannot be open")
        if np.array_equal(points, self.points):
            positions, magnitudes, angles = self._shape.edges
        else:
            positions = self.transform.apply(points)
            magnitudes, angles = np.zeros(len(points), np.uint16), np.zeros(len(points), np.uint8)
        return _gxshape.make_edge_region(positions, magnitudes, angles, self._shape.parts, label,
                                         self._shape.transform)

    @property
    def holes(self) -> tuple[Region, ...]:
        """The holes in order, plain regions.  Assignable."""
        return tuple(Region._of(part) for part in self._shape.parts)

    @holes.setter
    def holes(self, holes: Sequence[Region | ArrayLike]) -> None:
        self._set(_gxshape.make_edge_region(*self._shape.edges, _hole_shapes(holes), self.label,
                                            self._shape.transform))

    @property
    def positions(self) -> Points:
        """The positions of the edge points, shape (n, 2), in the unit of the picture; a copy."""
        positions: Points = self._shape.edges[0]
        return positions

    @property
    def magnitudes(self) -> NDArray[np.uint16]:
        """The magnitudes, shape (n,); a copy."""
        magnitudes: NDArray[np.uint16] = self._shape.edges[1]
        return magnitudes

    @property
    def angles(self) -> NDArray[np.uint8]:
        """The directions, shape (n,), 256 to the turn; a copy."""
        angles: NDArray[np.uint8] = self._shape.edges[2]
        return angles

    @property
    def transform(self) -> Transform:
        """The transform from points to positions."""
        return Transform.from_numbers(*self._shape.transform)

    def __reduce__(self) -> tuple[Any, ...]:
        return _edge_region, (*self._shape.edges, self.holes, self.label, self._shape.transform)


class EdgeRegionSet(RegionSet):
    """A set of edge-point regions."""

    __slots__ = ()

    def __init__(self, regions: Iterable[EdgeRegion] = ()) -> None:
        self._set(_gxshape.make_edge_set([_edge_shape(region) for region in regions]))

    @property
    def regions(self) -> tuple[Region, ...]:
        """The regions in order, each an `EdgeRegion`.  Assignable."""
        return tuple(EdgeRegion._of(part) for part in self._shape.parts)

    @regions.setter
    def regions(self, regions: Iterable[Region | ArrayLike]) -> None:
        self._set(_gxshape.make_edge_set([_edge_shape(region) for region in regions]))

    def __reduce__(self) -> tuple[Any, ...]:
        return EdgeRegionSet, (self.regions,)


def _edge_shape(region: object) -> _gxshape.Shape:
    if not isinstance(region, EdgeRegion):
        raise TypeError(f"regions: want EdgeRegion, got {type(region).__name__}")
    return region._shape


def _edge_contour(positions: Points, magnitudes: NDArray[np.uint16], angles: NDArray[np.uint8], closed: bool,
                  label: int, six: tuple[float, ...]) -> EdgeContour:
    return EdgeContour._of(_gxshape.make_edge_contour(positions, magnitudes, angles, closed, label, six))


def _edge_region(positions: Points, magnitudes: NDArray[np.uint16], angles: NDArray[np.uint8],
                 holes: Sequence[Region], label: int, six: tuple[float, ...]) -> EdgeRegion:
    return EdgeRegion._of(_gxshape.make_edge_region(positions, magnitudes, angles, _hole_shapes(holes), label, six))


# ---- From the binding, and to it ------------------------------------------------------------------------

_CLASSES: tuple[type[Shape], ...] = (Contour, Region, RegionSet, EdgeContour, EdgeRegion, EdgeRegionSet)


def wrapped(shape: _gxshape.Shape) -> Shape:
    """Return the object of Python for a shape of the binding."""
    return _CLASSES[shape.kind]._of(shape)


def _region_shape(region: Region | ArrayLike, name: str) -> _gxshape.Shape:
    if isinstance(region, Region):
        return region._shape
    if isinstance(region, Shape):
        raise TypeError(f"{name}: want regions or arrays of points, got {type(region).__name__}")
    return _gxshape.make_region(points_array(region, name), [], 0)


def _hole_shapes(holes: Sequence[Region | ArrayLike]) -> list[_gxshape.Shape]:
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

