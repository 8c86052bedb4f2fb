"""Ragged shapes: any number of shapes in a few arrays, without an object for any of them."""
from __future__ import annotations

from collections.abc import Iterable, Iterator, Sequence
from typing import Any, Union, overload

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _gxshape
from ._arrays import Points, check_finite, points_array, raises_for_nan
from ._errors import ArgumentError
from ._shape import Contour, RegionSet, Shape, area_of, wrapped

Offsets = NDArray[np.int64]
Id = Union[int, str]


def _offsets(values: ArrayLike, name: str, end: int | None, of: str) -> Offsets:
    array = np.asarray(values)
    if array.ndim != 1 or array.size == 0:
        raise ArgumentError(f"{name}: want an array of shape (n + 1,), got {array.shape} {array.dtype}")
    if array.dtype.kind not in "iu":
        raise ArgumentError(f"{name}: want whole numbers, got {array.shape} {array.dtype}")
    offsets = np.ascontiguousarray(array, dtype=np.int64)
    if offsets[0] != 0:
        raise ArgumentError(f"{name}: want 0 at index 0, got {offsets[0]}")
    falls = np.flatnonzero(offsets[1:] < offsets[:-1])
    if falls.size:
        at = int(falls[0]) + 1
        raise ArgumentError(f"{name}: offsets never fall, got {offsets[at]} at index {at} after {offsets[at - 1]}")
    if end is not None and offsets[-1] != end:
        raise ArgumentError(f"{name}: want {end} at index {len(offsets) - 1}, the number of {of}, got {offsets[-1]}")
    return offsets


