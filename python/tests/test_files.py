"""Reading and writing every format, and what others have: OpenCV, shapely, scikit-image, masks, pictures."""
import json
import os

import numpy as np
import pytest
from hypothesis import given
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp

import gxshape as gx
from gxshape import interop
from shapes import BOW, HOLE, PLATE, SQUARE, plate, ragged, random_shapes


def some() -> gx.Shapes:
    return gx.Shapes.from_objects([plate(), gx.RegionSet([plate(), np.array(SQUARE) + 50.1]),
                                   gx.Contour([[0, 0], [1 / 3, 1e-7]], closed=False)], ids=[1, 2, 3])


@pytest.mark.parametrize("format", ["wkt", "wkb", "geojson", "jsonl", "ragged", "npz", "gxa"])
def test_every_format_brings_shapes_back(format, tmp_path):
    path = tmp_path / "shapes"
    gx.write(some(), path, format=format)
    back = gx.read(path)
    assert list(back) == list(some()) and len(back) == 3
    assert gx.read(str(path), format=format) == back and gx.loads(path.read_bytes()) == back
    assert os.listdir(tmp_path) == ["shapes"] and gx.dumps(some(), format=format) == path.read_bytes()


def test_points_of_csv_are_records_by_id():
    back = gx.loads("id,x,y\na,0,0\na,4,0\na,4,4\nb,1,1\nb,2,1\nb,2,2\n")
    assert back.ids == ("a", "b") and len(back) == 2
    points = gx.loads("MULTIPOINT (1 2, 3 4)")[0]
    assert not points.closed and points.points.tolist() == [[1, 2], [3, 4]]


def test_ids_are_kept_letter_by_letter():
    text = ('{"type":"Feature","properties":{"k":"007"},"geometry":{"type":"Polygon","coordinates":'
            '[[[0,0],[1,0],[1,1],[0,0]]]}}')
    assert gx.loads(text, id="k").ids == ("007",)
    shapes = gx.Shapes.from_objects([SQUARE, SQUARE], ids=[2**53, "007"])
    assert gx.loads(gx.dumps(shapes, format="geojson")).ids == (2**53, "007")


def test_errors_of_reading_name_record_and_byte(tmp_path):
    path = tmp_path / "bad.wkt"
    path.write_text("POLYGON ((0 0, 1 0, 1 1))\nPOLYGON ((0 0, 1 x))\n")
    with pytest.raises(gx.ReadError, match="number expected, found 'x'") as caught:
        gx.read(path)
    assert (caught.value.record, caught.value.code, caught.value.number) == (2, "bad_number", 1)
    assert path.read_bytes()[caught.value.byte:caught.value.byte + 1] == b"x"
    shapes = gx.read(path, errors="emit")
    assert len(shapes) == 2 and shapes.errors[0][0] == 1 and shapes[0].area == 0.5
    with pytest.raises(gx.FileError, match="none.wkt") as missing:
        gx.read(tmp_path / "none.wkt")
    assert isinstance(missing.value, OSError)
    with pytest.raises(gx.FileError):
        gx.write(shapes, tmp_path / "no" / "folder", format="wkt")
    for call in (lambda: gx.loads("x", format="dxf"), lambda: gx.dumps(shapes, format=""),
                 lambda: gx.loads("x", errors="skip")):
        with pytest.raises(gx.ArgumentError):
            call()
    with pytest.raises(gx.ReadError):
        gx.loads(b"\x1f\x8b\x08\x00 packed")


def test_a_failed_write_leaves_the_old_file(tmp_path, monkeypatch):
    path = tmp_path / "shapes.wkt"
    gx.write([SQUARE], path, format="wkt")
    old = path.read_bytes()
    monkeypatch.setattr(os, "replace", lambda *_: (_ for _ in ()).throw(OSError(28, "No space left on device")))
    with pytest.raises(gx.FileError, match="No space"):
        gx.write([BOW], path, format="wkt")
    assert path.read_bytes() == old and os.listdir(tmp_path) == ["shapes.wkt"]


def test_text_of_single_shapes():
    assert plate().to_wkt() == "POLYGON ((0 0, 40 0, 40 30, 0 30, 0 0), (25 10, 35 10, 35 20, 25 20, 25 10))"
    assert gx.Region.from_wkt(plate().to_wkt()) == plate() == gx.Region.from_wkb(plate().to_wkb())
    assert gx.Contour.from_wkt("LINESTRING (0 0, 3 4)").length == 5
    assert gx.RegionSet.from_wkt("MULTIPOLYGON (((0 0, 1 0, 1 1)))").area == 0.5
    with pytest.raises(gx.ArgumentError, match="want a Region, got a RegionSet"):
        gx.Region.from_wkt("MULTIPOLYGON (((0 0, 1 0, 1 1)))")
    with pytest.raises(gx.ReadError):
        gx.Region.from_wkt("POLYGON ((0 0, 1")
    with pytest.raises(gx.ReadError):
        gx.Region.from_wkb(b"\x01\x03")


@given(ragged(st.floats(allow_nan=False, allow_infinity=False, width=64)))
def test_every_finite_double_survives_text(shapes):
    for format in ("wkt", "geojson", "npz"):
        back = gx.loads(gx.dumps(shapes, format=format)) if len(shapes) else shapes
        assert np.array_equal(gx.batch.measure(back)["area"], gx.batch.measure(shapes)["area"], equal_nan=True)


