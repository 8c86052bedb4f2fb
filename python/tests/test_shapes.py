"""Contours, regions, sets, edge points: making, looking, comparing, copying, pickling."""
import copy
import gc
import pickle
import threading

import numpy as np
import pytest
from hypothesis import given

import gxshape as gx
from shapes import BOW, HOLE, PLATE, SQUARE, anything, plate, polygon, rings


def test_points_are_a_read_only_view_that_keeps_the_memory_alive():
    region = gx.Region(polygon(1000))
    view = region.points
    wanted = np.array(view)
    assert not view.flags.writeable and not view.flags.owndata
    with pytest.raises(ValueError):
        view[0, 0] = 7
    with pytest.raises(ValueError):
        view.flags.writeable = True
    assert np.shares_memory(view, region.points)
    region.points = SQUARE
    assert len(region.points) == 4
    del region
    gc.collect()
    filler = [gx.Region(polygon(1000, 5)) for _ in range(50)]
    assert (view == wanted).all() and len(filler) == 50


def test_a_region_copies_what_it_is_given():
    array = np.array(SQUARE, float)
    region = gx.Region(array)
    array[:] = 0
    assert region.area == 16


def test_the_measures_of_a_plate_with_a_hole():
    region = plate()
    assert repr(region) == "Region(4 points, 1 hole, area=1100)"
    assert (region.area, region.filled_area, region.perimeter, region.length) == (1100, 1200, 140, 180)
    assert region.centre.tolist() == [19.09090909090909, 15] and region.box == (0, 0, 40, 30)
    assert region.status is gx.Status.OK
    assert [hole.area for hole in region.holes] == [100]


def test_answers_do_not_outlive_the_points_they_are_of():
    region = plate()
    assert region.area == 1100 and not region.inside([30, 15])
    region.holes = []
    assert region.area == 1200 and region.inside([30, 15])
    region.points = SQUARE
    assert region.area == 16 and region.box == (0, 0, 4, 4) and not region.inside([30, 15])
    centre = region.centre
    centre[:] = 99
    assert region.centre.tolist() == [2, 2]


def test_degenerate_contours_answer():
    none = gx.Contour()
    assert none.area == 0 and none.length == 0 and none.status is gx.Status.EMPTY and np.isnan(none.centre).all()
    line = gx.Contour([[0, 0], [3, 4]], closed=False)
    assert np.isnan(line.area) and line.length == 5 and line.status is gx.Status.NOT_CLOSED
    flat = gx.Region([[0, 0], [2, 0], [1, 0]])
    assert flat.area == 0 and flat.status is gx.Status.FLAT and flat.centre.tolist() == [1, 0]
    bad = gx.Region([[0, 0], [1, float("nan")], [1, 1]])
    assert bad.status is gx.Status.NOT_FINITE and np.isnan(bad.area)


def test_inside_takes_any_shape_of_query():
    region = gx.Region(SQUARE)
    assert isinstance(region.inside([2, 2]), bool) and region.inside([2, 2])
    assert region.inside(np.full((2, 3, 2), 2.0)).shape == (2, 3)
    assert region.inside(np.empty((0, 2))).shape == (0,) and region.inside([]).shape == (0,)
    assert region.locate([0, 2]) is gx.State.BORDER and region.locate([9, 9]) is gx.State.OUTSIDE
    assert region.locate([[2, 2], [4, 4], [5, 5]]).tolist() == [1, 0, -1]
    assert region.locate([4.05, 2], tolerance=0.1) is gx.State.BORDER
    assert region.inside([0, 2]) and not region.inside([-1e-9, 2]) and region.inside([4.05, 2], tolerance=0.1)
    assert region.signed_distance([2, 2]) == -2 and region.signed_distance([[6, 2], [4, 2]]).tolist() == [2, 0]
    place = region.nearest([5, 1])
    assert (place.ring, place.edge, place.t) == (-1, 2, 0.25) and place.point.tolist() == [4, 1]
    many = region.nearest([[5, 1], [2, 3]])
    assert many["distance"].tolist() == [1, 1] and many["point"].shape == (2, 2)
    assert gx.Region().nearest([1, 1]) is None
    with pytest.raises(gx.ArgumentError, match="tolerance"):
        region.inside([1, 1], tolerance=float("nan"))
    with pytest.raises(gx.ArgumentError, match=r"shape \(2,\) or \(…, 2\), got \(3,\) int64"):
        region.inside([1, 2, 3])


