"""Affine transforms of the plane."""
from __future__ import annotations

import math
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._arrays import query_points, real_array
from ._errors import ArgumentError


class Transform:
    """An affine transform p → matrix · p + translation; it never changes.

    ``matrix``: shape (2, 2); ``translation``: shape (2,), in the unit of the points.

    >>> turn = Transform.rotation(math.pi / 2, about=(1, 0))
    >>> turn.apply([2, 0]).round(12)
    array([1., 1.])
    >>> (turn.inverse() @ turn).apply([3, 4]).round(12)
    array([3., 4.])
    """

    __slots__ = ("_six",)

    def __init__(self, matrix: ArrayLike = ((1, 0), (0, 1)), translation: ArrayLike = (0, 0)) -> None:
        m = real_array(matrix, "matrix")
        t = real_array(translation, "translation")
        if m.shape != (2, 2):
            raise ArgumentError(f"matrix: want an array of shape (2, 2), got {m.shape} {m.dtype}")
        if t.shape != (2,):
            raise ArgumentError(f"translation: want an array of shape (2,), got {t.shape} {t.dtype}")
        self._six = (float(m[0, 0]), float(m[0, 1]), float(m[1, 0]), float(m[1, 1]), float(t[0]), float(t[1]))

    @classmethod
    def from_numbers(cls, xx: float, xy: float, yx: float, yy: float, tx: float, ty: float) -> Transform:
        """Return x' = xx·x + xy·y + tx, y' = yx·x + yy·y + ty."""
        return cls([[xx, xy], [yx, yy]], [tx, ty])

    @classmethod
    def rotation(cls, angle: float, *, about: ArrayLike = (0, 0)) -> Transform:
        """Return the rotation by ``angle`` (radians, from x towards y) about a point."""
        c, s = math.cos(angle), math.sin(angle)
        return cls._about([[c, -s], [s, c]], about)

    @classmethod
    def scaling(cls, factor: float, *, about: ArrayLike = (0, 0)) -> Transform:
        """Return the scaling by ``factor`` about a point."""
        return cls._about([[factor, 0.0], [0.0, factor]], about)

    @classmethod
    def shift(cls, by: ArrayLike) -> Transform:
        """Return the shift by a vector of shape (2,)."""
        return cls(translation=by)

    @classmethod
    def _about(cls, matrix: ArrayLike, about: ArrayLike) -> Transform:
        centre = real_array(about, "about").astype(np.float64)
        m = np.asarray(matrix, dtype=np.float64)
        if centre.shape != (2,):
            raise ArgumentError(f"about: want an array of shape (2,), got {centre.shape} {centre.dtype}")
        return cls(m, centre - m @ centre)

    @property
    def matrix(self) -> NDArray[np.float64]:
        """The matrix, shape (2, 2)."""
        return np.array(self._six[:4]).reshape(2, 2)

    @property
    def translation(self) -> NDArray[np.float64]:
        """The translation, shape (2,), in the unit of the points."""
        return np.array(self._six[4:])

    @property
    def determinant(self) -> float:
        """The factor of areas, below 0 where the transform mirrors."""
        return self._six[0] * self._six[3] - self._six[1] * self._six[2]

    def apply(self, points: ArrayLike) -> NDArray[np.float64]:
        """Map a point (2,) or points (…, 2)."""
        array, shape = query_points(points)
        xx, xy, yx, yy, tx, ty = self._six
        out = np.empty_like(array)
        out[:, 0] = xx * array[:, 0] + xy * array[:, 1] + tx
        out[:, 1] = yx * array[:, 0] + yy * array[:, 1] + ty
        return out.reshape(*shape, 2)

    def inverse(self) -> Transform:
        """Return the transform that undoes this one.  Raises: ArgumentError where there is none."""
        det = self.determinant
        if not math.isfinite(det) or det == 0.0:
            raise ArgumentError("the transform has no inverse", code="singular")
        xx, xy, yx, yy, tx, ty = self._six
        m = [[yy / det, -xy / det], [-yx / det, xx / det]]
        return Transform(m, [-(m[0][0] * tx + m[0][1] * ty), -(m[1][0] * tx + m[1][1] * ty)])

    def __matmul__(self, first: Transform) -> Transform:
        if not isinstance(first, Transform):
            return NotImplemented
        return Transform(self.matrix @ first.matrix, self.apply(first.translation))

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Transform):
            return NotImplemented
        return self._six == other._six

    def __hash__(self) -> int:
        return hash(self._six)

    def __reduce__(self) -> tuple[Any, ...]:
        return Transform.from_numbers, self._six

    def __repr__(self) -> str:
        xx, xy, yx, yy, tx, ty = self._six
        return f"Transform([[{xx:g}, {xy:g}], [{yx:g}, {yy:g}]], [{tx:g}, {ty:g}])"
