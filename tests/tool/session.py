"""What the tests of the tool share: the tool, a folder with files, and running one in the other."""
import os
import subprocess
import sys
import tempfile
import unittest

TOOL = os.path.abspath(sys.argv.pop(1)) if len(sys.argv) > 1 else "gxshape"
SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

FILES = {
    "parts.wkt": "POLYGON ((0 0, 40 0, 40 30, 0 30, 0 0), (25 10, 35 10, 35 20, 25 20, 25 10))\n"
                 "POLYGON ((50 0, 54 0, 50 3, 50 0))\n",
    "bow.wkt": "POLYGON ((0 0, 0 3, 6 0, 6 6, 0 0))\n",
    "bars.wkt": "POLYGON ((0 1, 3 1, 3 2, 0 2))\nPOLYGON ((1 0, 2 0, 2 3, 1 3))\n",
}


class Session(unittest.TestCase):
    """A folder with a few files, and ways to run the tool in it."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        for name, text in FILES.items():
            with open(os.path.join(cls.folder.name, name), "w", encoding="utf-8") as file:
                file.write(text)
        # The sessions of the README are held in the repository's folder.
        os.symlink(os.path.join(SOURCE, "examples"), os.path.join(cls.folder.name, "examples"))

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def run_tool(self, *arguments, text=""):
        given = text if isinstance(text, bytes) else text.encode()
        done = subprocess.run([TOOL, *arguments], input=given, cwd=self.folder.name, capture_output=True, timeout=120,
                              check=False)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def expect(self, arguments, wanted, status=0, text=""):
        code, out, said = self.run_tool(*arguments, text=text)
        self.assertEqual(out, wanted)
        self.assertEqual(code, status, said)
        return said


# A build without Cairo has no pictures.
HAS_CAIRO = subprocess.run([TOOL, "draw"], stdin=subprocess.DEVNULL, capture_output=True, check=False).returncode == 0
