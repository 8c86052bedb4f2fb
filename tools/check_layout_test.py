#!/usr/bin/env python3
"""Tests of check_layout.py: each rule against a little tree that breaks it, and one that does not."""
import os
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import check_layout  # noqa: E402

GOOD = {
    "base/velstd/vector.h": "#pragma once\n#include <cmath>\n",
    "base/velstd/vector.cpp": "// Lengths.\n#include <velstd/vector.h>\n",
    "tests/base/velstd/vector_test.cpp": "#include <velstd/vector.h>\n",
    "cntr/contour.h": "#pragma once\n#include <velstd/vector.h>\n#include <cntr/internal/memory/memo.h>\n",
    "cntr/internal/memory/memo.h": "#pragma once\n",
    "tests/cntr/internal/memory/memo_test.cpp": "#include <cntr/internal/memory/memo.h>\n",
    "cntr/README.md": "| `contour` | outlines |\n| `memo` | answers |\n",
    "include/gxshape/gxshape.h": "#pragma once\n#include <velstd/vector.h>\n#include <cntr/contour.h>\n",
}


class LayoutTest(unittest.TestCase):
    def setUp(self):
        self.root = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.root)

    def tree(self, changes=None):
        for path, text in {**GOOD, **(changes or {})}.items():
            if text is None:
                continue
            full = os.path.join(self.root, path)
            os.makedirs(os.path.dirname(full), exist_ok=True)
            with open(full, "w", encoding="utf-8") as file:
                file.write(text)
        return check_layout.Tree(self.root)

    def findings(self, changes=None):
        return [(f.rule, f.path) for f in check_layout.check(self.tree(changes))]

    def test_a_tree_that_keeps_the_plan_has_no_findings(self):
        self.assertEqual(self.findings(), [])

    def test_an_include_of_a_higher_layer(self):
        found = self.findings({"base/velstd/vector.h": "#pragma once\n#include <cntr/contour.h>\n"})
        self.assertEqual(found, [("include", "base/velstd/vector.h")])

    def test_an_include_of_a_neighbour(self):
        found = self.findings({
            "base/velip/pel.h": "#pragma once\n#include <veldispc/color.h>\n",
            "base/veldispc/color.h": "#pragma once\n",
            "include/gxshape/gxshape.h": "#pragma once\n#include <velstd/vector.h>\n#include <velip/pel.h>\n"
                                         "#include <veldispc/color.h>\n#include <cntr/contour.h>\n"})
        self.assertEqual(found, [("include", "base/velip/pel.h")])

    def test_an_include_of_the_umbrella_header_from_below_it(self):
        found = self.findings({"base/velstd/vector.cpp": "// x\n#include <gxshape/gxshape.h>\n"})
        self.assertEqual(found, [("include", "base/velstd/vector.cpp")])

    def test_an_include_of_another_library(self):
        found = self.findings({"base/velstd/vector.cpp": "// x\n#include <boost/geometry.hpp>\n"})
        self.assertEqual(found, [("include", "base/velstd/vector.cpp")])

    def test_an_include_in_quotes(self):
        found = self.findings({"base/velstd/vector.cpp": '// x\n#include "vector.h"\n'})
        self.assertEqual(found, [("include", "base/velstd/vector.cpp")])

    def test_an_internal_header_is_for_its_library_and_for_tests(self):
        inside = "#include <cntr/internal/memory/memo.h>\n"
        self.assertEqual(self.findings({"tests/cntr/x_test.cpp": inside, "bench/x.cpp": inside}), [])
        self.assertEqual(self.findings({"examples/x.cpp": inside}), [("include", "examples/x.cpp")])

    def test_an_internal_header_of_which_nothing_is_compiled_is_for_all_above_it(self):
        shared = "// x\n#include <velstd/internal/four.h>\n"
        files = {"gauge/x.cpp": shared, "tests/gauge/x_test.cpp": "\n"}
        self.assertEqual(self.findings(files), [])
        other = {"gauge/x.cpp": shared.replace("four", "registry"), "tests/gauge/x_test.cpp": "\n"}
        self.assertEqual(self.findings(other), [("include", "gauge/x.cpp")])

    def test_an_inner_folder_sees_downward_only(self):
        up = {"cntr/internal/outline/walk.h": "#pragma once\n#include <cntr/internal/memory/memo.h>\n",
              "tests/cntr/internal/outline/walk_test.cpp": "\n",
              "cntr/README.md": "| `contour`, `memo`, `walk` |\n"}
        self.assertEqual(self.findings(up), [("inner", "cntr/internal/outline/walk.h")])

    def test_the_picture_of_the_folders_is_the_one_that_the_rules_draw(self):
        begin, end = check_layout.PICTURE_BEGINS, check_layout.PICTURE_ENDS
        drawn = "\n".join([begin, *check_layout.picture(), end, ""])
        self.assertEqual(self.findings({"docs/architecture.md": drawn}), [])
        old = drawn.replace("cntr/", "shapes/")
        self.assertEqual(self.findings({"docs/architecture.md": old}), [("picture", "docs/architecture.md")])
        self.assertEqual(self.findings({"docs/architecture.md": "# nothing\n"}), [("picture", "docs/architecture.md")])

    def test_marks_of_an_unfinished_merge(self):
        marked = "<" * 7 + " HEAD\none\n" + "=" * 7 + "\ntwo\n" + ">" * 7 + " other\n"
        self.assertEqual(self.findings({"tools/packages.txt": marked}),
                         [("merge", "tools/packages.txt"), ("merge", "tools/packages.txt")])

    def test_a_class_is_known_to_sets_alone(self):
        for folder, rule in [("sets", []), ("repair", [("inner", "cntr/internal/repair/loops.h")])]:
            self.assertEqual(self.findings({
                f"cntr/internal/{folder}/loops.h": "#pragma once\n#include <cntr/contour.h>\n",
                f"tests/cntr/internal/{folder}/loops_test.cpp": "\n",
                "cntr/README.md": "| `contour`, `memo`, `loops` |\n"}), rule)
            os.remove(os.path.join(self.root, f"cntr/internal/{folder}/loops.h"))
            os.remove(os.path.join(self.root, f"tests/cntr/internal/{folder}/loops_test.cpp"))

    def test_an_internal_file_outside_of_the_folders(self):
        self.assertEqual(self.findings({"cntr/internal/walk.h": "#pragma once\n",
                                        "tests/cntr/internal/walk_test.cpp": "\n",
                                        "cntr/README.md": "| `contour`, `memo`, `walk` |\n"}),
                         [("inner", "cntr/internal/walk.h")])

    def test_a_file_that_the_map_does_not_name_and_a_name_without_a_file(self):
        found = self.findings({"cntr/README.md": "the contour\n\n| `contour` | outlines |\n| `loops` | x |\n"})
        self.assertEqual(found, [("map", "cntr/README.md"), ("map", "cntr/README.md")])

    def test_a_source_without_a_test(self):
        found = self.findings({"cntr/contour.cpp": "// x\n", "cntr/internal/outline/walk.h": "#pragma once\n",
                               "cntr/README.md": "| `contour`, `memo`, `walk` |\n"})
        self.assertEqual(found, [("test", "cntr/contour.cpp"), ("test", "cntr/internal/outline/walk.h")])

    def test_a_source_that_a_test_elsewhere_covers(self):
        found = self.findings({"cntr/contour.cpp": "// x\n",
                               "tests/archive/records_test.cpp": "// Covers cntr/contour.cpp\n"})
        self.assertEqual(found, [])

    def test_a_test_that_covers_what_is_not_there(self):
        found = self.findings({"tests/archive/records_test.cpp": "// Covers cntr/gone.cpp\n"})
        self.assertEqual(found, [("test", "cntr/gone.cpp")])

    def test_a_source_without_its_story(self):
        found = self.findings({"base/velstd/vector.cpp": "#include <velstd/vector.h>\n"})
        self.assertEqual(found, [("story", "base/velstd/vector.cpp")])

    def test_a_header_without_pragma_once(self):
        self.assertEqual(self.findings({"bench/x.h": "int f();\n"}), [("once", "bench/x.h")])

    def test_names_that_say_nothing(self):
        for name in check_layout.EMPTY_NAMES:
            path = f"bench/{name}.py"
            self.assertEqual(self.findings({path: ""}), [("name", path)])
            os.remove(os.path.join(self.root, path))

    def test_forbidden_words(self):
        for text in ["see the sp" + "ec", "SP" + "ECIFICATION", "Par" + "t 2.3 says", "in the Par" + "ts",
                     "as sp" + "ecified", "cd /wo" + "rk/main", "open /ro" + "ot/x", "/ho" + "me/ann/x"]:
            self.assertIn(("word", "README.md"), self.findings({"README.md": f"One.\n{text}\n"}), text)

    def test_words_that_only_look_forbidden(self):
        text = "special, specifies, inspection, part 2, work/x, the root, partition, homework/ann/\n"
        self.assertEqual(self.findings({"README.md": text}), [])

    def test_binary_files_have_no_words(self):
        self.assertEqual(self.findings({"tests/golden/x.bin": "\0sp" + "ec"}), [])

    def test_a_long_file_is_a_warning(self):
        tree = self.tree({"base/velstd/vector.cpp": "// x\n" * 501, "tests/base/long_test.cpp": "// x\n" * 501})
        found = check_layout.check(tree)
        self.assertEqual([(f.rule, f.path, f.warning) for f in found],
                         [("length", "base/velstd/vector.cpp", True)])

    def test_the_umbrella_header_misses_one_and_has_one_too_many(self):
        found = self.findings({"include/gxshape/gxshape.h": "#pragma once\n#include <velstd/vector.h>\n"
                                                            "#include <cntr/gone.h>\n"})
        self.assertEqual(found, [("umbrella", "include/gxshape/gxshape.h")] * 2)

    def test_the_umbrella_header_that_repair_writes_is_right(self):
        tree = self.tree({"cntr/region.h": "#pragma once\n",
                          "cntr/README.md": "| `contour`, `memo`, `region` |\n"})
        self.assertEqual(self.findings({"include/gxshape/gxshape.h": check_layout.umbrella_text(tree),
                                        "cntr/README.md": "| `contour`, `memo`, `region` |\n"}), [])

    def test_the_header_of_a_folder_misses_one_and_has_one_too_many(self):
        files = {"gauge/gauge.h": "#pragma once\n#include <gauge/gone.h>\n", "gauge/feret.h": "#pragma once\n"}
        found = check_layout.check_umbrella(self.tree(files))
        self.assertEqual([f.path for f in found if f.path == "gauge/gauge.h"], ["gauge/gauge.h"] * 2)
        tree = self.tree(files)
        files["gauge/gauge.h"] = check_layout.umbrella_text(tree, "gauge")
        found = check_layout.check_umbrella(self.tree(files))
        self.assertEqual([f.path for f in found if f.path == "gauge/gauge.h"], [])

    def test_a_header_that_needs_another_one_before_it(self):
        tree = self.tree({"cntr/contour.h": "#pragma once\nstd::string s();\n"})
        compiler = os.environ.get("CXX", "c++")
        found = [(f.rule, f.path) for f in check_layout.check_alone(tree, compiler)]
        self.assertIn(("alone", "cntr/contour.h"), found)
        self.assertNotIn(("alone", "base/velstd/vector.h"), found)

    def test_the_checker_is_no_finding_of_its_own(self):
        here = os.path.dirname(os.path.abspath(__file__))
        for name in ["check_layout.py", "check_layout_test.py"]:
            with open(os.path.join(here, name), encoding="utf-8") as file:
                tree = self.tree({"tools/" + name: file.read()})
        self.assertEqual([str(f) for f in check_layout.check_words(tree)], [])


if __name__ == "__main__":
    unittest.main()
