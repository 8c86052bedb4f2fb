"""Arrays of every type and stride, refusals with their texts, the policy about NaN, exceptions."""
import asyncio
import pickle
import threading

import numpy as np
import pytest

import gxshape as gx
from gxshape import _gxshape
from shapes import SQUARE, plate


@pytest.mark.parametrize("kind", ["float64", "float32", "float16", "longdouble", "int8", "uint16", "int32", "int64",
                                  "uint64", "bool", ">f8", ">f4", ">i2"])
def test_every_real_type_is_taken(kind):
    points = np.array([[0, 0], [1, 0], [1, 1]]).astype(kind)
    region = gx.Region(points)
    assert region.points.tolist() == [[0, 0], [1, 0], [1, 1]] and region.points.dtype == np.float64


def test_every_stride_is_taken():
    block = np.arange(48, dtype=float).reshape(8, 6)
    for array in (block[::2, 1:3], block[::-1, 2:4], block[:, ::-3], np.asfortranarray(block[:, :2]),
                  block.reshape(-1, 2)[::3], np.broadcast_to([1.0, 2.0], (5, 2))):
        assert (gx.Contour(array).points == np.array(array)).all()
    frozen = np.array(SQUARE, float)
    frozen.flags.writeable = False
    assert gx.Region(frozen).area == 16


@pytest.mark.parametrize("given, text", [
    ([1.0, 2.0, 3.0], r"points: want an array of shape \(n, 2\), got \(3,\) float64"),
    (np.zeros((4, 3)), r"points: want an array of shape \(n, 2\), got \(4, 3\) float64"),
    (np.zeros((2, 5)), r"got \(2, 5\) float64"),
    (np.zeros((2, 2, 2)), r"got \(2, 2, 2\) float64"),
    (5.0, r"got \(\) float64"),
    (np.zeros((3, 2), complex), r"want real numbers, got \(3, 2\) complex128"),
    (np.array([["a", "b"]]), "want real numbers"),
    (np.array([[None, 1]], object), "want real numbers"),
    (np.ma.array(np.zeros((3, 2)), mask=[[1, 0], [0, 0], [0, 0]]), "masked"),
    ([[1, 2], [3]], "unequal rows|want real numbers"),
    (np.array([[2**53 + 1, 0]], np.int64), "2\\*\\*53"),
    (np.array([[np.longdouble("1e4000"), 0]]), "beyond the range of float64"),
])
def test_what_is_not_points_is_refused_by_what_came_and_what_is_wanted(given, text):
    with pytest.raises(gx.ArgumentError, match=text):
        gx.Region(given)


def test_what_holds_no_values_is_no_points():
    for given in ([], np.empty(0), np.empty((0, 2)), ()):
        assert len(gx.Contour(given)) == 0
    masked = np.ma.array(np.array(SQUARE, float), mask=False)
    assert gx.Region(masked).area == 16
    assert gx.Contour([[2**53, 0]]).points[0, 0] == 2.0**53


def test_holes_want_a_sequence():
    with pytest.raises(gx.ArgumentError, match="sequence of regions"):
        gx.Region(SQUARE, holes=np.array([[1, 1], [2, 1], [2, 2]]))
    with pytest.raises(gx.ArgumentError, match="holes: want an array"):
        gx.Region(SQUARE, holes=[[1, 2, 3]])


def test_the_policy_about_nan():
    bad = [[0, 0], [1, float("nan")], [1, 1]]
    assert np.isnan(gx.Region(bad).area)
    with gx.nan_policy("raise"):
        with pytest.raises(gx.NotFiniteError, match="point 1") as caught:
            gx.Region(bad)
        assert caught.value.index == 1 and caught.value.code == "not_finite"
        with pytest.raises(gx.NotFiniteError):
            gx.Region(SQUARE).inside([float("inf"), 0])
        shapes = gx.Shapes.__new__(gx.Shapes)
        with gx.nan_policy("allow"):
            shapes = gx.Shapes([*SQUARE, *bad], [0, 4, 7])
        with pytest.raises(gx.NotFiniteError) as caught:
            gx.batch.measure(shapes)
        assert (caught.value.ring, caught.value.index) == (1, 1)
    gx.Region(bad)
    with pytest.raises(gx.ArgumentError):
        gx.nan_policy("warn")


def test_the_policy_belongs_to_thread_and_task():
    seen = []

    def other():
        seen.append(gx.Contour([[float("nan"), 0]]).status)

    async def task(policy):
        with gx.nan_policy(policy):
            await asyncio.sleep(0)
            try:
                gx.Contour([[float("nan"), 0]])
                return "allow"
            except gx.NotFiniteError:
                return "raise"

    async def both():
        return await asyncio.gather(task("raise"), task("allow"), task("raise"))

    with gx.nan_policy("raise"):
        thread = threading.Thread(target=other)
        thread.start()
        thread.join()
    assert seen == [gx.Status.NOT_FINITE]
    assert asyncio.run(both()) == ["raise", "allow", "raise"]


@pytest.mark.parametrize("which, kind, number, code, parent", [
    (0, gx.EmptyContourError, 0x10004680, "empty_contour", ValueError),
    (1, gx.BadParamsError, 0x10004683, "bad_params", gx.ShapeError),
    (2, gx.ArgumentError, 0x10000101, "bad_pointer", ValueError),
    (3, gx.ArgumentError, 0x10000111, "singular", gx.Error),
    (5, gx.ReadError, 1, "bad_number", ValueError),
])
def test_exceptions_of_the_library_have_class_number_and_code(which, kind, number, code, parent):
    with pytest.raises(gx.Error) as caught:
        _gxshape.throw_for_test(which)
    error = caught.value
    assert type(error) is kind and isinstance(error, parent) and isinstance(error, gx.Error)
    assert (error.number, error.code) == (number, code) and str(error)
    twin = pickle.loads(pickle.dumps(error))
    assert type(twin) is kind and (twin.number, twin.code, str(twin), twin.details) == (
        number, code, str(error), error.details)


def test_memory_that_is_not_there_is_memory_error():
    with pytest.raises(MemoryError):
        _gxshape.throw_for_test(4)
    with pytest.raises(gx.ReadError) as caught:
        _gxshape.throw_for_test(5)
    assert (caught.value.record, caught.value.byte) == (7, 65)


def test_broken_archives_are_refused():
    good = plate().to_archive()
    assert gx.Region.from_archive(good) == plate()
    for broken in (b"", good[:-1], good[:20], b"x" + good[1:], good[:30] + b"\xff" + good[31:]):
        with pytest.raises(gx.ArchiveError) as caught:
            gx.Region.from_archive(broken)
        assert 0x10000121 <= caught.value.number <= 0x10000127
    with pytest.raises(gx.ArgumentError, match="want a RegionSet, got a Region"):
        gx.RegionSet.from_archive(good)


def test_limits_are_told():
    t = np.arange(400) * (np.pi * 199 / 200) 
    star = np.column_stack([np.cos(t), np.sin(t)])
    with pytest.raises(gx.LimitError) as caught:
        gx.overlay.repair(star, most_meetings=100)
    assert isinstance(caught.value, MemoryError) and caught.value.number == 0x10004721
