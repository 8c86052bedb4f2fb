#!/usr/bin/env python3
"""What GEOS (through shapely and geosop) and numpy write, we read, and the other way round.

    tests/tool/interop_test.py build/release/bin/gxshape

A thousand shapes each way, ten thousand with GXSHAPE_SOAK=1.  Where shapely is not installed, this is skipped.
"""
import io
import json
import os
import random
import shutil
import struct
import subprocess
import unittest

from session import TOOL, Session

try:
    import numpy
    import shapely.geometry as geometry
    from shapely import wkb, wkt
except ImportError:
    numpy = None

COUNT = 10000 if os.environ.get("GXSHAPE_SOAK") == "1" else 1000
SEED = 11


def number(numbers):
    """Of every size that a double has digits for."""
    kind = numbers.randrange(6)
    if kind == 0:
        return float(numbers.randrange(-1000, 1000))
    if kind == 1:
        return numbers.uniform(-1, 1) * 10.0 ** numbers.randrange(-300, 300)
    return numbers.uniform(-1000, 1000)


def ring(numbers):
    """At least three different points, the first not repeated."""
    points = [[number(numbers), number(numbers)] for _ in range(numbers.randrange(3, 12))]
    while points[-1] == points[0]:
        points[-1] = [number(numbers), number(numbers)]
    return points


def shapes(count):
    """Records as our JSON lines have them."""
    numbers = random.Random(SEED)
    records = []
    for i in range(count):
        kind = numbers.randrange(4)
        if kind == 0:
            record = {"id": i, "type": "points", "points": [[number(numbers), number(numbers)]]}
        elif kind == 1:
            record = {"id": i, "type": "open", "points": ring(numbers)}
        elif kind == 2:
            record = {"id": i, "type": "region", "rings": [ring(numbers) for _ in range(numbers.randrange(1, 4))]}
        else:
            record = {"id": i, "type": "set",
                      "parts": [[ring(numbers) for _ in range(numbers.randrange(1, 3))] for _ in range(numbers.randrange(2, 4))]}
        records.append(record)
    return records


def flat(value):
    """All numbers of a record but its id."""
    if isinstance(value, dict):
        return [x for k, v in value.items() if k != "id" for x in flat(v)]
    if isinstance(value, list):
        return [x for v in value for x in flat(v)]
    return [] if isinstance(value, str) else [value]


def theirs(record):
    """The record as an object of shapely."""
    if record["type"] == "points":
        return geometry.Point(record["points"][0])
    if record["type"] == "open":
        return geometry.LineString(record["points"])
    if record["type"] == "region":
        return geometry.Polygon(record["rings"][0], record["rings"][1:])
    return geometry.MultiPolygon([(part[0], part[1:]) for part in record["parts"]])


def open_ring(coordinates):
    """A closed ring of theirs without the repeat."""
    return [list(p) for p in coordinates][:-1]


def ours(shape, i):
    """An object of shapely as our record."""
    if shape.geom_type == "Point":
        return {"id": i, "type": "points", "points": [list(shape.coords[0])]}
    if shape.geom_type == "MultiPoint":
        return {"id": i, "type": "points", "points": [list(p.coords[0]) for p in shape.geoms]}
    if shape.geom_type == "LineString":
        return {"id": i, "type": "open", "points": [list(p) for p in shape.coords]}
    polygon = lambda p: [open_ring(p.exterior.coords)] + [open_ring(h.coords) for h in p.interiors]
    if shape.geom_type == "Polygon":
        return {"id": i, "type": "region", "rings": polygon(shape)}
    return {"id": i, "type": "set", "parts": [polygon(p) for p in shape.geoms]}


def bits(value):
    """A record with its numbers as bits, so that -0 is not 0."""
    if isinstance(value, dict):
        return {k: value[k] if k == "id" else bits(value[k]) for k in value}
    if isinstance(value, list):
        return [bits(v) for v in value]
    return struct.pack("<d", value) if isinstance(value, (int, float)) else value