class Shapes:
    """Shapes as ragged arrays, in the memory layout of GeoArrow.

    ``coords``: float64 (n, 2); ``ring_offsets``: int64 (r + 1,), into coords; ``shape_offsets``: int64
    (s + 1,), into rings, the first ring of a shape its outline and the others holes (None: every ring is a
    shape).  With ``part_offsets`` (p + 1,), into rings, shapes may be sets: ``shape_offsets`` then count
    parts.  ``closed``: bool (r,), False for open contours.  ``ids``: one a shape, else their numbers from 1.

    Rings may repeat their first point at the end.  Arrays of the right type are looked at, not copied (others,
    and all with ``copy``, are): do not write to them meanwhile.
    Raises: ArgumentError for offsets that do not begin with 0, fall, or end elsewhere than they should.

    >>> two = Shapes([[0, 0], [4, 0], [4, 3], [9, 9], [8, 9], [8, 8]], [0, 3, 6])
    >>> two
    Shapes(2 shapes, 2 rings, 6 points)
    >>> two[0]
    Region(3 points, 0 holes, area=6)
    """

    __slots__ = ("coords", "ring_offsets", "part_offsets", "shape_offsets", "closed", "ids", "errors", "_ragged")
    __hash__ = None  # type: ignore[assignment]

    def __init__(self, coords: ArrayLike, ring_offsets: ArrayLike, shape_offsets: ArrayLike | None = None, *,
                 part_offsets: ArrayLike | None = None, ids: Sequence[Id] | None = None,
                 closed: ArrayLike | None = None, copy: bool = False) -> None:
        self.coords: Points = points_array(coords, "coords", copy=copy)
        self.ring_offsets = _offsets(ring_offsets, "ring_offsets", len(self.coords), "points")
        rings = len(self.ring_offsets) - 1
        self.part_offsets: Offsets | None = None
        if part_offsets is not None:
            self.part_offsets = _offsets(part_offsets, "part_offsets", rings, "rings")
        if shape_offsets is None:
            inner = rings if self.part_offsets is None else len(self.part_offsets) - 1
            shape_offsets = np.arange(inner + 1)
        if self.part_offsets is None:
            self.shape_offsets = _offsets(shape_offsets, "shape_offsets", rings, "rings")
        else:
            self.shape_offsets = _offsets(shape_offsets, "shape_offsets", len(self.part_offsets) - 1, "parts")
        if copy:
            self.ring_offsets = self.ring_offsets.copy()
            self.shape_offsets = self.shape_offsets.copy()
            self.part_offsets = None if self.part_offsets is None else self.part_offsets.copy()
        self.closed: NDArray[np.bool_] | None = None
        if closed is not None:
            flags = np.asarray(closed)
            if flags.shape != (rings,) or flags.dtype.kind != "b":
                raise ArgumentError(f"closed: want bool of shape ({rings},), got {flags.shape} {flags.dtype}")
            self.closed = None if bool(flags.all()) else np.ascontiguousarray(flags)
        self.ids: tuple[Id, ...] | None = None if ids is None else tuple(ids)
        if self.ids is not None and len(self.ids) != len(self):
            raise ArgumentError(f"ids: want {len(self)}, one a shape, got {len(self.ids)}")
        #: Of what `read` could not read: (shape, code, number, text, record, byte).
        self.errors: tuple[tuple[int, str, int, str, int, int], ...] = ()
        none = np.empty(0, np.int64)
        self._ragged = _gxshape.Ragged(
            self.coords, self.ring_offsets, none if self.part_offsets is None else self.part_offsets,
            self.shape_offsets, np.empty(0, np.bool_) if self.closed is None else self.closed)

    # ---- From and to --------------------------------------------------------------------------------

    @classmethod
    def _from_arrays(cls, arrays: tuple[Points, Offsets, Offsets, Offsets, NDArray[np.bool_]],
                     ids: Sequence[Id] | None = None) -> Shapes:
        coords, rings, parts, shapes, closed = arrays
        if np.array_equal(shapes, np.arange(len(shapes))):  # every shape has one part: no level of parts
            return cls(coords, rings, parts, ids=ids, closed=closed)
        return cls(coords, rings, shapes, part_offsets=parts, ids=ids, closed=closed)

    @classmethod
    def from_objects(cls, objects: Iterable[Shape | ArrayLike], *, ids: Sequence[Id] | None = None) -> Shapes:
        """Return the shapes of objects of this package, or of arrays (n, 2) of outlines."""
        taken = [one._shape if isinstance(one, Shape) else area_of(one) for one in objects]
        return cls._from_arrays(_gxshape.gather(taken), ids)

    @classmethod
    def from_geoarrow(cls, coords: ArrayLike, offsets: Sequence[ArrayLike], *,
                      ids: Sequence[Id] | None = None) -> Shapes:
        """Return the shapes of coordinates and offsets, innermost first: one array for rings alone, two for
        polygons, three for multi-polygons.  What shapely's ``to_ragged_array`` gives fits."""
        if not 1 <= len(offsets) <= 3:
            raise ArgumentError(f"offsets: want one to three arrays, got {len(offsets)}")
        if len(offsets) == 3:
            return cls(coords, offsets[0], offsets[2], part_offsets=offsets[1], ids=ids)
        return cls(coords, offsets[0], offsets[1] if len(offsets) == 2 else None, ids=ids)

    def to_geoarrow(self, *, close_rings: bool = True) -> tuple[Points, tuple[NDArray[np.int32], ...]]:
        """Return coordinates and int32 offsets, innermost first; with ``close_rings`` each closed ring repeats its
        first point (a ring that does so already is left alone)."""
        coords, rings = self._with_rings_closed() if close_rings else (self.coords, self.ring_offsets)
        levels = [rings] if self.part_offsets is None else [rings, self.part_offsets]
        if max(len(coords), len(rings)) > np.iinfo(np.int32).max:
            raise ArgumentError("offsets of 32 bits cannot count so many points")
        return coords, tuple(level.astype(np.int32) for level in (*levels, self.shape_offsets))

    def _with_rings_closed(self) -> tuple[Points, Offsets]:
        first, end = self.ring_offsets[:-1], self.ring_offsets[1:]
        last = np.maximum(end - 1, 0)
        count = end - first
        adds = count > 0
        adds[adds] &= (self.coords[first[adds]] != self.coords[last[adds]]).any(axis=1) | (count[adds] == 1)
        if self.closed is not None:
            adds &= self.closed
        coords = np.insert(self.coords, end[adds], self.coords[first[adds]], axis=0)
        rings = np.concatenate([[0], end + np.cumsum(adds)]).astype(np.int64)
        return coords, rings

    # ---- As a sequence --------------------------------------------------------------------------------

    def __len__(self) -> int:
        return len(self.shape_offsets) - 1

    @overload
    def __getitem__(self, index: int) -> Shape: ...
    @overload
    def __getitem__(self, index: slice | NDArray[Any]) -> Shapes: ...

    def __getitem__(self, index: Any) -> Any:
        """Return one shape as an object (a copy), or the shapes of a slice, of a bool array or of indexes."""
        if isinstance(index, (int, np.integer)):
            at = int(index) + (len(self) if index < 0 else 0)
            if not 0 <= at < len(self):
                raise IndexError(f"shape {index} of {len(self)}")
            return wrapped(_gxshape.shape_at(self._ragged, at))
        if isinstance(index, slice):
            return self._take(np.arange(len(self))[index])
        array = np.asarray(index)
        if array.dtype.kind == "b":
            if array.shape != (len(self),):
                raise ArgumentError(f"index: want bool of shape ({len(self)},), got {array.shape}")
            return self._take(np.flatnonzero(array))
        if array.dtype.kind not in "iu" or array.ndim != 1:
            raise TypeError(f"index: want an int, a slice, bools or indexes, got {array.shape} {array.dtype}")
        if array.size and (array.min() < -len(self) or array.max() >= len(self)):
            raise IndexError(f"shape {array.max()} of {len(self)}")
        return self._take(np.where(array < 0, array + len(self), array))

    def __iter__(self) -> Iterator[Shape]:
        return (self[i] for i in range(len(self)))

    def _take(self, wanted: NDArray[np.int64]) -> Shapes:
        inner = wanted
        levels = [self.shape_offsets] + ([] if self.part_offsets is None else [self.part_offsets])
        taken = []
        for offsets in levels:
            inner, made = _gathered(offsets, inner)
            taken.append(made)
        points, rings = _gathered(self.ring_offsets, inner)
        closed = None if self.closed is None else self.closed[inner]
        ids = self.id_column()[wanted].tolist()
        part = taken[1] if len(taken) == 2 else None
        return Shapes(self.coords[points], rings, taken[0], part_offsets=part, ids=ids, closed=closed)

    def id_column(self) -> NDArray[Any]:
        """Return the ids: int64 where all are whole numbers, else object."""
        if self.ids is None:
            return np.arange(1, len(self) + 1)
        if all(isinstance(one, (int, np.integer)) and abs(one) < 2**63 for one in self.ids):
            return np.array(self.ids, dtype=np.int64)
        column = np.empty(len(self.ids), dtype=object)
        column[:] = self.ids
        return column

    @property
    def nbytes(self) -> int:
        """The bytes of all arrays."""
        arrays = [self.coords, self.ring_offsets, self.shape_offsets, self.part_offsets, self.closed]
        return sum(array.nbytes for array in arrays if array is not None)

    def check_finite(self) -> None:
        """Raise NotFiniteError with ring and index at the first coordinate that is not finite."""
        bad = np.flatnonzero(~np.isfinite(self.coords).all(axis=1))
        if bad.size:
            ring = int(np.searchsorted(self.ring_offsets, bad[0], side="right")) - 1
            first = int(self.ring_offsets[ring])
            check_finite(self.coords[first:int(self.ring_offsets[ring + 1])], f"shapes: ring {ring}", ring)

    def ready(self) -> _gxshape.Ragged:
        """Return the binding's view, after what the NaN policy asks for."""
        if raises_for_nan():
            self.check_finite()
        return self._ragged

    def __eq__(self, other: object) -> bool:
        """Compare all arrays and ids, bit for bit but for −0 and NaN, which equals NaN."""
        if not isinstance(other, Shapes):
            return NotImplemented
        pairs = ((self.ring_offsets, other.ring_offsets), (self.shape_offsets, other.shape_offsets),
                 (self.part_offsets, other.part_offsets), (self.closed, other.closed),
                 (self.id_column(), other.id_column()))
        return np.array_equal(self.coords, other.coords, equal_nan=True) and all(
            a is b if a is None or b is None else np.array_equal(a, b) for a, b in pairs)

    def __reduce_ex__(self, protocol: Any) -> tuple[Any, ...]:
        # Arrays pickle themselves, with protocol 5 out of band.
        return _remade, (self.coords, self.ring_offsets, self.shape_offsets, self.part_offsets, self.ids,
                         self.closed, self.errors)

    def __repr__(self) -> str:
        def counted(count: int, word: str) -> str:
            return f"{count} {word}{'' if count == 1 else 's'}"

        return (f"Shapes({counted(len(self), 'shape')}, {counted(len(self.ring_offsets) - 1, 'ring')}, "
                f"{counted(len(self.coords), 'point')})")