def test_opencv_hierarchies_become_holes_and_back():
    cv2 = pytest.importorskip("cv2")
    mask = np.zeros((60, 80), np.uint8)
    mask[5:50, 5:70] = 1
    mask[15:40, 15:60] = 0
    mask[20:30, 20:30] = 1
    mask[52:58, 2:8] = 1
    for mode in (cv2.RETR_CCOMP, cv2.RETR_TREE):
        contours, hierarchy = cv2.findContours(mask, mode, cv2.CHAIN_APPROX_NONE)
        shapes = interop.from_opencv(contours, hierarchy)
        table = gx.describe(shapes, only=["holes", "filled_area", "area"])
        assert sorted(table["holes"].tolist()) == [0, 0, 1] and len(shapes) == 3
        outer = int(np.argmax(table["filled_area"]))
        assert table["filled_area"][outer] == 44 * 64
        assert table["area"][outer] == 44 * 64 - abs(cv2.contourArea(contours[[k for k in range(len(contours))
                                                   if hierarchy[0][k][3] >= 0][0]]))
    back, links = interop.to_opencv(shapes, dtype=np.int32)
    assert back[0].dtype == np.int32 and back[0].shape[1:] == (1, 2) and links.shape == (1, 4, 4)
    assert interop.from_opencv(back, links) == shapes
    assert interop.to_opencv([])[1] is None and len(interop.from_opencv([])) == 0
    assert len(interop.from_opencv(contours)) == 4
    with pytest.raises(gx.ArgumentError, match="parents go around"):
        interop.from_opencv(contours[:2], [[[0, 0, 0, 1], [0, 0, 0, 0]]])
    with pytest.raises(gx.ArgumentError, match="hierarchy: want"):
        interop.from_opencv(contours, [[0, 0, 0, -1]])


def test_shapely_geometries_both_ways():
    geometry = pytest.importorskip("shapely.geometry")
    polygon = geometry.Polygon(PLATE, [HOLE])
    multi = geometry.MultiPolygon([polygon, geometry.Polygon(np.array(SQUARE) + 50)])
    line = geometry.LineString([(0, 0), (3, 4)])
    shapes = interop.from_shapely([polygon, multi, line])
    assert shapes[0] == plate() and shapes[1].area == 1116 and shapes[2].length == 5
    back = interop.to_shapely(shapes)
    assert back[0].equals(polygon) and back[1].equals(multi) and back[2].equals(line)
    assert interop.from_shapely(polygon)[0] == plate() and geometry.shape(plate()).equals(polygon)
    assert interop.from_geo({"type": "Feature", "geometry": polygon.__geo_interface__}) == plate()
    assert isinstance(interop.from_geo(geometry.MultiPolygon([polygon])), gx.RegionSet)
    with pytest.raises(gx.ArgumentError, match="Point"):
        interop.from_geo(geometry.Point(1, 2))
    with pytest.raises(TypeError):
        interop.from_geo(5)


def test_hierarchies_for_opencv_link_outlines_and_holes():
    square = np.array(SQUARE, float)
    holes = [square * 0.1 + at for at in ([0.5, 0.5], [2, 0.5], [2, 2])]
    contours, links = interop.to_opencv([gx.Region(square, holes=holes), gx.Region(square + 9)])
    # next, previous, first hole, outline
    assert links.tolist() == [[[4, -1, 1, -1], [2, -1, -1, 0], [3, 1, -1, 0], [-1, 2, -1, 0], [-1, 0, -1, -1]]]
    assert [len(one) for one in contours] == [4] * 5


def test_contours_of_scikit_image_swap_rows_and_columns():
    ring = [[1, 2], [3, 2], [3, 5], [1, 2]]
    shapes = interop.from_skimage([np.array(ring), np.array(ring[:3])])
    assert shapes[0] == gx.Region([[2, 1], [2, 3], [5, 3]])
    assert shapes[1] == gx.Contour([[2, 1], [2, 3], [5, 3]], closed=False)


@given(hnp.arrays(bool, hnp.array_shapes(min_dims=2, max_dims=2, max_side=9)))
def test_masks_become_shapes_and_masks_again(mask):
    shapes = interop.from_mask(mask)
    table = gx.describe(shapes, only=["area", "holes"])
    assert table["area"].sum() == mask.sum()
    assert (interop.to_mask(shapes, mask.shape) == mask).all()
    assert len(shapes) == _pieces(mask)


def _pieces(mask):
    """Count the pieces that share edges, by flooding."""
    left, count = {tuple(p) for p in np.argwhere(mask)}, 0
    while left:
        count += 1
        waiting = [left.pop()]
        while waiting:
            r, c = waiting.pop()
            for near in ((r + 1, c), (r - 1, c), (r, c + 1), (r, c - 1)):
                if near in left:
                    left.remove(near)
                    waiting.append(near)
    return count


def test_plots_draw_every_shape_in_one_collection():
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    shapes = gx.Shapes.from_objects([plate(), SQUARE, gx.Contour([[0, 0], [9, 9]], closed=False), gx.Region()])
    ax = gx.plot(shapes, colour=[1.0, 2.0, 3.0, np.nan], scale_bar=True)
    (collection,) = ax.collections
    assert len(collection.get_paths()) == 4 and collection.get_array().tolist()[:3] == [1, 2, 3]
    assert ax.yaxis_inverted() and ax.get_aspect() == 1.0 and ax.texts[0].get_text() in {"5", "10"}
    outline, hole = (path.vertices for path in [collection.get_paths()[0]] * 2)
    assert len(outline) == 10
    assert len(gx.plot(shapes, holes=False, y_down=False).collections[0].get_paths()[0].vertices) == 5
    ax.figure.canvas.draw()
    deviated = gx.gauge.deviation(SQUARE, np.array(SQUARE) + 0.1, step=0.5)
    ax = gx.plot(gx.Region(SQUARE), deviation=deviated, ax=ax)
    assert len(ax.collections) == 3
    import matplotlib.pyplot as plt
    plt.close("all")
