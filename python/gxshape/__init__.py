"""Planar shape geometry for machine vision: contours, regions with holes, their measures, repair and overlay.

>>> import gxshape as gx
>>> plate = gx.Region([[0, 0], [40, 0], [40, 30], [0, 30]], holes=[[[25, 10], [35, 10], [35, 20], [25, 20]]])
>>> plate.area, plate.centre
(1100.0, array([19.09090909, 15.        ]))
>>> shapes = gx.loads("POLYGON ((50 0, 54 0, 50 3))")
>>> gx.describe(shapes, only=["area", "feret_max"])["feret_max"]
array([5.])
"""
from __future__ import annotations

from typing import TYPE_CHECKING, Any

from . import _errors, batch, gauge, io, overlay
from ._answers import Place, Problem, State, Status
from ._arrays import nan_policy
from ._errors import *  # noqa: F403
from ._edge_shape import EdgeContour, EdgeRegion, EdgeRegionSet
from ._shape import Contour, Region, RegionSet
from ._shapes import Shapes
from ._transform import Transform
from .batch import describe
from .io import dumps, loads, read, write

if TYPE_CHECKING:
    from ._plot import plot as plot

__version__ = "0.1.0"
__all__ = [
    "Contour", "Region", "RegionSet", "EdgeContour", "EdgeRegion", "EdgeRegionSet", "Transform", "Shapes", "Place",
    "Problem", "State", "Status", "read", "loads", "write", "dumps", "describe", "plot", "nan_policy", "batch",
    "gauge", "io", "overlay", *_errors.__all__,
]


def __getattr__(name: str) -> Any:
    # matplotlib, Dask and the rest are imported by whoever asks for what needs them.
    if name == "plot":
        from ._plot import plot

        return plot
    if name in ("interop", "distributed"):
        import importlib

        return importlib.import_module(f"gxshape.{name}")
    raise AttributeError(f"module 'gxshape' has no attribute {name!r}")
