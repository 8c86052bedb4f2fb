"""What gauges answer with: frozen dataclasses with the names of docs/names.csv."""
from __future__ import annotations

import dataclasses
import enum
from typing import Any

import numpy as np
from numpy.typing import NDArray

__all__ = ["Status", "Place", "Problem", "State"]


class Status(enum.IntEnum):
    """What an answer is worth.  The numbers never change."""

    OK = 0
    EMPTY = 1
    NOT_FINITE = 2
    BAD_ARGUMENT = 3
    NOT_CLOSED = 4
    FLAT = 5
    NONE = 6
    UNDETERMINED = 7
    UNBOUNDED = 8
    WORSE = 9
    CAPPED = 10
    NOT_ON_GRID = 11
    NEGATIVE = 12
    CROSSING = 13
    STOPPED = 14
    FAILED = 20

    @property
    def word(self) -> str:
        """The word that the tool writes: ``ok``, ``not_finite``."""
        return self.name.lower()


class State(enum.IntEnum):
    """Where a point lies."""

    OUTSIDE = -1
    BORDER = 0
    INSIDE = 1


@dataclasses.dataclass(frozen=True)
class Place:
    """A place on a border: ring −1 is the outline, k ≥ 0 the hole of that index; edge k ends at point k."""

    ring: int
    edge: int
    t: float
    x: float
    y: float

    @property
    def point(self) -> NDArray[np.float64]:
        """The place itself, shape (2,)."""
        return np.array([self.x, self.y])


def place(numbers: tuple[int, int, float, float, float] | None) -> Place | None:
    """Return the place of the binding's tuple."""
    return None if numbers is None else Place(*numbers)


def ready(answer: dict[str, Any]) -> dict[str, Any]:
    """Return the binding's answer with its status as a `Status`."""
    answer["status"] = Status(answer["status"])
    return answer


def placed(answer: dict[str, Any], *names: str) -> dict[str, Any]:
    """Return the binding's answer with its status, and the places of these names, as objects."""
    for name in names:
        answer[name] = place(answer[name])
    return ready(answer)


class Answer:
    """The base of answers: compared by identity of numbers, arrays included; NaN equals NaN."""

    def as_dict(self) -> dict[str, Any]:
        """Return the fields as a dict."""
        return {f.name: getattr(self, f.name) for f in dataclasses.fields(self)}

    def __eq__(self, other: object) -> bool:
        if not isinstance(other, Answer) or type(self) is not type(other):
            return NotImplemented
        mine, theirs = self.as_dict(), other.as_dict()
        return all(_same(mine[name], theirs[name]) for name in mine)


def _same(a: Any, b: Any) -> bool:
    if isinstance(a, np.ndarray) or isinstance(b, np.ndarray):
        return bool(np.array_equal(a, b, equal_nan=np.asarray(a).dtype.kind == "f"))
    if isinstance(a, float) and isinstance(b, float):
        return a == b or (a != a and b != b)
    if isinstance(a, tuple) and isinstance(b, tuple):
        return len(a) == len(b) and all(_same(x, y) for x, y in zip(a, b))
    return bool(a == b)


@dataclasses.dataclass(frozen=True)
class Problem:
    """One thing that is wrong with a shape; ``sentence`` says it in words."""

    kind: str
    point: tuple[float, float]
    edges: tuple[int, int]
    rings: tuple[int, int]
    regions: tuple[int, int]
    sentence: str
