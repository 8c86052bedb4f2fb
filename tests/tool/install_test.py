#!/usr/bin/env python3
"""What `make install` puts where, and that the installed tool runs from there.

    tests/tool/install_test.py build/release/bin/gxshape
"""
import os
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.abspath(sys.argv.pop(1))
BUILD = os.path.dirname(os.path.dirname(TOOL))


class InstallTest(unittest.TestCase):
    def test_the_tool_its_page_and_its_completion_are_installed(self):
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run(["cmake", "--install", BUILD, "--prefix", "/usr/local"], env={**os.environ, "DESTDIR": folder},
                                  capture_output=True, check=False)
            self.assertEqual(done.returncode, 0, done.stderr)
            root = os.path.join(folder, "usr", "local")
            # The tool finds its libraries from its own place.
            answer = subprocess.run([os.path.join(root, "bin", "gxshape"), "measure", "--only", "area", "-o", "csv"],
                                    input=b"POLYGON ((0 0, 2 0, 2 2, 0 2))\n", capture_output=True, check=False)
            self.assertEqual((answer.returncode, answer.stdout), (0, b"id,area,status\n1,4,\n"), answer.stderr)
            with open(os.path.join(root, "share", "man", "man1", "gxshape.1"), encoding="utf-8") as page:
                self.assertIn(".SH COMMANDS", page.read())
            with open(os.path.join(root, "share", "bash-completion", "completions", "gxshape"), encoding="utf-8") as completion:
                self.assertIn("complete -o filenames -F _gxshape gxshape", completion.read())
            headers = [name for _, _, names in os.walk(os.path.join(root, "include")) for name in names]
            self.assertIn("reader.h", headers)
            self.assertNotIn("painter.h", headers)


if __name__ == "__main__":
    unittest.main()
