"""Many shapes at once: ragged arrays in, columns out, no object of Python for any shape.

Every function takes `Shapes` (or a list of objects or arrays) and returns a `Table`, a dict of columns of
one length, in which a shape that failed is a row like the others: ``status`` 20 and an ``error`` number.
``threads``: how many work, 0 for all cores; answers do not depend on it.  ``progress``: a function of (done,
total), called at most ten times a second, which stops the call by returning False; or True for a bar of
tqdm, where that is installed.  ``errors``: ``"emit"`` rows, or ``"raise"`` the first by index.
"""
from __future__ import annotations

from collections.abc import Callable, Iterable, Mapping, Sequence
from typing import Any, Literal, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _gxshape
from ._answers import Status
from ._arrays import points_array
from ._choices import JOINS, RULES, WEIGHTS, choice
from ._errors import ArgumentError, GxError, from_library
from ._shape import area_of, shape_of
from ._shapes import Shapes, shapes_of

__all__ = ["Table", "measure", "describe", "inside", "nearest", "repair", "overlay", "offset", "simplify", "hull",
           "compare", "fit", "messages"]

Progress = Union[Callable[[int, int], Any], bool, None]
Errors = Literal["emit", "raise"]

_MEASURES = ("points", "holes", "area", "length", "centre_x", "centre_y", "box_x_min", "box_y_min", "box_x_max",
             "box_y_max")
_DEFECTS = "defects"
_ENDS = ("ring", "edge", "t", "x", "y")  # of a place; of a point the last two
_WHOLE = {"points", "holes", "parts", "euler_number", "regions", "rings_dropped", "rings_snapped", "inliers",
          "wall_from_ring", "wall_from_edge", "wall_to_ring", "wall_to_edge"}
_COMPARED = ("hausdorff", "hausdorff_forward", "hausdorff_back", "deviation_max", "deviation_min",
             "deviation_rms", "angle", "scale", "shift_x", "shift_y", "residual")
_REPAIRED = ("area_before", "area_after", "regions", "holes", "rings_dropped", "rings_snapped", "largest_move")
_FITTED = {"line": ("centre_x", "centre_y", "angle", "residual", "inliers"),
           "circle": ("centre_x", "centre_y", "radius", "residual", "inliers"),
           "ellipse": ("centre_x", "centre_y", "ellipse_a", "ellipse_b", "ellipse_angle", "residual", "inliers")}


class Table(dict[str, NDArray[Any]]):
    """Columns of one length, in order; a dict, so ``pandas.DataFrame(table)`` takes it.

    ``texts``: of rows that failed, the exception's code and text by row.
    """

    def __init__(self, columns: dict[str, NDArray[Any]] | None = None) -> None:
        super().__init__(columns or {})
        self.texts: dict[int, tuple[str, int, str]] = {}

    def __reduce__(self) -> tuple[Any, ...]:
        return _table, (dict(self), self.texts)


def _table(columns: dict[str, NDArray[Any]], texts: dict[int, tuple[str, int, str]]) -> Table:
    table = Table(columns)
    table.texts = texts
    return table


def messages(table: Table) -> dict[int, str]:
    """Return what went wrong with the rows of status 20, as text by row."""
    return {row: f"{name}: {text}" if text else name for row, (name, number, text) in table.texts.items()}


class _Bar:
    """A bar of tqdm that is fed with totals; nothing where tqdm is not installed."""

    def __init__(self) -> None:
        try:
            from tqdm.auto import tqdm
        except ImportError:
            self.bar: Any = None
        else:
            self.bar = tqdm(unit="shapes")

    def __call__(self, done: int, total: int) -> None:
        if self.bar is not None:
            self.bar.total = total
            self.bar.update(done - self.bar.n)
            if done >= total:
                self.bar.close()


def _callback(progress: Progress) -> Callable[[int, int], Any] | None:
    if progress is None or progress is False:
        return None
    if progress is True:
        return _Bar()
    if not callable(progress):
        raise TypeError(f"progress: want a function of (done, total), True or None, got {type(progress).__name__}")
    return progress


def _threads(threads: int) -> int:
    if not isinstance(threads, (int, np.integer)) or isinstance(threads, bool):
        raise TypeError(f"threads: want an int, got {type(threads).__name__}")
    if not 0 <= threads <= 1024:
        raise ArgumentError(f"threads: want 0 (all cores) to 1024, got {threads}")
    return int(threads)


