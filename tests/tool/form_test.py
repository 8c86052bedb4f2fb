#!/usr/bin/env python3
"""form, fit, compare with alignment, and the columns that take long.

    tests/tool/form_test.py build/release/bin/gxshape
"""
import json
import math
import os
import unittest

from session import Session


class FormTest(Session):
    CROSS = "10,0\n-10,0\n0,9\n0,-9\n"

    def test_the_roundness_of_points(self):
        form = ["form", "--kind", "roundness", "-o", "jsonl", "--reference"]
        self.expect([*form, "minimum-zone", "--only", "roundness,centre"], '{"id":1,"roundness":1,"centre":[0,0]}\n', text=self.CROSS)
        only = ["--only", "roundness,outer_radius,inner_radius,radius,peak,valley,reference,supports"]
        self.expect([*form, "least-squares", *only],
                    '{"id":1,"roundness":1,"outer_radius":10,"inner_radius":9,"radius":9.5,"peak":0.5,"valley":0.5,"reference":"least-squares","supports":{"outer":[0],"inner":[2]}}\n', text=self.CROSS)
        self.expect([*form, "circumscribed", "--only", "roundness", "--max", "1"], '{"id":1,"roundness":1,"within":true}\n', text=self.CROSS)
        self.expect([*form, "circumscribed", "--only", "roundness", "--max", "0.9"], '{"id":1,"roundness":1,"within":false}\n', status=1,
                    text=self.CROSS)

    def test_straight_parallel_and_at_an_angle(self):
        line = "0,0\n4,0\n2,1\n"
        form = ["form", "-o", "jsonl", "--kind"]
        self.expect([*form, "straightness", "--only", "straightness,point,angle,supports"],
                    '{"id":1,"straightness":1,"point":[2,0.5],"angle":0,"supports":[0,1,2]}\n', text=line)
        with open(os.path.join(self.folder.name, "datum.csv"), "w", encoding="utf-8") as file:
            file.write("0,0\n0,5\n")
        self.expect([*form, "parallelism", "--datum", "datum.csv", "--only", "parallelism"], '{"id":1,"parallelism":4}\n', text=line)
        self.expect([*form, "flat-angle", "--datum", "datum.csv", "--degrees", "--reference", "minimum-zone"],
                    '{"id":1,"flat_angle_degrees":90}\n', text=line)

    def test_the_profile_of_a_shifted_square(self):
        square, moved = "POLYGON ((0 0, 8 0, 8 8, 0 8))\n", "POLYGON ((1 0, 9 0, 9 8, 1 8))\n"
        with open(os.path.join(self.folder.name, "square.wkt"), "w", encoding="utf-8") as file:
            file.write(square)
        form = ["form", "--kind", "profile", "--golden", "square.wkt", "-o", "jsonl", "--only", "profile,peak,valley,worst"]
        self.expect(form, '{"id":1,"profile":2,"peak":1,"valley":-1,"worst":{"ring":-1,"edge":1,"t":1,"point":[9,0]}}\n', text=moved)
        _, out, _ = self.run_tool(*form, "--align", "rigid", text=moved)
        self.assertLess(json.loads(out)["profile"], 1e-9)
        compare = ["compare", "--golden", "square.wkt", "-o", "jsonl", "--max", "0.5"]
        code, out, _ = self.run_tool(*compare, text=moved)
        self.assertEqual((code, json.loads(out)["hausdorff"], "alignment" in json.loads(out)), (1, 1, False))
        code, out, _ = self.run_tool(*compare, "--align", "rigid", "--all", text=moved)
        answer = json.loads(out)
        self.assertEqual((code, answer["within"], answer["alignment"]["scale"]), (0, True, 1))
        self.assertAlmostEqual(answer["alignment"]["shift"][0], -1, 9)
        self.assertLess(answer["frechet"], 1e-9)
        doubled = "POLYGON ((10 0, 26 0, 26 16, 10 16))\n"
        self.assertGreater(json.loads(self.run_tool(*compare, "--align", "rigid", text=doubled)[1])["hausdorff"], 3)
        answer = json.loads(self.run_tool(*compare, "--align", "similarity", text=doubled)[1])
        self.assertAlmostEqual(answer["alignment"]["scale"], 0.5, 9)
        self.assertLess(answer["hausdorff"], 1e-9)

    def test_lines_and_robust_fits(self):
        outlier = "0,1\n1,1\n2,1\n3,1\n4,1\n5,1\n6,1\n3,40\n"
        fit = ["fit", "--kind", "line", "-o", "jsonl"]
        answer = json.loads(self.run_tool(*fit, "--weights", "tukey", text=outlier)[1])
        self.assertEqual((answer["point"], answer["angle"], answer["inliers"]), ([3, 1], 0, 7))
        answer = json.loads(self.run_tool(*fit, text=outlier)[1])
        self.assertGreater(answer["residual"], 1)
        circle = "".join(f"{5 + 3 * math.cos(t)},{7 + 3 * math.sin(t)}\n" for t in range(12)) + "90,90\n"
        for weights, radius in [("consensus", 3), ("tukey", 3)]:
            answer = json.loads(self.run_tool("fit", "--weights", weights, "-o", "jsonl", text=circle)[1])
            self.assertAlmostEqual(answer["radius"], radius, 6)
            self.assertEqual(answer["inliers"], 12)

    def test_what_takes_long_is_given_when_it_is_asked_for(self):
        _, out, _ = self.run_tool("describe", "-o", "jsonl", "parts.wkt")
        self.assertNotIn("wall", json.loads(out.splitlines()[0]))
        only = ["--only", "inscribed_circle_radius,inscribed_circle_centre,wall"]
        self.expect(["describe", "-o", "jsonl", "--limit", "1", *only, "parts.wkt"],
                    '{"id":1,"inscribed_circle_radius":12.5,"inscribed_circle_centre":[12.5,15],"wall":5}\n')
        self.expect(["describe", "-o", "jsonl", "--only", "defects"],
                    '{"id":1,"defects":[{"start":2,"end":4,"deepest":3,"depth":2,"area":4}]}\n',
                    text="POLYGON ((0 0, 4 0, 4 4, 2 2, 0 4))\n")


if __name__ == "__main__":
    unittest.main()