def test_equality_counts_holes_and_closedness_and_not_labels():
    assert plate() == plate() and plate() != gx.Region(PLATE)
    assert gx.Region(PLATE, label=3) == gx.Region(PLATE, label=4)
    assert gx.Contour(SQUARE) != gx.Contour(SQUARE, closed=False) and gx.Contour(SQUARE) != gx.Region(SQUARE)
    assert gx.Region(SQUARE) != gx.Region(np.array(SQUARE) + 1e-9)
    island = gx.Region(HOLE, holes=[[[28, 12], [30, 12], [30, 14]]])
    assert gx.Region(PLATE, holes=[island]) != plate()
    assert gx.Region(SQUARE) != "square"
    with pytest.raises(TypeError):
        hash(gx.Region(SQUARE))


def test_holes_that_cross_are_refused_and_nothing_changes():
    with pytest.raises(gx.BadParamsError, match="holes cannot intersect region") as caught:
        gx.Region(SQUARE, holes=[[[3, 3], [5, 3], [5, 5]]])
    assert caught.value.number == 0x10004683 and caught.value.name == "gxContourDefs::BadParams"
    region = plate()
    with pytest.raises(gx.BadParamsError):
        region.holes = [[[39, 3], [45, 3], [45, 5]]]
    with pytest.raises(gx.BadParamsError):
        region.points = np.array(PLATE) + [28, 0]
    assert region == plate()


def test_a_region_is_never_open():
    region = plate()
    with pytest.raises(gx.RegionOpenError):
        region.closed = False
    line = gx.Contour(SQUARE)
    line.closed = False
    assert not line.closed and line.length == 12


def test_labels_are_kept_and_checked():
    region = gx.Region(PLATE, holes=[HOLE], label=2**40)
    assert region.label == 2**40
    region.points = region.points * 2.0 - [[0, 0]]
    assert region.label == 2**40
    region.label = 5
    assert region.label == 5 and len(region.holes) == 1
    for bad in (-1, 2**63):
        with pytest.raises(gx.ArgumentError, match="label"):
            gx.Contour(label=bad)
    with pytest.raises(TypeError):
        gx.Contour(label="a")


@pytest.mark.parametrize("shape", [
    gx.Contour(SQUARE, closed=False, label=3), plate(), gx.RegionSet([plate(), SQUARE]), gx.RegionSet(),
    gx.Region(PLATE, holes=[gx.Region(HOLE, holes=[[[28, 12], [30, 12], [30, 14]]])]),
    gx.EdgeContour(SQUARE, magnitudes=[1, 2, 3, 65535], angles=[0, 9, 128, 255], closed=False, label=6,
                   transform=gx.Transform.scaling(2)),
    gx.EdgeRegion(np.array(PLATE) * 2, magnitudes=[1, 2, 3, 4], transform=gx.Transform.scaling(2), holes=[HOLE], label=8),
    gx.EdgeRegionSet([gx.EdgeRegion(SQUARE, magnitudes=[4, 3, 2, 1])]),
], ids=lambda shape: type(shape).__name__)
def test_copies_and_pickles_are_equal_and_independent(shape):
    for twin in (copy.copy(shape), copy.deepcopy(shape), pickle.loads(pickle.dumps(shape))):
        assert twin == shape and type(twin) is type(shape) and twin is not shape
        if isinstance(shape, gx.Contour):
            assert twin.label == shape.label and twin.closed == shape.closed
            twin.points = [[0, 0], [1, 0], [1, 1]] if not (isinstance(twin, gx.Region) and twin.holes) else \
                np.array(PLATE) * 1.5
            assert twin != shape
        if isinstance(shape, (gx.EdgeContour, gx.EdgeRegion)):
            again = pickle.loads(pickle.dumps(shape))
            assert again.magnitudes.tolist() == shape.magnitudes.tolist()
            assert again.angles.tolist() == shape.angles.tolist() and again.transform == shape.transform
            assert (again.positions == shape.positions).all()


