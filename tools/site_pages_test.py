#!/usr/bin/env python3
"""Tests of site_pages.py, site_reference.py and site_tables.py: links, text of comments, tables."""
import os
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import site_pages  # noqa: E402
import site_reference as reference  # noqa: E402
import site_tables  # noqa: E402

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def turned(page, text):
    files = set()
    return site_pages.turned(page, text, ROOT, files), files


class LinkTest(unittest.TestCase):
    def test_pages_lie_side_by_side(self):
        self.assertEqual(turned("README.md", "[a](docs/tour.md#next)")[0], "[a](tour.md#next)")
        self.assertEqual(turned("docs/tour.md", "[a](../cntr/README.md) [b](tour.md) [c](../README.md)")[0],
                         "[a](room-cntr.md) [b](tour.md) [c](readme.md)")
        self.assertEqual(turned("docs/site/index.md", "[a](../tour.md) [b](start-cpp.md)")[0], "[a](tour.md) [b](start-cpp.md)")

    def test_headers_lead_to_the_reference_and_internals_to_the_file(self):
        self.assertEqual(turned("README.md", "[a](cntr/contour.h)")[0], "[a](reference/cntr-contour.md)")
        self.assertEqual(turned("README.md", "[a](base/velstd/xform.h)")[0], "[a](reference/velstd-xform.md)")

    def test_other_files_are_taken_along(self):
        self.assertEqual(turned("docs/tool.md", "[a](names.csv)"), ("[a](files/docs/names.csv)", {"docs/names.csv"}))

    def test_pictures_are_named_from_the_root_also_within_a_link(self):
        self.assertEqual(turned("docs/site/index.md", "[![x](../img/edges.svg)](../gallery.md)")[0], "[![x](img/edges.svg)](gallery.md)")

    def test_anchors_of_the_page_code_and_links_out_stay(self):
        for text in ("[a](#here)", "`[a](b.md)` [c](https://example.org/x.md)", "```\n[a](docs/tour.md)\n```"):
            self.assertEqual(turned("README.md", text)[0], text)

    def test_a_link_to_nothing_is_left_for_sphinx_to_find(self):
        self.assertEqual(turned("README.md", "[a](docs/none.md)")[0], "[a](docs/none.md)")


def para(text):
    return ElementTree.fromstring(f"<detaileddescription><para>{text}</para></detaileddescription>")


class CommentTest(unittest.TestCase):
    def test_fields_stand_in_paragraphs_of_their_own(self):
        self.assertEqual(reference.paragraphs(para("Does it. Throws: A. Cost: O(n).")), ["Does it.", "**Throws:** A.", "**Cost:** O(n)."])

    def test_fields_glued_to_the_last_item_of_a_list_come_out_of_it(self):
        text = "First:<itemizedlist><listitem><para>a: 1</para></listitem><listitem><para>b: 2 Throws: X.</para></listitem></itemizedlist>"
        self.assertEqual(reference.paragraphs(para(text)), ["First:", "- a: 1\n- b: 2", "**Throws:** X."])

    def test_what_markdown_would_read_is_escaped_but_not_in_code(self):
        self.assertEqual(reference.paragraphs(para("a_b*c <computeroutput>d_e</computeroutput> [f]")), [r"a\_b\*c `d_e` \[f\]"])

    def test_a_long_signature_has_a_parameter_a_line(self):
        self.assertEqual(reference.wrapped("f(int a, std::map<int, int> b)", 10), "f(int a,\n    std::map<int, int> b)")
        self.assertEqual(reference.wrapped("f(int a, int b)"), "f(int a, int b)")

    def test_anchors_tell_names_apart_that_differ_in_scope_or_words(self):
        names = ["gxContour", "gxContour::length", "gxContourLength", "gx_InertiaData", "gxArchive::Limits"]
        self.assertEqual(len({reference.anchor_of(name) for name in names}), len(names))

    def test_overloads_under_one_comment_are_one_run(self):
        def made(line, text):
            return reference.Entry("function", "f", "", "a.h", line, f"f{line}", text, text.split(".")[0] + ".")
        first, second, other = made(1, "Does it. More."), made(2, "Does it."), made(3, "Something else.")
        self.assertEqual(reference.runs([first, second, other]), [[first, second], [other]])

    def test_banners_are_read_with_their_lines(self):
        self.assertEqual(reference.banners("a\n  // ---- Model (region.cpp) ------\n"), [(2, "Model")])

    def test_the_opening_comment_is_paragraphs_and_code(self):
        self.assertEqual(reference.opening("/// One\n/// two_.\n///\n///     code\n#pragma once\n/// No."), ["One two\\_.", "```\ncode\n```"])


class TableTest(unittest.TestCase):
    def test_cells_do_not_end_early(self):
        self.assertEqual(site_tables.rows(["A"], [["x | y\nz"]]), "| A |\n|---|\n| x \\| y z |")

    def test_numbers_are_read_from_declarations_over_lines(self):
        self.assertEqual(site_tables.exceptions("class API_API A final\n    : public gx_ConcreteException<A, B::C, 0x10000121> {"),
                         [("A", 0x10000121)])

    def test_every_number_of_the_headers_is_found(self):
        folders, told, found = ["base", "cntr", "overlay", "cairo"], 0, []
        for folder in folders:
            for inside, _, names in os.walk(os.path.join(ROOT, folder)):
                for name in names:
                    if name.endswith(".h") and "internal" not in inside:
                        with open(os.path.join(inside, name), encoding="utf-8") as file:
                            text = file.read()
                        told += text.count("public gx_ConcreteException<")
                        found += site_tables.exceptions(text)
        self.assertEqual(len(found), told)
        self.assertEqual(len({number for _, number in found}), told)

    def test_two_classes_with_one_number_are_refused(self):
        with tempfile.TemporaryDirectory() as root:
            with open(os.path.join(root, "a.h"), "w", encoding="utf-8") as file:
                file.write("class A : public gx_ConcreteException<A, C, 0x1> {};\nclass B : public gx_ConcreteException<B, C, 0x1> {};\n")
            entries = [reference.Entry("class", name, "", "a.h", 1, "", "", "Said.") for name in "AB"]
            with self.assertRaisesRegex(ValueError, "same number"):
                site_tables.error_table(root, {"a.h": entries})
            with self.assertRaisesRegex(ValueError, "no page"):
                site_tables.error_table(root, {"a.h": entries[:1]})

    def test_threads_are_what_the_comment_says_of_them(self):
        one = reference.Entry("class", "A", "", "a.h", 1, "", "An A.\n\nThreads. One at a time.\n\nMore.", "An A.")
        self.assertIn("| `A` | One at a time. |", site_tables.thread_table({"a.h": [one]}))

    def test_measures_and_commands_are_those_of_the_list(self):
        measures, commands = site_tables.measure_tables(ROOT)
        self.assertIn("| `feret_max` | L |", measures)
        self.assertIn("| `gxshape measure` |", commands)

    def test_every_figure_of_the_reference_is_there(self):
        for header, shown in site_pages.figures(ROOT).items():
            self.assertTrue(os.path.exists(os.path.join(ROOT, header)), header)
            for picture, words in shown:
                self.assertTrue(os.path.exists(os.path.join(ROOT, "docs", "img", picture)), picture)
                self.assertTrue(words)


if __name__ == "__main__":
    unittest.main()
