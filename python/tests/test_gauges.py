"""Gauges on objects and arrays: known values, every answer's type, degenerate shapes."""
import math

import numpy as np
import pytest

import gxshape as gx
from gxshape import gauge
from shapes import BOW, PLATE, SQUARE, plate, polygon

NOTCH = [[0, 0], [4, 0], [4, 4], [2, 1], [0, 4]]


def test_descriptors_of_a_rectangle():
    d = gauge.describe([[0, 0], [4, 0], [4, 3], [0, 3]])
    assert d.status is gx.Status.OK and (d.area, d.perimeter, d.length) == (12, 14, 14)
    assert (d.extent, d.solidity, d.euler_number, d.box) == (1, 1, 1, (0, 0, 4, 3))
    assert d.aspect_ratio == pytest.approx(4 / 3) and d.elongation == pytest.approx(0.25) and d.orientation == 0
    assert (d.feret_max, d.feret_min, d.feret_across) == (5, 3, pytest.approx(4.8))
    assert d.circularity == pytest.approx(4 * math.pi * 12 / 14**2)
    assert d == gauge.describe(gx.Region([[0, 0], [4, 0], [4, 3], [0, 3]])) and d != gauge.describe(SQUARE)
    assert d.as_dict()["area"] == 12


def test_answers_are_compared_by_number_nan_and_arrays_too():
    from gxshape._answers import Answer
    kinds = [kind for kind in vars(gauge).values() if isinstance(kind, type) and issubclass(kind, Answer)]
    assert len(kinds) > 10 and {kind.__eq__ for kind in kinds} == {Answer.__eq__}
    for kind in [*kinds, gx.Place, gx.Problem]:
        assert kind.__dataclass_params__.frozen, kind
    nothing = gauge.flat_angle([], [])
    assert math.isnan(nothing.flat_angle) and nothing == gauge.flat_angle([], []) != gauge.flat_angle(SQUARE, SQUARE)


def test_moments_take_holes_away():
    m = gauge.moments(plate())
    assert m.area == 1100 and len(m.hu) == 7
    assert m.moment_20 == pytest.approx(40**3 * 30 / 12 + 1200 * (20 - m.centre[0])**2 -
                                        (10**4 / 12 + 100 * (30 - m.centre[0])**2))
    assert m.moment_02 == pytest.approx(30**3 * 40 / 12 - 10**4 / 12)
    assert m.ellipse_a >= m.ellipse_b > 0


def test_circles_and_rectangles():
    c = gauge.enclosing_circle(SQUARE)
    assert c.radius == pytest.approx(math.sqrt(8)) and c.centre.tolist() == [2, 2] and c.supports.tolist() == [0, 2]
    inner = gauge.inscribed_circle(plate())
    # Between the left side and the left side of the hole.
    assert inner.radius == pytest.approx(12.5, abs=1e-6) and inner.centre[0] == pytest.approx(12.5, abs=1e-6)
    assert inner.touch is not None and inner.gap <= 1e-6
    r = gauge.least_area_rectangle(gx.Region(SQUARE).moved(transform=gx.Transform.rotation(0.3)))
    assert (r.length, r.width) == (pytest.approx(4), pytest.approx(4)) and r.angle == pytest.approx(0.3)
    assert r.corners.shape == (4, 2)
    w = gauge.least_width_rectangle([[0, 0], [10, 0], [10, 1]])
    assert w.width <= gauge.least_area_rectangle([[0, 0], [10, 0], [10, 1]]).width + 1e-12
    wall = gauge.smallest_wall(plate())
    assert wall.wall == 5 and {wall.wall_from.ring, wall.wall_to.ring} == {-1, 0}
    assert gauge.smallest_wall([[0, 0], [1, 0], [0, 1]]).status is gx.Status.NONE


