"""Batches against the same questions one by one; threads, progress, failures."""
import threading
import time

import numpy as np
import pytest
from hypothesis import given

import gxshape as gx
from gxshape import batch, gauge, overlay
from shapes import BOW, HOLE, PLATE, SQUARE, plate, polygon, ragged, random_shapes


def mixed() -> gx.Shapes:
    return gx.Shapes.from_objects([
        plate(), gx.RegionSet([plate(), np.array(SQUARE) + 50]), gx.Contour(SQUARE, closed=False), gx.Region(),
        gx.Region([[0, 0], [1, float("nan")], [1, 1]]), gx.Region([[0, 0], [2, 0], [1, 0]]), gx.Region(BOW),
        gx.Region(polygon(50, 7, (3, 3)))])


def test_measures_are_those_of_the_objects_bit_by_bit():
    shapes = mixed()
    table = batch.measure(shapes)
    for i, one in enumerate(shapes):
        wanted = [one.area, one.length, *one.centre, *one.box]
        got = [table[name][i] for name in ("area", "length", "centre_x", "centre_y", "box_x_min", "box_y_min",
                                           "box_x_max", "box_y_max")]
        assert np.array_equal(wanted, got, equal_nan=True) and table["status"][i] == one.status
    assert table["holes"].tolist()[:2] == [1, 1] and table["points"].tolist()[:4] == [8, 12, 4, 0]
    assert list(table)[:2] == ["id", "status"] and list(table)[-1] == "error" and table["id"].tolist() == list(range(1, 9))


