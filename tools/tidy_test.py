#!/usr/bin/env python3
"""Tests of tidy.py: batches of files, their places, and which files compile together."""
import os
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import tidy  # noqa: E402

FIRST = "namespace {\nint size = 1;\n}\nint first() { return size; }\n"
SECOND = "// one\n// two\nnamespace {\nint size = 2;\n}\nint second() { return size; }\n"
THIRD = "int third() { return 3; }\n"
BROKEN = "int broken() { return nowhere; }\n"


class TidyTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def parted(self, **files):
        paths = [self.write(name + ".cpp", text) for name, text in files.items()]
        lists, findings = tidy.compiles_together(paths, ("-std=c++20",), self.folder, compiler="c++")
        names = [[os.path.basename(p)[:-4] for p in part] for part in lists]
        return names, findings

    def test_flags_that_matter_are_kept_in_order(self):
        flags = tidy.flags_of("c++ -DA=1 -Ibase -isystem deep/include -O2 -Wall -std=c++20 -o x.o -c x.cpp")
        self.assertEqual(flags, ("-DA=1", "-Ibase", "-isystem", "deep/include", "-std=c++20"))

    def test_a_place_in_a_batch_is_told_as_one_in_its_file(self):
        a, b = self.write("a.cpp", FIRST), self.write("b.cpp", SECOND)
        batch = tidy.Batch([a, b], os.path.join(self.folder, "batch.cpp"))
        self.assertEqual(batch.place(1), (a, 1))
        self.assertEqual(batch.place(4), (a, 4))
        self.assertEqual(batch.place(5), (b, 1))
        text = batch.translated(f"{batch.path}:8:5: warning: here\nother.h:8:5: note: there\n  code")
        self.assertEqual(text, f"{b}:4:5: warning: here\nother.h:8:5: note: there\n  code")

    def test_files_that_get_along_are_one_batch(self):
        self.assertEqual(self.parted(first=FIRST, third=THIRD), ([["first", "third"]], []))

    def test_a_file_that_uses_a_name_again_comes_later(self):
        self.assertEqual(self.parted(first=FIRST, second=SECOND, third=THIRD),
                         ([["first", "third"], ["second"]], []))

    def test_a_file_with_an_error_of_its_own_is_a_finding_at_its_own_place(self):
        names, findings = self.parted(first=FIRST, broken=BROKEN)
        self.assertEqual(names, [["first"]])
        self.assertEqual(len(findings), 1)
        self.assertIn("broken.cpp:1:23: error:", findings[0])

    def test_a_first_file_with_an_error_does_not_hold_up_the_others(self):
        names, findings = self.parted(broken=BROKEN, first=FIRST, third=THIRD)
        self.assertEqual(sorted(sum(names, [])), ["first", "third"])
        self.assertEqual(len(findings), 1)


if __name__ == "__main__":
    unittest.main()
