"""More than one machine: chunks of ragged arrays through a cluster of Dask, columns out.

A chunk is one `Shapes` of a few MB, never objects; a worker answers it with one thread of the library.  Answers
do not depend on how the shapes are cut: `digest` of the columns is the same for every ``chunk``.
This is the only module that imports Dask.
"""
from __future__ import annotations

import hashlib
import json
import os
import tempfile
import zipfile
from collections.abc import Callable, Iterable, Iterator, Sequence
from pathlib import Path
from typing import Any, Union

import dask
import dask.array
import numpy as np
from dask.sizeof import sizeof
from numpy.typing import NDArray

from . import batch, io
from ._errors import ArgumentError
from ._shapes import Shapes

__all__ = ["measure", "describe", "chunks", "compute", "digest"]

Source = Union[Shapes, str, "os.PathLike[str]", Sequence[Union[str, "os.PathLike[str]"]], Sequence[Shapes], Any]
_FUNCTIONS: dict[str, Callable[..., batch.Table]] = {"measure": batch.measure, "describe": batch.describe}


@sizeof.register(Shapes)
def _size_of_shapes(shapes: Shapes) -> int:
    """Return the bytes of the arrays, so that the scheduler sees what memory a chunk takes."""
    return shapes.nbytes


@sizeof.register(batch.Table)
def _size_of_table(table: batch.Table) -> int:
    return sum(column.nbytes for column in table.values())


def chunks(source: Source, *, chunk: int = 50_000) -> Iterator[Shapes]:
    """Cut a source into `Shapes` of at most ``chunk`` shapes: files are read one after the other.

    A record that cannot be read keeps its row and its error.  Ids that no file has are counted from 1 over all.
    """
    if chunk < 1:
        raise ArgumentError(f"chunk: want 1 or more, got {chunk}")
    first = 0
    for one in _sources(source):
        for start in range(0, len(one), chunk):
            part = one[start:start + chunk]
            part.ids = tuple(range(first + 1, first + 1 + len(part))) if one.ids is None else part.ids
            part.errors = tuple((error[0] - start, *error[1:]) for error in one.errors
                                if start <= error[0] < start + chunk)
            first += len(part)
            yield part


def _sources(source: Source) -> Iterable[Shapes]:
    if isinstance(source, Shapes):
        return [source]
    if hasattr(source, "__dask_graph__"):
        raise TypeError("source: want files or Shapes here; a delayed one goes to measure or describe")
    if isinstance(source, (str, os.PathLike)):
        return [io.read(source, errors="emit")]
    return (one if isinstance(one, Shapes) else io.read(one, errors="emit") for one in source)


# ---- What a worker does --------------------------------------------------------------------------------


def compute(shapes: Shapes, function: str, only: Sequence[str] | None, checkpoint: str | None) -> batch.Table:
    """Answer one chunk, or take the answer from the checkpoint, where one of the same input and options is."""
    path = None
    if checkpoint is not None:
        path = Path(checkpoint) / f"{_key(shapes, function, only)}.npz"
        found = _load(path)
        if found is not None:
            return found
    table = _FUNCTIONS[function](shapes, only=only)
    if path is not None:
        _save(path, table)
    return table


def _text_of(objects: NDArray[Any]) -> str:
    """Return a column of ids or of lists as JSON, in which a number stays a number."""
    return json.dumps(objects.tolist(), default=int)


def _objects_of(text: str) -> NDArray[Any]:
    values = json.loads(text)
    column = np.empty(len(values), dtype=object)
    for i, value in enumerate(values):
        column[i] = value
    return column


def _feed(state: Any, array: NDArray[Any] | None) -> None:
    if array is None:
        state.update(b"none;")
        return
    if array.dtype.kind == "O":
        content = _text_of(array).encode()
    else:
        content = np.ascontiguousarray(array).astype(array.dtype.newbyteorder("<"), copy=False).tobytes()
    state.update(f"{array.dtype.kind}{array.dtype.itemsize}{array.shape};".encode())
    state.update(content)


def _key(shapes: Shapes, function: str, only: Sequence[str] | None) -> str:
    """Return a name for what is asked of what: a digest of input and options."""
    state = hashlib.sha256(json.dumps([function, None if only is None else list(only)]).encode())
    for array in (shapes.coords, shapes.ring_offsets, shapes.part_offsets, shapes.shape_offsets, shapes.closed,
                  shapes.id_column()):
        _feed(state, array)
    state.update(json.dumps(shapes.errors).encode())
    return state.hexdigest()