def _number(value: float, name: str) -> float:
    if np.isnan(value):
        raise ArgumentError(f"{name}: want a number, got NaN")
    return float(value)


def _expanded(only: Iterable[str] | None, known: Sequence[str]) -> list[str] | None:
    """Return the columns of the names asked for: a point has two, a box four, a place five."""
    if only is None:
        return None
    names = [only] if isinstance(only, str) else list(only)
    columns: list[str] = []
    for name in names:
        found = [one for one in known if one == name]
        found = found or [one for one in known if one in [f"{name}_{end}" for end in _ENDS]]
        found = found or ([one for one in known if one.startswith("box_")] if name == "box" else [])
        if not found and name not in ("id", "status", "error"):
            raise ArgumentError(f"only: no column {name!r}; known are {', '.join(known)}")
        columns += [one for one in found if one not in columns]
    return columns


def _whole(column: NDArray[np.float64]) -> NDArray[np.int64]:
    return np.where(np.isnan(column), -1.0, column).astype(np.int64)


def _objects(values: Sequence[Any], status: NDArray[np.int8]) -> NDArray[Any]:
    column = np.empty(len(values), dtype=object)
    for i, value in enumerate(values):
        column[i] = None if status[i] == Status.FAILED else value
    return column


def _finished(shapes: Shapes, names: Sequence[str], wanted: Sequence[str] | None, block: NDArray[np.float64],
              status: NDArray[np.int8], error: NDArray[np.int64], texts: Iterable[tuple[int, str, int, str]],
              errors: Errors, lists: Mapping[str, Sequence[Any]] | None = None) -> Table:
    table = Table({"id": shapes.id_column(), "status": status})
    for name in (names if wanted is None else wanted):
        if lists and name in lists:
            table[name] = _objects(lists[name], status)
            continue
        column = block[list(names).index(name)]
        table[name] = _whole(column) if name in _WHOLE else column
    table["error"] = error
    table.texts = {row: (name, number, text) for row, name, number, text in texts}
    for row, name, number, text, *_ in shapes.errors:  # rows that could not be read
        status[row], error[row] = Status.FAILED, number
        table.texts[row] = (name, number, text)
        for column_name, column in table.items():
            if column.dtype.kind == "f":
                column[row] = np.nan
            elif column_name in _WHOLE:
                column[row] = -1
            elif lists and column_name in lists:
                column[row] = None
    if errors == "raise" and table.texts:
        row = min(table.texts)
        raise _raised(row, *table.texts[row])
    return table


def _raised(row: int, name: str, number: int, text: str) -> GxError:
    made = from_library(name, number, text, 0, 0)
    return type(made)(f"shape {row}: {made}", **{**made.details, "row": row})


def _errors(errors: str) -> Errors:
    if errors == "emit":
        return "emit"
    if errors == "raise":
        return "raise"
    raise ArgumentError(f"errors: want 'emit' or 'raise', got {errors!r}")


# ---- Numbers ----------------------------------------------------------------------------------------------


def measure(shapes: Any, *, only: Iterable[str] | None = None, threads: int = 1, progress: Progress = None,
            errors: Errors = "emit") -> Table:
    """Return area (L²), length (L), centre and box of each shape, with ``id``, ``status``, ``points``, ``holes``.

    ``only``: the names wanted, as ``["area", "centre"]``.

    >>> from gxshape import Shapes
    >>> measure(Shapes([[0, 0], [4, 0], [4, 3]], [0, 3]), only=["area", "length"])["area"]
    array([6.])
    """
    taken, how = shapes_of(shapes), _errors(errors)
    wanted = _expanded(only, _MEASURES)
    names = _MEASURES if wanted is None else wanted
    answer = _gxshape.batch_measure(taken.ready(), [_MEASURES.index(name) for name in names], _threads(threads),
                                    _callback(progress))
    return _finished(taken, names, None, *answer, how)