def test_edge_points_keep_their_data_until_the_points_change():
    edge = gx.EdgeRegion(np.array(PLATE) * 2, magnitudes=[1, 2, 3, 4], angles=[5, 6, 7, 8],
                         transform=gx.Transform.scaling(2), holes=[HOLE])
    assert (edge.points == PLATE).all() and edge.area == 1100
    assert edge.magnitudes.tolist() == [1, 2, 3, 4] and edge.angles.tolist() == [5, 6, 7, 8]
    edge.label = 7
    edge.holes = []
    assert edge.magnitudes.tolist() == [1, 2, 3, 4] and edge.area == 1200
    edge.points = SQUARE
    assert edge.magnitudes.tolist() == [0, 0, 0, 0] and (edge.positions == np.array(SQUARE) * 2).all()
    for kind, bad in (("magnitudes", [1, 2, 3]), ("magnitudes", [0, 0, 0, 65536]), ("angles", [0, 0, 0, -1]),
                      ("angles", [0, 0, 0, 0.5])):
        with pytest.raises(gx.ArgumentError, match=kind):
            gx.EdgeContour(SQUARE, **{kind: bad})
    with pytest.raises(gx.ArgumentError, match="no inverse"):
        gx.EdgeContour(SQUARE, transform=gx.Transform([[1, 0], [0, 0]]))
    assert gx.EdgeContour(SQUARE, magnitudes=[1, 2, 3, 4]) != gx.EdgeContour(SQUARE, magnitudes=[1, 2, 3, 5])


def test_edge_points_beside_one_that_is_no_number_keep_their_data():
    edges = [[0, 0], [np.nan, 1], [2, 2]]
    for edge in (gx.EdgeContour(edges, magnitudes=[1, 2, 3]), gx.EdgeRegion(edges, magnitudes=[1, 2, 3])):
        edge.label = 5
        assert edge.label == 5 and edge.magnitudes.tolist() == [1, 2, 3]


def test_moving_maps_holes_and_islands_along():
    region = gx.Region(PLATE, holes=[gx.Region(HOLE, holes=[[[28, 12], [30, 12], [30, 14]]])], label=4)
    moved = region.moved(transform=gx.Transform.shift([10, 20]))
    assert (moved.points == np.array(PLATE) + [10, 20]).all() and moved.label == 4
    assert (moved.holes[0].holes[0].points == np.array([[38, 32], [40, 32], [40, 34]])).all()
    turned = region.moved(transform=gx.Transform.rotation(0.3, about=(3, 4)))
    assert turned.area == pytest.approx(region.area, rel=1e-12)
    both = gx.RegionSet([region, SQUARE]).moved(transform=gx.Transform.scaling(2))
    assert isinstance(both, gx.RegionSet) and both.area == 4 * gx.RegionSet([region, SQUARE]).area
    with pytest.raises(TypeError):
        region.moved(transform=np.eye(2))


def test_transforms_compose_and_invert():
    a, b = gx.Transform.rotation(0.7, about=(1, 2)), gx.Transform([[2, 1], [0, 3]], [5, -1])
    points = np.random.default_rng(1).random((5, 2))
    assert np.allclose((a @ b).apply(points), a.apply(b.apply(points)), rtol=0, atol=1e-14)
    assert np.allclose((b.inverse() @ b).apply(points), points, rtol=0, atol=1e-14)
    assert b.determinant == 6 and a.determinant == pytest.approx(1)
    assert pickle.loads(pickle.dumps(b)) == b and hash(b) == hash(copy.copy(b)) and a != b
    with pytest.raises(gx.ArgumentError, match="no inverse"):
        gx.Transform([[1, 2], [2, 4]]).inverse()
    with pytest.raises(gx.ArgumentError, match=r"matrix: want an array of shape \(2, 2\), got \(3,\)"):
        gx.Transform([1, 2, 3])