def _save(path: Path, table: batch.Table) -> None:
    # Under another name first: whoever is killed here leaves no half of a file behind.
    path.parent.mkdir(parents=True, exist_ok=True)
    texts = json.dumps([[row, *text] for row, text in table.texts.items()])
    columns = {name: np.array(_text_of(column)) if column.dtype.kind == "O" else column
               for name, column in table.items()}
    was_text = [name for name, column in table.items() if column.dtype.kind == "O"]
    handle, name = tempfile.mkstemp(suffix=".part", dir=path.parent)
    with os.fdopen(handle, "wb") as file:
        np.savez(file, **columns, **{"//texts": np.array(texts), "//objects": np.array(json.dumps(was_text)),
                                     "//names": np.array(json.dumps(list(table)))})
    os.replace(name, path)


def _load(path: Path) -> batch.Table | None:
    try:
        with np.load(path, allow_pickle=False) as file:
            was_text = set(json.loads(str(file["//objects"])))
            table = batch.Table({name: _objects_of(str(file[name])) if name in was_text else file[name]
                                 for name in json.loads(str(file["//names"]))})
            for row, *text in json.loads(str(file["//texts"])):
                table.texts[row] = (text[0], text[1], text[2])
            return table
    except (OSError, ValueError, KeyError, EOFError, zipfile.BadZipFile):
        return None  # not there, or not whole: it is computed again


# ---- What the caller sees --------------------------------------------------------------------------------


def _run(function: str, source: Source, only: Iterable[str] | None, chunk: int,
         checkpoint: str | os.PathLike[str] | None) -> dict[str, Any]:
    names = None if only is None else ([only] if isinstance(only, str) else list(only))
    folder = None if checkpoint is None else os.fspath(checkpoint)
    empty = _FUNCTIONS[function](Shapes(np.empty((0, 2)), [0]), only=names)
    if hasattr(source, "__dask_graph__"):
        # What it is is only known to whoever computes it: lengths are unknown, ids must be numbers.
        lengths: list[float] = [float("nan")]
        parts = [source]
        cut: list[Shapes] = []
    else:
        cut = list(chunks(source, chunk=chunk))
        lengths = [float(len(part)) for part in cut]
        parts = [dask.delayed(part, name=f"shapes-{_key(part, '', None)[:24]}-{i}") for i, part in enumerate(cut)]
    tables = [dask.delayed(compute, pure=False)(part, function, names, folder) for part in parts]
    columns: dict[str, Any] = {}
    for name, like in empty.items():
        dtype = np.dtype(object) if name == "id" and any(map(_has_text, cut)) else like.dtype
        blocks = [dask.array.from_delayed(dask.delayed(_column)(table, name, dtype.str),
                                          shape=(length if length != length else int(length),), dtype=dtype)
                  for table, length in zip(tables, lengths)]
        columns[name] = dask.array.concatenate(blocks, allow_unknown_chunksizes=True) if blocks \
            else dask.array.from_array(like)
    return columns


def _has_text(shapes: Shapes) -> bool:
    return shapes.id_column().dtype.kind == "O"


def _column(table: batch.Table, name: str, dtype: str) -> NDArray[Any]:
    return table[name].astype(np.dtype(dtype), copy=False)


def measure(source: Source, *, only: Iterable[str] | None = None, chunk: int = 50_000,
            checkpoint: str | os.PathLike[str] | None = None) -> dict[str, Any]:
    """Return the columns of `gxshape.batch.measure` as arrays of Dask, nothing computed yet.

    ``source``: `Shapes`, a file, a list of either, or a delayed `Shapes`; ``checkpoint``: a folder that all
    workers see, where the answers of chunks are kept: a job that is run again computes what is missing.
    ``dask.compute(columns)`` computes all columns together.
    """
    return _run("measure", source, only, chunk, checkpoint)


def describe(source: Source, *, only: Iterable[str] | None = None, chunk: int = 50_000,
             checkpoint: str | os.PathLike[str] | None = None) -> dict[str, Any]:
    """Return the columns of `gxshape.batch.describe` as arrays of Dask; see `measure`."""
    return _run("describe", source, only, chunk, checkpoint)


def digest(table: Any) -> str:
    """Return the SHA-256 of columns, by name, type and bits: the same for every cutting, thread count and machine
    on which the library's answers are the same."""
    computed = dask.compute(dict(table))[0]
    state = hashlib.sha256()
    for name in computed:
        state.update(name.encode() + b";")
        _feed(state, np.asarray(computed[name]))
    return state.hexdigest()