def describe(shapes: Any, *, only: Iterable[str] | None = None, threads: int = 1, progress: Progress = None,
             errors: Errors = "emit") -> Table:
    """Return every descriptor of each shape, in the order of docs/names.csv; ``only`` computes what is asked for.

    Some take long and come only where they are named: ``inscribed_circle_radius``, ``inscribed_circle_centre``,
    ``wall``, ``wall_from``, ``wall_to`` (a place each: columns ``_ring``, ``_edge``, ``_t``, ``_x``, ``_y``) and
    ``defects``, a list of dicts a shape, None where it could not be answered.

    >>> table = describe([[[0, 0], [4, 0], [4, 3], [0, 3]]], only=["feret_max", "hu_1"])
    >>> list(table)
    ['id', 'status', 'feret_max', 'hu_1', 'error']
    >>> describe([[[0, 0], [4, 0], [4, 3], [0, 3]]], only=["wall"])["wall"]
    array([3.])
    """
    taken, how = shapes_of(shapes), _errors(errors)
    usual = _gxshape.described_names(on_request=False)
    columns = usual + _gxshape.described_names(on_request=True)
    wanted = _expanded(only, [*columns, _DEFECTS])
    names = usual if wanted is None else wanted
    numbers = [name for name in names if name != _DEFECTS]
    block, status, error, texts, defects = _gxshape.batch_describe(
        taken.ready(), [columns.index(name) for name in numbers], _DEFECTS in names, _threads(threads),
        _callback(progress))
    return _finished(taken, numbers, names, block, status, error, texts, how, {_DEFECTS: defects})


_ALIGNS = ("none", "rigid", "similarity")


def compare(shapes: Any, golden: Any, *, align: str = "none", step: float | None = None, threads: int = 1,
            progress: Progress = None, errors: Errors = "emit") -> Table:
    """Return Hausdorff distances and signed deviations (L) of each shape from a golden one.

    ``align``: none, rigid or similarity: each shape is laid upon the golden one first, and the motion's ``angle``,
    ``scale``, ``shift`` and ``residual`` are columns too.  ``step``: arc length between samples (the vertices).
    """
    taken, how = shapes_of(shapes), _errors(errors)
    kind = choice(align, _ALIGNS, "align")
    answer = _gxshape.batch_compare(taken.ready(), shape_of(golden, "golden"), kind,
                                    0.0 if step is None else _number(step, "step"), _threads(threads),
                                    _callback(progress))
    return _finished(taken, _COMPARED, _COMPARED[:6] if kind == 0 else None, *answer, how)


def fit(shapes: Any, *, kind: str = "circle", weights: str = "tukey", inlier_limit: float = 0.0, threads: int = 1,
        progress: Progress = None, errors: Errors = "emit") -> Table:
    """Return a line, circle or ellipse fitted to the points of each shape, with ``residual`` (L) and ``inliers``."""
    taken, how = shapes_of(shapes), _errors(errors)
    kinds = tuple(_FITTED)
    number = choice(kind, kinds, "kind")
    answer = _gxshape.batch_fit(taken.ready(), number, choice(weights, WEIGHTS, "weights"),
                                _number(inlier_limit, "inlier_limit"), _threads(threads), _callback(progress))
    return _finished(taken, _FITTED[kinds[number]], None, *answer, how)


# ---- Places -----------------------------------------------------------------------------------------------


def inside(shapes: Any, points: ArrayLike, *, tolerance: float = 0.0, threads: int = 1,
           progress: Progress = None) -> Table:
    """Return for each point, shape (n, 2), the first shape that holds it or has it on its border.

    Columns: ``region`` (−1 for none), ``state`` (+1 inside, 0 border, −1 outside), ``status`` (2 and state 0 for a
    point that is not finite).  A shape that is not finite holds nothing.

    >>> inside([[[0, 0], [4, 0], [4, 3]], [[3, 0], [9, 0], [9, 9]]], [[3.5, 1], [8, 1], [0, 5]])["region"]
    array([ 0,  1, -1])
    """
    taken, array = shapes_of(shapes), points_array(points)
    if not tolerance >= 0.0 or np.isinf(tolerance):
        raise ArgumentError(f"tolerance: want 0 or more, got {tolerance}")
    return Table(_gxshape.batch_inside(taken.ready(), array, float(tolerance), _threads(threads),
                                       _callback(progress)))


