"""Contours, regions and sets of edge points."""
from __future__ import annotations

from collections.abc import Iterable, Sequence
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _gxshape
from ._arrays import Points, points_array, real_array
from ._errors import ArgumentError, RegionOpenError
from ._shape import CLASSES, Contour, Region, RegionSet, hole_shapes, label_of
from ._transform import Transform

_IDENTITY = (1.0, 0.0, 0.0, 1.0, 0.0, 0.0)


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


class _EdgePoints:
    """What a contour and a region of edge points have beside their points."""

    __slots__ = ()
    _shape: _gxshape.Shape

    def _edges_for(self, points: Points) -> tuple[Points, NDArray[np.uint16], NDArray[np.uint8]]:
        # Points that are as they were, NaN or not, keep their magnitudes and angles.
        if np.array_equal(points, self._shape.points, equal_nan=True):
            return self._shape.edges
        return self.transform.apply(points), np.zeros(len(points), np.uint16), np.zeros(len(points), np.uint8)

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


class EdgeContour(_EdgePoints, Contour):
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
                                             label_of(label), six))

    def _remade(self, points: Points, closed: bool, label: int) -> _gxshape.Shape:
        return _gxshape.make_edge_contour(*self._edges_for(points), closed, label, self._shape.transform)

    def __reduce__(self) -> tuple[Any, ...]:
        return _edge_contour, (*self._shape.edges, self.closed, self.label, self._shape.transform)


class EdgeRegion(_EdgePoints, Region):
    """A region whose outline is made of edge points; see `EdgeContour`.  Holes are plain regions."""

    __slots__ = ()

    def __init__(self, positions: ArrayLike = (), *, magnitudes: ArrayLike | None = None,
                 angles: ArrayLike | None = None, transform: Transform | None = None,
                 holes: Sequence[Region | ArrayLike] = (), label: int = 0) -> None:
        six = _IDENTITY if transform is None else transform._six
        self._set(_gxshape.make_edge_region(*_edges(positions, magnitudes, angles), hole_shapes(holes),
                                            label_of(label), six))

    def _remade(self, points: Points, closed: bool, label: int) -> _gxshape.Shape:
        if not closed:
            raise RegionOpenError("a region cannot be open")
        return _gxshape.make_edge_region(*self._edges_for(points), self._shape.parts, label, self._shape.transform)

    @property
    def holes(self) -> tuple[Region, ...]:
        """The holes in order, plain regions.  Assignable."""
        return tuple(Region._of(part) for part in self._shape.parts)

    @holes.setter
    def holes(self, holes: Sequence[Region | ArrayLike]) -> None:
        self._set(_gxshape.make_edge_region(*self._shape.edges, hole_shapes(holes), self.label,
                                            self._shape.transform))

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
    return EdgeRegion._of(_gxshape.make_edge_region(positions, magnitudes, angles, hole_shapes(holes), label, six))


CLASSES.extend((EdgeContour, EdgeRegion, EdgeRegionSet))