def test_defects_and_hull():
    d = gauge.convexity_defects(NOTCH)
    assert len(d.defects) == 1 and d.defects[0] == gauge.Defect(start=2, end=4, deepest=3, depth=3.0, area=6.0)
    assert gauge.convex_hull(NOTCH).area == 16 and plate().hull().area == 1200
    with pytest.raises(TypeError):
        gauge.convexity_defects(gx.RegionSet([SQUARE]))


def test_feret_of_a_square():
    f = gauge.feret(SQUARE)
    assert f.feret_max == pytest.approx(math.sqrt(32)) and f.feret_min == 4 and f.feret_max_points == (0, 2)
    assert f.feret_max_angle == pytest.approx(math.pi / 4)


def test_distances_of_two_shapes():
    far = np.array(SQUARE) + [7, 0]
    d = gauge.distance(SQUARE, far)
    assert d.distance == 3 and d.from_place.x == 4 and d.to_place.x == 7
    assert gauge.distance(plate(), [[26, 11], [27, 11], [27, 12]]).distance == 1
    h = gauge.hausdorff(NOTCH, SQUARE)
    # On a side of the notch, as far from the right as from below; from the middle of the square's top.
    assert h.hausdorff == max(h.hausdorff_forward, h.hausdorff_back)
    assert h.hausdorff_forward == pytest.approx(1.6)
    assert h.hausdorff_back == pytest.approx(6 / math.sqrt(13))
    assert gauge.hausdorff(SQUARE, NOTCH).hausdorff_forward == h.hausdorff_back
    assert gauge.hausdorff(SQUARE, np.array(SQUARE) + [0.5, 0]).hausdorff == 0.5
    f = gauge.frechet(gx.Contour([[0, 0], [4, 0]], closed=False), gx.Contour([[0, 1], [4, 1]], closed=False))
    assert f.frechet == pytest.approx(1, abs=1e-9)
    with pytest.raises(TypeError):
        gauge.frechet(gx.RegionSet(), SQUARE)


def test_deviation_has_sign_and_stretches():
    grown = [[-0.5, 0], [4, 0], [4, 4], [-0.5, 4]]
    d = gauge.deviation(grown, SQUARE, lower=-0.1, upper=0.1, step=0.25)
    assert d.deviation_max == pytest.approx(0.5) and d.deviation_min == 0 and 0 < d.out_of_tolerance < 0.5
    assert len(d.stretches) == 1 and d.stretches[0].deviation == pytest.approx(0.5)
    assert d.sample_points.shape == (len(d.sample_deviations), 2) and len(d.sample_deviations) > 16
    assert gauge.deviation(SQUARE, grown).deviation_min == pytest.approx(-0.5)
    assert gauge.deviation(SQUARE, SQUARE, lower=1, upper=0).status is gx.Status.BAD_ARGUMENT


def test_alignment_finds_the_motion():
    shape = np.array([[0, 0], [10, 0], [10, 3], [4, 3], [4, 7], [0, 7]], float)
    motion = gx.Transform.shift([3, -2]) @ gx.Transform.rotation(0.4)
    a = gauge.align(shape, motion.apply(shape))
    assert a.status is gx.Status.OK and a.angle == pytest.approx(0.4, abs=1e-6) and a.residual < 1e-6
    assert np.allclose(a.transform.apply(shape), motion.apply(shape), atol=1e-5)
    s = gauge.align(shape, 2 * shape, scales=True)
    assert s.scale == pytest.approx(2, abs=1e-6) and s.converged and isinstance(s.free, tuple)
    p = gauge.profile(SQUARE, [[0, 0], [4, 0], [4, 4.5], [0, 4.5]])
    assert p.profile == pytest.approx(1.0) and p.worst is not None