@unittest.skipIf(numpy is None, "shapely is not installed (Debian: python3-shapely)")
class InteropTest(Session):
    def setUp(self):
        self.records = shapes(COUNT)
        self.text = "".join(json.dumps(r) + "\n" for r in self.records)

    def told(self, arguments, text):
        code, out, said = self.run_tool(*arguments, text=text)
        self.assertEqual((code, said), (0, ""))
        return out

    def same(self, found, wanted):
        self.assertEqual(len(found), len(wanted))
        for a, b in zip(found, wanted):
            self.assertEqual(bits(a), bits(b), f"seed {SEED}")

    def from_ours(self, text):
        # What comes without ids is counted from 1.
        return [{**json.loads(line), "id": i} for i, line in enumerate(text.splitlines())]

    def test_they_read_the_text_that_we_write(self):
        lines = self.told(["convert", "-o", "wkt"], self.text).splitlines()
        self.same([ours(wkt.loads(line), i) for i, line in enumerate(lines)], self.records)

    def test_they_read_the_bytes_that_we_write(self):
        lines = self.told(["convert", "-o", "wkb"], self.text).splitlines()
        self.same([ours(wkb.loads(line, hex=True), i) for i, line in enumerate(lines)], self.records)

    def test_they_read_the_json_that_we_write(self):
        features = json.loads(self.told(["convert", "-o", "geojson"], self.text))["features"]
        self.assertEqual([f["id"] for f in features], [r["id"] for r in self.records])
        self.same([ours(geometry.shape(f["geometry"]), i) for i, f in enumerate(features)], self.records)

    def test_we_read_the_text_that_they_write(self):
        # Their text has 16 digits: both sides read the same text.  (Of 1e300 their writer overruns a buffer, and
        # ends the process: such shapes stay out.)
        moderate = [r for r in self.records if all(abs(x) < 1e12 and (x == 0 or abs(x) > 1e-12) for x in flat(r))]
        self.assertGreater(len(moderate), COUNT // 20)
        lines = [theirs(r).wkt for r in moderate]
        found = self.from_ours(self.told(["convert", "-o", "jsonl"], "".join(line + "\n" for line in lines)))
        self.same(found, [ours(wkt.loads(line), i) for i, line in enumerate(lines)])

    def test_we_read_the_bytes_that_they_write(self):
        for options in [{"hex": True}, {"hex": True, "big_endian": True}, {"hex": True, "srid": 4326}]:
            lines = [wkb.dumps(theirs(r), **options) for r in self.records]
            found = self.from_ours(self.told(["convert", "-o", "jsonl"], "".join(line + "\n" for line in lines)))
            self.same(found, self.records)

    def test_we_read_the_json_that_they_write(self):
        features = [{"type": "Feature", "id": r["id"], "geometry": geometry.mapping(theirs(r))} for r in self.records]
        found = self.told(["convert", "-o", "jsonl"], json.dumps({"type": "FeatureCollection", "features": features}))
        self.same([json.loads(line) for line in found.splitlines()], self.records)

    def test_numpy_reads_the_arrays_that_we_write(self):
        done = subprocess.run([TOOL, "convert", "-o", "npz"], input=self.text.encode(), capture_output=True, check=True)
        arrays = numpy.load(io.BytesIO(done.stdout))
        coords, rings, parts, whole = (arrays[n] for n in ["coords", "ring_offsets", "part_offsets", "shape_offsets"])
        self.assertEqual([int(i) for i in arrays["id"]], [r["id"] for r in self.records])
        for i, record in enumerate(self.records):
            found = [[coords[rings[r]:rings[r + 1]].tolist() for r in range(parts[p], parts[p + 1])]
                     for p in range(whole[i], whole[i + 1])]
            wanted = record.get("parts") or [record.get("rings") or [record["points"]]]
            self.assertEqual(bits(found), bits(wanted), f"seed {SEED}")

    def test_we_read_the_arrays_that_numpy_writes(self):
        regions = [r for r in self.records if r["type"] == "region"]
        rings = [ring for r in regions for ring in r["rings"]]
        file = io.BytesIO()
        numpy.savez(file, coords=numpy.array([p for ring in rings for p in ring]),
                    ring_offsets=numpy.cumsum([0] + [len(ring) for ring in rings]),
                    shape_offsets=numpy.cumsum([0] + [len(r["rings"]) for r in regions]))
        found = self.told(["convert", "-o", "jsonl"], file.getvalue())
        self.same(self.from_ours(found), [{**r, "id": i} for i, r in enumerate(regions)])

    @unittest.skipUnless(shutil.which("geosop"), "geosop is not installed (Debian: geos-bin)")
    def test_areas_and_lengths_are_those_of_geosop(self):
        numbers = random.Random(SEED)
        lines = []
        for _ in range(COUNT):
            x, y, s = numbers.uniform(-100, 100), numbers.uniform(-100, 100), numbers.uniform(1, 20)
            lines.append(f"POLYGON (({x} {y}, {x + 4 * s} {y}, {x + 3 * s} {y + 3 * s}, {x} {y}), "
                         f"({x + 2 * s} {y + s / 2}, {x + 3 * s} {y + s}, {x + 2 * s} {y + s}, {x + 2 * s} {y + s / 2}))")
        path = os.path.join(self.folder.name, "areas.wkt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")
        answers = [json.loads(line) for line in self.told(["measure", "-o", "jsonl", path], "").splitlines()]
        for name, operation in [("area", "area"), ("length", "length")]:
            done = subprocess.run(["geosop", "-a", path, "-f", "txt", operation], capture_output=True, check=True)
            found = [float(line) for line in done.stdout.split()]
            self.assertEqual(len(found), COUNT)
            for a, answer in zip(found, answers):
                # geosop prints six digits.
                self.assertAlmostEqual(a / answer[name], 1, 4)


if __name__ == "__main__":
    unittest.main()
