"""Arrays in: points of any float or integer type and stride, checked; and the policy about NaN."""
from __future__ import annotations

import contextvars
from types import TracebackType
from typing import Any, Literal

import numpy as np
from numpy.typing import ArrayLike, NDArray

from ._errors import ArgumentError, NotFiniteError

Points = NDArray[np.float64]
Policy = Literal["allow", "raise"]
_policy: contextvars.ContextVar[str] = contextvars.ContextVar("gxshape_nan_policy", default="allow")


class nan_policy:
    """Say what is done about coordinates that are NaN or infinite: ``"allow"`` (by default) or ``"raise"``.

    A call holds until the next one; a ``with`` block puts back what was before.  The setting belongs to
    the context: each thread and each asynchronous task has its own.

    >>> import gxshape as gx
    >>> with gx.nan_policy("raise"):
    ...     gx.Contour([[0, 0], [1, float("nan")]])
    Traceback (most recent call last):
        ...
    gxshape._errors.NotFiniteError: points: point 1 is (1.0, nan)
    """

    def __init__(self, policy: Policy) -> None:
        if policy not in ("allow", "raise"):
            raise ArgumentError(f"nan_policy: want 'allow' or 'raise', got {policy!r}")
        self._token = _policy.set(policy)

    def __enter__(self) -> nan_policy:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        _policy.reset(self._token)


def raises_for_nan() -> bool:
    """Tell whether the policy is ``"raise"``."""
    return _policy.get() == "raise"


def _came(array: NDArray[Any]) -> str:
    return f"{array.shape} {array.dtype}"


def _as_float(array: NDArray[Any], name: str) -> NDArray[Any]:
    kind = array.dtype.kind
    if kind == "f":
        if array.dtype.itemsize > 8 and array.size:
            narrow = array.astype(np.float64)
            if np.any(np.isinf(narrow) & ~np.isinf(array)):
                raise ArgumentError(f"{name}: a value is beyond the range of float64")
            return narrow
        return array
    if kind in "iub":
        if array.dtype.itemsize == 8 and array.size:
            most = 2**53
            if int(array.max()) > most or int(array.min()) < -most:
                raise ArgumentError(f"{name}: want whole numbers of at most 2**53 in magnitude, which "
                                    f"float64 holds exactly, got {array.dtype} beyond")
        return array
    raise ArgumentError(f"{name}: want real numbers, got {_came(array)}")


def real_array(values: ArrayLike, name: str) -> NDArray[Any]:
    """Return the values as an array of real numbers, or raise: no complex, object, text, masked values."""
    if isinstance(values, np.ma.MaskedArray) and bool(np.any(values.mask)):
        raise ArgumentError(f"{name}: want values, got an array of which some are masked")
    try:
        array = np.asarray(values)
    except ValueError as error:  # lists of unequal lengths
        raise ArgumentError(f"{name}: want an array of shape (n, 2), got a list of unequal rows") from error
    if array.dtype.kind == "O":
        raise ArgumentError(f"{name}: want real numbers, got {_came(array)}")
    return _as_float(array, name)


def points_array(values: ArrayLike, name: str = "points", *, copy: bool = False) -> Points:
    """Return points as float64 of shape (n, 2) in C order; no copy where they are that already.

    Shape (0,) means no points.

    >>> points_array([1, 2, 3])
    Traceback (most recent call last):
        ...
    gxshape._errors.ArgumentError: points: want an array of shape (n, 2), got (3,) int64
    """
    array = real_array(values, name)
    if array.shape == (0,):
        array = array.reshape(0, 2)
    if array.ndim != 2 or array.shape[1] != 2:
        raise ArgumentError(f"{name}: want an array of shape (n, 2), got {_came(array)}")
    points: Points = np.array(array, dtype=np.float64, order="C", copy=True) if copy else \
        np.ascontiguousarray(array, dtype=np.float64)
    if raises_for_nan():
        check_finite(points, name)
    return points


def check_finite(points: Points, name: str, ring: int = -1) -> None:
    """Raise `NotFiniteError` at the first point that is not finite."""
    bad = ~np.isfinite(points).all(axis=1)
    if bad.any():
        index = int(np.argmax(bad))
        x, y = points[index]
        raise NotFiniteError(f"{name}: point {index} is ({x}, {y})", ring=ring, index=index)


def query_points(values: ArrayLike, name: str = "points") -> tuple[Points, tuple[int, ...]]:
    """Return query points as (n, 2), and the shape of the answers: () for one point (2,), else (…)."""
    array = real_array(values, name)
    if array.shape == (0,):
        return np.empty((0, 2)), (0,)
    if array.ndim < 1 or array.shape[-1] != 2:
        raise ArgumentError(f"{name}: want an array of shape (2,) or (…, 2), got {_came(array)}")
    return points_array(array.reshape(-1, 2), name), array.shape[:-1]
