"""Ragged arrays: checks of offsets, views, slices, GeoArrow, pickling."""
import pickle

import numpy as np
import pytest
from hypothesis import given

import gxshape as gx
from shapes import HOLE, PLATE, SQUARE, plate, ragged, random_shapes

COORDS = np.array([*PLATE, *HOLE, *SQUARE], float)
RINGS = [0, 4, 8, 12]


def two() -> gx.Shapes:
    return gx.Shapes(COORDS, RINGS, [0, 2, 3], ids=["plate", 7])


def test_arrays_of_the_right_type_are_not_copied():
    rings, shapes = np.array(RINGS), np.array([0, 2, 3])
    made = gx.Shapes(COORDS, rings, shapes)
    assert np.shares_memory(made.coords, COORDS) and np.shares_memory(made.ring_offsets, rings)
    assert np.shares_memory(made.shape_offsets, shapes)
    copied = gx.Shapes(COORDS, rings, shapes, copy=True)
    assert not np.shares_memory(copied.coords, COORDS) and not np.shares_memory(copied.ring_offsets, rings)
    assert gx.Shapes(COORDS.astype("f4"), np.array(RINGS, "i4"), [0, 2, 3]) == made
    assert repr(made) == "Shapes(2 shapes, 3 rings, 12 points)" and made.nbytes == 12 * 16 + 7 * 8


@pytest.mark.parametrize("rings, shapes, text", [
    ([1, 4, 12], None, "ring_offsets: want 0 at index 0, got 1"),
    ([0, 8, 4, 12], None, "ring_offsets: offsets never fall, got 4 at index 2 after 8"),
    ([0, 4, 11], None, "ring_offsets: want 12 at index 2, the number of points, got 11"),
    ([0, 4, 13], None, "ring_offsets: want 12 at index 2"),
    ([], None, r"ring_offsets: want an array of shape \(n \+ 1,\), got \(0,\)"),
    ([0.0, 12.0], None, "whole numbers"),
    ([[0, 12]], None, "ring_offsets: want an array of shape"),
    (RINGS, [0, 4], "shape_offsets: want 3 at index 1, the number of rings, got 4"),
    (RINGS, [0, -1, 3], "shape_offsets: offsets never fall"),
    (np.array([0, 2**63 + 12], np.uint64), None, "ring_offsets"),
])
def test_offsets_are_not_trusted(rings, shapes, text):
    with pytest.raises(gx.ArgumentError, match=text):
        gx.Shapes(COORDS, rings, shapes)


def test_the_other_arrays_are_checked_too():
    with pytest.raises(gx.ArgumentError, match="ids: want 3, one a shape, got 2"):
        gx.Shapes(COORDS, RINGS, ids=[1, 2])
    with pytest.raises(gx.ArgumentError, match=r"closed: want bool of shape \(3,\)"):
        gx.Shapes(COORDS, RINGS, closed=[1, 0, 1])
    with pytest.raises(gx.ArgumentError, match="part_offsets: want 3"):
        gx.Shapes(COORDS, RINGS, part_offsets=[0, 2])
    with pytest.raises(gx.ArgumentError, match="coords: want an array of shape"):
        gx.Shapes(np.zeros(4), [0, 2])


def test_objects_come_out_as_they_went_in():
    objects = [plate(), gx.RegionSet([plate(), np.array(SQUARE) + 50]), gx.Contour(SQUARE, closed=False), gx.Region()]
    made = gx.Shapes.from_objects(objects)
    assert len(made) == 4 and made.part_offsets is not None and list(made)[:3] == objects[:3]
    assert len(made[3].points) == 0 and made[-1] == made[3]
    plain = gx.Shapes.from_objects([plate(), SQUARE])
    assert plain.part_offsets is None and plain == gx.Shapes(COORDS, RINGS, [0, 2, 3])
    assert two()[0] == plate() and two()[np.int64(1)] == gx.Region(SQUARE)
    with pytest.raises(IndexError):
        two()[2]


def test_slices_bools_and_indexes_keep_ids():
    many = random_shapes(10)
    assert many[2:5].id_column().tolist() == [3, 4, 5] and many[2:5][0] == many[2]
    assert many[np.arange(10) % 3 == 0].id_column().tolist() == [1, 4, 7, 10]
    assert many[np.array([5, -1, 5])].id_column().tolist() == [6, 10, 6] and many[np.array([5, -1, 5])][1] == many[9]
    assert two()[::-1].id_column().tolist() == [7, "plate"] and two()[::-1][1] == plate()
    sets = gx.Shapes.from_objects([gx.RegionSet([plate(), np.array(SQUARE) + 50]), gx.Contour(SQUARE, closed=False)])
    assert sets[1:][0] == gx.Contour(SQUARE, closed=False) and sets[:1][0] == sets[0]
    assert len(many[:0]) == 0 and len(many[np.zeros(10, bool)]) == 0
    with pytest.raises(gx.ArgumentError):
        many[np.ones(9, bool)]
    with pytest.raises(IndexError):
        many[np.array([10])]
    with pytest.raises(TypeError):
        many["a"]


def test_rings_that_repeat_their_first_point_count_it_once():
    closed = gx.Shapes([*SQUARE, SQUARE[0]], [0, 5])
    assert closed[0] == gx.Region(SQUARE) and gx.batch.measure(closed)["points"].tolist() == [4]
    coords, (rings, shapes) = two().to_geoarrow()
    assert rings.dtype == np.int32 and rings.tolist() == [0, 5, 10, 15] and shapes.tolist() == [0, 2, 3]
    assert coords[4].tolist() == coords[0].tolist() and len(coords) == 15
    again = gx.Shapes.from_geoarrow(coords, (rings, shapes))
    assert [one for one in again] == [one for one in two()]
    assert again.to_geoarrow()[0].shape == (15, 2) and two().to_geoarrow(close_rings=False)[0].shape == (12, 2)
    assert gx.Shapes([[1, 2]], [0, 1]).to_geoarrow()[0].tolist() == [[1, 2], [1, 2]]
    few = gx.Shapes([*SQUARE, [7, 8]], [0, 4, 4, 5, 5]).to_geoarrow()
    assert few[1][0].tolist() == [0, 5, 5, 7, 7] and few[0][5:].tolist() == [[7, 8], [7, 8]]
    line = gx.Shapes.from_objects([gx.Contour(SQUARE, closed=False), gx.Region()])
    assert len(line.to_geoarrow()[0]) == 4
    with pytest.raises(gx.ArgumentError, match="one to three"):
        gx.Shapes.from_geoarrow(coords, ())


def test_pickling_hands_arrays_over_out_of_band():
    shapes, buffers = random_shapes(50), []
    data = pickle.dumps(shapes, protocol=5, buffer_callback=buffers.append)
    assert sum(len(memoryview(b).cast("B")) for b in buffers) >= shapes.coords.nbytes > 10 * len(data)
    assert pickle.loads(data, buffers=buffers) == shapes
    assert pickle.loads(pickle.dumps(two())) == two() and two() != gx.Shapes(COORDS, RINGS, [0, 2, 3])


@given(ragged())
def test_any_ragged_arrays_measure_and_slice(shapes):
    table = gx.batch.measure(shapes)
    assert all(len(column) == len(shapes) for column in table.values())
    twin = gx.Shapes.from_objects(list(shapes)) if len(shapes) else shapes
    again = gx.batch.measure(twin)
    for name in ("area", "length", "centre_x", "box_x_min", "status"):
        assert np.array_equal(table[name], again[name], equal_nan=table[name].dtype.kind == "f")
    assert shapes[::-1][::-1] == shapes[:]