def test_measures_side_by_side_are_those_of_one_after_the_other():
    """Runs of single rings, rings that repeat their first point, long ones, and between them what is none."""
    rng = np.random.default_rng(12)
    rings, closed = [], []
    for i in range(700):
        n = int(rng.integers(0, 90)) if i % 50 else 5000
        ring = polygon(n, rng.uniform(0.5, 3), tuple(rng.uniform(-40, 40, 2))) * (1 + 0.2 * rng.random((n, 1)))
        if i % 23 == 0 and n:
            ring[n // 2, i % 2] = [np.nan, np.inf][i % 3 % 2]
        if i % 29 == 0:
            ring[:, 1] = 2.0
        if i % 31 == 0:
            ring *= 1e-170
        if i % 3 == 0 and n:
            ring = np.concatenate([ring, ring[:1]])
        rings.append(ring)
        closed.append(i % 17 != 0)
    shapes = gx.Shapes(np.concatenate(rings), np.cumsum([0, *map(len, rings)]), closed=np.array(closed))
    for threads in (1, 2):
        table = batch.measure(shapes, threads=threads)
        for i in range(len(shapes)):
            one = shapes[i]
            wanted = [one.area, one.length, *one.centre, *one.box]
            got = [table[name][i] for name in batch._MEASURES[2:]]
            assert np.array_equal(wanted, got, equal_nan=True), (i, wanted, got)
            repeats = closed[i] and len(rings[i]) > 1 and (rings[i][0] == rings[i][-1]).all()
            assert table["status"][i] == one.status and table["points"][i] == len(rings[i]) - repeats
        assert not table["holes"].any()
    assert np.bincount(table["status"]).tolist()[:6] == np.bincount([s.status for s in shapes]).tolist()[:6]
    assert {0, 1, 2, 4, 5} <= set(table["status"].tolist())


def test_what_takes_long_comes_where_it_is_named():
    dented = gx.Region([[0, 0], [4, 0], [4, 4], [2, 1], [0, 4]])
    shapes = gx.Shapes.from_objects([plate(), gx.RegionSet([dented, np.array(SQUARE) + 50]), dented, gx.Region(),
                                     gx.Region([[0, 0], [1, float("nan")], [1, 1]]), gx.Region([[0, 0], [2, 0]])])
    names = ["inscribed_circle_radius", "inscribed_circle_centre", "wall", "wall_from", "wall_to"]
    for threads in (1, 2):
        table = batch.describe(shapes, only=[*names, "defects"], threads=threads)
        assert list(table)[2:-1] == [
            "inscribed_circle_radius", "inscribed_circle_centre_x", "inscribed_circle_centre_y", "wall",
            *(f"wall_{end}_{part}" for end in ("from", "to") for part in ("ring", "edge", "t", "x", "y")), "defects"]
        for i, one in enumerate(shapes):
            circle, wall = gauge.inscribed_circle(one), gauge.smallest_wall(one)
            wanted, got = [circle.radius, *circle.centre, wall.wall], []
            for place in (wall.wall_from, wall.wall_to):
                wanted += [-1, -1, np.nan, np.nan, np.nan] if place is None else [
                    place.ring, place.edge, place.t, place.x, place.y]
            got = [table[name][i] for name in list(table)[2:-2]]
            assert np.array_equal(wanted, got, equal_nan=True), (i, wanted, got)
            outline = one.regions[0] if isinstance(one, gx.RegionSet) else one
            assert table["defects"][i] == [vars(d) for d in gauge.convexity_defects(outline).defects]
        assert table["wall_from_ring"].dtype == np.int64 and [len(d) for d in table["defects"]] == [0, 1, 1, 0, 0, 0]
    assert table["wall"][0] == 5.0 and table["defects"][2][0]["depth"] == 3.0
    assert not set(batch.describe(shapes)) & set(list(table)[2:-1])
    assert list(batch.describe(shapes, only=["defects", "area"])) == ["id", "status", "defects", "area", "error"]
    # What could not be read has no answer.
    table = batch.describe(gx.loads("POLYGON ((0 0, 1 0, 0 1))\nPOLYGON ((0 x", errors="emit"), only=["defects", "wall"])
    assert table["defects"].tolist() == [[], None] and table["status"].tolist()[1] == 20


def test_descriptors_are_those_of_the_gauges_bit_by_bit():
    shapes = mixed()
    table = batch.describe(shapes)
    for i, one in enumerate(shapes):
        d, m, f = gauge.describe(one), gauge.moments(one), gauge.feret(one)
        for answer, names in ((d, ["area", "filled_area", "perimeter", "length", "equivalent_diameter", "circularity",
                                   "compactness", "convexity", "solidity", "extent", "rectangularity", "aspect_ratio",
                                   "elongation", "eccentricity", "orientation", "euler_number", "feret_max",
                                   "feret_min", "feret_mean", "feret_across"]),
                              (m, ["moment_20", "moment_11", "moment_02", "moment_30", "moment_21", "moment_12",
                                   "moment_03", "eta_20", "eta_11", "eta_02", "eta_30", "eta_21", "eta_12", "eta_03",
                                   "ellipse_a", "ellipse_b", "ellipse_angle"]),
                              (f, ["feret_max_angle", "feret_min_angle"])):
            for name in names:
                assert np.array_equal(getattr(answer, name), table[name][i], equal_nan=True), (i, name)
        assert np.array_equal(m.hu, [table[f"hu_{k}"][i] for k in range(1, 8)], equal_nan=True)
        c, r = gauge.enclosing_circle(one), gauge.least_area_rectangle(one)
        assert np.array_equal([c.radius, *c.centre, r.length, r.width, r.angle, *r.centre],
                              [table[name][i] for name in ("enclosing_circle_radius", "enclosing_circle_centre_x",
                                                           "enclosing_circle_centre_y", "rectangle_length",
                                                           "rectangle_width", "rectangle_angle", "rectangle_centre_x",
                                                           "rectangle_centre_y")], equal_nan=True)
        box = d.box
        assert np.array_equal(box, [table[f"box_{k}"][i] for k in ("x_min", "y_min", "x_max", "y_max")], equal_nan=True)
        assert np.array_equal(one.centre, [table["centre_x"][i], table["centre_y"][i]], equal_nan=True)


def test_columns_are_named_as_the_table_of_names():
    import csv
    from pathlib import Path

    ends = {"point": ["_x", "_y"], "box": ["_x_min", "_y_min", "_x_max", "_y_max"],
            "place": ["_ring", "_edge", "_t", "_x", "_y"]}
    named, on_request = [], []
    for row in csv.DictReader((Path(gx.__file__).parent / "names.csv").open()):
        if row["entry"] == "measure" and "describe" in row["commands"].split() and row["name"] != "id":
            of = on_request if "named or with --all" in row["sentence"] else named
            of += [row["name"] + end for end in ends.get(row["type"], [""])]
    assert gx._gxshape.described_names(on_request=False) == named
    assert [*gx._gxshape.described_names(on_request=True), "defects"] == on_request and len(on_request) == 15
    assert set(batch._MEASURES) <= set(named)


def test_only_computes_what_is_asked_for_with_the_same_bits():
    shapes, whole = mixed(), batch.describe(mixed())
    for names in (["hu_3"], ["centre"], ["box", "area"], ["rectangle_centre", "enclosing_circle_radius"], "holes"):
        table = batch.describe(shapes, only=names)
        for name in list(table)[2:-1]:
            assert np.array_equal(table[name], whole[name], equal_nan=True)
    assert list(batch.measure(shapes, only=["box"])) == ["id", "status", "box_x_min", "box_y_min", "box_x_max",
                                                         "box_y_max", "error"]
    with pytest.raises(gx.ArgumentError, match="no column 'aera'; known are"):
        batch.describe(shapes, only=["aera"])


@pytest.mark.parametrize("threads", [2, 3, 0])
def test_threads_do_not_show(threads):
    shapes, points = random_shapes(700), np.random.default_rng(5).uniform(0, 40, (3000, 2))
    for ask in (lambda n: batch.measure(shapes, threads=n), lambda n: batch.describe(shapes, threads=n),
                lambda n: batch.inside(shapes, points, threads=n), lambda n: batch.nearest(shapes, points, threads=n),
                lambda n: batch.compare(shapes[:50], SQUARE, threads=n), lambda n: batch.fit(shapes[:50], threads=n)):
        one, many = ask(1), ask(threads)
        assert list(one) == list(many)
        for name in one:
            assert np.array_equal(one[name], many[name], equal_nan=one[name].dtype.kind == "f")
    for ask in (lambda n: batch.repair(shapes, threads=n)[0], lambda n: batch.simplify(shapes, tolerance=0.3, threads=n),
                lambda n: batch.hull(shapes, threads=n), lambda n: batch.offset(shapes, 0.1, threads=n)[0]):
        assert ask(1) == ask(threads)


@pytest.mark.parametrize("tolerance", [0.0, 0.25])
def test_containment_through_the_tree_is_that_of_one_after_the_other(tolerance):
    shapes = random_shapes(200, seed=8)
    points = np.concatenate([np.random.default_rng(6).uniform(-3, 43, (800, 2)), shapes.coords[::40]])
    table = batch.inside(shapes, points, tolerance=tolerance)
    states = np.array([one.locate(points, tolerance=tolerance) for one in shapes])
    region = np.where((states >= 0).any(axis=0), (states >= 0).argmax(axis=0), -1)
    assert (table["region"] == region).all() and (table["status"] == 0).all()
    found = region >= 0
    assert found.sum() > 100 and (table["state"][found] == states[region[found], np.flatnonzero(found)]).all()
    assert (table["state"][~found] == -1).all()


def test_nearest_through_the_tree_is_that_of_one_after_the_other():
    shapes = random_shapes(120, seed=9)
    points = np.random.default_rng(7).uniform(-10, 50, (400, 2))
    table = batch.nearest(shapes, points)
    distances = np.array([np.abs(one.signed_distance(points)) for one in shapes])
    assert (table["distance"] == distances.min(axis=0)).all() and (table["region"] == distances.argmin(axis=0)).all()
    place = np.column_stack([table["place_x"], table["place_y"]])
    assert np.allclose(np.hypot(*(place - points).T), table["distance"], rtol=1e-12, atol=1e-12)
    near = batch.nearest(shapes, points, max_distance=0.5)
    far = distances.min(axis=0) > 0.5
    assert (near["status"][far] == gx.Status.NONE).all() and (near["region"][far] == -1).all() and far.any()
    assert (near["region"][~far] == table["region"][~far]).all() and np.isnan(near["distance"][far]).all()
    twin = gx.Shapes.from_objects([SQUARE] * 40)
    assert (batch.nearest(twin, points)["region"] == 0).all()


def test_places_of_shapes_and_points_that_are_not_finite():
    shapes = gx.Shapes.from_objects([[[0, 0], [float("inf"), 0], [9, 9]], gx.Region(), SQUARE,
                                     gx.Contour([[10, 0], [12, 0]], closed=False), plate()])
    points = [[1, 1], [float("nan"), 0], [11, 0], [11, 1], [30, 15]]
    table = batch.inside(shapes, points)
    assert table["region"].tolist() == [2, -1, 3, 4, -1] and table["state"].tolist() == [1, 0, 0, 1, -1]
    assert table["status"].tolist() == [0, 2, 0, 0, 0]
    near = batch.nearest(shapes, points)
    assert near["status"].tolist() == [0, 2, 0, 0, 0] and near["region"].tolist() == [2, -1, 3, 3, 4]
    for none in (gx.Shapes(np.empty((0, 2)), [0]), gx.Shapes.from_objects([gx.Region()])):
        assert batch.inside(none, points)["region"].tolist() == [-1] * 5
        assert batch.nearest(none, [[1, 1]])["status"].tolist() == [gx.Status.NONE]
    assert len(batch.inside(shapes, [])["region"]) == 0
    one = batch.inside([plate()], points)
    assert one["region"].tolist() == [0, -1, 0, 0, -1] and one["state"].tolist() == [1, 0, 0, 1, -1]


def test_a_failing_shape_is_a_row_and_not_an_abort():
    shapes = gx.Shapes.from_objects([SQUARE, [[0, 0], [1, float("nan")], [1, 1]], gx.Contour(SQUARE, closed=False), BOW])
    made, table = batch.repair(shapes, threads=2)
    assert table["status"].tolist() == [0, 20, 20, 0] and table["error"].tolist() == [0, 0x10004683, 0x10004683, 0]
    assert table["area_after"].tolist()[::3] == [16, 15] and np.isnan(table["area_after"][1]) and table["regions"][1] == -1
    texts = batch.messages(table)
    assert list(texts) == [1, 2] and "BadParams" in texts[1] and "open contour" in texts[2]
    assert len(made) == 4 and made[1].area == 0 and made[3].area == 15
    with pytest.raises(gx.BadParamsError, match="shape 1: ") as caught:
        batch.repair(shapes, errors="raise")
    assert caught.value.row == 1
    with pytest.raises(gx.ArgumentError, match="errors"):
        batch.measure(shapes, errors="ignore")


def test_records_that_could_not_be_read_keep_their_rows():
    shapes = gx.loads("POLYGON ((0 0, 4 0, 4 4, 0 4))\nPOINT (1 x)\nPOLYGON ((0 0, 1 0, 0 1))", errors="emit")
    table = batch.measure(shapes)
    assert table["status"].tolist() == [0, 20, 0] and table["error"].tolist() == [0, 1, 0]
    assert table["area"].tolist()[::2] == [16, 0.5] and np.isnan(table["area"][1]) and table["points"][1] == -1
    assert "number expected" in batch.messages(table)[1]


def test_shapes_made_of_shapes_are_those_of_one_after_the_other():
    shapes = gx.Shapes.from_objects([plate(), BOW, SQUARE, polygon(30, 12, (20, 15))], ids=list("abcd"))
    knife = gx.Region([[10, -5], [30, -5], [30, 50], [10, 50]])
    for operation, one_by_one in (("union", overlay.union), ("intersection", overlay.intersection),
                                  ("difference", overlay.difference),
                                  ("symmetric-difference", overlay.symmetric_difference)):
        made, table = batch.overlay(shapes, knife, operation=operation)
        for i in range(4):
            wanted = one_by_one(shapes[i], knife)
            assert made[i].area == wanted.area and made[i].to_wkt() in (
                wanted.to_wkt(), wanted[0].to_wkt() if len(wanted) else "POLYGON EMPTY")
        assert made.ids == ("a", "b", "c", "d")
    assert batch.overlay(shapes, knife, operation="intersection")[1]["status"].tolist() == [0, 6, 6, 0]
    grown, _ = batch.offset(shapes, 1.0, join="mitre")
    assert grown[2].area == 36 and grown[0].area == overlay.offset(plate(), 1.0, join="mitre").area
    thin = batch.simplify(shapes, tolerance=0.5)
    for i in range(4):
        kept = gauge.simplify(shapes[i].points, tolerance=0.5)[1]
        assert (thin[i].points == shapes[i].points[kept]).all()
    assert len(thin[0].holes) == 1
    hulls = batch.hull(shapes)
    assert hulls[0].area == 1200 and hulls[1] == gx.Region(BOW).hull()
    with pytest.raises(gx.ArgumentError, match="tolerance"):
        batch.simplify(shapes, tolerance=float("nan"))


def test_comparison_with_a_golden_outline():
    shape = np.array([[0, 0], [10, 0], [10, 3], [4, 3], [4, 7], [0, 7]], float)
    motion = gx.Transform.shift([30, -2]) @ gx.Transform.rotation(0.4)
    shapes = gx.Shapes.from_objects([shape, motion.apply(shape), gx.Region()])
    table = batch.compare(shapes, shape)
    assert table["hausdorff"][0] == 0 and table["hausdorff"][1] > 10 and table["status"][2] == gx.Status.EMPTY
    wanted = gauge.deviation(motion.apply(shape), shape)
    assert table["deviation_max"][1] == wanted.deviation_max and table["deviation_rms"][1] == wanted.deviation_rms
    assert "angle" not in table
    aligned = batch.compare(shapes, shape, align="rigid", step=0.1)
    assert aligned["hausdorff"][1] < 1e-5 and aligned["angle"][1] == pytest.approx(-0.4, abs=1e-6)
    assert batch.compare([2 * shape], shape, align="similarity")["scale"][0] == pytest.approx(0.5, abs=1e-6)


def test_fits_of_many():
    shapes = gx.Shapes.from_objects([polygon(30, 5, (1, 2)), [[0, 0], [1, 1]]])
    table = batch.fit(shapes)
    assert table["radius"][0] == pytest.approx(5) and table["inliers"].tolist() == [30, 0]
    assert table["status"][1] == gx.Status.UNDETERMINED and np.isnan(table["radius"][1])
    assert batch.fit([polygon(30) * [7, 3]], kind="ellipse")["ellipse_a"][0] == pytest.approx(7)
    assert batch.fit([[[0, 0], [1, 1], [2, 2]]], kind="line")["angle"][0] == pytest.approx(np.pi / 4)
    with pytest.raises(gx.ArgumentError, match="kind"):
        batch.fit(shapes, kind="square")


def test_progress_is_told_and_stops_the_call():
    shapes, seen = random_shapes(20_000, points=40), []
    batch.describe(shapes, threads=2, progress=lambda done, total: seen.append((done, total)))
    assert seen[-1] == (20_000, 20_000) and [d for d, _ in seen] == sorted(d for d, _ in seen) and len(seen) >= 2
    calls = []

    def stop(done, total):
        calls.append(done)
        return False

    with pytest.raises(gx.StoppedError) as caught:
        batch.describe(shapes, threads=2, progress=stop)
    assert caught.value.number == 0x10000151 and len(calls) == 1 and calls[0] < 20_000
    with pytest.raises(ZeroDivisionError):
        batch.describe(shapes, threads=2, progress=lambda done, total: 1 / 0)
    with pytest.raises(TypeError, match="progress"):
        batch.measure(shapes, progress="bar")
    batch.measure(shapes[:10], progress=True)


def test_the_lock_is_let_go_while_a_batch_runs():
    shapes, counts = random_shapes(20_000, points=40), []
    running = threading.Event()

    def count():
        running.set()
        n = 0
        while running.is_set():
            n += 1
            time.sleep(0)
        counts.append(n)

    thread = threading.Thread(target=count)
    thread.start()
    running.wait()
    batch.describe(shapes)
    running.clear()
    thread.join()
    assert counts[0] > 100


def test_signals_get_through():
    import _thread

    shapes = random_shapes(50_000, points=40)
    timer = threading.Timer(0.2, _thread.interrupt_main)
    timer.start()
    with pytest.raises(KeyboardInterrupt):
        for _ in range(200):
            batch.describe(shapes)
    timer.join()


@pytest.mark.parametrize("threads", [-1, 1025])
def test_threads_are_checked(threads):
    with pytest.raises(gx.ArgumentError, match="threads"):
        batch.measure([SQUARE], threads=threads)
    with pytest.raises(TypeError):
        batch.measure([SQUARE], threads=1.5)
    with pytest.raises(TypeError, match=r"write \[array\]"):
        batch.measure(np.array(SQUARE))


def test_no_shapes_give_no_rows():
    none = gx.Shapes(np.empty((0, 2)), [0])
    for table in (batch.measure(none), batch.describe(none), batch.repair(none)[1], batch.compare(none, SQUARE)):
        assert all(len(column) == 0 for column in table.values())
    assert len(batch.measure([])["area"]) == 0


def test_a_data_frame_in_one_line():
    pandas = pytest.importorskip("pandas")
    frame = pandas.DataFrame(gx.describe(mixed()))
    assert len(frame) == 8 and frame["area"][0] == 1100 and frame["holes"].dtype == np.int64
    assert frame["status"].dtype == np.int8


@given(ragged())
def test_any_shapes_go_through_every_batch(shapes):
    for ask in (batch.describe, batch.fit, lambda s: batch.compare(s, SQUARE), lambda s: batch.repair(s)[1],
                lambda s: batch.offset(s, 0.5)[1]):
        table = ask(shapes)
        assert all(len(column) == len(shapes) for column in table.values())
        assert ((table["status"] == 20) == (table["error"] != 0)).all()
    points = np.concatenate([shapes.coords[:20], [[0, 0], [1, 1]]])
    inside, near = batch.inside(shapes, points), batch.nearest(shapes, points)
    assert ((inside["state"] >= 0) | (inside["region"] < 0)).all()
    assert (near["distance"][near["status"] == 0] >= 0).all()
    batch.simplify(shapes, tolerance=0.1)
    batch.hull(shapes)
