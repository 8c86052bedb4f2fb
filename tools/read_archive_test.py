"""Tests of read_archive.py: what it refuses, and that it never lists a damaged archive."""

import contextlib
import io
import pathlib
import random
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import read_archive  # noqa: E402

GOLDEN = pathlib.Path(__file__).parent.parent / "tests" / "golden"


def run(*arguments):
    """Returns status, output and errors of the program."""
    out, err = io.StringIO(), io.StringIO()
    before = sys.argv
    sys.argv = ["read_archive.py", *map(str, arguments)]
    try:
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = read_archive.main()
    finally:
        sys.argv = before
    return status, out.getvalue(), err.getvalue()


def mended(frame):
    body = frame[:-8]
    return body + read_archive.checksum(body).to_bytes(8, "little")


class ReadArchiveTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def run_on(self, data, *arguments):
        path = pathlib.Path(self.folder.name) / "test.gxa"
        path.write_bytes(data)
        return run(*arguments, path)

    def test_lists_several_frames_of_a_file(self):
        frame = (GOLDEN / "circle.gxa").read_bytes()
        status, out, _ = self.run_on(frame + frame)
        self.assertEqual(status, 0)
        self.assertEqual(out.count("object 1: gxCircle"), 2)

    def test_refuses_every_cut(self):
        frame = (GOLDEN / "region_set_with_a_shared_hole.gxa").read_bytes()
        for size in range(len(frame)):
            status, _, err = self.run_on(frame[:size])
            self.assertEqual(status, 1)
            self.assertIn("byte", err)

    def test_refuses_every_flipped_byte(self):
        frame = (GOLDEN / "edgelet_contour_linear.gxa").read_bytes()
        for at in range(len(frame)):
            damaged = bytearray(frame)
            damaged[at] ^= 1 << at % 8
            self.assertEqual(self.run_on(bytes(damaged))[0], 1)

    def test_ends_in_a_listing_or_a_message_whatever_the_bytes(self):
        choice = random.Random(1)
        frame = (GOLDEN / "region_with_nested_and_shared_holes.gxa").read_bytes()
        refused = 0
        for _ in range(2000):
            damaged = bytearray(frame)
            for _ in range(choice.randint(1, 4)):
                damaged[choice.randrange(20, len(frame) - 8)] = choice.choice([0, 1, 2, 3, 128, 255])
            status, _, err = self.run_on(mended(bytes(damaged)))
            refused += status
            self.assertEqual(status, 1 if err else 0)
        self.assertGreater(refused, 0)

    def test_says_which_class_it_does_not_know(self):
        status, _, err = run(GOLDEN / "shape_list_with_a_shared_transform.gxa")
        self.assertEqual(status, 1)
        self.assertIn("archive_test::ShapeList", err)
        status, out, _ = run(
            "--class", "archive_test::ShapeList=handles", GOLDEN / "shape_list_with_a_shared_transform.gxa"
        )
        self.assertEqual(status, 0)
        self.assertIn("object 3 again", out)

    def test_refuses_a_missing_file(self):
        self.assertEqual(run(pathlib.Path(self.folder.name) / "nothing.gxa")[0], 1)


if __name__ == "__main__":
    unittest.main()