def _gathered(offsets: Offsets, wanted: NDArray[np.int64]) -> tuple[NDArray[np.int64], Offsets]:
    """Return the indexes of the elements of these rows, and the offsets that they then have."""
    counts = offsets[wanted + 1] - offsets[wanted]
    made = np.concatenate([[0], np.cumsum(counts)]).astype(np.int64)
    inner = np.arange(made[-1]) - np.repeat(made[:-1], counts) + np.repeat(offsets[wanted], counts)
    return inner, made


def _remade(coords: Points, rings: Offsets, shapes: Offsets, parts: Offsets | None, ids: Sequence[Id] | None,
            closed: NDArray[np.bool_] | None, errors: tuple[Any, ...]) -> Shapes:
    made = Shapes(coords, rings, shapes, part_offsets=parts, ids=ids, closed=closed)
    made.errors = errors
    return made


def shapes_of(value: Any) -> Shapes:
    """Return shapes as `Shapes`: themselves, or of a list of objects or arrays."""
    if isinstance(value, Shapes):
        return value
    if isinstance(value, RegionSet):
        return Shapes.from_objects(value.regions)
    if isinstance(value, Contour):
        return Shapes.from_objects([value])
    if isinstance(value, np.ndarray):
        raise TypeError("shapes: want Shapes or a list of shapes, got one array; for one outline write [array]")
    return Shapes.from_objects(value)
