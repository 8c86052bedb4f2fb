#!/usr/bin/env python3
"""Tests of doxygen_filter.py: anchors and links of pages, comments of headers."""
import os
import sys
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from doxygen_filter import header, turned  # noqa: E402


class PageTest(unittest.TestCase):
    def test_headings_get_anchors_and_the_title_does_not(self):
        self.assertEqual(turned("docs/a.md", "# A page\n## Two `words`, here\n## Again\n## Again"),
                         "# A page\n## Two `words`, here {#docs-a-two-words-here}\n## Again {#docs-a-again}\n"
                         "## Again {#docs-a-again-1}")

    def test_links_to_anchors_name_the_page(self):
        self.assertEqual(turned("docs/a.md", "[x](#again) [y](b.md#there) [z](../README.md#up)"),
                         "[x](#docs-a-again) [y](#docs-b-there) [z](#README-up)")

    def test_links_to_pages_are_named_from_the_root_and_pictures_by_name(self):
        self.assertEqual(turned("docs/a.md", "[x](b.md) ![y](img/c.svg) [z](../cntr/contour.h)"),
                         "[x](docs/b.md) ![y](c.svg) [z](cntr/contour.h)")

    def test_links_out_of_the_checkout_stay(self):
        self.assertEqual(turned("a.md", "[x](https://example.org/a#b)"), "[x](https://example.org/a#b)")

    def test_code_stays(self):
        text = "# A\n```\n# no heading\n[x](#y)\n```\n    # no heading"
        self.assertEqual(turned("a.md", text), text)


class HeaderTest(unittest.TestCase):
    def test_a_comment_above_a_run_is_that_of_each(self):
        self.assertEqual(header("  /// Return both.  More.\n  int a() const;\n  int b() const { return b_; }"),
                         "  /// Return both.  More.\n  int a() const;\n/** Return both. */   int b() const { return b_; }")

    def test_so_it_is_for_data_members(self):
        self.assertEqual(header("  /// Where it ends.\n  double a = 0.0;\n  long b;\n  long c;  ///< Other."),
                         "  /// Where it ends.\n  double a = 0.0;\n/** Where it ends. */   long b;\n  long c;  ///< Other.")

    def test_a_blank_line_ends_the_run(self):
        text = "  /// Returns a.\n  int a() const;\n\n  int b() const;"
        self.assertEqual(header(text), text)

    def test_a_declaration_over_lines_counts_as_one(self):
        text = "/// Does it.\nvoid f(int a,\n       int b);\nvoid f(int a);"
        self.assertEqual(header(text), text.replace("\nvoid f(int a);", "\n/** Does it. */ void f(int a);"))

    def test_a_comment_of_its_own_stands(self):
        text = "/// One.\nvoid f();\n/// Two.\nvoid g();"
        self.assertEqual(header(text), text)

    def test_the_comment_of_a_class_is_not_that_of_its_members(self):
        for text in ("/// A.\nclass A {\n public:\n  void f();\n};",
                     "/// A.\ntemplate <class T>\nclass A {\n public:\n  void f();\n};"):
            self.assertEqual(header(text), text)

    def test_the_comment_of_the_file_swallows_nothing(self):
        self.assertEqual(header("/// File.\n#pragma once\n\n/// F.\nvoid f();\nvoid g();"),
                         "/// File.\n#pragma once\n\n/// F.\nvoid f();\n/** F. */ void g();")

    def test_copying_moving_and_destroying_say_so(self):
        self.assertEqual(header(" public:\n  A(const A& other);\n  A(A&& other) noexcept;\n  ~A() override;\n"
                                "  A& operator=(const A&) = default;\n  A& operator=(A&& other) noexcept;"),
                         " public:\n/** Copies. */   A(const A& other);\n/** Moves. */   A(A&& other) noexcept;\n"
                         "/** Destroys. */   ~A() override;\n/** Assigns by copying. */   A& operator=(const A&) = default;\n"
                         "/** Assigns by moving. */   A& operator=(A&& other) noexcept;")

    def test_no_line_is_added(self):
        text = "/// F.\nvoid f();\nvoid g();\nvoid h(int a,\n       int b) {\n  a();\n}\n"
        self.assertEqual(header(text).count("\n"), text.count("\n"))


if __name__ == "__main__":
    unittest.main()
