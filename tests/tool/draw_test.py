#!/usr/bin/env python3
"""Pictures: what is in them, as the text of an SVG says, and that there is one for anything.

    tests/tool/draw_test.py build/release/bin/gxshape
"""
import os
import subprocess
import unittest

from session import HAS_CAIRO, SOURCE, TOOL, Session


@unittest.skipUnless(HAS_CAIRO, "the tool was built without Cairo")
class DrawTest(Session):
    def draw(self, *arguments, text=""):
        code, out, said = self.run_tool("draw", *arguments, text=text)
        self.assertEqual((code, said), (0, ""), arguments)
        return out

    def test_a_picture_of_shapes_with_holes(self):
        svg = self.draw("--size", "400", "--limit", "1", "parts.wkt")
        self.assertIn("fill-rule:evenodd", svg)
        self.assertIn("M 16 16 L 416 16 L 416 316 L 16 316 Z", svg)
        self.assertIn("M 266 116 L 366 116 L 366 216 L 266 216 Z", svg)
        up = self.draw("--size", "400", "--limit", "1", "--y", "up", "parts.wkt")
        self.assertIn("M 266 216 L 366 216 L 366 116 L 266 116 Z", up)
        shown = self.draw("--size", "400", "--limit", "1", "--view", "0,0,80,60", "parts.wkt")
        self.assertIn("M 16 16 L 216 16 L 216 166 L 16 166 Z", shown)

    def test_every_layer_draws_in_its_colour(self):
        colours = {"box": "54.901961%,58.823529%,64.705882%", "hull": "14.509804%,38.823529%,92.156863%",
                   "circle": "57.647059%,20%,91.764706%", "inscribed": "5.098039%,58.039216%,53.333333%",
                   "rectangle": "85.098039%,46.666667%,2.352941%", "ellipse": "8.627451%,63.921569%,29.019608%",
                   "axes": "86.27451%,14.901961%,14.901961%", "feret": "47.058824%,20.784314%,5.882353%"}
        plain = self.draw("--layers", "outline", "parts.wkt")
        for layer, colour in colours.items():
            self.assertNotIn(colour, plain)
            self.assertIn(colour, self.draw("--layers", layer, "parts.wkt"), layer)
        self.assertIn("78.431373%,7.843137%,11.764706%", self.draw("--layers", "problems", "bow.wkt"))
        self.assertIn("78.431373%,7.843137%,11.764706%", self.draw("--layers", "crossings", "bars.wkt"))
        self.assertIn("8.627451%,54.901961%,31.372549%", self.draw("--layers", "repair", "bow.wkt"))
        self.assertGreater(len(self.draw("--layers", "outline,ids", "parts.wkt")), len(plain))
        self.assertGreater(len(self.draw("--layers", "outline,points", "parts.wkt")), len(plain))
        self.assertGreater(len(self.draw("--layers", "outline", "--scale-bar", "mm", "parts.wkt")), len(plain))

    def test_deviation_is_a_colour(self):
        red, blue = "74.509804%,7.843137%,15.686275%", "12.941176%,31.372549%,66.666667%"
        square, larger = "POLYGON ((0 0, 8 0, 8 8, 0 8))\n", "POLYGON ((-1 -1, 9 -1, 9 9, -1 9))\n"
        with open(os.path.join(self.folder.name, "square.wkt"), "w", encoding="utf-8") as file:
            file.write(square)
        strokes = lambda text: [l for l in self.draw("--golden", "square.wkt", "--max", "1", text=text).splitlines() if "stroke-width:4" in l]
        self.assertTrue(any(red in l for l in strokes(larger)))
        self.assertFalse(any(blue in l for l in strokes(larger)))
        self.assertTrue(any(blue in l for l in strokes("POLYGON ((1 1, 7 1, 7 7, 1 7))\n")))
        self.assertFalse(any(red in l or blue in l for l in strokes(square)))

    def test_pictures_in_three_kinds_and_by_the_ending(self):
        path = os.path.join(self.folder.name, "picture")
        for kind, mark in [("png", b"\x89PNG"), ("pdf", b"%PDF"), ("svg", b"<?xml")]:
            self.draw("--to", f"{path}.{kind}", "parts.wkt")
            self.draw("-o", kind, "--to", path, "parts.wkt")
            for name in [f"{path}.{kind}", path]:
                with open(name, "rb") as file:
                    self.assertTrue(file.read().startswith(mark), (kind, name))
        behind = os.path.join(SOURCE, "examples", "data", "coins", "coins.png")
        self.assertIn("data:image/png", self.draw("--behind", behind, "parts.wkt"))

    def test_pictures_of_nothing_and_of_anything(self):
        every = ",".join(["fill", "outline", "points", "ids", "box", "hull", "circle", "inscribed", "rectangle", "ellipse", "axes", "feret",
                          "crossings", "problems", "repair"])
        for text in ["", "POLYGON EMPTY\n", "POINT (3 4)\n", "LINESTRING (0 0, 1e300 1e300)\n", "POLYGON ((nan 0, 1 inf, 2 2))\n",
                     "POLYGON ((5 5, 5 5, 5 5))\n", "LINESTRING (0 0, 1e-300 0)\n", "POLYGON ((0 0, 1e9 0, 1e9 1e-9))\n",
                     "POLYGON ((1e15 1e15, 1.000000000000001e15 1e15, 1e15 1.000000000000001e15))\nPOINT EMPTY\n"]:
            for layers in ["fill,outline", every]:
                self.assertTrue(self.draw("--layers", layers, text=text).endswith("</svg>\n"), text)

    def test_what_a_layer_cannot_do_is_told_below_the_rest(self):
        bad = "POLYGON ((nan 0, 1 0, 2 2))\n"
        with_it = self.draw("--layers", "repair", "--y", "up", text="POLYGON ((0 0, 4 0, 0 4))\n" + bad)
        self.assertIn("8.627451%,54.901961%,31.372549%", with_it)
        self.assertGreater(len(with_it), len(self.draw("--layers", "repair", "--y", "up", text="POLYGON ((0 0, 4 0, 0 4))\n")))

    def test_pictures_that_cannot_be_made(self):
        for arguments, status in [(["--layers", "outlin"], 2), (["--layers", "deviation"], 2), (["--y", "left"], 2), (["-o", "wkt"], 2),
                                  (["--view", "1,1,1,1"], 2), (["--size", "5"], 2), (["--behind", "parts.wkt"], 2), (["--lines"], 2),
                                  (["--behind", "absent.png"], 3), (["--golden", "absent.wkt"], 3), (["--rule", "odd", "--layers", "repair"], 2)]:
            code, out, said = self.run_tool("draw", *arguments, "bow.wkt")
            self.assertEqual((code, out), (status, ""), (arguments, said))
            self.assertEqual(len(said.splitlines()), 1)

    def test_the_commands_of_the_gallery_make_its_pictures(self):
        with open(os.path.join(SOURCE, "docs", "gallery.md"), encoding="utf-8") as file:
            blocks = file.read().split("```")[1::2]
        path = os.path.dirname(TOOL) + os.pathsep + os.environ["PATH"]
        pictures = 0
        for command in [line for block in blocks for line in block.strip().splitlines()]:
            here = command.replace("build/golden.wkt", os.path.join(self.folder.name, "golden.wkt"))
            here = here.replace("docs/img/gallery", self.folder.name)
            done = subprocess.run(["bash", "-o", "pipefail", "-c", here], cwd=SOURCE, env={**os.environ, "PATH": path},
                                  capture_output=True, timeout=60, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, b""), here)
            written = command.split("--to ")[1].split()[0]
            if written.endswith(".png"):
                pictures += 1
                self.assertTrue(os.path.exists(os.path.join(SOURCE, written)), written)
                self.assertGreater(os.path.getsize(os.path.join(self.folder.name, os.path.basename(written))), 5000)
        self.assertGreaterEqual(pictures, 9)


if __name__ == "__main__":
    unittest.main()
