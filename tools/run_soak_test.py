#!/usr/bin/env python3
"""Tests of run_soak: every test is run once and judged, nothing that ended badly is lost, and a soak can go on."""
import os
import pathlib
import shutil
import stat
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(__file__).resolve().parent / "run_soak"

# Stands for a GoogleTest program: its tests are named by how they end.
PROGRAM = """#!/usr/bin/env python3
import os, signal, sys
if "--gtest_list_tests" in sys.argv:
    print("Running main() from somewhere")
    print("Ends.\\n  Well\\n  Badly\\n  WithACrash\\n  Skipped\\n  WithNothingRun\\n  DISABLED_Never")
    sys.exit()
name = sys.argv[1].split("=")[1]
open("ran.txt", "a").write(name + "\\n")
mended = os.path.exists("mended")
if name == "Ends.Well" or (name == "Ends.Badly" and mended):
    print("[  PASSED  ] 1 test.")
elif name == "Ends.Badly":
    print("seed 42"), sys.exit(1)
elif name == "Ends.WithACrash":
    os.kill(os.getpid(), signal.SIGSEGV)
elif name == "Ends.Skipped":
    print("[  SKIPPED ] 1 test: needs a machine\\n[  PASSED  ] 0 tests.")
else:
    print("[  PASSED  ] 0 tests.")
"""


class SoakTest(unittest.TestCase):
    def setUp(self):
        self.build = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.build)
        (self.build / "bin").mkdir()
        program = self.build / "bin" / "gxshape_room_tests"
        program.write_text(PROGRAM, encoding="utf-8")
        program.chmod(program.stat().st_mode | stat.S_IXUSR)

    def soak(self, *arguments):
        environment = {key: value for key, value in os.environ.items() if key != "GXSHAPE_SOAK"}
        done = subprocess.run([sys.executable, TOOL, self.build, *arguments], capture_output=True, text=True,
                              env=environment, check=False)
        return done.returncode, done.stdout

    def ran(self):
        return sorted((self.build / "ran.txt").read_text(encoding="utf-8").split())

    def test_every_test_runs_once_and_is_judged(self):
        status, out = self.soak("--only", "^room ")
        self.assertEqual(self.ran(), ["Ends.Badly", "Ends.Skipped", "Ends.Well", "Ends.WithACrash", "Ends.WithNothingRun"])
        self.assertEqual(out.splitlines()[-2:], ["1 skipped", "1 passed, 3 failed"])
        self.assertEqual(status, 1)
        self.assertIn("seed 42", out)

    def test_the_output_of_what_failed_stays_and_that_of_what_passed_goes(self):
        self.soak("--only", "^room ")
        logs = sorted(path.name for path in (self.build / "soak").glob("*.log"))
        self.assertEqual(logs, ["room.Ends.Badly.log", "room.Ends.Skipped.log", "room.Ends.WithACrash.log",
                                "room.Ends.WithNothingRun.log"])

    def test_a_soak_goes_on_with_what_has_not_passed(self):
        self.soak("--only", "^room ")
        (self.build / "ran.txt").unlink()
        (self.build / "mended").touch()
        status, out = self.soak("--resume", "--only", "^room ")
        self.assertEqual(self.ran(), ["Ends.Badly", "Ends.WithACrash", "Ends.WithNothingRun"])
        self.assertEqual(out.splitlines()[-1], "2 passed, 2 failed")
        self.assertEqual(status, 1)

    def test_nothing_run_is_no_success(self):
        status, out = self.soak("--only", "^elsewhere ")
        self.assertEqual(out.splitlines()[-1], "0 passed, 0 failed")
        self.assertEqual(status, 1)

    def test_good_tests_alone_are_a_success(self):
        status, out = self.soak("--only", "Well$")
        self.assertEqual(out.splitlines()[-1], "1 passed, 0 failed")
        self.assertEqual(status, 0)


if __name__ == "__main__":
    unittest.main()
