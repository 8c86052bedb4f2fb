"""Repair, boolean operations, offsets, relations and checks against known values and shapely."""
import numpy as np
import pytest
from hypothesis import given

import gxshape as gx
from gxshape import overlay
from shapes import BOW, HOLE, PLATE, SQUARE, finite, plate, polygon, rings

BARS = ([[0, 1], [3, 1], [3, 2], [0, 2]], [[1, 0], [2, 0], [2, 3], [1, 3]])


def test_repair_by_rule():
    assert overlay.repair(BOW).to_wkt() == "MULTIPOLYGON (((0 0, 2 2, 0 3, 0 0)), ((2 2, 6 0, 6 6, 2 2)))"
    twice = [*SQUARE, *SQUARE]
    assert overlay.repair(twice).area == 0 and overlay.repair(twice, rule="non-zero").area == 16
    backwards = SQUARE[::-1]
    assert overlay.repair(backwards, rule="positive").area == 0 and overlay.repair(backwards, rule="outer").area == 16
    made, report = overlay.repair_with_report(gx.Region(BOW))
    assert (report.area_after, report.regions, report.holes) == (15, 2, 0) and made.area == 15
    with pytest.raises(gx.ArgumentError, match="rule"):
        overlay.repair(SQUARE, rule="odd")
    with pytest.raises(gx.BadParamsError):
        overlay.repair([[0, 0], [1, float("inf")], [2, 2]])


def test_boolean_operations():
    a, b = BARS
    assert overlay.union(a, b).to_wkt().count(",") == 12 and overlay.union(a, b).area == 5
    assert overlay.intersection(a, b).area == 1 and overlay.difference(a, b).area == 2
    assert overlay.symmetric_difference(a, b).area == 4
    assert overlay.difference(b, gx.Region(a)).area == 2
    assert overlay.union_all([SQUARE, np.array(SQUARE) + 2, np.array(SQUARE) + 20]).area == 44
    assert len(overlay.union_all([])) == 0
    assert overlay.intersection(plate(), [[20, 5], [40, 5], [40, 25], [20, 25]]).area == 300
    assert overlay.clip(plate(), box=(30, 0, 50, 50)).area == 300 - 50
    assert overlay.clip(plate(), box=(1, 1, 0, 0)).area == 0
    with pytest.raises(gx.ArgumentError, match="box"):
        overlay.clip(plate(), box=(1, 2, 3))
    with pytest.raises(gx.ArgumentError, match="open contour"):
        overlay.union(gx.Contour(SQUARE, closed=False), SQUARE)


def test_offsets_grow_and_shrink():
    assert overlay.offset(SQUARE, 1, join="mitre").area == 36
    assert overlay.offset(SQUARE, -1).area == 4 and len(overlay.offset(SQUARE, -3)) == 0
    assert 32 < overlay.offset(SQUARE, 1, join="bevel").area < overlay.offset(SQUARE, 1).area < 32 + np.pi + 4
    line = gx.Contour([[0, 0], [10, 0]], closed=False)
    assert overlay.offset(line, 1, ends="flat").area == 20 and overlay.offset(line, 1, ends="square").area == 24
    with pytest.raises(gx.BadParamsError):
        overlay.offset(SQUARE, float("nan"))


def test_holes_as_tracers_give_them():
    touching = [[0, 1], [2, 1], [2, 2], [0, 2]]
    assert overlay.regions_of(SQUARE, [touching]).area == 14
    assert overlay.regions_of(SQUARE, [touching, [[1, 1], [3, 1], [3, 2], [1, 2]]]).area == 13
    assert overlay.regions_of(SQUARE).area == 16


def test_relations_are_exact():
    inner = [[1, 1], [2, 1], [2, 2], [1, 2]]
    r = overlay.relate(SQUARE, inner)
    assert (r.contains, r.covers, r.touches, r.equal, r.intersects, r.overlaps) == (True, True, False, False, True, False)
    beside = np.array(SQUARE) + [4, 0]
    assert overlay.touches(SQUARE, beside) and not overlay.touches(SQUARE, inner)
    assert overlay.intersects(SQUARE, beside) and not overlay.intersects(SQUARE, beside + [1e-15 * 8, 0])
    assert overlay.equal(SQUARE, SQUARE[::-1]) and not overlay.equal(SQUARE, inner)
    assert overlay.covers(SQUARE, []) and not overlay.contains(SQUARE, [])
    assert not overlay.contains(plate(), HOLE) and overlay.contains(plate(), inner)
    o = overlay.overlap(SQUARE, np.array(SQUARE) + [2, 0])
    assert (o.first, o.second, o.both, o.either) == (16, 16, 8, 24) and o.ratio == overlay.overlap_ratio(
        SQUARE, np.array(SQUARE) + [2, 0]) == 8 / 24


def test_problems_have_kind_place_and_words():
    (problem,) = gx.Region(BOW).check()
    assert (problem.kind, problem.point, problem.edges, problem.rings) == ("crossing", (2, 2), (0, 2), (-1, -1))
    assert problem.sentence == "edges 0 and 2 of the outline cross at (2, 2)"
    assert plate().check() == [] and gx.RegionSet([SQUARE]).check() == []
    star = polygon(9)[np.arange(9) * 4 % 9]
    assert len(overlay.check(star, max=3)) == 3 < len(overlay.check(star))
    kinds = {p.kind for p in gx.RegionSet([SQUARE, np.array(SQUARE) + 1]).check()}
    assert "crossing" in kinds
    assert any(p.kind == "wrong_way_round" for p in overlay.check(SQUARE[::-1], any_direction=False))
    with pytest.raises(gx.ArgumentError):
        overlay.check(SQUARE, max=-1)


@given(rings(finite, 3, 10), rings(finite, 3, 10))
def test_boolean_areas_agree_with_each_other(a, b):
    whole = overlay.union(a, b).area
    both = overlay.intersection(a, b).area
    only_a, only_b = overlay.difference(a, b).area, overlay.difference(b, a).area
    scale = max(1.0, whole, float(np.ptp(np.concatenate([a, b]), axis=0).max()) ** 2)
    assert whole == pytest.approx(both + only_a + only_b, abs=1e-9 * scale)
    assert overlay.symmetric_difference(a, b).area == pytest.approx(only_a + only_b, abs=1e-9 * scale)
    for region in overlay.union(a, b):
        assert region.check(max=1) == []


def test_intersections_agree_with_shapely():
    geometry = pytest.importorskip("shapely.geometry")
    rng = np.random.default_rng(3)
    for _ in range(40):
        a = polygon(9, 1.0) * rng.uniform(0.5, 2, (9, 1))
        b = polygon(7, 1.0, tuple(rng.uniform(-1, 1, 2))) * rng.uniform(0.5, 2, (7, 1))
        theirs = geometry.Polygon(a).intersection(geometry.Polygon(b)).area if geometry.Polygon(b).is_valid else None
        if theirs is not None:
            assert overlay.intersection(a, b).area == pytest.approx(theirs, abs=1e-12)