def test_form_errors_by_reference():
    cross = [[10, 0], [-10, 0], [0, 9], [0, -9]]
    assert gauge.roundness(cross).roundness == 1
    assert gauge.roundness(cross, reference="circumscribed").outer_radius == 10
    assert gauge.roundness(cross, reference="least_squares").radius == pytest.approx(9.5, abs=0.05)
    assert gauge.roundness([]).status is gx.Status.EMPTY
    line = [[0, 0], [1, 1], [2, 0], [3, 0]]
    assert gauge.straightness([[0, 0], [1, 1], [2, 0]]).straightness == 1
    assert gauge.straightness(line, reference="inscribed").status is gx.Status.BAD_ARGUMENT
    across = gauge.flat_angle([[0, 0], [4, 0]], [[0, 0], [3, 3]])
    assert across.flat_angle == pytest.approx(math.pi / 4)
    assert gauge.parallelism([[0, 1], [4, 1.5]], [[0, 0], [4, 0]]).parallelism == 0.5
    with pytest.raises(gx.ArgumentError, match="reference: want 'least-squares', .* or 'inscribed', got 'best'"):
        gauge.roundness(cross, reference="best")


def test_fits_leave_strays_out():
    circle = np.concatenate([polygon(40, 5, (1, 2)), [[30, 30], [-20, 7], [8, 8]]])
    fit = gauge.fit_circle(circle)
    assert fit.radius == pytest.approx(5, abs=1e-9) and fit.centre == pytest.approx([1, 2]) and len(fit.inliers) == 40
    assert gauge.fit_circle(circle, weights="least-squares").radius > 6
    ellipse = polygon(40) * [7, 3]
    e = gauge.fit_ellipse(ellipse)
    assert (e.ellipse_a, e.ellipse_b) == (pytest.approx(7), pytest.approx(3)) and e.ellipse_angle == pytest.approx(0, abs=1e-9)
    line = gauge.fit_line([[0, 0], [1, 1], [2, 2], [3, 3], [4, 4], [1, 9]])
    assert line.angle == pytest.approx(math.pi / 4) and line.inliers.tolist() == [0, 1, 2, 3, 4]
    assert gauge.fit_circle([[0, 0], [1, 1]]).status is gx.Status.UNDETERMINED


def test_curves_made_of_curves():
    status, kept = gauge.simplify([[0, 0], [1, 0.01], [2, 0], [2, 2], [0, 2]], tolerance=0.1)
    assert status is gx.Status.OK and kept.tolist() == [0, 2, 3, 4]
    line = gx.Contour([[0, 0], [1, 0.2], [2, 0]], closed=False)
    assert gauge.simplify(line, tolerance=0.5)[1].tolist() == [0, 2]
    assert gauge.simplify(SQUARE, tolerance=-1)[0] is gx.Status.BAD_ARGUMENT
    assert len(gauge.resample(SQUARE, step=1)[1]) == 16
    assert len(gauge.resample(gx.Contour(SQUARE, closed=False), step=1)[1]) == 13
    assert gauge.smooth(polygon(64), sigma=0.3)[1].shape == (64, 2)
    assert np.hypot(*gauge.smooth(polygon(64), sigma=0.3)[1].T).max() < 1
    u = gauge.uncertainty(polygon(100, 10), sigma=0.1)
    assert 0 < u.area < 10 and 0 < u.centre[0] < 0.1


@pytest.mark.parametrize("ask", [gauge.describe, gauge.moments, gauge.feret, gauge.enclosing_circle,
                                 gauge.inscribed_circle, gauge.least_area_rectangle, gauge.least_width_rectangle,
                                 gauge.smallest_wall, gauge.convexity_defects, gauge.roundness, gauge.straightness,
                                 gauge.fit_line, gauge.fit_circle, gauge.fit_ellipse])
def test_every_gauge_answers_empty_and_not_finite_shapes(ask):
    assert ask(np.empty((0, 2))).status is gx.Status.EMPTY
    assert ask([[0, 0], [1, math.nan], [1, 1], [3, 4], [7, 1], [8, 8]]).status is gx.Status.NOT_FINITE