def test_sets_are_sequences_of_regions():
    both = gx.RegionSet([plate(), gx.Region(np.array(SQUARE) + 100)])
    assert len(both) == 2 and both[1].area == 16 and [r.area for r in both] == [1100, 16]
    assert both.which([[1, 1], [102, 102], [30, 15]]).tolist() == [0, 1, -1] and both.which([1, 1]) == 0
    assert both.area == 1116 and both.inside([102, 102])
    both.regions = [SQUARE]
    assert both.area == 16 and repr(both) == "RegionSet(1 region, 0 holes, area=16)"
    with pytest.raises(TypeError):
        gx.RegionSet([gx.Contour(SQUARE)])
    with pytest.raises(TypeError):
        gx.EdgeRegionSet([plate()])


def test_pictures_hold_every_ring_and_few_points():
    svg = plate()._repr_svg_()
    assert svg.startswith("<svg") and 'fill-rule="evenodd"' in svg and svg.count("M ") == 2
    assert gx.Region(polygon(100_000))._repr_svg_().count("L ") <= 2000
    assert "<text" in gx.Region()._repr_svg_()
    huge = gx.Region([[-1.7e308, 0], [1.7e308, 0], [0, 1.7e308]])._repr_svg_()
    assert "nan" not in huge and "inf" not in huge and 'width="300"' in huge
    assert 'fill="none"' in gx.Contour(SQUARE, closed=False)._repr_svg_()
    assert plate()._repr_png_()[:8] == b"\x89PNG\r\n\x1a\n"


def test_the_geo_interface_closes_rings():
    geo = plate().__geo_interface__
    assert geo["type"] == "Polygon" and len(geo["coordinates"]) == 2
    assert geo["coordinates"][0] == ((0, 0), (40, 0), (40, 30), (0, 30), (0, 0))
    assert gx.RegionSet([SQUARE, BOW]).__geo_interface__["type"] == "MultiPolygon"
    line = gx.Contour([[0, 0], [1, 1]], closed=False).__geo_interface__
    assert line == {"type": "LineString", "coordinates": ((0, 0), (1, 1))}


def test_many_threads_ask_one_region_while_one_changes_it():
    region = gx.Region(polygon(3000), holes=[polygon(100, 0.2)])
    points = np.random.default_rng(2).uniform(-1.2, 1.2, (4000, 2))
    wanted = region.inside(points)
    faults = []

    def ask():
        for _ in range(20):
            if not (region.inside(points) == wanted).all() or abs(region.area - gx.Region(
                    region.points, holes=region.holes).area) > 1e-9:
                faults.append("another answer")

    def change():
        for _ in range(100):
            region.points = region.points
            region.label = region.label + 1

    threads = [threading.Thread(target=ask) for _ in range(4)] + [threading.Thread(target=change)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert faults == [] and region.label == 100


@given(rings(anything))
def test_whatever_the_points_a_region_answers_or_says_why(points):
    region = gx.Region(points)
    assert np.array_equal(region.points, points, equal_nan=True)
    assert isinstance(region.area, float) and isinstance(region.status, gx.Status)
    region.inside([[0, 0], [float("nan"), 1]])
    assert repr(region) and region._repr_svg_()
    twin = pickle.loads(pickle.dumps(region))
    assert np.array_equal(twin.points, region.points, equal_nan=True)
    try:
        region.repaired()
        assert np.isfinite(points).all()
    except gx.BadParamsError:
        assert not np.isfinite(points).all()
