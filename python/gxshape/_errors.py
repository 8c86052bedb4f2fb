"""Exceptions: one base, and below it classes by what a caller would do about them."""
from __future__ import annotations

import re
from typing import Any

__all__ = [
    "Error", "GxError", "ShapeError", "EmptyContourError", "EmptyRegionSetError", "BadParamsError",
    "RegionOpenError", "NotFiniteError", "ArgumentError", "FitError", "ArchiveError", "ReadError",
    "FileError", "LimitError", "StoppedError",
]


class GxError(Exception):
    """Any error of this package.

    ``number`` is the number of the C++ class (0 where Python found the fault), ``code`` a word in
    snake_case that never changes, ``name`` the C++ class.
    """

    number: int = 0
    code: str = "error"
    name: str = ""

    def __init__(self, message: str = "", **details: Any) -> None:
        super().__init__(message)
        self.details = details
        for key, value in details.items():
            setattr(self, key, value)

    def __reduce__(self) -> tuple[Any, ...]:
        return _made, (type(self), str(self), self.details)


class ShapeError(GxError, ValueError):
    """The shape cannot answer: too few points, crossing holes, a coordinate that is not finite."""


class EmptyContourError(ShapeError):
    """A contour of fewer than 2 points, or a region of fewer than 3, was asked what needs more."""

    code = "empty_contour"


class EmptyRegionSetError(ShapeError):
    """A set without regions was asked what needs one."""

    code = "empty_region_set"


class BadParamsError(ShapeError):
    """Shapes that do not fit together, as holes that cross their outline."""

    code = "bad_params"


class RegionOpenError(ShapeError):
    """A region was asked to become open."""

    code = "region_cannot_be_set_open"


class NotFiniteError(ShapeError):
    """A coordinate is NaN or infinite, under ``nan_policy("raise")``; ``ring`` and ``index`` say which."""

    code = "not_finite"
    ring: int = -1
    index: int = -1


class ArgumentError(GxError, ValueError):
    """An argument has the wrong shape, type or value; the text names what came and what is wanted."""

    code = "bad_argument"


class FitError(GxError, ValueError):
    """The points do not determine what is to be fitted."""

    code = "bad_fit"


class ArchiveError(GxError, ValueError):
    """An archive that cannot be read or written."""

    code = "bad_archive"


class ReadError(GxError, ValueError):
    """A file or text that cannot be read; ``record`` (from 1) and ``byte`` (from 0) say where."""

    code = "bad_syntax"
    record: int = 0
    byte: int = 0


class FileError(GxError, OSError):
    """A file that cannot be opened, read or written."""

    code = "file_error"


class LimitError(GxError, MemoryError):
    """Edges meet more often than allowed."""

    code = "limit_exceeded"


class StoppedError(GxError):
    """The progress callback returned False."""

    code = "stopped"


Error = GxError

_CLASSES: dict[str, type[GxError]] = {
    "gxContourDefs::EmptyContour": EmptyContourError,
    "gxContourDefs::EmptyRegionSet": EmptyRegionSetError,
    "gxContourDefs::BadParams": BadParamsError,
    "gxContourDefs::RegionCannotBeSetOpen": RegionOpenError,
    "gxBadPointer": ArgumentError,
    "gxMathError::Singular": ArgumentError,
    "gxLimitExceeded": LimitError,
    "gxStopped": StoppedError,
}
_TEXTS = {
    "empty_contour": "the contour has too few points",
    "empty_region_set": "the set has no regions",
    "bad_pointer": "a region is wanted here",
    "singular": "there is no inverse",
}


def _made(kind: type[GxError], message: str, details: dict[str, Any]) -> GxError:
    return kind(message, **details)


def code_of(name: str) -> str:
    """Return the code of a C++ class: its own name in snake_case.

    >>> code_of("gxContourDefs::EmptyContour")
    'empty_contour'
    """
    own = re.sub(r"^gx_?(?=[A-Z])", "", name.rsplit("::", 1)[-1])
    return re.sub(r"(?<=[a-z0-9])(?=[A-Z])", "_", own).lower()


def from_library(name: str, number: int, message: str, record: int, byte: int) -> GxError:
    """Return the exception for one of the library's; called by the binding."""
    if record or byte or (name.islower() and not name.startswith("gx")):
        return ReadError(message, number=number, code=name, name="gxReadError", record=record, byte=byte)
    kind = _CLASSES.get(name)
    if kind is None:
        if name.startswith("gxArchive"):
            kind = ArchiveError
        elif "Fit" in name:
            kind = FitError
        else:
            kind = GxError
    code = code_of(name)
    return kind(message or _TEXTS.get(code, code), number=number, code=code, name=name)