def nearest(shapes: Any, points: ArrayLike, *, max_distance: float = float("inf"), threads: int = 1,
            progress: Progress = None) -> Table:
    """Return for each point, shape (n, 2), the nearest border within ``max_distance`` (L), and where on it.

    Columns: ``status`` (6 where there is none), ``region``, ``distance``, and the place: ``place_ring``,
    ``place_edge``, ``place_t``, ``place_x``, ``place_y``.  Of equally near shapes the first.

    >>> nearest([[[0, 0], [4, 0], [4, 3]], [[6, 0], [9, 0], [9, 9]]], [[4.5, 1], [8, 1]])["distance"]
    array([0.5, 1. ])
    """
    taken, array = shapes_of(shapes), points_array(points)
    if not max_distance >= 0.0:
        raise ArgumentError(f"max_distance: want 0 or more, got {max_distance}")
    found = _gxshape.batch_nearest(taken.ready(), array, float(max_distance), _threads(threads),
                                   _callback(progress))
    block = found["block"]
    return Table({"status": found["status"], "region": found["region"], "distance": block[0],
                  "place_ring": found["ring"], "place_edge": found["edge"], "place_t": block[1],
                  "place_x": block[2], "place_y": block[3]})


# ---- Shapes made of shapes ----------------------------------------------------------------------------------


def _made(taken: Shapes, names: Sequence[str], answer: Any, how: Errors) -> tuple[Shapes, Table]:
    arrays, block, status, error, texts = answer
    table = _finished(taken, names, None, block, status, error, texts, how)
    return Shapes._from_arrays(arrays, taken.ids), table


def repair(shapes: Any, *, rule: str = "even-odd", threads: int = 1, progress: Progress = None,
           errors: Errors = "emit") -> tuple[Shapes, Table]:
    """Return the valid regions of each shape by rule, and how each repair went: see `gxshape.overlay.repair`.

    >>> made, table = repair([[[0, 0], [0, 3], [6, 0], [6, 6]]])
    >>> made[0], table["area_after"]
    (RegionSet(2 regions, 0 holes, area=15), array([15.]))
    """
    taken, how = shapes_of(shapes), _errors(errors)
    answer = _gxshape.batch_repair(taken.ready(), choice(rule, RULES, "rule"), _threads(threads),
                                   _callback(progress))
    return _made(taken, _REPAIRED, answer, how)


_OPERATIONS = ("union", "intersection", "difference", "symmetric-difference")


def overlay(shapes: Any, other: Any, *, operation: str, rule: str = "even-odd", threads: int = 1,
            progress: Progress = None, errors: Errors = "emit") -> tuple[Shapes, Table]:
    """Return each shape joined with ``other`` by ``operation``: union, intersection, difference or
    symmetric-difference."""
    taken, how = shapes_of(shapes), _errors(errors)
    word = _OPERATIONS[choice(operation, _OPERATIONS, "operation")]
    answer = _gxshape.batch_boolean(taken.ready(), word, area_of(other, "other"), choice(rule, RULES, "rule"),
                                    _threads(threads), _callback(progress))
    return _made(taken, (), answer, how)


def offset(shapes: Any, distance: float, *, join: str = "round", mitre_limit: float = 5.0,
           arc_tolerance: float = 0.0, threads: int = 1, progress: Progress = None,
           errors: Errors = "emit") -> tuple[Shapes, Table]:
    """Return each shape grown (``distance`` above 0, in L) or shrunk: see `gxshape.overlay.offset`."""
    taken, how = shapes_of(shapes), _errors(errors)
    answer = _gxshape.batch_offset(taken.ready(), float(distance), choice(join, JOINS, "join"), mitre_limit,
                                   arc_tolerance, _threads(threads), _callback(progress))
    return _made(taken, (), answer, how)


def simplify(shapes: Any, *, tolerance: float, keeps_crossings_out: bool = False, threads: int = 1,
             progress: Progress = None, errors: Errors = "emit") -> Shapes:
    """Return each shape with fewer points, ring by ring, within ``tolerance`` (L).

    Raises: ArgumentError for a tolerance below 0 or NaN.

    >>> simplify([[[0, 0], [2, 0.1], [4, 0], [4, 3]]], tolerance=0.5)
    Shapes(1 shape, 1 ring, 3 points)
    """
    taken, how = shapes_of(shapes), _errors(errors)
    if not tolerance >= 0.0:
        raise ArgumentError(f"tolerance: want 0 or more, got {tolerance}")
    answer = _gxshape.batch_simplify(taken.ready(), float(tolerance), keeps_crossings_out, _threads(threads),
                                     _callback(progress))
    return _made(taken, (), answer, how)[0]


def hull(shapes: Any, *, threads: int = 1, progress: Progress = None) -> Shapes:
    """Return the convex hull of each shape."""
    taken = shapes_of(shapes)
    return _made(taken, (), _gxshape.batch_hull(taken.ready(), _threads(threads), _callback(progress)), "emit")[0]
