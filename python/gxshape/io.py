"""Files: WKT, WKB (hexadecimal), GeoJSON, JSON lines, CSV, plain ragged, npz, archives."""
from __future__ import annotations

import os
import tempfile
from pathlib import Path
from typing import Any, Union

from . import _gxshape
from ._errors import ArgumentError, FileError, ReadError
from ._shapes import Shapes, shapes_of

__all__ = ["read", "loads", "write", "dumps", "FORMATS"]

#: The words for formats.
FORMATS = ("wkt", "wkb", "geojson", "jsonl", "csv", "ragged", "npz", "gxa")
PathLike = Union[str, "os.PathLike[str]"]


def _format(format: str | None) -> str:
    if format is None:
        return ""
    if format not in FORMATS:
        raise ArgumentError(f"format: want one of {', '.join(FORMATS)}, got {format!r}")
    return format


def loads(content: str | bytes, *, format: str | None = None, id: str | None = None,
          errors: str = "raise") -> Shapes:
    """Return the shapes of a file's content; the format is told by the first bytes.

    ``id``: the property or member that holds ids; ``errors``: ``"raise"`` the first ReadError, or ``"emit"``:
    a record that cannot be read is a shape without points, and stands in ``.errors``.  Bare points are taken
    as open contours; edge points lose magnitude and angle.

    >>> loads("POLYGON ((0 0, 4 0, 4 3, 0 0))")
    Shapes(1 shape, 1 ring, 3 points)
    """
    if errors not in ("raise", "emit"):
        raise ArgumentError(f"errors: want 'raise' or 'emit', got {errors!r}")
    data = content.encode() if isinstance(content, str) else bytes(content)
    arrays, ids, found, _ = _gxshape.read_file(data, _format(format), id or "")
    if found and errors == "raise":
        _, code, number, text, record, byte = found[0]
        raise ReadError(text, number=number, code=code, name="gxReadError", record=record, byte=byte)
    shapes = Shapes._from_arrays(arrays, ids)
    shapes.errors = tuple(found)
    return shapes


def read(path: PathLike, *, format: str | None = None, id: str | None = None, errors: str = "raise") -> Shapes:
    """Return the shapes of a file; see `loads`.  Raises: FileError, ReadError with record and byte."""
    try:
        content = Path(path).read_bytes()
    except OSError as error:
        raise FileError(f"{os.fspath(path)}: {error.strerror}") from error
    return loads(content, format=format, id=id, errors=errors)


def dumps(shapes: Any, *, format: str) -> bytes:
    """Return the content of a file of the shapes.

    >>> dumps([[[0, 0], [4, 0], [4, 3]]], format="wkt")
    b'POLYGON ((0 0, 4 0, 4 3, 0 0))\\n'
    """
    taken = shapes_of(shapes)
    wanted = _format(format)
    if not wanted:
        raise ArgumentError(f"format: want one of {', '.join(FORMATS)}, got {format!r}")
    return _gxshape.write_file(taken._ragged, [] if taken.ids is None else list(taken.ids), wanted)


def write(shapes: Any, path: PathLike, *, format: str) -> None:
    """Write the shapes to a file: to a temporary name beside it, then renamed.  Raises: FileError."""
    content = dumps(shapes, format=format)
    target = Path(path)
    try:
        handle, name = tempfile.mkstemp(prefix=target.name + ".", dir=target.parent)
        try:
            with os.fdopen(handle, "wb") as file:
                file.write(content)
                file.flush()
                os.fsync(file.fileno())
            mask = os.umask(0)
            os.umask(mask)
            os.chmod(name, 0o666 & ~mask)
            os.replace(name, target)
        except BaseException:
            os.unlink(name)
            raise
    except OSError as error:
        raise FileError(f"{os.fspath(path)}: {error.strerror}") from error
